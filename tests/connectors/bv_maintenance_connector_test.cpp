#include "bvconn/connectors/maintenance/bv_maintenance_connector.h"

#include <gtest/gtest.h>

#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/core/session_state.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using test::envelope_text;
using test::RecordingPlatform;

SoapNode profile_of(std::size_t children) {
  const SoapNode profile = SoapNode::make("Profile");
  SoapNodes nodes = profile.Nodes();
  for (std::size_t i = 0; i < children; ++i) nodes.Create("P" + std::to_string(i), "v");
  return profile;
}

SoapEnvelope sent_request(const RecordingPlatform& world) {
  const SoapEnvelope request = SoapEnvelope::make();
  request.Parse(world.sent.at(0).text, "");
  return request;
}

TEST(SetUserProfile, ThirtyTwoThousandSevenHundredSixtyEightChildrenGoOutInTheirOrder) {
  RecordingPlatform world;
  world.reply(envelope_text("updateUserProfileResponse", "<return>R</return>"));
  BVMaintenanceConnector().SetUserProfile("S", "http://h/", profile_of(32768));
  const SoapEnvelope request = sent_request(world);
  ASSERT_EQ(request.Parameters().Count(), 32768U);
  EXPECT_EQ(request.Parameters().Item(0).Name(), "P0");
  EXPECT_EQ(request.Parameters().Item(32767).Name(), "P32767");
}

TEST(SetUserProfile, OneChildMoreIsAnOverflowAndNothingIsSent) {
  for (const bool dal : {false, true}) {
    RecordingPlatform world;
    if (dal) world.use_dal();
    const Error error = test::error_of(
        [] { BVMaintenanceConnector().SetUserProfile("S", "http://h/", profile_of(32769)); });
    EXPECT_EQ(error.number, error_numbers::kOverflow);
    EXPECT_EQ(error.source, "BVConn");
    EXPECT_TRUE(world.sent.empty());
    EXPECT_TRUE(world.record.dal.empty());
    EXPECT_TRUE(
        world.record.log.back().starts_with("LogError BVMaintenanceConnector.SetUserProfile 6 "))
        << world.record.log.back();
  }
}

TEST(SetUserProfile, AChildThatHoldsANodeGoesOutWithItsNameAlone) {
  RecordingPlatform world;
  world.reply(envelope_text("updateUserProfileResponse", "<return>R</return>"));
  const SoapNode inner = SoapNode::make("Inner");
  inner.Nodes().Create("City", "C");
  const SoapNode profile = SoapNode::make("Profile");
  profile.Nodes().Create("Home", inner);
  BVMaintenanceConnector().SetUserProfile("S", "http://h/", profile);
  EXPECT_NE(world.sent.at(0).text.find("<m:updateUserProfile xmlns:m=\"urn:MaintenanceService\">"
                                       "<Home xsi:nil=\"true\"/></m:updateUserProfile>"),
            std::string::npos)
      << world.sent.at(0).text;
}

TEST(SetUserProfile, AChildThatIsAnArrayOfStructuresGoesOutWithItsNameAlone) {
  RecordingPlatform world;
  world.reply(envelope_text("getUserProfileResponse",
                            "<return>"
                            "<Homes xmlns:enc=\"http://schemas.xmlsoap.org/soap/encoding/\""
                            " xsi:type=\"enc:Array\" enc:arrayType=\"xsd:anyType[2]\">"
                            "<item>C-1</item><item><City>C-2</City></item></Homes></return>"));
  const SoapNode profile = BVGenericConnector().Send("urn:x", "m", "r", SoapNode::make("n"), "u");
  ASSERT_TRUE(profile.Nodes().Item(0).Value().is(Variant::Type::kArray));
  const SoapNode deep = SoapNode::make("Inner");
  deep.Nodes().Create("City", "C-3");
  profile.Nodes().Create("Deep", VariantArray({Variant(VariantArray({Variant(deep)}))}));
  profile.Nodes().Create("Texts", StringArray{"T-4"});
  profile.Nodes().Create("None", StringArray(std::vector<std::string>{}));
  world.reply(envelope_text("updateUserProfileResponse", "<return>R</return>"));
  BVMaintenanceConnector().SetUserProfile("S", "http://h/", profile);
  EXPECT_NE(world.sent.at(1).text.find(
                "<m:updateUserProfile xmlns:m=\"urn:MaintenanceService\">"
                "<Homes xsi:nil=\"true\"/><Deep xsi:nil=\"true\"/>"
                "<Texts xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:string[1]\">"
                "<item>T-4</item></Texts>"
                "<None xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:string[0]\"/>"
                "</m:updateUserProfile>"),
            std::string::npos)
      << world.sent.at(1).text;
}

TEST(CheckTypeAheadFile, ANilAnswerIsNoBooleanAndTheErrorIsLogged) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<return xsi:nil=\"true\"/>"));
  const Error error =
      test::error_of([] { BVMaintenanceConnector().CheckTypeAheadFile("S", "http://h/"); });
  EXPECT_EQ(error.number, error_numbers::kTypeMismatch);
  EXPECT_EQ(error.source, "BVConn");
  EXPECT_TRUE(world.record.log.back().starts_with(
      "LogError BVMaintenanceConnector.CheckTypeAheadFile 13 \"BVConn\" "))
      << world.record.log.back();
}

TEST(SetUserProfile, LeavesTheCallersTreeAsItWas) {
  RecordingPlatform world;
  world.reply(envelope_text("updateUserProfileResponse", "<return>R</return>"));
  const SoapNode profile = profile_of(2);
  BVMaintenanceConnector().SetUserProfile("S", "http://h/", profile);
  EXPECT_EQ(profile.Name(), "Profile");
  EXPECT_EQ(profile.Nodes().Count(), 2U);
}

TEST(SaveOrderPrintoutDefault, TheServiceObjectGetsTheTextThatWouldHaveBeenSent) {
  const SoapNode printout = SoapNode::make("OrderPrintout");
  printout.Nodes().Create("Title", "T");
  RecordingPlatform world;
  world.reply(envelope_text("saveOrderPrintoutDefaultResponse", "<return>R</return>"));
  BVMaintenanceConnector().SaveOrderPrintoutDefault("S-1", "http://h/", printout);
  world.use_dal();
  world.dal_answers["MaintenanceService.SaveOrderPrintoutDefault"] =
      envelope_text("saveOrderPrintoutDefaultResponse", "<return>R</return>");
  BVMaintenanceConnector().SaveOrderPrintoutDefault("S-1", "http://h/", printout);
  ASSERT_EQ(world.sent.size(), 1U);
  ASSERT_EQ(world.record.dal.size(), 1U);
  EXPECT_EQ(world.record.dal[0],
            "MaintenanceService.SaveOrderPrintoutDefault(\"" + world.sent[0].text + "\")");
}

TEST(SaveAgentRFQPrintoutDefault, GoesBySoapWhileTheUsersGoesThroughTheServiceObject) {
  RecordingPlatform world;
  world.use_dal();
  world.reply(envelope_text("saveAgentRFQPrintoutDefaultResponse", "<return>R</return>"));
  world.dal_answers["MaintenanceService.SetUserRFQPrintoutDefault"] =
      envelope_text("setUserRFQPrintoutDefaultResponse", "<return>R</return>");
  BVMaintenanceConnector maintenance;
  maintenance.SaveAgentRFQPrintoutDefault("S", "http://h/", "I-1");
  EXPECT_EQ(world.sent.size(), 1U);
  EXPECT_TRUE(world.record.dal.empty());
  maintenance.SetUserRFQPrintoutDefault("S", "http://h/", "I-2");
  EXPECT_EQ(world.sent.size(), 1U);
  EXPECT_EQ(world.record.dal,
            std::vector<std::string>{"MaintenanceService.SetUserRFQPrintoutDefault(\"I-2\")"});
}

TEST(MaintenanceResults, ANodeOutlivesItsCall) {
  RecordingPlatform world;
  world.reply(envelope_text("getAllRemarksResponse", "<return><Text>T</Text></return>"));
  const SoapNode remarks = BVMaintenanceConnector().GetAllRemarks("S", "http://h/");
  EXPECT_EQ(remarks.Nodes().Item(0).Value(), Variant("T"));
}

}  // namespace
}  // namespace bvconn

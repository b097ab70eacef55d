#include "bvconn/connectors/maintenance/bv_maintenance_connector.h"

#include <gtest/gtest.h>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
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
    try {
      BVMaintenanceConnector().SetUserProfile("S", "http://h/", profile_of(32769));
      ADD_FAILURE() << "no error was raised";
    } catch (const Error& error) {
      EXPECT_EQ(error.number, error_numbers::kOverflow);
      EXPECT_EQ(error.source, "BVConn");
    }
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

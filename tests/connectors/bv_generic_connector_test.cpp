#include "bvconn/connectors/session/bv_generic_connector.h"

#include <gtest/gtest.h>

#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using error_numbers::kSoapFault;
using Lines = std::vector<std::string>;
using test::envelope_text;
using test::error_of;
using test::fault_text;
using test::RecordingPlatform;

SoapNode document() {
  return node_from_xml("<Ignored><Name>N</Name></Ignored>");
}

TEST(GenericConnector, SendsServiceMethodAndRootNodeAndGivesTheFirstParameter) {
  RecordingPlatform world;
  world.timer = {10.0, 10.5};
  world.reply(envelope_text("doThingResponse", "<return>R</return><second>2</second>"));
  BVGenericConnector connector;
  const SoapNode result = connector.Send("urn:ThingService", "doThing", "Root", document(),
                                         "http://h/soap", 7000, "S-9");
  EXPECT_EQ(result.Value(), Variant("R"));
  ASSERT_EQ(world.sent.size(), 1U);
  EXPECT_EQ(world.sent[0].url, "http://h/soap");
  EXPECT_NE(world.sent[0].text.find("<SOAP-ENV:Header><userID xsi:type=\"xsd:string\">S-9</userID>"
                                    "</SOAP-ENV:Header>"),
            std::string::npos)
      << world.sent[0].text;
  EXPECT_NE(world.sent[0].text.find("<SOAP-ENV:Body><m:doThing xmlns:m=\"urn:ThingService\">"
                                    "<Root><Name>N</Name></Root></m:doThing></SOAP-ENV:Body>"),
            std::string::npos)
      << world.sent[0].text;
  EXPECT_EQ(world.record.transport,
            (Lines{"NoProxy", "SOAPAction \"urn:ThingService\"", "Timeout 7000",
                   "Send \"http://h/soap\"", "Receive \"UTF-8\""}));
  EXPECT_EQ(world.record.log,
            (Lines{"LogInfo BVGenericConnector.Send() \"Entering Method...\" 0",
                   "EnterMethod Global.sendXML 1",
                   "LogInfo Global.TraceSoapTraffic() - Property Get \"Entering Method...\" 0",
                   "LogInfo Global.TraceSoapTraffic() - Property Get \"Entering Method...\" 0",
                   "EnterMethod Global.TracePort 2", "ExitMethod Global.TracePort 2",
                   "LogAtLevel 4 Global.LastHeartBeat \"Heart Beat Time Updated: "
                   "1/5/2007 1:04:09 PM\" 0",
                   "LogAtLevel 16 Global.sendXML \"Time to execute doThingResponse: 0.5\" 0",
                   "ExitMethod Global.sendXML 1",
                   "LogInfo BVGenericConnector.Send() \"Exiting Method...\" 0"}));
}

TEST(GenericConnector, WithoutASessionIdSendsNoUserIdHeader) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<a>1</a>"));
  BVGenericConnector().Send("urn:T", "m", "Root", document(), "http://h/");
  EXPECT_EQ(world.sent.at(0).text.find("userID"), std::string::npos);
  EXPECT_EQ(world.record.transport.at(2), "Timeout 300000");
}

TEST(GenericConnector, TheWordNothingInAnotherCaseIsASessionId) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<a>1</a>"));
  BVGenericConnector().Send("urn:T", "m", "Root", document(), "http://h/", 0, "nothing");
  EXPECT_NE(world.sent.at(0).text.find(">nothing</userID>"), std::string::npos);
}

TEST(GenericConnector, AnEmptySessionIdSendsTheHeaderWithEmptyText) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<a>1</a>"));
  BVGenericConnector().Send("urn:T", "m", "Root", document(), "http://h/", 0, "");
  const SoapEnvelope sent = SoapEnvelope::make();
  sent.Parse(world.sent.at(0).text, "");
  ASSERT_EQ(sent.Headers().Count(), 1U);
  EXPECT_EQ(sent.Headers().Item(0).Name(), "userID");
  EXPECT_EQ(sent.Headers().Item(0).Value(), Variant(""));
}

TEST(GenericConnector, AnEmptyReferenceIsSentAsNil) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<a>1</a>"));
  BVGenericConnector().Send("urn:T", "m", "Root", SoapNode(), "http://h/");
  EXPECT_NE(world.sent.at(0).text.find("<Root xsi:nil=\"true\"/>"), std::string::npos)
      << world.sent.at(0).text;
}

TEST(GenericConnector, TheEnvelopeReadsNothingBeforeTheFirstSendAndAfterASuccess) {
  RecordingPlatform world;
  BVGenericConnector connector;
  EXPECT_FALSE(connector.SoapEnvelope());
  world.reply(envelope_text("r", "<a>1</a>"));
  connector.Send("urn:T", "m", "Root", document(), "http://h/");
  EXPECT_FALSE(connector.SoapEnvelope());
}

TEST(GenericConnector, AfterAFaultTheEnvelopeHoldsTheFaultstring) {
  RecordingPlatform world;
  world.reply(fault_text("Server", "server's words"));
  BVGenericConnector connector;
  const Error error =
      error_of([&] { connector.Send("urn:T", "m", "Root", document(), "http://h/"); });
  EXPECT_EQ(error.number, kSoapFault);
  EXPECT_EQ(error.description, "server's words");
  ASSERT_TRUE(connector.SoapEnvelope());
  EXPECT_EQ(connector.SoapEnvelope().Parameters().ItemByName("faultstring").Value(),
            Variant("server's words"));
  EXPECT_EQ(world.record.log.back(),
            "LogError BVGenericConnector.Send 0x80044201 \"SoapEnvelope\" \"server's words\" 0");
}

TEST(GenericConnector, ASecondSendReplacesTheEnvelopeThatAFailureLeft) {
  RecordingPlatform world;
  world.reply(fault_text("Server", "first"));
  world.reply(fault_text("Server", "second"));
  BVGenericConnector connector;
  EXPECT_THROW(connector.Send("urn:T", "m", "Root", document(), "http://h/"), Error);
  const SoapEnvelope first = connector.SoapEnvelope();
  EXPECT_THROW(connector.Send("urn:T", "m", "Root", document(), "http://h/"), Error);
  EXPECT_NE(connector.SoapEnvelope(), first);
  EXPECT_EQ(connector.SoapEnvelope().Parameters().ItemByName("faultstring").Value(),
            Variant("second"));
}

TEST(GenericConnector, NeverTakesTheDataAccessLayer) {
  RecordingPlatform world;
  world.use_dal();
  world.reply(envelope_text("r", "<a>1</a>"));
  BVGenericConnector().Send("urn:HeartBeatService", "beat", "Root", document(), "http://h/");
  EXPECT_TRUE(world.record.dal.empty());
  EXPECT_EQ(world.sent.size(), 1U);
}

TEST(GenericConnector, LeavesTheCallersNodeAsItWas) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<a>1</a>"));
  const SoapNode node = document();
  BVGenericConnector().Send("urn:T", "m", "Root", node, "http://h/");
  EXPECT_EQ(node.Name(), "Ignored");
  EXPECT_EQ(node.Nodes().Count(), 1U);
}

}  // namespace
}  // namespace bvconn

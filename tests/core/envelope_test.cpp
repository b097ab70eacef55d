#include "bvconn/core/envelope.h"

#include <gtest/gtest.h>

#include "support/recording_platform.h"

namespace bvconn {
namespace {

using Lines = std::vector<std::string>;
using test::RecordingPlatform;

constexpr char kNames[] =
    " xmlns:SOAP-ENC=\"http://schemas.xmlsoap.org/soap/encoding/\""
    " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
    " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"";

TEST(GetEnvelope, HoldsTheUserIdHeaderAndTheMethodInItsNamespace) {
  RecordingPlatform world;
  const SoapEnvelope envelope = Global::getEnvelope("getThing", "urn:ThingService", "S-17");
  EXPECT_EQ(envelope.MethodName(), "getThing");
  EXPECT_EQ(envelope.EncodingStyle(), "");
  ASSERT_EQ(envelope.Headers().Count(), 1U);
  EXPECT_EQ(envelope.Headers().Item(0).Name(), "userID");
  EXPECT_EQ(envelope.Headers().Item(0).Namespace(), "");
  EXPECT_EQ(envelope.Headers().Item(0).Value(), Variant("S-17"));
  EXPECT_EQ(envelope.Parameters().Count(), 0U);
  EXPECT_EQ(world.record.log,
            (Lines{"EnterMethod Global.getEnvelope 1", "ExitMethod Global.getEnvelope 1"}));
}

TEST(GetEnvelope, SerialisesAsOneHeaderAndOneBodyElementWithItsParametersInOrder) {
  RecordingPlatform world;
  const SoapEnvelope envelope = Global::getEnvelope("getThing", "urn:ThingService", "S-17");
  envelope.Parameters().Create("param", "first");
  envelope.Parameters().Create("param_bool", true);
  EXPECT_EQ(envelope.Serialize(),
            std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
                        "<SOAP-ENV:Envelope"
                        " xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\"") +
                kNames +
                "><SOAP-ENV:Header><userID xsi:type=\"xsd:string\">S-17</userID></SOAP-ENV:Header>"
                "<SOAP-ENV:Body><m:getThing xmlns:m=\"urn:ThingService\">"
                "<param xsi:type=\"xsd:string\">first</param>"
                "<param_bool xsi:type=\"xsd:boolean\">true</param_bool>"
                "</m:getThing></SOAP-ENV:Body></SOAP-ENV:Envelope>");
}

TEST(GetEnvelope, AnEmptySessionIdStillMakesTheHeaderOnBothForms) {
  RecordingPlatform world;
  const SoapEnvelope envelope = Global::getEnvelope("m", "u", "");
  ASSERT_EQ(envelope.Headers().Count(), 1U);
  EXPECT_EQ(envelope.Headers().Item(0).Value(), Variant(""));
  EXPECT_FALSE(envelope.Headers().Item(0).nil());
  EXPECT_NE(Global::getEnvelopeStart("", "m", "u").find("<userID></userID>"), std::string::npos);
}

TEST(GetEnvelope, AnAmpersandInTheSessionIdIsEscapedInTheObjectFormAloneNotInText) {
  RecordingPlatform world;
  EXPECT_NE(Global::getEnvelope("m", "u", "a&b").Serialize().find(">a&amp;b</userID>"),
            std::string::npos);
  EXPECT_NE(Global::getEnvelopeStart("a&b", "m", "u").find("<userID>a&b</userID>"),
            std::string::npos);
}

TEST(GetEnvelopeStart, IsTheTextUpToTheLiteralParameter) {
  RecordingPlatform world;
  EXPECT_EQ(Global::getEnvelopeStart("USER", "METHOD", "URN"),
            "<?xml version='1.0' encoding='UTF-8' standalone='no'?>"
            "<SOAP-ENV:Envelope xmlns:SOAP-ENV='http://schemas.xmlsoap.org/soap/envelope/'>"
            "<SOAP-ENV:Header><userID>USER</userID></SOAP-ENV:Header><SOAP-ENV:Body>"
            "<SOAPSDK1:METHOD xmlns:SOAPSDK1='URN' "
            "SOAP-ENV:encodingStyle='http://schemas.xmlsoap.org/soap/encoding/'>"
            "<param_encoding "
            "SOAP-ENV:encodingStyle='http://xml.apache.org/xml-soap/literalxml'>");
  EXPECT_EQ(world.record.log, (Lines{"EnterMethod Global.getEnvelopeStart 1",
                                     "ExitMethod Global.getEnvelopeStart 1"}));
}

TEST(GetEnvelopeEnd, IsAVariantThatHoldsTheRest) {
  RecordingPlatform world;
  EXPECT_EQ(Global::getEnvelopeEnd("METHOD"),
            Variant("</param_encoding></SOAPSDK1:METHOD></SOAP-ENV:Body></SOAP-ENV:Envelope>"));
  EXPECT_EQ(world.record.log,
            (Lines{"EnterMethod Global.getEnvelopeEnd 1", "ExitMethod Global.getEnvelopeEnd 1"}));
}

TEST(GetEnvelopeStart, AndEndCloseOneElementAroundASingleParamEncoding) {
  RecordingPlatform world;
  const std::string text = Global::getEnvelopeStart("u", "m", "n") + "<doc>1</doc>" +
                           Global::getEnvelopeEnd("m").string();
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parse(text, "");
  EXPECT_EQ(envelope.MethodName(), "m");
  EXPECT_EQ(envelope.Headers().ItemByName("userID").Value(), Variant("u"));
  ASSERT_EQ(envelope.Parameters().Count(), 1U);
  const SoapNode literal = envelope.Parameters().Item(0);
  EXPECT_EQ(literal.Name(), "param_encoding");
  ASSERT_EQ(literal.Nodes().Count(), 1U);
  EXPECT_EQ(literal.Nodes().Item(0).Name(), "doc");
}

}  // namespace
}  // namespace bvconn

#include "bvconn/core/transport.h"

#include <gtest/gtest.h>

#include "bvconn/core/envelope.h"
#include "bvconn/core/session_state.h"
#include "bvconn/core/settings.h"
#include "bvconn/platform/error_numbers.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using error_numbers::kConnectionLost;
using error_numbers::kSoapFault;
using Lines = std::vector<std::string>;
using test::envelope_text;
using test::error_of;
using test::fault_text;
using test::RecordingPlatform;

constexpr char kTracePort[] = R"(hklm\software\brimvale\torvex\appdata\traceport)";
constexpr char kDefaultTimeOut[] = R"(hklm\software\brimvale\torvex\appdata\defaulttimeout)";
constexpr char kTraceSoapTraffic[] = R"(hkcu\software\brimvale\torvex\appdata\tracesoaptraffic)";

SoapEnvelope request() {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.SetMethod("getThing", "urn:ThingService");
  envelope.Parameters().Create("param", "P-1");
  return envelope;
}

TEST(SendXml, DoesItsStepsInOrder) {
  RecordingPlatform world;
  world.timer = {100.25, 101.75};
  world.reply(envelope_text("getThingResponse", "<return>R</return>"));
  const SoapEnvelope envelope = request();
  const std::string text = envelope.Serialize();
  EXPECT_TRUE(Global::sendXML(envelope, "urn:Action", "http://h/soap", 0).empty());
  EXPECT_EQ(world.record.all,
            (Lines{"EnterMethod Global.sendXML 1",
                   "SessionLogger LogMask",
                   "LogInfo Global.TraceSoapTraffic() - Property Get \"Entering Method...\" 0",
                   R"(Exists HKCU\Software\Brimvale\Torvex\appData\TraceSoapTraffic)",
                   R"(ReadString HKCU\Software\Brimvale\Torvex\AppData\TraceSoapTraffic)",
                   "LogInfo Global.TraceSoapTraffic() - Property Get \"Entering Method...\" 0",
                   "EnterMethod Global.TracePort 2",
                   R"(ReadString HKLM\Software\Brimvale\Torvex\AppData\tracePort)",
                   "ExitMethod Global.TracePort 2",
                   "NoProxy",
                   "SOAPAction \"urn:Action\"",
                   "EnterMethod Global.DefaultTimeout 2",
                   R"(ReadNumber HKLM\Software\Brimvale\Torvex\AppData\defaultTimeOut)",
                   "ExitMethod Global.DefaultTimeout 2",
                   "Timeout 300000",
                   "Send \"http://h/soap\"",
                   "Receive \"UTF-8\"",
                   "LogAtLevel 4 Global.LastHeartBeat \"Heart Beat Time Updated: "
                   "1/5/2007 1:04:09 PM\" 0",
                   "LogAtLevel 16 Global.sendXML \"Time to execute getThingResponse: 1.5\" 0",
                   "ExitMethod Global.sendXML 1"}));
  ASSERT_EQ(world.sent.size(), 1U);
  EXPECT_EQ(world.sent[0].url, "http://h/soap");
  EXPECT_EQ(world.sent[0].text, text);
  EXPECT_EQ(envelope.Parameters().Item(0).Value(), Variant("R"));
  EXPECT_EQ(session().LastHeartBeat, world.now);
}

TEST(SendXml, TimeoutZeroIsTheDefaultAndAnyOtherStands) {
  RecordingPlatform world;
  world.settings[kDefaultTimeOut] = std::int64_t{60000};
  for (const std::int32_t timeout : {0, 5000, -1}) {
    world.reply(envelope_text("r", ""));
    Global::sendXML(request(), "a", "http://h/", timeout);
  }
  Lines timeouts;
  for (const auto& line : world.record.transport) {
    if (line.starts_with("Timeout")) timeouts.push_back(line);
  }
  EXPECT_EQ(timeouts, (Lines{"Timeout 60000", "Timeout 5000", "Timeout -1"}));
}

TEST(SendXml, SetsTheProxyOnEverySendAndAsksThePortOncePerSend) {
  RecordingPlatform world;
  world.settings[kTracePort] = std::string("8888");
  for (int i = 0; i < 2; ++i) {
    world.reply(envelope_text("r", ""));
    Global::sendXML(request(), "a", "http://h/", 1);
  }
  EXPECT_EQ(std::count(world.record.transport.begin(), world.record.transport.end(),
                       "setProxy \"localhost\" \"8888\""),
            2);
  EXPECT_EQ(std::count(world.record.log.begin(), world.record.log.end(),
                       "EnterMethod Global.TracePort 2"),
            2);
}

TEST(SendXml, WithoutATracePortConnectsStraightOnEverySend) {
  RecordingPlatform world;
  world.settings[kTracePort] = std::string();
  for (int i = 0; i < 2; ++i) {
    world.reply(envelope_text("r", ""));
    Global::sendXML(request(), "a", "http://h/", 1);
  }
  EXPECT_EQ(std::count(world.record.transport.begin(), world.record.transport.end(), "NoProxy"), 2);
}

TEST(SendXml, TracesForTheMaskBitWithIsBrimvale) {
  RecordingPlatform world;
  world.log_mask = 0x40;
  world.tracing_file = "/traffic";
  session().isBrimvale = true;
  world.reply(envelope_text("r", ""));
  Global::sendXML(request(), "a", "http://h/", 1);
  EXPECT_EQ(world.record.transport.front(), "Option tracing.file \"/traffic\"");
  // The setting is asked all the same.
  EXPECT_EQ(world.record.settings.front(),
            R"(Exists HKCU\Software\Brimvale\Torvex\appData\TraceSoapTraffic)");
}

TEST(SendXml, TracesForTheSettingWithoutIsBrimvale) {
  RecordingPlatform world;
  world.tracing_file = "/traffic";
  world.settings[kTraceSoapTraffic] = std::string("True");
  world.reply(envelope_text("r", ""));
  Global::sendXML(request(), "a", "http://h/", 1);
  EXPECT_EQ(world.record.transport.front(), "Option tracing.file \"/traffic\"");
}

TEST(SendXml, DoesNotTraceForOtherMaskBits) {
  RecordingPlatform world;
  world.log_mask = 0x7FFFFFBF;
  session().isBrimvale = true;
  world.reply(envelope_text("r", ""));
  Global::sendXML(request(), "a", "http://h/", 1);
  EXPECT_EQ(world.record.transport.front(), "NoProxy");
}

TEST(SendXml, AFaultGivesTheServersTextAndLeavesTheHeartBeatTime) {
  RecordingPlatform world;
  world.reply(fault_text("Server", "no such thing"));
  const SoapEnvelope envelope = request();
  const Error error = error_of([&] { Global::sendXML(envelope, "a", "http://h/", 1); });
  EXPECT_EQ(error.number, kSoapFault);
  EXPECT_EQ(error.source, "SoapEnvelope");
  EXPECT_EQ(error.description, "no such thing");
  EXPECT_EQ(session().LastHeartBeat, Date{});
  // The line shows the error as it was raised, and no timing line was written.
  EXPECT_EQ(world.record.log.back(),
            "LogError Global.sendXML 0x80044201 \"SoapEnvelope\" \"The reply is a SOAP fault\" 0");
  for (const auto& line : world.record.log) {
    EXPECT_EQ(line.find("LogAtLevel"), std::string::npos) << line;
  }
  EXPECT_EQ(to_text(envelope.Parameters().ItemByName("faultcode").Value()), "Server");
}

TEST(SendXml, AFaultWithoutFaultstringKeepsTheDescriptionOfTheParse) {
  RecordingPlatform world;
  world.reply(
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><e:Fault>"
      "<faultcode>Server</faultcode></e:Fault></e:Body></e:Envelope>");
  const Error error = error_of([&] { Global::sendXML(request(), "a", "http://h/", 1); });
  EXPECT_EQ(error.number, kSoapFault);
  EXPECT_EQ(error.description, "The reply is a SOAP fault");
}

TEST(SendXml, TheLastOfSeveralFaultstringsWins) {
  RecordingPlatform world;
  world.reply(
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><e:Fault>"
      "<faultstring>one</faultstring><faultstring>two</faultstring></e:Fault></e:Body>"
      "</e:Envelope>");
  EXPECT_EQ(error_of([&] { Global::sendXML(request(), "a", "http://h/", 1); }).description, "two");
}

TEST(SendXml, ANetworkFailurePassesWithTheTransportsNumberAndText) {
  RecordingPlatform world;
  world.fail_send(Error(kConnectionLost, "HTTPTransport", "lost", "h.chm", 3));
  const Error error = error_of([&] { Global::sendXML(request(), "a", "http://h/", 1); });
  EXPECT_EQ(error.number, kConnectionLost);
  EXPECT_EQ(error.source, "HTTPTransport");
  EXPECT_EQ(error.description, "lost");
  EXPECT_EQ(error.helpFile, "");
  EXPECT_EQ(error.helpContext, 0);
  EXPECT_EQ(session().LastHeartBeat, Date{});
}

TEST(SendXml, ARequestParameterNamedFaultstringTakesTheDescriptionsPlaceInANetworkFailure) {
  RecordingPlatform world;
  world.fail_send(Error(kConnectionLost, "HTTPTransport", "lost"));
  const SoapEnvelope envelope = request();
  envelope.Parameters().Create("faultstring", "mine");
  const Error error = error_of([&] { Global::sendXML(envelope, "a", "http://h/", 1); });
  EXPECT_EQ(error.number, kConnectionLost);
  EXPECT_EQ(error.description, "mine");
  EXPECT_EQ(world.record.log.back(),
            "LogError Global.sendXML 0x80044307 \"HTTPTransport\" \"lost\" 0");
}

TEST(SendXml, ASpanAcrossMidnightIsNegativeAndStaysSo) {
  RecordingPlatform world;
  world.timer = {86399.5, 0.5};
  world.reply(envelope_text("r", ""));
  Global::sendXML(request(), "a", "http://h/", 1);
  EXPECT_EQ(world.record.log.at(world.record.log.size() - 2),
            "LogAtLevel 16 Global.sendXML \"Time to execute r: -86399\" 0");
}

TEST(SendXml, TakesTheTimerAsA32BitFloat) {
  RecordingPlatform world;
  // As 32-bit floats near 50000 the readings are multiples of 1/256: the difference is 0.1015625.
  world.timer = {50000.0, 50000.1};
  world.reply(envelope_text("r", ""));
  Global::sendXML(request(), "a", "http://h/", 1);
  EXPECT_EQ(world.record.log.at(world.record.log.size() - 2),
            "LogAtLevel 16 Global.sendXML \"Time to execute r: 0.1015625\" 0");
}

TEST(SendXml, ASpanOfAHundredThousandthOfASecondHasAnExponent) {
  RecordingPlatform world;
  world.timer = {0.0, 0.00001};
  world.reply(envelope_text("r", ""));
  Global::sendXML(request(), "a", "http://h/", 1);
  EXPECT_EQ(world.record.log.at(world.record.log.size() - 2),
            "LogAtLevel 16 Global.sendXML \"Time to execute r: 1E-05\" 0");
}

TEST(SendXml, AFailedRequestLeavesTheTransportForTheNext) {
  RecordingPlatform world;
  const auto transport = session().Transport();
  world.fail_receive(Error(kConnectionLost, "HTTPTransport", "cut"));
  EXPECT_EQ(error_of([&] { Global::sendXML(request(), "a", "http://h/", 1); }).number,
            kConnectionLost);
  world.reply(envelope_text("r", "<x>1</x>"));
  const SoapEnvelope envelope = request();
  Global::sendXML(envelope, "a", "http://h/", 1);
  EXPECT_EQ(envelope.Parameters().Item(0).Name(), "x");
  EXPECT_EQ(world.sent.size(), 2U);
  EXPECT_EQ(world.transports_made, 1) << "the second request went out by another transport";
  EXPECT_EQ(session().Transport(), transport);
}

TEST(GetHttpTransport, MakesTheTransportReadyWithTheDefaultTimeout) {
  RecordingPlatform world;
  world.settings[kTracePort] = std::string("8888");
  world.settings[kTraceSoapTraffic] = std::string("True");
  world.tracing_file = "/traffic";
  EXPECT_EQ(Global::getHTTPTransport("urn:Action"), session().Transport());
  EXPECT_EQ(world.record.transport,
            (Lines{"Option tracing.file \"/traffic\"", "setProxy \"localhost\" \"8888\"",
                   "SOAPAction \"urn:Action\"", "Timeout 300000"}));
  EXPECT_EQ(world.record.log.front(), "EnterMethod Global.getHTTPTransport 1");
  EXPECT_EQ(world.record.log.back(), "ExitMethod Global.getHTTPTransport 1");
}

TEST(GetResponseEnvelope, SendsReadsAndReturnsTheSameEnvelopeWithoutATimingLine) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<return>R</return>"));
  const SoapEnvelope envelope = request();
  const std::string text = envelope.Serialize();
  EXPECT_EQ(Global::getResponseEnvelope(envelope, session().Transport(), "http://h/"), envelope);
  EXPECT_EQ(world.sent.at(0).text, text);
  EXPECT_EQ(world.record.all, (Lines{"EnterMethod Global.getResponseEnvelope 1",
                                     "Send \"http://h/\"", "Receive \"UTF-8\"",
                                     "LogAtLevel 4 Global.LastHeartBeat \"Heart Beat Time Updated: "
                                     "1/5/2007 1:04:09 PM\" 0",
                                     "ExitMethod Global.getResponseEnvelope 1"}));
}

TEST(GetResponseEnvelope, AFaultGivesTheServersText) {
  RecordingPlatform world;
  world.reply(fault_text("Server", "no such thing"));
  const Error error =
      error_of([&] { Global::getResponseEnvelope(request(), session().Transport(), "http://h/"); });
  EXPECT_EQ(error.number, kSoapFault);
  EXPECT_EQ(error.description, "no such thing");
  EXPECT_EQ(world.record.log.back(),
            "LogError Global.getResponseEnvelope 0x80044201 \"SoapEnvelope\" "
            "\"The reply is a SOAP fault\" 0");
}

TEST(GetResponseEnvelope, AFaultWithoutFaultstringLeavesWithTheMissingNodeAndNoLogLine) {
  RecordingPlatform world;
  world.reply(
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><e:Fault>"
      "<faultcode>Server</faultcode></e:Fault></e:Body></e:Envelope>");
  const Error error =
      error_of([&] { Global::getResponseEnvelope(request(), session().Transport(), "http://h/"); });
  EXPECT_EQ(error.number, error_numbers::kNoSuchNode);
  EXPECT_EQ(world.record.log, Lines{"EnterMethod Global.getResponseEnvelope 1"});
}

TEST(GetResponseEnvelope, AnotherErrorLooksForNoFaultstring) {
  RecordingPlatform world;
  world.fail_send(Error(kConnectionLost, "HTTPTransport", "lost"));
  const SoapEnvelope envelope = request();
  envelope.Parameters().Create("faultstring", "mine");
  EXPECT_EQ(error_of([&] {
              Global::getResponseEnvelope(envelope, session().Transport(), "http://h/");
            }).description,
            "lost");
}

TEST(SendXmlAndLoadDoc, LoadsTheRawReplyAndAlwaysTakesTheDefaultTimeout) {
  RecordingPlatform world;
  world.reply("<any doc='1'/>");
  XMLDocument document;
  EXPECT_TRUE(Global::sendXMLAndLoadDoc(&document, "urn:A", "<text/>", "http://h/").empty());
  EXPECT_EQ(document.documentElement().Name(), "any");
  EXPECT_EQ(world.sent.at(0).text, "<text/>");
  EXPECT_EQ(world.record.transport, (Lines{"SOAPAction \"urn:A\"", "NoProxy", "Timeout 300000",
                                           "Send \"http://h/\"", "Receive \"UTF-8\""}));
  EXPECT_EQ(session().LastHeartBeat, world.now);
  EXPECT_EQ(world.record.log.front(), "EnterMethod Global.sendXMLAndLoadDoc 1");
  EXPECT_EQ(world.record.log.back(), "ExitMethod Global.sendXMLAndLoadDoc 1");
}

TEST(SendXmlAndLoadDoc, ForADocumentOfNothingLeavesTheReplyUnreadAndCountsAsABeatAllTheSame) {
  RecordingPlatform world;
  world.reply("<any/>");
  Global::sendXMLAndLoadDoc(nullptr, "urn:A", "<text/>", "http://h/");
  EXPECT_EQ(world.record.transport.back(), "Send \"http://h/\"");
  EXPECT_EQ(session().LastHeartBeat, world.now);
}

TEST(SendXmlAndLoadDoc, ABlankSoapActionLeavesTheOneOfTheRequestBefore) {
  RecordingPlatform world;
  for (const char* action : {"", "   "}) {
    world.reply("<any/>");
    Global::sendXMLAndLoadDoc(nullptr, action, "<text/>", "http://h/");
  }
  world.reply("<any/>");
  Global::sendXMLAndLoadDoc(nullptr, " urn:A ", "<text/>", "http://h/");
  Lines actions;
  for (const auto& line : world.record.transport) {
    if (line.starts_with("SOAPAction")) actions.push_back(line);
  }
  EXPECT_EQ(actions, Lines{"SOAPAction \" urn:A \""});
}

TEST(SendXmlAndLoadDoc, AReplyThatIsNotWellFormedLeavesAnEmptyDocumentAndRaisesNothing) {
  RecordingPlatform world;
  world.reply("<any><broken>");
  XMLDocument document;
  ASSERT_TRUE(document.load("<before/>"));
  Global::sendXMLAndLoadDoc(&document, "urn:A", "<text/>", "http://h/");
  EXPECT_TRUE(document.empty());
  EXPECT_EQ(document.xml(), "");
}

TEST(SendXmlAndLoadDoc, AFailureGoesThroughThePlainTail) {
  RecordingPlatform world;
  world.fail_send(Error(kConnectionLost, "HTTPTransport", "lost"));
  XMLDocument document;
  const Error error =
      error_of([&] { Global::sendXMLAndLoadDoc(&document, "urn:A", "<text/>", "http://h/"); });
  EXPECT_EQ(error.number, kConnectionLost);
  EXPECT_EQ(world.record.log.back(),
            "LogError Global.sendXMLAndLoadDoc 0x80044307 \"HTTPTransport\" \"lost\" 0");
  EXPECT_EQ(session().LastHeartBeat, Date{});
}

TEST(InlineTransport, LeavesTheSoapActionAndTracesToTheLogFile) {
  RecordingPlatform world;
  world.log_file = "/log";
  world.settings[kTraceSoapTraffic] = std::string("True");
  inline_transport(TracingRule::kLogFile);
  EXPECT_EQ(world.record.transport,
            (Lines{"Option tracing.file \"/log\"", "NoProxy", "Timeout 300000"}));
}

TEST(InlineTransport, ByTheMaskAloneDoesNotAskTheSetting) {
  RecordingPlatform world;
  world.log_file = "/log";
  world.log_mask = 0x40;
  world.settings[kTraceSoapTraffic] = std::string("True");
  inline_transport(TracingRule::kLogFileByMaskAlone);
  EXPECT_EQ(world.record.transport, (Lines{"NoProxy", "Timeout 300000"}));
  for (const auto& line : world.record.settings) {
    EXPECT_EQ(line.find("TraceSoapTraffic"), std::string::npos) << line;
  }
  session().isBrimvale = true;
  world.record.clear();
  inline_transport(TracingRule::kLogFileByMaskAlone);
  EXPECT_EQ(world.record.transport.front(), "Option tracing.file \"/log\"");
}

}  // namespace
}  // namespace bvconn

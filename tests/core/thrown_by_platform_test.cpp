#include <gtest/gtest.h>

#include <stdexcept>

#include "bvconn/core/envelope.h"
#include "bvconn/core/logging.h"
#include "bvconn/core/session_state.h"
#include "bvconn/core/settings.h"
#include "bvconn/core/transport.h"
#include "bvconn/platform/error_numbers.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

// What the objects of a platform throw may be anything: an application wrote them.
namespace bvconn {
namespace {

using error_numbers::from_bits;
using test::envelope_text;
using test::error_of;
using test::RecordingPlatform;

/// Lets the object whose line begins so throw an exception that is no `Error`.
void break_at(RecordingPlatform& world, const std::string& beginning) {
  world.on_line = [beginning](const std::string& line) {
    if (line.starts_with(beginning)) throw std::runtime_error("its words");
  };
}

void expect_its_words(const Error& error) {
  EXPECT_EQ(error.number, from_bits(0x80004005));
  EXPECT_EQ(error.source, "BVConn");
  EXPECT_EQ(error.description, "its words");
}

TEST(ThrownByTheTransport, LeavesSendXmlAsAnErrorThatWasLogged) {
  for (const char* where : {"SOAPAction", "Send", "Receive"}) {
    RecordingPlatform world;
    if (where == std::string_view("Receive")) world.reply("");
    break_at(world, where);
    const SoapEnvelope envelope = SoapEnvelope::make();
    envelope.SetMethod("m", "urn:x");
    expect_its_words(error_of([&] { Global::sendXML(envelope, "urn:x", "http://h/", 0); }));
    EXPECT_EQ(world.record.log.back(),
              "LogError Global.sendXML 0x80004005 \"BVConn\" \"its words\" 0");
  }
}

TEST(ThrownByTheTransport, LeavesTheTwoStepsAsAnErrorThatWasLogged) {
  RecordingPlatform world;
  break_at(world, "NoProxy");
  expect_its_words(error_of([] { Global::getHTTPTransport("urn:x"); }));
  EXPECT_EQ(world.record.log.back(),
            "LogError Global.getHTTPTransport 0x80004005 \"BVConn\" \"its words\" 0");
  break_at(world, "Send");
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.SetMethod("m", "urn:x");
  expect_its_words(
      error_of([&] { Global::getResponseEnvelope(envelope, session().Transport(), "http://h/"); }));
  EXPECT_EQ(world.record.log.back(),
            "LogError Global.getResponseEnvelope 0x80004005 \"BVConn\" \"its words\" 0");
}

TEST(ThrownByTheTransport, LeavesSendXmlAndLoadDocAsAnErrorThatWasLogged) {
  RecordingPlatform world;
  break_at(world, "Timeout");
  expect_its_words(
      error_of([] { Global::sendXMLAndLoadDoc(nullptr, "urn:x", "<x/>", "http://h/"); }));
  EXPECT_EQ(world.record.log.back(),
            "LogError Global.sendXMLAndLoadDoc 0x80004005 \"BVConn\" \"its words\" 0");
}

TEST(ThrownByTheSettings, LeavesTracePortAndDefaultTimeoutAsAnErrorThatWasLogged) {
  RecordingPlatform world;
  break_at(world, "ReadString");
  expect_its_words(error_of([] { Global::TracePort(); }));
  EXPECT_EQ(world.record.log.back(),
            "LogError Global.TracePort 0x80004005 \"BVConn\" \"its words\" 0");
  break_at(world, "ReadNumber");
  expect_its_words(error_of([] { Global::DefaultTimeout(); }));
  EXPECT_EQ(world.record.log.back(),
            "LogError Global.DefaultTimeout 0x80004005 \"BVConn\" \"its words\" 0");
}

TEST(ThrownByTheSettings, IsLoggedByTraceSoapTrafficAndGoesNoFurther) {
  RecordingPlatform world;
  break_at(world, "Exists");
  EXPECT_FALSE(Global::TraceSoapTraffic());
  EXPECT_EQ(world.record.log.back(),
            "LogError Global.TraceSoapTraffic() - Property Get 0x80004005 \"BVConn\" "
            "\"its words\" 0");
  break_at(world, "Write");
  EXPECT_NO_THROW(Global::TraceSoapTraffic(true));
  EXPECT_EQ(world.record.log.back(),
            "LogError clsSessionInfo.TraceSoapTraffic 0x80004005 \"BVConn\" \"its words\" 0");
}

TEST(ThrownByTheSettings, IsMetByAFactoryThatCannotMakeThem) {
  RecordingPlatform world;
  platform::Platform without = platform::current();
  without.settings = []() -> std::unique_ptr<RegistryAccess> { throw 42; };
  const platform::ScopedPlatform scope(without);
  EXPECT_EQ(error_of([] { Global::TracePort(); }).number, from_bits(0x80004005));
  EXPECT_FALSE(Global::TraceSoapTraffic());
}

TEST(ThrownByTheLogger, InATailLeavesAsAnErrorInPlaceOfTheFirst) {
  RecordingPlatform world;
  break_at(world, "LogError");
  expect_its_words(
      error_of([] { plain_tail({.cls = "BVThing", .method = "Do"}, Error(51, "deep", "why")); }));
  world.settings_error = Error(51, "deep", "why");
  expect_its_words(error_of([] { Global::TraceSoapTraffic(); }));
  expect_its_words(error_of([] { Global::TraceSoapTraffic(true); }));
  world.settings_error.reset();
  world.fail_send(Error(51, "deep", "why"));
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.SetMethod("m", "urn:x");
  expect_its_words(error_of([&] { Global::sendXML(envelope, "urn:x", "http://h/", 0); }));
}

}  // namespace
}  // namespace bvconn

#include "bvconn/connectors/session/bv_heart_beat_connector.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <stdexcept>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using Lines = std::vector<std::string>;
using test::envelope_text;
using test::error_of;
using test::fault_text;
using test::RecordingPlatform;

const std::string kEnter = "LogInfo BVHeartBeatConnector.sendHeartBeat() \"Entering Method...\" 0";
const std::string kExit = "LogInfo BVHeartBeatConnector.sendHeartBeat() \"Exiting Method...\" 0";
const std::string kBeatLine =
    "LogAtLevel 4 Global.LastHeartBeat \"Heart Beat Time Updated: 1/5/2007 1:04:09 PM\" 0";
const std::string kOkLine =
    "LogInfo BVHeartBeatConnector.sendHeartBeat \"Heartbeat Returned OK.\" 0";

std::string ok_reply() {
  return envelope_text("beatResponse", "<return>OK</return>");
}

Date minutes_ago(const RecordingPlatform& world, std::int64_t minutes) {
  return Date{world.now.milliseconds - minutes * 60000};
}

TEST(HeartBeat, GoesBySoapWithFiveSecondsAndAnEmptyMethodElement) {
  RecordingPlatform world;
  world.timer = {1.0, 1.25};
  world.reply(ok_reply());
  BVHeartBeatConnector().sendHeartBeat("http://h/soap", "S-3");
  ASSERT_EQ(world.sent.size(), 1U);
  EXPECT_EQ(world.sent[0].url, "http://h/soap");
  const SoapEnvelope sent = SoapEnvelope::make();
  sent.Parse(world.sent[0].text, "");
  EXPECT_EQ(sent.MethodName(), "beat");
  EXPECT_EQ(sent.Parameters().Count(), 0U);
  EXPECT_EQ(sent.Headers().ItemByName("userID").Value(), Variant("S-3"));
  EXPECT_EQ(world.record.transport,
            (Lines{"NoProxy", "SOAPAction \"urn:HeartBeatService\"", "Timeout 5000",
                   "Send \"http://h/soap\"", "Receive \"UTF-8\""}));
  EXPECT_EQ(world.record.log,
            (Lines{kEnter, "EnterMethod Global.getEnvelope 1", "ExitMethod Global.getEnvelope 1",
                   "EnterMethod Global.sendXML 1",
                   "LogInfo Global.TraceSoapTraffic() - Property Get \"Entering Method...\" 0",
                   "LogInfo Global.TraceSoapTraffic() - Property Get \"Entering Method...\" 0",
                   "EnterMethod Global.TracePort 2", "ExitMethod Global.TracePort 2", kBeatLine,
                   "LogAtLevel 16 Global.sendXML \"Time to execute beatResponse: 0.25\" 0",
                   "ExitMethod Global.sendXML 1", kBeatLine, kOkLine, kExit}));
}

TEST(HeartBeat, GoesThroughTheDataAccessLayerWithoutASession) {
  RecordingPlatform world;
  world.use_dal();
  world.dal_answers["HeartBeatService.sendHeartBeat"] = ok_reply();
  BVHeartBeatConnector().sendHeartBeat("http://h/", "S-3");
  EXPECT_EQ(world.record.dal, Lines{"HeartBeatService.sendHeartBeat()"});
  EXPECT_TRUE(world.sent.empty());
  EXPECT_EQ(world.record.log, (Lines{kEnter, kBeatLine, kOkLine, kExit}));
  EXPECT_EQ(session().LastHeartBeat, world.now);
}

TEST(HeartBeat, DisabledOnTheDataAccessLayerGoesBySoap) {
  RecordingPlatform world;
  world.use_dal();
  session().DisabledDALServices = "urn:HeartBeatService.beat|";
  world.reply(ok_reply());
  BVHeartBeatConnector().sendHeartBeat("http://h/", "S-3");
  EXPECT_TRUE(world.record.dal.empty());
  EXPECT_EQ(world.sent.size(), 1U);
}

TEST(HeartBeat, KeepsIsBrimvaleAtEachCallAlsoWhenItFails) {
  RecordingPlatform world;
  world.fail_send(Error(error_numbers::kTimeout, "HTTPTransport", "slow"));
  BVHeartBeatConnector connector;
  connector.sendHeartBeat("http://h/", "S", true);
  EXPECT_TRUE(session().isBrimvale);
  world.reply(ok_reply());
  connector.sendHeartBeat("http://h/", "S");
  EXPECT_FALSE(session().isBrimvale);
}

TEST(HeartBeat, AnAnswerInSmallLettersIsLoggedButHasMovedTheTimeAlready) {
  RecordingPlatform world;
  world.reply(envelope_text("beatResponse", "<return>ok</return>"));
  int events = 0;
  BVHeartBeatConnector connector;
  connector.HeartBeatError = [&] { ++events; };
  EXPECT_NO_THROW(connector.sendHeartBeat("http://h/", "S"));
  EXPECT_EQ(world.record.log.back(),
            "LogError BVHeartBeatConnector.sendHeartBeat 0x80040064 \"Heart.Beat\" "
            "\"Server did not return OK\" 0");
  EXPECT_EQ(session().LastHeartBeat, world.now);
  EXPECT_EQ(events, 0);
}

TEST(HeartBeat, ATimeOutIsLoggedAndDoesNotReachTheCaller) {
  RecordingPlatform world;
  world.fail_send(Error(error_numbers::kTimeout, "HTTPTransport", "no reply within 5000 ms"));
  EXPECT_NO_THROW(BVHeartBeatConnector().sendHeartBeat("http://h/", "S"));
  EXPECT_EQ(world.record.log.back(),
            "LogError BVHeartBeatConnector.sendHeartBeat 0x80044302 \"HTTPTransport\" "
            "\"no reply within 5000 ms\" 0");
}

TEST(HeartBeat, AServerFaultIsLoggedAndDoesNotReachTheCaller) {
  RecordingPlatform world;
  world.reply(fault_text("Server", "server's words"));
  EXPECT_NO_THROW(BVHeartBeatConnector().sendHeartBeat("http://h/", "S"));
  EXPECT_EQ(world.record.log.back(),
            "LogError BVHeartBeatConnector.sendHeartBeat 0x80044201 \"SoapEnvelope\" "
            "\"server's words\" 0");
}

TEST(HeartBeat, ALostConnectionWritesALineOfItsOwnAndNoErrorLineOfTheOperation) {
  RecordingPlatform world;
  world.fail_send(Error(error_numbers::kConnectionLost, "HTTPTransport", "lost"));
  BVHeartBeatConnector().sendHeartBeat("http://h/", "S");
  EXPECT_EQ(world.record.log.back(),
            "LogAtLevel 1 BVHeartBeatConnector.sendHeartBeat \"Automation Error received, exiting "
            "sub, will resend in 1 minute.\" 0");
  for (const auto& line : world.record.log) {
    EXPECT_FALSE(line.starts_with("LogError BVHeartBeatConnector")) << line;
  }
}

TEST(HeartBeat, WithoutAnyContactBeforeTheFirstFailedBeatRaisesTheEventAtOnce) {
  RecordingPlatform world;
  int events = 0;
  BVHeartBeatConnector connector;
  connector.HeartBeatError = [&] { ++events; };
  world.fail_send(Error(error_numbers::kCannotConnect, "HTTPTransport", "dead"));
  connector.sendHeartBeat("http://h/", "S");
  EXPECT_EQ(events, 1);
}

TEST(HeartBeat, AfterUpdateHeartBeatTimeTheFirstFailedBeatIsSilent) {
  RecordingPlatform world;
  int events = 0;
  BVHeartBeatConnector connector;
  connector.HeartBeatError = [&] { ++events; };
  connector.UpdateHeartBeatTime();
  world.fail_send(Error(error_numbers::kCannotConnect, "HTTPTransport", "dead"));
  connector.sendHeartBeat("http://h/", "S");
  EXPECT_EQ(events, 0);
}

TEST(HeartBeat, SixteenMinutesOfSilenceRaiseTheEventAtEachFailedBeat) {
  RecordingPlatform world;
  int events = 0;
  BVHeartBeatConnector connector;
  connector.HeartBeatError = [&] { ++events; };
  session().LastHeartBeat = minutes_ago(world, 16);
  for (int beat = 1; beat <= 2; ++beat) {
    world.fail_send(Error(error_numbers::kConnectionLost, "HTTPTransport", "lost"));
    connector.sendHeartBeat("http://h/", "S");
    EXPECT_EQ(events, beat);
  }
}

TEST(HeartBeat, ExactlyFifteenMinutesRaiseNoEvent) {
  RecordingPlatform world;
  int events = 0;
  BVHeartBeatConnector connector;
  connector.HeartBeatError = [&] { ++events; };
  session().LastHeartBeat = minutes_ago(world, 15);
  world.fail_send(Error(error_numbers::kCannotConnect, "HTTPTransport", "dead"));
  connector.sendHeartBeat("http://h/", "S");
  EXPECT_EQ(events, 0);
}

TEST(HeartBeat, CountsMinuteBoundariesNotSeconds) {
  RecordingPlatform world;
  int events = 0;
  BVHeartBeatConnector connector;
  connector.HeartBeatError = [&] { ++events; };
  // 12:48:59 to 13:04:09 is a little over 15 minutes, and 16 boundaries.
  session().LastHeartBeat =
      from_civil({.year = 2007, .month = 1, .day = 5, .hour = 12, .minute = 48, .second = 59});
  world.fail_send(Error(error_numbers::kCannotConnect, "HTTPTransport", "dead"));
  connector.sendHeartBeat("http://h/", "S");
  EXPECT_EQ(events, 1);
}

TEST(HeartBeat, WithoutAHandlerALongSilenceIsJustLogged) {
  RecordingPlatform world;
  session().LastHeartBeat = minutes_ago(world, 16);
  world.fail_send(Error(error_numbers::kCannotConnect, "HTTPTransport", "dead"));
  EXPECT_NO_THROW(BVHeartBeatConnector().sendHeartBeat("http://h/", "S"));
  // The silence itself, and nothing of an event that nobody takes.
  Lines own_lines;
  for (const auto& line : world.record.log) {
    if (line.find(" BVHeartBeatConnector.") != std::string::npos) own_lines.push_back(line);
  }
  EXPECT_EQ(own_lines,
            (Lines{"LogInfo BVHeartBeatConnector.sendHeartBeat() \"Entering Method...\" 0",
                   "LogError BVHeartBeatConnector.sendHeartBeat 0x80044301 \"HTTPTransport\" "
                   "\"dead\" 0"}));
}

TEST(HeartBeat, WhatAHandlerThrowsIsLoggedAndGoesNoFurther) {
  struct Case {
    std::function<void()> handler;
    std::string shown;
  };
  const std::vector<Case> cases{
      {[] { throw Error(51, "deep", "why"); }, "51 \"deep\" \"why\" 0"},
      {[] { throw std::runtime_error("its words"); }, "0x80004005 \"BVConn\" \"its words\" 0"},
      {[] { throw std::bad_alloc(); }, "7 \"BVConn\" \"out of memory\" 0"},
      {[] { throw 42; }, "0x80004005 \"BVConn\" \"an exception that says nothing of itself\" 0"},
  };
  for (const Case& each : cases) {
    RecordingPlatform world;
    BVHeartBeatConnector connector;
    connector.HeartBeatError = each.handler;
    world.fail_send(Error(error_numbers::kCannotConnect, "HTTPTransport", "dead"));
    EXPECT_NO_THROW(connector.sendHeartBeat("http://h/", "S"));
    ASSERT_GE(world.record.log.size(), 2U);
    EXPECT_EQ(
        world.record.log[world.record.log.size() - 2],
        "LogError BVHeartBeatConnector.sendHeartBeat 0x80044301 \"HTTPTransport\" \"dead\" 0");
    EXPECT_EQ(world.record.log.back(), "LogError BVHeartBeatConnector.sendHeartBeat " + each.shown);
  }
}

TEST(HeartBeat, AHandlerThatPutsAnotherInItsPlaceLivesUntilItReturns) {
  RecordingPlatform world;
  BVHeartBeatConnector connector;
  bool lived = false;
  int others = 0;
  connector.HeartBeatError = [&connector, &lived, &others, kept = std::make_shared<int>(0)] {
    const std::weak_ptr<int> watched = kept;
    bool& result = lived;
    connector.HeartBeatError = [&others] { ++others; };
    result = !watched.expired();
  };
  world.fail_send(Error(error_numbers::kCannotConnect, "HTTPTransport", "dead"));
  connector.sendHeartBeat("http://h/", "S");
  EXPECT_TRUE(lived);
  EXPECT_EQ(others, 0);
  world.fail_send(Error(error_numbers::kCannotConnect, "HTTPTransport", "dead"));
  connector.sendHeartBeat("http://h/", "S");
  EXPECT_EQ(others, 1);
}

TEST(HeartBeat, AHandlerThatDeletesTheConnectorLivesUntilItReturns) {
  RecordingPlatform world;
  auto connector = std::make_unique<BVHeartBeatConnector>();
  bool lived = false;
  connector->HeartBeatError = [&connector, &lived, kept = std::make_shared<int>(0)] {
    const std::weak_ptr<int> watched = kept;
    bool& result = lived;
    connector.reset();
    result = !watched.expired();
    throw Error(51, "handler", "after the connector is gone");
  };
  world.fail_send(Error(error_numbers::kCannotConnect, "HTTPTransport", "dead"));
  BVHeartBeatConnector* const plain = connector.get();
  EXPECT_NO_THROW(plain->sendHeartBeat("http://h/", "S"));
  EXPECT_EQ(connector, nullptr);
  EXPECT_TRUE(lived);
  EXPECT_TRUE(
      world.record.log.back().ends_with("51 \"handler\" \"after the connector is gone\" 0"));
}

TEST(HeartBeat, WhateverIsThrownOnTheWayIsLoggedAndDoesNotReachTheCaller) {
  const std::vector<std::function<void()>> thrown{
      [] { throw std::bad_alloc(); }, [] { throw std::runtime_error("words"); }, [] { throw 42; }};
  for (const auto& raise : thrown) {
    for (const std::string& where : {kEnter, std::string("NoProxy"), kOkLine}) {
      RecordingPlatform world;
      if (where == kOkLine) world.reply(ok_reply());
      world.on_line = [&](const std::string& line) {
        if (line == where) raise();
      };
      EXPECT_NO_THROW(BVHeartBeatConnector().sendHeartBeat("http://h/", "S", true)) << where;
      EXPECT_TRUE(
          world.record.log.back().starts_with("LogError BVHeartBeatConnector."
                                              "sendHeartBeat "))
          << world.record.log.back();
      EXPECT_EQ(session().isBrimvale, where != kEnter);
    }
  }
}

TEST(HeartBeat, WhatTheLoggerThrowsInItsTailLeavesItAsAnError) {
  RecordingPlatform world;
  world.on_line = [](const std::string& line) {
    if (line.starts_with("LogError BVHeartBeatConnector")) throw std::runtime_error("its words");
  };
  world.fail_send(Error(error_numbers::kCannotConnect, "HTTPTransport", "dead"));
  const Error error = error_of([] { BVHeartBeatConnector().sendHeartBeat("http://h/", "S"); });
  EXPECT_EQ(error.number, error_numbers::from_bits(0x80004005));
  EXPECT_EQ(error.description, "its words");
}

TEST(HeartBeat, OnlyAnErrorInsideItsOwnTailLeavesIt) {
  RecordingPlatform world;
  const std::string line =
      "LogError BVHeartBeatConnector.sendHeartBeat 0x80044301 \"HTTPTransport\" \"dead\" 0";
  world.log_failure = {line, Error(70, "SessionLogger", "disk full")};
  world.fail_send(Error(error_numbers::kCannotConnect, "HTTPTransport", "dead"));
  const Error error = error_of([&] { BVHeartBeatConnector().sendHeartBeat("http://h/", "S"); });
  EXPECT_EQ(error.number, 70);
}

TEST(HeartBeat, OnTheRouteWithoutServiceObjectsLogsThatTheyAreMissing) {
  RecordingPlatform world;
  session().UsingTorvexDAL = true;
  EXPECT_NO_THROW(BVHeartBeatConnector().sendHeartBeat("http://h/", "S"));
  EXPECT_TRUE(world.record.log.back().starts_with(
      "LogError BVHeartBeatConnector.sendHeartBeat 91 \"BVConn\" "));
}

TEST(UpdateHeartBeatTime, LogsAtLevelZeroAndMovesTheTime) {
  RecordingPlatform world;
  BVHeartBeatConnector().UpdateHeartBeatTime();
  EXPECT_EQ(session().LastHeartBeat, world.now);
  EXPECT_EQ(world.record.log,
            (Lines{"EnterMethod BVHeartBeatConnector.UpdateHeartBeatTime 0", kBeatLine,
                   "ExitMethod BVHeartBeatConnector.UpdateHeartBeatTime 0"}));
}

TEST(UpdateHeartBeatTime, AtMidnightLogsTheDateAlone) {
  RecordingPlatform world;
  world.now = from_civil({.year = 2007, .month = 1, .day = 6});
  BVHeartBeatConnector().UpdateHeartBeatTime();
  EXPECT_EQ(world.record.log.at(1),
            "LogAtLevel 4 Global.LastHeartBeat \"Heart Beat Time Updated: 1/6/2007\" 0");
}

TEST(UpdateHeartBeatTime, HasThePlainTail) {
  RecordingPlatform world;
  world.log_failure = {kBeatLine, Error(70, "SessionLogger", "disk full", "h.chm", 4)};
  const Error error = error_of([&] { BVHeartBeatConnector().UpdateHeartBeatTime(); });
  EXPECT_EQ(error.number, 70);
  EXPECT_EQ(error.helpContext, 0);
  EXPECT_EQ(world.record.log.back(),
            "LogError BVHeartBeatConnector.UpdateHeartBeatTime 70 \"SessionLogger\" "
            "\"disk full\" 0");
}

}  // namespace
}  // namespace bvconn

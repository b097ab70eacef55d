#include "bvconn/platform/timeout_scope.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/core/transport.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using namespace std::chrono_literals;
using test::envelope_text;
using test::RecordingPlatform;
using testing::ElementsAre;

class TimeoutOfCalls : public testing::Test {
 protected:
  void send(std::int32_t timeout = 0) {
    world.reply(envelope_text("r", "<return>R</return>"));
    BVGenericConnector().Send("urn:T", "m", "Root", SoapNode::make("n"), "http://h/", timeout);
  }
  std::vector<std::string> timeouts() const {
    std::vector<std::string> lines;
    for (const auto& line : world.record.transport) {
      if (line.starts_with("Timeout")) lines.push_back(line);
    }
    return lines;
  }

  RecordingPlatform world;
};

TEST_F(TimeoutOfCalls, AScopeStandsInForTheDefaultAsLongAsItLives) {
  {
    const TimeoutScope limit(1500ms);
    send();
  }
  send();
  EXPECT_THAT(timeouts(), ElementsAre("Timeout 1500", "Timeout 300000"));
}

TEST_F(TimeoutOfCalls, TheInnermostScopeCountsAndThenTheOneAroundIt) {
  const TimeoutScope outer(2s);
  {
    const TimeoutScope inner(1s);
    send();
  }
  send();
  EXPECT_THAT(timeouts(), ElementsAre("Timeout 1000", "Timeout 2000"));
}

TEST_F(TimeoutOfCalls, ATimeOutOfTheOperationsOwnStays) {
  const TimeoutScope limit(1s);
  send(7000);
  send(-1);
  world.reply(envelope_text("r", "<return>OK</return>"));
  BVHeartBeatConnector().sendHeartBeat("http://h/", "S");
  EXPECT_THAT(timeouts(), ElementsAre("Timeout 7000", "Timeout -1", "Timeout 5000"));
}

TEST_F(TimeoutOfCalls, NegativeIsNoLimitAndZeroTheDefaultAgain) {
  const TimeoutScope none(-5s);
  send();
  const TimeoutScope back(0ms);
  send();
  const TimeoutScope longest(std::chrono::hours(24 * 365));
  send();
  EXPECT_THAT(timeouts(), ElementsAre("Timeout -1", "Timeout 300000", "Timeout 2147483647"));
}

TEST_F(TimeoutOfCalls, CountsOnEveryWayOfSending) {
  const TimeoutScope limit(1s);
  Global::getHTTPTransport("a");
  world.reply("<a/>");
  Global::sendXMLAndLoadDoc(nullptr, "a", "<x/>", "http://h/");
  inline_transport(TracingRule::kLogFile);
  EXPECT_THAT(timeouts(), ElementsAre("Timeout 1000", "Timeout 1000", "Timeout 1000"));
}

TEST_F(TimeoutOfCalls, TheSettingIsReadAndLoggedAllTheSame) {
  send();
  const auto without = world.record.log;
  world.record.clear();
  session() = SessionState();
  const TimeoutScope limit(1s);
  send();
  EXPECT_EQ(world.record.log, without);
  EXPECT_THAT(
      world.record.settings,
      testing::Contains(R"(ReadNumber HKLM\Software\Brimvale\Torvex\AppData\defaultTimeOut)"));
  EXPECT_EQ(session().DefaultTimeoutCache, 300000);
}

TEST_F(TimeoutOfCalls, AnotherThreadHasItsOwn) {
  const TimeoutScope limit(1s);
  std::optional<std::int32_t> there = 1;
  std::thread([&] { there = TimeoutScope::in_force(); }).join();
  EXPECT_EQ(there, std::nullopt);
  EXPECT_EQ(TimeoutScope::in_force(), 1000);
}

}  // namespace
}  // namespace bvconn

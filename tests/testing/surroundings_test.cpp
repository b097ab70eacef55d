// What a test's world has besides a server: settings, clock, log, logins, threads.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/testing/test_world.h"
#include "support/error_of.h"

namespace bvconn::test {
namespace {

namespace numbers = error_numbers;
using testing::ElementsAre;

SoapNode invoice() {
  return BVInvoiceConnector().GetInvoice("http://h/", "S", "U");
}

TEST(WorldSettings, AreReadByTheLibrary) {
  TestWorld world;
  world.next().replies("OK").repeatedly();
  world.set_setting(R"(HKLM\SOFTWARE\Brimvale\Torvex\AppData\defaultTimeOut)", std::int64_t{60000});
  invoice();
  EXPECT_EQ(world.last_call().timeout_ms, 60000);
  EXPECT_THAT(
      world.record().settings,
      testing::Contains(R"(ReadNumber HKLM\Software\Brimvale\Torvex\AppData\defaultTimeOut)"));
}

TEST(WorldSettings, AreThereWithoutRegardToCase) {
  TestWorld world;
  world.set_setting(R"(HKCU\Software\A\b)", "text");
  EXPECT_EQ(world.setting(R"(hkcu\software\a\B)"), SettingValue("text"));
  EXPECT_EQ(world.setting(R"(hkcu\software\a\c)"), std::nullopt);
}

TEST(WorldSettings, CanFail) {
  TestWorld world;
  world.fail_settings(Error(numbers::kSettingsUnusable, "RegistryAccess", "no access"));
  EXPECT_EQ(error_of([] { invoice(); }).number, numbers::kSettingsUnusable);
  EXPECT_TRUE(world.calls().empty());
}

TEST(WorldClock, StandsStillUntilItIsMoved) {
  TestWorld world;
  world.next().replies("OK").repeatedly();
  invoice();
  const Date first = session().LastHeartBeat;
  EXPECT_EQ(first,
            from_civil({.year = 2007, .month = 1, .day = 5, .hour = 13, .minute = 4, .second = 9}));
  invoice();
  EXPECT_EQ(session().LastHeartBeat, first);
  world.advance(std::chrono::minutes(5));
  invoice();
  EXPECT_EQ(minutes_between(first, session().LastHeartBeat), 5);
  world.set_now(Date{1000});
  EXPECT_EQ(world.now(), Date{1000});
}

TEST(WorldClock, MovesTheTimerWithIt) {
  TestWorld world;
  world.next().computes([&](const SeenCall&) {
    world.advance(std::chrono::milliseconds(1500));
    return ScriptedAnswer::reply("OK");
  });
  invoice();
  EXPECT_THAT(world.record().log,
              testing::Contains("LogAtLevel 16 Global.sendXML \"Time to execute "
                                "getInvoiceResponse: 1.5\" 0"));
}

TEST(WorldLogger, RecordsWhateverTheMask) {
  TestWorld world;
  world.next().replies("OK");
  invoice();
  EXPECT_EQ(world.record().log.front(), "EnterMethod BVInvoiceConnector.GetInvoice 1");
  world.forget_what_was_seen();
  EXPECT_TRUE(world.record().all.empty());
  EXPECT_TRUE(world.calls().empty());
}

TEST(WorldLogin, WorksWithoutAScript) {
  TestWorld world;
  BVConnectorObject object;
  object.UserName("joe");
  object.InitTorvexDAL("http://dal/");
  object.UseTorvexDAL();
  EXPECT_TRUE(object.UsingTorvexDAL());
  EXPECT_THAT(world.record().dal,
              ElementsAre("AuthenticationService.SetServerUrl(\"http://dal/\")",
                          "AuthenticationService.Login(\"joe\", \"\", \"\", \"US\")",
                          "AuthenticationService.GetDisabledServices()"));
  EXPECT_TRUE(world.record().messages.empty());
}

TEST(WorldLogin, FailsWhereTheScriptSaysSo) {
  TestWorld world;
  world.on("AuthenticationService.Login").fails(7002, "wrong password");
  BVConnectorObject().InitTorvexDAL("http://dal/");
  EXPECT_EQ(world.calls("AuthenticationService.GetDisabledServices").size(), 0U);
  EXPECT_EQ(world.calls("AuthenticationService.Login").size(), 1U);
  EXPECT_EQ(world.last_call().object_operation, "Login");
  EXPECT_EQ(world.last_call().name(), "BVConnectorObject.InitTorvexDAL");
}

TEST(WorldLogin, GivesTheDisabledMethodsOfTheScript) {
  TestWorld world;
  world.on("AuthenticationService.GetDisabledServices").answers("urn:A.b|");
  BVConnectorObject().InitTorvexDAL("http://dal/");
  EXPECT_TRUE(BVConnectorObject().IsDALDisabled("b", "urn:A"));
}

TEST(WorldTransport, AnswersTheApplicationsOwnRequestsToo) {
  TestWorld world;
  world.next().answers("<mine/>");
  const auto transport = BVConnectorObject().HTTPTransportObject();
  transport->Send("http://elsewhere/", "a text that is no envelope");
  EXPECT_EQ(transport->Receive("UTF-8"), "<mine/>");
  EXPECT_EQ(error_of([&] { transport->Receive("UTF-8"); }).number, numbers::kBadReply)
      << "a reply is handed out once";
  EXPECT_EQ(world.last_call().name(), "a request");
  EXPECT_EQ(world.last_call().text, "a text that is no envelope");
  EXPECT_TRUE(world.last_call().texts().empty());
}

TEST(TestWorlds, Nest) {
  TestWorld outer;
  outer.next().replies("outer").repeatedly();
  {
    TestWorld inner;
    inner.next().replies("inner");
    EXPECT_EQ(to_text(invoice().Value()), "inner");
  }
  EXPECT_EQ(to_text(invoice().Value()), "outer");
  EXPECT_EQ(outer.calls().size(), 1U);
}

TEST(TestWorlds, AnswerAllThreadsThatBeginInThem) {
  constexpr int kThreads = 4;
  constexpr int kCalls = 50;
  TestWorld world;
  world.on("BVInvoiceConnector.GetInvoice").replies("OK").repeatedly();
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([] {
      for (int call = 0; call < kCalls; ++call) invoice();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(world.calls("BVInvoiceConnector.GetInvoice").size(), std::size_t{kThreads * kCalls});
  EXPECT_TRUE(world.problems().empty());
}

TEST(TestWorlds, AreMissedByThreadsThatOutliveThem) {
  std::promise<void> called;
  std::promise<void> over;
  std::string words;
  std::thread thread;
  {
    TestWorld world;
    world.next().replies("OK");
    thread = std::thread([&] {
      invoice();
      called.set_value();
      over.get_future().wait();
      words = error_of([] { invoice(); }).description;
    });
    called.get_future().wait();
  }
  over.set_value();
  thread.join();
  EXPECT_EQ(words, "The test's world of this thread is gone: end the thread before it");
}

}  // namespace
}  // namespace bvconn::test

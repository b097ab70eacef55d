#include <gtest/gtest.h>

#include <thread>

#include "bvconn/connectors/documents/bv_submittal_connector.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/soap/variant.h"
#include "own_files.h"
#include "support/misbehaving_server.h"

namespace bvconn {
namespace {

using test::MisbehavingServer;
using test::OwnFiles;
namespace answers = test::answers;

constexpr int kCalls = 25;

std::string reply_of(const std::string& value) {
  return "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><r><return>" +
         value + "</return></r></e:Body></e:Envelope>";
}

// One thread's day: beats and invoices from its own server, under its own session.
void work(MisbehavingServer& server, const std::string& name, int& good) {
  for (int call = 0; call < kCalls; ++call) {
    server.answer({answers::reply(reply_of("OK")), answers::reply(reply_of(name))});
    BVHeartBeatConnector().sendHeartBeat(server.url("/soap"), name);
    const SoapNode invoice = BVInvoiceConnector().GetInvoice(server.url("/soap"), name, "U");
    if (invoice.Value() == Variant(name)) ++good;
  }
}

TEST(TwoSessions, WorkSideBySideWithoutSeeingEachOther) {
  OwnFiles files;
  ::setenv("BVCONN_LOG_MASK", "0x7F", 1);
  MisbehavingServer first;
  MisbehavingServer second;
  int first_good = 0;
  int second_good = 0;
  std::thread one([&] { work(first, "first", first_good); });
  std::thread two([&] { work(second, "second", second_good); });
  one.join();
  two.join();
  ::unsetenv("BVCONN_LOG_MASK");
  EXPECT_EQ(first_good, kCalls);
  EXPECT_EQ(second_good, kCalls);
  for (const auto& request : first.requests()) {
    EXPECT_NE(request.body.find(">first</userID>"), std::string::npos);
  }
  for (const auto& request : second.requests()) {
    EXPECT_NE(request.body.find(">second</userID>"), std::string::npos);
  }
  EXPECT_EQ(first.connections(), 1) << "a thread keeps its connection";
}

TEST(TwoSessions, TheRouteOfOneIsNotTheRouteOfTheOther) {
  OwnFiles files;
  MisbehavingServer dal;
  MisbehavingServer soap;
  const auto plain = [](const std::string& text) {
    return answers::reply(text, "200 OK", "text/plain");
  };
  dal.answer({answers::reply("welcome", "200 OK", "text/plain", {{"Session-Token", "T-1"}}),
              plain(""), plain(reply_of("OK"))});
  std::thread with_dal([&] {
    BVConnectorObject object;
    object.UserName("user");
    object.Password("password");
    object.InitTorvexDAL(dal.url("/dal"));
    object.UseTorvexDAL();
    BVHeartBeatConnector().sendHeartBeat(soap.url("/soap"), "S");
    EXPECT_NE(session().LastHeartBeat, Date{});
  });
  std::thread without([&] {
    soap.answer(answers::reply(reply_of("OK")));
    BVHeartBeatConnector().sendHeartBeat(soap.url("/soap"), "S");
    EXPECT_FALSE(BVConnectorObject().UsingTorvexDAL());
  });
  with_dal.join();
  without.join();
  EXPECT_EQ(soap.requests().size(), 1U);
  ASSERT_EQ(dal.requests().size(), 3U);
  EXPECT_NE(dal.requests()[2].bytes.find("POST /dal/HeartBeatService/sendHeartBeat "),
            std::string::npos);
  EXPECT_NE(dal.requests()[2].bytes.find("Authorization: Bearer T-1"), std::string::npos);
}

// Logs in from its destructor, when its thread has already let go of all that it had.
class LateCaller {
 public:
  explicit LateCaller(std::string url) : url_(std::move(url)) {}
  ~LateCaller() {
    const BVSubmittalConnector last_to_go;
    BVConnectorObject().InitTorvexDAL(url_);
  }
  LateCaller(const LateCaller&) = delete;
  LateCaller& operator=(const LateCaller&) = delete;

 private:
  std::string url_;
};

TEST(TwoSessions, ThatOfALateCallerClosesItsConnectionToTheDalToo) {
  OwnFiles files;
  MisbehavingServer dal;
  std::thread([&] {
    // Destroyed after the session, since it was there before.
    thread_local const LateCaller late(dal.url("/dal"));
    BVConnectorObject().InitTorvexDAL(dal.url("/dal"));
  }).join();
  EXPECT_EQ(dal.connections(), 2);
  EXPECT_TRUE(dal.wait_for_closed(2));
}

TEST(TwoSessions, ANodeCanBeHandedToAnotherThreadAfterTheCall) {
  OwnFiles files;
  MisbehavingServer server;
  server.answer(answers::reply(reply_of("R")));
  SoapNode invoice;
  std::thread([&] {
    invoice = BVInvoiceConnector().GetInvoice(server.url("/soap"), "S", "U");
  }).join();
  EXPECT_EQ(invoice.Value(), Variant("R"));
  std::thread([node = std::move(invoice)]() mutable { node = SoapNode(); }).join();
}

}  // namespace
}  // namespace bvconn

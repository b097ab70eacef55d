// Time-outs over real sockets, on both routes.
#include <gtest/gtest.h>

#include <chrono>

#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/thread_record.h"
#include "bvconn/platform/timeout_scope.h"
#include "own_files.h"
#include "support/error_of.h"
#include "support/misbehaving_server.h"

namespace bvconn::test {
namespace {

using namespace std::chrono_literals;

class LiveTimeout : public testing::Test {
 protected:
  void use_dal() {
    server.answer({answers::reply("welcome"), answers::reply("")});
    BVConnectorObject object;
    object.InitTorvexDAL(server.url("/dal"));
    object.UseTorvexDAL();
  }
  Error error_of_invoice() {
    return error_of([&] { BVInvoiceConnector().GetInvoice(server.url(), "S", "U"); });
  }
  Error error_of_search() {
    return error_of([&] { BVSearchConnector().SearchForBrands("S", server.url()); });
  }
  // Far from the default of five minutes, however busy the machine is.
  template <class Call>
  void expect_timed_out(std::chrono::milliseconds limit, Call call) {
    const auto begin = std::chrono::steady_clock::now();
    const Error error = call();
    const auto passed = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(hex_number(error.number), "0x80044302") << error.description;
    EXPECT_EQ(error.outcome, Outcome::kUnknown);
    EXPECT_GE(passed, limit - 10ms);
    EXPECT_LT(passed, 30s);
  }

  const detail::ThreadScope fresh;
  OwnFiles files;
  MisbehavingServer server;
};

TEST_F(LiveTimeout, AScopeEndsACallBySoap) {
  server.answer({answers::never(), answers::dribble("<slow/>", 100ms)});
  const TimeoutScope limit(200ms);
  expect_timed_out(200ms, [&] { return error_of_invoice(); });
  const TimeoutScope inner(300ms);
  expect_timed_out(300ms, [&] { return error_of_invoice(); });
}

TEST_F(LiveTimeout, AScopeEndsACallByTheDal) {
  use_dal();
  server.answer({answers::never(), answers::dribble("slow", 200ms)});
  const TimeoutScope limit(200ms);
  expect_timed_out(200ms, [&] { return error_of_search(); });
  const TimeoutScope inner(300ms);
  expect_timed_out(300ms, [&] { return error_of_search(); });
}

TEST_F(LiveTimeout, AScopeEndsALoginThatHangs) {
  server.answer(answers::never());
  const TimeoutScope limit(200ms);
  const auto begin = std::chrono::steady_clock::now();
  BVConnectorObject().InitTorvexDAL(server.url("/dal"));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 30s);
  EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(LiveTimeout, TheSettingEndsACallBySoap) {
  files.write("machine.toml", "['Software\\Brimvale\\Torvex\\AppData']\ndefaultTimeOut = 200\n");
  server.answer(answers::never());
  expect_timed_out(200ms, [&] { return error_of_invoice(); });
}

TEST_F(LiveTimeout, WithoutALimitASlowAnswerOfTheDalArrives) {
  use_dal();
  server.answer(Answer{{.kind = Step::Kind::kWait, .pause = 300ms}} +
                answers::reply("<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\">"
                               "<e:Body><r><return>R</return></r></e:Body></e:Envelope>"));
  const TimeoutScope limit(200ms);
  const TimeoutScope none(-1ms);
  EXPECT_EQ(BVSearchConnector().SearchForBrands("S", server.url()).Value(), Variant("R"));
}

}  // namespace
}  // namespace bvconn::test

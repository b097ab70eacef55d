// What the record says of calls over real connections.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error_numbers.h"
#include "live/own_files.h"
#include "support/misbehaving_server.h"

namespace bvconn::test {
namespace {

namespace numbers = error_numbers;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::StartsWith;

const std::string kReply =
    "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body>"
    "<r><return>R</return></r></e:Body></e:Envelope>";

class LiveExchange : public testing::Test {
 protected:
  void send(std::int32_t timeout = 5000) { send_to(server.url("/soap"), timeout); }
  static void send_to(const std::string& url, std::int32_t timeout = 5000) {
    BVGenericConnector().Send("urn:T", "m", "Root", SoapNode::make("n"), url, timeout, "SESSION-1");
  }
  Error error_of_sending(std::int32_t timeout = 5000) {
    return error_of([&] { send(timeout); });
  }
  static Error error_of(const std::function<void()>& call) {
    try {
      call();
    } catch (const Error& error) {
      return error;
    }
    ADD_FAILURE() << "no error was raised";
    return Error(0, "", "");
  }
  static Exchange last() { return session().LastExchange().value_or(Exchange()); }
  // Both the error and the record.
  static void expect(const Error& error, std::int32_t number, Outcome outcome) {
    EXPECT_EQ(hex_number(error.number), hex_number(number));
    EXPECT_EQ(error.outcome, outcome);
    EXPECT_EQ(last().outcome, outcome);
    EXPECT_EQ(last().error->number, number);
    EXPECT_EQ(last().error->description, error.description);
    EXPECT_EQ(last().raised, number);
  }

  OwnFiles files;
  MisbehavingServer server;
};

TEST_F(LiveExchange, ShowsStatusHeadersTimesAndCounts) {
  server.answer(answers::reply(kReply, "200 OK", answers::kXml,
                               {{"X-Served-By", "s1"}, {"Set-Cookie", "id=secret"}}));
  send();
  const Exchange exchange = last();
  EXPECT_EQ(exchange.outcome, Outcome::kAnswered);
  EXPECT_EQ(exchange.http_status, 200);
  EXPECT_THAT(exchange.reply_headers.text, StartsWith("HTTP/1.1 200 OK\r\n"));
  EXPECT_THAT(exchange.reply_headers.text, HasSubstr("X-Served-By: s1\r\n"));
  EXPECT_THAT(exchange.reply_headers.text, HasSubstr("Set-Cookie: ***\r\n"));
  EXPECT_EQ(exchange.reply.text, kReply);
  EXPECT_EQ(exchange.bytes_sent, server.last_request().body.size());
  EXPECT_EQ(exchange.bytes_received, kReply.size());
  EXPECT_GT(exchange.times.total_us, 0);
  EXPECT_EQ(exchange.times.tls_us, 0);
}

TEST_F(LiveExchange, TellsTheWaitForTheReplyFromItsTransfer) {
  Answer slow{{.kind = Step::Kind::kWait, .pause = 60ms}};
  server.answer(slow + answers::dribble("<a/>", 5ms));
  error_of_sending();
  const ExchangeTimes times = last().times;
  EXPECT_GE(times.wait_us, 55'000);
  EXPECT_GE(times.receive_us, 20'000);
  EXPECT_LT(times.send_us, times.wait_us);
  const std::int64_t sum = times.name_us + times.connect_us + times.tls_us + times.send_us +
                           times.wait_us + times.receive_us;
  EXPECT_NEAR(static_cast<double>(sum), static_cast<double>(times.total_us), 5'000.0);
}

TEST_F(LiveExchange, NoStepsTakeLongerThanTheWhole) {
  server.otherwise(answers::reply(kReply));
  for (int i = 0; i < 300; ++i) {
    send();
    const ExchangeTimes times = last().times;
    const std::int64_t sum = times.name_us + times.connect_us + times.tls_us + times.send_us +
                             times.wait_us + times.receive_us;
    ASSERT_LE(sum, times.total_us) << i;
  }
}

TEST_F(LiveExchange, AKeptConnectionTakesNoTimeToConnect) {
  server.answer(answers::reply(kReply));
  server.answer(answers::reply(kReply));
  send();
  EXPECT_GT(last().times.connect_us, 0);
  send();
  ASSERT_EQ(server.connections(), 1);
  EXPECT_EQ(last().times.name_us, 0);
  EXPECT_EQ(last().times.connect_us, 0);
}

TEST_F(LiveExchange, AFaultIsAnAnswer) {
  server.answer(answers::fault("out of order"));
  expect(error_of_sending(), numbers::kSoapFault, Outcome::kAnswered);
  EXPECT_EQ(last().http_status, 500);
  EXPECT_EQ(last().error->description, "out of order");
  EXPECT_THAT(last().reply.text, HasSubstr("out of order"));
}

TEST_F(LiveExchange, ARefusalIsAnAnswerAndShowsItsPage) {
  server.answer(answers::reply("<html>come back later</html>", "503 Busy", "text/html"));
  expect(error_of_sending(), numbers::kHttpStatus, Outcome::kAnswered);
  EXPECT_EQ(last().http_status, 503);
  EXPECT_EQ(last().reply.text, "<html>come back later</html>");
}

TEST_F(LiveExchange, ARedirectIsAnAnswer) {
  server.answer(answers::redirect("http://joe:pw@elsewhere/"));
  expect(error_of_sending(), numbers::kHttpStatus, Outcome::kAnswered);
  EXPECT_THAT(last().reply_headers.text, HasSubstr("Location: http://***@elsewhere/\r\n"));
}

TEST_F(LiveExchange, WhatIsNoHttpIsAnAnswer) {
  server.answer(answers::garbage());
  expect(error_of_sending(), numbers::kBadReply, Outcome::kAnswered);
}

TEST_F(LiveExchange, AnUnreadableTextIsAnAnswer) {
  server.answer(answers::reply("<a>"));
  expect(error_of_sending(), numbers::kNotWellFormed, Outcome::kAnswered);
  EXPECT_EQ(last().reply.text, "<a>");
}

TEST_F(LiveExchange, ATimeOutAfterSendingIsUnknown) {
  server.answer(answers::never());
  expect(error_of_sending(200), numbers::kTimeout, Outcome::kUnknown);
  EXPECT_EQ(last().http_status, 0);
  EXPECT_EQ(last().bytes_sent, last().request.size);
  EXPECT_GE(last().times.wait_us, 150'000);
  EXPECT_EQ(last().times.receive_us, 0);
}

TEST_F(LiveExchange, ATimeOutInsideTheReplyIsUnknownAndShowsWhatCame) {
  server.answer(answers::raw("HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nContent-Length: 100\r\n"
                             "\r\n<e:Env") +
                answers::never());
  expect(error_of_sending(200), numbers::kTimeout, Outcome::kUnknown);
  EXPECT_EQ(last().http_status, 200);
  EXPECT_EQ(last().reply.text, "<e:Env");
}

TEST_F(LiveExchange, AConnectionThatIsLostAfterSendingIsUnknown) {
  server.answer(answers::close_before_status());
  expect(error_of_sending(), numbers::kConnectionLost, Outcome::kUnknown);
}

TEST_F(LiveExchange, AReplyThatIsCutIsUnknown) {
  server.answer(answers::cut_body(kReply, 20));
  expect(error_of_sending(), numbers::kConnectionLost, Outcome::kUnknown);
  EXPECT_EQ(last().reply.text, kReply.substr(0, 20));
  server.answer(answers::cut_headers());
  expect(error_of_sending(), numbers::kConnectionLost, Outcome::kUnknown);
}

TEST_F(LiveExchange, AServerThatIsNotThereWasNotSentTo) {
  std::string url;
  {
    const MisbehavingServer gone;
    url = gone.url();
  }
  expect(error_of([&] { send_to(url); }), numbers::kCannotConnect, Outcome::kNotSent);
  EXPECT_EQ(last().bytes_sent, 0U);
  EXPECT_THAT(last().request.text, HasSubstr("<Root"));
}

TEST_F(LiveExchange, AUrlThatIsNoneWasNotSentTo) {
  expect(error_of([] { send_to("ftp://h/"); }), numbers::kBadUrlOrHeader, Outcome::kNotSent);
}

TEST_F(LiveExchange, NoTlsOnTheOtherSideWasNotSentTo) {
  server.answer(answers::garbage());
  const std::string url = server.url("/", "https");
  const Error error = error_of([&] { send_to(url, 2000); });
  EXPECT_EQ(error.outcome, Outcome::kNotSent);
  EXPECT_EQ(last().outcome, Outcome::kNotSent);
}

TEST_F(LiveExchange, AnEarlierExchangesFactsAreGoneFromTheNext) {
  server.answer(answers::reply(kReply));
  send();
  EXPECT_EQ(last().http_status, 200);
  error_of([] { send_to("ftp://h/"); });
  EXPECT_EQ(last().http_status, 0);
  EXPECT_EQ(last().reply_headers.size + last().reply.size, 0U);
}

class LiveDalExchange : public LiveExchange {
 protected:
  void log_in() {
    server.answer(answers::reply("welcome", "200 OK", "text/plain", {{"Session-Token", "T-4711"}}));
    server.answer(answers::reply("", "200 OK", "text/plain"));
    control.UserName("joe");
    control.Password("hunter2");
    control.InitTorvexDAL(server.url());
    control.UseTorvexDAL();
  }

  BVConnectorObject control;
};

TEST_F(LiveDalExchange, ALoginIsThereWithoutPasswordAndToken) {
  log_in();
  const auto exchanges = session().Exchanges();
  ASSERT_EQ(exchanges.size(), 3U);
  EXPECT_EQ(exchanges[0].object_operation, "SetServerUrl");
  EXPECT_EQ(exchanges[0].outcome, Outcome::kNotSent);
  EXPECT_EQ(exchanges[1].object_operation, "Login");
  EXPECT_EQ(exchanges[1].http_status, 200);
  EXPECT_THAT(exchanges[1].reply_headers.text, HasSubstr("Session-Token: ***\r\n"));
  EXPECT_EQ(exchanges[1].result.text, "***");
  EXPECT_EQ(exchanges[1].arguments[1].text.text, "***");
  EXPECT_EQ(exchanges[2].object_operation, "GetDisabledServices");
  EXPECT_EQ(exchanges[2].outcome, Outcome::kAnswered);
}

TEST_F(LiveDalExchange, ARefusedLoginShowsTheServersWords) {
  server.answer(answers::reply(R"({"number":-5,"source":"Login","description":"joe is locked"})",
                               "403 No", "application/json"));
  control.UserName("joe");
  control.InitTorvexDAL(server.url());
  EXPECT_EQ(last().object_operation, "Login");
  EXPECT_EQ(last().http_status, 403);
  EXPECT_EQ(last().outcome, Outcome::kAnswered);
  EXPECT_EQ(last().error->number, -5);
  EXPECT_EQ(last().error->description, "joe is locked");
  EXPECT_THAT(last().reply.text, HasSubstr("joe is locked"));
}

TEST_F(LiveDalExchange, ACallShowsItsResultAndItsTimes) {
  log_in();
  server.answer(answers::reply(kReply));
  BVSearchConnector().SearchForBrands("S", "http://unused/");
  EXPECT_EQ(last().route, ExchangeRoute::kDal);
  EXPECT_EQ(last().url, server.url());
  EXPECT_EQ(last().object, "SearchService");
  EXPECT_EQ(last().result.text, kReply);
  EXPECT_EQ(last().http_status, 200);
  EXPECT_EQ(last().bytes_received, kReply.size());
  EXPECT_GT(last().times.total_us, 0);
  EXPECT_EQ(last().outcome, Outcome::kAnswered);
}

TEST_F(LiveDalExchange, ARefusalIsAnAnswerAndALostConnectionUnknown) {
  log_in();
  const auto search = [] { BVSearchConnector().SearchForBrands("S", "http://unused/"); };
  server.answer(answers::reply(R"({"number":77,"source":"Search","description":"not today"})",
                               "500 Error", "application/json"));
  expect(error_of(search), 77, Outcome::kAnswered);
  server.answer(answers::close_before_status());
  expect(error_of(search), numbers::kConnectionLost, Outcome::kUnknown);
}

TEST_F(LiveDalExchange, WhatCannotBeSentWasNotSent) {
  log_in();
  const auto object = session().SearchService;
  const std::vector<Variant> arguments{Bytes()};
  const Error error = error_of([&] { static_cast<void>(object->invoke("Any", arguments, false)); });
  EXPECT_EQ(error.number, numbers::kTypeMismatch);
  EXPECT_EQ(error.outcome, Outcome::kNotSent);
}

}  // namespace
}  // namespace bvconn::test

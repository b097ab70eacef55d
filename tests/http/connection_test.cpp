#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <set>
#include <thread>

#include "bvconn/platform/http/interrupted_exchanges.h"
#include "http/transport_fixture.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;
using testing::Not;

using Connection = TransportTest;

// A port on which nobody listens, as long as this object lives.
class SilentPort {
 public:
  SilentPort() : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    EXPECT_EQ(::bind(socket_, reinterpret_cast<sockaddr*>(&address), size), 0);
    ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size);
    port_ = ntohs(address.sin_port);
  }
  ~SilentPort() { ::close(socket_); }
  SilentPort(const SilentPort&) = delete;
  SilentPort& operator=(const SilentPort&) = delete;

  std::string port() const { return std::to_string(port_); }

 private:
  int socket_;
  std::uint16_t port_ = 0;
};

// What an interrupted program calls: every exchange ends, those that begin afterwards too, until
// the interruption is over.
TEST_F(Connection, EndsWhereItIsInterruptedWithWhatIsKnownOfItsOutcome) {
  transport->Timeout(60000);
  server.answer(answers::never());
  std::thread interruption([&] {
    while (server.requests().empty()) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    detail::interrupt_exchanges(true);
  });
  Error running(0, "", "");
  const double seconds = seconds_of(
      [&] { running = error_of([&] { transport->Send(server.url(), "<question/>"); }); });
  interruption.join();
  EXPECT_EQ(hex_number(running.number), "0x80044307");
  EXPECT_EQ(running.outcome, Outcome::kUnknown);
  EXPECT_THAT(running.description, HasSubstr("it was interrupted"));
  EXPECT_LT(seconds, 20);
  EXPECT_THAT(error_of([&] { transport->Send(server.url(), "<question/>"); }).description,
              HasSubstr("it was interrupted"));
  detail::interrupt_exchanges(false);
  expect_next_call_works();
}

TEST_F(Connection, RefusedFailsInSend) {
  const SilentPort silent;
  const std::string host = "127.0.0.1:" + silent.port();
  const Error error = error_of([&] { transport->Send("http://u:word@" + host + "/p", "<a/>"); });
  EXPECT_EQ(hex_number(error.number), "0x80044301") << error.description;
  EXPECT_EQ(error.source, "HTTPTransport");
  EXPECT_THAT(error.description, HasSubstr("http://" + host + "/p"));
  EXPECT_THAT(error.description, Not(HasSubstr("word")));
  expect_next_call_works();
}

TEST_F(Connection, ToANameThatDoesNotResolveFailsInSend) {
  const Error error = error_of([&] { transport->Send("http://no-such-host.invalid/", "<a/>"); });
  EXPECT_EQ(hex_number(error.number), "0x80044301") << error.description;
  EXPECT_THAT(error.description, HasSubstr("no-such-host.invalid"));
  expect_next_call_works();
}

TEST_F(Connection, ClosedBeforeTheStatusLineFailsInSend) {
  server.answer(answers::close_before_status());
  expect_send_fails(error_numbers::kConnectionLost);
  EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(Connection, ResetBeforeTheStatusLineFailsInSend) {
  server.answer(Answer{{.kind = Step::Kind::kReset}});
  expect_send_fails(error_numbers::kConnectionLost);
  EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(Connection, ClosedInsideTheStatusLineFailsInSend) {
  server.answer(answers::then_close(answers::raw("HTTP/1.1 20")));
  expect_send_fails(error_numbers::kConnectionLost);
}

TEST_F(Connection, ClosedAfterAnInterimReplyFailsInSend) {
  server.answer(answers::then_close(answers::raw("HTTP/1.1 100 Continue\r\n\r\n")));
  expect_send_fails(error_numbers::kConnectionLost);
}

// Kept connections.

TEST_F(Connection, ThatTheServerClosedBetweenTwoCallsIsReplaced) {
  server.answer(answers::then_close(answers::reply("<one/>")));
  EXPECT_EQ(call(), "<one/>");
  ASSERT_TRUE(server.wait_for_closed(1));
  expect_next_call_works();
  EXPECT_EQ(server.connections(), 2);
  EXPECT_EQ(server.requests().size(), 2U);
}

// Between the look at the kept connection and the request the server may still close it: then the
// call fails, since nobody knows what became of the request.
TEST_F(Connection, ThatTheServerClosesAtAnyMomentAfterItsReplyIsReplacedOrLost) {
  constexpr int kRounds = 100;
  for (int round = 0; round < kRounds; ++round) {
    server.answer(answers::then_close(answers::reply("<round/>")));
    try {
      EXPECT_EQ(call("<" + std::to_string(round) + "/>"), "<round/>");
    } catch (const Error& error) {
      EXPECT_EQ(hex_number(error.number), "0x80044307") << error.description;
    }
  }
  std::set<std::string> bodies;
  for (const SeenRequest& request : server.requests()) {
    EXPECT_TRUE(bodies.insert(request.body).second) << request.body << " came twice";
  }
  EXPECT_GE(bodies.size(), std::size_t{kRounds / 2});
}

// Servers begin to close idle connections after five.
TEST_F(Connection, ThatWasIdleForMoreThanThreeSecondsIsReplaced) {
  call();
  std::this_thread::sleep_for(std::chrono::milliseconds(3100));
  call();
  EXPECT_EQ(server.connections(), 2);
}

TEST_F(Connection, KeptAndResetWithTheRequestUnreadFailsInSend) {
  server.answer(answers::then_reset_next(answers::reply("<one/>")));
  EXPECT_EQ(call("<a/>"), "<one/>");
  expect_send_fails(error_numbers::kConnectionLost);
  EXPECT_EQ(server.connections(), 2);
  EXPECT_EQ(server.requests().size(), 2U);
  EXPECT_EQ(server.last_request().body, "<next/>");
}

TEST_F(Connection, ThatIsAskedForAPasswordIsNotAskedASecondTime) {
  server.answer(answers::reply("who?", "401 Unauthorized", "text/plain",
                               {{"WWW-Authenticate", "Basic realm=\"orders\""}}));
  expect_receive_fails(error_numbers::kHttpStatus);
  EXPECT_EQ(server.requests().size(), 2U);
}

// Time-outs.

TEST_F(Connection, WithoutAnAnswerRunsIntoTheTimeout) {
  server.answer(answers::never());
  transport->Timeout(200);
  const double seconds = seconds_of([&] {
    const Error error = error_of([&] { transport->Send(secret_url(), "<a/>"); });
    expect_described(error, error_numbers::kTimeout);
  });
  EXPECT_GT(seconds, 0.15);
  EXPECT_LT(seconds, 5.0);
  transport->Timeout(10000);
  expect_next_call_works();
}

TEST_F(Connection, ThatBringsTheReplyTooSlowlyRunsIntoTheTimeoutInSend) {
  server.answer(answers::dribble(std::string(1000, 'x'), std::chrono::milliseconds(10)));
  transport->Timeout(300);
  const double seconds = seconds_of([&] {
    const Error error = error_of([&] { transport->Send(secret_url(), "<a/>"); });
    expect_described(error, error_numbers::kTimeout);
  });
  EXPECT_LT(seconds, 5.0);
  EXPECT_EQ(error_of([&] { transport->Receive("UTF-8"); }).number, error_numbers::kBadReply);
  transport->Timeout(10000);
  expect_next_call_works();
}

TEST_F(Connection, HasNoTimeoutForANegativeOneOrZero) {
  const Answer late = Answer{{.kind = Step::Kind::kWait, .pause = std::chrono::milliseconds(300)}} +
                      answers::reply("<late/>");
  server.answer({late, late, late});
  transport->Timeout(100);
  EXPECT_EQ(error_of([&] { call(); }).number, error_numbers::kTimeout);
  transport->Timeout(-1);
  EXPECT_EQ(call(), "<late/>");
  transport->Timeout(0);
  EXPECT_EQ(call(), "<late/>");
}

TEST_F(Connection, KeepsItsTimeoutUntilTheNextOne) {
  server.answer({answers::never(), answers::never()});
  transport->Timeout(100);
  EXPECT_EQ(error_of([&] { call(); }).number, error_numbers::kTimeout);
  EXPECT_EQ(error_of([&] { call(); }).number, error_numbers::kTimeout);
}

}  // namespace
}  // namespace bvconn::test

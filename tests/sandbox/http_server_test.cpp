#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "sandbox/http/server.h"
#include "sandbox/raw_client.h"

namespace bvconn::sandbox {
namespace {

using namespace std::chrono_literals;
using test::exchange;
using test::http_request;
using test::RawClient;

/// More than the buffers of a connection hold.
constexpr std::size_t kLargeReply = 16'000'000;

/// Something that is waited for on one thread and happens on another.
class Signal {
 public:
  void give() {
    const std::lock_guard lock(mutex_);
    given_ = true;
    change_.notify_all();
  }
  void take_back() {
    const std::lock_guard lock(mutex_);
    given_ = false;
  }
  bool wait() {
    std::unique_lock lock(mutex_);
    return change_.wait_for(lock, 10s, [this] { return given_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable change_;
  bool given_ = false;
};

/// A server that answers with what it was asked, on a thread of its own. An answer to /slow begins
/// and then waits for its release.
class HttpServer : public ::testing::Test {
 protected:
  HttpServer() { start(Limits{}); }
  ~HttpServer() override { end(); }

  void start(const Limits& limits) {
    end();
    slow_may_end_.take_back();
    server_ = std::make_unique<Server>(Listening{}, limits, [this](const Request& request) {
      if (request.target == "/slow") {
        slow_begins_.give();
        slow_may_end_.wait();
      }
      static const Reply large = text_reply(200, std::string(kLargeReply, 'x'));
      if (request.target == "/large") return large;
      return text_reply(
          200, request.method + " " + request.target + " " + std::to_string(request.body.size()));
    });
    thread_ = std::thread([this] { server_->run(); });
  }

  void finish() { server_->finish(); }

  void end() {
    if (!thread_.joinable()) return;
    slow_may_end_.give();
    server_->stop();
    wait_for_end();
  }

  void wait_for_end() { thread_.join(); }

  std::uint16_t port() const { return server_->port(); }

  void expect_alive() const {
    EXPECT_EQ(exchange(port(), http_request("POST", "/alive", "", "12345")).body, "POST /alive 5");
  }

  Signal slow_begins_;
  Signal slow_may_end_;

 private:
  std::unique_ptr<Server> server_;
  std::thread thread_;
};

TEST_F(HttpServer, HandsOverMethodTargetAndBody) {
  const auto reply = exchange(port(), http_request("PUT", "/a?b=c", "", "xyz"));
  EXPECT_EQ(reply.status, 200);
  EXPECT_EQ(reply.body, "PUT /a?b=c 3");
}

TEST_F(HttpServer, KeepsTheConnectionForTheNextRequest) {
  RawClient client(port());
  ASSERT_TRUE(client.send(http_request("POST", "/one", "", "1")));
  EXPECT_EQ(client.receive().body, "POST /one 1");
  ASSERT_TRUE(client.send(http_request("POST", "/two", "", "22")));
  EXPECT_EQ(client.receive().body, "POST /two 2");
}

TEST_F(HttpServer, AnswersRequestsThatCameInOnePacketInTheirOrder) {
  RawClient client(port());
  ASSERT_TRUE(
      client.send(http_request("POST", "/one", "", "1") + http_request("POST", "/two", "", "22")));
  EXPECT_EQ(client.receive().body, "POST /one 1");
  EXPECT_EQ(client.receive().body, "POST /two 2");
}

TEST_F(HttpServer, EndsTheConnectionWhenTheClientAsksForIt) {
  RawClient client(port());
  ASSERT_TRUE(client.send(http_request("POST", "/last", "Connection: close\r\n", "1")));
  const auto reply = client.receive();
  EXPECT_EQ(reply.body, "POST /last 1");
  EXPECT_EQ(reply.header("Connection"), "close");
  EXPECT_TRUE(client.ends());
}

TEST_F(HttpServer, TakesChunkedRequests) {
  const auto reply = exchange(port(),
                              "POST /chunked HTTP/1.1\r\nHost: h\r\nTransfer-Encoding: chunked\r\n"
                              "\r\n3\r\nabc\r\n4\r\ndefg\r\n0\r\n\r\n");
  EXPECT_EQ(reply.body, "POST /chunked 7");
}

TEST_F(HttpServer, SaysContinueToAClientThatWaitsForIt) {
  RawClient client(port());
  ASSERT_TRUE(
      client.send("POST /patient HTTP/1.1\r\nHost: h\r\nExpect: 100-continue\r\n"
                  "Content-Length: 2\r\n\r\n"));
  EXPECT_EQ(client.receive().status, 100);
  ASSERT_TRUE(client.send("ab"));
  EXPECT_EQ(client.receive().body, "POST /patient 2");
}

TEST_F(HttpServer, WhatIsNotHttpIsABadRequest) {
  using namespace std::string_literals;
  for (const std::string& garbage :
       {"nonsense\r\n\r\n"s, "\x16\x03\x01\x02\0\x01\0\x01\xfc\r\n\r\n"s, "\r\n\0\0\0\r\n\r\n"s,
        "POST / HTTP/9.9\r\n\r\n"s, "POST / HTTP/1.1\r\nContent-Length: many\r\n\r\n"s,
        "POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\n"s}) {
    EXPECT_EQ(exchange(port(), garbage).status, 400) << garbage;
  }
  expect_alive();
}

TEST_F(HttpServer, ARequestThatIsCutOffIsABadRequest) {
  RawClient client(port());
  ASSERT_TRUE(client.send("POST / HTTP/1.1\r\nHost: h\r\nContent-Length: 10\r\n\r\nabc"));
  client.finish();
  EXPECT_EQ(client.receive().status, 400);
  EXPECT_TRUE(client.ends());
}

TEST_F(HttpServer, ABodyOverTheLimitIsRefusedByItsLengthAlone) {
  start(Limits{.body_bytes = 1000});
  RawClient client(port());
  ASSERT_TRUE(client.send("POST / HTTP/1.1\r\nHost: h\r\nContent-Length: 1001\r\n\r\n"));
  EXPECT_EQ(client.receive().status, 413);
  EXPECT_EQ(exchange(port(), http_request("POST", "/", "", std::string(1000, 'x'))).status, 200);
}

TEST_F(HttpServer, AClientThatGoesOnSendingStillReadsItsRefusal) {
  start(Limits{.body_bytes = 1000});
  const std::string body(8'000'000, 'x');
  EXPECT_EQ(exchange(port(), http_request("POST", "/", "", body)).status, 413);
  const std::string chunked =
      "POST / HTTP/1.1\r\nHost: h\r\nTransfer-Encoding: chunked\r\n\r\n7a1200\r\n" + body +
      "\r\n0\r\n\r\n";
  EXPECT_EQ(exchange(port(), chunked).status, 413);
  expect_alive();
}

TEST_F(HttpServer, HeadersOverTheLimitAreRefused) {
  const std::string header = "X-Long: " + std::string(70'000, 'x') + "\r\n";
  EXPECT_EQ(exchange(port(), http_request("POST", "/", header, "")).status, 431);
  expect_alive();
}

TEST_F(HttpServer, ASlowRequestIsAnswered408) {
  start(Limits{.request = 100ms});
  RawClient slow_header(port());
  ASSERT_TRUE(slow_header.send("POST / HT"));
  EXPECT_EQ(slow_header.receive().status, 408);
  RawClient slow_body(port());
  ASSERT_TRUE(slow_body.send("POST / HTTP/1.1\r\nHost: h\r\nContent-Length: 10\r\n\r\nabc"));
  EXPECT_EQ(slow_body.receive().status, 408);
  EXPECT_TRUE(slow_body.ends());
}

TEST_F(HttpServer, AClientThatDoesNotReadItsReplyLosesIt) {
  start(Limits{.reply = 100ms});
  RawClient client(port());
  ASSERT_TRUE(client.send(http_request("POST", "/large", "", "")));
  std::this_thread::sleep_for(1s);
  EXPECT_TRUE(client.receive().body.empty());
  EXPECT_TRUE(client.ends());
  expect_alive();
}

TEST_F(HttpServer, AClientThatReadsALargeReplyGetsAllOfIt) {
  EXPECT_EQ(exchange(port(), http_request("POST", "/large", "", "")).body.size(), kLargeReply);
}

TEST_F(HttpServer, ARestingConnectionIsEnded) {
  start(Limits{.idle = 100ms});
  RawClient client(port());
  EXPECT_TRUE(client.ends());
}

TEST_F(HttpServer, SlowClientsHoldUpNobody) {
  std::vector<std::unique_ptr<RawClient>> slow;
  for (int i = 0; i < 50; ++i) {
    slow.push_back(std::make_unique<RawClient>(port()));
    ASSERT_TRUE(slow.back()->send("POST / HTTP/1.1\r\nHost: h\r\nContent-Length: 10\r\n\r\nabc"));
  }
  expect_alive();
  for (auto& client : slow) {
    ASSERT_TRUE(client->send("defghij"));
    EXPECT_EQ(client->receive().body, "POST / 10");
  }
}

TEST_F(HttpServer, ASlowAnswerHoldsUpNobodyElse) {
  RawClient slow(port());
  ASSERT_TRUE(slow.send(http_request("POST", "/slow", "", "1")));
  ASSERT_TRUE(slow_begins_.wait());
  expect_alive();
  slow_may_end_.give();
  EXPECT_EQ(slow.receive().body, "POST /slow 1");
}

TEST_F(HttpServer, ASlowAnswerIsNotOvertakenOnItsConnection) {
  RawClient client(port());
  ASSERT_TRUE(client.send(http_request("POST", "/slow", "", "1") +
                          http_request("POST", "/quick", "", "22")));
  ASSERT_TRUE(slow_begins_.wait());
  EXPECT_EQ(client.receive(100ms).status, 0);
  slow_may_end_.give();
  EXPECT_EQ(client.receive().body, "POST /slow 1");
  EXPECT_EQ(client.receive().body, "POST /quick 2");
}

TEST_F(HttpServer, AnswersWhatHasArrivedBeforeItEnds) {
  RawClient slow(port());
  ASSERT_TRUE(slow.send(http_request("POST", "/slow", "", "1")));
  ASSERT_TRUE(slow_begins_.wait());
  const std::uint16_t its_port = port();
  finish();
  // The listener is closed first, so whoever comes now finds nobody.
  while (RawClient(its_port).connected()) std::this_thread::sleep_for(1ms);
  slow_may_end_.give();
  EXPECT_EQ(slow.receive().body, "POST /slow 1");
  wait_for_end();
}

TEST_F(HttpServer, WaitsForAnAnswerOnlySoLongBeforeItEnds) {
  start(Limits{.drain = 50ms});
  RawClient slow(port());
  ASSERT_TRUE(slow.send(http_request("POST", "/slow", "", "1")));
  ASSERT_TRUE(slow_begins_.wait());
  finish();
  EXPECT_EQ(slow.receive(500ms).status, 0);
}

TEST_F(HttpServer, EndsAtOnceWhereNothingIsUnderWay) {
  const RawClient resting(port());
  const auto begin = std::chrono::steady_clock::now();
  finish();
  wait_for_end();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, Limits().drain / 2);
}

TEST_F(HttpServer, WhoeverComesWhileTooManyWaitIsAnswered503) {
  start(Limits{.workers = 1, .requests = 2});
  RawClient slow(port());
  ASSERT_TRUE(slow.send(http_request("POST", "/slow", "", "1")));
  ASSERT_TRUE(slow_begins_.wait());
  std::vector<std::unique_ptr<RawClient>> others;
  for (int i = 0; i < 5; ++i) {
    others.push_back(std::make_unique<RawClient>(port()));
    ASSERT_TRUE(others.back()->send(http_request("POST", "/other", "", "22")));
  }
  std::vector<int> statuses;
  for (auto& other : others) statuses.push_back(other->receive(300ms).status);
  EXPECT_EQ(std::count(statuses.begin(), statuses.end(), 503), 4);
  EXPECT_EQ(std::count(statuses.begin(), statuses.end(), 0), 1) << "the one that waits";
  slow_may_end_.give();
  EXPECT_EQ(slow.receive().status, 200);
  expect_alive();
}

TEST_F(HttpServer, WhoeverComesWhileTooMuchWaitsIsAnswered503) {
  start(Limits{.workers = 1, .requests_bytes = 1000});
  RawClient slow(port());
  ASSERT_TRUE(slow.send(http_request("POST", "/slow", "", std::string(2000, 'x'))));
  ASSERT_TRUE(slow_begins_.wait()) << "alone, it may have any size";
  EXPECT_EQ(exchange(port(), http_request("POST", "/other", "", "22")).status, 503);
  slow_may_end_.give();
  EXPECT_EQ(slow.receive().body, "POST /slow 2000");
  expect_alive();
}

TEST_F(HttpServer, ForgetsWhatWaitsWhenItIsStopped) {
  start(Limits{.workers = 1});
  RawClient slow(port());
  ASSERT_TRUE(slow.send(http_request("POST", "/slow", "", "1")));
  ASSERT_TRUE(slow_begins_.wait());
  RawClient waiting(port());
  ASSERT_TRUE(waiting.send(http_request("POST", "/waiting", "", "1")));
  end();
}

TEST_F(HttpServer, HeadIsAnsweredWithoutABody) {
  RawClient client(port());
  ASSERT_TRUE(client.send(http_request("HEAD", "/", "", "")));
  const auto head = client.receive_head();
  EXPECT_EQ(head.status, 200);
  EXPECT_EQ(head.header("Content-Length"), "8");
  ASSERT_TRUE(client.send(http_request("POST", "/next", "", "1")));
  EXPECT_EQ(client.receive().body, "POST /next 1");
}

TEST_F(HttpServer, AnotherServerOnItsPortFails) {
  EXPECT_THROW(Server({.port = port()}, Limits{}, [](const Request&) { return Reply{}; }),
               std::system_error);
}

}  // namespace
}  // namespace bvconn::sandbox

#include <gtest/gtest.h>

#include <memory>
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

/// A server that answers with what it was asked, on a thread of its own.
class HttpServer : public ::testing::Test {
 protected:
  HttpServer() { start(Limits{}); }
  ~HttpServer() override { end(); }

  void start(const Limits& limits) {
    end();
    server_ = std::make_unique<Server>(0, limits, [](const Request& request) {
      static const Reply large = text_reply(200, std::string(kLargeReply, 'x'));
      if (request.target == "/large") return large;
      return text_reply(
          200, request.method + " " + request.target + " " + std::to_string(request.body.size()));
    });
    thread_ = std::thread([this] { server_->run(); });
  }

  void end() {
    if (!thread_.joinable()) return;
    server_->stop();
    thread_.join();
  }

  std::uint16_t port() const { return server_->port(); }

  void expect_alive() const {
    EXPECT_EQ(exchange(port(), http_request("POST", "/alive", "", "12345")).body, "POST /alive 5");
  }

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
  EXPECT_THROW(Server(port(), Limits{}, [](const Request&) { return Reply{}; }), std::system_error);
}

}  // namespace
}  // namespace bvconn::sandbox

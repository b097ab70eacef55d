#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "sandbox/sandbox_process.h"

// Requests that take the sandbox long, and what the others see of them.
namespace bvconn::test {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

// A fifth is enough to be slow where a sanitizer looks on, and is still more than a million tags.
#ifdef BVCONN_SANITIZED
constexpr std::size_t kPart = 5;
#else
constexpr std::size_t kPart = 1;
#endif

constexpr std::string_view kHeartBeat = "urn:HeartBeatService";

std::string repeated(std::string_view piece, std::size_t times) {
  std::string text;
  text.reserve(piece.size() * times);
  for (std::size_t i = 0; i < times; ++i) text.append(piece);
  return text;
}

/// 63 MB of 900,000 tags, or a part of them: about as large as a request may be.
std::string huge_envelope() {
  return envelope_text(kHeartBeat, "beat",
                       repeated("<param>" + std::string(125, 'x') + "</param>", 450'000 / kPart));
}

std::string soap_request(std::string_view text) {
  return http_request("POST", "/soap",
                      "Content-Type: text/xml; charset=utf-8\r\nSOAPAction: \"\"\r\n", text);
}

/// Calls the sandbox over and over until told to stop.
struct Caller {
  int answers = 0;
  Milliseconds longest{0};

  void call(std::uint16_t port, const std::atomic<bool>& enough) {
    const std::string request = soap_request(envelope_text(kHeartBeat, "beat", ""));
    while (!enough) {
      const auto begin = Clock::now();
      if (test::exchange(port, request).status != 0) ++answers;
      longest = std::max<Milliseconds>(longest, Clock::now() - begin);
    }
  }
};

TEST(LargeRequest, KeepsNoOtherClientWaiting) {
  SandboxProcess sandbox;
  const std::string request = soap_request(huge_envelope());
  RawClient client(sandbox.port());
  ASSERT_TRUE(client.send(request));
  const auto begin = Clock::now();
  std::atomic<bool> enough = false;
  Caller caller;
  std::thread other([&] { caller.call(sandbox.port(), enough); });
  EXPECT_EQ(client.receive(std::chrono::seconds(60)).status, 500)
      << "a heart beat has none of this";
  const Milliseconds took = Clock::now() - begin;
  enough = true;
  other.join();
  RecordProperty("took_ms", std::to_string(took.count()));
  RecordProperty("longest_ms", std::to_string(caller.longest.count()));
  // With one thread for both, the longest wait is all the time that the huge request takes.
  EXPECT_LT(caller.longest, took / 2) << "milliseconds of " << took.count();
  EXPECT_GT(caller.answers, 2);
}

TEST(LargeRequest, OfMoreThanAMillionTagsIsRefusedUnread) {
  SandboxProcess sandbox;
  const auto begin = Clock::now();
  const RawReply reply = sandbox.soap_text(
      envelope_text(kHeartBeat, "beat", repeated("<p/>", 15'000'000 / kPart)), "");
  EXPECT_EQ(reply.status, 500);
  EXPECT_NE(reply.body.find("The request has more than 1000000 tags"), std::string::npos)
      << reply.body.substr(0, 500);
  // Reading it took 25 seconds on the machine on which it takes half a second to refuse it.
  EXPECT_LT(Clock::now() - begin, std::chrono::seconds(8));
}

TEST(LargeRequest, OfMoreThanAMillionValuesIsRefusedOnTheOtherRouteToo) {
  SandboxProcess sandbox;
  const RawReply reply =
      sandbox.dal("AuthenticationService/Login",
                  R"({"arguments":[)" + repeated("[],", 15'000'000 / kPart) + "[]]}");
  EXPECT_EQ(reply.status, 400);
  EXPECT_NE(reply.body.find("the body has more than 1000000 values"), std::string::npos)
      << reply.body.substr(0, 500);
}

TEST(LargeRequest, DoesNotKeepTheSandboxFromEndingWell) {
  SandboxProcess sandbox;
  RawClient client(sandbox.port());
  ASSERT_TRUE(client.send(soap_request(huge_envelope())));
  EXPECT_EQ(sandbox.end_by(SIGTERM), 0);
}

}  // namespace
}  // namespace bvconn::test

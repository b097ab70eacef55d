// How the sandbox ends while it has something to do.
#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::string_view kEnd = "</SOAP-ENV:Envelope>";

std::string invoice_request() {
  return http_request("POST", "/soap",
                      "Content-Type: text/xml\r\nSOAPAction: \"urn:InvoiceService\"\r\n",
                      envelope_text("urn:InvoiceService", "getInvoice",
                                    R"(<param xsi:type="xsd:string">INV-1001</param>)"));
}

void delay_invoices(const SandboxProcess& sandbox, const std::string& milliseconds) {
  const std::string fault =
      R"({"kind":"delay","operation":"BVInvoiceConnector.GetInvoice","delay_ms":)" + milliseconds +
      "}";
  ASSERT_EQ(exchange(sandbox.port(), http_request("POST", "/admin/faults", "", fault)).status, 200);
}

/// Connections whose requests the sandbox has read, and does not answer yet.
std::vector<std::unique_ptr<RawClient>> waiting_clients(SandboxProcess& sandbox, int count) {
  std::vector<std::unique_ptr<RawClient>> clients;
  for (int i = 0; i < count; ++i) {
    clients.push_back(std::make_unique<RawClient>(sandbox.port()));
    EXPECT_TRUE(clients.back()->send(invoice_request()));
  }
  const auto hits = [&] {
    return exchange(sandbox.port(), http_request("GET", "/admin/faults", "", "")).body;
  };
  const std::string all = "\"hit\": " + std::to_string(count);
  const auto deadline = Clock::now() + 10s;
  while (hits().find(all) == std::string::npos && Clock::now() < deadline) {
    std::this_thread::sleep_for(5ms);
  }
  EXPECT_NE(hits().find(all), std::string::npos) << hits();
  return clients;
}

bool ends_in_an_envelope(const RawReply& reply) {
  return reply.status == 200 && reply.body.ends_with(kEnd);
}

TEST(SandboxEnding, AnswersAllThatHasBegunAndTakesNobodyNew) {
  SandboxProcess sandbox;
  delay_invoices(sandbox, "1000");
  auto clients = waiting_clients(sandbox, 20);
  RawClient resting(sandbox.port());
  const auto begin = Clock::now();
  ASSERT_EQ(::kill(sandbox.process(), SIGTERM), 0);
  while (RawClient(sandbox.port()).connected() && Clock::now() < begin + 10s) {
    std::this_thread::sleep_for(1ms);
  }
  EXPECT_FALSE(RawClient(sandbox.port()).connected());
  for (auto& each : clients) {
    const RawReply reply = each->receive();
    EXPECT_TRUE(ends_in_an_envelope(reply)) << reply.status << reply.body;
  }
  EXPECT_EQ(sandbox.wait(), 0);
  EXPECT_TRUE(resting.ends());
  EXPECT_EQ(sandbox.errors(), "");
}

TEST(SandboxEnding, LeavesNoAnswerHalfUnderLoad) {
  SandboxProcess sandbox;
  std::atomic<int> whole = 0;
  std::atomic<int> wrong = 0;
  std::vector<std::thread> callers;
  for (int i = 0; i < 4; ++i) {
    callers.emplace_back([&] {
      RawClient client(sandbox.port());
      // Who comes too late is turned away by a whole reply, or finds nobody.
      while (client.send(invoice_request())) {
        const RawReply reply = client.receive();
        if (ends_in_an_envelope(reply)) {
          ++whole;
          continue;
        }
        if (client.was_cut() || (reply.status != 0 && reply.status != 503)) ++wrong;
        break;
      }
    });
  }
  const auto deadline = Clock::now() + 10s;
  while (whole < 100 && Clock::now() < deadline) std::this_thread::sleep_for(1ms);
  EXPECT_EQ(sandbox.end_by(SIGTERM), 0);
  for (std::thread& each : callers) each.join();
  EXPECT_GE(whole, 100);
  EXPECT_EQ(wrong, 0);
}

TEST(SandboxEnding, WaitsNoLongerThanItSays) {
  SandboxProcess sandbox;
  delay_invoices(sandbox, "3600000");
  auto clients = waiting_clients(sandbox, 1);
  const auto begin = Clock::now();
  EXPECT_EQ(sandbox.end_by(SIGTERM), 0);
  EXPECT_GE(Clock::now() - begin, 4s) << "it gave up its client too early";
  EXPECT_EQ(clients[0]->receive().status, 0);
  EXPECT_FALSE(clients[0]->was_cut());
}

TEST(SandboxEnding, ASecondSignalWaitsForNothing) {
  SandboxProcess sandbox;
  delay_invoices(sandbox, "3600000");
  auto clients = waiting_clients(sandbox, 1);
  ASSERT_EQ(::kill(sandbox.process(), SIGINT), 0);
  while (RawClient(sandbox.port()).connected()) std::this_thread::sleep_for(1ms);
  const auto begin = Clock::now();
  EXPECT_EQ(sandbox.end_by(SIGTERM), 0);
  EXPECT_LT(Clock::now() - begin, 4s) << "the first signal lets it wait for five seconds";
}

}  // namespace
}  // namespace bvconn::test

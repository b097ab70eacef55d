// Many clients at once, while others look at the sandbox and change what it does. In this process,
// where a sanitizer sees both sides.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "sandbox/raw_client.h"
#include "sandbox/served_here.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;
using test::http_request;
using test::RawClient;
using test::RawReply;
using test::ServedHere;
using test::soap_call;

constexpr int kClients = 6;
constexpr int kCallsOfAClient = 60;
constexpr int kAllCalls = kClients * kCallsOfAClient;
/// Every third call of a client asks to fail.
constexpr int kFailing = kAllCalls / 3;

RawReply ask(std::uint16_t port, std::string_view method, std::string_view target,
             std::string_view body = "") {
  return test::exchange(port, http_request(method, target, "", body));
}

json journal(std::uint16_t port, const std::string& query) {
  return json::parse(ask(port, "GET", "/admin/journal?" + query).body);
}

std::string call_of(int number, bool fails) {
  const std::string uid = "INV-10" + std::to_string(10 + number % 30);
  return soap_call("urn:InvoiceService", "getInvoice",
                   "<param xsi:type=\"xsd:string\">" + uid + "</param>",
                   fails ? "X-Test: fail\r\n" : "");
}

/// On one connection, as the library does it.
void make_calls(std::uint16_t port) {
  RawClient client(port);
  for (int i = 0; i < kCallsOfAClient; ++i) {
    const bool fails = i % 3 == 0;
    ASSERT_TRUE(client.send(call_of(i, fails)));
    const RawReply reply = client.receive(std::chrono::seconds(60));
    ASSERT_EQ(reply.status, fails ? 503 : 200) << reply.body;
    const std::string uid = "INV-10" + std::to_string(10 + i % 30);
    ASSERT_EQ(reply.body.find(">" + uid + "<") != std::string::npos, !fails);
  }
}

void look_on(std::uint16_t port, const std::atomic<bool>& is_over) {
  while (!is_over) {
    const json latest = journal(port, "limit=3&operation=BVInvoiceConnector.*");
    EXPECT_LE(latest["exchanges"].size(), 3U);
    for (const json& each : latest["exchanges"]) {
      EXPECT_EQ(ask(port, "GET", "/admin/journal/" + each["id"].dump()).status, 200);
    }
    EXPECT_EQ(ask(port, "GET", "/admin/faults").status, 200);
  }
}

/// Sets and takes back what no call of the others meets, and puts the store back to what it is.
void change_things(std::uint16_t port, const std::atomic<bool>& is_over) {
  while (!is_over) {
    const char* const fault =
        R"({"kind": "delay", "delay_ms": 1, "operation": "BVPostalConnector.*", "name": "other"})";
    EXPECT_EQ(ask(port, "POST", "/admin/faults", fault).status, 200);
    const char* const stub =
        R"([{"operation": "BVSummaryConnector.GetUserSummary", "answer": "<return/>"}])";
    EXPECT_EQ(ask(port, "POST", "/admin/stubs", stub).status, 201);
    EXPECT_EQ(ask(port, "POST", "/admin/snapshots/now").status / 100, 2);
    EXPECT_EQ(ask(port, "POST", "/admin/restore/now").status / 100, 2);
    EXPECT_EQ(ask(port, "DELETE", "/admin/stubs").status, 200);
    EXPECT_EQ(ask(port, "DELETE", "/admin/faults/other").status, 200);
  }
}

/// Saves a project under a key of its own again and again, and reads it back.
void save(std::uint16_t port, const std::string& key, const std::atomic<bool>& is_over) {
  RawClient client(port);
  for (int i = 0; !is_over; ++i) {
    const std::string name = "Name " + std::to_string(i);
    const std::string project =
        "<Project><GID>" + key + "</GID><Name>" + name + "</Name></Project>";
    ASSERT_TRUE(client.send(soap_call("urn:ProjectService", "save", project)));
    ASSERT_EQ(client.receive(std::chrono::seconds(60)).status, 200);
    ASSERT_TRUE(client.send(soap_call("urn:ProjectService", "getProject",
                                      "<GID xsi:type=\"xsd:string\">" + key + "</GID>")));
    const RawReply reply = client.receive(std::chrono::seconds(60));
    ASSERT_NE(reply.body.find(name), std::string::npos) << reply.body;
  }
}

/// Logs in and asks under the token that it was given.
void log_in(std::uint16_t port, const std::atomic<bool>& is_over) {
  while (!is_over) {
    const RawReply login =
        test::exchange(port, http_request("POST", "/dal/AuthenticationService/Login",
                                          "Content-Type: application/json\r\n",
                                          R"({"arguments":["anna","secret","1.0","US"]})"));
    ASSERT_EQ(login.status, 200) << login.body;
    const RawReply reply = test::exchange(
        port, http_request("POST", "/dal/ProjectService/getExistingProject",
                           "Content-Type: application/json\r\nAuthorization: Bearer " +
                               login.header("Session-Token") + "\r\n",
                           R"({"arguments":["PRJ-3001"]})"));
    ASSERT_NE(reply.body.find("PRJ-3001"), std::string::npos) << reply.body;
  }
}

/// Follows the events, each time for a while, and goes on where it was. Where the others are done
/// before it was told of anything, it waits for what a reader that comes anew is told.
void follow(std::uint16_t port, const std::atomic<bool>& is_over) {
  const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  std::string seen;
  const auto has_seen = [&] { return seen.find("\nevent: exchange\n") != std::string::npos; };
  while (!is_over || (!has_seen() && std::chrono::steady_clock::now() < give_up)) {
    RawClient client(port);
    ASSERT_TRUE(client.send(http_request("GET", "/admin/journal/events", "", "")));
    for (int i = 0; i < 10 && !(is_over && has_seen()); ++i) {
      seen += client.receive_some(std::chrono::milliseconds(50));
    }
  }
  EXPECT_TRUE(has_seen());
}

/// Runs these beside each other while the body runs.
template <class Body>
void beside(const std::vector<std::function<void(const std::atomic<bool>&)>>& others,
            const Body& body) {
  std::atomic<bool> is_over = false;
  std::vector<std::thread> threads;
  for (const auto& each : others) threads.emplace_back([&] { each(is_over); });
  body();
  is_over = true;
  for (std::thread& each : threads) each.join();
}

void make_all_calls(std::uint16_t port) {
  std::vector<std::thread> clients;
  for (int i = 0; i < kClients; ++i) clients.emplace_back([&] { make_calls(port); });
  for (std::thread& each : clients) each.join();
}

void fail_for_who_asks(std::uint16_t port) {
  const char* const fault = R"({"kind": "status", "header": "X-Test: fail", "name": "asked-for"})";
  ASSERT_EQ(ask(port, "POST", "/admin/faults", fault).status, 200);
}

TEST(ServedAtOnce, NoClientMeetsWhatIsMeantForAnother) {
  const ServedHere served;
  const std::uint16_t port = served.port();
  fail_for_who_asks(port);
  beside({[&](const auto& is_over) { look_on(port, is_over); },
          [&](const auto& is_over) { change_things(port, is_over); }},
         [&] { make_all_calls(port); });
  EXPECT_EQ(journal(port, "limit=1")["matched"], kAllCalls);
  EXPECT_EQ(journal(port, "limit=1&outcome=injected")["matched"], kFailing);
  const json faults = json::parse(ask(port, "GET", "/admin/faults").body)["faults"];
  ASSERT_EQ(faults.size(), 1U);
  EXPECT_EQ(faults[0]["hit"], kFailing);
}

TEST(ServedAtOnce, SaversReadWhatTheyHaveSavedWhileOthersFollow) {
  const ServedHere served;
  const std::uint16_t port = served.port();
  fail_for_who_asks(port);
  beside({[&](const auto& is_over) { follow(port, is_over); },
          [&](const auto& is_over) { follow(port, is_over); },
          [&](const auto& is_over) { save(port, "PRJ-A", is_over); },
          [&](const auto& is_over) { save(port, "PRJ-B", is_over); },
          [&](const auto& is_over) { log_in(port, is_over); }},
         [&] { make_all_calls(port); });
}

}  // namespace
}  // namespace bvconn::sandbox

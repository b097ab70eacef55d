// Many clients at once, while others look at the sandbox and change what it does. In this process,
// where a sanitizer sees both sides.
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "sandbox/contract/observed.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/http/server.h"
#include "sandbox/journal/journal.h"
#include "sandbox/raw_client.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;
using test::http_request;
using test::RawClient;
using test::RawReply;

constexpr int kClients = 6;
constexpr int kCallsOfAClient = 60;
constexpr int kAllCalls = kClients * kCallsOfAClient;
/// Every third call of a client asks to fail.
constexpr int kFailing = kAllCalls / 3;

/// What the program serves, with a journal and a fault for whoever asks for it.
class Served {
 public:
  Served() {
    sandbox_->journal = std::make_shared<MemoryJournal>(JournalLimits{});
    for (const auto& each : observations_) {
      sandbox_->operation_names.push_back(operation_name(each));
    }
    thread_ = std::thread([this] { server_.run(); });
  }
  ~Served() {
    server_.finish();
    thread_.join();
  }
  Served(const Served&) = delete;
  Served& operator=(const Served&) = delete;

  std::uint16_t port() const { return server_.port(); }

 private:
  std::vector<automation::ObservedOperation> observations_ = automation::observe_all();
  // On the heap: GCC 12 warns of members that are made up in place.
  const std::unique_ptr<ServedSandbox> sandbox_{
      new ServedSandbox{{.store = Store(":memory:", std::nullopt),
                         .contract = Contract(contract_of(observations_)),
                         .dal_routes = dal_routes_of(observations_)}}};
  const Operations operations_ = all_operations();
  Server server_{Listening{}, Limits{}, [this](const Request& request) {
                   return answer(*sandbox_, operations_, request);
                 }};
  std::thread thread_;
};

RawReply ask(std::uint16_t port, std::string_view method, std::string_view target,
             std::string_view body = "") {
  return test::exchange(port, http_request(method, target, "", body));
}

json journal(std::uint16_t port, const std::string& query) {
  return json::parse(ask(port, "GET", "/admin/journal?" + query).body);
}

std::string call_of(int number, bool fails) {
  const std::string uid = "INV-10" + std::to_string(10 + number % 30);
  const std::string headers =
      "Content-Type: text/xml; charset=utf-8\r\nSOAPAction: \"urn:InvoiceService\"\r\n" +
      std::string(fails ? "X-Test: fail\r\n" : "");
  return http_request(
      "POST", "/soap", headers,
      "<E:Envelope xmlns:E=\"http://schemas.xmlsoap.org/soap/envelope/\""
      " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
      " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><E:Header><userID>S1</userID></E:Header>"
      "<E:Body><m:getInvoice xmlns:m=\"urn:InvoiceService\"><param xsi:type=\"xsd:string\">" +
          uid + "</param></m:getInvoice></E:Body></E:Envelope>");
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

TEST(ServedAtOnce, NoClientMeetsWhatIsMeantForAnother) {
  const Served served;
  const std::uint16_t port = served.port();
  const char* const fault = R"({"kind": "status", "header": "X-Test: fail", "name": "asked-for"})";
  ASSERT_EQ(ask(port, "POST", "/admin/faults", fault).status, 200);
  std::atomic<bool> is_over = false;
  std::vector<std::thread> others;
  others.emplace_back([&] { look_on(port, is_over); });
  others.emplace_back([&] { change_things(port, is_over); });
  std::vector<std::thread> clients;
  for (int i = 0; i < kClients; ++i) clients.emplace_back([&] { make_calls(port); });
  for (std::thread& each : clients) each.join();
  is_over = true;
  for (std::thread& each : others) each.join();
  EXPECT_EQ(journal(port, "limit=1")["matched"], kAllCalls);
  EXPECT_EQ(journal(port, "limit=1&outcome=injected")["matched"], kFailing);
  const json faults = json::parse(ask(port, "GET", "/admin/faults").body)["faults"];
  ASSERT_EQ(faults.size(), 1U);
  EXPECT_EQ(faults[0]["hit"], kFailing);
}

}  // namespace
}  // namespace bvconn::sandbox

// What the sandbox holds does not grow with what it was asked. In a program of its own, which
// counts what it allocates.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "sandbox/raw_client.h"
#include "sandbox/served_here.h"
#include "support/watched_memory.h"

namespace bvconn::test {
namespace {

constexpr std::size_t kKept = 60;
constexpr int kWarmUpRounds = 60;
constexpr int kRounds = 300;

std::string text(const std::string& name, const std::string& value) {
  return "<" + name + " xsi:type=\"xsd:string\">" + value + "</" + name + ">";
}

struct Asked {
  std::string request;
  int status;
};

std::string login(std::uint16_t port) {
  return test::exchange(port, http_request("POST", "/dal/AuthenticationService/Login",
                                           "Content-Type: application/json\r\n",
                                           R"({"arguments":["anna","secret","1.0","US"]})"))
      .header("Session-Token");
}

/// Each is another way through the sandbox, with what it is answered. After each round the journal
/// holds the same.
std::vector<Asked> round_of_requests(const std::string& token) {
  std::string criteria;
  for (int place = 0; place < 16; ++place) criteria += text("param", place == 5 ? "OPEN" : "");
  const std::string json = "Content-Type: application/json\r\n";
  const std::string project = "/dal/ProjectService/getExistingProject";
  const char* const one_project = R"({"arguments":["PRJ-3001"]})";
  return {
      {soap_call("urn:InvoiceService", "getInvoice", text("param", "INV-1001")), 200},
      {soap_call("urn:InvoiceService", "getInvoice", text("param", "INV-9999")), 500},
      {soap_call("urn:InvoiceService", "getInvoice", text("other", "INV-1001")), 500},
      {soap_call("urn:InvoiceService", "searchForInvoices", criteria), 200},
      {soap_call("urn:ProjectService", "getProject", text("GID", "PRJ-3001")), 200},
      {soap_call("urn:ProjectService", "save",
                 "<Project><GID>PRJ-A</GID><Name>One</Name><Line><GID>L-1</GID></Line></Project>"),
       200},
      {soap_call("urn:QuoteService", "setQuoteStatusToQuoted", text("GID", "QUO-4002")), 200},
      {http_request("POST", project, json + "Authorization: Bearer " + token + "\r\n", one_project),
       200},
      {http_request("POST", project, json, one_project), 401},
      {http_request("POST", "/soap", "Content-Type: text/xml\r\n", "<cut"), 500},
      {http_request("POST", "/admin/faults", "",
                    R"({"kind": "delay", "delay_ms": 1, "operation": "BVPostalConnector.*",)"
                    R"( "name": "other"})"),
       200},
      {http_request("DELETE", "/admin/faults/other", "", ""), 200},
      {http_request("POST", "/admin/stubs", "",
                    R"([{"operation": "BVSummaryConnector.GetUserSummary", "answer": "<r/>"}])"),
       201},
      {http_request("DELETE", "/admin/stubs", "", ""), 200},
      {http_request("GET", "/admin/journal?limit=3", "", ""), 200},
  };
}

void ask(std::uint16_t port, const std::vector<Asked>& requests, int times) {
  RawClient client(port);
  for (int i = 0; i < times; ++i) {
    for (const Asked& each : requests) {
      ASSERT_TRUE(client.send(each.request));
      const RawReply reply = client.receive(std::chrono::seconds(60));
      ASSERT_EQ(reply.status, each.status) << each.request << reply.body;
    }
  }
}

TEST(SandboxMemory, IsTheSameAfterManyRequestsMore) {
  const ServedHere served({.count = kKept});
  const std::vector<Asked> requests = round_of_requests(login(served.port()));
  ask(served.port(), requests, kWarmUpRounds);
  const MemoryCount allocated;
  const sqlite3_int64 of_database = sqlite3_memory_used();
  ask(served.port(), requests, kRounds);
  // One thing kept by one request of each round would be as many as there are rounds.
  EXPECT_LT(static_cast<std::int64_t>(allocated.kept()), kRounds / 3);
  EXPECT_LT(sqlite3_memory_used() - of_database, 16 * 1024);
}

}  // namespace
}  // namespace bvconn::test

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "sandbox/becomes.h"
#include "sandbox/events_reader.h"
#include "sandbox/postgres_server.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;

constexpr std::size_t kProcesses = 4;
constexpr const char* kGetInvoice = "BVInvoiceConnector.GetInvoice";

RawReply admin(const SandboxProcess& process, std::string_view method, std::string_view target,
               const json& body = nullptr) {
  const std::string text = body.is_null() ? std::string() : body.dump();
  return exchange(process.port(), http_request(method, target, "", text));
}

RawReply get_invoice(SandboxProcess& process, const std::string& uid) {
  return process.soap("urn:InvoiceService", "getInvoice",
                      "<param xsi:type=\"xsd:string\">" + uid + "</param>");
}

/// Four processes on one database, which all tests share; each begins without journal and rules.
class ProcessesTogether : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (!PostgresServer::shared().missing().empty()) return;
    place() = PostgresServer::shared().make_database();
    std::vector<std::jthread> starting;
    for (auto& each : all()) starting.emplace_back([&each] { each = start_one(); });
  }
  static void TearDownTestSuite() {
    for (auto& each : all()) each.reset();
  }
  void SetUp() override {
    if (!PostgresServer::shared().missing().empty()) {
      GTEST_SKIP() << PostgresServer::shared().missing();
    }
    ASSERT_EQ(admin(process(0), "DELETE", "/admin/faults").status, 200);
    ASSERT_EQ(admin(process(0), "DELETE", "/admin/stubs").status, 200);
    // Each writes what it has still kept for itself before.
    for (const auto& each : all()) ASSERT_EQ(admin(*each, "DELETE", "/admin/journal").status, 200);
  }

  static std::unique_ptr<SandboxProcess> start_one() {
    return std::make_unique<SandboxProcess>(
        std::vector<std::string>{"--port", "0", "--db", place()});
  }
  static std::string& place() {
    static std::string place;
    return place;
  }
  static std::array<std::unique_ptr<SandboxProcess>, kProcesses>& all() {
    static std::array<std::unique_ptr<SandboxProcess>, kProcesses> all;
    return all;
  }
  static SandboxProcess& process(std::size_t which) { return *all()[which]; }

  /// Whether a process finds that this many calls for an invoice came.
  static bool verified(std::size_t which, const std::string& uid, int count) {
    return verification(which, uid, count).value("holds", false);
  }
  static json verification(std::size_t which, const std::string& uid, int count) {
    const json asked{
        {"operation", kGetInvoice}, {"where", {{"strInvoiceUID", uid}}}, {"count", count}};
    const RawReply reply = admin(process(which), "POST", "/admin/verify", asked);
    return reply.status == 200 ? json::parse(reply.body) : json::object();
  }
};

TEST_F(ProcessesTogether, CallsOfOneAreInTheJournalOfAnother) {
  get_invoice(process(0), "INV-1001");
  get_invoice(process(0), "INV-1001");
  // The process itself is exact at once, the others within a moment.
  EXPECT_TRUE(verified(0, "INV-1001", 2));
  EXPECT_TRUE(becomes([] { return verified(1, "INV-1001", 2); }));
  get_invoice(process(1), "INV-1002");
  EXPECT_TRUE(becomes([] { return verified(2, "INV-1002", 1); }));
  const json missed = verification(1, "INV-1003", 1);
  EXPECT_EQ(missed["holds"], false);
  EXPECT_EQ(missed["nearest"].size(), 3U);
  const json list =
      json::parse(admin(process(3), "GET", "/admin/journal?where=strInvoiceUID=INV-1002").body);
  ASSERT_EQ(list["exchanges"].size(), 1U);
  EXPECT_EQ(list["kept"], 3);
  EXPECT_EQ(list["lost"], 0);
  EXPECT_EQ(list["exchanges"][0]["session"], "***");
  const std::string number = list["exchanges"][0]["id"].dump();
  EXPECT_EQ(json::parse(admin(process(0), "GET", "/admin/journal/" + number).body),
            list["exchanges"][0]);
  EXPECT_EQ(admin(process(2), "DELETE", "/admin/journal").status, 200);
  EXPECT_TRUE(verified(0, "INV-1001", 0));
}

TEST_F(ProcessesTogether, EventsOfOneTellOfTheCallsOfAll) {
  get_invoice(process(0), "INV-1001");
  ASSERT_TRUE(becomes([] { return verified(1, "INV-1001", 1); }));
  EventsReader reader(process(1).port());
  EXPECT_THAT(reader.until("INV-1001"), HasSubstr("INV-1001"));
  get_invoice(process(2), "INV-1002");
  EXPECT_THAT(reader.until("INV-1002"), HasSubstr(R"("strInvoiceUID":"INV-1002")"));
  get_invoice(process(1), "INV-1003");
  const std::string seen = reader.until("INV-1003");
  EXPECT_THAT(seen, HasSubstr(R"("strInvoiceUID":"INV-1003")"));
  // Each is told once, and in the order of the numbers that they have for all.
  const std::size_t number = seen.find("id: ");
  const int first = std::stoi(seen.substr(number + 4));
  for (int i = 0; i < 3; ++i) {
    const std::string begin = "\n\nid: " + std::to_string(first + i) + "\nevent: exchange\n";
    EXPECT_NE(seen.find(begin), std::string::npos) << seen;
    EXPECT_EQ(seen.find(begin), seen.rfind(begin));
  }
  // Whoever goes on at another process misses nothing and is told nothing twice.
  EventsReader other(process(3).port(), "", "Last-Event-ID: " + std::to_string(first + 1) + "\r\n");
  const std::string rest = other.until("INV-1003");
  EXPECT_THAT(rest, HasSubstr(R"({"goesOn":true})"));
  EXPECT_THAT(rest, HasSubstr("INV-1003"));
  EXPECT_EQ(rest.find("INV-1002"), std::string::npos);
}

TEST_F(ProcessesTogether, AnAnswerThatBelongsToAnotherRequestIsThatOfAnyProcess) {
  const json fault{{"kind", "other-answer"}, {"header", "X-Test: other"}};
  ASSERT_EQ(admin(process(0), "POST", "/admin/faults", fault).status, 200);
  std::this_thread::sleep_for(std::chrono::milliseconds(250));
  EXPECT_THAT(get_invoice(process(1), "INV-1001").body, HasSubstr(">INV-1001<"));
  const std::string envelope = envelope_text("urn:InvoiceService", "getInvoice",
                                             "<param xsi:type=\"xsd:string\">INV-1002</param>");
  const std::string headers =
      "Content-Type: text/xml; charset=utf-8\r\nSOAPAction: \"urn:InvoiceService\"\r\n"
      "X-Test: other\r\n";
  const RawReply other =
      exchange(process(2).port(), http_request("POST", "/soap", headers, envelope));
  EXPECT_EQ(other.status, 200);
  EXPECT_THAT(other.body, HasSubstr(">INV-1001<"));
}

TEST_F(ProcessesTogether, AFaultHitsExactlyAsManyCallsAsItMayUnderLoad) {
  const json fault{{"kind", "status"}, {"status", 503}, {"count", 5}, {"operation", kGetInvoice}};
  ASSERT_EQ(admin(process(1), "POST", "/admin/faults", fault).status, 200);
  // In force at once where it was set, and soon at all.
  EXPECT_EQ(get_invoice(process(1), "INV-1001").status, 503);
  std::this_thread::sleep_for(std::chrono::milliseconds(250));
  std::atomic<int> hits = 0;
  std::atomic<int> answered = 0;
  {
    std::vector<std::jthread> clients;
    for (std::size_t i = 0; i < 2 * kProcesses; ++i) {
      clients.emplace_back([&, &sandbox = process(i % kProcesses)] {
        for (int k = 0; k < 15; ++k) {
          const int status = get_invoice(sandbox, "INV-1002").status;
          hits += status == 503 ? 1 : 0;
          answered += status == 200 ? 1 : 0;
        }
      });
    }
  }
  EXPECT_EQ(hits, 4);
  EXPECT_EQ(answered, 8 * 15 - 4);
  const json listed = json::parse(admin(process(3), "GET", "/admin/faults").body)["faults"];
  ASSERT_EQ(listed.size(), 1U);
  EXPECT_EQ(listed[0]["hit"], 5);
  EXPECT_TRUE(becomes([] { return verified(2, "INV-1002", 8 * 15); }));
  // All numbers are different, in the journal of any.
  const json all =
      json::parse(admin(process(0), "GET", "/admin/journal?limit=1000").body)["exchanges"];
  std::set<int> ids;
  for (const json& each : all) ids.insert(each["id"].get<int>());
  EXPECT_EQ(ids.size(), all.size());
}

TEST_F(ProcessesTogether, AStubOfOneAnswersAtAnother) {
  const json stub{
      {"operation", kGetInvoice},
      {"arguments", {{"strInvoiceUID", "INV-7"}}},
      {"times", 2},
      {"answer", "<Invoice><InvoiceNumber>{{strInvoiceUID}}</InvoiceNumber></Invoice>"}};
  const RawReply set = admin(process(0), "POST", "/admin/stubs", stub);
  ASSERT_EQ(set.status, 201) << set.body;
  EXPECT_THAT(get_invoice(process(0), "INV-7").body, HasSubstr("<Invoice>"));
  EXPECT_TRUE(becomes([] { return get_invoice(process(3), "INV-7").status == 200; }));
  // Both answers are given.
  for (std::size_t i = 0; i < kProcesses; ++i) {
    EXPECT_NE(get_invoice(process(i), "INV-7").status, 200);
  }
  EXPECT_EQ(json::parse(admin(process(1), "GET", "/admin/stubs").body)[0]["answered"], 2);
}

TEST_F(ProcessesTogether, WhenOneIsKilledTheOthersKeepAllOfTheirs) {
  std::array<std::atomic<int>, kProcesses> answered{};
  {
    std::atomic<bool> is_ending = false;
    std::vector<std::jthread> clients;
    for (std::size_t i = 0; i < 2 * kProcesses; ++i) {
      clients.emplace_back([&, i] {
        const std::size_t which = i % kProcesses;
        const std::string uid = "INV-100" + std::to_string(which + 1);
        for (int k = 0; k < 100 && !is_ending; ++k) {
          answered[which] += get_invoice(process(which), uid).status == 200 ? 1 : 0;
        }
      });
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    ::kill(process(0).process(), SIGKILL);
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    is_ending = true;
  }
  all()[0] = start_one();
  for (std::size_t i = 1; i < kProcesses; ++i) {
    EXPECT_GT(answered[i], 0);
    const std::string uid = "INV-100" + std::to_string(i + 1);
    EXPECT_TRUE(verified(i, uid, answered[i]));
    EXPECT_TRUE(becomes([&] { return verified(0, uid, answered[i]); }));
  }
  // Of the one that was killed nothing is half: what is there can be read.
  EXPECT_EQ(admin(process(1), "GET", "/admin/journal?limit=1000").status, 200);
}

TEST_F(ProcessesTogether, OneThatIsAskedToEndWritesItsExchangesFirst) {
  const auto guest = start_one();
  for (int i = 0; i < 5; ++i) get_invoice(*guest, "INV-1001");
  EXPECT_EQ(guest->end_by(SIGTERM), 0);
  EXPECT_TRUE(verified(0, "INV-1001", 5));
}

TEST_F(ProcessesTogether, WhatIsAskedWhileTheDatabaseIsGoneIsInTheJournalAfterwards) {
  PostgresServer& server = PostgresServer::shared();
  const json fault{{"kind", "reset"}, {"operation", kGetInvoice}, {"skip", 1'000}};
  ASSERT_EQ(admin(process(0), "POST", "/admin/faults", fault).status, 200);
  get_invoice(process(0), "INV-1001");
  server.stop();
  // The fault is about these, and nobody can count them.
  for (int i = 0; i < 3; ++i) {
    const RawReply reply = get_invoice(process(0), "INV-1001");
    EXPECT_EQ(reply.status, 500);
    EXPECT_THAT(reply.body, HasSubstr("<faultcode>SOAP-ENV:Server</faultcode>"));
    EXPECT_THAT(reply.body, HasSubstr("cannot be reached"));
  }
  // No fault is about this one, and it needs no store.
  EXPECT_EQ(process(0).soap("urn:HeartBeatService", "beat", "").status, 200);
  EXPECT_THAT(admin(process(0), "GET", "/admin/journal").body, HasSubstr("cannot be reached"));
  server.start();
  EXPECT_TRUE(becomes([] { return verified(0, "INV-1001", 4); }));
  const json all = json::parse(admin(process(0), "GET", "/admin/journal").body);
  EXPECT_EQ(all["kept"], 5);
  EXPECT_EQ(all["lost"], 0);
  EXPECT_EQ(all["exchanges"][1]["outcome"], "failed");
  const json faults = json::parse(admin(process(1), "GET", "/admin/faults").body)["faults"];
  EXPECT_EQ(faults[0]["seen"], 1);
}

}  // namespace
}  // namespace bvconn::test

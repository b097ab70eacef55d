#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;
using ::testing::HasSubstr;

class SandboxCalls : public ::testing::Test {
 protected:
  RawReply ask(const std::string& method, const std::string& target, const json& body = nullptr) {
    return exchange(sandbox_.port(),
                    http_request(method, target, "", body.is_null() ? std::string() : body.dump()));
  }
  json get(const std::string& target) { return json::parse(ask("GET", target).body); }
  json call(const json& asked) { return json::parse(ask("POST", "/admin/calls", asked).body); }

  SandboxProcess sandbox_;
};

TEST_F(SandboxCalls, HaveAFormForEachOperationOfAConnector) {
  const json operations = get("/admin/operations")["operations"];
  ASSERT_EQ(operations.size(), 205U);
  std::set<std::string> names;
  std::set<std::string> classes;
  const std::set<std::string> types{"string",  "boolean",  "int16",    "int32",
                                    "variant", "string[]", "SoapNode", "XMLDocument"};
  for (const json& each : operations) {
    const auto name = each["operation"].get<std::string>();
    names.insert(name);
    classes.insert(name.substr(0, name.find('.')));
    EXPECT_FALSE(each["routes"].empty()) << name;
    for (const json& argument : each["arguments"]) {
      EXPECT_NE(argument["name"], "") << name;
      EXPECT_TRUE(types.contains(argument["type"])) << name << argument;
      EXPECT_EQ(argument.contains("default"), argument["optional"].get<bool>()) << name << argument;
    }
  }
  EXPECT_EQ(names.size(), 205U);
  EXPECT_EQ(classes.size(), 19U);
}

TEST_F(SandboxCalls, ShowArgumentsInTheirOrderWithTypesAndDefaults) {
  const json operations = get("/admin/operations")["operations"];
  const auto form = [&](const std::string& name) {
    for (const json& each : operations) {
      if (each["operation"] == name) return each;
    }
    return json();
  };
  EXPECT_EQ(form("BVInvoiceConnector.GetInvoice"), json::parse(R"({
    "operation": "BVInvoiceConnector.GetInvoice", "result": "SoapNode", "routes": ["soap"],
    "arguments": [{"name": "aServerURL", "type": "string", "optional": false},
                  {"name": "aSessionID", "type": "string", "optional": false},
                  {"name": "strInvoiceUID", "type": "string", "optional": false}]})"));
  const json send = form("BVGenericConnector.Send");
  EXPECT_EQ(
      send["arguments"][5],
      json::parse(R"({"name": "aTimeout", "type": "int32", "optional": true, "default": 0})"));
  EXPECT_EQ(form("BVSearchConnector.SearchForOrders")["routes"], json::array({"dal"}));
}

TEST_F(SandboxCalls, AreMadeByTheLibraryOnBothRoutes) {
  json asked{
      {"operation", "BVOrderConnector.getSAPOrderView"},
      {"arguments", {{"aSessionID", "ANNA"}, {"aOrderGID", "ORD-5001"}, {"aIncludePrice", true}}}};
  const json soap = call(asked);
  EXPECT_EQ(soap["route"], "soap");
  EXPECT_EQ(soap["result"]["type"], "SoapNode");
  EXPECT_THAT(soap["result"]["xml"].get<std::string>(), HasSubstr(">ORD-5001</"));
  asked.update({{"route", "dal"}, {"user", "ANNA"}, {"password", "x"}});
  const json dal = call(asked);
  EXPECT_EQ(dal["route"], "dal");
  EXPECT_THAT(dal["result"]["xml"].get<std::string>(), HasSubstr(">ORD-5001</"));
  const json journal = get("/admin/journal");
  EXPECT_EQ(journal["exchanges"].front()["route"], "soap");
  EXPECT_EQ(journal["exchanges"].back()["route"], "dal");
  EXPECT_EQ(journal["exchanges"].back()["operations"][0], "BVOrderConnector.getSAPOrderView");
}

TEST_F(SandboxCalls, ShowAnErrorWithNumberSourceAndDescription) {
  const json answer = call({{"operation", "BVInvoiceConnector.GetInvoice"},
                            {"arguments", {{"aSessionID", "S"}, {"strInvoiceUID", "INV-0"}}}});
  EXPECT_FALSE(answer.contains("result"));
  // A fault with the code 10041 becomes this one, without a description.
  EXPECT_EQ(answer["error"]["hex"], "0x80042739");
  EXPECT_EQ(answer["error"]["number"], -2147211463);
  EXPECT_EQ(answer["error"]["source"], "BVInvoiceConnector");
  EXPECT_EQ(answer["error"]["description"], "");
  EXPECT_EQ(answer["error"]["outcome"], "answered");
}

TEST_F(SandboxCalls, AreHitByFaults) {
  ask("POST", "/admin/faults", {{"kind", "soap-fault"}, {"text", "<b>Closed</b>"}});
  const json answer = call({{"operation", "BVInvoiceConnector.GetInvoice"},
                            {"arguments", {{"aSessionID", "S"}, {"strInvoiceUID", "INV-1001"}}}});
  EXPECT_EQ(answer["error"]["hex"], "0x80044201");
  EXPECT_THAT(answer["error"]["description"].get<std::string>(), HasSubstr("<b>Closed</b>"));
}

TEST_F(SandboxCalls, AreRefusedInOneLineWhereTheyCannotBe) {
  struct Case {
    json asked;
    const char* told;
  };
  const json arguments{{"aSessionID", "S"}, {"strInvoiceUID", "INV-1001"}};
  for (const Case& each : {
           Case{{{"operation", "BVInvoiceConnector.GetInvoise"}},
                "There is no operation 'BVInvoiceConnector.GetInvoise'; did you mean "
                "BVInvoiceConnector.GetInvoice?\n"},
           Case{{{"operation", "BVInvoiceConnector.GetInvoice"},
                 {"arguments", {{"aSessionID", "S"}}}},
                "The argument strInvoiceUID is missing\n"},
           Case{{{"operation", "BVInvoiceConnector.GetInvoice"},
                 {"arguments", {{"aServerURL", "http://elsewhere.example"}}}},
                "aServerURL is this sandbox's own\n"},
           Case{{{"operation", "BVInvoiceConnector.GetInvoice"},
                 {"arguments", {{"aSessionID", 1}, {"strInvoiceUID", "INV-1001"}}}},
                "aSessionID: a text is expected\n"},
           Case{{{"operation", "BVSearchConnector.SearchForOrders"},
                 {"arguments", {{"aSessionID", "S"}}},
                 {"route", "soap"}},
                "BVSearchConnector.SearchForOrders does not go by the route 'soap'\n"},
           Case{{{"operation", "BVInvoiceConnector.GetInvoice"}, {"argument", arguments}},
                "There is no field 'argument' here; did you mean arguments?\n"},
           Case{"text", "The body is no object of JSON\n"},
       }) {
    const RawReply reply = ask("POST", "/admin/calls", each.asked);
    EXPECT_EQ(reply.status, 400) << each.asked;
    EXPECT_EQ(reply.body, each.told);
  }
}

TEST_F(SandboxCalls, AreTwoAtATimeAndHoldUpNobody) {
  ask("POST", "/admin/faults", {{"kind", "delay"}, {"delay_ms", 1500}, {"count", 2}});
  const json asked{{"operation", "BVInvoiceConnector.GetInvoice"},
                   {"arguments", {{"aSessionID", "S"}, {"strInvoiceUID", "INV-1001"}}}};
  std::vector<int> statuses(6);
  std::vector<std::thread> callers;
  for (int& status : statuses) {
    callers.emplace_back([&] { status = ask("POST", "/admin/calls", asked).status; });
  }
  for (std::thread& each : callers) each.join();
  EXPECT_THAT(statuses, ::testing::Contains(200));
  EXPECT_THAT(statuses, ::testing::Contains(503));
  EXPECT_THAT(statuses, ::testing::Each(::testing::AnyOf(200, 503)));
}

TEST_F(SandboxCalls, EndWithTheSandbox) {
  ask("POST", "/admin/faults", {{"kind", "delay"}, {"delay_ms", 60'000}});
  std::thread caller([&] {
    ask("POST", "/admin/calls",
        {{"operation", "BVInvoiceConnector.GetInvoice"},
         {"arguments", {{"aSessionID", "S"}, {"strInvoiceUID", "INV-1001"}}}});
  });
  std::this_thread::sleep_for(500ms);
  const auto begun = std::chrono::steady_clock::now();
  EXPECT_EQ(sandbox_.end_by(SIGTERM), 0);
  // Five seconds for what is under way, and a moment for the call to notice.
  EXPECT_LT(std::chrono::steady_clock::now() - begun, 12s);
  caller.join();
}

TEST_F(SandboxCalls, SeeTheDocumentsOfTheStore) {
  std::set<std::string> kinds;
  const json all = get("/admin/documents");
  for (const json& each : all["kinds"]) {
    kinds.insert(each["kind"]);
    EXPECT_GT(each["count"], 0) << each;
  }
  EXPECT_EQ(kinds, (std::set<std::string>{"project", "quote", "order", "RFQ", "acknowledgement",
                                          "submittal", "RMA", "order reconcile", "invoice"}));
  const json quotes = get("/admin/documents?kind=quote&after=QUO-4029")["documents"];
  ASSERT_EQ(quotes.size(), 1U);
  EXPECT_EQ(quotes[0]["key"], "QUO-4030");
  EXPECT_EQ(quotes[0]["number"], "Q4030");
  EXPECT_EQ(quotes[0]["parent"], "PRJ-3030");
  EXPECT_EQ(get("/admin/documents?kind=invoice")["documents"].size(), 40U);
  EXPECT_THAT(get("/admin/documents/QUO-4030")["xml"].get<std::string>(), HasSubstr("QUO-4030"));
  EXPECT_THAT(get("/admin/documents/INV-1001")["xml"].get<std::string>(),
              HasSubstr(">INV-1001</InvoiceUID>"));
  EXPECT_EQ(ask("GET", "/admin/documents/QUO-1").status, 404);
  EXPECT_EQ(ask("GET", "/admin/documents?kind=qoute").body,
            "There are no documents of the kind 'qoute'; did you mean quote?\n");
}

TEST_F(SandboxCalls, KnowTheKindsOfFaultsAndTheirFields) {
  const json all = get("/admin/faults/kinds");
  EXPECT_EQ(all["kinds"].size(), 19U);
  for (const json& each : all["kinds"]) {
    if (each["kind"] != "drip") continue;
    EXPECT_THAT(each["fields"], ::testing::Contains("every_ms"));
    EXPECT_THAT(each["fields"], ::testing::Not(::testing::Contains("code")));
  }
  for (const json& each : all["fields"]) {
    if (each["name"] == "probability") {
      EXPECT_EQ(each["type"], "number");
    }
    if (each["name"] == "run") {
      EXPECT_EQ(each["type"], "truth");
    }
    if (each["name"] == "count") {
      EXPECT_EQ(each["type"], "whole number");
    }
  }
}

}  // namespace
}  // namespace bvconn::test

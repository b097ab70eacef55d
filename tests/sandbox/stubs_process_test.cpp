#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "bvconn/connectors/documents/bv_order_connector.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "sandbox/command_run.h"
#include "sandbox/documents_fixture.h"
#include "support/error_of.h"

namespace bvconn::test {
namespace {

class SandboxStubs : public SandboxDocuments {
 protected:
  RawReply set(const std::string& json) { return admin("POST", "/admin/stubs", json); }
  RawReply admin(std::string_view method, std::string_view path, const std::string& body = "") {
    return exchange(sandbox().port(), http_request(method, path, "", body));
  }
  CommandRun command(const std::vector<std::string>& words) {
    return ask_sandbox(sandbox().port(), words);
  }
};

TEST_F(SandboxStubs, WinOverTheStoreOnBothRoutes) {
  const auto reply = set(R"([{"operation": "BVOrderConnector.getSAPOrderView",
      "arguments": {"aOrderGID": {"pattern": "ORD-500?"}, "aIncludePrice": "true"},
      "answer": "<return><GID>{{aOrderGID}}</GID><By>{{session}}</By></return>"}])");
  ASSERT_EQ(reply.status, 201) << reply.body;
  BVOrderConnector connector;
  for (const bool by_dal : {false, true}) {
    if (by_dal) go_by_dal();
    const SoapNode stubbed = connector.getSAPOrderView("S-7", url_, "ORD-5001", true);
    EXPECT_EQ(text(stubbed, "GID"), "ORD-5001");
    EXPECT_EQ(text(stubbed, "By"), by_dal ? "anna" : "S-7");
    // What the store does not have either.
    EXPECT_EQ(text(connector.getSAPOrderView("S-7", url_, "ORD-500X", true), "GID"), "ORD-500X");
    EXPECT_FALSE(has(connector.getSAPOrderView("S-7", url_, "ORD-5001", false), "By"));
    EXPECT_FALSE(has(connector.getSAPOrderView("S-7", url_, "ORD-5011", true), "By"));
  }
}

TEST_F(SandboxStubs, CanAnswerByAWholeEnvelopeAndByAFaultInIt) {
  const std::string envelope =
      "<E:Envelope xmlns:E='http://schemas.xmlsoap.org/soap/envelope/'><E:Body><E:Fault>"
      "<faultcode>10041</faultcode><faultstring>No {{strInvoiceUID}}</faultstring>"
      "</E:Fault></E:Body></E:Envelope>";
  const auto reply =
      set(R"({"operation": "BVInvoiceConnector.GetInvoice", "times": 1, "answer": ")" + envelope +
          R"("})");
  ASSERT_EQ(reply.status, 201) << reply.body;
  BVInvoiceConnector connector;
  const Error error = error_of([&] { connector.GetInvoice(url_, "S", "INV-1001"); });
  EXPECT_EQ(hex_number(error.number), "0x80042739");
  EXPECT_EQ(text(connector.GetInvoice(url_, "S", "INV-1001"), "InvoiceNumber"), "700101");
}

TEST_F(SandboxStubs, AreRefusedWithOneLineWhereTheAnswerIsNotWellFormed) {
  const auto reply = set(R"([{"operation": "BVInvoiceConnector.GetInvoice", "answer": "<return/>"},
              {"operation": "BVInvoiceConnector.GetInvoice", "answer": "<return>"}])");
  EXPECT_EQ(reply.status, 400);
  EXPECT_TRUE(reply.body.starts_with("The answer is no well-formed XML: ")) << reply.body;
  EXPECT_EQ(reply.body.find('\n'), reply.body.size() - 1) << reply.body;
  EXPECT_EQ(admin("GET", "/admin/stubs").body, "[]\n");
}

TEST_F(SandboxStubs, AreNotForTheLogin) {
  const auto reply = set(R"({"operation": "BVConnectorObject.InitTorvexDAL", "answer": ""})");
  EXPECT_EQ(reply.status, 400);
  EXPECT_TRUE(reply.body.starts_with("There is no operation 'BVConnectorObject.InitTorvexDAL'"))
      << reply.body;
}

TEST_F(SandboxStubs, AreSetShownAndTakenBackByCommands) {
  const auto file = std::filesystem::temp_directory_path() /
                    ("bvsandbox-stubs-" + std::to_string(std::random_device{}()) + ".json");
  std::ofstream(file) << R"({"stubs": [
      {"operation": "BVHeartBeatConnector.*", "answer": "<return>a</return>"},
      {"operation": "*", "session": "S-9", "answer": "<return>b</return>"}]})";
  EXPECT_EQ(command({"stubs", "add", file.string()}).status, 0);
  std::filesystem::remove(file);
  const std::string listed = command({"stubs", "list"}).out;
  EXPECT_NE(listed.find(R"("operation": "BVHeartBeatConnector.*")"), std::string::npos) << listed;
  EXPECT_NE(listed.find(R"("session": "S-9")"), std::string::npos) << listed;
  const CommandRun removed = command({"stubs", "remove", "1"});
  EXPECT_EQ(removed.out.find("BVHeartBeatConnector"), std::string::npos) << removed.out;
  const CommandRun again = command({"stubs", "remove", "1"});
  EXPECT_EQ(again.status, 1);
  EXPECT_EQ(again.err, "There is no stub '1'\n");
  EXPECT_EQ(command({"stubs", "clear"}).out, "[]\n");
  EXPECT_EQ(command({"stubs", "list"}).out, "[]\n");
  EXPECT_EQ(command({"stubs", "add", file.string()}).err,
            "bvsandbox: cannot read " + file.string() + "\n");
}

}  // namespace
}  // namespace bvconn::test

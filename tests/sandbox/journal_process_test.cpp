#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "sandbox/command_run.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* kService = "urn:InvoiceService";

RawReply get_invoice(SandboxProcess& sandbox, const std::string& uid) {
  return sandbox.soap(kService, "getInvoice",
                      R"(<param xsi:type="xsd:string">)" + uid + "</param>");
}

RawReply admin(const SandboxProcess& sandbox, const std::string& method, const std::string& target,
               const std::string& body = "") {
  return exchange(sandbox.port(), http_request(method, target, "", body));
}

json journal(const SandboxProcess& sandbox, const std::string& query = "") {
  return json::parse(admin(sandbox, "GET", "/admin/journal" + query).body);
}

std::vector<int> ids(const json& journal) {
  std::vector<int> all;
  for (const json& each : journal["exchanges"]) all.push_back(each["id"].get<int>());
  return all;
}

using Ids = std::vector<int>;

TEST(SandboxJournal, KeepsAnExchangeWithItsOperationAndArguments) {
  SandboxProcess sandbox;
  get_invoice(sandbox, "INV-1001");
  const json all = journal(sandbox);
  ASSERT_EQ(all["exchanges"].size(), 1U);
  const json& kept = all["exchanges"][0];
  EXPECT_EQ(kept["id"], 1);
  EXPECT_EQ(kept["route"], "soap");
  EXPECT_EQ(kept["operations"], json::array({"BVInvoiceConnector.GetInvoice"}));
  EXPECT_EQ(kept["service"], kService);
  EXPECT_EQ(kept["method"], "getInvoice");
  EXPECT_EQ(kept["session"], "***");
  EXPECT_EQ(kept["arguments"]["strInvoiceUID"], "INV-1001");
  EXPECT_EQ(kept["outcome"], "answered");
  EXPECT_EQ(kept["differences"], json::array());
  EXPECT_EQ(kept["request"]["target"], "/soap");
  EXPECT_THAT(kept["request"]["body"].get<std::string>(), HasSubstr("<userID>***</userID>"));
  EXPECT_THAT(kept["request"]["body"].get<std::string>(), HasSubstr(">INV-1001</param>"));
  EXPECT_EQ(kept["reply"]["status"], 200);
  EXPECT_THAT(kept["reply"]["body"].get<std::string>(), HasSubstr("getInvoiceResponse"));
  EXPECT_EQ(json::parse(admin(sandbox, "GET", "/admin/journal/1").body), kept);
}

TEST(SandboxJournal, NamesTheFaultThatHitAlsoWhereAnAnswerWasMade) {
  SandboxProcess sandbox;
  ASSERT_EQ(ask_sandbox(sandbox.port(), {"faults", "add", "gzip", "--count", "1"}).status, 0);
  ASSERT_EQ(
      ask_sandbox(sandbox.port(), {"faults", "add", "status", "--name", "outage", "--count", "1"})
          .status,
      0);
  get_invoice(sandbox, "INV-9999");
  get_invoice(sandbox, "INV-1001");
  get_invoice(sandbox, "INV-1001");
  const json all = journal(sandbox)["exchanges"];
  ASSERT_EQ(all.size(), 3U);
  EXPECT_EQ(all[0]["answeredBy"], "fault fault-1");
  EXPECT_EQ(all[0]["outcome"], "injected");
  EXPECT_EQ(all[1]["answeredBy"], "fault outage");
  EXPECT_EQ(all[1]["outcome"], "injected");
  EXPECT_FALSE(all[2].contains("answeredBy"));
}

TEST(SandboxJournal, IsFilteredBySeveralArgumentsTogether) {
  SandboxProcess sandbox;
  for (const char* uid : {"INV-1001", "INV-1002", "INV-1003"}) get_invoice(sandbox, uid);
  EXPECT_EQ(ids(journal(sandbox, "?where=strInvoiceUID%3DINV-1001&where=aSessionID%3DS1")),
            Ids({1}));
  EXPECT_EQ(ids(journal(sandbox, "?where=aSessionID%3DS1")), Ids({1, 2, 3}));
  EXPECT_EQ(ids(journal(sandbox, "?where=aSessionID%3DS2&where=strInvoiceUID%3DINV-1001")), Ids());
  const CommandRun run = ask_sandbox(
      sandbox.port(), {"journal", "--where", "aSessionID=S1", "--where", "strInvoiceUID=INV-1003"});
  EXPECT_THAT(run.out, ::testing::StartsWith("3 "));
  EXPECT_EQ(run.status, 0);
}

TEST(SandboxJournal, TellsAllInWhichARefusedRequestDiffers) {
  SandboxProcess sandbox;
  const RawReply reply = sandbox.soap_text(
      envelope_text(kService, "getInvoice", R"(<UID xsi:type="xsd:int">1</UID>)"), "urn:Other");
  EXPECT_THAT(reply.body,
              HasSubstr("<faultstring>getInvoice in urn:InvoiceService: SOAPAction is 'urn:Other', "
                        "expected 'urn:InvoiceService'; 2 more differences</faultstring>"));
  const json kept = journal(sandbox)["exchanges"][0];
  EXPECT_EQ(kept["outcome"], "refused");
  EXPECT_EQ(kept["operations"], json::array({"BVInvoiceConnector.GetInvoice"}));
  EXPECT_EQ(
      kept["differences"],
      json::array({{{"at", "SOAPAction"},
                    {"found", "is 'urn:Other'"},
                    {"expected", "'urn:InvoiceService'"}},
                   {{"at", "parameter 1"}, {"found", "is named 'UID'"}, {"expected", "'param'"}},
                   {{"at", "parameter 1 ('UID')"},
                    {"found", "has type 'int'"},
                    {"expected", "type 'string'"}}}));
}

TEST(SandboxJournal, HidesPasswordsAndTokensOfTheDataAccessLayer) {
  SandboxProcess sandbox;
  const std::string token = sandbox.login();
  sandbox.dal("OrderService/getSAPOrderView", R"({"arguments":["ORD-5001",true]})", token);
  const std::string text = admin(sandbox, "GET", "/admin/journal").body;
  EXPECT_THAT(text, Not(HasSubstr("secret")));
  EXPECT_THAT(text, Not(HasSubstr(token)));
  const json kept = json::parse(text)["exchanges"][1];
  EXPECT_EQ(kept["operations"], json::array({"BVOrderConnector.getSAPOrderView"}));
  EXPECT_EQ(kept["session"], "anna");
  EXPECT_EQ(kept["arguments"]["aIncludePrice"], "true");
}

TEST(SandboxJournal, IsFilteredByWhateverIsKnownOfAnExchange) {
  SandboxProcess sandbox;
  get_invoice(sandbox, "INV-1001");
  get_invoice(sandbox, "INV-0");
  sandbox.soap(kService, "getInvoice", "");
  sandbox.login();
  const auto filtered = [&](const std::string& query) { return ids(journal(sandbox, query)); };
  EXPECT_EQ(filtered(""), (Ids{1, 2, 3, 4}));
  EXPECT_EQ(filtered("?operation=BVInvoiceConnector.GetInvoice"), (Ids{1, 2, 3}));
  EXPECT_EQ(filtered("?operation=BVInvoiceConnector.*"), (Ids{1, 2, 3}));
  EXPECT_EQ(filtered("?operation=BVOrderConnector.*"), Ids{});
  EXPECT_EQ(filtered("?route=dal"), Ids{4});
  EXPECT_EQ(filtered("?session=S1&outcome=fault"), Ids{2});
  EXPECT_EQ(filtered("?session=S2"), Ids{});
  EXPECT_EQ(filtered("?outcome=refused"), Ids{3});
  EXPECT_EQ(filtered("?where=strInvoiceUID%3DINV-1001"), Ids{1});
  EXPECT_EQ(filtered("?since=2020-01-01T00:00:00Z"), (Ids{1, 2, 3, 4}));
  EXPECT_EQ(filtered("?until=2020-01-01T00:00:00Z"), Ids{});
  EXPECT_EQ(filtered("?after=2"), (Ids{3, 4}));
  EXPECT_EQ(filtered("?limit=2"), (Ids{3, 4}));
  EXPECT_EQ(journal(sandbox, "?limit=2")["matched"], 4);
}

TEST(SandboxJournal, IsClearedAndGoesOnCounting) {
  SandboxProcess sandbox;
  get_invoice(sandbox, "INV-1001");
  EXPECT_EQ(admin(sandbox, "DELETE", "/admin/journal").status, 200);
  EXPECT_EQ(ids(journal(sandbox)), Ids{});
  get_invoice(sandbox, "INV-1001");
  EXPECT_EQ(ids(journal(sandbox)), Ids{2});
  EXPECT_EQ(admin(sandbox, "GET", "/admin/journal/1").body, "The journal has no exchange 1\n");
}

TEST(SandboxJournal, RefusesWhatItDoesNotKnow) {
  const SandboxProcess sandbox;
  struct Case {
    const char *query, *told;
  };
  for (const Case& each : {
           Case{"?operatoin=*", "There is no field 'operatoin' here; did you mean operation?\n"},
           Case{"?route=http", "There is no route 'http', but soap, dal\n"},
           Case{"?limit=x", "limit is 'x', expected a whole number from 0 to 10000\n"},
       }) {
    const RawReply reply = admin(sandbox, "GET", std::string("/admin/journal") + each.query);
    EXPECT_EQ(reply.status, 400) << each.query;
    EXPECT_EQ(reply.body, each.told);
  }
  EXPECT_EQ(admin(sandbox, "POST", "/admin/verify", R"({"cuont":1})").body,
            "There is no field 'cuont' here; did you mean count?\n");
}

TEST(SandboxJournal, KeepsAsManyAsItIsStartedWith) {
  SandboxProcess few({"--journal-count", "2"});
  for (int i = 0; i < 3; ++i) get_invoice(few, "INV-1001");
  EXPECT_EQ(ids(journal(few)), (Ids{2, 3}));
  EXPECT_EQ(journal(few)["dropped"], 1);
  SandboxProcess none({"--journal-count", "0"});
  EXPECT_EQ(get_invoice(none, "INV-1001").status, 200);
  const RawReply reply = admin(none, "GET", "/admin/journal");
  EXPECT_EQ(reply.status, 404);
  EXPECT_EQ(reply.body, "This sandbox keeps no journal: it was started with --journal-count 0\n");
}

TEST(SandboxVerify, EndsWith1AndTheNearestMisses) {
  SandboxProcess sandbox;
  get_invoice(sandbox, "INV-1001");
  get_invoice(sandbox, "INV-1002");
  const std::vector<std::string> once{"verify", "BVInvoiceConnector.GetInvoice", "--where",
                                      "strInvoiceUID=INV-1001", "--count"};
  auto asked = once;
  asked.emplace_back("1");
  const CommandRun good = ask_sandbox(sandbox.port(), asked);
  EXPECT_EQ(good.status, 0) << good.err;
  EXPECT_EQ(good.out,
            "BVInvoiceConnector.GetInvoice with strInvoiceUID=INV-1001: asked for once, expected "
            "1\n");
  asked.back() = "2";
  const CommandRun bad = ask_sandbox(sandbox.port(), asked);
  EXPECT_EQ(bad.status, 1);
  EXPECT_THAT(bad.err, HasSubstr("asked for once, expected 2\n  exchanges 1\nnear miss: 2 "));
  EXPECT_THAT(bad.err, HasSubstr("\n  strInvoiceUID is 'INV-1002' | expected 'INV-1001'\n"));
}

TEST(SandboxVerify, TakesBoundsSessionAndRoute) {
  SandboxProcess sandbox;
  get_invoice(sandbox, "INV-1001");
  get_invoice(sandbox, "INV-1002");
  const auto status = [&](std::vector<std::string> options) {
    options.insert(options.begin(), {"verify", "BVInvoiceConnector.GetInvoice"});
    return ask_sandbox(sandbox.port(), options).status;
  };
  EXPECT_EQ(status({}), 0);
  EXPECT_EQ(status({"--at-least", "2"}), 0);
  EXPECT_EQ(status({"--at-least", "3"}), 1);
  EXPECT_EQ(status({"--at-most", "2"}), 0);
  EXPECT_EQ(status({"--at-most", "1"}), 1);
  EXPECT_EQ(status({"--at-least", "1", "--at-most", "2"}), 0);
  EXPECT_EQ(status({"--count", "2", "--session", "S1", "--route", "soap"}), 0);
  EXPECT_EQ(status({"--count", "0", "--session", "S2"}), 0);
  EXPECT_EQ(status({"--route", "dal"}), 1);
  EXPECT_EQ(status({"--where", "strInvoiceUID=INV-1001", "--count", "1"}), 0);
}

TEST(SandboxVerify, EndsWith2ForWhatCannotBe) {
  const SandboxProcess sandbox;
  const CommandRun run = ask_sandbox(sandbox.port(), {"verify", "BVInvoiceConnector.GetInvoise"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err,
            "There is no operation of BVInvoiceConnector 'GetInvoise'; did you mean GetInvoice?\n");
  const CommandRun bad = ask_sandbox(
      sandbox.port(), {"verify", "BVInvoiceConnector.GetInvoice", "--where", "INV-1001"});
  EXPECT_EQ(bad.status, 2);
  EXPECT_EQ(bad.err, "bvsandbox: --where is written as strInvoiceUID=INV-1001, not 'INV-1001'\n");
}

TEST(SandboxJournal, IsShownByACommand) {
  SandboxProcess sandbox;
  get_invoice(sandbox, "INV-1001");
  get_invoice(sandbox, "INV-0");
  const CommandRun list = ask_sandbox(sandbox.port(), {"journal", "--outcome", "fault"});
  EXPECT_EQ(list.status, 0) << list.err;
  EXPECT_THAT(list.out, ::testing::MatchesRegex(
                            "2 [0-9:.]+ soap BVInvoiceConnector.GetInvoice fault 500 [0-9.]+ ms: "
                            ".*INV-0.*\n"));
  const CommandRun one = ask_sandbox(sandbox.port(), {"journal", "1"});
  EXPECT_THAT(one.out, HasSubstr("\nPOST /soap\n"));
  EXPECT_THAT(one.out, HasSubstr("getInvoiceResponse"));
  EXPECT_EQ(ask_sandbox(sandbox.port(), {"journal", "3"}).status, 1);
  EXPECT_EQ(ask_sandbox(sandbox.port(), {"journal", "--clear"}).status, 0);
  EXPECT_EQ(ask_sandbox(sandbox.port(), {"journal"}).out, "");
}

TEST(SandboxLoose, AnswersWithAWarningWhereStrictRefuses) {
  const std::string text =
      envelope_text(kService, "getInvoice", R"(<UID xsi:type="xsd:string">INV-1001</UID>)");
  SandboxProcess strict;
  EXPECT_EQ(strict.soap_text(text, "").status, 500);
  SandboxProcess loose({"--loose"});
  const RawReply reply = loose.soap_text(text, "");
  EXPECT_EQ(reply.status, 200) << reply.body;
  EXPECT_THAT(reply.body, HasSubstr("getInvoiceResponse"));
  const json kept = journal(loose)["exchanges"][0];
  EXPECT_EQ(kept["outcome"], "warned");
  EXPECT_EQ(kept["differences"].size(), 2U);
  // There is nothing to answer with.
  EXPECT_EQ(loose.soap("urn:InvoiceService", "fetchInvoice", "").status, 500);
  EXPECT_EQ(journal(loose)["exchanges"][1]["outcome"], "refused");
}

TEST(SandboxLoose, AnswersTheDataAccessLayerToo) {
  SandboxProcess loose({"--loose"});
  const std::string token = loose.login();
  const RawReply reply =
      loose.dal("OrderService/getSAPOrderView", R"({"arguments":["ORD-5001"]})", token);
  EXPECT_EQ(reply.status, 200) << reply.body;
  EXPECT_THAT(reply.body, HasSubstr("ORD-5001"));
  const json kept = journal(loose)["exchanges"][1];
  EXPECT_EQ(kept["outcome"], "warned");
  EXPECT_EQ(kept["differences"][0]["found"], "has 1 argument");
  // Who has not logged in is refused all the same.
  EXPECT_EQ(loose.dal("OrderService/getSAPOrderView", R"({"arguments":[]})").status, 401);
}

TEST(SandboxVerbose, TellsTheTextsOfFaultsAndErrors) {
  SandboxProcess sandbox({"--verbose"});
  sandbox.soap_text("<cut", kService);
  sandbox.dal("OrderService/getSAPOrderView", R"({"arguments":[]})");
  EXPECT_EQ(sandbox.end_by(SIGTERM), 0);
  EXPECT_THAT(sandbox.errors(),
              HasSubstr("POST /soap \"urn:InvoiceService\" 500 The request cannot be read: "));
  EXPECT_THAT(sandbox.errors(), HasSubstr("POST /dal/OrderService/getSAPOrderView - 401 "
                                          "getSAPOrderView needs a login: "));
}

}  // namespace
}  // namespace bvconn::test

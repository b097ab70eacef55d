#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/tls_files.h"
#include "files/temp_folder.h"
#include "sandbox/command_run.h"
#include "sandbox/record/upstream.h"
#include "sandbox/sandbox_process.h"
#include "support/tls_server.h"

namespace bvconn::test {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

std::string url_of(const SandboxProcess& sandbox) {
  return "http://127.0.0.1:" + std::to_string(sandbox.port());
}

std::vector<std::string> names_in(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

std::string text_of(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string text_of_all(const fs::path& folder) {
  std::string all;
  for (const std::string& name : names_in(folder)) all += text_of(folder / name);
  return all;
}

constexpr const char* kInvoice = R"(<param xsi:type="xsd:string">INV-1001</param>)";

RawReply ask_for_invoice(SandboxProcess& server) {
  return server.soap("urn:InvoiceService", "getInvoice", kInvoice);
}

TEST(Record, WhatIsRecordedOnBothRoutesIsReplayedToTheLetter) {
  const files_test::TempFolder folder;
  RawReply invoice;
  RawReply fault;
  RawReply view;
  {
    SandboxProcess upstream;
    SandboxProcess record({"record", "--upstream", url_of(upstream), "--out", folder.file("out")});
    invoice = ask_for_invoice(record);
    EXPECT_EQ(invoice.body, ask_for_invoice(upstream).body);
    fault = record.soap("urn:InvoiceService", "getInvoice",
                        R"(<param xsi:type="xsd:string">none</param>)");
    EXPECT_EQ(fault.status, 500);
    const std::string token = record.login();
    EXPECT_NE(token, "");
    view = record.dal("OrderService/getSAPOrderView", R"({"arguments":["ORD-5001",true]})", token);
    EXPECT_EQ(view.status, 200);
  }
  EXPECT_THAT(names_in(folder.file("out")),
              ElementsAre("000001-BVInvoiceConnector.GetInvoice.wire",
                          "000002-BVInvoiceConnector.GetInvoice.wire",
                          "000003-BVConnectorObject.InitTorvexDAL.wire",
                          "000004-BVOrderConnector.getSAPOrderView.wire"));
  for (const char* order : {"--verbose", "--in-order"}) {
    SandboxProcess replay({"replay", order, folder.file("out")});
    EXPECT_EQ(ask_for_invoice(replay).body, invoice.body);
    const RawReply same = replay.soap("urn:InvoiceService", "getInvoice",
                                      R"(<param xsi:type="xsd:string">none</param>)");
    EXPECT_EQ(same.status, 500);
    EXPECT_EQ(same.body, fault.body);
    EXPECT_EQ(replay.login(), "***");
    EXPECT_EQ(replay.dal("OrderService/getSAPOrderView", R"({"arguments":["ORD-5001",true]})").body,
              view.body);
  }
}

TEST(Record, FilesHoldNoSecretAndAreTheirOwnersAlone) {
  const files_test::TempFolder folder;
  SandboxProcess upstream;
  SandboxProcess record({"record", "--upstream", url_of(upstream), "--out", folder.file("out")});
  const std::string token =
      record.dal("AuthenticationService/Login", R"({"arguments":["anna","s3cret!","1.0","US"]})")
          .header("Session-Token");
  record.dal("HeartBeatService/sendHeartBeat", R"({"arguments":[]})", token);
  std::string envelope = envelope_text("urn:InvoiceService", "getInvoice", kInvoice);
  envelope.replace(envelope.find(">S1<"), 4, ">SESSION-77<");
  record.soap_text(envelope, "urn:InvoiceService");
  const std::string password = R"(<param xsi:type="xsd:string">n3w-one</param>)";
  record.soap("urn:MaintenanceService", "updatePassword", password);
  const std::string all = text_of_all(folder.file("out"));
  for (const std::string& secret :
       {token, std::string("s3cret!"), std::string("SESSION-77"), std::string("n3w-one")}) {
    EXPECT_THAT(all, Not(HasSubstr(secret)));
  }
  EXPECT_THAT(all, HasSubstr("dal: AuthenticationService.Login(\"anna\", \"***\", \"1.0\", "
                             "\"US\")\n"));
  EXPECT_THAT(all, HasSubstr("\n  Session-Token: ***\n"));
  EXPECT_EQ(names_in(folder.file("out")).size(), 4U);
  for (const std::string& name : names_in(folder.file("out"))) {
    struct stat facts {};
    ASSERT_EQ(::stat(folder.file("out/" + name).c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777U, 0600U) << name;
  }
  // Whoever replays it needs none of them.
  SandboxProcess replay({"replay", folder.file("out")});
  const std::string other = R"(<param xsi:type="xsd:string">other</param>)";
  const RawReply updated = replay.soap("urn:MaintenanceService", "updatePassword", other);
  EXPECT_EQ(updated.status, 200);
  EXPECT_THAT(updated.body, HasSubstr("<return xsi:type=\"xsd:string\">***</return>"));
}

TEST(Record, AFileReadsAsTheRequestAndItsReply) {
  const files_test::TempFolder folder;
  SandboxProcess upstream;
  SandboxProcess record({"record", "--upstream", url_of(upstream), "--out", folder.file("out")});
  const std::string token = record.login();
  record.dal("OrderService/getSAPOrderView", R"({"arguments":["ORD-5001",true]})", token);
  EXPECT_THAT(text_of(folder.file("out/000002-BVOrderConnector.getSAPOrderView.wire")),
              ::testing::StartsWith("claim: BVOrderConnector.getSAPOrderView, exchange 2\n"
                                    "call: BVOrderConnector.getSAPOrderView "
                                    "{\"aOrderGID\":\"ORD-5001\",\"aIncludePrice\":\"true\"}\n"
                                    "dal: OrderService.getSAPOrderView(\"ORD-5001\", true)\n"
                                    "status: 200\n"
                                    "header: Content-Type: text/plain; charset=utf-8\n"
                                    "raw:"));
}

TEST(Record, AServerBehindHttpsIsTrustedByTheFileThatTheEnvironmentNames) {
  const files_test::TempFolder folder;
  const TlsIdentity identity;
  MisbehavingServer upstream(tls_streams(identity));
  const std::string url = upstream.url("/sales/soap", "https");
  {
    SandboxProcess record({"record", "--upstream", url, "--out", folder.file("out")});
    EXPECT_EQ(ask_for_invoice(record).status, 502);
    EXPECT_THAT(names_in(folder.file("out")), IsEmpty());
  }
  const files_test::ScopedEnvironment trust("BVCONN_CA_FILE", identity.certificate_file());
  SandboxProcess record({"record", "--upstream", url, "--out", folder.file("out")});
  EXPECT_EQ(ask_for_invoice(record).body, "<ok/>");
  record.dal("A/b", R"({"arguments":[]})", "tok-en-1");
  ASSERT_EQ(upstream.requests().size(), 2U);
  const std::string soap = upstream.requests()[0].bytes;
  EXPECT_THAT(soap, ::testing::StartsWith("POST /sales/soap HTTP/1.1\r\n"));
  EXPECT_THAT(soap, HasSubstr("\r\nSOAPAction: \"urn:InvoiceService\"\r\n"));
  EXPECT_THAT(soap, Not(HasSubstr("Accept-Encoding")));
  const std::string call = upstream.requests()[1].bytes;
  EXPECT_THAT(call, ::testing::StartsWith("POST /sales/dal/A/b HTTP/1.1\r\n"));
  EXPECT_THAT(call, HasSubstr("\r\nAuthorization: Bearer tok-en-1\r\n"));
  EXPECT_THAT(text_of_all(folder.file("out")), HasSubstr("raw: <ok/>\n"));
}

std::string https_url(const SandboxProcess& server) {
  return "https://127.0.0.1:" + std::to_string(server.port());
}

/// The number of an invoice as the library gets it, on a thread of its own, which trusts this file.
std::string number_of_invoice(const std::string& url, const std::string& authority) {
  std::string number;
  std::jthread([&] {
    use_tls_files({.ca_file = authority});
    const SoapNode invoice = BVInvoiceConnector().GetInvoice(url + "/soap", "S1", "INV-1003");
    number = to_text(invoice.Nodes().ItemByName("InvoiceNumber").Value());
    BVConnectorObject object;
    object.UserName("anna");
    object.Password("secret");
    object.InitTorvexDAL(url + "/dal");
  }).join();
  return number;
}

TEST(Record, WhatIsRecordedByTlsFromAServerWithTlsIsReplayedByTls) {
  const files_test::TempFolder folder;
  const std::string servers = folder.file("servers/authority.pem");
  const std::string own = folder.file("own/authority.pem");
  {
    SandboxProcess upstream({"--tls-folder", folder.file("servers")});
    const std::string url = https_url(upstream);
    {
      // Without the file nobody vouches for the server.
      SandboxProcess record({"record", "--upstream", url, "--out", folder.file("none")});
      EXPECT_EQ(ask_for_invoice(record).status, 502);
    }
    SandboxProcess record({"record", "--upstream", url, "--ca-file", servers, "--out",
                           folder.file("out"), "--tls-folder", folder.file("own")});
    EXPECT_EQ(record.ready_line(), R"({"ready":true,"port":)" + std::to_string(record.port()) +
                                       R"(,"soap":")" + https_url(record) + R"(/soap","dal":")" +
                                       https_url(record) + R"(/dal","authority":")" + own + "\"}");
    EXPECT_EQ(number_of_invoice(https_url(record), own), "700103");
    EXPECT_EQ(ask_for_invoice(record).body,
              "This port speaks TLS: the address begins with https://.\n");
  }
  EXPECT_THAT(names_in(folder.file("out")),
              AllOf(Contains("000001-BVInvoiceConnector.GetInvoice.wire"),
                    Contains("000002-BVConnectorObject.InitTorvexDAL.wire")));
  const SandboxProcess replay({"replay", "--tls-folder", folder.file("own"), folder.file("out")});
  EXPECT_THAT(replay.ready_line(), HasSubstr(R"("authority":")" + own + "\""));
  EXPECT_EQ(number_of_invoice(https_url(replay), own), "700103");
}

TEST(Record, ServesAndReplaysOnOtherAddressesToo) {
  const files_test::TempFolder folder;
  SandboxProcess upstream;
  const std::vector<std::string> words{"record",  "--upstream", url_of(upstream),  "--listen",
                                       "0.0.0.0", "--out",      folder.file("out")};
  {
    // There is nothing to administer, so it takes no token.
    SandboxProcess record(words);
    EXPECT_EQ(ask_for_invoice(record).status, 200);
  }
  SandboxProcess replay({"replay", "--listen", "0.0.0.0", folder.file("out")});
  EXPECT_EQ(ask_for_invoice(replay).status, 200);
  const SandboxProcess second({"replay", "--listen", "127.0.0.2", folder.file("out")});
  EXPECT_THAT(second.ready_line(), HasSubstr(R"("soap":"http://127.0.0.2:)"));
  // Others would be this user for the server.
  const files_test::ScopedEnvironment certificate("BVCONN_CLIENT_CERT", "/mine.pem");
  const CommandRun run = run_sandbox(words);
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err,
            "bvsandbox: --listen 0.0.0.0 lets other machines in, and BVCONN_CLIENT_CERT would show "
            "all of them to the server as its owner\n");
}

TEST(Record, NothingElseOfTheServerIsReachedThroughIt) {
  const files_test::TempFolder folder;
  SandboxProcess upstream;
  SandboxProcess record({"record", "--upstream", url_of(upstream), "--out", folder.file("out")});
  for (const char* target :
       {"/dal/../admin/reset", "/dal/a/../../admin/reset", "/dal/%2e%2E/admin/reset",
        "/dal/.%2e/admin/reset", "/dal/a/..", "/dal/..\\admin\\reset", "/admin/reset", "/"}) {
    EXPECT_EQ(exchange(record.port(), http_request("POST", target, "", "")).status, 404) << target;
  }
  const std::string page = "Content-Type: text/plain\r\nOrigin: http://elsewhere.example\r\n";
  EXPECT_EQ(exchange(record.port(), http_request("POST", "/soap", page, "<a/>")).status, 403);
  EXPECT_EQ(exchange(record.port(), http_request("GET", "/soap", "", "")).status, 405);
  EXPECT_THAT(names_in(folder.file("out")), IsEmpty());
}

TEST(Record, NumbersGoOnInAFolderThatHoldsARecording) {
  const files_test::TempFolder folder;
  std::ofstream(folder.file("000041-old.wire")) << "claim: a\n";
  SandboxProcess upstream;
  SandboxProcess record({"record", "--upstream", url_of(upstream), "--out", folder.file("")});
  ask_for_invoice(record);
  EXPECT_THAT(names_in(folder.file("")),
              ElementsAre("000041-old.wire", "000042-BVInvoiceConnector.GetInvoice.wire"));
}

TEST(Record, StopsAtTheMostAndPassesTheOthersOn) {
  const files_test::TempFolder folder;
  SandboxProcess upstream;
  SandboxProcess record(
      {"record", "--upstream", url_of(upstream), "--out", folder.file(""), "--most", "2"});
  for (int i = 0; i < 3; ++i) EXPECT_EQ(ask_for_invoice(record).status, 200);
  EXPECT_EQ(names_in(folder.file("")).size(), 2U);
  EXPECT_EQ(record.end_by(SIGTERM), 0);
  EXPECT_EQ(record.errors(),
            "bvsandbox: that was the last exchange to be recorded; the others are passed on "
            "alone\n");
}

TEST(Record, AServerThatDoesNotAnswerIsToldAndLeavesNoFile) {
  const files_test::TempFolder folder;
  SandboxProcess record(
      {"record", "--upstream", "http://127.0.0.1:1", "--out", folder.file("out")});
  const RawReply reply = ask_for_invoice(record);
  EXPECT_EQ(reply.status, 502);
  EXPECT_THAT(reply.body, HasSubstr("The server gave no reply: "));
  EXPECT_THAT(names_in(folder.file("out")), IsEmpty());
  EXPECT_EQ(record.end_by(SIGTERM), 0);
  EXPECT_THAT(record.errors(), HasSubstr("bvsandbox: exchange 1 has no reply: "));
}

TEST(Record, AFolderThatVanishesCostsTheFileAndNotTheAnswer) {
  const files_test::TempFolder folder;
  SandboxProcess upstream;
  SandboxProcess record({"record", "--upstream", url_of(upstream), "--out", folder.file("out")});
  fs::remove_all(folder.file("out"));
  EXPECT_EQ(ask_for_invoice(record).status, 200);
  EXPECT_EQ(record.end_by(SIGTERM), 0);
  EXPECT_THAT(record.errors(), HasSubstr("bvsandbox: exchange 1 is not recorded: cannot write '"));
}

TEST(Record, RefusesAtTheStartWhatCannotWork) {
  const files_test::TempFolder folder;
  std::ofstream(folder.file("file")) << "x";
  for (const char* out : {"file", "none/deeper"}) {
    const CommandRun run =
        run_sandbox({"record", "--upstream", "http://server", "--out", folder.file(out)});
    EXPECT_EQ(run.status, 1) << out;
    EXPECT_THAT(run.err, HasSubstr("bvsandbox: '" + folder.file(out) + "' is no folder and "));
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1);
  }
  for (const char* url : {"server", "ftp://server", "http://", "http:///soap", "http://a b"}) {
    const CommandRun run = run_sandbox({"record", "--upstream", url, "--out", folder.file("o")});
    EXPECT_EQ(run.status, 2) << url;
    EXPECT_EQ(run.err, "bvsandbox: '" + std::string(url) +
                           "' is no address of a server, expected one such as "
                           "https://server/soap\n");
  }
  const std::pair<std::vector<std::string>, const char*> refusals[] = {
      {{"record", "--out", "o"}, "--upstream is required"},
      {{"replay", "o", "--prot", "0"}, "there is no option --prot; did you mean --port?"},
      {{"replay", "o", "--port", "99999"}, "--port: '99999' is no whole number from 0 to 65535"},
      {{"replay", "o", "--listen", "server"},
       "--listen: 'server' is no address, expected one of this machine, 0.0.0.0 or ::"},
      {{"replay", "o", "--tls-key", "k"}, "--tls-certificate and --tls-key go together"},
  };
  for (const auto& [words, line] : refusals) {
    const CommandRun run = run_sandbox(words);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "bvsandbox: " + std::string(line) + "\n");
  }
  const CommandRun untrusted =
      run_sandbox({"record", "--upstream", "https://s", "--ca-file", "/missing.pem", "--out", "o"});
  EXPECT_EQ(untrusted.status, 1);
  EXPECT_EQ(untrusted.err, "bvsandbox: '/missing.pem' cannot be used: No such file or directory\n");
  EXPECT_EQ(run_sandbox({"record", "--upstream", "http://s", "--out", "o", "--most", "0"}).status,
            2);
}

TEST(Record, KnowsWhereTheRoutesOfAServerLie) {
  const auto addresses = [](const char* url, const char* dal = "") {
    const auto found = sandbox::upstream_addresses(url, dal);
    return found.soap + " " + found.dal;
  };
  EXPECT_EQ(addresses("http://server:8080"), "http://server:8080/soap http://server:8080/dal");
  EXPECT_EQ(addresses("https://server/"), "https://server/soap https://server/dal");
  EXPECT_EQ(addresses("http://server/sales/rpc"),
            "http://server/sales/rpc http://server/sales/dal");
  EXPECT_EQ(addresses("http://server/soap", "https://other/x/"),
            "http://server/soap https://other/x");
}

}  // namespace
}  // namespace bvconn::test

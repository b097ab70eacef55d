#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>

#include "automation/scripted_server.h"
#include "automation/shell.h"
#include "automation/tool_process.h"
#include "support/misbehaving_server.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;

Tool::Outcome get_invoice(const std::string& url, const std::string& more = "") {
  return Shell().run(
      "bvconn call BVInvoiceConnector.GetInvoice strInvoiceUID=U1 --session S "
      "--server " +
      url + " " + more);
}

Tool::Outcome beat(const std::string& url) {
  return Shell().run("bvconn call BVHeartBeatConnector.sendHeartBeat --session S --server " + url);
}

Tool::Outcome answered(const Answer& answer) {
  MisbehavingServer server;
  server.otherwise(answer);
  return get_invoice(server.url());
}

TEST(ExitStatus, Is0ForACallThatWentWell) {
  EXPECT_EQ(answered(answers::reply(reply_envelope("<return/>"))).status, 0);
}

TEST(ExitStatus, Is1ForAnErrorOfNoOtherKind) {
  const auto outcome = get_invoice("no-url");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("error 0x80044308"));
}

TEST(ExitStatus, Is1WhereTheOutputCannotBeWritten) {
  MisbehavingServer server;
  server.otherwise(answers::reply(reply_envelope("<return>4711</return>")));
  const auto outcome = get_invoice(server.url(), "> /dev/full");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "bvconn: the output cannot be written: No space left on device\n");
}

TEST(ExitStatus, Is3ForSettingsThatCannotBeUsed) {
  const Shell shell;
  shell.folder.file("machine.toml", "no TOML");
  const auto outcome = shell.run(
      "bvconn call BVInvoiceConnector.GetInvoice strInvoiceUID=U1 --session S --server "
      "http://127.0.0.1:1/");
  EXPECT_EQ(outcome.status, 3);
  EXPECT_THAT(outcome.err, HasSubstr("error 0x80041001"));
}

TEST(ExitStatus, Is3ForASettingThatIsNoNumber) {
  const Shell shell;
  shell.folder.file("machine.toml",
                    "['Software\\Brimvale\\Torvex\\AppData']\ndefaultTimeOut = \"soon\"\n");
  const auto outcome = shell.run(
      "bvconn call BVInvoiceConnector.GetInvoice strInvoiceUID=U1 --session S --server "
      "http://127.0.0.1:1/");
  EXPECT_EQ(outcome.status, 3);
  EXPECT_THAT(outcome.err, HasSubstr("error 0x0000000D"));
  EXPECT_THAT(outcome.err,
              HasSubstr("bvconn: defaultTimeOut in " + (shell.folder / "machine.toml").string() +
                        " is no 32-bit whole number"));
}

TEST(ExitStatus, Is4ForAFault) {
  EXPECT_EQ(answered(answers::fault("no")).status, 4);
}

TEST(ExitStatus, Is4ForAMappedFaultWithTheServersWordsFromTheRecord) {
  MisbehavingServer server;
  server.otherwise(answers::reply(fault_envelope("10041", "INV-9 is no invoice")));
  const auto outcome = get_invoice(server.url());
  EXPECT_EQ(outcome.status, 4);
  EXPECT_THAT(outcome.err, HasSubstr("error 0x80042739"));
  EXPECT_THAT(outcome.err, HasSubstr("bvconn: the server's words: INV-9 is no invoice\n"));
}

TEST(ExitStatus, Is4ForAFaultOfTheLayerWithTheServersWordsFromTheRecord) {
  ScriptedServer server;
  server.reply("token");
  server.reply("");
  server.reply(fault_envelope("4711", "ORD-9 is no order"));
  const auto outcome = Shell().run(
      "bvconn call BVOrderConnector.getSAPOrderView aServerURL=u aSessionID=S aOrderGID=G "
      "aIncludePrice=true --dal " +
      server.url());
  EXPECT_EQ(outcome.status, 4);
  EXPECT_THAT(outcome.err, HasSubstr("bvconn: the server's words: ORD-9 is no order\n"));
}

TEST(ExitStatus, Is4ForAServiceObjectsRefusalWhateverItsNumber) {
  for (const std::string number : {"-2147200000", "13"}) {
    ScriptedServer server;
    server.reply("token");
    server.reply("");
    server.reply_with("HTTP/1.1 500 No\r\nContent-Type: application/json\r\n",
                      R"({"number":)" + number + R"(,"source":"Order","description":"locked"})");
    const auto outcome = Shell().run(
        "bvconn call BVOrderConnector.getSAPOrderView aServerURL=u aSessionID=S "
        "aOrderGID=G aIncludePrice=true --dal " +
        server.url());
    EXPECT_EQ(outcome.status, 4) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("from Order: locked"));
  }
}

TEST(ExitStatus, Is5WhereTheServerIsNotReached) {
  EXPECT_EQ(get_invoice(dead_url()).status, 5);
  EXPECT_EQ(get_invoice("http://no-such-host.invalid/").status, 5);
}

TEST(ExitStatus, Is5WhereTlsOrTheProxyFails) {
  const auto outcome = get_invoice("https://127.0.0.1:1/", "--ca-file /no/such/file");
  EXPECT_EQ(outcome.status, 5);
  EXPECT_THAT(outcome.err, HasSubstr("error 0x80044303"));
  EXPECT_THAT(outcome.err, HasSubstr("/no/such/file"));
  const Shell shell;
  shell.folder.file("machine.toml", "['Software\\Brimvale\\Torvex\\AppData']\ntracePort = '1'\n");
  EXPECT_EQ(shell
                .run("bvconn call BVInvoiceConnector.GetInvoice strInvoiceUID=U1 --session S "
                     "--server http://server.example/")
                .status,
            5);
}

TEST(ExitStatus, Is6WhereTheConnectionIsLost) {
  EXPECT_EQ(answered(answers::close_before_status()).status, 6);
  EXPECT_EQ(answered(answers::cut_body("<return/>", 3)).status, 6);
}

TEST(ExitStatus, Is7ForATimeOut) {
  MisbehavingServer server;
  server.otherwise(answers::never());
  EXPECT_EQ(get_invoice(server.url(), "--timeout 300ms").status, 7);
}

TEST(ExitStatus, Is8ForAnythingElseAboutAReply) {
  EXPECT_EQ(answered(answers::reply("gone", "404 Not Found", "text/plain")).status, 8);
  EXPECT_EQ(answered(answers::reply("no XML")).status, 8);
  EXPECT_EQ(answered(answers::reply("<ok/>")).status, 8);
  EXPECT_EQ(answered(answers::garbage()).status, 8);
  EXPECT_EQ(answered(answers::reply(reply_envelope(""))).status, 8);
}

TEST(ExitStatusOfABeat, Is0ForOk) {
  MisbehavingServer server;
  server.otherwise(answers::reply(reply_envelope("<return>OK</return>")));
  EXPECT_EQ(beat(server.url()).status, 0);
}

TEST(ExitStatusOfABeat, Is5WhereTheServerIsNotReached) {
  const auto outcome = beat(dead_url());
  EXPECT_EQ(outcome.status, 5);
  EXPECT_THAT(outcome.err, HasSubstr("bvconn: BVHeartBeatConnector.sendHeartBeat returned, but its "
                                     "exchange failed: error 0x80044301"));
  EXPECT_EQ(beat("no-url").status, 5);
}

TEST(ExitStatusOfABeat, Is3ForSettingsThatCannotBeUsed) {
  const Shell shell;
  shell.folder.file("machine.toml", "no TOML");
  const auto outcome = shell.run(
      "bvconn call BVHeartBeatConnector.sendHeartBeat --session S --server http://127.0.0.1:1/");
  EXPECT_EQ(outcome.status, 3);
  EXPECT_THAT(outcome.err, HasSubstr("error 0x80041001"));
}

TEST(ExitStatusOfABeat, Is6WhereTheConnectionIsLost) {
  MisbehavingServer server;
  server.otherwise(answers::close_before_status());
  EXPECT_EQ(beat(server.url()).status, 6);
}

TEST(ExitStatusOfABeat, Is7AfterItsFiveSeconds) {
  MisbehavingServer server;
  server.otherwise(answers::never());
  EXPECT_EQ(beat(server.url()).status, 7);
}

TEST(ExitStatusOfABeat, Is8ForAnotherAnswer) {
  MisbehavingServer server;
  server.answer({answers::reply(reply_envelope("<return>ok</return>")), answers::fault("no")});
  EXPECT_EQ(beat(server.url()).status, 8);
  EXPECT_EQ(beat(server.url()).status, 8);
}

TEST(ExitStatus, OfAnOperationThatKeepsItsErrorsToItselfComesFromTheRecord) {
  const auto outcome =
      Shell().run("bvconn call BVConnectorObject.InitTorvexDAL dal_server_url=" + dead_url());
  EXPECT_EQ(outcome.status, 5);
}

TEST(Interrupt, EndsWith130AndSaysThatTheOutcomeIsUnknown) {
  MisbehavingServer server;
  server.otherwise(answers::never());
  Tool tool({"call", "BVInvoiceConnector.GetInvoice", "strInvoiceUID=U1", "aSessionID=S",
             "aServerURL=" + server.url()});
  while (server.requests().empty()) std::this_thread::sleep_for(std::chrono::milliseconds(20));
  tool.signal(SIGINT);
  const auto outcome = tool.finish();
  EXPECT_EQ(outcome.status, 130);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err,
              HasSubstr("bvconn: interrupted; BVInvoiceConnector.GetInvoice: sent, outcome "
                        "unknown: look whether it was done before calling again\n"));
}

TEST(Interrupt, BeforeTheRequestWentOutSaysThatItWasNotSent) {
  MisbehavingServer server(plain_streams(), MisbehavingServer::Until::kFull);
  Tool tool({"call", "BVInvoiceConnector.GetInvoice", "strInvoiceUID=U1", "aSessionID=S",
             "aServerURL=" + server.url()});
  std::this_thread::sleep_for(std::chrono::milliseconds(700));
  tool.signal(SIGINT);
  const auto outcome = tool.finish();
  EXPECT_EQ(outcome.status, 130);
  EXPECT_THAT(outcome.err, HasSubstr("bvconn: interrupted; BVInvoiceConnector.GetInvoice: not "
                                     "sent\n"));
}

TEST(Interrupt, ThatIsIgnoredByTheStarterStaysIgnored) {
  MisbehavingServer server;
  server.otherwise(Answer{{.kind = Step::Kind::kWait, .pause = std::chrono::seconds(2)}} +
                   answers::reply(reply_envelope("<return>4711</return>")));
  // A shell has what it runs in the background ignore interrupts.
  const auto outcome = Shell().run(
      "bvconn call BVInvoiceConnector.GetInvoice strInvoiceUID=U1 --session S "
      "--server " +
      server.url() + " & sleep 1; kill -INT $!; wait $!");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "return = 4711\n");
}

}  // namespace
}  // namespace bvconn::test

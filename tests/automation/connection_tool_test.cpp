#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "automation/scripted_server.h"
#include "automation/shell.h"
#include "automation/tool_process.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr const char* kGetInvoice = "bvconn call BVInvoiceConnector.GetInvoice strInvoiceUID=U1 ";

TEST(ConnectionOfACall, ComesFromOptions) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>4711</return>"));
  const auto outcome = Shell().run(kGetInvoice + ("--session S1 --server " + server.url()));
  EXPECT_EQ(outcome.out, "return = 4711\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(server.requests().at(0).body, HasSubstr(">S1</userID>"));
}

TEST(ConnectionOfACall, ComesFromTheEnvironment) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>4711</return>"));
  const Shell shell({{"BVCONN_SERVER", server.url()}, {"BVCONN_SESSION", "S2"}});
  EXPECT_EQ(shell.run(kGetInvoice).out, "return = 4711\n");
  EXPECT_THAT(server.requests().at(0).body, HasSubstr(">S2</userID>"));
}

TEST(ConnectionOfACall, ComesFromAProfile) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>4711</return>"));
  const Shell shell;
  shell.profiles("[test]\nserver = '" + server.url() + "'\nsession = 'S3'\n");
  EXPECT_EQ(shell.run(kGetInvoice + std::string("--profile test")).out, "return = 4711\n");
  EXPECT_THAT(server.requests().at(0).body, HasSubstr(">S3</userID>"));
}

TEST(ConnectionOfACall, StandsBehindTheArguments) {
  ScriptedServer server;
  server.reply(reply_envelope("<return/>"));
  const Shell shell({{"BVCONN_SERVER", dead_url()}, {"BVCONN_SESSION", "S2"}});
  EXPECT_EQ(shell.run(kGetInvoice + ("aSessionID=mine aServerURL=" + server.url())).status, 0);
  EXPECT_THAT(server.requests().at(0).body, HasSubstr(">mine</userID>"));
}

TEST(ConnectionOfACall, IsRequiredFromSomewhere) {
  const auto outcome = Shell().run(kGetInvoice);
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err,
            "bvconn: BVInvoiceConnector.GetInvoice: argument aServerURL is required; give it, or "
            "--server, BVCONN_SERVER or a profile\n");
}

TEST(ConnectionOfACall, AFileOfProfilesThatCannotBeUsedIsStatus3) {
  const Shell shell;
  shell.profiles("[test\n");
  const auto outcome = shell.run(kGetInvoice + std::string("--profile test"));
  EXPECT_EQ(outcome.status, 3);
  EXPECT_THAT(outcome.err, HasSubstr("bvconn: profiles: "));
  EXPECT_THAT(outcome.err, HasSubstr("is not TOML at line 1"));
}

TEST(ConnectionOfACall, AProfileWithATimeThatIsNoneIsStatus3) {
  const Shell shell;
  shell.profiles("[test]\ntimeout = \"soon\"\n");
  const auto outcome = shell.run(kGetInvoice + std::string("--profile test"));
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err,
            "bvconn: profile test: a time is expected, such as 30, 2.5s, 500ms or 2m, not soon\n");
}

TEST(ConnectionOfACall, AProfileThatIsNotThereIsNotUnderstood) {
  const auto outcome = Shell().run(kGetInvoice + std::string("--profile test"));
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.err, HasSubstr("there is no profile test"));
}

/// Login, disabled methods, and the answer of one call.
void script_dal(ScriptedServer& server) {
  server.reply("token");
  server.reply("");
  server.reply(reply_envelope("<return>by the layer</return>"));
}

constexpr const char* kOrderView =
    "bvconn call BVOrderConnector.getSAPOrderView aServerURL=http://127.0.0.1:1/ aSessionID=S "
    "aOrderGID=G1 aIncludePrice=true ";

TEST(CallByTheLayer, LogsInWithTheFilesPassword) {
  ScriptedServer server;
  script_dal(server);
  const Shell shell;
  const auto outcome = shell.run(
      kOrderView + ("--user anna --sales-org 2200 --app-version 7.1 --password-file " +
                    shell.folder.file("password", "secret\n") + " --dal " + server.url()));
  EXPECT_EQ(outcome.out, "return = by the layer\n") << outcome.err;
  const auto requests = server.requests();
  ASSERT_THAT(requests, SizeIs(3));
  EXPECT_EQ(requests[0].body, R"({"arguments":["anna","secret","7.1","CAN"]})");
  EXPECT_THAT(requests[2].line, HasSubstr("/OrderService/getSAPOrderView"));
}

TEST(CallByTheLayer, TakesItsLoginFromTheEnvironment) {
  ScriptedServer server;
  script_dal(server);
  const TemporaryFolder folder;
  const Shell shell({{"BVCONN_DAL_URL", server.url()},
                     {"BVCONN_DAL_USER", "anna"},
                     {"BVCONN_DAL_PASSWORD_FILE", folder.file("password", "secret\r\n")}});
  EXPECT_EQ(shell.run(kOrderView).out, "return = by the layer\n");
  EXPECT_EQ(server.requests().at(0).body, R"({"arguments":["anna","secret","","US"]})");
}

TEST(CallByTheLayer, IsLeftOutForAnEmptyAddress) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>by SOAP</return>"));
  const Shell shell({{"BVCONN_DAL_URL", dead_url()}});
  EXPECT_EQ(shell
                .run("bvconn call BVOrderConnector.getSAPOrderView aSessionID=S aOrderGID=G1 "
                     "aIncludePrice=true --dal '' --server " +
                     server.url())
                .out,
            "return = by SOAP\n");
}

TEST(CallByTheLayer, ARefusedLoginHasTheServicesOwnWords) {
  ScriptedServer server;
  server.reply_with("HTTP/1.1 403 Forbidden\r\nContent-Type: application/json\r\n",
                    R"({"number":-2147200000,"source":"Auth","description":"anna is locked out"})");
  const auto outcome = Shell().run(kOrderView + ("--user anna --dal " + server.url()));
  EXPECT_EQ(outcome.status, 4);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, HasSubstr("bvconn: the login at " + server.url() +
                                     " failed: error 0x80045400 (-2147200000) from Auth: anna is "
                                     "locked out\n"));
  EXPECT_THAT(outcome.err,
              HasSubstr("hint: The login is refused. Check the user and the password"));
  EXPECT_THAT(server.requests(), SizeIs(1));
}

TEST(CallByTheLayer, ALayerThatIsNotReachedIsStatus5) {
  const auto outcome = Shell().run(kOrderView + ("--user anna --dal " + dead_url()));
  EXPECT_EQ(outcome.status, 5);
  EXPECT_THAT(outcome.err, HasSubstr("the login at " + dead_url() + " failed: error 0x80044301"));
}

TEST(CallByTheLayer, APasswordFileThatCannotBeReadIsNotUnderstood) {
  ScriptedServer server;
  const auto outcome =
      Shell().run(kOrderView + ("--password-file /no/such/file --dal " + server.url()));
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.err,
              HasSubstr("--password-file: cannot read /no/such/file: No such file or directory"));
  EXPECT_THAT(server.requests(), IsEmpty());
}

TEST(Arguments, APasswordFromAFileLosesItsLineEnd) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>Updated</return>"));
  const Shell shell;
  shell.run("bvconn call BVMaintenanceConnector.UpdatePassword --session S aPassword=@" +
            shell.folder.file("password", "new secret\n") + " --server " + server.url());
  EXPECT_THAT(server.requests().at(0).body, HasSubstr(">new secret<"));
}

TEST(Arguments, AnyOtherFileKeepsIt) {
  ScriptedServer server;
  server.reply(reply_envelope("<return/>"));
  const Shell shell;
  shell.run("bvconn call BVInvoiceConnector.GetInvoice --session S strInvoiceUID=@" +
            shell.folder.file("uid", "U1\n") + " --server " + server.url());
  EXPECT_THAT(server.requests().at(0).body, HasSubstr(">U1\n<"));
}

TEST(Arguments, AFolderIsNotUnderstood) {
  const auto outcome = Shell().run(
      "bvconn call BVInvoiceConnector.GetInvoice --session S --server "
      "http://127.0.0.1:1/ strInvoiceUID=@/tmp");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err,
            "bvconn: BVInvoiceConnector.GetInvoice: argument strInvoiceUID: cannot read /tmp: Is a "
            "directory\n");
}

constexpr const char* kLine =
    R"(echo '{"id":1,"call":"BVInvoiceConnector.GetInvoice","args":{"strInvoiceUID":"U1"}}' | )";

TEST(ConnectionOfABatch, IsNeverTakenFromTheEnvironmentAlone) {
  ScriptedServer server;
  const Shell shell({{"BVCONN_SERVER", server.url()},
                     {"BVCONN_SESSION", "S"},
                     {"BVCONN_PROFILE", "test"},
                     {"BVCONN_DAL_URL", server.url()}});
  shell.profiles("[test]\nserver = '" + server.url() + "'\n");
  const auto outcome = shell.run(kLine + std::string("bvconn batch"));
  EXPECT_EQ(outcome.out,
            R"({"id":1,"usage":"BVInvoiceConnector.GetInvoice: argument aServerURL is required"})"
            "\n");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(server.requests(), IsEmpty());
}

TEST(ConnectionOfABatch, ComesFromAProfileThatIsAskedFor) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>4711</return>"));
  const Shell shell;
  shell.profiles("[test]\nserver = '" + server.url() + "'\nsession = 'S4'\n");
  const auto outcome = shell.run(kLine + std::string("bvconn batch --profile test"));
  EXPECT_THAT(outcome.out, HasSubstr(R"("value":"4711")"));
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(server.requests().at(0).body, HasSubstr(">S4</userID>"));
}

TEST(ConnectionOfABatch, LogsInBeforeTheFirstLine) {
  ScriptedServer server;
  script_dal(server);
  const auto outcome = Shell().run(
      R"(echo '{"id":1,"call":"BVOrderConnector.getSAPOrderView","args":{"aServerURL":"u",)"
      R"("aSessionID":"S","aOrderGID":"G","aIncludePrice":true}}' | )"
      "bvconn batch --user anna --dal " +
      server.url());
  EXPECT_THAT(outcome.out, HasSubstr("by the layer"));
  EXPECT_THAT(server.requests().at(0).line, HasSubstr("/AuthenticationService/Login"));
}

TEST(ConnectionOfABatch, WithoutTheLoginThatWasAskedForNothingIsCalled) {
  ScriptedServer server;
  server.reply_with("HTTP/1.1 403 Forbidden\r\nContent-Type: application/json\r\n",
                    R"({"number":-2147200000,"source":"Auth","description":"anna is locked out"})");
  const auto outcome = Shell().run(kLine + ("bvconn batch --user anna --dal " + server.url()));
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, HasSubstr("from Auth: anna is locked out\n"));
}

TEST(BatchStatus, Is9WhereACallFailedAndThatWasAskedFor) {
  const std::string failing =
      R"(echo '{"id":1,"call":"BVInvoiceConnector.GetInvoice","args":{"aServerURL":"bad",)"
      R"("aSessionID":"S","strInvoiceUID":"U1"}}' | bvconn batch)";
  EXPECT_EQ(Shell().run(failing).status, 0);
  const auto outcome = Shell().run(failing + " --fail");
  EXPECT_EQ(outcome.status, 9);
  EXPECT_THAT(outcome.out, HasSubstr(R"("hex":"0x80044308")"));
}

TEST(BatchStatus, Is0WhereNoneFailed) {
  EXPECT_EQ(Shell().run(R"(echo '{"get":"BVMethods.Beat"}' | bvconn batch --fail)").status, 0);
}

TEST(BatchStatus, OfALineThatWasNotUnderstoodComesFirst) {
  EXPECT_EQ(Shell()
                .run("printf '%s\\n' "
                     R"('{"call":"BVInvoiceConnector.GetInvoice","args":{"aServerURL":"bad",)"
                     R"("aSessionID":"S","strInvoiceUID":"U1"}}' '{}' | bvconn batch --fail)")
                .status,
            2);
}

TEST(Secrets, OfALoginAreInNoLine) {
  ScriptedServer server;
  server.reply_with("HTTP/1.1 403 Forbidden\r\nContent-Type: application/json\r\n",
                    R"({"number":1,"source":"Auth","description":"no such password: top-secret"})");
  const Shell shell;
  const auto outcome =
      shell.run(kOrderView + ("--password-file " + shell.folder.file("password", "top-secret") +
                              " --show-exchange --dal " + server.url()));
  EXPECT_THAT(outcome.err, HasSubstr("no such password: ***"));
  EXPECT_THAT(outcome.err, Not(HasSubstr("top-secret")));
}

}  // namespace
}  // namespace bvconn::test

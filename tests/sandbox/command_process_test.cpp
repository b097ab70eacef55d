#include <gtest/gtest.h>
#include <stdlib.h>

#include "sandbox/command_run.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

TEST(SandboxCommands, ShowAndReplaceTheDisabledMethods) {
  const SandboxProcess sandbox({"--disabled", "urn:HeartBeatService.beat|"});
  const CommandRun shown = ask_sandbox(sandbox.port(), {"disabled"});
  EXPECT_EQ(shown.out, "urn:HeartBeatService.beat|\n");
  EXPECT_EQ(shown.status, 0);
  EXPECT_EQ(ask_sandbox(sandbox.port(), {"disabled", "urn:Postal.getCountries|"}).out,
            "urn:Postal.getCountries|\n");
  EXPECT_EQ(ask_sandbox(sandbox.port(), {"disabled", ""}).out, "");
  EXPECT_EQ(ask_sandbox(sandbox.port(), {"disabled"}).out, "");
}

TEST(SandboxCommands, TakeTheAddressFromTheEnvironment) {
  const SandboxProcess sandbox({"--disabled", "urn:HeartBeatService.beat|"});
  const std::string url = "http://localhost:" + std::to_string(sandbox.port()) + "/";
  ::setenv("BVSANDBOX_URL", url.c_str(), 1);
  const CommandRun shown = run_sandbox({"disabled"});
  ::unsetenv("BVSANDBOX_URL");
  EXPECT_EQ(shown.out, "urn:HeartBeatService.beat|\n") << shown.err;
}

TEST(SandboxCommands, SayThatNobodyAnswers) {
  // Nothing listens on port 1.
  const CommandRun run = ask_sandbox(1, {"disabled"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "bvsandbox: no sandbox answers at http://127.0.0.1:1: Connection refused\n");
}

TEST(SandboxCommands, RefuseAnAddressThatIsNone) {
  for (const char* url : {"127.0.0.1:8080", "http://", "http://127.0.0.1:0", "http://127.0.0.1:x",
                          "http://127.0.0.1:8080/soap", "https://", "ftp://127.0.0.1:8080"}) {
    const CommandRun run = run_sandbox({"disabled", "--url", url});
    EXPECT_EQ(run.status, 2) << url;
    EXPECT_EQ(run.err, "bvsandbox: '" + std::string(url) +
                           "' is no address of a sandbox, expected one such as "
                           "http://127.0.0.1:8080\n");
  }
}

TEST(SandboxCommands, NameTheNearestOneOfAMistypedName) {
  const CommandRun run = run_sandbox({"disable"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "bvsandbox: there is no command disable; did you mean disabled?\n");
}

TEST(SandboxCommands, AreListedByTheHelp) {
  EXPECT_NE(run_sandbox({"--help"}).out.find("\n  disabled "), std::string::npos);
}

TEST(SandboxAdministration, TellsWhichMethodsAPathTakes) {
  const SandboxProcess sandbox;
  const auto reply = exchange(sandbox.port(), http_request("DELETE", "/admin/disabled", "", ""));
  EXPECT_EQ(reply.status, 405);
  EXPECT_EQ(reply.header("Allow"), "GET, POST");
}

TEST(SandboxAdministration, TellsWhatThereIsWhereThereIsNothing) {
  const SandboxProcess sandbox;
  const auto reply = exchange(sandbox.port(), http_request("GET", "/admin/disable", "", ""));
  EXPECT_EQ(reply.status, 404);
  EXPECT_TRUE(reply.body.starts_with("There is nothing to administer here but /admin/disabled"))
      << reply.body;
}

}  // namespace
}  // namespace bvconn::test

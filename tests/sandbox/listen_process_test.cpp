// Where the sandbox listens, and who may administer it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "sandbox/command_run.h"
#include "sandbox/own_folder.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;

int status_with(const SandboxProcess& sandbox, const std::string& authorization) {
  const std::string header =
      authorization.empty() ? "" : "Authorization: " + authorization + "\r\n";
  return exchange(sandbox.port(), http_request("GET", "/admin/faults", header, "")).status;
}

TEST(SandboxListens, WhereOthersCanReachItOnlyWithAToken) {
  for (const char* address : {"0.0.0.0", "::", "192.0.2.1", "[2001:db8::1]"}) {
    const CommandRun run = run_sandbox({"--listen", address});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "bvsandbox: --listen " + std::string(address) +
                           " lets other machines in, so --admin-token-file has to name a file with "
                           "the word that administering it takes\n");
  }
}

TEST(SandboxListens, OnNothingThatIsNoAddressOfThisMachine) {
  const CommandRun name = run_sandbox({"--listen", "sandbox.example"});
  EXPECT_EQ(name.status, 2);
  EXPECT_EQ(name.err,
            "bvsandbox: --listen: 'sandbox.example' is no address, expected one of this machine, "
            "0.0.0.0 or ::\n");
  const OwnFolder folder;
  const std::string token = folder.write("token", "word");
  const CommandRun foreign =
      run_sandbox({"--listen", "192.0.2.1", "--port", "4711", "--admin-token-file", token});
  EXPECT_EQ(foreign.status, 1);
  EXPECT_THAT(foreign.err, HasSubstr("cannot listen on 192.0.2.1:4711"));
}

TEST(SandboxListens, OnAnyAddressOfTheLoopbackWithoutOne) {
  const SandboxProcess sandbox({"--listen", "127.0.0.2"});
  const std::string url = "http://127.0.0.2:" + std::to_string(sandbox.port());
  EXPECT_THAT(sandbox.ready_line(), HasSubstr("\"soap\":\"" + url + "/soap\""));
  EXPECT_EQ(run_sandbox({"disabled", "--url", url}).status, 0);
  EXPECT_EQ(ask_sandbox(sandbox.port(), {"disabled"}).status, 1);
}

TEST(SandboxListens, OnAllAddressesAndTellsTheLoopbacks) {
  const OwnFolder folder;
  const std::string token = folder.write("token", "word\n");
  for (const auto& [address, in_url] :
       {std::pair("0.0.0.0", "127.0.0.1"), std::pair("::", "[::1]")}) {
    const SandboxProcess sandbox({"--listen", address, "--admin-token-file", token});
    if (sandbox.port() == 0 && std::string(address) == "::") {
      GTEST_SKIP() << "this machine has no IPv6";
    }
    EXPECT_THAT(sandbox.ready_line(), HasSubstr("\"soap\":\"http://" + std::string(in_url) + ":"));
    EXPECT_EQ(status_with(sandbox, "Bearer word"), 200) << address;
  }
}

/// How a command ends that asks by TLS at an address.
CommandRun ask_by_tls(const SandboxProcess& sandbox, const OwnFolder& folder,
                      const std::string& address) {
  const std::string url = "https://" + address + ":" + std::to_string(sandbox.port());
  return run_sandbox({"faults", "--url", url, "--tls-authority", folder.path("tls/authority.pem"),
                      "--admin-token-file", folder.path("token"), "list"});
}

TEST(SandboxListens, WithACertificateForItsAddress) {
  const OwnFolder folder;
  folder.write("token", "word");
  const SandboxProcess sandbox({"--listen", "127.0.0.2", "--tls-folder", folder.path("tls")});
  EXPECT_EQ(ask_by_tls(sandbox, folder, "127.0.0.2").status, 0);
}

TEST(SandboxListens, WithACertificateForTheNamesThatItIsGiven) {
  const OwnFolder folder;
  const std::string token = folder.write("token", "word");
  const SandboxProcess sandbox({"--listen", "0.0.0.0", "--admin-token-file", token, "--tls-folder",
                                folder.path("tls"), "--tls-name", "127.0.0.3", "--tls-name",
                                "127.0.0.4"});
  EXPECT_EQ(ask_by_tls(sandbox, folder, "127.0.0.1").status, 0);
  EXPECT_EQ(ask_by_tls(sandbox, folder, "127.0.0.3").status, 0);
  EXPECT_EQ(ask_by_tls(sandbox, folder, "127.0.0.4").status, 0);
  EXPECT_THAT(ask_by_tls(sandbox, folder, "127.0.0.5").err, HasSubstr("certificate verify failed"));
}

TEST(SandboxToken, IsAskedForByAdministrationAlone) {
  const OwnFolder folder;
  const std::string file = folder.write("token", "  s3cret-word \n");
  SandboxProcess sandbox({"--admin-token-file", file});
  EXPECT_EQ(status_with(sandbox, "Bearer s3cret-word"), 200);
  EXPECT_EQ(status_with(sandbox, "bearer s3cret-word"), 200);
  for (const char* other :
       {"", "Bearer", "Bearer ", "Bearer s3cret-wore", "Bearer s3cret-wor", "Bearer s3cret-words",
        "Bearer s3cret-words3cret-word", "s3cret-word", "Basic s3cret-word"}) {
    EXPECT_EQ(status_with(sandbox, other), 401) << other;
  }
  const RawReply refused =
      exchange(sandbox.port(), http_request("DELETE", "/admin/journal", "", ""));
  EXPECT_EQ(refused.header("WWW-Authenticate"), "Bearer realm=\"bvsandbox\"");
  EXPECT_EQ(refused.body,
            "This sandbox is administered with its token alone: the header Authorization has to be "
            "'Bearer' and what its --admin-token-file holds.\n");
  // Not even what there is to administer is told.
  EXPECT_EQ(exchange(sandbox.port(), http_request("GET", "/admin/none", "", "")).status, 401);
  const RawReply call = sandbox.soap("urn:InvoiceService", "getInvoice",
                                     R"(<param xsi:type="xsd:string">INV-1001</param>)");
  EXPECT_EQ(call.status, 200);
  EXPECT_NE(sandbox.login(), "");
}

TEST(SandboxToken, IsTakenByCommandsFromAFile) {
  const OwnFolder folder;
  const std::string file = folder.write("token", "word");
  const SandboxProcess sandbox({"--admin-token-file", file});
  EXPECT_EQ(ask_sandbox(sandbox.port(), {"faults", "--admin-token-file", file, "list"}).status, 0);
  const CommandRun refused = ask_sandbox(sandbox.port(), {"faults", "list"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, HasSubstr("administered with its token alone"));
  ::setenv("BVSANDBOX_ADMIN_TOKEN_FILE", file.c_str(), 1);
  const CommandRun taken = ask_sandbox(sandbox.port(), {"faults", "list"});
  ::unsetenv("BVSANDBOX_ADMIN_TOKEN_FILE");
  EXPECT_EQ(taken.status, 0) << taken.err;
}

TEST(SandboxToken, IsRefusedAtOnceWhereItsFileCannotBeUsed) {
  using std::filesystem::perms;
  const OwnFolder folder;
  const std::string open = folder.write("open", "word");
  std::filesystem::permissions(open, perms::group_read, std::filesystem::perm_options::add);
  const std::pair<std::string, std::string> files[] = {
      {open, "others than its owner may open it; 'chmod 600' ends that"},
      {folder.write("empty", " \n"), "it is empty"},
      {folder.write("words", "two words"),
       "it holds more than one word of plain letters, digits and signs"},
      {folder.write("long", std::string(5000, 'x')), "it is larger than 4096 bytes"},
      {folder.path("missing"), "No such file or directory"},
  };
  for (const auto& [file, reason] : files) {
    const CommandRun run = run_sandbox({"--admin-token-file", file});
    EXPECT_EQ(run.status, 2) << file;
    EXPECT_EQ(run.err, "bvsandbox: '" + file + "' cannot be used: " + reason + "\n");
  }
}

TEST(SandboxToken, CanStandInAFileOfOptionsWithTheAddress) {
  const OwnFolder folder;
  folder.write("token", "word");
  const std::string config = folder.write(
      "team.toml", "listen = \"0.0.0.0\"\nadmin-token-file = \"token\"\ntls-folder = \"tls\"\n");
  const SandboxProcess sandbox({"--config", config});
  const std::string url = "https://127.0.0.1:" + std::to_string(sandbox.port());
  const CommandRun run =
      run_sandbox({"faults", "--url", url, "--admin-token-file", folder.path("token"),
                   "--tls-authority", folder.path("tls/authority.pem"), "list"});
  EXPECT_EQ(run.status, 0) << run.err;
}

}  // namespace
}  // namespace bvconn::test

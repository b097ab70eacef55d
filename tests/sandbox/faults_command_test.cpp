#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>

#include "sandbox/command_run.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;

/// A file with faults, for as long as it lives.
class FaultsFile {
 public:
  explicit FaultsFile(const std::string& toml)
      : path_((std::filesystem::temp_directory_path() /
               ("bvsandbox-faults-" + std::to_string(std::random_device{}()) + ".toml"))
                  .string()) {
    std::ofstream(path_) << toml;
  }
  ~FaultsFile() { std::filesystem::remove(path_); }
  FaultsFile(const FaultsFile&) = delete;
  FaultsFile& operator=(const FaultsFile&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

int invoice_status(SandboxProcess& sandbox) {
  return sandbox
      .soap("urn:InvoiceService", "getInvoice", "<param xsi:type=\"xsd:string\">INV-1001</param>")
      .status;
}

TEST(FaultsCommand, AddsListsRemovesAndClears) {
  SandboxProcess sandbox;
  const CommandRun added =
      ask_sandbox(sandbox.port(), {"faults", "add", "status", "--status", "429", "--operation",
                                   "BVInvoiceConnector.GetInvoice", "--count", "1"});
  EXPECT_EQ(added.out, "fault-1\n") << added.err;
  EXPECT_EQ(invoice_status(sandbox), 429);
  EXPECT_EQ(invoice_status(sandbox), 200);
  const CommandRun listed = ask_sandbox(sandbox.port(), {"faults", "list"});
  EXPECT_EQ(nlohmann::json::parse(listed.out), nlohmann::json::parse(R"({"faults":[
      {"name":"fault-1","kind":"status","operation":"BVInvoiceConnector.GetInvoice","count":1,
       "status":429,"seen":2,"hit":1}]})"));
  EXPECT_EQ(ask_sandbox(sandbox.port(), {"faults", "remove", "fault-1"}).status, 0);
  const CommandRun gone = ask_sandbox(sandbox.port(), {"faults", "remove", "fault-1"});
  EXPECT_EQ(gone.status, 1);
  EXPECT_EQ(gone.err, "There is no fault with the name 'fault-1'\n");
  ASSERT_EQ(ask_sandbox(sandbox.port(), {"faults", "add", "reset"}).status, 0);
  EXPECT_EQ(ask_sandbox(sandbox.port(), {"faults", "clear"}).status, 0);
  EXPECT_EQ(invoice_status(sandbox), 200);
}

TEST(FaultsCommand, RefusesInOneLineWhatIsNoFault) {
  const std::pair<std::vector<std::string>, const char*> refusals[] = {
      {{"faults", "add", "rest"},
       "bvsandbox: There is no kind 'rest' of fault; did you mean reset?\n"},
      {{"faults", "add", "reset", "--count", "many"},
       "bvsandbox: count is \"many\", expected a whole number from 1 to 9223372036854775807\n"},
      {{"faults", "add"}, "bvsandbox: faults add needs a KIND or --file\n"},
  };
  for (const auto& [words, line] : refusals) {
    const CommandRun run = run_sandbox(words);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, line);
  }
}

TEST(FaultsCommand, TakesAFileFromTheStartAndLater) {
  const FaultsFile file(
      "# Twice the invoice is not there.\n"
      "[[fault]]\nname = \"gone\"\nkind = \"soap-fault\"\ncode = \"10041\"\ncount = 1\n"
      "operation = \"BVInvoiceConnector.GetInvoice\"\n\n"
      "[[fault]]\nkind = \"status\"\nstatus = 504\ncount = 1\nprobability = 1.0\nrun = true\n");
  SandboxProcess sandbox({"--port", "0", "--faults", file.path()});
  EXPECT_EQ(invoice_status(sandbox), 500);
  EXPECT_EQ(invoice_status(sandbox), 504);
  EXPECT_EQ(invoice_status(sandbox), 200);
  const CommandRun twice = ask_sandbox(sandbox.port(), {"faults", "add", "--file", file.path()});
  EXPECT_EQ(twice.err, "There is a fault with the name 'gone' already\n");
  ASSERT_EQ(ask_sandbox(sandbox.port(), {"faults", "clear"}).status, 0);
  EXPECT_EQ(ask_sandbox(sandbox.port(), {"faults", "add", "--file", file.path()}).out,
            "gone\nfault-2\n");
  EXPECT_EQ(invoice_status(sandbox), 500);
}

TEST(FaultsCommand, AFileThatIsNoneIsRefusedAtTheStartWithItsPlace) {
  const std::pair<const char*, const char*> refusals[] = {
      {"[[fault]]\nkind = \"reset\"\n\n[[fault]]\nkind = \"rest\"\n",
       ", line 4: There is no kind 'rest' of fault; did you mean reset?\n"},
      {"[[fault]]\nkind = \"reset\"\noperation = \"BVInvoiceConnector.Get\"\n",
       ", line 1: operation is 'BVInvoiceConnector.Get', which the library does not have"},
      {"[[faults]]\nkind = \"reset\"\n", ": there is no faults; each fault is a table [[fault]]\n"},
      {"kind = \n", " is not TOML at line 1, column 8: "},
      {"", " has no table [[fault]]\n"},
  };
  for (const auto& [toml, words] : refusals) {
    const FaultsFile file(toml);
    const CommandRun run = run_sandbox({"--port", "0", "--until-eof", "--faults", file.path()});
    EXPECT_EQ(run.status, 1) << toml;
    EXPECT_THAT(run.err, HasSubstr("bvsandbox: " + file.path() + words));
    EXPECT_EQ(run.out, "");
  }
  EXPECT_EQ(run_sandbox({"--faults", "/nowhere/faults.toml"}).err,
            "bvsandbox: /nowhere/faults.toml cannot be read\n");
}

}  // namespace
}  // namespace bvconn::test

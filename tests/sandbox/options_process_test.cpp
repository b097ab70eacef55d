#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <random>

#include "sandbox/command_run.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

class OptionFiles : public ::testing::Test {
 protected:
  OptionFiles()
      : folder_(std::filesystem::temp_directory_path() /
                ("bvsandbox-options-" + std::to_string(std::random_device{}()))) {
    std::filesystem::create_directory(folder_);
  }
  ~OptionFiles() override { std::filesystem::remove_all(folder_); }

  std::string write(const char* name, const std::string& text) {
    std::ofstream(folder_ / name) << text;
    return (folder_ / name).string();
  }
  bool has(const char* name) const { return std::filesystem::exists(folder_ / name); }

 private:
  std::filesystem::path folder_;
};

std::string disabled(std::uint16_t port) {
  return test::exchange(port, http_request("GET", "/admin/disabled", "", "")).body;
}

TEST(SandboxOptions, TellTheVersion) {
  const CommandRun run = run_sandbox({"--version"});
  EXPECT_THAT(run.out, MatchesRegex("bvsandbox [0-9]+\\.[0-9]+\\.[0-9]+\n"));
  EXPECT_EQ(run.status, 0);
}

TEST(SandboxOptions, AreRefusedInOneLineWhereTheyCannotWork) {
  const std::pair<std::vector<std::string>, const char*> refusals[] = {
      {{"--disabled", "urn:HeartBeatService.beat"},
       "--disabled: 'urn:HeartBeatService.beat' disables nothing, expected a '|' behind each "
       "method, as 'urn:HeartBeatService.beat|'"},
      {{"--max-body-bytes", "-1"},
       "--max-body-bytes: '-1' is no whole number from 1 to 9223372036854775807"},
      {{"--max-body-bytes", "0"},
       "--max-body-bytes: '0' is no whole number from 1 to 9223372036854775807"},
      {{"--port", "99999"}, "--port: '99999' is no whole number from 0 to 65535"},
      {{"--port", "80a"}, "--port: '80a' is no whole number from 0 to 65535"},
      {{"--seed", "-5"}, "--seed: '-5' is no whole number from 0 to 9223372036854775807"},
      {{"--idle-deadline-ms", "0"},
       "--idle-deadline-ms: '0' is no whole number from 1 to 86400000"},
      {{"--prot", "0"}, "there is no option --prot; did you mean --port?"},
      {{"--memory", "--db", "x.db"}, "--db excludes --memory"},
  };
  for (const auto& [words, line] : refusals) {
    const CommandRun run = run_sandbox(words);
    EXPECT_EQ(run.status, 2) << words.front();
    EXPECT_EQ(run.err, "bvsandbox: " + std::string(line) + "\n");
    EXPECT_EQ(run.out, "");
  }
}

TEST(SandboxOptions, TakeNoDisabledMethodsThatDisableNothingLaterEither) {
  const SandboxProcess sandbox;
  const CommandRun run = ask_sandbox(sandbox.port(), {"disabled", "beat"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("'beat' disables nothing, expected a '|'"));
  EXPECT_EQ(disabled(sandbox.port()), "");
}

TEST_F(OptionFiles, GiveOptionsThatTheCommandLineDoesNot) {
  const std::string faults = write("faults.toml", "[[fault]]\nkind = \"reset\"\nname = \"r\"\n");
  const std::string config = write("sandbox.toml",
                                   "port = 0\nverbose = true\nuntil-eof = false\nseed = 7\n"
                                   "db = \"kept.db\"\nfaults = [\"faults.toml\"]\n"
                                   "disabled = \"urn:HeartBeatService.beat|\"\n");
  {
    const SandboxProcess sandbox({"--config", config});
    EXPECT_EQ(disabled(sandbox.port()), "urn:HeartBeatService.beat|");
    EXPECT_THAT(ask_sandbox(sandbox.port(), {"faults", "list"}).out, HasSubstr("\"r\""));
  }
  EXPECT_TRUE(has("kept.db"));
  std::filesystem::remove(std::filesystem::path(config).parent_path() / "kept.db");
  const SandboxProcess sandbox({"--memory", "--disabled", "", "--config", config});
  EXPECT_EQ(disabled(sandbox.port()), "");
  EXPECT_FALSE(has("kept.db"));
}

TEST_F(OptionFiles, AreRefusedInOneLineWhereTheyAreNone) {
  const std::pair<const char*, const char*> refusals[] = {
      {"prot = 1\n", ": there is no option prot; did you mean port?"},
      {"config = \"x\"\n", ": there is no option config"},
      {"port = [[1]]\n", ": port is no value that the option --port takes"},
      {"verbose = 3\n", ": verbose is no value that the option --verbose takes"},
      {"port = \n", " is not TOML at line 1, column "},
  };
  for (const auto& [toml, words] : refusals) {
    const std::string config = write("sandbox.toml", toml);
    const CommandRun run = run_sandbox({"--config", config});
    EXPECT_EQ(run.status, 2) << toml;
    EXPECT_THAT(run.err, HasSubstr("bvsandbox: " + config + words));
  }
  const std::string config = write("sandbox.toml", "port = 99999\n");
  EXPECT_EQ(run_sandbox({"--config", config}).err,
            "bvsandbox: --port: '99999' is no whole number from 0 to 65535\n");
  EXPECT_EQ(run_sandbox({"--config", "/nowhere/sandbox.toml"}).err,
            "bvsandbox: /nowhere/sandbox.toml cannot be read\n");
}

TEST(SandboxStart, TellsAPersonAtATerminalInWords) {
  int terminal = -1;
  const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) {
    ::execl(BVSANDBOX, BVSANDBOX, "--port", "0", nullptr);
    ::_exit(127);
  }
  std::string text;
  std::array<char, 4096> piece{};
  while (text.find("ends it") == std::string::npos) {
    const ssize_t count = ::read(terminal, piece.data(), piece.size());
    if (count <= 0) break;
    text.append(piece.data(), static_cast<std::size_t>(count));
  }
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  ::close(terminal);
  EXPECT_THAT(text, HasSubstr("{\"ready\":true,"));
  EXPECT_THAT(text, HasSubstr("bvsandbox: SOAP on http://127.0.0.1:"));
  EXPECT_THAT(text, HasSubstr("/dal; Ctrl-C ends it"));
}

}  // namespace
}  // namespace bvconn::test

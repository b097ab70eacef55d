#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "automation/shell.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

std::string help_of(const std::string& command) {
  return Shell().run("bvconn " + command + " --help").out;
}

/// The subcommands that the program's help lists.
std::vector<std::string> subcommands() {
  std::istringstream help(help_of(""));
  std::vector<std::string> names;
  bool listed = false;
  for (std::string line; std::getline(help, line);) {
    if (line == "Subcommands:") {
      listed = true;
    } else if (listed && line.starts_with("  ")) {
      std::istringstream words(line);
      words >> names.emplace_back();
    } else {
      listed = false;
    }
  }
  return names;
}

/// The indented lines below "Example…", each with those that continue it.
std::vector<std::string> examples_in(const std::string& help) {
  std::istringstream text(help);
  std::vector<std::string> found;
  bool among_examples = false;
  for (std::string line; std::getline(text, line);) {
    if (line.starts_with("Example")) {
      among_examples = true;
    } else if (!line.starts_with("  ")) {
      among_examples = false;
    } else if (among_examples && line.starts_with("    ")) {
      if (!found.empty()) found.back() += "\n" + line;
    } else if (among_examples) {
      found.push_back(line);
    }
  }
  return found;
}

/// The example with the port of the sandbox that runs here.
std::string at_port(std::string example, std::uint16_t port) {
  const std::string usual = "127.0.0.1:8080";
  for (std::size_t at = example.find(usual); at != std::string::npos;
       at = example.find(usual, at)) {
    example.replace(at, usual.size(), "127.0.0.1:" + std::to_string(port));
    ++at;
  }
  return example;
}

TEST(HelpExamples, AreFoundInTheHelpOfTheProgramAndOfCall) {
  EXPECT_THAT(subcommands(), testing::IsSupersetOf({"list", "call", "batch", "parity"}));
  EXPECT_GE(examples_in(help_of("")).size(), 6U);
  EXPECT_GE(examples_in(help_of("call")).size(), 5U);
}

TEST(HelpExamples, OfTheProgramWorkAsTheyStandOneAfterAnother) {
  SandboxProcess sandbox;
  std::string script = "set -e\n";
  for (const std::string& example : examples_in(help_of(""))) {
    script += at_port(example, sandbox.port()) + "\n";
  }
  const auto outcome = Shell().run(script);
  EXPECT_EQ(outcome.status, 0) << script << outcome.err;
  EXPECT_EQ(outcome.err, "");
}

TEST(HelpExamples, OfEachSubcommandWorkAsTheyStand) {
  SandboxProcess sandbox;
  for (const std::string& command : subcommands()) {
    const auto examples = examples_in(help_of(command));
    EXPECT_FALSE(examples.empty()) << command << " has no example";
    for (const std::string& example : examples) {
      const auto outcome = Shell().run("set -e -o pipefail; cd \"$HOME\"\n" +
                                       at_port(example, sandbox.port()) + "\n");
      EXPECT_EQ(outcome.status, 0) << command << ":\n" << example << '\n' << outcome.err;
    }
  }
}

}  // namespace
}  // namespace bvconn::test

// The examples of the help texts and the manual pages work as they stand, with a sandbox on the
// port that they name.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "automation/tool_process.h"
#include "docs/page.h"
#include "docs/reader.h"

namespace bvconn::test {
namespace {

std::string help_of(const std::string& command) {
  std::vector<std::string> words{"--help"};
  if (!command.empty()) words.insert(words.begin(), command);
  return Tool::run(words).out;
}

/// The subcommands that the program's help lists.
std::vector<std::string> subcommands() {
  std::vector<std::string> names;
  bool listed = false;
  for (const std::string& line : lines_of(help_of(""))) {
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

/// The indented lines below "Example…".
std::string examples_in(const std::string& help) {
  std::string found;
  bool among_examples = false;
  for (const std::string& line : lines_of(help)) {
    if (line.starts_with("Example")) {
      among_examples = true;
    } else if (!line.starts_with("  ")) {
      among_examples = false;
    } else if (among_examples) {
      found += line.substr(2) + "\n";
    }
  }
  return found;
}

/// The lines that a manual page sets as they are below EXAMPLES, without the marks of its language.
std::string examples_of_page(const std::string& name) {
  std::string found;
  bool among_examples = false;
  bool as_they_are = false;
  for (const std::string& line : lines_of(read_text(BVCONN_SOURCE_DIR "/docs/man/" + name))) {
    if (line.starts_with(".SH ")) among_examples = line == ".SH EXAMPLES";
    if (line == ".nf" || line == ".fi") {
      as_they_are = line == ".nf";
    } else if (among_examples && as_they_are) {
      found += std::regex_replace(std::regex_replace(line, std::regex(R"(\\-)"), "-"),
                                  std::regex(R"(\\\(rs)"), "\\") +
               "\n";
    }
  }
  return found;
}

TEST(HelpExamples, AreFoundInTheHelpOfTheProgramAndOfCall) {
  EXPECT_THAT(subcommands(), testing::IsSupersetOf({"list", "call", "batch", "parity"}));
  EXPECT_GE(lines_of(examples_in(help_of(""))).size(), 6U);
  EXPECT_GE(lines_of(examples_in(help_of("call"))).size(), 5U);
}

TEST(HelpExamples, OfTheProgramWorkAsTheyStandOneAfterAnother) {
  Reader reader;
  reader.type("bvsandbox --port 8080\n", true);
  const std::string examples = examples_in(help_of(""));
  const auto outcome = reader.type("exec >/dev/null\n" + examples, true);
  EXPECT_EQ(outcome.status, 0) << examples;
  EXPECT_EQ(outcome.printed, "") << "on standard error";
}

TEST(HelpExamples, OfEachSubcommandWorkAsTheyStand) {
  Reader reader;
  reader.type("bvsandbox --port 8080\n", true);
  for (const std::string& command : subcommands()) {
    const std::string examples = examples_in(help_of(command));
    EXPECT_NE(examples, "") << command << " has no example";
    const auto outcome = reader.type(examples, true);
    EXPECT_EQ(outcome.status, 0) << command << ":\n" << examples << outcome.printed;
  }
}

TEST(ManPages, HaveExamplesThatWorkAsTheyStand) {
  for (const char* name : {"bvconn.1", "bvsandbox.1"}) {
    Reader reader;
    if (std::string_view(name) != "bvsandbox.1") reader.type("bvsandbox --port 8080\n", true);
    const std::string examples = examples_of_page(name);
    EXPECT_NE(examples, "") << name;
    const auto outcome = reader.type(examples, true);
    EXPECT_EQ(outcome.status, 0) << examples << outcome.printed;
  }
}

}  // namespace
}  // namespace bvconn::test

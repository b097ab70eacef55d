// The examples of the help texts and the manual pages work as they stand, with a sandbox on the
// port that they name; and what pages say of commands in running text names those that there are.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
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

struct Mention {
  std::string place;
  std::string program;  ///< "bvconn" or "bvsandbox"
  std::string command;  ///< the subcommand, "" for none
  std::string next;     ///< the word behind it, which may be a subcommand of its own
  std::vector<std::string> options;
};

/// The commands of a line: between backticks, or the line itself.
std::vector<Mention> mentions_in(const std::string& line, const std::string& place) {
  static const std::regex kCommand(
      R"((^|[`/ ])(bvconn|bvsandbox)((?: [a-z][a-z-]*)?)((?: [^`|;#]*)?))");
  static const std::regex kOption(R"((?:^|[ \[])(--[a-z][a-z-]*))");
  std::vector<Mention> found;
  for (std::sregex_iterator at(line.begin(), line.end(), kCommand), end; at != end; ++at) {
    // Words of a sentence about the program are no command.
    if ((*at)[1] == " " && !(*at)[3].str().empty()) continue;
    Mention mention{
        .place = place, .program = (*at)[2], .command = (*at)[3], .next = {}, .options = {}};
    if (!mention.command.empty()) mention.command.erase(0, 1);
    const std::string rest = (*at)[4];
    std::istringstream(rest) >> mention.next;
    for (std::sregex_iterator option(rest.begin(), rest.end(), kOption); option != end; ++option) {
      mention.options.push_back((*option)[1]);
    }
    found.push_back(mention);
  }
  return found;
}

TEST(Mentions, AreCommandsWithTheirOptions) {
  const auto found = mentions_in("Say `bvconn call X.Y --json` or `bvsandbox --port 1`.", "p");
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].command, "call");
  EXPECT_THAT(found[0].options, testing::ElementsAre("--json"));
  EXPECT_EQ(found[1].program, "bvsandbox");
  EXPECT_THAT(found[1].options, testing::ElementsAre("--port"));
}

TEST(Mentions, AreOfCommandsAndOptionsThatThereAre) {
  Reader reader;
  std::map<std::string, std::string> helps;
  const auto help_of = [&](const std::string& command) -> const std::string& {
    const auto [at, is_new] = helps.try_emplace(command);
    if (is_new) at->second = reader.type(command + " --help\n", false).printed;
    return at->second;
  };
  int commands = 0;
  for (const std::string& page : pages_with_blocks(BVCONN_SOURCE_DIR)) {
    const auto lines = lines_of(read_text(std::filesystem::path(BVCONN_SOURCE_DIR) / page));
    for (std::size_t at = 0; at < lines.size(); ++at) {
      for (const Mention& mention : mentions_in(lines[at], page + ":" + std::to_string(at + 1))) {
        if (!mention.command.empty()) {
          EXPECT_THAT(help_of(mention.program), testing::HasSubstr("\n  " + mention.command + " "))
              << mention.place << " names a command that there is not";
          ++commands;
        }
        std::string command =
            mention.program + (mention.command.empty() ? "" : " " + mention.command);
        const std::string& help = help_of(command);
        const auto nested = help.find("Subcommands:");
        if (nested != std::string::npos && !mention.next.empty() && !mention.command.empty() &&
            help.find("\n  " + mention.next + " ", nested) != std::string::npos) {
          command += " " + mention.next;
        }
        for (const std::string& option : mention.options) {
          EXPECT_THAT(help_of(command), testing::HasSubstr(option)) << mention.place;
        }
      }
    }
  }
  EXPECT_GE(commands, 20);
}

}  // namespace
}  // namespace bvconn::test

// What pages say of commands in running text names commands and options that there are.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "automation/tool_process.h"
#include "docs/page.h"
#include "docs/reader.h"

namespace bvconn::test {
namespace {

struct Mention {
  std::string place;
  std::string program;  ///< "bvconn" or "bvsandbox"
  std::string command;  ///< the subcommand, "" for none
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
    Mention mention{.place = place, .program = (*at)[2], .command = (*at)[3], .options = {}};
    if (!mention.command.empty()) mention.command.erase(0, 1);
    const std::string rest = (*at)[4];
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
        const std::string command =
            mention.program + (mention.command.empty() ? "" : " " + mention.command);
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

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "automation/tool_process.h"
#include "tools/bvconn/text_lines.h"

namespace bvconn::test {
namespace {

using testing::IsSubsetOf;
using tool::lines_of;

using Names = std::set<std::string>;

Names matches(const std::string& text, const std::regex& pattern) {
  Names found;
  for (std::sregex_iterator at(text.begin(), text.end(), pattern), end; at != end; ++at) {
    found.insert((*at)[1]);
  }
  return found;
}

/// What the help text of a program, or of one of its commands, offers.
struct Help {
  explicit Help(std::string help) : text(std::move(help)) {
    static const std::regex kOption(R"((?:^|\n) +(?:-\w,)?(--[a-z][a-z-]*))");
    options = matches(text, kOption);
    options.erase("--help");
    options.erase("--version");
    bool inside = false;
    for (const std::string& line : lines_of(text)) {
      if (!line.starts_with("  ")) inside = line == "Subcommands:";
      if (inside && line.starts_with("  ") && line[2] != ' ') {
        commands.insert(line.substr(2, line.find(' ', 2) - 2));
      }
    }
  }

  std::string text;
  Names options;
  Names commands;
};

/// A manual page: the options that have a paragraph of their own, by section.
struct Page {
  explicit Page(const std::string& name) : path(std::string(BVCONN_MAN_PAGES) + "/" + name) {
    for (std::string line : lines_of(read_text(path))) {
      for (auto at = line.find("\\-"); at != std::string::npos; at = line.find("\\-")) {
        line.erase(at, 1);
      }
      text.append(line).append("\n");
      if (line.starts_with(".SH ") || line.starts_with(".SS ")) section = line.substr(4);
      static const std::regex kOption("(--[a-z][a-z-]*)");
      if (previous == ".TP") {
        for (const std::string& option : matches(line, kOption)) options[section].insert(option);
      }
      sections.insert(section);
      previous = line;
    }
  }

  std::string path;
  std::string text;
  Names sections;
  std::map<std::string, Names> options;

 private:
  std::string section;
  std::string previous;
};

std::string output_of(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), &::pclose);
  std::string text;
  std::array<char, 4096> buffer{};
  while (pipe != nullptr && std::fgets(buffer.data(), buffer.size(), pipe.get()) != nullptr) {
    text.append(buffer.data());
  }
  return text;
}

Help help_of(std::vector<std::string> words) {
  words.emplace_back("--help");
  return Help(Tool::run(std::move(words)).out);
}

/// Every command of the tool by its words, "" for the tool itself.
const std::map<std::string, Help>& helps() {
  static const std::map<std::string, Help> all = [] {
    std::map<std::string, Help> found{{"", help_of({})}};
    for (const std::string& command : found.at("").commands) {
      const Help help = help_of({command});
      for (const std::string& part : help.commands) {
        found.emplace(command + " " + part, help_of({command, part}));
      }
      found.emplace(command, help);
    }
    return found;
  }();
  return all;
}

constexpr const char* kShared = "CONNECTION OPTIONS";

using Meanings = std::map<std::string, std::string>;

/// What the page says of the exit statuses of `call`, as the beginning of a sentence.
Meanings statuses_of_the_page() {
  const Page page("bvconn.1");
  static const std::regex kStatus(R"(\.B (\d+)\n(\w)([^\n]*)\.\n)");
  const std::size_t begin = page.text.find(".SH EXIT STATUS");
  const std::string part = page.text.substr(begin, page.text.find(".PP", begin) - begin);
  Meanings found;
  for (std::sregex_iterator at(part.begin(), part.end(), kStatus), end; at != end; ++at) {
    const char first =
        static_cast<char>(std::tolower(static_cast<unsigned char>((*at)[2].str()[0])));
    found[(*at)[1]] = first + (*at)[3].str();
  }
  return found;
}

Meanings statuses_of_the_guide() {
  static const std::regex kRow(R"(^\| (\d+) \| (.*) \|$)");
  Meanings found;
  bool inside = false;
  for (const std::string& line : lines_of(read_text(BVCONN_MAN_PAGES "/../tool.md"))) {
    inside = line.starts_with("| exit status of `call` |") || (inside && line.starts_with("|"));
    std::smatch row;
    if (inside && std::regex_match(line, row, kRow)) found[row[1]] = row[2];
  }
  return found;
}

TEST(ManPageOfTheTool, SaysOfExitStatusesWithWhatTheGuideBegins) {
  const Meanings guide = statuses_of_the_guide();
  const Meanings page = statuses_of_the_page();
  EXPECT_GE(guide.size(), 10U);
  EXPECT_EQ(guide.size(), page.size());
  for (const auto& [status, meaning] : guide) {
    ASSERT_TRUE(page.contains(status)) << status;
    EXPECT_TRUE(meaning.starts_with(page.at(status))) << status << ": " << page.at(status);
  }
}

TEST(ManPageOfTheTool, HasASectionForEachCommand) {
  const Page page("bvconn.1");
  EXPECT_GE(helps().size(), 10U);
  for (const auto& [command, help] : helps()) {
    EXPECT_TRUE(command.empty() || page.sections.contains(command)) << command;
  }
}

TEST(ManPageOfTheTool, HasEveryOptionOfEachCommandAndNoOther) {
  const Page page("bvconn.1");
  Names offered;
  for (const auto& [command, help] : helps()) {
    offered.insert(help.options.begin(), help.options.end());
    const auto own = page.options.find(command);
    const Names told = own == page.options.end() ? Names() : own->second;
    EXPECT_THAT(told, IsSubsetOf(help.options)) << "told in the section " << command;
    Names known = page.options.at(kShared);
    known.insert(told.begin(), told.end());
    EXPECT_THAT(help.options, IsSubsetOf(known)) << "missing in the section " << command;
  }
  EXPECT_THAT(page.options.at(kShared), IsSubsetOf(offered));
  EXPECT_TRUE(offered.contains("--show-exchange"));
  EXPECT_TRUE(offered.contains("--server"));
}

TEST(ManPageOfTheTool, NamesNoCommandThatIsNone) {
  const Page page("bvconn.1");
  const std::size_t begin = page.text.find("\n.SH COMMANDS\n");
  const std::size_t end = page.text.find("\n.SH ", begin + 1);
  ASSERT_NE(begin, std::string::npos);
  static const std::regex kSection("\n\\.SS ([^\n]+)");
  for (const std::string& section : matches(page.text.substr(begin, end - begin), kSection)) {
    EXPECT_TRUE(helps().contains(section)) << section;
  }
}

TEST(ManPageOfTheTool, NamesTheVariablesThatTheHelpTextsName) {
  const Page page("bvconn.1");
  static const std::regex kVariable("(BVCONN_[A-Z_]+)");
  const Names told = matches(page.text, kVariable);
  for (const auto& [command, help] : helps()) {
    EXPECT_THAT(matches(help.text, kVariable), IsSubsetOf(told)) << command;
  }
}

TEST(ManPageOfTheTool, HasTheExitStatusesOfACallAsItsHelpHas) {
  const Page page("bvconn.1");
  const std::string text = std::regex_replace(page.text, std::regex("\\s+"), " ");
  static const std::regex kStatus("\n  ([0-9]+ +[^\n]+)");
  const std::string& help = helps().at("call").text;
  const Names statuses = matches(help.substr(help.find("\nExit status:")), kStatus);
  EXPECT_EQ(statuses.size(), 10U);
  for (const std::string& status : statuses) {
    const std::size_t begin = status.find_first_not_of(' ', status.find(' '));
    // The page begins each with a capital.
    const std::string number = ".TP .B " + status.substr(0, status.find(' ')) + " ";
    const std::size_t at = text.find(number);
    ASSERT_NE(at, std::string::npos) << status;
    EXPECT_EQ(text.substr(at + number.size() + 1, status.size() - begin - 1),
              status.substr(begin + 1))
        << "the page says of " << status;
  }
}

TEST(ManPageOfTheSandbox, HasEveryOptionAndNoOther) {
  Names told = Page("bvsandbox.1").options.at("OPTIONS");
  told.erase("--help");
  told.erase("--version");
  const Help help(output_of("'" BVSANDBOX "' --help"));
  EXPECT_TRUE(help.options.contains("--port"));
  EXPECT_EQ(told, help.options);
}

TEST(ManPages, AreSetWithoutAWarning) {
  if (std::system("groff --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "groff is not here";
  for (const char* name : {"bvconn.1", "bvsandbox.1"}) {
    const std::string path = Page(name).path;
    EXPECT_EQ(output_of("groff -man -ww -Tutf8 -z '" + path + "' 2>&1"), "");
    EXPECT_NE(output_of("groff -man -Tutf8 -P-cbou '" + path + "'").find("NAME"),
              std::string::npos);
  }
}

}  // namespace
}  // namespace bvconn::test

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tree/source_tree.h"

// What the pages lead to, and what the guides among them name.
namespace bvconn::test {
namespace {

const std::filesystem::path kRoot = BVCONN_SOURCE_DIR;

std::vector<std::filesystem::path> guides() {
  std::vector<std::filesystem::path> pages{kRoot / "README.md", kRoot / "CONTRIBUTING.md"};
  for (const auto& entry : std::filesystem::directory_iterator(kRoot / "docs")) {
    if (entry.path().extension() == ".md") pages.push_back(entry.path());
  }
  return pages;
}

/// The places of a page that a link may name: its headings in small letters, blanks as dashes, and
/// nothing of other signs.
std::set<std::string> anchors_of(const std::string& text) {
  std::set<std::string> anchors;
  std::istringstream page(text);
  for (std::string line; std::getline(page, line);) {
    if (!line.starts_with("#")) continue;
    std::string anchor;
    for (const char c : line.substr(line.find_first_not_of("# "))) {
      if (c == ' ') anchor += '-';
      if (c == '-' || c == '_') anchor += c;
      if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
        anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      }
    }
    anchors.insert(anchor);
  }
  return anchors;
}

/// Links of a page that lead nowhere.
std::vector<std::string> broken_links(const std::filesystem::path& page) {
  static const std::regex kLink(R"(\]\(([^)\s]+)\))");
  std::vector<std::string> broken;
  for (const std::string& link : all_matches(read_text(page), kLink)) {
    if (link.find("://") != std::string::npos) continue;
    const std::size_t sign = link.find('#');
    const std::string file = link.substr(0, sign);
    const std::filesystem::path target = file.empty() ? page : page.parent_path() / file;
    const bool there = std::filesystem::exists(target);
    if (!there || (sign != std::string::npos &&
                   !anchors_of(read_text(target)).contains(link.substr(sign + 1)))) {
      broken.push_back(link);
    }
  }
  return broken;
}

/// The variables of the environment that library, tools and sandbox read.
std::set<std::string> variables_of_the_sources() {
  static const std::regex kName("\"(BVCONN_[A-Z_]+)\"");
  std::set<std::string> names;
  for (const SourceFile& file : read_source_tree(kRoot)) {
    if (!file.below("bvconn/") && !file.below("tools/") && !file.below("sandbox/")) continue;
    if (!file.is_code()) continue;
    for (const std::string& name : all_matches(file.text, kName)) names.insert(name);
  }
  return names;
}

TEST(AnchorsOf, AreTheHeadingsInSmallLettersWithDashes) {
  EXPECT_EQ(anchors_of("# A page\ntext\n## When it's full, and `why`\n#no\n"),
            (std::set<std::string>{"a-page", "when-its-full-and-why", "no"}));
}

TEST(Pages, LinkOnlyToPlacesThatThereAre) {
  int pages = 0;
  for (const SourceFile& file : read_source_tree(kRoot)) {
    if (!file.path.ends_with(".md")) continue;
    ++pages;
    for (const std::string& link : broken_links(kRoot / file.path)) {
      ADD_FAILURE() << file.path << " links to " << link;
    }
  }
  EXPECT_GE(pages, 30);
}

TEST(Guides, TellOfEveryVariableOfTheEnvironment) {
  std::string text;
  for (const auto& page : guides()) text += read_text(page);
  const std::string manual = read_text(kRoot / "docs/man/bvconn.1");
  const auto variables = variables_of_the_sources();
  EXPECT_GE(variables.size(), 15U);
  for (const std::string& name : variables) {
    EXPECT_NE(text.find(name), std::string::npos) << "no guide tells of " << name;
    EXPECT_NE(manual.find(name), std::string::npos) << "bvconn.1 does not tell of " << name;
  }
}

}  // namespace
}  // namespace bvconn::test

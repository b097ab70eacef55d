#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tree/source_tree.h"

// What is odd on purpose is marked in the sources, "deliberate [id]", and told in docs/oddities.md.
namespace bvconn::test {
namespace {

const SourceTree& tree() {
  static const SourceTree files = read_source_tree(BVCONN_SOURCE_DIR);
  return files;
}

std::vector<std::smatch> matches(const std::string& text, const std::regex& pattern) {
  return {std::sregex_iterator(text.begin(), text.end(), pattern), std::sregex_iterator()};
}

std::set<std::string> ids_in(const std::string& text) {
  static const std::regex kMark(R"(deliberate \[([a-z0-9-]+)\])");
  std::set<std::string> ids;
  for (const std::smatch& match : matches(text, kMark)) ids.insert(match[1]);
  return ids;
}

/// The lines that speak of something deliberate without an id.
std::vector<std::string> unmarked_lines(const std::string& text) {
  static const std::regex kWord("deliberate", std::regex::icase);
  static const std::regex kMark(R"(\bdeliberate \[[a-z0-9-]+\])");
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (matches(line, kWord).size() != matches(line, kMark).size()) lines.push_back(line);
  }
  return lines;
}

/// The blocks of operations, each with the comment above it.
std::vector<std::string> blocks_in(const std::string& text) {
  static const std::regex kBlock(R"((?:^//[^\n]*\n)*^constexpr Operation \w+\{[^;]*\};)",
                                 std::regex::multiline);
  std::vector<std::string> blocks;
  for (const std::smatch& match : matches(text, kBlock)) blocks.push_back(match[0]);
  return blocks;
}

/// Whether a block departs from the names of its operation, its row or its class's lines.
bool departs(const std::string& block) {
  static const std::regex kField(
      R"(\.(?:name|wire|soap_action|route_method|enter|exit|error|exits|level) = )");
  return std::regex_search(block, kField);
}

struct Oddity {
  std::string id;
  std::vector<std::string> places;  ///< paths, and the names to look for there
  std::vector<std::string> tests;
};

std::vector<std::string> quoted_in(const std::string& cell) {
  static const std::regex kQuoted("`([^`]+)`");
  std::vector<std::string> words;
  for (const std::smatch& match : matches(cell, kQuoted)) words.push_back(match[1]);
  return words;
}

std::vector<Oddity> oddities_on(const std::string& page) {
  static const std::regex kRow(R"(\n\| ([a-z0-9-]+) \| [^\n]* \| ([^|\n]*) \| ([^|\n]*) \|(?=\n))");
  std::vector<Oddity> found;
  for (const std::smatch& match : matches(page, kRow)) {
    if (match[1] == "id") continue;
    found.push_back({match[1], quoted_in(match[2]), quoted_in(match[3])});
  }
  return found;
}

const std::vector<Oddity>& oddities() {
  static const std::vector<Oddity> all =
      oddities_on(read_text(BVCONN_SOURCE_DIR "/docs/oddities.md"));
  return all;
}

bool is_path(const std::string& place) {
  return place.find('/') != std::string::npos;
}

bool holds_word(const std::string& text, const std::string& word) {
  const auto in_word = [&](std::size_t at) {
    return at < text.size() &&
           (std::isalnum(static_cast<unsigned char>(text[at])) != 0 || text[at] == '_');
  };
  for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
    if ((at == 0 || !in_word(at - 1)) && !in_word(at + word.size())) return true;
  }
  return false;
}

/// The names of all tests of the project: `Suite.Claim`, and `wire.` with the name of a wire file.
const std::set<std::string>& tests() {
  static const std::set<std::string> names = [] {
    static const std::regex kTest(R"(\nTEST(?:_[FP])?\((\w+),\s*(\w+)\))");
    std::set<std::string> all;
    for (const SourceFile& file : tree()) {
      if (!file.below("tests/")) continue;
      for (const std::smatch& match : matches(file.text, kTest)) {
        all.insert(match.str(1) + "." + match.str(2));
      }
    }
    const std::filesystem::path wire = BVCONN_SOURCE_DIR "/tests/wire";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(wire)) {
      if (entry.path().extension() == ".wire") all.insert("wire." + entry.path().stem().string());
    }
    return all;
  }();
  return names;
}

TEST(MarksOfOddities, AreReadFromCommentsAndBlocks) {
  EXPECT_EQ(ids_in("// deliberate [a-b]: x\n/// y: deliberate [c].\n"),
            (std::set<std::string>{"a-b", "c"}));
  EXPECT_EQ(unmarked_lines("// deliberate [a]: x\n// Deliberately odd.\nint x;\n"
                           "// deliberate [a], deliberate.\n"),
            (std::vector<std::string>{"// Deliberately odd.", "// deliberate [a], deliberate."}));
  const auto blocks = blocks_in(
      "// Why.\n// And more.\nconstexpr Operation kA{\n    .wire = \"a\",\n};\n"
      "constexpr Operation kB{\n    .log = {.cls = kClass, .method = \"b\"},\n};\n");
  ASSERT_EQ(blocks.size(), 2U);
  EXPECT_TRUE(blocks[0].starts_with("// Why.\n// And more.\n"));
  EXPECT_TRUE(departs(blocks[0]));
  EXPECT_FALSE(departs(blocks[1]));
}

TEST(RowsOfOddities, AreReadFromThePage) {
  const auto rows = oddities_on(
      "\n| id | what is odd | where | held by |\n|---|---|---|---|\n"
      "| a-b | It `is`. | `core/x.cpp`: `kA` | `wire.A.b.soap`, `S.Claim` |\n");
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].id, "a-b");
  EXPECT_EQ(rows[0].places, (std::vector<std::string>{"core/x.cpp", "kA"}));
  EXPECT_EQ(rows[0].tests, (std::vector<std::string>{"wire.A.b.soap", "S.Claim"}));
}

TEST(Oddities, AreNowhereCalledDeliberateWithoutAnId) {
  for (const SourceFile& file : tree()) {
    if (!file.below("bvconn/") && !file.below("tools/") && !file.below("sandbox/")) continue;
    for (const std::string& line : unmarked_lines(file.text)) {
      ADD_FAILURE() << file.path << ": write \"deliberate [id]\": " << line;
    }
  }
}

TEST(Oddities, AreTheSameInTheSourcesAndOnThePage) {
  std::set<std::string> marked;
  for (const SourceFile& file : tree()) {
    if (file.below("bvconn/")) marked.merge(ids_in(file.text));
  }
  std::set<std::string> told;
  for (const Oddity& oddity : oddities()) {
    EXPECT_TRUE(told.insert(oddity.id).second) << oddity.id << " has two rows";
  }
  EXPECT_EQ(marked, told);
  EXPECT_GE(told.size(), 100U);
}

TEST(Oddities, AreToldWithEveryFileThatTheyStandIn) {
  std::map<std::string, std::set<std::string>> files;
  std::map<std::string, const SourceFile*> by_path;
  for (const SourceFile& file : tree()) {
    if (!file.below("bvconn/")) continue;
    const std::string path = file.path.substr(std::string_view("bvconn/").size());
    by_path[path] = &file;
    for (const std::string& id : ids_in(file.text)) files[id].insert(path);
  }
  for (const Oddity& oddity : oddities()) {
    std::set<std::string> named;
    std::copy_if(oddity.places.begin(), oddity.places.end(), std::inserter(named, named.end()),
                 is_path);
    EXPECT_EQ(named, files[oddity.id]) << oddity.id;
    for (const std::string& place : oddity.places) {
      if (is_path(place)) continue;
      EXPECT_TRUE(std::any_of(named.begin(), named.end(),
                              [&](const std::string& path) {
                                return by_path.contains(path) &&
                                       holds_word(by_path.at(path)->text, place);
                              }))
          << oddity.id << ": none of its files has the name " << place;
    }
    EXPECT_LT(named.size(), oddity.places.size()) << oddity.id << " names nothing in its files";
  }
}

TEST(Oddities, AreEachHeldByATest) {
  for (const Oddity& oddity : oddities()) {
    EXPECT_FALSE(oddity.tests.empty()) << oddity.id;
    for (const std::string& test : oddity.tests) {
      EXPECT_TRUE(tests().contains(test)) << oddity.id << ": there is no test " << test;
    }
  }
}

TEST(Oddities, OfBlocksAreMarked) {
  int departing = 0;
  for (const SourceFile& file : tree()) {
    if (!file.below("bvconn/connectors/") || !file.path.ends_with(".cpp")) continue;
    for (const std::string& block : blocks_in(file.text)) {
      if (!departs(block)) continue;
      ++departing;
      EXPECT_FALSE(ids_in(block).empty()) << file.path << ":\n" << block;
    }
  }
  EXPECT_GE(departing, 25);
}

}  // namespace
}  // namespace bvconn::test

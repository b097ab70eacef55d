#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tree/source_tree.h"

// What a new operation touches: the places below and no other. Each is one item of the list in
// CONTRIBUTING.md, in the same order.
namespace bvconn::test {
namespace {

struct OperationName {
  std::string cls;
  std::string name;
};

/// The operations of the connectors, from the table of the interface.
std::vector<OperationName> operations() {
  static const std::regex kEntry(R"(^(BV\w+Connector)\.(\w+)\()");
  std::istringstream table(read_text(BVCONN_SOURCE_DIR "/tests/automation/interface_table.txt"));
  std::vector<OperationName> found;
  std::smatch match;
  for (std::string line; std::getline(table, line);) {
    if (std::regex_search(line, match, kEntry)) found.push_back({match[1], match[2]});
  }
  return found;
}

bool holds(const std::string& text, const std::string& sign) {
  return text.find(sign) != std::string::npos;
}

/// Declarations of classes break lines where they have to.
std::string without_blanks(std::string text) {
  text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return c == ' ' || c == '\n'; }),
             text.end());
  return text;
}

bool declares_member(const std::string& text, const OperationName& operation) {
  static std::map<const std::string*, std::string> squeezed;
  auto& plain = squeezed[&text];
  if (plain.empty()) plain = without_blanks(text);
  const std::string sign = "BVCONN_ROW(" + operation.name;
  return holds(plain, sign + ",") || holds(plain, sign + ")");
}

struct Place {
  /// How the item of the list begins.
  std::string_view title;
  /// The path that its item names, and that its files begin with.
  std::string_view path;
  /// Whether a file there names the operation; empty where not every operation has one of its own:
  /// several share a row, some take one route only, and the sandbox knows methods.
  bool (*names)(const std::string& text, const OperationName& operation) = nullptr;
};

constexpr Place kPlaces[] = {
    {"Row", "bvconn/catalogues/bv_methods_rows.inc"},
    {"Declaration", "bvconn/connectors/",
     [](const std::string& text, const OperationName& operation) {
       return holds(text, "class BVCONN_EXPORT " + operation.cls) &&
              holds(text, " " + operation.name + "(");
     }},
    {"Block and body", "bvconn/connectors/",
     [](const std::string& text, const OperationName& operation) {
       return holds(text, operation.cls + "::" + operation.name + "(");
     }},
    {"Service object", "bvconn/platform/torvexlib/service_object_rows.inc"},
    {"Class", "bvconn/automation/classes/", declares_member},
    {"Interface", "tests/automation/interface_table.txt",
     [](const std::string& text, const OperationName& operation) {
       return holds(text, operation.cls + "." + operation.name + "(");
     }},
    {"Wire file", "tests/wire/"},
    {"Sandbox", "sandbox/operations/"},
};

const SourceTree& tree() {
  static const SourceTree files = read_source_tree(BVCONN_SOURCE_DIR);
  return files;
}

// The items of the numbered list of the page, each as one text.
std::vector<std::string> items_of_the_list() {
  static const std::regex kItem(R"(^(\d)\. )");
  std::istringstream page(read_text(BVCONN_SOURCE_DIR "/CONTRIBUTING.md"));
  std::vector<std::string> items;
  for (std::string line; std::getline(page, line);) {
    if (std::regex_search(line, kItem)) {
      EXPECT_EQ(line.substr(0, line.find('.')), std::to_string(items.size() + 1));
      items.push_back(line);
    } else if (!items.empty() && line.starts_with("   ")) {
      items.back() += line.substr(2);
    }
  }
  return items;
}

TEST(ANewOperation, NeedsEightPlacesThatTheListTellsInOrder) {
  const std::vector<std::string> items = items_of_the_list();
  ASSERT_EQ(items.size(), std::size(kPlaces));
  for (std::size_t i = 0; i < items.size(); ++i) {
    EXPECT_NE(items[i].find("**" + std::string(kPlaces[i].title) + ".**"), std::string::npos)
        << items[i];
    EXPECT_NE(items[i].find("`" + std::string(kPlaces[i].path)), std::string::npos) << items[i];
  }
  EXPECT_LE(std::size(kPlaces), 8U);
}

TEST(ANewOperation, IsWalkedThroughInTheSameOrder) {
  std::istringstream page(read_text(BVCONN_SOURCE_DIR "/docs/adding-an-operation.md"));
  std::vector<std::string> headings;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("## ") && line.find(". ") != std::string::npos) headings.push_back(line);
  }
  ASSERT_EQ(headings.size(), std::size(kPlaces));
  for (std::size_t i = 0; i < headings.size(); ++i) {
    EXPECT_EQ(headings[i], "## " + std::to_string(i + 1) + ". " + std::string(kPlaces[i].title));
  }
}

TEST(ANewOperation, IsAtEveryPlaceThatAllOperationsHave) {
  for (const Place& place : kPlaces) {
    if (place.names == nullptr) continue;
    for (const OperationName& operation : operations()) {
      const bool found = std::any_of(tree().begin(), tree().end(), [&](const SourceFile& file) {
        return file.below(place.path) && place.names(file.text, operation);
      });
      EXPECT_TRUE(found) << place.title << ": " << operation.cls << "." << operation.name;
    }
  }
}

std::set<std::string> words_of(const std::string& text) {
  std::set<std::string> words;
  std::string word;
  for (const char c : text + " ") {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_') {
      word += c;
    } else if (!word.empty()) {
      words.insert(std::exchange(word, ""));
    }
  }
  return words;
}

// A file that names every operation of a class is a list to which a new one would have to be added.
// The sandbox's own tests name what they call; none of them fails for a new operation.
TEST(ANewOperation, IsAskedForByNoOtherList) {
  std::map<std::string, std::vector<std::string>> names;
  for (const OperationName& operation : operations())
    names[operation.cls].push_back(operation.name);
  EXPECT_EQ(names.size(), 19U);
  for (const SourceFile& file : tree()) {
    const bool is_place = file.below("tests/sandbox/") ||
                          std::any_of(std::begin(kPlaces), std::end(kPlaces),
                                      [&](const Place& place) { return file.below(place.path); });
    if (is_place) continue;
    const std::set<std::string> words = words_of(file.text);
    for (const auto& [cls, members] : names) {
      if (members.size() < 4) continue;
      const auto named = std::count_if(members.begin(), members.end(),
                                       [&](const auto& name) { return words.contains(name); });
      EXPECT_LT(static_cast<std::size_t>(named), members.size())
          << file.path << " names all operations of " << cls
          << ": derive them from the interface, or make it a place";
    }
  }
}

TEST(ANewOperation, IsCountedAmongThe205) {
  EXPECT_EQ(operations().size(), 205U);
}

}  // namespace
}  // namespace bvconn::test

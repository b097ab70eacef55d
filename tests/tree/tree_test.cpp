#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

#include "tree/include_rules.h"
#include "tree/source_tree.h"
#include "tree/text_rules.h"

namespace bvconn::test {
namespace {

const SourceTree& tree() {
  static const SourceTree files = read_source_tree(BVCONN_SOURCE_DIR);
  return files;
}

// What a rule says about every file, one complaint to a line.
std::string complaints_of(const std::function<Complaints(const SourceFile&)>& rule) {
  std::string all;
  for (const auto& file : tree()) {
    for (const auto& complaint : rule(file)) all += complaint + "\n";
  }
  return all;
}

std::string code_complaints_of(const std::function<Complaints(const SourceFile&)>& rule) {
  return complaints_of(
      [&](const SourceFile& file) { return file.is_code() ? rule(file) : Complaints(); });
}

std::string joined(const Complaints& complaints) {
  std::string all;
  for (const auto& complaint : complaints) all += complaint + "\n";
  return all;
}

std::size_t includes_below(std::string_view folder) {
  std::size_t count = 0;
  for (const auto& file : tree()) {
    if (file.is_code() && file.below(folder)) count += includes_of(file.text).size();
  }
  return count;
}

// The other tests here pass on a tree that was not found; this one does not.
TEST(SourceTree, IsSeenWhole) {
  for (const char* path :
       {"README.md", "CMakeLists.txt", "dev", "bvconn/operation/method_frame.h",
        "bvconn/platform/error.h", "bvconn/catalogues/bv_methods_rows.inc",
        "tests/tree/tree_test.cpp", "sandbox/CMakeLists.txt", "tools/bvconn/CMakeLists.txt"}) {
    EXPECT_TRUE(std::any_of(tree().begin(), tree().end(), [&](const SourceFile& file) {
      return file.path == path;
    })) << path;
  }
  EXPECT_GT(tree().size(), 100U);
  EXPECT_GT(includes_below("bvconn/core/"), 30U);
  EXPECT_GT(includes_below("bvconn/dal/"), 15U);
  EXPECT_GT(includes_below("bvconn/connectors/"), 15U);
  EXPECT_GT(includes_below("bvconn/platform/"), 100U);
  EXPECT_GT(includes_below("tools/"), 10U);
  EXPECT_GT(includes_below("sandbox/"), 20U);
}

TEST(SourceTree, IncludesRunOneWay) {
  EXPECT_EQ(code_complaints_of(check_direction), "");
}

TEST(SourceTree, IncludesAreSpelledInOneWay) {
  EXPECT_EQ(code_complaints_of([](const SourceFile& file) { return check_spelling(file, tree()); }),
            "");
}

TEST(SourceTree, IncludesGoInNoCircle) {
  EXPECT_EQ(joined(check_circles(tree())), "");
}

TEST(SourceTree, KeepsThirdPartyCodeInItsPlaces) {
  EXPECT_EQ(code_complaints_of(check_third_party), "");
}

TEST(SourceTree, ListsItsPublicHeadersAndShowsNoThirdPartyCodeInThem) {
  EXPECT_EQ(joined(check_public_headers(tree())), "");
}

TEST(SourceTree, HasAllClassesOfTheInterfaceInOneHeader) {
  EXPECT_EQ(joined(check_umbrella(tree())), "");
}

TEST(SourceTree, HasNoStrayBlanksOrTabs) {
  EXPECT_EQ(complaints_of(check_blanks), "");
}

TEST(SourceTree, IsAtMost100ColumnsWide) {
  EXPECT_EQ(complaints_of(check_width), "");
}

TEST(SourceTree, HasNoFileThatIsTooLongToReadInOneSitting) {
  EXPECT_EQ(complaints_of(check_length), "");
}

TEST(SourceTree, GuardsEveryHeader) {
  EXPECT_EQ(complaints_of(check_guard), "");
}

TEST(SourceTree, LeavesNoNoteWithoutAnOwner) {
  EXPECT_EQ(complaints_of(check_owners), "");
}

TEST(SourceTree, ExplainsItself) {
  EXPECT_EQ(complaints_of(check_references), "");
}

TEST(SourceTree, HasOnlyTestsThatCanFail) {
  EXPECT_EQ(complaints_of(check_tests), "");
}

}  // namespace
}  // namespace bvconn::test

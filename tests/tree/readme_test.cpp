#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "tree/source_tree.h"

namespace bvconn::test {
namespace {

const std::filesystem::path kRoot = BVCONN_SOURCE_DIR;

std::string readme() {
  return read_text(kRoot / "README.md");
}

TEST(Readme, NamesEveryRoomOfTheLibrary) {
  const std::string text = readme();
  for (const auto& entry : std::filesystem::directory_iterator(kRoot / "bvconn")) {
    if (!entry.is_directory()) continue;
    const std::string room = entry.path().filename().string() + "/";
    EXPECT_NE(text.find(room), std::string::npos) << "the map in the README leaves out " << room;
  }
}

TEST(Readme, LinksToEveryGuide) {
  const std::string text = readme();
  for (const auto& entry : std::filesystem::directory_iterator(kRoot / "docs")) {
    if (entry.path().extension() != ".md") continue;
    const std::string page = "docs/" + entry.path().filename().string();
    EXPECT_NE(text.find("(" + page + ")"), std::string::npos) << "the README leaves out " << page;
  }
}

// "./dev NAME" wherever a page tells the reader to type it.
TEST(Readme, TellsOfTasksThatTheScriptHas) {
  const std::string script = read_text(kRoot / "dev");
  std::set<std::string> tasks;
  for (const char* page : {"README.md", "CONTRIBUTING.md"}) {
    for (const auto& task :
         all_matches(read_text(kRoot / page), std::regex(R"(\./dev ([a-z]+))"))) {
      tasks.insert(task);
    }
  }
  EXPECT_TRUE(tasks.contains("demo"));
  EXPECT_TRUE(tasks.contains("test"));
  for (const auto& task : tasks) {
    EXPECT_NE(script.find("task_" + task + "()"), std::string::npos) << "./dev " << task;
  }
}

TEST(Changelog, BeginsWithTheVersionThatIsBuilt) {
  const auto versions = all_matches(read_text(kRoot / "CMakeLists.txt"),
                                    std::regex(R"(project\(BVConn VERSION ([0-9.]+))"));
  ASSERT_EQ(versions.size(), 1U);
  const auto entries =
      all_matches(read_text(kRoot / "CHANGELOG.md"), std::regex(R"(\n## ([0-9.]+)[ \n])"));
  ASSERT_FALSE(entries.empty());
  EXPECT_EQ(entries.front(), versions.front());
}

TEST(Changelog, HasFixedHeadings) {
  const std::set<std::string> allowed{"Added", "Changed",  "Deprecated",  "Removed",
                                      "Fixed", "Security", "Known limits"};
  for (const auto& heading :
       all_matches(read_text(kRoot / "CHANGELOG.md"), std::regex(R"(\n### ([^\n]+))"))) {
    EXPECT_TRUE(allowed.contains(heading)) << heading;
  }
}

TEST(Decisions, AreDatedAndSayTheirStatusContextDecisionAndConsequences) {
  const std::regex name(R"(20\d\d-\d\d-\d\d-[a-z0-9-]+\.md)");
  int pages = 0;
  for (const auto& entry : std::filesystem::directory_iterator(kRoot / "docs/decisions")) {
    const std::string file = entry.path().filename().string();
    EXPECT_TRUE(std::regex_match(file, name)) << file;
    const std::string text = read_text(entry.path());
    EXPECT_TRUE(text.starts_with("# ")) << file;
    for (const char* part :
         {"\nStatus: ", "\n## Context\n", "\n## Decision\n", "\n## Consequences\n"}) {
      EXPECT_NE(text.find(part), std::string::npos) << file << " lacks" << part;
    }
    ++pages;
  }
  EXPECT_GE(pages, 4);
}

}  // namespace
}  // namespace bvconn::test

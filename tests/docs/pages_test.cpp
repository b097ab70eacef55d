// Every block of every page does what the page says.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "automation/shell.h"
#include "automation/tool_process.h"
#include "docs/fragments.h"
#include "docs/page.h"
#include "docs/page_run.h"

namespace bvconn::test {
namespace {

const std::filesystem::path kRoot = BVCONN_SOURCE_DIR;

std::vector<Block> blocks_of_page(const std::string& page) {
  return blocks_of(read_text(kRoot / page), page);
}

/// The lines that begin or end a block for a reader of Markdown.
std::size_t fences_in(const std::string& text) {
  const auto lines = lines_of(text);
  return static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), [](const auto& line) {
    const std::size_t begin = std::min(line.find_first_not_of(" >"), line.size());
    return line.compare(begin, 3, "```") == 0 || line.compare(begin, 3, "~~~") == 0;
  }));
}

class Page : public testing::TestWithParam<std::string> {};

TEST_P(Page, HasNoBlockThatNobodyRuns) {
  const auto blocks = blocks_of_page(GetParam());
  for (const Block& block : blocks) EXPECT_EQ(complaint_about(block), "");
  EXPECT_EQ(fences_in(read_text(kRoot / GetParam())), 2 * blocks.size())
      << "a block is indented, begins with another sign than ```, or has no end";
}

TEST_P(Page, DoesWhatItShows) {
  const PageRun run = follow(blocks_of_page(GetParam()));
  for (const std::string& complaint : run.complaints) ADD_FAILURE() << complaint;
  for (const std::string& place : run.missing) {
    std::cerr << place << ": not run, for lack of a program\n";
  }
}

std::string name_of_page(const testing::TestParamInfo<std::string>& page) {
  std::string name;
  for (const char c : std::filesystem::path(page.param).stem().string()) {
    name += c == '-' ? '_' : c;
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Docs, Page, testing::ValuesIn(pages_with_blocks(kRoot)), name_of_page);

/// Compiles a source, and links it with the library as an application does. Blocks speak of
/// functions of the application's own, so the linker only warns.
int build_with_library(const std::string& source, const std::string& made,
                       const std::string& messages) {
  const std::string command =
      "LC_ALL=C " BVCONN_COMPILER
      " -std=c++20 -fPIC -shared -Wl,-z,defs,--warn-unresolved-symbols -I " +
      shell_quoted(BVCONN_SOURCE_DIR) + " -I " + shell_quoted(BVCONN_SOURCE_DIR "/tests") + " " +
      shell_quoted(source) + " " + shell_quoted(BVCONN_TESTING_LIBRARY) + " " +
      shell_quoted(BVCONN_LIBRARY) + " -o " + shell_quoted(made) + " 2>" + shell_quoted(messages);
  return std::system(command.c_str());
}

TEST(Pages, HaveFragmentsThatCompileAndLink) {
  std::vector<Block> fragments;
  for (const std::string& page : pages_with_blocks(kRoot)) {
    for (const Block& block : blocks_of_page(page)) {
      const bool elsewhere =
          block.has("shows") || block.has("part of") || block.has("write") || block.has("not run");
      if (block.language == "cpp" && !elsewhere) fragments.push_back(block);
    }
  }
  ASSERT_GE(fragments.size(), 5U);
  const TemporaryFolder folder;
  const std::string source = folder.file("fragments.cpp", source_of(fragments));
  const std::string messages = (folder / "messages").string();
  ASSERT_EQ(build_with_library(source, (folder / "fragments.so").string(), messages), 0)
      << read_text(messages);
  EXPECT_THAT(missing_from_library(read_text(messages)), testing::IsEmpty());
}

TEST(Pages, WouldShowANameThatTheLibraryKeepsToItself) {
  const TemporaryFolder folder;
  const std::string source =
      folder.file("use.cpp",
                  "namespace bvconn::detail { bool is_utf8(const char*); }\n"
                  "void own();\n"
                  "void use() { if (bvconn::detail::is_utf8(\"\")) own(); }\n");
  const std::string messages = (folder / "messages").string();
  ASSERT_EQ(build_with_library(source, (folder / "use.so").string(), messages), 0)
      << read_text(messages);
  EXPECT_THAT(missing_from_library(read_text(messages)),
              testing::ElementsAre("bvconn::detail::is_utf8(char const*)"));
}

}  // namespace
}  // namespace bvconn::test

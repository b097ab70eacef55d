#include "docs/page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "docs/fragments.h"
#include "docs/page_run.h"
#include "docs/shown.h"

namespace bvconn::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;

const std::string kFence = "```";

/// A block with its notes and its language, as it would stand on a page.
std::string block(const std::string& notes, const std::string& language, const std::string& text) {
  return notes + kFence + language + "\n" + text + kFence + "\n";
}

Block only_block(const std::string& markdown) {
  const auto blocks = blocks_of(markdown, "page.md");
  EXPECT_EQ(blocks.size(), 1U);
  return blocks.empty() ? Block() : blocks.front();
}

std::vector<std::string> complaints_of(const std::string& markdown) {
  return follow(blocks_of(markdown, "page.md")).complaints;
}

TEST(Blocks, AreFoundWithLanguagePlaceAndText) {
  const auto blocks =
      blocks_of("a\n" + block("", "cpp", "int x;\n\nint y;\n") + "b\n" + block("", "", "plain\n"),
                "docs/page.md");
  ASSERT_EQ(blocks.size(), 2U);
  EXPECT_EQ(blocks[0].language, "cpp");
  EXPECT_EQ(blocks[0].text, "int x;\n\nint y;\n");
  EXPECT_EQ(blocks[0].place(), "docs/page.md:3");
  EXPECT_EQ(blocks[1].language, "");
  EXPECT_EQ(blocks[1].place(), "docs/page.md:9");
}

TEST(Blocks, HaveTheNotesThatStandDirectlyInFrontOfThem) {
  const Block found = only_block(
      "<!-- not run: of another one -->\n\n<!-- output -->\n<!-- given: int a;\nint b; -->\n" +
      block("", "cpp", "a = b;\n"));
  EXPECT_THAT(found.notes, ElementsAre(Pair("given", "int a;\nint b;"), Pair("output", "")));
}

TEST(Blocks, AreComplainedOfWhereNobodyRunsThem) {
  EXPECT_THAT(complaint_about(only_block(block("", "", "x\n"))), HasSubstr("nobody runs"));
  EXPECT_THAT(complaint_about(only_block(block("", "cmake", "x\n"))), HasSubstr("nobody runs"));
  EXPECT_THAT(complaint_about(only_block(block("<!-- ouput -->\n", "", "x\n"))),
              HasSubstr("\"ouput\""));
  EXPECT_THAT(complaint_about(only_block(block("<!-- not run -->\n", "", "x\n"))),
              HasSubstr("says nothing"));
  EXPECT_EQ(complaint_about(only_block(block("<!-- not run: a form -->\n", "", "x\n"))), "");
  for (const char* language : {"sh", "console", "cpp", "json", "toml"}) {
    EXPECT_EQ(complaint_about(only_block(block("", language, "x\n"))), "") << language;
  }
}

TEST(Shown, IsComparedLineByLine) {
  EXPECT_EQ(difference({"a", "b"}, {"a", "b"}), "");
  EXPECT_THAT(difference({"a", "b"}, {"a", "c"}), AllOf(HasSubstr("  b"), HasSubstr("  c")));
  EXPECT_THAT(difference({"a", "b"}, {"a"}), HasSubstr("  b"));
  EXPECT_THAT(difference({"a"}, {"a", "b"}), HasSubstr("  b"));
  EXPECT_NE(difference({"12 parts"}, {"13 parts"}), "");
}

TEST(Shown, LeavesOutWhatDotsStandFor) {
  EXPECT_EQ(difference({"a … b", "…", "z"}, {"a 1 b", "c", "d", "z"}), "");
  EXPECT_EQ(difference({"a", "  …"}, {"a", "c", "d"}), "");
  EXPECT_NE(difference({"a …"}, {"b 1"}), "");
  EXPECT_NE(difference({"a … b"}, {"a 1 c"}), "");
  EXPECT_NE(difference({"…", "z"}, {"a", "b"}), "");
}

TEST(Shown, MayHaveOtherTimes) {
  EXPECT_EQ(difference({"at 2007-01-05T10:11:12.250+0100 [4711] ENTER"},
                       {"at 2026-11-21T20:00:00.001+0000 [12] ENTER"}),
            "");
  EXPECT_EQ(difference({"is here (3 ms)"}, {"is here (0.410 ms)"}), "");
}

TEST(Following, StopsAtTheFirstCommandThatFails) {
  EXPECT_THAT(complaints_of(block("", "sh", "true\nfalse\necho on\n")),
              ElementsAre(AllOf(HasSubstr("page.md:2: ends with 1"), Not(HasSubstr("\non")))));
}

TEST(Following, KeepsFolderFilesAndVariablesFromBlockToBlock) {
  EXPECT_THAT(complaints_of(block("", "sh", "mkdir a\ncd a\nexport X=7\n") +
                            block("<!-- write: f.txt -->\n", "text", "seven\n") +
                            block("", "console", "$ cat f.txt; echo $X; pwd\nseven\n7\n~/a\n")),
              IsEmpty());
}

TEST(Following, ComparesWhatIsShownAfterACommand) {
  const std::string typed = block("", "sh", "echo one\n");
  EXPECT_THAT(complaints_of(typed + block("<!-- output -->\n", "", "one\n")), IsEmpty());
  EXPECT_THAT(complaints_of(typed + block("<!-- output -->\n", "", "two\n")),
              ElementsAre(HasSubstr("two")));
  EXPECT_THAT(complaints_of(block("", "console", "$ echo one\ntwo\n")),
              ElementsAre(HasSubstr("two")));
}

TEST(Following, TypesWhatGoesOnBehindASecondPrompt) {
  EXPECT_THAT(complaints_of(block("", "console", "$ cat <<END\n> a\n> b\n> END\na\nb\n")),
              IsEmpty());
  EXPECT_THAT(complaints_of(block("", "console", "$ echo a \\\n    b; echo '> c'\na b\n> c\n")),
              IsEmpty());
}

TEST(Following, StartsTheSandboxAndGoesOnWhenItListens) {
  EXPECT_THAT(
      complaints_of(
          block("", "sh", "bvsandbox --port 8080\n") +
          block(
              "<!-- output -->\n", "json",
              R"({"ready":true,"port":8080,"soap":"http://127.0.0.1:8080/soap","dal":"http://127.0.0.1:8080/dal"})"
              "\n") +
          block("", "sh",
                "bvconn call BVHeartBeatConnector.sendHeartBeat aSessionID=S"
                " aServerURL=http://127.0.0.1:8080/soap\n") +
          block("", "console",
                "$ bvconn call BVHeartBeatConnector.sendHeartBeat aSessionID=S"
                " aServerURL=http://127.0.0.1:8081/soap; echo $?\n…\n5\n")),
      IsEmpty());
}

TEST(Following, LeavesOutWhatNeedsAProgramThatIsNotHere) {
  const std::string page = block("<!-- given: needs no-such-program -->\n", "sh", "false\n") +
                           block("<!-- output -->\n", "", "anything\n");
  const PageRun run = follow(blocks_of(page, "page.md"));
  EXPECT_THAT(run.complaints, IsEmpty());
  EXPECT_THAT(run.missing, ElementsAre("page.md:3"));
}

TEST(Following, ParsesDataAndComparesFiles) {
  EXPECT_THAT(complaints_of(block("", "json", "{\"a\":1}\n{\"a\":2}\n")), IsEmpty());
  EXPECT_THAT(complaints_of(block("", "json", "{\"a\":1\n")), ElementsAre(HasSubstr("no JSON")));
  EXPECT_THAT(complaints_of(block("", "toml", "[a]\nb = 1\n")), IsEmpty());
  EXPECT_THAT(complaints_of(block("", "toml", "[a\n")), ElementsAre(HasSubstr("no TOML")));
  EXPECT_THAT(complaints_of(block("<!-- shows: .clang-format -->\n", "", "x\n")),
              ElementsAre(HasSubstr("is not .clang-format")));
  EXPECT_THAT(complaints_of(block("<!-- part of: .gitignore -->\n", "", "/build/\n")), IsEmpty());
  EXPECT_THAT(complaints_of(block("<!-- part of: .gitignore -->\n", "", "build/\n")),
              ElementsAre(HasSubstr("do not stand")));
}

TEST(Fragments, AreFunctionsWithTheLinesOfTheirPage) {
  Block first =
      only_block("<!-- given: int a; -->\n" + block("", "cpp", "#include <map>\na = 1;\n"));
  EXPECT_EQ(source_of({first}),
            "#include \"docs/given.h\"\n#include <map>\nvoid page_md_3() {\nint a;\n"
            "{\n#line 3 \"page.md\"\n\na = 1;\n}\n}\n");
}

}  // namespace
}  // namespace bvconn::test

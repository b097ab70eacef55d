#include "tree/text_rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace bvconn::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

// The violations planted here are put together from pieces, so that this file is free of them.

TEST(CheckBlanks, TakesACleanFile) {
  EXPECT_THAT(check_blanks({"a.md", "one\n\ntwo\n"}), IsEmpty());
  EXPECT_THAT(check_blanks({"a.md", ""}), IsEmpty());
}

TEST(CheckBlanks, ComplainsOfBlanksTabsAndCarriageReturns) {
  EXPECT_THAT(check_blanks({"a.md", "one\ntwo \n"}), ElementsAre(StartsWith("a.md:2: blank")));
  EXPECT_THAT(check_blanks({"a.md", "\tone\n"}), ElementsAre(StartsWith("a.md:1: tab")));
  EXPECT_THAT(check_blanks({"a.md", "one\r\n"}), ElementsAre(HasSubstr("use LF alone")));
}

TEST(CheckBlanks, WantsOneLineFeedAtTheEnd) {
  EXPECT_THAT(check_blanks({"a.md", "one"}), ElementsAre(HasSubstr("one line feed")));
  EXPECT_THAT(check_blanks({"a.md", "one\n\n"}), ElementsAre(HasSubstr("one line feed")));
}

TEST(CheckWidth, CountsCharactersUpTo100) {
  std::string umlauts = "// ";
  for (int i = 0; i < 97; ++i) umlauts += "\xC3\xA4";
  EXPECT_THAT(check_width({"a.cpp", umlauts + "\n"}), IsEmpty());
  EXPECT_THAT(check_width({"a.cpp", "\n" + umlauts + "x\n"}), ElementsAre(StartsWith("a.cpp:2: ")));
}

TEST(CheckWidth, LeavesTablesAloneThatAreLaidOutByHand) {
  const std::string wide(101, 'x');
  EXPECT_THAT(check_width({"a.cpp", "// clang-format off\n" + wide + "\n// clang-format on\n" +
                                        wide + "\n"}),
              ElementsAre(StartsWith("a.cpp:4: ")));
}

TEST(CheckWidth, LeavesRawStringsWhole) {
  const std::string line = "  expect(R\"(" + std::string(100, 'x') + ")\");\n";
  EXPECT_THAT(check_width({"a.cpp", line}), IsEmpty());
}

TEST(CheckWidth, LeavesProseAlone) {
  EXPECT_THAT(check_width({"README.md", std::string(150, 'x') + "\n"}), IsEmpty());
}

TEST(CheckLength, TakesUpTo350Lines) {
  EXPECT_THAT(check_length({"bvconn/core/a.cpp", std::string(350, '\n')}), IsEmpty());
  for (const char* path : {"bvconn/core/a.cpp", "tools/bvconn/a.h", "sandbox/a.cpp"}) {
    EXPECT_THAT(check_length({path, std::string(351, '\n')}),
                ElementsAre(HasSubstr("351 lines, more than 350")));
  }
}

TEST(CheckLength, LeavesDataTestsAndProseAlone) {
  for (const char* path : {"bvconn/catalogues/a_rows.inc", "sandbox/store/a_seed.cpp",
                           "tests/core/a.cpp", "sandbox/README.md"}) {
    EXPECT_THAT(check_length({path, std::string(900, '\n')}), IsEmpty());
  }
}

TEST(CheckGuard, WantsAPragmaInHeadersOnly) {
  EXPECT_THAT(check_guard({"a.h", "#pragma once\n\nint a();\n"}), IsEmpty());
  EXPECT_THAT(check_guard({"a.cpp", "int a();\n"}), IsEmpty());
  EXPECT_THAT(check_guard({"a.h", "int a();\n"}), ElementsAre(HasSubstr("#pragma once")));
  EXPECT_THAT(check_guard({"a.h", "// #pragma once\nint a();\n"}),
              ElementsAre(StartsWith("a.h: no guard")));
}

TEST(CheckOwners, WantsANameBehindANote) {
  const std::string note =
      "// TO"
      "DO";
  EXPECT_THAT(check_owners({"a.h", note + "(Ada): measure it\n"}), IsEmpty());
  EXPECT_THAT(check_owners({"a.h", "\n" + note + ": measure it\n"}),
              ElementsAre(StartsWith("a.h:2: a note without an owner")));
  EXPECT_THAT(check_owners({"a.h", note + "() measure it\n"}), ElementsAre(HasSubstr("a.h:1: ")));
  EXPECT_THAT(check_owners({"a.h",
                            "// FIX"
                            "ME\n"}),
              ElementsAre(HasSubstr("a.h:1: ")));
}

TEST(CheckReferences, ComplainsOfWhatTheReaderDoesNotHave) {
  for (const std::string line : {"as the spe"
                                 "c says",
                                 "the Spe"
                                 "cification",
                                 "see Part"
                                 " 4.5",
                                 "for issue"
                                 " #12",
                                 "ticket"
                                 " 7",
                                 "cd /home"
                                 "/ada/src",
                                 "(/work"
                                 "/x)"}) {
    EXPECT_THAT(check_references({"a.md", "fine\n" + line + "\n"}),
                ElementsAre(StartsWith("a.md:2: ")))
        << line;
  }
}

TEST(CheckReferences, LeavesWordsOfTheTradeAlone) {
  EXPECT_THAT(check_references({"a.md",
                                "SpecGID and SpecReg, a part of 4.5, \"Part 7\" of a kit, the "
                                "tissue 3\nsrc/home/a, ~/wo"
                                "rk/b, /etc/bvconn\n"}),
              IsEmpty());
}

TEST(CheckTests, ComplainsOfTestsThatCannotFail) {
  const auto complaints = [](const std::string& line) {
    return check_tests({"tests/core/a_test.cpp", line + "\n"});
  };
  EXPECT_THAT(complaints("TEST(Core, DIS"
                         "ABLED_Works) {"),
              ElementsAre(HasSubstr("switched off")));
  EXPECT_THAT(complaints("  SUC"
                         "CEED();"),
              ElementsAre(HasSubstr("passes whatever happens")));
  EXPECT_THAT(complaints("EXPECT_TRUE("
                         "true);"),
              ElementsAre(HasSubstr("can be wrong")));
  EXPECT_THAT(complaints("EXPECT_TRUE(truth);"), IsEmpty());
}

}  // namespace
}  // namespace bvconn::test

#include "wire_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace bvconn::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(WireFile, WhatIsGivenBelongsToTheCallThatFollows) {
  const WireFile file = read_wire_file(
      "claim: first\n"
      "given: UseDALSave\n"
      "call: C.one {}\n"
      "given:\n"
      "  UsingTorvexDAL\n"
      "  mask 4\n"
      "call: C.two {}\n"
      "claim: second\n"
      "call: C.three {}\n");
  EXPECT_THAT(file.problems, IsEmpty());
  ASSERT_EQ(file.cases.size(), 2U);
  ASSERT_EQ(file.cases[0].steps.size(), 2U);
  EXPECT_THAT(file.cases[0].steps[0].given, ElementsAre("UseDALSave"));
  EXPECT_THAT(file.cases[0].steps[1].given, ElementsAre("UsingTorvexDAL", "mask 4"));
  EXPECT_THAT(file.cases[1].steps[0].given, IsEmpty());
}

TEST(WireFile, WhatIsGivenToNoCallIsAProblem) {
  EXPECT_THAT(read_wire_file("claim: a\ncall: C.one {}\ngiven: UseDALSave\n").problems,
              ElementsAre(HasSubstr("no call follows")));
  EXPECT_THAT(read_wire_file("claim: a\ngiven: UseDALSave\nclaim: b\ncall: C.one {}\n").problems,
              ElementsAre(HasSubstr("no call follows")));
}

TEST(WireFile, LinesOfARequestAreJoinedAndLinesOfALogAreNot) {
  const WireFile file = read_wire_file(
      "claim: a\n"
      "call: C.one\n"
      "  {\"x\":\n"
      "  1}\n"
      "request:\n"
      "  <a>\n"
      "  </a>\n"
      "log:\n"
      "  first\n"
      "  second\n"
      "logfile: third\n");
  EXPECT_THAT(file.problems, IsEmpty());
  ASSERT_EQ(file.cases.size(), 1U);
  const WireStep& step = file.cases[0].steps.at(0);
  EXPECT_EQ(step.member, "C.one");
  EXPECT_EQ(step.arguments, "{\"x\":1}");
  EXPECT_EQ(step.request, "<a></a>");
  EXPECT_THAT(step.log, ElementsAre("first", "second"));
  EXPECT_THAT(step.log_file, ElementsAre("third"));
}

TEST(WireFile, AKeyWithoutAValueIsAnEmptyTextAndOneThatIsLeftOutIsNone) {
  const WireFile file = read_wire_file("claim: a\ncall: C.one {}\nreply:\n");
  ASSERT_EQ(file.cases.size(), 1U);
  EXPECT_EQ(file.cases[0].steps.at(0).reply, "");
  EXPECT_EQ(file.cases[0].steps.at(0).fault, std::nullopt);
}

TEST(WireFile, UnknownKeysAndEmptyFilesAreProblems) {
  EXPECT_THAT(read_wire_file("").problems, ElementsAre(HasSubstr("no case")));
  EXPECT_THAT(read_wire_file("claim: a\ncall: C.one {}\nanswers: x\n").problems,
              ElementsAre(HasSubstr("line 3: there is no key \"answers\"")));
}

}  // namespace
}  // namespace bvconn::test

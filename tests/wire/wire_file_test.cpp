#include "sandbox/wire/wire_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace bvconn::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using wire::read_wire_file;
using wire::WireFile;
using wire::WireStep;

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

TEST(WireFile, TheHeadTellsWhatTheLawsHaveToKnow) {
  const WireFile file = read_wire_file(
      "tail: plain C.one\n"
      "returns: text\n"
      "disabled by: urn:S.one\n"
      "not:\n"
      "  fault: it has none\n"
      "  empty texts: it takes none\n"
      "claim: a\n"
      "call: C.one {}\n");
  EXPECT_THAT(file.problems, IsEmpty());
  EXPECT_EQ(file.tail, "plain C.one");
  EXPECT_TRUE(file.returns_text);
  EXPECT_EQ(file.disabled_by, "urn:S.one");
  EXPECT_THAT(file.exceptions, ElementsAre("fault: it has none", "empty texts: it takes none"));
}

TEST(WireFile, TheHeadHoldsItsOwnKeysAlone) {
  EXPECT_THAT(read_wire_file("call: C.one {}\nclaim: a\ncall: C.one {}\n").problems,
              ElementsAre(HasSubstr("a claim comes before \"call\"")));
  EXPECT_THAT(read_wire_file("returns: node\nclaim: a\ncall: C.one {}\n").problems,
              ElementsAre(HasSubstr("nothing is known of \"node\"")));
  EXPECT_THAT(read_wire_file("claim: a\ncall: C.one {}\ntail: bare\n").problems,
              ElementsAre(HasSubstr("there is no key \"tail\" here")));
}

TEST(WireFile, UnknownKeysAndEmptyFilesAreProblems) {
  EXPECT_THAT(read_wire_file("").problems, ElementsAre(HasSubstr("no case")));
  EXPECT_THAT(read_wire_file("claim: a\ncall: C.one {}\nanswers: x\n").problems,
              ElementsAre(HasSubstr("line 3: there is no key \"answers\"")));
}

}  // namespace
}  // namespace bvconn::test

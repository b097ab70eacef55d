#include "foreign/call_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace bvconn::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(CallFile, TellsCasesCallsAndWhatHoldsForEachStack) {
  const CallFile file = read_call_file(
      "# words\n"
      "claim: first\n"
      "without gsoap: it cannot\n"
      "call: A.b {\"x\":\n"
      "  1}\n"
      "seen: {}\n"
      "seen perl: nothing\n"
      "answer: {\"result\":\n"
      "  2}\n"
      "\n"
      "claim: second\n"
      "call: A.c\n"
      "seen: {}\n"
      "answer: {}\n"
      "call: A.d\n"
      "seen: {}\n"
      "answer: {}\n");
  EXPECT_THAT(file.problems, IsEmpty());
  ASSERT_EQ(file.cases.size(), 2U);
  EXPECT_EQ(file.cases[0].claim, "first");
  EXPECT_EQ(file.cases[0].without.at("gsoap"), "it cannot");
  const ForeignCall& call = file.cases[0].calls.at(0);
  EXPECT_EQ(call.line, 4);
  EXPECT_EQ(call.member, "A.b");
  EXPECT_EQ(call.arguments, "{\"x\":1}");
  EXPECT_EQ(for_stack(call.seen, "php"), "{}");
  EXPECT_EQ(for_stack(call.seen, "perl"), "nothing");
  EXPECT_EQ(for_stack(call.answer, "perl"), "{\"result\":2}");
  EXPECT_EQ(file.cases[1].calls.size(), 2U);
}

TEST(CallFile, NamesEachSlipWithItsLine) {
  EXPECT_THAT(read_call_file("claim: a\ncall: A.b\nseen: {}\n").problems,
              ElementsAre("line 3: the call that ends here states too little for php",
                          "line 3: the call that ends here states too little for perl",
                          "line 3: the call that ends here states too little for gsoap"));
  EXPECT_THAT(read_call_file("claim: a\nwithout php: no\nwithout perl: no\ncall: A.b\n"
                             "seen gsoap: {}\nclaim: b\n")
                  .problems,
              ElementsAre("line 6: the call that ends here states too little for gsoap",
                          "line 6: the case that ends here calls nothing"));
  EXPECT_THAT(read_call_file("seen: {}\n").problems,
              ElementsAre("line 1: there is no key \"seen\" here", "line 1: there is no case"));
  EXPECT_THAT(read_call_file("claim: a\nwithout: no\nseen java: {}\ncall: A.b\nwords: x\n"
                             "seen: {}\nanswer: {}\n")
                  .problems,
              ElementsAre("line 2: there is no key \"without\" here",
                          "line 3: there is no key \"seen java\" here",
                          "line 5: there is no key \"words\" here"));
}

}  // namespace
}  // namespace bvconn::test

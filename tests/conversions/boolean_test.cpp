#include "bvconn/platform/conversions/conversions.h"
#include "support/error_of.h"

namespace bvconn::conversions {
namespace {

using test::error_of;

TEST(TextToBoolean, TheTwoWordsConvertInAnyCase) {
  EXPECT_TRUE(text_to_boolean("True"));
  EXPECT_TRUE(text_to_boolean("true"));
  EXPECT_TRUE(text_to_boolean("tRUE"));
  EXPECT_FALSE(text_to_boolean("False"));
  EXPECT_FALSE(text_to_boolean("FALSE"));
}

TEST(TextToBoolean, OnlyZeroIsFalseAmongNumbers) {
  EXPECT_FALSE(text_to_boolean("0"));
  EXPECT_FALSE(text_to_boolean("-0.00"));
  EXPECT_FALSE(text_to_boolean("0e9"));
  EXPECT_TRUE(text_to_boolean("1"));
  EXPECT_TRUE(text_to_boolean("-1"));
  EXPECT_TRUE(text_to_boolean("0.001"));
}

TEST(TextToBoolean, BlanksAroundWordOrNumberDoNotMatter) {
  EXPECT_TRUE(text_to_boolean(" \ttrue\r\n"));
  EXPECT_FALSE(text_to_boolean("\n 0 "));
}

TEST(TextToBoolean, AnyOtherTextIsATypeMismatch) {
  for (const char* text : {"", " ", "yes", "no", "T", "Truely", "tr ue", "1 0", "#TRUE#", "INF"}) {
    const Error error = error_of([&] { text_to_boolean(text); });
    EXPECT_EQ(error.number, 13) << text;
    EXPECT_EQ(error.source, "BVConn") << text;
  }
}

TEST(TextToBoolean, TheDescriptionShowsTheText) {
  const Error error = error_of([] { text_to_boolean("maybe\n"); });
  EXPECT_EQ(error.description, "The text \"maybe\\n\" is no boolean");
}

TEST(TextToBoolean, ANumberBeyondAFloatOverflows) {
  EXPECT_EQ(error_of([] { text_to_boolean("1e400"); }).number, 6);
}

TEST(BooleanText, IsTrueOrFalseWithACapital) {
  EXPECT_EQ(boolean_text(true), "True");
  EXPECT_EQ(boolean_text(false), "False");
}

}  // namespace
}  // namespace bvconn::conversions

#include <cfenv>
#include <cmath>
#include <limits>

#include "bvconn/platform/conversions/conversions.h"
#include "support/error_of.h"

namespace bvconn::conversions {
namespace {

using test::error_of;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(TextToDouble, ReadsSignPointAndExponent) {
  EXPECT_EQ(text_to_double("12"), 12.0);
  EXPECT_EQ(text_to_double("+1234.5"), 1234.5);
  EXPECT_EQ(text_to_double("-.5"), -0.5);
  EXPECT_EQ(text_to_double("5."), 5.0);
  EXPECT_EQ(text_to_double("1e3"), 1000.0);
  EXPECT_EQ(text_to_double("1.0E+300"), 1e300);
  EXPECT_EQ(text_to_double("25E-2"), 0.25);
  EXPECT_EQ(text_to_double(" \t7\r\n"), 7.0);
  EXPECT_EQ(text_to_double("000000000000000000000000000000000000000000007"), 7.0);
}

TEST(TextToDouble, ReadsTheThreeWordsOfXmlSchema) {
  EXPECT_EQ(text_to_double("INF"), kInfinity);
  EXPECT_EQ(text_to_double("-INF"), -kInfinity);
  EXPECT_TRUE(std::isnan(text_to_double("NaN")));
}

TEST(TextToDouble, RefusesWhatIsNoDecimalNumber) {
  for (const char* text : {"",
                           "   ",
                           ".",
                           "+",
                           "-",
                           "e5",
                           "1e",
                           "1e+",
                           "1,234",
                           "1 234",
                           "0x10",
                           "&H10",
                           "--1",
                           "1.2.3",
                           "1.5f",
                           "12a",
                           "(5)",
                           "$5",
                           "inf",
                           "nan",
                           "1e5.5",
                           "\xC2\xA0"
                           "5"}) {
    EXPECT_EQ(error_of([&] { text_to_double(text); }).number, 13) << text;
  }
}

TEST(TextToDouble, ANulByteEndsNothing) {
  EXPECT_EQ(error_of([] { text_to_double(std::string_view("5\0", 2)); }).number, 13);
}

TEST(TextToDouble, TooLargeOverflowsAndTooSmallIsZero) {
  EXPECT_EQ(error_of([] { text_to_double("1e309"); }).number, 6);
  EXPECT_EQ(error_of([] { text_to_double("-1e309"); }).number, 6);
  EXPECT_EQ(error_of([] { text_to_double("1e99999999999999999999999999"); }).number, 6);
  EXPECT_EQ(text_to_double("1e-999"), 0.0);
  EXPECT_EQ(text_to_double("1e-99999999999999999999999999"), 0.0);
  EXPECT_EQ(text_to_double("0e99999999999999999999999999"), 0.0);
}

TEST(TextToDouble, DigitsAndExponentAreWeighedTogether) {
  EXPECT_EQ(text_to_double("0." + std::string(400, '0') + "25e400"), 0.25);
  EXPECT_EQ(text_to_double("25" + std::string(400, '0') + "e-401"), 2.5);
}

TEST(TextToDouble, KeepsTheSignOfZero) {
  EXPECT_TRUE(std::signbit(text_to_double("-0")));
  EXPECT_FALSE(std::signbit(text_to_double("0")));
}

TEST(TextToInt16, RoundsHalvesToTheEvenNumber) {
  EXPECT_EQ(text_to_int16("0.5"), 0);
  EXPECT_EQ(text_to_int16("1.5"), 2);
  EXPECT_EQ(text_to_int16("2.5"), 2);
  EXPECT_EQ(text_to_int16("-0.5"), 0);
  EXPECT_EQ(text_to_int16("-1.5"), -2);
  EXPECT_EQ(text_to_int16("-2.5"), -2);
  EXPECT_EQ(text_to_int16("2.51"), 3);
  EXPECT_EQ(text_to_int16("007"), 7);
}

TEST(TextToInt16, OverflowsBeyondItsRangeAfterRounding) {
  EXPECT_EQ(text_to_int16("32767"), 32767);
  EXPECT_EQ(text_to_int16("32767.49"), 32767);
  EXPECT_EQ(text_to_int16("-32768.5"), -32768);
  EXPECT_EQ(error_of([] { text_to_int16("32767.5"); }).number, 6);
  EXPECT_EQ(error_of([] { text_to_int16("32768"); }).number, 6);
  EXPECT_EQ(error_of([] { text_to_int16("-32769"); }).number, 6);
  EXPECT_EQ(error_of([] { text_to_int16("1e400"); }).number, 6);
}

TEST(TextToInt16, TextThatIsNoNumberIsATypeMismatch) {
  EXPECT_EQ(error_of([] { text_to_int16(""); }).number, 13);
  EXPECT_EQ(error_of([] { text_to_int16("A12"); }).number, 13);
  EXPECT_EQ(error_of([] { text_to_int16("True"); }).number, 13);
  EXPECT_EQ(error_of([] { text_to_int16("INF"); }).number, 13);
}

TEST(TextToInt32, HoldsItsWholeRange) {
  EXPECT_EQ(text_to_int32("2147483647"), 2147483647);
  EXPECT_EQ(text_to_int32("-2147483648"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(text_to_int32("2147483646.5"), 2147483646);
  EXPECT_EQ(text_to_int32("1e3"), 1000);
  EXPECT_EQ(error_of([] { text_to_int32("2147483647.5"); }).number, 6);
  EXPECT_EQ(error_of([] { text_to_int32("-2147483649"); }).number, 6);
}

TEST(TextToInt32, TheErrorsSayWhatFailed) {
  const Error overflow = error_of([] { text_to_int32("2147483648"); });
  EXPECT_EQ(overflow.source, "BVConn");
  EXPECT_EQ(overflow.description,
            "The number \"2147483648\" is beyond the range of a 32-bit integer");
  const Error mismatch = error_of([] { text_to_int32("x1"); });
  EXPECT_EQ(mismatch.source, "BVConn");
  EXPECT_EQ(mismatch.description, "The text \"x1\" is no 32-bit integer");
}

TEST(NumberOf, IsNothingForTextThatIsNotNumeric) {
  EXPECT_EQ(number_of("10041"), 10041.0);
  EXPECT_EQ(number_of(" -1e2 "), -100.0);
  EXPECT_EQ(number_of(""), std::nullopt);
  EXPECT_EQ(number_of("Client.10041"), std::nullopt);
  EXPECT_EQ(number_of("1e400"), std::nullopt);
  EXPECT_EQ(number_of("NaN"), std::nullopt);
}

TEST(DoubleToInteger, RoundsHalvesToTheEvenNumber) {
  EXPECT_EQ(double_to_int32(0.5), 0);
  EXPECT_EQ(double_to_int32(1.5), 2);
  EXPECT_EQ(double_to_int32(-2.5), -2);
  EXPECT_EQ(double_to_int32(45296.5), 45296);
  EXPECT_EQ(double_to_int32(45297.5), 45298);
  EXPECT_EQ(double_to_int16(-3.5), -4);
}

TEST(DoubleToInteger, DoesNotDependOnTheHostsRoundingMode) {
  std::fesetround(FE_UPWARD);
  const std::int32_t upward = double_to_int32(2.25);
  std::fesetround(FE_TONEAREST);
  EXPECT_EQ(upward, 2);
}

TEST(DoubleToInteger, OverflowsForWhatNoIntegerHolds) {
  EXPECT_EQ(error_of([] { double_to_int16(32768); }).number, 6);
  EXPECT_EQ(error_of([] { double_to_int32(2147483648.0); }).number, 6);
  EXPECT_EQ(error_of([] { double_to_int32(std::nan("")); }).number, 6);
  EXPECT_EQ(error_of([] { double_to_int32(kInfinity); }).number, 6);
  EXPECT_EQ(error_of([] { double_to_int32(-kInfinity); }).number, 6);
  EXPECT_EQ(double_to_int32(-2147483648.0), std::numeric_limits<std::int32_t>::min());
}

TEST(RoundHalfEven, PutsHalvesToTheEvenDigit) {
  EXPECT_EQ(round_half_even(0.125, 2), 0.12);
  EXPECT_EQ(round_half_even(0.375, 2), 0.38);
  EXPECT_EQ(round_half_even(-0.125, 2), -0.12);
  EXPECT_EQ(round_half_even(2.5, 0), 2.0);
  EXPECT_EQ(round_half_even(3.5, 0), 4.0);
  EXPECT_EQ(round_half_even(0.126, 2), 0.13);
  EXPECT_EQ(round_half_even(0.1251, 2), 0.13);
  EXPECT_EQ(round_half_even(-0.4, 2), -0.4);
  EXPECT_EQ(round_half_even(9.999, 2), 10.0);
  EXPECT_EQ(round_half_even(0.996, 2), 1.0);
}

TEST(RoundHalfEven, TakesAHalfAsTheShortestTextShowsIt) {
  EXPECT_EQ(round_half_even(2.675, 2), 2.68);
  EXPECT_EQ(round_half_even(1.005, 2), 1.0);
}

TEST(RoundHalfEven, LeavesWhatHasNoSuchPlaces) {
  EXPECT_EQ(round_half_even(1e300, 2), 1e300);
  EXPECT_EQ(round_half_even(1e-300, 2), 0.0);
  EXPECT_EQ(round_half_even(0.0, 2), 0.0);
  EXPECT_EQ(round_half_even(kInfinity, 2), kInfinity);
  EXPECT_TRUE(std::isnan(round_half_even(std::nan(""), 2)));
}

TEST(NumberText, IsPlainFromOneTenThousandthUpToBelow1e15) {
  struct Case {
    double value;
    const char* text;
  };
  for (const Case& each : {Case{0.1, "0.1"},
                           {-1234.5, "-1234.5"},
                           {7, "7"},
                           {0.25, "0.25"},
                           {100000, "100000"},
                           {4500000000, "4500000000"},
                           {-4500000000, "-4500000000"},
                           {1e14, "100000000000000"},
                           {999999999999999, "999999999999999"},
                           {999999999999999.9, "999999999999999.9"},
                           {1e15, "1E+15"},
                           {-1e15, "-1E+15"},
                           {1.5e15, "1.5E+15"},
                           {1234567890123456, "1.234567890123456E+15"},
                           {1e99, "1E+99"},
                           {1e100, "1E+100"},
                           {1.7976931348623157e308, "1.7976931348623157E+308"},
                           {0.0001, "0.0001"},
                           {-0.0001, "-0.0001"},
                           {0.00012345, "0.00012345"},
                           {0.00009999, "9.999E-05"},
                           {-0.00001, "-1E-05"},
                           {0.0000000025, "2.5E-09"},
                           {1e-10, "1E-10"},
                           {5e-324, "5E-324"},
                           {0.0, "0"},
                           {-0.0, "0"}}) {
    EXPECT_EQ(double_text(each.value), each.text);
  }
}

TEST(NumberText, OfA32BitFloatHasThatFloatsDigits) {
  struct Case {
    float value;
    const char* text;
  };
  for (const Case& each : {Case{0.1F, "0.1"},
                           {-86399.5F, "-86399.5"},
                           {0.0078125F, "0.0078125"},
                           {16777216.0F, "16777216"},
                           {123456792.0F, "123456790"},
                           {999999900000000.0F, "999999900000000"},
                           {1e15F, "1E+15"},
                           {3.4028235e38F, "3.4028235E+38"},
                           {0.0001F, "0.0001"},
                           {0.00009999F, "9.999E-05"},
                           {0.00001F, "1E-05"},
                           {1e-45F, "1E-45"},
                           {0.0F, "0"},
                           {-0.0F, "0"}}) {
    EXPECT_EQ(float_text(each.value), each.text);
  }
}

TEST(NumberText, OfAnIntegerHasAllItsDigits) {
  EXPECT_EQ(integer_text(0), "0");
  EXPECT_EQ(integer_text(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(NumberText, OfARoundedTimeIsNeverMinusZero) {
  EXPECT_EQ(double_text(round_half_even(-0.004, 2)), "0");
  EXPECT_EQ(double_text(round_half_even(-0.006, 2)), "-0.01");
  EXPECT_EQ(format_number(-0.004, "0.00"), "0.00");
}

TEST(NumberText, WritesInfinitiesAsTheyAreRead) {
  EXPECT_EQ(double_text(kInfinity), "INF");
  EXPECT_EQ(double_text(-kInfinity), "-INF");
  EXPECT_EQ(double_text(std::nan("")), "NaN");
  EXPECT_EQ(float_text(std::numeric_limits<float>::infinity()), "INF");
  EXPECT_EQ(float_text(-std::numeric_limits<float>::infinity()), "-INF");
  EXPECT_EQ(float_text(std::nanf("")), "NaN");
}

TEST(NumberText, ReadsBackAsTheSameNumber) {
  for (const double value : {0.1, 1.0 / 3.0, 1e22, 5e-324, 1.7976931348623157e308, -123456.789}) {
    EXPECT_EQ(text_to_double(double_text(value)), value);
  }
}

}  // namespace
}  // namespace bvconn::conversions

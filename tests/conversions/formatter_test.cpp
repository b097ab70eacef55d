#include <gtest/gtest.h>

#include <cmath>

#include "bvconn/platform/conversions/conversions.h"

namespace bvconn::conversions {
namespace {

TEST(FormatText, ThreeZerosFillAWholeNumberToThreeDigits) {
  EXPECT_EQ(format_text("7", "000"), "007");
  EXPECT_EQ(format_text("42", "000"), "042");
  EXPECT_EQ(format_text("012", "000"), "012");
  EXPECT_EQ(format_text("1234", "000"), "1234");
  EXPECT_EQ(format_text("0", "000"), "000");
  EXPECT_EQ(format_text(" 7 ", "000"), "007");
  EXPECT_EQ(format_text("1e3", "000"), "1000");
  EXPECT_EQ(format_text("-5", "000"), "-005");
}

TEST(FormatText, ThreeZerosRoundHalvesAwayFromZero) {
  EXPECT_EQ(format_text("12.4", "000"), "012");
  EXPECT_EQ(format_text("12.5", "000"), "013");
  EXPECT_EQ(format_text("13.5", "000"), "014");
  EXPECT_EQ(format_text("-12.5", "000"), "-013");
  EXPECT_EQ(format_text("999.5", "000"), "1000");
  EXPECT_EQ(format_text("0.05", "000"), "000");
  EXPECT_EQ(format_text("-0.4", "000"), "000");
}

TEST(FormatText, EveryDigitOfALargeNumberIsKept) {
  EXPECT_EQ(format_text("12345678901234567890123", "000"), "12345678901234567890123");
  EXPECT_EQ(format_text("1e20", "000"), "100000000000000000000");
  EXPECT_EQ(format_text("1e308", "000"), "1" + std::string(308, '0'));
}

TEST(FormatText, TextThatIsNoNumberPassesThreeZerosUnchanged) {
  for (const char* text : {"", " ", "AB", "12A", "1,234", "1/5/2007", "1e999999999", "INF"}) {
    EXPECT_EQ(format_text(text, "000"), text);
  }
}

TEST(FormatText, TwoDecimalsAreAlwaysWritten) {
  EXPECT_EQ(format_text("3", "0.00"), "3.00");
  EXPECT_EQ(format_text(".5", "0.00"), "0.50");
  EXPECT_EQ(format_text("0.125", "0.00"), "0.13");
  EXPECT_EQ(format_text("-0.001", "0.00"), "0.00");
  EXPECT_EQ(format_text("-12.345", "0.00"), "-12.35");
  EXPECT_EQ(format_text("n/a", "0.00"), "n/a");
}

TEST(FormatText, DatesAreWrittenMonthFirstWithLeadingZeros) {
  EXPECT_EQ(format_text("1/5/2007", "mm/dd/yyyy"), "01/05/2007");
  EXPECT_EQ(format_text("2007-11-25T10:00:00", "mm/dd/yyyy"), "11/25/2007");
  EXPECT_EQ(format_text("January 5, 2007 3:04 PM", "mm/dd/yyyy"), "01/05/2007");
  EXPECT_EQ(format_text("1/5/321", "mm/dd/yyyy"), "01/05/0321");
}

TEST(FormatText, TheShortDatePatternHasNoLeadingZeros) {
  EXPECT_EQ(format_text("2007-01-05", "m/d/yyyy"), "1/5/2007");
  EXPECT_EQ(format_text("2010-12-31", "m/d/YYYY"), "12/31/2010");
  EXPECT_EQ(format_text("03/01/2011", "m/d/yyyy"), "3/1/2011");
}

TEST(FormatText, ABareNumberIsASerialDay) {
  EXPECT_EQ(format_text("39087", "mm/dd/yyyy"), "01/05/2007");
  EXPECT_EQ(format_text("39087.75", "m/d/yyyy"), "1/5/2007");
  EXPECT_EQ(format_text("0", "mm/dd/yyyy"), "12/30/1899");
}

TEST(FormatText, TextThatIsNeitherDateNorNumberPassesUnchanged) {
  for (const char* text : {"", " ", "tomorrow", "13/13/2007", "99999999999", "1e999"}) {
    EXPECT_EQ(format_text(text, "mm/dd/yyyy"), text);
  }
}

TEST(FormatText, AnUnknownPatternChangesNothing) {
  EXPECT_EQ(format_text("7", "##"), "7");
}

TEST(FormatNumber, WritesSecondsWithTwoDecimals) {
  EXPECT_EQ(format_number(0.25, "0.00"), "0.25");
  EXPECT_EQ(format_number(static_cast<double>(0.1F), "0.00"), "0.10");
  EXPECT_EQ(format_number(-86399.0, "0.00"), "-86399.00");
  EXPECT_EQ(format_number(1.005, "0.00"), "1.01");
  EXPECT_EQ(format_number(0, "0.00"), "0.00");
}

TEST(FormatNumber, ADatePatternTakesASerialDay) {
  EXPECT_EQ(format_number(39087, "m/d/yyyy"), "1/5/2007");
  EXPECT_EQ(format_number(1e12, "m/d/yyyy"), "1000000000000");
}

TEST(FormatNumber, WhatIsNoNumberIsWrittenAsAWord) {
  EXPECT_EQ(format_number(std::nan(""), "0.00"), "NaN");
  EXPECT_EQ(format_number(-INFINITY, "000"), "-INF");
}

TEST(FormatDate, WritesBothDatePatterns) {
  const Date date = from_civil({.year = 2011, .month = 3, .day = 1, .hour = 22});
  EXPECT_EQ(format_date(date, "m/d/yyyy"), "3/1/2011");
  EXPECT_EQ(format_date(date, "mm/dd/yyyy"), "03/01/2011");
}

TEST(FormatDate, ANumberPatternTakesItsSerialDay) {
  EXPECT_EQ(format_date(from_civil({.year = 2007, .month = 1, .day = 5, .hour = 6}), "0.00"),
            "39087.25");
}

TEST(IsoDateText, HasEachFieldAtItsPlace) {
  EXPECT_EQ(iso_date_text(Date{}), "1899-12-30T00:00:00");
  EXPECT_EQ(iso_date_text(from_civil({.year = 100, .month = 1, .day = 2, .hour = 3})),
            "0100-01-02T03:00:00");
  EXPECT_EQ(iso_date_text(from_civil({.year = 9999,
                                      .month = 12,
                                      .day = 31,
                                      .hour = 23,
                                      .minute = 59,
                                      .second = 58,
                                      .millisecond = 7})),
            "9999-12-31T23:59:58.007");
  EXPECT_EQ(iso_date_text(from_civil({.year = 12345, .month = 10, .day = 11, .hour = 0})),
            "12345-10-11T00:00:00");
  EXPECT_EQ(iso_date_text(from_civil({.year = 7, .month = 10, .day = 11, .hour = 0})),
            "0007-10-11T00:00:00");
}

}  // namespace
}  // namespace bvconn::conversions

#include "bvconn/platform/conversions/conversions.h"
#include "support/error_of.h"

namespace bvconn::conversions {
namespace {

using test::error_of;

/// What a text reads as, in a form that test messages show; "none" for no date.
std::string read(std::string_view text) {
  const std::optional<Date> date = date_of(text);
  return date ? iso_date_text(*date) : "none";
}

TEST(DateOf, ReadsMonthFirst) {
  EXPECT_EQ(read("1/31/2007"), "2007-01-31T00:00:00");
  EXPECT_EQ(read("1-31-2007"), "2007-01-31T00:00:00");
  EXPECT_EQ(read("03/04/2007"), "2007-03-04T00:00:00");
  EXPECT_EQ(read(" 12/1/1999\r\n"), "1999-12-01T00:00:00");
}

TEST(DateOf, TakesADayFirstWhereTheFirstNumberIsNoMonth) {
  EXPECT_EQ(read("31/1/2007"), "2007-01-31T00:00:00");
  EXPECT_EQ(read("13-12-2007"), "2007-12-13T00:00:00");
  EXPECT_EQ(read("13/13/2007"), "none");
}

TEST(DateOf, TwoDigitYearsTurnAt30) {
  EXPECT_EQ(read("1/2/07"), "2007-01-02T00:00:00");
  EXPECT_EQ(read("1/2/29"), "2029-01-02T00:00:00");
  EXPECT_EQ(read("1/2/30"), "1930-01-02T00:00:00");
  EXPECT_EQ(read("1/2/99"), "1999-01-02T00:00:00");
  EXPECT_EQ(read("1/2/00"), "2000-01-02T00:00:00");
}

TEST(DateOf, ReadsIsoWithTimeAndPassesTheZoneOver) {
  EXPECT_EQ(read("2007-01-31"), "2007-01-31T00:00:00");
  EXPECT_EQ(read("2007-01-31T15:04:05"), "2007-01-31T15:04:05");
  EXPECT_EQ(read("2007-01-31T15:04"), "2007-01-31T15:04:00");
  EXPECT_EQ(read("2007-01-31T15:04:05.25Z"), "2007-01-31T15:04:05.250");
  EXPECT_EQ(read("2007-01-31T23:04:05.123999-05:00"), "2007-01-31T23:04:05.123");
  EXPECT_EQ(read("2007-01-31T00:04:05+14:00"), "2007-01-31T00:04:05");
  EXPECT_EQ(read("2007-01-31Z"), "2007-01-31T00:00:00");
  EXPECT_EQ(read("2007-01-31 15:04:05"), "2007-01-31T15:04:05");
  EXPECT_EQ(read("2007/1/31"), "2007-01-31T00:00:00");
}

TEST(DateOf, ReadsEnglishMonthNames) {
  EXPECT_EQ(read("January 5, 2007"), "2007-01-05T00:00:00");
  EXPECT_EQ(read("Jan 5 2007"), "2007-01-05T00:00:00");
  EXPECT_EQ(read("JAN. 5, 2007"), "2007-01-05T00:00:00");
  EXPECT_EQ(read("5 Jan 2007"), "2007-01-05T00:00:00");
  EXPECT_EQ(read("5-Jan-07"), "2007-01-05T00:00:00");
  EXPECT_EQ(read("25 december, 1999"), "1999-12-25T00:00:00");
  EXPECT_EQ(read("May 31 2007"), "2007-05-31T00:00:00");
  EXPECT_EQ(read("Sept 30, 2007"), "2007-09-30T00:00:00");
}

TEST(DateOf, ReadsTheTimeBehindADay) {
  EXPECT_EQ(read("1/31/2007 3:04:05 PM"), "2007-01-31T15:04:05");
  EXPECT_EQ(read("1/31/2007 15:04"), "2007-01-31T15:04:00");
  EXPECT_EQ(read("Jan 5, 2007  12:00 am"), "2007-01-05T00:00:00");
  EXPECT_EQ(read("1/31/2007 12:30pm"), "2007-01-31T12:30:00");
  EXPECT_EQ(read("1/31/2007 3 PM"), "2007-01-31T15:00:00");
}

TEST(DateOf, ATimeAloneLiesOnDayZero) {
  EXPECT_EQ(read("15:04"), "1899-12-30T15:04:00");
  EXPECT_EQ(read("3:04:05 PM"), "1899-12-30T15:04:05");
  EXPECT_EQ(read("11 am"), "1899-12-30T11:00:00");
}

TEST(DateOf, KnowsTheDaysOfEachMonth) {
  EXPECT_EQ(read("2/29/2008"), "2008-02-29T00:00:00");
  EXPECT_EQ(read("2/29/2007"), "none");
  EXPECT_EQ(read("2/29/2000"), "2000-02-29T00:00:00");
  EXPECT_EQ(read("2/29/1900"), "none");
  EXPECT_EQ(read("4/31/2007"), "none");
  EXPECT_EQ(read("2007-13-01"), "none");
  EXPECT_EQ(read("2007-00-10"), "none");
  EXPECT_EQ(read("31 Apr 2007"), "none");
}

TEST(DateOf, YearsGoFrom100To9999) {
  EXPECT_EQ(read("1/2/100"), "0100-01-02T00:00:00");
  EXPECT_EQ(read("1/2/9999"), "9999-01-02T00:00:00");
  EXPECT_EQ(read("1/2/10000"), "none");
  EXPECT_EQ(read("1/2/0099"), "none");
  EXPECT_EQ(read("0099-01-02"), "none");
}

TEST(DateOf, IsNothingForAllElse) {
  for (const char* text : {"",
                           " ",
                           "tomorrow",
                           "39087",
                           "1.5",
                           "1/2",
                           "1/31",
                           "January",
                           "Jan 2007",
                           "1/2/2007x",
                           "1/2-2007",
                           "2007-1/2",
                           "2007/1-2",
                           "2007-1",
                           "2007-1-",
                           "2007-x-2",
                           "1//2/2007",
                           "1/2/2007 25:00",
                           "1/2/2007 3:60",
                           "1/2/2007 3:04:60",
                           "13 PM",
                           "0:30 PM",
                           "1/2/2007 PM",
                           "2007-01-31T",
                           "2007-01-31T1:04",
                           "2007-01-31T15:04:05+1",
                           "2007-01-31T15:04:05+15:00",
                           "2007-01-31T15:04:05.",
                           "20070131",
                           "001/2/2007",
                           "5Jan2007",
                           "Janu 5 2007",
                           "1/2/2007 Z",
                           "-1/2/2007",
                           "1/2/+2007",
                           "15:04 1/2/2007",
                           "99999999999999999999/1/2007"}) {
    EXPECT_EQ(read(text), "none") << text;
  }
}

TEST(TextToDate, FailsWith13ForTextThatIsNoDate) {
  EXPECT_EQ(text_to_date("1/31/2007"), from_civil({.year = 2007, .month = 1, .day = 31}));
  const Error error = error_of([] { text_to_date("soon"); });
  EXPECT_EQ(error.number, 13);
  EXPECT_EQ(error.source, "BVConn");
  EXPECT_EQ(error.description, "The text \"soon\" is no date");
}

}  // namespace
}  // namespace bvconn::conversions

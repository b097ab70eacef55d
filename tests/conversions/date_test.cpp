#include "bvconn/platform/conversions/date.h"

#include <cmath>

#include "bvconn/platform/conversions/conversions.h"
#include "support/error_of.h"

namespace bvconn {
namespace {

using test::error_of;

constexpr std::int64_t kDay = 86'400'000;

TEST(Date, TheDefaultIsMidnightOf30December1899) {
  EXPECT_EQ(to_civil(Date{}), CivilDate{});
  EXPECT_EQ(from_civil(CivilDate{}), Date{});
  EXPECT_EQ(to_serial_days(Date{}), 0.0);
}

TEST(Date, KnownDaysHaveTheirSerialNumbers) {
  // 1900-01-01 is two days after the epoch; 39087 is 2007-01-05, 36526 is 2000-01-01.
  EXPECT_EQ(to_serial_days(from_civil({.year = 1900, .month = 1, .day = 1})), 2.0);
  EXPECT_EQ(to_serial_days(from_civil({.year = 2007, .month = 1, .day = 5})), 39087.0);
  EXPECT_EQ(to_serial_days(from_civil({.year = 2000, .month = 1, .day = 1})), 36526.0);
  EXPECT_EQ(to_serial_days(from_civil({.year = 100, .month = 1, .day = 1})), -657434.0);
  EXPECT_EQ(to_serial_days(from_civil({.year = 9999, .month = 12, .day = 31})), 2958465.0);
}

TEST(Date, CivilFieldsComeBackForEveryDayOfEightCenturies) {
  CivilDate expected{.year = 1600, .month = 1, .day = 1};
  Date date = from_civil(expected);
  const auto leap = [](std::int32_t year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  };
  const std::int32_t lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  while (expected.year < 2400) {
    ASSERT_EQ(to_civil(date), expected);
    ASSERT_EQ(from_civil(expected), date);
    date.milliseconds += kDay;
    const std::int32_t length =
        lengths[expected.month - 1] + (expected.month == 2 && leap(expected.year) ? 1 : 0);
    if (++expected.day > length) {
      expected.day = 1;
      if (++expected.month > 12) {
        expected.month = 1;
        ++expected.year;
      }
    }
  }
}

TEST(Date, TheTimeOfDayCountsUpwardsBeforeTheEpochToo) {
  const CivilDate evening{.year = 1899,
                          .month = 12,
                          .day = 28,
                          .hour = 18,
                          .minute = 30,
                          .second = 15,
                          .millisecond = 250};
  const Date date = from_civil(evening);
  EXPECT_EQ(date.milliseconds, -2 * kDay + 66'615'250);
  EXPECT_EQ(to_civil(date), evening);
}

TEST(Date, TheSerialFractionIsTheTimeOfDayOnBothSidesOfTheEpoch) {
  const Date after = from_civil({.year = 1900, .month = 1, .day = 1, .hour = 6});
  const Date before = from_civil({.year = 1899, .month = 12, .day = 28, .hour = 6});
  EXPECT_EQ(to_serial_days(after), 2.25);
  EXPECT_EQ(to_serial_days(before), -2.25);
  EXPECT_EQ(from_serial_days(2.25), after);
  EXPECT_EQ(from_serial_days(-2.25), before);
  EXPECT_EQ(from_serial_days(-0.75), from_civil({.hour = 18}));
}

TEST(Date, SerialDaysComeBackToTheMillisecond) {
  const Date date = from_civil({.year = 2007,
                                .month = 1,
                                .day = 5,
                                .hour = 23,
                                .minute = 59,
                                .second = 59,
                                .millisecond = 999});
  EXPECT_EQ(from_serial_days(to_serial_days(date)), date);
}

TEST(Date, SerialDaysOutsideTheYears100To9999Overflow) {
  EXPECT_EQ(to_civil(from_serial_days(2958465.5)).year, 9999);
  EXPECT_EQ(to_civil(from_serial_days(-657434.5)).year, 100);
  EXPECT_EQ(error_of([] { from_serial_days(2958466); }).number, 6);
  EXPECT_EQ(error_of([] { from_serial_days(-657435); }).number, 6);
  EXPECT_EQ(error_of([] { from_serial_days(std::nan("")); }).number, 6);
  EXPECT_EQ(error_of([] { from_serial_days(1e300); }).source, "BVConn");
}

TEST(MinutesBetween, CountsBoundariesAndNotSeconds) {
  const Date ten = from_civil({.year = 2007, .month = 1, .day = 5, .hour = 10});
  const auto after = [ten](std::int64_t seconds) {
    return Date{ten.milliseconds + seconds * 1000};
  };
  EXPECT_EQ(minutes_between(after(59), after(60)), 1);
  EXPECT_EQ(minutes_between(after(0), after(59)), 0);
  EXPECT_EQ(minutes_between(after(59), after(15 * 60)), 15);
  EXPECT_EQ(minutes_between(after(60), after(59)), -1);
  EXPECT_EQ(minutes_between(Date{-1}, Date{0}), 1);
  // From day 0 to 2007-01-05 10:00 there are 39087 days and ten hours.
  EXPECT_EQ(minutes_between(Date{}, ten), 39087 * 1440 + 600);
}

TEST(DateText, IsMonthFirstOnATwelveHourClock) {
  using conversions::date_text;
  EXPECT_EQ(date_text(from_civil({.year = 2007, .month = 1, .day = 5, .hour = 12, .minute = 4})),
            "1/5/2007 12:04:00 PM");
  EXPECT_EQ(date_text(from_civil(
                {.year = 2007, .month = 11, .day = 25, .hour = 15, .minute = 4, .second = 9})),
            "11/25/2007 3:04:09 PM");
  EXPECT_EQ(date_text(from_civil({.year = 2007, .month = 11, .day = 25, .hour = 9, .second = 30})),
            "11/25/2007 9:00:30 AM");
}

TEST(DateText, LeavesOutItsEmptyHalf) {
  using conversions::date_text;
  struct Case {
    CivilDate civil;
    const char* text;
  };
  for (const Case& each :
       {Case{{.year = 2007, .month = 1, .day = 5}, "1/5/2007"},
        {{.year = 2007, .month = 1, .day = 5, .second = 1}, "1/5/2007 12:00:01 AM"},
        {{.year = 2007, .month = 1, .day = 5, .hour = 10}, "1/5/2007 10:00:00 AM"},
        {{.year = 2007, .month = 1, .day = 5, .hour = 12}, "1/5/2007 12:00:00 PM"},
        {{.year = 2007, .month = 1, .day = 5, .millisecond = 999}, "1/5/2007"},
        {{.year = 1899, .month = 12, .day = 29}, "12/29/1899"},
        {{.year = 1899, .month = 12, .day = 29, .hour = 23}, "12/29/1899 11:00:00 PM"},
        {{.year = 1899, .month = 12, .day = 30}, "12:00:00 AM"},
        {{.year = 1899, .month = 12, .day = 30, .millisecond = 999}, "12:00:00 AM"},
        {{.year = 1899, .month = 12, .day = 30, .hour = 10}, "10:00:00 AM"},
        {{.year = 1899, .month = 12, .day = 30, .hour = 23, .minute = 59, .second = 59},
         "11:59:59 PM"},
        {{.year = 1899, .month = 12, .day = 31}, "12/31/1899"}}) {
    EXPECT_EQ(date_text(from_civil(each.civil)), each.text);
  }
}

TEST(IsoDateText, HasMillisecondsOnlyWhereThereAreSome) {
  using conversions::iso_date_text;
  EXPECT_EQ(iso_date_text(from_civil({.year = 2007, .month = 1, .day = 5})), "2007-01-05T00:00:00");
  EXPECT_EQ(iso_date_text(from_civil({.year = 321,
                                      .month = 12,
                                      .day = 31,
                                      .hour = 23,
                                      .minute = 9,
                                      .second = 8,
                                      .millisecond = 70})),
            "0321-12-31T23:09:08.070");
}

TEST(Date, EveryMomentOfItsRangeHasFields) {
  const CivilDate last = to_civil(Date{std::numeric_limits<std::int64_t>::max()});
  const CivilDate first = to_civil(Date{std::numeric_limits<std::int64_t>::min()});
  EXPECT_GT(last.year, 292'000'000);
  EXPECT_LT(first.year, -292'000'000);
}

}  // namespace
}  // namespace bvconn

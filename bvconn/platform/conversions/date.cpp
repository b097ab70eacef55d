#include "bvconn/platform/conversions/date.h"

#include <cmath>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn {
namespace {

constexpr std::int64_t kSecondMs = 1000;
constexpr std::int64_t kMinuteMs = 60 * kSecondMs;
constexpr std::int64_t kHourMs = 60 * kMinuteMs;
constexpr std::int64_t kDayMs = 24 * kHourMs;

// Days are counted from 0000-03-01, so that the leap day is the last day of a year.
constexpr std::int64_t kDaysPerEra = 146097;
constexpr std::int64_t kYearsPerEra = 400;

// The years 100 to 9999: what a component host's date can hold.
constexpr double kFirstSerialDay = -657434;
constexpr double kLastSerialDay = 2958465;

constexpr std::int64_t floor_div(std::int64_t a, std::int64_t b) {
  return a / b - (a % b < 0 ? 1 : 0);
}

constexpr std::int64_t floor_rest(std::int64_t a, std::int64_t b) {
  return a % b + (a % b < 0 ? b : 0);
}

constexpr std::int64_t day_number(std::int64_t year, std::int64_t month, std::int64_t day) {
  const std::int64_t shifted_year = month > 2 ? year : year - 1;
  const std::int64_t era = floor_div(shifted_year, kYearsPerEra);
  const std::int64_t year_of_era = shifted_year - era * kYearsPerEra;
  const std::int64_t month_from_march = (month + 9) % 12;
  // Months from March on have 31, 30, 31, 30, 31 days, twice and a bit: 153 days in five months.
  const std::int64_t day_of_year = (153 * month_from_march + 2) / 5 + day - 1;
  return era * kDaysPerEra + year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
}

constexpr std::int64_t kEpochDay = day_number(1899, 12, 30);

void set_day(CivilDate& civil, std::int64_t days_since_march) {
  const std::int64_t era = floor_div(days_since_march, kDaysPerEra);
  const std::int64_t day_of_era = days_since_march - era * kDaysPerEra;
  const std::int64_t year_of_era =
      (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
  const std::int64_t day_of_year =
      day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const std::int64_t month_from_march = (5 * day_of_year + 2) / 153;
  const std::int64_t month = month_from_march < 10 ? month_from_march + 3 : month_from_march - 9;
  civil.year = static_cast<std::int32_t>(era * kYearsPerEra + year_of_era + (month <= 2 ? 1 : 0));
  civil.month = static_cast<std::int32_t>(month);
  civil.day = static_cast<std::int32_t>(day_of_year - (153 * month_from_march + 2) / 5 + 1);
}

}  // namespace

Date from_civil(const CivilDate& civil) {
  const std::int64_t days = day_number(civil.year, civil.month, civil.day) - kEpochDay;
  return Date{days * kDayMs + civil.hour * kHourMs + civil.minute * kMinuteMs +
              civil.second * kSecondMs + civil.millisecond};
}

CivilDate to_civil(Date date) {
  const std::int64_t days = floor_div(date.milliseconds, kDayMs);
  const std::int64_t rest = floor_rest(date.milliseconds, kDayMs);
  CivilDate civil;
  set_day(civil, days + kEpochDay);
  civil.hour = static_cast<std::int32_t>(rest / kHourMs);
  civil.minute = static_cast<std::int32_t>(rest / kMinuteMs % 60);
  civil.second = static_cast<std::int32_t>(rest / kSecondMs % 60);
  civil.millisecond = static_cast<std::int32_t>(rest % kSecondMs);
  return civil;
}

double to_serial_days(Date date) {
  const std::int64_t days = floor_div(date.milliseconds, kDayMs);
  const std::int64_t rest = floor_rest(date.milliseconds, kDayMs);
  const double fraction = static_cast<double>(rest) / static_cast<double>(kDayMs);
  return static_cast<double>(days) + (days < 0 ? -fraction : fraction);
}

Date from_serial_days(double days) {
  if (!(days > kFirstSerialDay - 1 && days < kLastSerialDay + 1)) {
    throw Error(error_numbers::kOverflow, "BVConn",
                "A serial day number lies outside the years 100 to 9999");
  }
  const double whole = std::trunc(days);
  const double fraction = std::abs(days - whole);
  return Date{static_cast<std::int64_t>(whole) * kDayMs +
              std::llround(fraction * static_cast<double>(kDayMs))};
}

std::int64_t minutes_between(Date from, Date to) {
  return floor_div(to.milliseconds, kMinuteMs) - floor_div(from.milliseconds, kMinuteMs);
}

}  // namespace bvconn

#pragma once

#include <compare>
#include <cstdint>

#include "bvconn/platform/export.h"

namespace bvconn {

/// A moment of local time, without a zone: whole milliseconds since 1899-12-30 00:00:00. The
/// default-made date is that moment itself, "date 0".
struct Date {
  std::int64_t milliseconds = 0;

  friend constexpr auto operator<=>(const Date&, const Date&) = default;
};

/// The fields of a date on the calendar (proleptic Gregorian).
struct CivilDate {
  std::int32_t year = 1899;
  std::int32_t month = 12;  ///< 1 to 12
  std::int32_t day = 30;    ///< 1 to 31
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  std::int32_t second = 0;
  std::int32_t millisecond = 0;

  friend constexpr auto operator<=>(const CivilDate&, const CivilDate&) = default;
};

/// The date of these fields; they must be in range.
BVCONN_EXPORT Date from_civil(const CivilDate& civil);
BVCONN_EXPORT CivilDate to_civil(Date date);

/// The form in which component hosts carry a date: days since 1899-12-30 as the integral part, the
/// time of day as the absolute fraction (so the fraction of a date before that day counts upwards).
BVCONN_EXPORT double to_serial_days(Date date);
BVCONN_EXPORT Date from_serial_days(double days);

/// Minute boundaries between two moments: 10:00:59 to 10:01:00 is 1, and negative backwards.
BVCONN_EXPORT std::int64_t minutes_between(Date from, Date to);

}  // namespace bvconn

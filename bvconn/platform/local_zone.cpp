#include "bvconn/platform/local_zone.h"

#include <chrono>
#include <ctime>

namespace bvconn::detail {
namespace {

/// Days since 1970-01-01 in the proleptic Gregorian calendar.
std::int64_t days_of(const std::tm& fields) {
  const std::chrono::year_month_day day(
      std::chrono::year(fields.tm_year + 1900),
      std::chrono::month(static_cast<unsigned>(fields.tm_mon) + 1),
      std::chrono::day(static_cast<unsigned>(fields.tm_mday)));
  return std::chrono::sys_days(day).time_since_epoch().count();
}

}  // namespace

LocalZone system_zone(std::int64_t unix_seconds) {
  const auto moment = static_cast<std::time_t>(unix_seconds);
  std::tm fields{};
  if (localtime_r(&moment, &fields) == nullptr) return {};
  // A leap second reads as the last ordinary one.
  const std::int64_t second = fields.tm_sec > 59 ? 59 : fields.tm_sec;
  const std::int64_t wall =
      ((days_of(fields) * 24 + fields.tm_hour) * 60 + fields.tm_min) * 60 + second;
  return {.ahead_s = wall - unix_seconds, .offset_s = fields.tm_gmtoff};
}

void take_up_zone() {
  ::tzset();
}

std::int64_t steady_seconds() {
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
  return now.tv_sec;
}

}  // namespace bvconn::detail

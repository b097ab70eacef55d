#include "bvconn/platform/local_time.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

namespace bvconn::detail {
namespace {

constexpr std::int64_t kQuarter_s = 900;

/// What a thread knows of its zone. Without a destructor, so that it can be asked at any time.
struct KnownQuarter {
  std::int64_t begin_s = 0;
  std::int64_t end_s = 0;  ///< the same as the begin: nothing is known
  LocalZone zone;
  std::array<char, 64> variable{};
  bool has_variable = false;
};
constinit thread_local KnownQuarter known_quarter;

/// Days since 1970-01-01 in the proleptic Gregorian calendar.
std::int64_t days_of(const std::tm& fields) {
  const std::chrono::year_month_day day(
      std::chrono::year(fields.tm_year + 1900),
      std::chrono::month(static_cast<unsigned>(fields.tm_mon) + 1),
      std::chrono::day(static_cast<unsigned>(fields.tm_mday)));
  return std::chrono::sys_days(day).time_since_epoch().count();
}

LocalZone zone_by_system(std::int64_t unix_seconds) {
  const auto moment = static_cast<std::time_t>(unix_seconds);
  std::tm fields{};
  if (localtime_r(&moment, &fields) == nullptr) return {};
  // A leap second reads as the last ordinary one.
  const std::int64_t second = fields.tm_sec > 59 ? 59 : fields.tm_sec;
  const std::int64_t wall =
      ((days_of(fields) * 24 + fields.tm_hour) * 60 + fields.tm_min) * 60 + second;
  return {.ahead_s = wall - unix_seconds, .offset_s = fields.tm_gmtoff};
}

bool is_of(const KnownQuarter& known, const char* variable) {
  if (variable == nullptr || !known.has_variable) return variable == nullptr && !known.has_variable;
  return std::strcmp(variable, known.variable.data()) == 0;
}

/// Looks the quarter up. Without a change of the clocks it says the same at both ends.
void learn(KnownQuarter& known, std::int64_t unix_seconds, const char* variable) {
  known.begin_s = known.end_s = 0;
  ::tzset();
  const std::int64_t begin = unix_seconds - unix_seconds % kQuarter_s;
  const LocalZone first = zone_by_system(begin);
  const LocalZone last = zone_by_system(begin + kQuarter_s - 1);
  const std::string_view text = variable == nullptr ? std::string_view() : variable;
  if (first.ahead_s != last.ahead_s || first.offset_s != last.offset_s ||
      text.size() >= known.variable.size()) {
    return;
  }
  known.zone = first;
  known.has_variable = variable != nullptr;
  known.variable.fill('\0');
  text.copy(known.variable.data(), text.size());
  known.begin_s = begin;
  known.end_s = begin + kQuarter_s;
}

}  // namespace

LocalZone zone_at(std::int64_t unix_seconds) {
  KnownQuarter& known = known_quarter;
  const char* const variable = std::getenv("TZ");
  const auto is_known = [&] {
    return unix_seconds >= known.begin_s && unix_seconds < known.end_s && is_of(known, variable);
  };
  if (is_known()) return known.zone;
  learn(known, unix_seconds, variable);
  return is_known() ? known.zone : zone_by_system(unix_seconds);
}

LocalMoment local_now() {
  using std::chrono::milliseconds;
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const std::int64_t unix_ms = std::chrono::floor<milliseconds>(now).count();
  return {.unix_ms = unix_ms,
          .zone = zone_at(std::chrono::floor<std::chrono::seconds>(now).count())};
}

}  // namespace bvconn::detail

#include "bvconn/platform/local_time.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace bvconn::detail {
namespace {

constexpr std::int64_t kQuarter_s = 900;
constexpr std::int64_t kDay_s = 86'400;
/// The days that a thread knows: more than a reply's rows are spread over, as a rule.
constexpr std::size_t kDays = 64;

/// A span of time throughout which one zone is in force.
struct KnownSpan {
  std::int64_t begin_s = 0;
  std::int64_t end_s = 0;  ///< the same as the begin: nothing is known
  LocalZone zone;

  bool holds(std::int64_t unix_seconds) const {
    return unix_seconds >= begin_s && unix_seconds < end_s;
  }
};

/// What a thread knows of its zone. Without a destructor, so that it can be asked at any time.
struct KnownZone {
  KnownSpan quarter;
  std::array<KnownSpan, kDays> days;
  std::int64_t days_until_s = 0;  ///< when they are forgotten, by the clock that nobody sets
  std::array<char, 64> variable{};
  bool has_variable = false;
  bool is_of_no_variable = true;  ///< none was looked at, or one that is too long to keep
};
constinit thread_local KnownZone known_zone;

bool is_of(const KnownZone& known, const char* variable) {
  if (known.is_of_no_variable) return false;
  if (variable == nullptr || !known.has_variable) return variable == nullptr && !known.has_variable;
  return std::strcmp(variable, known.variable.data()) == 0;
}

/// Forgets all where `TZ` says something else than it did.
KnownZone& known_by(const char* variable) {
  KnownZone& known = known_zone;
  if (is_of(known, variable)) return known;
  known = KnownZone();
  take_up_zone();
  const std::string_view text = variable == nullptr ? std::string_view() : variable;
  known.is_of_no_variable = text.size() >= known.variable.size();
  if (known.is_of_no_variable) return known;
  known.has_variable = variable != nullptr;
  text.copy(known.variable.data(), text.size());
  return known;
}

/// Looks a span up that begins at a multiple of its length. Without a change of the clocks in it
/// the system says the same of both ends.
KnownSpan span_by_system(std::int64_t unix_seconds, std::int64_t length_s) {
  take_up_zone();
  const std::int64_t begin = unix_seconds - (unix_seconds % length_s + length_s) % length_s;
  const LocalZone first = system_zone(begin);
  const LocalZone last = system_zone(begin + length_s - 1);
  if (first.ahead_s != last.ahead_s || first.offset_s != last.offset_s) return {};
  return {.begin_s = begin, .end_s = begin + length_s, .zone = first};
}

LocalZone zone_in(KnownSpan& span, std::int64_t unix_seconds, std::int64_t length_s) {
  if (!span.holds(unix_seconds)) span = span_by_system(unix_seconds, length_s);
  return span.holds(unix_seconds) ? span.zone : system_zone(unix_seconds);
}

}  // namespace

LocalZone zone_at(std::int64_t unix_seconds) {
  return zone_in(known_by(std::getenv("TZ")).quarter, unix_seconds, kQuarter_s);
}

LocalZone zone_on_day_of(std::int64_t unix_seconds) {
  KnownZone& known = known_by(std::getenv("TZ"));
  const std::int64_t now = steady_seconds();
  if (now >= known.days_until_s) {
    known.days = {};
    known.days_until_s = now + kQuarter_s;
  }
  const auto day = static_cast<std::uint64_t>(unix_seconds / kDay_s);
  return zone_in(known.days[day % kDays], unix_seconds, kDay_s);
}

LocalMoment local_now() {
  using std::chrono::milliseconds;
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const std::int64_t unix_ms = std::chrono::floor<milliseconds>(now).count();
  return {.unix_ms = unix_ms,
          .zone = zone_at(std::chrono::floor<std::chrono::seconds>(now).count())};
}

}  // namespace bvconn::detail

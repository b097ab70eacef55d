#pragma once

#include <cstdint>

#include "bvconn/platform/local_zone.h"

/// Local time without asking the system for it each time; not a part of the interface.
namespace bvconn::detail {

/// The zone in force at a moment, in seconds since 1970, as `system_zone` has it.
///
/// The system takes a lock which all threads of a process share. So each thread asks it once for
/// every quarter of an hour, at both ends, and again where the variable `TZ` says something else;
/// within a quarter in which the clocks are changed it is asked each time. Another zone of the
/// whole system shows from the next quarter on.
LocalZone zone_at(std::int64_t unix_seconds);

/// The same for a moment that may be any, as those are that stand in replies: a thread knows the
/// days of the last ones, which it asks for again after a quarter of an hour. On a day on which the
/// clocks are changed the system is asked each time.
LocalZone zone_on_day_of(std::int64_t unix_seconds);

/// A moment in milliseconds since 1970, and the zone in force.
struct LocalMoment {
  std::int64_t unix_ms = 0;
  LocalZone zone;

  std::int64_t wall_ms() const { return unix_ms + zone.ahead_s * 1000; }
};
LocalMoment local_now();

}  // namespace bvconn::detail

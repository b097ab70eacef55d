#pragma once

#include <cstdint>

namespace bvconn::detail {

/// How the clocks on the wall stand at one moment.
struct LocalZone {
  std::int64_t ahead_s = 0;   ///< what to add to seconds since 1970 for the calendar on the wall
  std::int64_t offset_s = 0;  ///< of its name: "+0100" is 3600; the same but for leap seconds
};

/// What the system says of a moment, in seconds since 1970; of one that it does not know, nothing.
LocalZone system_zone(std::int64_t unix_seconds);

/// Makes the system look again at what the environment says of the zone.
void take_up_zone();

/// Seconds of a clock that nobody sets; it is not asked for less than a hundredth of one.
std::int64_t steady_seconds();

}  // namespace bvconn::detail

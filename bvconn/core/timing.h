#pragma once

#include <cstdint>
#include <string>

namespace bvconn {

/// Seconds since midnight as a 32-bit float, the precision in which durations are logged.
/// deliberate [midnight]: a span that passes midnight is negative, and stays so.
float timer_seconds();

/// The clock of the lines "Total time in method: ". Its start is rounded to a whole second, halves
/// to the even one.
/// deliberate [whole-seconds]: the figure can be half a second off, and negative.
class WholeSecondTimer {
 public:
  WholeSecondTimer();

  /// Logs the seconds since the start, rounded to two decimals, at level 16.
  void log_total(const char* cls, const char* method) const;

 private:
  std::int32_t start_;
};

}  // namespace bvconn

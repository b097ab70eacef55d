#include "bvconn/core/timing.h"

#include "bvconn/core/session_state.h"
#include "bvconn/platform/conversions/conversions.h"

namespace bvconn {

float timer_seconds() {
  return static_cast<float>(session().clock().timer());
}

WholeSecondTimer::WholeSecondTimer() : start_(conversions::double_to_int32(timer_seconds())) {}

void WholeSecondTimer::log_total(const char* cls, const char* method) const {
  const double seconds =
      conversions::round_half_even(static_cast<double>(timer_seconds()) - start_, 2);
  session().Logger().LogAtLevel(16, cls, method,
                                "Total time in method: " + conversions::double_text(seconds), 0);
}

}  // namespace bvconn

#pragma once

#include <memory>

#include "bvconn/platform/conversions/date.h"
#include "bvconn/platform/export.h"

namespace bvconn {

class BVCONN_EXPORT Clock {
 public:
  virtual ~Clock();
  /// Local time.
  virtual Date now() = 0;
  /// Seconds since local midnight, with their fraction: what durations in the log are taken from.
  virtual double timer() = 0;
};

BVCONN_EXPORT std::shared_ptr<Clock> make_system_clock();

}  // namespace bvconn

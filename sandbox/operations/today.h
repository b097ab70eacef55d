#pragma once

#include <chrono>

#include "bvconn/platform/conversions/date.h"

namespace bvconn::sandbox {

/// The present day in UTC.
inline Date today() {
  constexpr std::int64_t kDay = 86'400'000;
  const auto since = std::chrono::system_clock::now().time_since_epoch();
  const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(since).count();
  return {now - now % kDay};
}

}  // namespace bvconn::sandbox

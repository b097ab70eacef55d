#include "bvconn/platform/timeout_scope.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace bvconn {
namespace {

// Milliseconds; 0 where no scope says otherwise.
constinit thread_local std::int32_t innermost_limit = 0;

std::int32_t as_time_out(std::chrono::milliseconds limit) {
  constexpr std::chrono::milliseconds kMax{std::numeric_limits<std::int32_t>::max()};
  constexpr std::chrono::milliseconds kNone{-1};
  return static_cast<std::int32_t>(std::clamp(limit, kNone, kMax).count());
}

}  // namespace

TimeoutScope::TimeoutScope(std::chrono::milliseconds limit) noexcept
    : outer_(std::exchange(innermost_limit, as_time_out(limit))) {}

TimeoutScope::~TimeoutScope() {
  innermost_limit = outer_;
}

std::optional<std::int32_t> TimeoutScope::in_force() noexcept {
  if (innermost_limit == 0) return std::nullopt;
  return innermost_limit;
}

}  // namespace bvconn

#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "bvconn/platform/export.h"

namespace bvconn {

/// A time-out for the calls that the calling thread makes while this object lives, on both routes:
///
///     bvconn::TimeoutScope limit(std::chrono::seconds(10));
///
/// It stands in for the setting `defaultTimeOut` and for the 300 seconds of the data access layer,
/// wherever an operation has no time-out of its own: an `aTimeout` other than 0 stays, and so do
/// the five seconds of `sendHeartBeat` over SOAP. As with those, it covers one whole exchange,
/// connecting included; a negative one is no limit at all, and 0 brings back what counts outside of
/// any scope. What is beyond 24 days is 24 days.
///
/// Scopes nest, the innermost counts; they end in the opposite order, on the thread that made them.
class BVCONN_EXPORT TimeoutScope {
 public:
  explicit TimeoutScope(std::chrono::milliseconds limit) noexcept;
  ~TimeoutScope();
  TimeoutScope(const TimeoutScope&) = delete;
  TimeoutScope& operator=(const TimeoutScope&) = delete;

  /// The innermost scope's limit in milliseconds, never 0; nothing where the defaults count.
  static std::optional<std::int32_t> in_force() noexcept;

 private:
  std::int32_t outer_;
};

}  // namespace bvconn

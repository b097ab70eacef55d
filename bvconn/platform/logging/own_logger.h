#pragma once

#include <cstdint>

#include "bvconn/platform/logging/session_logger.h"

namespace bvconn::detail {

/// What the library's own logger does beyond what any logger does.
class OwnLogger : public SessionLogger {
 public:
  // It says ahead of a line whether it would drop it, so that such a line is not put together.

  /// Whether lines at this level are written, those of enter and exit among them.
  virtual bool writes(std::int32_t level) const noexcept = 0;
  /// Whether text lines without a level are.
  virtual bool writes_info() const noexcept = 0;

  // Error lines that follow one right after another are written at once. A line of any other kind
  // ends the wait: what was held goes before it, with the same write.

  virtual void hold_errors() noexcept = 0;
  /// Writes what was held. Each `hold_errors` has one.
  virtual void release_errors() noexcept = 0;
};

/// The logger as the library's own; null for one of the application's.
OwnLogger* own_logger_of(SessionLogger& logger) noexcept;

}  // namespace bvconn::detail

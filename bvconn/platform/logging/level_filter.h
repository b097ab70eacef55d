#pragma once

#include <cstdint>

#include "bvconn/platform/logging/session_logger.h"

namespace bvconn::detail {

/// A logger that can say ahead of a line whether it would drop it, so that such a line is not put
/// together: the library's own.
class LevelFilter : public SessionLogger {
 public:
  /// Whether lines at this level are written, those of enter and exit among them.
  virtual bool writes(std::int32_t level) const noexcept = 0;
  /// Whether text lines without a level are.
  virtual bool writes_info() const noexcept = 0;
};

}  // namespace bvconn::detail

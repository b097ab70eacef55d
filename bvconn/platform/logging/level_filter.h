#pragma once

#include <cstdint>

namespace bvconn::detail {

/// What a logger of the library's own can say ahead of a line, so that one which would be dropped
/// is not put together.
class LevelFilter {
 public:
  /// Whether lines at this level are written, those of enter and exit among them.
  virtual bool writes(std::int32_t level) const noexcept = 0;
  /// Whether text lines without a level are.
  virtual bool writes_info() const noexcept = 0;

 protected:
  ~LevelFilter() = default;
};

}  // namespace bvconn::detail

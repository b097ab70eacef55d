#pragma once

#include <cstdint>

#include "bvconn/platform/xml/xml_stack.h"

namespace bvconn::detail::xml {

/// How far it is from one place of a text to a later one, for people.
struct Distance {
  std::uint32_t line_ends = 0;
  std::uint32_t columns = 0;  ///< characters after the last line end, or from the beginning

  void add(const Distance& more) noexcept;
};

/// Where a reader has overwritten its buffer, and how far it was across what stood there before.
///
/// All else is as it was given; so the place of an error can be reported afterwards, and lines need
/// not be counted on the way.
class Overwritten {
 public:
  /// The buffer has less than 4 GiB.
  explicit Overwritten(const char* buffer) : buffer_(buffer) {}

  /// Called before anything in [from, to) is overwritten, `to` being the end of what was read.
  /// Within one run of text or one value `from` lags behind the end of the last stretch, which then
  /// grows.
  void note(const char* from, const char* to);
  /// How far it was from one place to a later one in the buffer as it was given. What lies in a
  /// stretch that ends behind the later place is counted as it is now.
  Distance distance(const char* from, const char* to) const;

 private:
  struct Stretch {
    std::uint32_t begin;
    std::uint32_t end;
    Distance held;
  };

  std::uint32_t offset(const char* at) const noexcept {
    return static_cast<std::uint32_t>(at - buffer_);
  }

  const char* buffer_;
  /// In their order. A text with an entity in each row has many.
  Stack<Stretch, 8> stretches_;
};

}  // namespace bvconn::detail::xml

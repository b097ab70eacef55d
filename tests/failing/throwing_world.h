#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "bvconn/platform/platform.h"

namespace bvconn::test {

/// What a part of an application's platform may throw.
enum class Thrown : std::uint8_t {
  kError,     ///< an Error of the number kThrownNumber
  kStandard,  ///< another standard exception
  kNumber,    ///< an int
  kNothing,   ///< an object of no standard type, that says nothing
};

inline constexpr std::array kThrown{Thrown::kError, Thrown::kStandard, Thrown::kNumber,
                                    Thrown::kNothing};

inline constexpr std::int32_t kThrownNumber = static_cast<std::int32_t>(0x80049999);

/// A platform every member of which is one step: the step with the number that it is armed with
/// throws. Sends and operations of service objects are answered with the same text, always.
class ThrowingWorld {
 public:
  explicit ThrowingWorld(std::string_view reply);

  /// From now on the step with this number (from 1) throws.
  void arm(std::size_t number, Thrown thrown);
  void disarm() { number_ = 0; }
  /// The member that threw since then, "Logger.LogMask"; "" when there were not so many steps.
  std::string_view struck() const { return struck_; }

  /// Called by the members.
  void step(std::string_view member);
  std::string_view reply() const { return reply_; }

 private:
  std::string_view reply_;
  std::size_t number_ = 0;
  std::size_t steps_ = 0;
  Thrown thrown_ = Thrown::kError;
  std::string_view struck_;
  platform::ScopedPlatform scope_;
};

}  // namespace bvconn::test

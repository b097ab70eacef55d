#include "bvconn/component/decimals.h"

#include <array>
#include <charconv>
#include <limits>
#include <string>

namespace bvconn::component {
namespace {

constexpr int kScaleMax = 28;
constexpr std::uint8_t kNegative = 0x80;

// The digits of a number of 96 bits, the least first.
std::string digits_of(const DecimalRecord& decimal) {
  std::array<std::uint32_t, 3> words{decimal.high, static_cast<std::uint32_t>(decimal.low >> 32U),
                                     static_cast<std::uint32_t>(decimal.low)};
  std::string digits;
  while (words != std::array<std::uint32_t, 3>{}) {
    std::uint64_t rest = 0;
    for (std::uint32_t& word : words) {
      const std::uint64_t value = (rest << 32U) | word;
      word = static_cast<std::uint32_t>(value / 10);
      rest = value % 10;
    }
    digits.push_back(static_cast<char>('0' + rest));
  }
  return digits.empty() ? "0" : digits;
}

}  // namespace

std::optional<std::int64_t> large_integer_of(const DecimalRecord& decimal) {
  constexpr auto kMax = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (decimal.scale != 0 || decimal.high != 0 ||
      decimal.low <= static_cast<std::uint64_t>(kWholeDoubleMax)) {
    return std::nullopt;
  }
  if (decimal.sign == 0 && decimal.low <= kMax) return static_cast<std::int64_t>(decimal.low);
  if (decimal.sign != kNegative || decimal.low > kMax + 1) return std::nullopt;
  return static_cast<std::int64_t>(0 - decimal.low);
}

DecimalRecord decimal_of(std::int64_t number) {
  const auto bits = static_cast<std::uint64_t>(number);
  DecimalRecord decimal{};
  decimal.type = variant_type::kDecimal;
  decimal.sign = number < 0 ? kNegative : std::uint8_t{0};
  decimal.low = number < 0 ? 0 - bits : bits;
  return decimal;
}

std::optional<double> number_of(const DecimalRecord& decimal) {
  if (decimal.scale > kScaleMax || (decimal.sign != 0 && decimal.sign != kNegative)) {
    return std::nullopt;
  }
  const std::string digits = digits_of(decimal);
  std::string text(decimal.sign == kNegative ? "-" : "");
  text.append(digits.rbegin(), digits.rend());
  text.append("e-").append(std::to_string(decimal.scale));
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace bvconn::component

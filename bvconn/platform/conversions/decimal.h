#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Decimal numbers of any length, as text writes them; not a part of the interface.
namespace bvconn::detail {

/// The value 0.DIGITS x 10^point, without leading and trailing zeros; zero has no digits.
struct Decimal {
  bool negative = false;
  std::string digits;
  std::int64_t point = 0;
};

enum class Halves { kToEven, kAwayFromZero };

/// Without leading and trailing spaces, tabs, CR and LF.
std::string_view trim_white(std::string_view text);

/// Reads sign, digits with or without a point, exponent; nothing for anything else.
std::optional<Decimal> decimal_of(std::string_view text);
/// The decimal number with the fewest digits that reads back as `value`, which must be finite.
Decimal shortest_decimal(double value);
Decimal shortest_decimal(float value);

/// Rounds to so many places after the point.
void round_to(Decimal& number, int places, Halves halves);
/// With at least `whole_digits` digits before the point and `places` after it.
std::string fixed_text(const Decimal& number, int whole_digits, int places);
/// The nearest float; nothing beyond its range. What is too small is 0.
std::optional<double> to_float(const Decimal& number);

}  // namespace bvconn::detail

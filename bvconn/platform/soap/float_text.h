#pragma once

#include <optional>
#include <string_view>

/// Floating-point numbers as XML Schema writes them, without a plus sign in front.
namespace bvconn::detail {

/// Any such number, `INF`, `-INF` and `NaN` among them. What is too small for a float is zero;
/// nothing for what is too large, and for text that is no number.
std::optional<double> float_of(std::string_view text);

/// The same number for a text as prices and amounts are written: up to 15 characters, digits with a
/// point among them or none. Digits and power of ten are then numbers that a float holds exactly,
/// so that their quotient is the nearest float. Nothing for any other text: without this function
/// everything is read by `float_of`, more slowly.
std::optional<double> short_decimal_of(std::string_view text);

}  // namespace bvconn::detail

#include "bvconn/platform/conversions/decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace bvconn::detail {
namespace {

/// Exponents stop here: no text is long enough to bring such a number back into a float's range.
constexpr std::int64_t kExponentBound = 1'000'000'000'000;

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

std::string_view take_digits(std::string_view& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), is_digit);
  const auto count = static_cast<std::size_t>(end - text.begin());
  const std::string_view digits = text.substr(0, count);
  text.remove_prefix(count);
  return digits;
}

bool take_sign(std::string_view& text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) {
    text.remove_prefix(1);
  }
  return negative;
}

/// The value of an exponent behind its "e"; nothing when there are no digits.
std::optional<std::int64_t> take_exponent(std::string_view& text) {
  const bool negative = take_sign(text);
  const std::string_view digits = take_digits(text);
  if (digits.empty()) {
    return std::nullopt;
  }
  std::int64_t value = 0;
  for (const char digit : digits) {
    value = std::min(value * 10 + (digit - '0'), kExponentBound);
  }
  return negative ? -value : value;
}

void strip_zeros(Decimal& number) {
  number.digits.erase(number.digits.find_last_not_of('0') + 1);
  const std::size_t leading = std::min(number.digits.find_first_not_of('0'), number.digits.size());
  number.digits.erase(0, leading);
  number.point = number.digits.empty() ? 0 : number.point - static_cast<std::int64_t>(leading);
}

/// Adds one to the last digit.
void increment(Decimal& number) {
  std::string& digits = number.digits;
  digits.erase(digits.find_last_not_of('9') + 1);
  if (digits.empty()) {
    digits.assign(1, '1');
    ++number.point;
  } else {
    ++digits.back();
  }
}

bool rounds_up(std::string_view digits, std::size_t keep, Halves halves) {
  if (digits[keep] != '5' || digits.size() > keep + 1) {
    return digits[keep] >= '5';
  }
  const bool odd = keep > 0 && (digits[keep - 1] - '0') % 2 == 1;
  return halves == Halves::kAwayFromZero || odd;
}

template <typename Float>
Decimal shortest(Float value) {
  char buffer[32];
  const auto result =
      std::to_chars(std::begin(buffer), std::end(buffer), value, std::chars_format::scientific);
  return *decimal_of(std::string_view(buffer, static_cast<std::size_t>(result.ptr - buffer)));
}

}  // namespace

std::string_view trim_white(std::string_view text) {
  constexpr std::string_view kWhite = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kWhite);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kWhite) - first + 1);
}

std::optional<Decimal> decimal_of(std::string_view text) {
  std::string_view rest = trim_white(text);
  Decimal number;
  number.negative = take_sign(rest);
  const std::string_view whole = take_digits(rest);
  std::string_view fraction;
  if (rest.starts_with('.')) {
    rest.remove_prefix(1);
    fraction = take_digits(rest);
  }
  if (whole.empty() && fraction.empty()) {
    return std::nullopt;
  }
  number.point = static_cast<std::int64_t>(whole.size());
  if (rest.starts_with('e') || rest.starts_with('E')) {
    rest.remove_prefix(1);
    const std::optional<std::int64_t> exponent = take_exponent(rest);
    if (!exponent) {
      return std::nullopt;
    }
    number.point += *exponent;
  }
  if (!rest.empty()) {
    return std::nullopt;
  }
  number.digits.append(whole).append(fraction);
  strip_zeros(number);
  return number;
}

Decimal shortest_decimal(double value) {
  return shortest(value);
}

Decimal shortest_decimal(float value) {
  return shortest(value);
}

void round_to(Decimal& number, int places, Halves halves) {
  const std::int64_t keep = number.point + places;
  if (keep >= static_cast<std::int64_t>(number.digits.size())) {
    return;
  }
  if (keep < 0) {
    number.digits.clear();
    number.point = 0;
    return;
  }
  const auto kept = static_cast<std::size_t>(keep);
  const bool up = rounds_up(number.digits, kept, halves);
  number.digits.erase(kept);
  if (up) {
    increment(number);
  }
  strip_zeros(number);
}

std::string fixed_text(const Decimal& number, int whole_digits, int places) {
  const auto digit_at = [&number](std::int64_t index) {
    const bool inside = index >= 0 && index < static_cast<std::int64_t>(number.digits.size());
    return inside ? number.digits[static_cast<std::size_t>(index)] : '0';
  };
  std::string text = number.negative && !number.digits.empty() ? "-" : "";
  const std::int64_t before_point = std::max<std::int64_t>(number.point, whole_digits);
  for (std::int64_t i = number.point - before_point; i < number.point; ++i) {
    text.push_back(digit_at(i));
  }
  if (places > 0) {
    text.push_back('.');
  }
  for (std::int64_t i = number.point; i < number.point + places; ++i) {
    text.push_back(digit_at(i));
  }
  return text;
}

std::optional<double> to_float(const Decimal& number) {
  const double zero = number.negative ? -0.0 : 0.0;
  if (number.digits.empty()) {
    return zero;
  }
  std::string text = number.negative ? "-0." : "0.";
  text.append(number.digits).append("e").append(std::to_string(number.point));
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    return number.point > 0 ? std::nullopt : std::optional<double>(zero);
  }
  return value;
}

}  // namespace bvconn::detail

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/decimal.h"
#include "bvconn/platform/error.h"

namespace bvconn::conversions {
namespace {

using detail::Decimal;

/// The digits of a number pattern; the patterns that are not "000" and "0.00" are date patterns.
struct NumberPattern {
  int whole_digits = 1;
  int places = 0;
};

std::optional<NumberPattern> number_pattern(std::string_view pattern) {
  if (pattern == "000") {
    return NumberPattern{.whole_digits = 3, .places = 0};
  }
  if (pattern == "0.00") {
    return NumberPattern{.whole_digits = 1, .places = 2};
  }
  return std::nullopt;
}

/// As figures for people are rounded: halves away from zero, and never to "-0".
std::string digits_text(Decimal number, const NumberPattern& pattern) {
  detail::round_to(number, pattern.places, detail::Halves::kAwayFromZero);
  return detail::fixed_text(number, pattern.whole_digits, pattern.places);
}

std::string padded(std::int32_t value, std::size_t digits) {
  std::string text = integer_text(value);
  if (text.size() < digits) {
    text.insert(0, digits - text.size(), '0');
  }
  return text;
}

/// Writes so many digits of a number that has no more; what is behind them.
char* put_digits(char* at, std::int32_t number, int digits) {
  for (char* digit = at + digits; digit != at; number /= 10) {
    *--digit = static_cast<char>('0' + number % 10);
  }
  return at + digits;
}

/// "1.5E+15", "1E-05": one digit before the point, two digits of exponent at least.
std::string exponent_text(Decimal number) {
  const auto exponent = static_cast<std::int32_t>(number.point - 1);
  number.point = 1;
  std::string text = detail::fixed_text(number, 1, static_cast<int>(number.digits.size()) - 1);
  text.append(exponent < 0 ? "E-" : "E+");
  return text.append(padded(std::abs(exponent), 2));
}

/// Every digit of a number, with an exponent only where plain digits would be too many.
std::string every_digit_text(const Decimal& number) {
  constexpr std::int64_t kLowestPlainPoint = -3;   // 0.0001
  constexpr std::int64_t kHighestPlainPoint = 15;  // 999999999999999
  if (number.point < kLowestPlainPoint || number.point > kHighestPlainPoint) {
    return exponent_text(number);
  }
  const auto digits = static_cast<std::int64_t>(number.digits.size());
  return detail::fixed_text(number, 1,
                            static_cast<int>(std::max(digits - number.point, std::int64_t{0})));
}

template <typename Float>
std::string floating_text(Float value) {
  if (std::isnan(value)) {
    return "NaN";
  }
  if (std::isinf(value)) {
    return value < 0 ? "-INF" : "INF";
  }
  return every_digit_text(detail::shortest_decimal(value));
}

std::optional<Date> date_of_serial(double days) {
  try {
    return from_serial_days(days);
  } catch (const Error&) {
    return std::nullopt;
  }
}

std::string calendar_text(Date value, std::string_view pattern) {
  const CivilDate civil = to_civil(value);
  const std::size_t digits = equal_ignoring_case(pattern, "mm/dd/yyyy") ? 2 : 1;
  std::string text = padded(civil.month, digits);
  text.append("/").append(padded(civil.day, digits));
  text.append("/").append(padded(civil.year, 4));
  return text;
}

/// "1:04:09 PM".
std::string time_text(const CivilDate& civil) {
  const std::int32_t hour = civil.hour % 12 == 0 ? 12 : civil.hour % 12;
  std::string text = integer_text(hour);
  text.append(":").append(padded(civil.minute, 2));
  text.append(":").append(padded(civil.second, 2));
  return text.append(civil.hour < 12 ? " AM" : " PM");
}

bool date_pattern(std::string_view pattern) {
  return equal_ignoring_case(pattern, "mm/dd/yyyy") || equal_ignoring_case(pattern, "m/d/yyyy");
}

}  // namespace

std::string float_text(float value) {
  return floating_text(value);
}

std::string double_text(double value) {
  return floating_text(value);
}

std::string date_text(Date value) {
  const CivilDate civil = to_civil(value);
  // What counts is what the text shows: a time within the first second of a day shows none.
  const bool midnight = civil.hour == 0 && civil.minute == 0 && civil.second == 0;
  const bool zero_day = civil.year == 1899 && civil.month == 12 && civil.day == 30;
  if (zero_day) {
    return time_text(civil);
  }
  const std::string day = calendar_text(value, "m/d/yyyy");
  return midnight ? day : day + " " + time_text(civil);
}

std::string iso_date_text(Date value) {
  const CivilDate civil = to_civil(value);
  // Years beyond four digits, and those before the first, are written as they come.
  constexpr std::size_t kYearAtMost = 12;
  constexpr std::size_t kRest = std::string_view("-01-05T00:00:00.000").size();
  std::array<char, kYearAtMost + kRest> buffer;
  char* at = buffer.data();
  const bool plain_year = civil.year >= 0 && civil.year <= 9999;
  if (plain_year) {
    at = put_digits(at, civil.year, 4);
  } else {
    const std::string year = padded(civil.year, 4);
    at = std::copy(year.begin(), year.end(), at);
  }
  const auto put = [&at](char mark, std::int32_t number, int digits) {
    *at++ = mark;
    at = put_digits(at, number, digits);
  };
  put('-', civil.month, 2);
  put('-', civil.day, 2);
  put('T', civil.hour, 2);
  put(':', civil.minute, 2);
  put(':', civil.second, 2);
  if (civil.millisecond != 0) put('.', civil.millisecond, 3);
  return {buffer.data(), at};
}

std::string format_text(std::string_view text, std::string_view pattern) {
  if (const std::optional<NumberPattern> digits = number_pattern(pattern)) {
    const std::optional<Decimal> number = detail::decimal_of(text);
    // Text that no float can hold is no number either: its digits would fill the memory.
    return number && detail::to_float(*number) ? digits_text(*number, *digits) : std::string(text);
  }
  if (!date_pattern(pattern)) {
    return std::string(text);
  }
  std::optional<Date> date = date_of(text);
  if (!date) {
    const std::optional<double> serial = number_of(text);
    date = serial ? date_of_serial(*serial) : std::nullopt;
  }
  return date ? calendar_text(*date, pattern) : std::string(text);
}

std::string format_number(double value, std::string_view pattern) {
  if (!std::isfinite(value)) {
    return double_text(value);
  }
  if (const std::optional<NumberPattern> digits = number_pattern(pattern)) {
    return digits_text(detail::shortest_decimal(value), *digits);
  }
  const std::optional<Date> date =
      date_pattern(pattern) ? date_of_serial(value) : std::optional<Date>();
  return date ? calendar_text(*date, pattern) : double_text(value);
}

std::string format_date(Date value, std::string_view pattern) {
  if (date_pattern(pattern)) {
    return calendar_text(value, pattern);
  }
  return number_pattern(pattern) ? format_number(to_serial_days(value), pattern) : date_text(value);
}

}  // namespace bvconn::conversions

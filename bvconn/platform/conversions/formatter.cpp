#include <cmath>

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

bool date_pattern(std::string_view pattern) {
  return equal_ignoring_case(pattern, "mm/dd/yyyy") || equal_ignoring_case(pattern, "m/d/yyyy");
}

}  // namespace

std::string date_text(Date value) {
  const CivilDate civil = to_civil(value);
  const std::int32_t hour = civil.hour % 12 == 0 ? 12 : civil.hour % 12;
  std::string text = calendar_text(value, "m/d/yyyy");
  text.append(" ").append(integer_text(hour));
  text.append(":").append(padded(civil.minute, 2));
  text.append(":").append(padded(civil.second, 2));
  text.append(civil.hour < 12 ? " AM" : " PM");
  return text;
}

std::string iso_date_text(Date value) {
  const CivilDate civil = to_civil(value);
  std::string text = padded(civil.year, 4);
  text.append("-").append(padded(civil.month, 2)).append("-").append(padded(civil.day, 2));
  text.append("T").append(padded(civil.hour, 2));
  text.append(":").append(padded(civil.minute, 2)).append(":").append(padded(civil.second, 2));
  if (civil.millisecond != 0) {
    text.append(".").append(padded(civil.millisecond, 3));
  }
  return text;
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

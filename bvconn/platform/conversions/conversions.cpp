#include "bvconn/platform/conversions/conversions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "bvconn/platform/conversions/decimal.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn::conversions {
namespace {

using detail::Decimal;

constexpr std::string_view kSource = "BVConn";

[[noreturn]] void fail_mismatch(std::string_view text, std::string_view wanted) {
  throw Error(
      error_numbers::kTypeMismatch, kSource,
      std::string("The text ").append(detail::shown(text)).append(" is no ").append(wanted));
}

[[noreturn]] void fail_overflow(std::string_view what, std::string_view wanted) {
  throw Error(error_numbers::kOverflow, kSource,
              std::string(what).append(" is beyond the range of a ").append(wanted));
}

/// A number that is written in decimal digits; the words for infinities are none.
double written_number(std::string_view text, std::string_view wanted) {
  const std::optional<Decimal> number = detail::decimal_of(text);
  if (!number) {
    fail_mismatch(text, wanted);
  }
  const std::optional<double> value = detail::to_float(*number);
  if (!value) {
    fail_overflow("The number " + detail::shown(text), "64-bit float");
  }
  return *value;
}

/// Halves go to the even number, whatever rounding mode the host has set.
double rounded(double value) {
  const double floor = std::floor(value);
  const double above = value - floor;
  const bool up = above > 0.5 || (above == 0.5 && std::fmod(floor, 2.0) != 0.0);
  return up ? floor + 1 : floor;
}

template <typename Integer>
std::optional<Integer> as_integer(double value) {
  const double whole = rounded(value);
  // Written so that what is not a number fails too.
  if (!(whole >= std::numeric_limits<Integer>::min() &&
        whole <= std::numeric_limits<Integer>::max())) {
    return std::nullopt;
  }
  return static_cast<Integer>(whole);
}

template <typename Integer>
Integer text_to_integer(std::string_view text, std::string_view wanted) {
  const std::optional<Integer> value = as_integer<Integer>(written_number(text, wanted));
  if (!value) {
    fail_overflow("The number " + detail::shown(text), wanted);
  }
  return *value;
}

template <typename Integer>
Integer double_to_integer(double value, std::string_view wanted) {
  const std::optional<Integer> whole = as_integer<Integer>(value);
  if (!whole) {
    fail_overflow("The number " + double_text(value), wanted);
  }
  return *whole;
}

constexpr std::string_view kInt16 = "16-bit integer";
constexpr std::string_view kInt32 = "32-bit integer";

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

bool text_to_boolean(std::string_view text) {
  const std::string_view word = detail::trim_white(text);
  if (equal_ignoring_case(word, "True")) {
    return true;
  }
  if (equal_ignoring_case(word, "False")) {
    return false;
  }
  return written_number(text, "boolean") != 0;
}

double text_to_double(std::string_view text) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::string_view word = detail::trim_white(text);
  if (word == "INF") {
    return kInfinity;
  }
  if (word == "-INF") {
    return -kInfinity;
  }
  if (word == "NaN") {
    return std::numeric_limits<double>::quiet_NaN();
  }
  return written_number(text, "number");
}

std::int16_t text_to_int16(std::string_view text) {
  return text_to_integer<std::int16_t>(text, kInt16);
}

std::int32_t text_to_int32(std::string_view text) {
  return text_to_integer<std::int32_t>(text, kInt32);
}

std::optional<double> number_of(std::string_view text) {
  const std::optional<Decimal> number = detail::decimal_of(text);
  return number ? detail::to_float(*number) : std::nullopt;
}

Date text_to_date(std::string_view text) {
  const std::optional<Date> date = date_of(text);
  if (!date) {
    fail_mismatch(text, "date");
  }
  return *date;
}

std::int16_t double_to_int16(double value) {
  return double_to_integer<std::int16_t>(value, kInt16);
}

std::int32_t double_to_int32(double value) {
  return double_to_integer<std::int32_t>(value, kInt32);
}

double round_half_even(double value, int places) {
  if (!std::isfinite(value)) {
    return value;
  }
  // A half is one in the number's shortest text: 2.675 counts as a half of two places, though the
  // float nearest to it lies a little below.
  Decimal number = detail::shortest_decimal(value);
  detail::round_to(number, places, detail::Halves::kToEven);
  // Beyond the range only where whole digits of the largest floats are rounded away.
  return detail::to_float(number).value_or(value);
}

std::string integer_text(std::int64_t value) {
  std::array<char, 32> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), result.ptr};
}

std::string boolean_text(bool value) {
  return value ? "True" : "False";
}

std::string_view trim_blanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string upper_case(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), upper);
  return result;
}

bool equal_ignoring_case(std::string_view a, std::string_view b) {
  // Most names come as they are asked for.
  return a == b || std::equal(a.begin(), a.end(), b.begin(), b.end(),
                              [](char x, char y) { return upper(x) == upper(y); });
}

}  // namespace bvconn::conversions

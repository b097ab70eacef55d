#include "bvconn/platform/soap/float_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace bvconn::detail {

namespace {

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

std::optional<double> short_decimal_of(std::string_view text) {
  constexpr std::array kPowers{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                               1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  constexpr std::size_t kMostDigits = 15;
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  if (text.empty() || text.size() > kMostDigits) return std::nullopt;
  std::int64_t digits = 0;
  std::size_t places = 0;
  std::size_t point = std::string_view::npos;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (is_digit(text[i])) {
      digits = digits * 10 + (text[i] - '0');
    } else if (text[i] == '.' && point == std::string_view::npos) {
      point = i;
    } else {
      return std::nullopt;
    }
  }
  if (point != std::string_view::npos) places = text.size() - 1 - point;
  // The forms with nothing on a side of the point are not looked into here.
  if (point == 0 || (point != std::string_view::npos && places == 0)) return std::nullopt;
  const double value = static_cast<double>(digits) / kPowers[places];
  return negative ? -value : value;
}

std::optional<double> float_of(std::string_view text) {
  if (text == "INF") return std::numeric_limits<double>::infinity();
  if (text == "-INF") return -std::numeric_limits<double>::infinity();
  if (text == "NaN") return std::numeric_limits<double>::quiet_NaN();
  // "inf" and "nan" in the words of `from_chars` are no numbers here.
  const auto allowed = [](char c) {
    return is_digit(c) || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
  };
  if (text.empty() || !std::all_of(text.begin(), text.end(), allowed)) return std::nullopt;
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (stop != end) return std::nullopt;
  if (error == std::errc()) return value;
  // Out of range: too small is zero, too large is no number that we could hand on.
  const auto exponent = text.find_first_of("eE");
  const bool small = exponent != std::string_view::npos && text.substr(exponent + 1, 1) == "-";
  if (error != std::errc::result_out_of_range || !small) return std::nullopt;
  return text.front() == '-' ? -0.0 : 0.0;
}

}  // namespace bvconn::detail

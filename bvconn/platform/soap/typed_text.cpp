#include "bvconn/platform/soap/typed_text.h"

#include <time.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/soap_uris.h"

namespace bvconn::detail {

namespace {

enum class Kind { kString, kBoolean, kInteger, kFloat, kDateTime, kDate, kBase64, kHex };

/// A type that does not read as a string; for integers with the range and the variant's type.
struct SimpleType {
  std::string_view name;
  Kind kind;
  Variant::Type held = Variant::Type::kString;
  std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
  std::int64_t highest = std::numeric_limits<std::int64_t>::max();
};

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

// In the order of the alphabet, for the look-up. `timeInstant` is the dateTime of 1999, `base64`
// that of the SOAP encoding.
constexpr std::array kSimpleTypes{
    SimpleType{"base64", Kind::kBase64},
    SimpleType{"base64Binary", Kind::kBase64},
    SimpleType{"boolean", Kind::kBoolean},
    SimpleType{"byte", Kind::kInteger, Variant::Type::kInt16, -128, 127},
    SimpleType{"date", Kind::kDate},
    SimpleType{"dateTime", Kind::kDateTime},
    SimpleType{"decimal", Kind::kFloat},
    SimpleType{"double", Kind::kFloat},
    SimpleType{"float", Kind::kFloat},
    SimpleType{"hexBinary", Kind::kHex},
    SimpleType{"int", Kind::kInteger, Variant::Type::kInt32, INT32_MIN, INT32_MAX},
    SimpleType{"integer", Kind::kInteger, Variant::Type::kInt64},
    SimpleType{"long", Kind::kInteger, Variant::Type::kInt64},
    SimpleType{"negativeInteger", Kind::kInteger, Variant::Type::kInt64, kLowest, -1},
    SimpleType{"nonNegativeInteger", Kind::kInteger, Variant::Type::kInt64, 0, kHighest},
    SimpleType{"nonPositiveInteger", Kind::kInteger, Variant::Type::kInt64, kLowest, 0},
    SimpleType{"positiveInteger", Kind::kInteger, Variant::Type::kInt64, 1, kHighest},
    SimpleType{"short", Kind::kInteger, Variant::Type::kInt16, INT16_MIN, INT16_MAX},
    SimpleType{"timeInstant", Kind::kDateTime},
    SimpleType{"unsignedByte", Kind::kInteger, Variant::Type::kInt16, 0, 255},
    SimpleType{"unsignedInt", Kind::kInteger, Variant::Type::kInt64, 0, UINT32_MAX},
    SimpleType{"unsignedLong", Kind::kInteger, Variant::Type::kInt64, 0, kHighest},
    SimpleType{"unsignedShort", Kind::kInteger, Variant::Type::kInt32, 0, 65535},
};
static_assert(std::is_sorted(kSimpleTypes.begin(), kSimpleTypes.end(),
                             [](const auto& a, const auto& b) { return a.name < b.name; }));

const SimpleType* find_type(std::string_view name) {
  const auto found = std::lower_bound(
      kSimpleTypes.begin(), kSimpleTypes.end(), name,
      [](const SimpleType& type, std::string_view key) { return type.name < key; });
  return found != kSimpleTypes.end() && found->name == name ? &*found : nullptr;
}

std::optional<Variant> boolean_value(std::string_view text) {
  if (text == "true" || text == "1") return Variant(true);
  if (text == "false" || text == "0") return Variant(false);
  return std::nullopt;
}

/// Text without a plus sign in front, which `from_chars` does not know.
std::string_view without_plus(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

std::optional<Variant> integer_value(std::string_view text, const SimpleType& type) {
  text = without_plus(text);
  std::int64_t value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end || value < type.lowest || value > type.highest) {
    return std::nullopt;
  }
  if (type.held == Variant::Type::kInt16) return Variant(static_cast<std::int16_t>(value));
  if (type.held == Variant::Type::kInt32) return Variant(static_cast<std::int32_t>(value));
  return Variant(value);
}

std::optional<Variant> float_value(std::string_view text) {
  text = without_plus(text);
  if (text == "INF") return Variant(std::numeric_limits<double>::infinity());
  if (text == "-INF") return Variant(-std::numeric_limits<double>::infinity());
  if (text == "NaN") return Variant(std::numeric_limits<double>::quiet_NaN());
  const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
  // "inf" and "nan" in the words of `from_chars` are no numbers here.
  const auto allowed = [&](char c) {
    return is_digit(c) || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
  };
  if (text.empty() || !std::all_of(text.begin(), text.end(), allowed)) return std::nullopt;
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (stop != end) return std::nullopt;
  if (error == std::errc()) return Variant(value);
  // Out of range: too small is zero, too large is no number that we could hand on.
  const auto exponent = text.find_first_of("eE");
  const bool small = exponent != std::string_view::npos && text.substr(exponent + 1, 1) == "-";
  if (error != std::errc::result_out_of_range || !small) return std::nullopt;
  return Variant(text.front() == '-' ? -0.0 : 0.0);
}

/// Reads the parts of a moment from front to back.
class MomentReader {
 public:
  explicit MomentReader(std::string_view text) : rest_(text) {}

  bool at_end() const { return rest_.empty(); }
  bool next_is(char c) const { return !rest_.empty() && rest_.front() == c; }
  bool skip(char c) {
    if (!next_is(c)) return false;
    rest_.remove_prefix(1);
    return true;
  }
  /// A number of so many digits, or failure when there are fewer.
  bool digits(std::size_t count, std::int32_t& value) {
    if (rest_.size() < count) return false;
    value = 0;
    for (const char c : rest_.substr(0, count)) {
      if (c < '0' || c > '9') return false;
      value = value * 10 + (c - '0');
    }
    rest_.remove_prefix(count);
    return true;
  }
  /// Decimal places, of which the first three count.
  bool milliseconds(std::int32_t& value) {
    std::size_t count = 0;
    value = 0;
    while (!rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9') {
      if (count < 3) value = value * 10 + (rest_.front() - '0');
      rest_.remove_prefix(1);
      ++count;
    }
    for (std::size_t place = count; place < 3; ++place) value *= 10;
    return count > 0;
  }

 private:
  std::string_view rest_;
};

std::int32_t days_in_month(std::int32_t year, std::int32_t month) {
  constexpr std::array<std::int32_t, 12> kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[static_cast<std::size_t>(month - 1)];
}

bool read_day(MomentReader& reader, CivilDate& civil) {
  return reader.digits(4, civil.year) && reader.skip('-') && reader.digits(2, civil.month) &&
         reader.skip('-') && reader.digits(2, civil.day) && civil.year >= 1 && civil.month >= 1 &&
         civil.month <= 12 && civil.day >= 1 && civil.day <= days_in_month(civil.year, civil.month);
}

/// The time of day. 24:00:00 is the beginning of the next day, which `next_day` tells.
bool read_time(MomentReader& reader, CivilDate& civil, bool& next_day) {
  if (!reader.digits(2, civil.hour) || !reader.skip(':') || !reader.digits(2, civil.minute) ||
      !reader.skip(':') || !reader.digits(2, civil.second)) {
    return false;
  }
  civil.millisecond = 0;
  if (reader.skip('.') && !reader.milliseconds(civil.millisecond)) return false;
  next_day = civil.hour == 24 && civil.minute == 0 && civil.second == 0 && civil.millisecond == 0;
  if (next_day) civil.hour = 0;
  return civil.hour < 24 && civil.minute < 60 && civil.second < 60;
}

/// The zone at the end, as minutes east of Greenwich; `has_zone` is false where there is none.
bool read_zone(MomentReader& reader, bool& has_zone, std::int32_t& minutes_east) {
  has_zone = !reader.at_end();
  minutes_east = 0;
  if (!has_zone || reader.skip('Z')) return reader.at_end();
  const bool west = reader.next_is('-');
  std::int32_t hours = 0;
  std::int32_t minutes = 0;
  if ((!reader.skip('-') && !reader.skip('+')) || !reader.digits(2, hours) || !reader.skip(':') ||
      !reader.digits(2, minutes) || hours > 14 || minutes > 59) {
    return false;
  }
  minutes_east = (west ? -1 : 1) * (hours * 60 + minutes);
  return reader.at_end();
}

constexpr std::int64_t kMillisecondsPerDay = 86'400'000;

/// The local time at a moment of universal time.
Date to_local(Date universal) {
  const Date epoch = from_civil({.year = 1970, .month = 1, .day = 1});
  const std::int64_t since_epoch = universal.milliseconds - epoch.milliseconds;
  std::int64_t seconds = since_epoch / 1000;
  if (since_epoch % 1000 < 0) --seconds;
  const auto moment = static_cast<time_t>(seconds);
  tm local{};
  if (localtime_r(&moment, &local) == nullptr) return universal;
  return {universal.milliseconds + std::int64_t{local.tm_gmtoff} * 1000};
}

std::optional<Variant> date_time_value(std::string_view text) {
  MomentReader reader(text);
  CivilDate civil;
  bool next_day = false;
  bool has_zone = false;
  std::int32_t minutes_east = 0;
  if (!read_day(reader, civil) || !reader.skip('T') || !read_time(reader, civil, next_day) ||
      !read_zone(reader, has_zone, minutes_east)) {
    return std::nullopt;
  }
  Date moment = from_civil(civil);
  if (next_day) moment.milliseconds += kMillisecondsPerDay;
  if (!has_zone) return Variant(moment);
  moment.milliseconds -= std::int64_t{minutes_east} * 60'000;
  return Variant(to_local(moment));
}

/// A day stays the day that it names, whatever its zone.
std::optional<Variant> date_value(std::string_view text) {
  MomentReader reader(text);
  CivilDate civil;
  bool has_zone = false;
  std::int32_t minutes_east = 0;
  if (!read_day(reader, civil) || !read_zone(reader, has_zone, minutes_east)) return std::nullopt;
  civil.hour = civil.minute = civil.second = civil.millisecond = 0;
  return Variant(from_civil(civil));
}

int hex_digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

std::optional<Variant> hex_value(std::string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  Bytes bytes;
  bytes.reserve(text.size() / 2);
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const int high = hex_digit(text[i]);
    const int low = hex_digit(text[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes.push_back(static_cast<std::byte>(high * 16 + low));
  }
  return Variant(std::move(bytes));
}

constexpr std::string_view kBase64Digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<std::int8_t, 256> make_base64_values() {
  std::array<std::int8_t, 256> values{};
  for (auto& value : values) value = -1;
  for (std::size_t i = 0; i < kBase64Digits.size(); ++i) {
    values[static_cast<unsigned char>(kBase64Digits[i])] = static_cast<std::int8_t>(i);
  }
  return values;
}

std::string float_text(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  return conversions::double_text(value);
}

QualifiedName unresolved_name(std::string_view text) {
  return {.name_space = {}, .local = std::string(split_name(text).local)};
}

}  // namespace

std::optional<Variant> typed_value(std::string_view text, std::string_view type,
                                   std::string_view type_space) {
  const bool known = !type.empty() && (is_xsd(type_space) || type_space == kEncodingUri);
  if (known && type == "QName") return Variant(unresolved_name(trim_xml_space(text)));
  const SimpleType* simple = known ? find_type(type) : nullptr;
  if (simple == nullptr) return Variant(text);
  const std::string_view trimmed = trim_xml_space(text);
  switch (simple->kind) {
    case Kind::kString:
      break;
    case Kind::kBoolean:
      return boolean_value(trimmed);
    case Kind::kInteger:
      return integer_value(trimmed, *simple);
    case Kind::kFloat:
      return float_value(trimmed);
    case Kind::kDateTime:
      return date_time_value(trimmed);
    case Kind::kDate:
      return date_value(trimmed);
    case Kind::kBase64:
      if (auto bytes = from_base64(trimmed)) return Variant(std::move(*bytes));
      return std::nullopt;
    case Kind::kHex:
      return hex_value(trimmed);
  }
  return Variant(text);
}

std::string value_text(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::kBoolean:
      return value.boolean() ? "true" : "false";
    case Variant::Type::kDouble:
      return float_text(value.number());
    case Variant::Type::kDate:
      return conversions::iso_date_text(value.date());
    case Variant::Type::kBytes:
      return to_base64(value.bytes());
    default:
      return to_text(value);
  }
}

std::optional<Bytes> from_base64(std::string_view text) {
  static constexpr auto kValues = make_base64_values();
  Bytes bytes;
  bytes.reserve(text.size() / 4 * 3);
  std::uint32_t bits = 0;
  std::size_t digits = 0;
  std::size_t padding = 0;
  for (const char c : text) {
    if (is_xml_space(c)) continue;
    const std::int8_t value = kValues[static_cast<unsigned char>(c)];
    if (c == '=') {
      ++padding;
      continue;
    }
    if (value < 0 || padding > 0) return std::nullopt;
    bits = bits << 6 | static_cast<std::uint32_t>(value);
    if (++digits % 4 != 0) continue;
    for (const int shift : {16, 8, 0}) bytes.push_back(static_cast<std::byte>(bits >> shift));
    bits = 0;
  }
  const std::size_t left = digits % 4;
  if (left == 1 || (left + padding) % 4 != 0) return std::nullopt;
  if (left >= 2) bytes.push_back(static_cast<std::byte>(bits >> (left == 2 ? 4 : 10)));
  if (left == 3) bytes.push_back(static_cast<std::byte>(bits >> 2));
  return bytes;
}

std::string to_base64(std::span<const std::byte> bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    std::uint32_t bits = 0;
    for (std::size_t j = 0; j < 3; ++j) {
      bits = bits << 8 | (j < count ? std::to_integer<std::uint32_t>(bytes[i + j]) : 0U);
    }
    for (std::size_t j = 0; j < 4; ++j) {
      text.push_back(j <= count ? kBase64Digits[bits >> (18 - 6 * j) & 63U] : '=');
    }
  }
  return text;
}

}  // namespace bvconn::detail

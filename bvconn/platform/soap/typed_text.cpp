#include "bvconn/platform/soap/typed_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/float_text.h"
#include "bvconn/platform/soap/moment_text.h"
#include "bvconn/platform/soap/soap_uris.h"

namespace bvconn::detail {

namespace {

enum class Kind { kBoolean, kInteger, kFloat, kDateTime, kDate, kBase64, kHex, kName };

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

// By length, for the look-up. `timeInstant` is the dateTime of 1999, `base64` that of the SOAP
// encoding.
constexpr std::array kSimpleTypes{
    SimpleType{"int", Kind::kInteger, Variant::Type::kInt32, INT32_MIN, INT32_MAX},
    SimpleType{"byte", Kind::kInteger, Variant::Type::kInt16, -128, 127},
    SimpleType{"date", Kind::kDate},
    SimpleType{"long", Kind::kInteger, Variant::Type::kInt64},
    SimpleType{"float", Kind::kFloat},
    SimpleType{"short", Kind::kInteger, Variant::Type::kInt16, INT16_MIN, INT16_MAX},
    SimpleType{"QName", Kind::kName},
    SimpleType{"double", Kind::kFloat},
    SimpleType{"base64", Kind::kBase64},
    SimpleType{"boolean", Kind::kBoolean},
    SimpleType{"decimal", Kind::kFloat},
    SimpleType{"integer", Kind::kInteger, Variant::Type::kInt64},
    SimpleType{"dateTime", Kind::kDateTime},
    SimpleType{"hexBinary", Kind::kHex},
    SimpleType{"timeInstant", Kind::kDateTime},
    SimpleType{"unsignedInt", Kind::kInteger, Variant::Type::kInt64, 0, UINT32_MAX},
    SimpleType{"base64Binary", Kind::kBase64},
    SimpleType{"unsignedByte", Kind::kInteger, Variant::Type::kInt16, 0, 255},
    SimpleType{"unsignedLong", Kind::kInteger, Variant::Type::kInt64, 0, kHighest},
    SimpleType{"unsignedShort", Kind::kInteger, Variant::Type::kInt32, 0, 65535},
    SimpleType{"negativeInteger", Kind::kInteger, Variant::Type::kInt64, kLowest, -1},
    SimpleType{"positiveInteger", Kind::kInteger, Variant::Type::kInt64, 1, kHighest},
    SimpleType{"nonNegativeInteger", Kind::kInteger, Variant::Type::kInt64, 0, kHighest},
    SimpleType{"nonPositiveInteger", Kind::kInteger, Variant::Type::kInt64, kLowest, 0},
};
constexpr std::size_t kLongestName = kSimpleTypes.back().name.size();

/// For each length the first type with a name as long or longer.
constexpr std::array<std::uint8_t, kLongestName + 2> make_first_of_length() {
  std::array<std::uint8_t, kLongestName + 2> first{};
  for (std::size_t length = 0; length < first.size(); ++length) {
    while (first[length] < kSimpleTypes.size() &&
           kSimpleTypes[first[length]].name.size() < length) {
      ++first[length];
    }
  }
  return first;
}
constexpr auto kFirstOfLength = make_first_of_length();
static_assert(std::is_sorted(kSimpleTypes.begin(), kSimpleTypes.end(),
                             [](const auto& a, const auto& b) {
                               return a.name.size() < b.name.size();
                             }));

/// A value that was read, or Empty.
template <class Value>
Variant held(std::optional<Value> value) {
  return value ? Variant(*std::move(value)) : Variant();
}

Variant boolean_value(std::string_view text) {
  const bool truth = text == "true" || text == "1";
  if (truth || text == "false" || text == "0") return truth;
  return {};
}

/// Text without a plus sign in front, which `from_chars` does not know.
std::string_view without_plus(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

Variant integer_value(std::string_view text, const SimpleType& type) {
  text = without_plus(text);
  std::int64_t value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end || value < type.lowest || value > type.highest) {
    return {};
  }
  if (type.held == Variant::Type::kInt16) return static_cast<std::int16_t>(value);
  if (type.held == Variant::Type::kInt32) return static_cast<std::int32_t>(value);
  return value;
}

Variant float_value(std::string_view text) {
  text = without_plus(text);
  std::optional<double> value = short_decimal_of(text);
  if (!value) value = float_of(text);
  return held(value);
}

int hex_digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

std::optional<Bytes> from_hex(std::string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  Bytes bytes;
  bytes.reserve(text.size() / 2);
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const int high = hex_digit(text[i]);
    const int low = hex_digit(text[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes.push_back(static_cast<std::byte>(high * 16 + low));
  }
  return bytes;
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

/// The shortest form of XML Schema, which is not the text that people read.
std::string xsd_double_text(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  std::array<char, 32> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), result.ptr};
}

QualifiedName unresolved_name(std::string_view text) {
  return {.name_space = {}, .local = std::string(split_name(text).local)};
}

}  // namespace

std::optional<Variant> typed_value(std::string_view text, std::string_view type,
                                   std::string_view type_space) {
  std::optional<Variant> value(std::in_place, typed_value(text, type_index(type, type_space)));
  if (value->empty()) value.reset();
  return value;
}

TypeIndex type_index(std::string_view type, std::string_view type_space) noexcept {
  if (type.empty() || type.size() > kLongestName) return kStringType;
  for (std::size_t i = kFirstOfLength[type.size()]; i < kFirstOfLength[type.size() + 1]; ++i) {
    const std::string_view name = kSimpleTypes[i].name;
    if (name.front() != type.front() || name != type) continue;
    return is_xsd(type_space) || type_space == kEncodingUri ? static_cast<TypeIndex>(i + 1)
                                                            : kStringType;
  }
  return kStringType;
}

Variant typed_value(std::string_view text, TypeIndex type) {
  if (type == kStringType) return text;
  const SimpleType& simple = kSimpleTypes[type - std::size_t{1}];
  const std::string_view trimmed = trim_xml_space(text);
  switch (simple.kind) {
    case Kind::kBoolean:
      return boolean_value(trimmed);
    case Kind::kInteger:
      return integer_value(trimmed, simple);
    case Kind::kFloat:
      return float_value(trimmed);
    case Kind::kDateTime:
      return held(date_time_of(trimmed));
    case Kind::kDate:
      return held(day_of(trimmed));
    case Kind::kBase64:
      return held(from_base64(trimmed));
    case Kind::kHex:
      return held(from_hex(trimmed));
    case Kind::kName:
      return unresolved_name(trimmed);
  }
  return {};
}

std::string value_text(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::kBoolean:
      return value.boolean() ? "true" : "false";
    case Variant::Type::kDouble:
      return xsd_double_text(value.number());
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

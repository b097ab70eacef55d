// Numbers, dates and the types of XML Schema: what reads must be written so that it reads the same,
// and what does not read fails with one of two numbers.
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/float_text.h"
#include "bvconn/platform/soap/moment_text.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/soap_uris.h"
#include "bvconn/platform/soap/typed_text.h"
#include "fuzzing.h"

namespace {

using namespace bvconn;  // NOLINT(google-build-using-namespace): the interface under test
using fuzz::Choices;
using fuzz::require;

/// What the conversion gives, or the number of its error: 6 or 13.
template <typename Convert>
auto result_of(Convert convert, std::int32_t& number) -> std::optional<decltype(convert())> {
  number = 0;
  try {
    return convert();
  } catch (const Error& error) {
    fuzz::require_error(error, {error_numbers::kOverflow, error_numbers::kTypeMismatch});
    number = error.number;
    return std::nullopt;
  }
}

bool same(double a, double b) {
  return a == b || (std::isnan(a) && std::isnan(b));
}

void check_number_text(const std::string& text) {
  std::int32_t number = 0;
  const auto read = result_of([&] { return conversions::text_to_double(text); }, number);
  const std::optional<double> numeric = conversions::number_of(text);
  require(!numeric || (read && same(*read, *numeric)), "two readings of one number", text);
  const auto narrow = result_of([&] { return conversions::text_to_int32(text); }, number);
  require(!narrow || read, "a whole number that is no number", text);
  if (narrow) {
    require(std::fabs(*read - *narrow) <= 0.5, "a whole number far from its number", text);
    const auto short_one = result_of([&] { return conversions::text_to_int16(text); }, number);
    const bool is_short = *narrow == static_cast<std::int16_t>(*narrow);
    require(is_short == short_one.has_value(), "16 bits hold another range", text);
    require(!short_one || *short_one == *narrow, "16 bits hold another number", text);
  } else if (read && std::isfinite(*read)) {
    require(number == error_numbers::kOverflow, "a number that is none as a whole one", text);
  }
  const auto truth = result_of([&] { return conversions::text_to_boolean(text); }, number);
  require(!truth || !numeric || *truth == (*numeric != 0), "a number with another truth", text);
}

void check_double(double value) {
  const std::string text = conversions::double_text(value);
  require(same(conversions::text_to_double(text), value), "a number reads back differently", text);
  const auto narrow = static_cast<float>(value);
  if (std::isfinite(narrow)) {
    const std::string shorter = conversions::float_text(narrow);
    require(static_cast<float>(conversions::text_to_double(shorter)) == narrow,
            "a short number reads back differently", shorter);
  }
  if (!std::isfinite(value)) return;
  for (const std::string_view pattern : {"000", "0.00"}) {
    const std::string shown = conversions::format_number(value, pattern);
    const bool is_near = std::fabs(conversions::text_to_double(shown) - value) <=
                         (pattern == "000" ? 0.5 : 0.005) * (1 + 1e-9) + std::fabs(value) * 1e-15;
    require(is_near, "a picture shows another number", shown);
  }
}

void check_date(Date date) {
  const std::string iso = conversions::iso_date_text(date);
  require(conversions::text_to_date(iso).milliseconds / 1000 == date.milliseconds / 1000 ||
              date.milliseconds % 1000 != 0,
          "a moment reads back differently", iso);
  require(detail::date_time_of(iso) == date, "a moment of XML Schema reads differently", iso);
  require(from_civil(to_civil(date)) == date, "a moment's fields are others", iso);
  require(from_serial_days(to_serial_days(date)) == date, "a serial day is another moment", iso);
  Date second = date;
  second.milliseconds -= to_civil(date).millisecond;
  const std::string shown = conversions::date_text(second);
  require(conversions::text_to_date(shown) == second, "a date reads back differently", shown);
}

// The years that dates can have, in milliseconds.
Date date_in_range(std::uint64_t bits) {
  static const Date first = from_civil({.year = 100, .month = 1, .day = 1, .hour = 0});
  static const Date last = from_civil({.year = 9999, .month = 12, .day = 31, .hour = 23});
  const auto span = static_cast<std::uint64_t>(last.milliseconds - first.milliseconds);
  return Date{first.milliseconds + static_cast<std::int64_t>(bits % span)};
}

void check_date_text(const std::string& text) {
  const std::optional<Date> date = conversions::date_of(text);
  if (date) {
    const CivilDate fields = to_civil(*date);
    require(fields.year >= 100 && fields.year <= 9999, "a year that no date has", text);
    check_date(*date);
  }
  for (const std::string_view pattern : {"000", "0.00", "mm/dd/yyyy", "m/d/yyyy"}) {
    std::int32_t number = 0;
    const auto shown = result_of([&] { return conversions::format_text(text, pattern); }, number);
    require(!shown || date || conversions::number_of(text) || *shown == text,
            "a text that is neither number nor date was changed", text);
  }
}

constexpr std::array<std::string_view, 24> kTypes{"base64",
                                                  "base64Binary",
                                                  "boolean",
                                                  "byte",
                                                  "date",
                                                  "dateTime",
                                                  "decimal",
                                                  "double",
                                                  "float",
                                                  "hexBinary",
                                                  "int",
                                                  "integer",
                                                  "long",
                                                  "negativeInteger",
                                                  "QName",
                                                  "nonNegativeInteger",
                                                  "positiveInteger",
                                                  "nonPositiveInteger",
                                                  "short",
                                                  "timeInstant",
                                                  "unsignedByte",
                                                  "unsignedInt",
                                                  "unsignedLong",
                                                  "unsignedShort"};

// The short way to a number leads where the long one does.
void check_float(const std::string& text) {
  const auto quick = detail::short_decimal_of(text);
  if (!quick) return;
  const auto any = detail::float_of(text);
  require(any && same(*quick, *any), "a short decimal is another number", text);
}

void check_typed(const std::string& text, std::string_view type) {
  check_float(text);
  const auto value = detail::typed_value(text, type, detail::kEncodingUri);
  // A name is not looked at so closely: one with a blank in it loses that when it is read again.
  if (!value || value->is(Variant::Type::kString)) return;
  if (value->is(Variant::Type::kQualifiedName)) return;
  const std::string written = detail::value_text(*value);
  SoapNode node = SoapNode::make("a");
  node.Value(*value);
  const std::string own_type(node.Type());
  const auto again = detail::typed_value(written, own_type, detail::kEncodingUri);
  require(again.has_value(), "a value is written as what is none", written);
  const bool is_nan = value->is(Variant::Type::kDouble) && std::isnan(value->number());
  require(is_nan ? std::isnan(again->number()) : *again == *value, "a value is written as another",
          written);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Choices choices(data, size);
  switch (choices.below(4)) {
    case 0:
      check_double(std::bit_cast<double>(choices.number(8)));
      check_date(date_in_range(choices.number(8)));
      break;
    case 1:
      check_number_text(std::string(choices.rest()));
      break;
    case 2:
      check_date_text(std::string(choices.rest()));
      break;
    default: {
      const std::string_view type = kTypes[choices.below(kTypes.size())];
      check_typed(std::string(choices.rest()), type);
      break;
    }
  }
  return 0;
}

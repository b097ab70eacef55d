#include "bvconn/platform/torvexlib/json_arguments.h"

#include <cmath>
#include <limits>

#include <nlohmann/json.hpp>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn::detail {
namespace {

using nlohmann::json;

/// Where a value stands, for the description of an error.
struct Where {
  std::string_view operation;
  std::size_t argument = 0;  ///< from 1
};

[[noreturn]] void fail_mismatch(const Where& where, std::string_view what) {
  throw Error(error_numbers::kTypeMismatch, "BVConn",
              "Argument " + std::to_string(where.argument) + " of " + std::string(where.operation) +
                  " cannot be sent: " + std::string(what));
}

json text_value(const Where& where, const std::string& text) {
  if (!is_utf8(text)) {
    fail_mismatch(where, "the text " + shown(text) + " is not UTF-8");
  }
  return text;
}

json number_value(const Where& where, double number) {
  if (!std::isfinite(number)) {
    fail_mismatch(where, "JSON has no number " + conversions::double_text(number));
  }
  return number;
}

json value_of(const Where& where, const Variant& value);

json array_value(const Where& where, const VariantArray& array) {
  if (!array.allocated()) {
    return nullptr;
  }
  json list = json::array();
  for (const Variant& item : array.items()) {
    list.push_back(value_of(where, item));
  }
  return list;
}

json value_of(const Where& where, const Variant& value) {
  switch (value.type()) {
    case Variant::Type::kEmpty:
    case Variant::Type::kMissing:
      return nullptr;
    case Variant::Type::kBoolean:
      return value.boolean();
    case Variant::Type::kInt16:
      return value.int16();
    case Variant::Type::kInt32:
      return value.int32();
    case Variant::Type::kInt64:
      return value.int64();
    case Variant::Type::kDouble:
      return number_value(where, value.number());
    case Variant::Type::kString:
      return text_value(where, value.string());
    case Variant::Type::kDate:
      return conversions::iso_date_text(value.date());
    case Variant::Type::kArray:
      return array_value(where, value.array());
    case Variant::Type::kQualifiedName:
      return text_value(where, value.qualified_name().local);
    case Variant::Type::kNode:
      if (!value.node()) {
        return nullptr;
      }
      break;
    case Variant::Type::kBytes:
      break;
  }
  fail_mismatch(where, "JSON has no form for the type " + std::string(type_name(value.type())));
}

/// Error numbers are written with their sign or as the same 32 bits without one.
std::optional<std::int32_t> error_number(const json& number) {
  if (!number.is_number_integer()) {
    return std::nullopt;
  }
  // What lies beyond 64 bits was read as a float, so this loses nothing.
  const bool huge = number.is_number_unsigned() &&
                    number.get<std::uint64_t>() > std::numeric_limits<std::uint32_t>::max();
  const auto value = huge ? std::numeric_limits<std::int64_t>::max() : number.get<std::int64_t>();
  if (value < std::numeric_limits<std::int32_t>::min() ||
      value > std::numeric_limits<std::uint32_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(value);
}

}  // namespace

std::string json_arguments(std::string_view operation, std::span<const Variant> arguments) {
  json list = json::array();
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    list.push_back(value_of({.operation = operation, .argument = i + 1}, arguments[i]));
  }
  json body = json::object();
  body["arguments"] = std::move(list);
  return body.dump();
}

std::optional<Error> json_error(const std::string& body) {
  const json parsed = json::parse(body, nullptr, false);
  if (!parsed.is_object()) {
    return std::nullopt;
  }
  const auto number = parsed.find("number");
  const auto source = parsed.find("source");
  const auto description = parsed.find("description");
  if (number == parsed.end() || source == parsed.end() || description == parsed.end() ||
      !source->is_string() || !description->is_string()) {
    return std::nullopt;
  }
  const std::optional<std::int32_t> value = error_number(*number);
  if (!value) {
    return std::nullopt;
  }
  return Error(*value, source->get_ref<const std::string&>(),
               description->get_ref<const std::string&>());
}

}  // namespace bvconn::detail

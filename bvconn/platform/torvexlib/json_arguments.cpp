#include "bvconn/platform/torvexlib/json_arguments.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include <nlohmann/json.hpp>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn::detail {
namespace {

// Of scalars alone: an array or an object of this type takes memory when it is destroyed, and where
// there is none the process would end.
using nlohmann::json;

constexpr const char* kNull = "null";

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

std::string text_value(const Where& where, const std::string& text) {
  if (!is_utf8(text)) {
    fail_mismatch(where, "the text " + shown(text) + " is not UTF-8");
  }
  return json(text).dump();
}

std::string number_value(const Where& where, double number) {
  if (!std::isfinite(number)) {
    fail_mismatch(where, "JSON has no number " + conversions::double_text(number));
  }
  return json(number).dump();
}

std::string value_of(const Where& where, const Variant& value);

std::string array_value(const Where& where, const VariantArray& array) {
  if (!array.allocated()) {
    return kNull;
  }
  std::string list = "[";
  for (const Variant& item : array.items()) {
    if (list.size() > 1) list.append(",");
    list.append(value_of(where, item));
  }
  return list.append("]");
}

std::string value_of(const Where& where, const Variant& value) {
  switch (value.type()) {
    case Variant::Type::kEmpty:
    case Variant::Type::kMissing:
      return kNull;
    case Variant::Type::kBoolean:
      return json(value.boolean()).dump();
    case Variant::Type::kInt16:
      return json(value.int16()).dump();
    case Variant::Type::kInt32:
      return json(value.int32()).dump();
    case Variant::Type::kInt64:
      return json(value.int64()).dump();
    case Variant::Type::kDouble:
      return number_value(where, value.number());
    case Variant::Type::kString:
      return text_value(where, value.string());
    case Variant::Type::kDate:
      return json(conversions::iso_date_text(value.date())).dump();
    case Variant::Type::kArray:
      return array_value(where, value.array());
    case Variant::Type::kQualifiedName:
      return text_value(where, value.qualified_name().local);
    case Variant::Type::kNode:
      if (!value.node()) {
        return kNull;
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

/// Takes the members of an error's object as the text is read; of what is no scalar, null.
class ErrorReader final : public nlohmann::json_sax<json> {
 public:
  json number;
  json source;
  json description;

  bool null() override { return take(nullptr); }
  bool boolean(bool value) override { return take(value); }
  bool number_integer(number_integer_t value) override { return take(value); }
  bool number_unsigned(number_unsigned_t value) override { return take(value); }
  bool number_float(number_float_t value, const string_t& /*text*/) override { return take(value); }
  bool string(string_t& value) override { return take(std::move(value)); }
  bool binary(binary_t& /*value*/) override { return false; }
  bool key(string_t& name) override {
    if (depth_ == 1) key_ = std::move(name);
    return true;
  }
  bool start_object(std::size_t /*size*/) override { return begin(false); }
  bool end_object() override { return end(); }
  bool start_array(std::size_t /*size*/) override { return begin(true); }
  bool end_array() override { return end(); }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override {
    return false;
  }

 private:
  bool begin(bool is_array) {
    // An array has no members, and its items are none of an error.
    if (depth_ == 0 && is_array) return false;
    take(nullptr);
    ++depth_;
    return true;
  }

  bool end() {
    --depth_;
    return true;
  }

  bool take(json value) {
    if (depth_ != 1) return true;
    if (key_ == "number") number = std::move(value);
    if (key_ == "source") source = std::move(value);
    if (key_ == "description") description = std::move(value);
    return true;
  }

  std::size_t depth_ = 0;
  std::string key_;
};

}  // namespace

std::string json_arguments(std::string_view operation, std::span<const Variant> arguments) {
  std::string body = "{\"arguments\":[";
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i != 0) body.append(",");
    body.append(value_of({.operation = operation, .argument = i + 1}, arguments[i]));
  }
  return body.append("]}");
}

std::optional<Error> json_error(const std::string& body) {
  ErrorReader reader;
  if (!json::sax_parse(body, &reader) || !reader.source.is_string() ||
      !reader.description.is_string()) {
    return std::nullopt;
  }
  const std::optional<std::int32_t> value = error_number(reader.number);
  if (!value) {
    return std::nullopt;
  }
  return Error(*value, reader.source.get_ref<const std::string&>(),
               reader.description.get_ref<const std::string&>());
}

}  // namespace bvconn::detail

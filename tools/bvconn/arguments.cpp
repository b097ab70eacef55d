#include "arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"
#include "json_text.h"

namespace bvconn::tool {
namespace {

using automation::Value;
using automation::ValueType;

constexpr int kMaxArrayDepth = 100;
template <class Integer>
std::string range_text() {
  using Limits = std::numeric_limits<Integer>;
  return "a whole number from " + std::to_string(Limits::min()) + " to " +
         std::to_string(Limits::max()) + " is expected";
}

/// The number, if the JSON is a whole one that the type has room for.
template <class Integer>
std::optional<Integer> whole_number(const JsonValue& json) {
  using Limits = std::numeric_limits<Integer>;
  if (const double* const number = json.number()) {
    const bool fits = *number >= Limits::min() && *number <= Limits::max();
    return fits && std::trunc(*number) == *number ? std::optional(static_cast<Integer>(*number))
                                                  : std::nullopt;
  }
  const std::int64_t* const number = json.integer();
  const bool fits = number != nullptr && *number >= Limits::min() && *number <= Limits::max();
  return fits ? std::optional(static_cast<Integer>(*number)) : std::nullopt;
}

template <class Integer>
Value integer_from_json(const JsonValue& json) {
  const auto number = whole_number<Integer>(json);
  if (!number) throw UsageError(range_text<Integer>());
  return Variant(*number);
}

template <class Integer>
Value integer_from_text(std::string_view text) {
  Integer number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw UsageError(range_text<Integer>());
  }
  return Variant(number);
}

bool is_true(const JsonValue* json) {
  return json != nullptr && json->boolean() != nullptr && *json->boolean();
}

std::string expect_string(const JsonValue& json) {
  if (json.text() == nullptr) throw UsageError("a string is expected");
  return *json.text();
}

SoapNode node_from_text(std::string_view xml) {
  try {
    return node_from_xml(xml);
  } catch (const Error& error) {
    throw UsageError("XML is expected: " + error.description);
  }
}

Date date_from_text(const std::string& text) {
  const auto date = conversions::date_of(text);
  // The form of XML and nothing else: "2007-01-05T00:00:00".
  const bool shaped = text.size() >= 19 && text[4] == '-' && text[7] == '-' && text[10] == 'T';
  if (!date || !shaped) {
    throw UsageError("a date such as 2007-01-05T00:00:00 is expected");
  }
  return *date;
}

Variant variant_from_json(const JsonValue& json, int depth = 0);

VariantArray array_from_json(const JsonValue::Array& array, int depth) {
  if (depth == kMaxArrayDepth) throw UsageError("the array is too deep");
  std::vector<Variant> items;
  items.reserve(array.size());
  for (const JsonValue& item : array) items.push_back(variant_from_json(item, depth + 1));
  return VariantArray(std::move(items));
}

Variant variant_from_json(const JsonValue& json, int depth) {
  if (json.is_null()) return {};
  if (const std::string* text = json.text()) return *text;
  if (const bool* boolean = json.boolean()) return *boolean;
  if (const double* number = json.number()) return *number;
  if (const std::int64_t* integer = json.integer()) {
    const auto whole = whole_number<std::int32_t>(json);
    return whole ? Variant(*whole) : Variant(static_cast<double>(*integer));
  }
  if (const JsonValue::Array* array = json.array()) return array_from_json(*array, depth);
  if (is_true(json.only_member("missing"))) return Variant::Missing{};
  if (const JsonValue* date = json.only_member("date")) return date_from_text(expect_string(*date));
  if (const JsonValue* xml = json.only_member("xml")) return node_from_text(expect_string(*xml));
  throw UsageError(
      "a string, boolean, number, array, null, {\"missing\":true}, {\"date\":…} or {\"xml\":…} "
      "is expected");
}

StringArray strings_from_json(const JsonValue& json) {
  if (json.is_null()) return {};
  const auto is_string = [](const JsonValue& item) { return item.text() != nullptr; };
  const JsonValue::Array* const items = json.array();
  if (items == nullptr || !std::all_of(items->begin(), items->end(), is_string)) {
    throw UsageError("an array of strings or null is expected");
  }
  std::vector<std::string> strings;
  strings.reserve(items->size());
  for (const JsonValue& item : *items) strings.push_back(*item.text());
  return strings;
}

SoapNode node_from_json(const JsonValue& json) {
  if (json.is_null()) return {};
  const JsonValue* xml = json.only_member("xml");
  if (xml == nullptr) throw UsageError("{\"xml\":\"…\"} or null is expected");
  return node_from_text(expect_string(*xml));
}

XMLDocument* new_document(CallArguments& arguments) {
  arguments.documents.push_back(std::make_unique<XMLDocument>());
  return arguments.documents.back().get();
}

XMLDocument* document_from_json(const JsonValue& json, CallArguments& arguments) {
  if (json.is_null()) return nullptr;
  if (!is_true(json.only_member("document"))) {
    throw UsageError("{\"document\":true} or null is expected");
  }
  return new_document(arguments);
}

void require_utf8(std::string_view text) {
  try {
    (void)Json(text).dump();
  } catch (const Json::exception&) {
    throw UsageError("the text is not UTF-8");
  }
}

[[noreturn]] void refuse_type(ValueType type) {
  throw UsageError("a " + std::string(automation::type_name(type)) + " cannot be given");
}

}  // namespace

Value value_from_json(const JsonValue& json, ValueType type, CallArguments& arguments) {
  switch (type) {
    case ValueType::kString:
      return Variant(expect_string(json));
    case ValueType::kBoolean:
      if (json.boolean() == nullptr) throw UsageError("true or false is expected");
      return Variant(*json.boolean());
    case ValueType::kInt16:
      return integer_from_json<std::int16_t>(json);
    case ValueType::kInt32:
      return integer_from_json<std::int32_t>(json);
    case ValueType::kVariant:
      return variant_from_json(json);
    case ValueType::kStringArray:
      return strings_from_json(json);
    case ValueType::kSoapNode:
      return Variant(node_from_json(json));
    case ValueType::kXMLDocument:
      return document_from_json(json, arguments);
    default:
      refuse_type(type);
  }
}

Value value_from_text(std::string_view text, ValueType type, CallArguments& arguments) {
  require_utf8(text);
  switch (type) {
    case ValueType::kString:
    case ValueType::kVariant:
      return Variant(text);
    case ValueType::kBoolean:
      try {
        return Variant(conversions::text_to_boolean(text));
      } catch (const Error&) {
        throw UsageError("true or false is expected");
      }
    case ValueType::kInt16:
      return integer_from_text<std::int16_t>(text);
    case ValueType::kInt32:
      return integer_from_text<std::int32_t>(text);
    case ValueType::kSoapNode:
      return Variant(text == "null" ? SoapNode() : node_from_text(text));
    case ValueType::kXMLDocument:
      if (text != "true" && text != "null") throw UsageError("true or null is expected");
      return text == "true" ? new_document(arguments) : nullptr;
    default:
      return value_from_json(parse_json(text), type, arguments);
  }
}

void fill_arguments(const automation::Member& member, const Connection& connection,
                    CallArguments& arguments) {
  arguments.values.resize(member.arguments.size());
  const auto fill = [&](std::string_view name, const ConnectionValue& value) {
    const automation::Argument* argument = member.find_argument(name);
    if (argument == nullptr || value.empty()) return;
    Value& place = arguments.values[static_cast<std::size_t>(argument - member.arguments.data())];
    if (std::holds_alternative<std::monostate>(place)) place = Variant(value.text);
  };
  fill("aServerURL", connection.server);
  fill("aSessionID", connection.session);
}

void require_arguments(const automation::Member& member, CallArguments& arguments) {
  arguments.values.resize(member.arguments.size());
  for (std::size_t index = 0; index < member.arguments.size(); ++index) {
    const bool there = !std::holds_alternative<std::monostate>(arguments.values[index]);
    if (!there && !member.arguments[index].optional) {
      throw UsageError("argument " + member.arguments[index].name + " is required");
    }
  }
}

}  // namespace bvconn::tool

#include "arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <set>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"

namespace bvconn::tool {
namespace {

using automation::Value;
using automation::ValueType;

constexpr int kMaxArrayDepth = 100;
/// Objects and arrays in each other. Values of JSON are copied by recursion, which ends with the
/// stack; no request comes near this.
constexpr int kMaxJsonDepth = 500;

/// Refuses JSON that is too deep, before anything reads it. Text that is not JSON may pass, since
/// no part of it before its first mistake is deeper than the brackets that are counted here.
void check_depth(std::string_view json) {
  int depth = 0;
  bool quoted = false;
  for (std::size_t at = 0; at < json.size(); ++at) {
    const char c = json[at];
    if (quoted && c == '\\') {
      ++at;
    } else if (c == '"') {
      quoted = !quoted;
    } else if (quoted) {
      continue;
    } else if ((c == '{' || c == '[') && ++depth > kMaxJsonDepth) {
      throw UsageError("the JSON nests deeper than " + std::to_string(kMaxJsonDepth));
    } else if (c == '}' || c == ']') {
      --depth;
    }
  }
}

template <class Integer>
std::string range_text() {
  using Limits = std::numeric_limits<Integer>;
  return "a whole number from " + std::to_string(Limits::min()) + " to " +
         std::to_string(Limits::max()) + " is expected";
}

/// The number, if the JSON is a whole one that the type has room for.
template <class Integer>
std::optional<Integer> whole_number(const Json& json) {
  using Limits = std::numeric_limits<Integer>;
  if (json.is_number_float()) {
    const auto number = json.get<double>();
    const bool fits = number >= Limits::min() && number <= Limits::max();
    return fits && std::trunc(number) == number ? std::optional(static_cast<Integer>(number))
                                                : std::nullopt;
  }
  if (json.is_number_unsigned() && json.get<std::uint64_t>() <= std::uint64_t{Limits::max()}) {
    return static_cast<Integer>(json.get<std::uint64_t>());
  }
  if (json.is_number_integer() && !json.is_number_unsigned() &&
      json.get<std::int64_t>() >= Limits::min()) {
    return static_cast<Integer>(json.get<std::int64_t>());
  }
  return std::nullopt;
}

template <class Integer>
Value integer_from_json(const Json& json) {
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

std::string expect_string(const Json& json) {
  if (!json.is_string()) throw UsageError("a string is expected");
  return json.get<std::string>();
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

/// The value of an object with exactly this key, or null.
const Json* only_member(const Json& json, const char* key) {
  const bool has = json.is_object() && json.size() == 1 && json.contains(key);
  return has ? &json.at(key) : nullptr;
}

Variant variant_from_json(const Json& json, int depth = 0) {
  if (json.is_null()) return {};
  if (json.is_string()) return json.get<std::string>();
  if (json.is_boolean()) return json.get<bool>();
  if (json.is_number()) {
    const auto whole = json.is_number_float() ? std::nullopt : whole_number<std::int32_t>(json);
    return whole ? Variant(*whole) : Variant(json.get<double>());
  }
  if (json.is_array()) {
    if (depth == kMaxArrayDepth) throw UsageError("the array is too deep");
    std::vector<Variant> items;
    items.reserve(json.size());
    for (const Json& item : json) items.push_back(variant_from_json(item, depth + 1));
    return VariantArray(std::move(items));
  }
  if (const Json* missing = only_member(json, "missing"); missing != nullptr && *missing == true) {
    return Variant::Missing{};
  }
  if (const Json* date = only_member(json, "date")) return date_from_text(expect_string(*date));
  if (const Json* xml = only_member(json, "xml")) return node_from_text(expect_string(*xml));
  throw UsageError(
      "a string, boolean, number, array, null, {\"missing\":true}, {\"date\":…} or {\"xml\":…} "
      "is expected");
}

StringArray strings_from_json(const Json& json) {
  if (json.is_null()) return {};
  const auto is_string = [](const Json& item) { return item.is_string(); };
  if (!json.is_array() || !std::all_of(json.begin(), json.end(), is_string)) {
    throw UsageError("an array of strings or null is expected");
  }
  return json.get<std::vector<std::string>>();
}

SoapNode node_from_json(const Json& json) {
  if (json.is_null()) return {};
  const Json* xml = only_member(json, "xml");
  if (xml == nullptr) throw UsageError("{\"xml\":\"…\"} or null is expected");
  return node_from_text(expect_string(*xml));
}

XMLDocument* new_document(CallArguments& arguments) {
  arguments.documents.push_back(std::make_unique<XMLDocument>());
  return arguments.documents.back().get();
}

XMLDocument* document_from_json(const Json& json, CallArguments& arguments) {
  if (json.is_null()) return nullptr;
  const Json* wanted = only_member(json, "document");
  if (wanted == nullptr || *wanted != true) {
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

Json parse_json(std::string_view text) {
  check_depth(text);
  std::vector<std::set<std::string>> keys;
  std::string twice;
  const auto watch = [&](int, Json::parse_event_t event, Json& parsed) {
    if (event == Json::parse_event_t::object_start) {
      keys.emplace_back();
    } else if (event == Json::parse_event_t::object_end) {
      keys.pop_back();
    } else if (event == Json::parse_event_t::key) {
      const auto& key = parsed.get_ref<const std::string&>();
      if (!keys.back().insert(key).second) twice = key;
    }
    return true;
  };
  Json json;
  try {
    json = Json::parse(text, watch);
  } catch (const Json::exception& error) {
    std::string_view what = error.what();
    what.remove_prefix(std::min(what.find("] ") + 2, what.size()));
    throw UsageError("not JSON: " + std::string(what));
  }
  if (!twice.empty()) throw UsageError("the key " + twice + " stands twice");
  return json;
}

Value value_from_json(const Json& json, ValueType type, CallArguments& arguments) {
  switch (type) {
    case ValueType::kString:
      return Variant(expect_string(json));
    case ValueType::kBoolean:
      if (!json.is_boolean()) throw UsageError("true or false is expected");
      return Variant(json.get<bool>());
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

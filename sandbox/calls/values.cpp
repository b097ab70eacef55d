#include "sandbox/calls/values.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "bvconn/platform/error.h"
#include "bvconn/platform/soap/typed_text.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/contract/words.h"

namespace bvconn::sandbox {
namespace {

using automation::Value;
using automation::ValueType;
using nlohmann::json;
using Json = nlohmann::ordered_json;

constexpr std::size_t kMostResultBytes = 1024U * 1024;

template <class Integer>
Value whole_number(const json& value) {
  using Limits = std::numeric_limits<Integer>;
  if (value.is_number_integer() && value >= Limits::min() && value <= Limits::max()) {
    return Variant(value.get<Integer>());
  }
  throw BadCall("a whole number from " + std::to_string(Limits::min()) + " to " +
                std::to_string(Limits::max()) + " is expected");
}

std::string text_of(const json& value) {
  if (value.is_string()) return value.get<std::string>();
  throw BadCall("a text is expected");
}

Value node_of(const json& value) {
  if (value.is_null()) return Variant(SoapNode());
  const std::string xml = text_of(value);
  if (xml.find_first_not_of(" \t\r\n") == std::string::npos) return Variant(SoapNode());
  try {
    return Variant(node_from_xml(xml));
  } catch (const Error& error) {
    throw BadCall("XML is expected: " + error.description);
  }
}

Value variant_of(const json& value) {
  if (value.is_null()) return Variant(Variant::Missing());
  if (value.is_boolean()) return Variant(value.get<bool>());
  if (value.is_string()) return Variant(value.get<std::string>());
  if (value.is_number_integer()) return whole_number<std::int32_t>(value);
  if (value.is_number()) return Variant(value.get<double>());
  throw BadCall("a text, true or false, a number or null is expected");
}

Value texts_of(const json& value) {
  if (value.is_null()) return StringArray();
  if (!value.is_array()) throw BadCall("an array of texts or null is expected");
  std::vector<std::string> texts;
  for (const json& each : value) texts.push_back(text_of(each));
  return StringArray(std::move(texts));
}

void set_text(Json& out, const char* name, std::string text) {
  if (text.size() > kMostResultBytes) {
    out["size"] = text.size();
    out["cut"] = true;
    text = shortened(text, kMostResultBytes);
  }
  out[name] = std::move(text);
}

/// A value that is no node and no array of them.
Json plain_json(const Variant& value) {
  using Type = Variant::Type;
  switch (value.type()) {
    case Type::kEmpty:
    case Type::kMissing:
      return nullptr;
    case Type::kBoolean:
      return value.boolean();
    case Type::kInt16:
      return value.int16();
    case Type::kInt32:
      return value.int32();
    case Type::kInt64:
      return value.int64();
    case Type::kDouble:
      return value.number();
    case Type::kBytes:
      return detail::to_base64(value.bytes());
    case Type::kNode:
      return value.node() ? Json(node_to_xml(value.node())) : Json();
    case Type::kArray: {
      Json items = Json::array();
      for (const Variant& each : value.array().items()) items.push_back(plain_json(each));
      return items;
    }
    case Type::kString:
    case Type::kDate:
    case Type::kQualifiedName:
      return to_text(value);
  }
  return nullptr;
}

void set_variant(Json& out, const Variant& value) {
  if (value.is(Variant::Type::kNode)) {
    if (value.node()) set_text(out, "xml", node_to_xml(value.node()));
  } else if (value.is(Variant::Type::kString)) {
    set_text(out, "value", value.string());
  } else {
    out["value"] = plain_json(value);
  }
}

}  // namespace

Value value_of(const json& value, ValueType type) {
  switch (type) {
    case ValueType::kString:
      return Variant(text_of(value));
    case ValueType::kBoolean:
      if (!value.is_boolean()) throw BadCall("true or false is expected");
      return Variant(value.get<bool>());
    case ValueType::kInt16:
      return whole_number<std::int16_t>(value);
    case ValueType::kInt32:
      return whole_number<std::int32_t>(value);
    case ValueType::kVariant:
      return variant_of(value);
    case ValueType::kStringArray:
      return texts_of(value);
    case ValueType::kSoapNode:
      return node_of(value);
    default:
      throw BadCall("a " + std::string(automation::type_name(type)) + " cannot be given");
  }
}

Json value_json(const Value& value, ValueType type) {
  Json out{{"type", automation::type_name(type)}};
  if (const auto* variant = std::get_if<Variant>(&value)) set_variant(out, *variant);
  if (const auto* texts = std::get_if<StringArray>(&value)) out["value"] = texts->items();
  if (const auto* const* document = std::get_if<XMLDocument*>(&value); document && *document) {
    set_text(out, "xml", (*document)->xml());
  }
  return out;
}

Json default_json(const automation::Argument& argument) {
  const auto* variant = std::get_if<Variant>(&argument.default_value);
  return variant == nullptr ? Json() : plain_json(*variant);
}

}  // namespace bvconn::sandbox

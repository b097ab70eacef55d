#include "bvconn/automation/class_builder.h"

#include <stdexcept>

namespace bvconn::automation::detail {
namespace {

/// What an optional argument of this type is where the declaration does not say.
Value default_of(ValueType type) {
  switch (type) {
    case ValueType::kString:
      return Variant("");
    case ValueType::kBoolean:
      return Variant(false);
    case ValueType::kInt16:
      return Variant(std::int16_t{0});
    case ValueType::kInt32:
      return Variant(std::int32_t{0});
    case ValueType::kVariant:
      return Variant(Variant::Missing{});
    case ValueType::kStringArray:
      return StringArray();
    case ValueType::kSoapNode:
      return Variant(SoapNode());
    case ValueType::kXMLDocument:
      return static_cast<XMLDocument*>(nullptr);
    default:
      return {};
  }
}

Argument declared(std::string_view text, ValueType type, const Value& default_value) {
  const bool optional = text.ends_with('?');
  if (optional) {
    text.remove_suffix(1);
  }
  Argument argument{
      .name = std::string(text), .type = type, .optional = optional, .default_value = {}};
  if (optional) {
    const bool given = !std::holds_alternative<std::monostate>(default_value);
    argument.default_value = given ? default_value : default_of(type);
  }
  return argument;
}

/// A declaration that contradicts the C++ interface is a mistake of ours, found by the first test.
[[noreturn]] void contradiction(std::string_view member) {
  throw std::logic_error("the declaration of " + std::string(member) +
                         " does not fit the C++ interface");
}

}  // namespace

const std::string& held_string(const Value& value) {
  return std::get<Variant>(value).string();
}
bool held_boolean(const Value& value) {
  return std::get<Variant>(value).boolean();
}
std::int16_t held_int16(const Value& value) {
  return std::get<Variant>(value).int16();
}
std::int32_t held_int32(const Value& value) {
  return std::get<Variant>(value).int32();
}
const Variant& held_variant(const Value& value) {
  return std::get<Variant>(value);
}
const SoapNode& held_node(const Value& value) {
  return std::get<Variant>(value).node();
}
const StringArray& held_array(const Value& value) {
  return std::get<StringArray>(value);
}
XMLDocument* held_document(const Value& value) {
  return std::get<XMLDocument*>(value);
}

void MemberList::add_callable(MemberKind kind, std::string_view name, ValueType result,
                              std::span<const ValueType> types,
                              std::span<const ArgumentSpec> arguments,
                              std::span<const FieldSpec> fields,
                              Value (*invoke)(void*, const void* const*)) {
  Member member;
  member.name = name;
  member.kind = kind;
  member.result = result;
  member.readable = kind == MemberKind::kProperty;
  member.thunks.invoke = invoke;
  std::size_t named = 0;
  for (const ValueType type : types) {
    if (type != ValueType::kNone) {
      if (named == arguments.size()) {
        contradiction(name);
      }
      const ArgumentSpec& spec = arguments[named++];
      member.arguments.push_back(declared(spec.text, type, spec.default_value));
      if (member.arguments.back().optional && !fits(member.arguments.back().default_value, type)) {
        contradiction(name);
      }
      continue;
    }
    if (fields.empty() || member.thunks.aggregate) {
      contradiction(name);
    }
    Aggregate aggregate{.first = member.arguments.size(), .make = fields[0].make, .assign = {}};
    for (const FieldSpec& spec : fields) {
      member.arguments.push_back(declared(spec.text, spec.type, spec.default_value));
      aggregate.assign.push_back(spec.assign);
    }
    member.thunks.aggregate = std::move(aggregate);
  }
  if (named != arguments.size() || member.thunks.aggregate.has_value() == fields.empty()) {
    contradiction(name);
  }
  members.push_back(std::move(member));
}

void MemberList::add_property(std::string_view name, ValueType type, Value (*get)(void*),
                              void (*set)(void*, const Value&)) {
  Member member;
  member.name = name;
  member.kind = MemberKind::kProperty;
  member.result = type;
  member.readable = get != nullptr;
  member.writable = set != nullptr;
  member.thunks.get = get;
  member.thunks.set = set;
  members.push_back(std::move(member));
}

void MemberList::add_constant(std::string_view name, std::string value) {
  add_property(name, ValueType::kString, nullptr, nullptr);
  members.back().readable = true;
  members.back().constant = Variant(std::move(value));
}

void MemberList::add_event(std::string_view name, void (*connect)(void*, std::function<void()>)) {
  Member member;
  member.name = name;
  member.kind = MemberKind::kEvent;
  member.thunks.connect = connect;
  members.push_back(std::move(member));
}

}  // namespace bvconn::automation::detail

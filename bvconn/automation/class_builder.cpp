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

Argument argument_of(const DeclaredArgument& declared, ValueType type) {
  Argument argument{.name = std::string(declared.text), .type = type, .default_value = {}};
  if (argument.name.ends_with('?')) {
    argument.name.pop_back();
    argument.optional = true;
    const bool given = !std::holds_alternative<std::monostate>(declared.default_value);
    argument.default_value = given ? declared.default_value : default_of(type);
  }
  return argument;
}

void add_fields(Member& member, const DeclaredFields& fields) {
  Aggregate aggregate{.first = member.arguments.size(), .make = fields[0].make, .assign = {}};
  for (const DeclaredField& field : fields) {
    member.arguments.push_back({.name = field.name,
                                .type = field.type,
                                .optional = field.optional,
                                .default_value = field.default_value});
    aggregate.assign.push_back(field.assign);
  }
  member.thunks.aggregate = std::move(aggregate);
}

/// A declaration that contradicts the C++ interface is a mistake of ours, found by the first test.
[[noreturn]] void contradiction(std::string_view member) {
  throw std::logic_error("the declaration of " + std::string(member) +
                         " does not fit the C++ interface");
}

}  // namespace

void MemberList::add_callable(MemberKind kind, std::string_view name, ValueType result,
                              std::span<const ValueType> types,
                              std::span<const DeclaredArgument> arguments,
                              Value (*invoke)(void*, const void* const*)) {
  Member member;
  member.name = name;
  member.kind = kind;
  member.result = result;
  member.readable = kind == MemberKind::kProperty;
  member.thunks.invoke = invoke;
  for (std::size_t place = 0; place < types.size(); ++place) {
    const DeclaredArgument& declared = arguments[place];
    const bool is_aggregate = types[place] == ValueType::kNone;
    if (is_aggregate == declared.fields.empty()) contradiction(name);
    if (is_aggregate) {
      if (member.thunks.aggregate) contradiction(name);
      add_fields(member, declared.fields);
      continue;
    }
    member.arguments.push_back(argument_of(declared, types[place]));
    const Argument& added = member.arguments.back();
    if (added.optional && !fits(added.default_value, added.type)) contradiction(name);
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

#include "bvconn/automation/interface.h"

#include <algorithm>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn::automation {
namespace {

bool holds(const Value& value, Variant::Type type) {
  const auto* variant = std::get_if<Variant>(&value);
  return variant != nullptr && variant->is(type);
}

[[noreturn]] void refuse(const Member& member, std::string_view what) {
  std::string text = member.name;
  text.append(": ").append(what);
  throw Error(error_numbers::kTypeMismatch, "BVConn", text);
}

/// The value that stands for an argument: the given one, or its default.
const Value& chosen(const Member& member, std::size_t index, std::span<const Value> values) {
  const Argument& argument = member.arguments[index];
  if (index >= values.size() || std::holds_alternative<std::monostate>(values[index])) {
    if (!argument.optional) {
      refuse(member, "argument " + argument.name + " is required");
    }
    return argument.default_value;
  }
  if (!fits(values[index], argument.type)) {
    refuse(member, "argument " + argument.name + " is a " + std::string(type_name(argument.type)));
  }
  return values[index];
}

}  // namespace

std::string_view type_name(ValueType type) {
  switch (type) {
    case ValueType::kNone:
      return "none";
    case ValueType::kString:
      return "string";
    case ValueType::kBoolean:
      return "boolean";
    case ValueType::kInt16:
      return "int16";
    case ValueType::kInt32:
      return "int32";
    case ValueType::kVariant:
      return "variant";
    case ValueType::kStringArray:
      return "string[]";
    case ValueType::kSoapNode:
      return "SoapNode";
    case ValueType::kSoapEnvelope:
      return "SoapEnvelope";
    case ValueType::kHTTPTransport:
      return "HTTPTransport";
    case ValueType::kXMLDocument:
      return "XMLDocument";
    case ValueType::kObject:
      return "object";
  }
  return "";
}

std::string_view kind_name(MemberKind kind) {
  switch (kind) {
    case MemberKind::kOperation:
      return "operation";
    case MemberKind::kProperty:
      return "property";
    case MemberKind::kEvent:
      return "event";
  }
  return "";
}

bool fits(const Value& value, ValueType type) {
  switch (type) {
    case ValueType::kNone:
      return std::holds_alternative<std::monostate>(value);
    case ValueType::kString:
      return holds(value, Variant::Type::kString);
    case ValueType::kBoolean:
      return holds(value, Variant::Type::kBoolean);
    case ValueType::kInt16:
      return holds(value, Variant::Type::kInt16);
    case ValueType::kInt32:
      return holds(value, Variant::Type::kInt32);
    case ValueType::kVariant:
      return std::holds_alternative<Variant>(value);
    case ValueType::kStringArray:
      return std::holds_alternative<StringArray>(value);
    case ValueType::kSoapNode:
      return holds(value, Variant::Type::kNode);
    case ValueType::kSoapEnvelope:
      return std::holds_alternative<SoapEnvelope>(value);
    case ValueType::kHTTPTransport:
      return std::holds_alternative<std::shared_ptr<HTTPTransport>>(value);
    case ValueType::kXMLDocument:
      return std::holds_alternative<XMLDocument*>(value);
    case ValueType::kObject:
      return std::holds_alternative<std::shared_ptr<ServiceObject>>(value);
  }
  return false;
}

const Argument* Member::find_argument(std::string_view argument_name) const {
  const auto found =
      std::find_if(arguments.begin(), arguments.end(),
                   [&](const Argument& argument) { return argument.name == argument_name; });
  return found == arguments.end() ? nullptr : &*found;
}

Value Member::invoke(void* object, std::span<const Value> values) const {
  if (!callable()) {
    refuse(*this, "not an operation");
  }
  if (values.size() > arguments.size()) {
    refuse(*this, "too many arguments");
  }
  std::vector<const void*> slots;
  slots.reserve(arguments.size());
  std::shared_ptr<void> aggregate;
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const Value& value = chosen(*this, index, values);
    const std::size_t first = thunks.aggregate ? thunks.aggregate->first : arguments.size();
    const bool is_field = index >= first && index - first < thunks.aggregate->assign.size();
    if (!is_field) {
      slots.push_back(&value);
      continue;
    }
    if (index == first) {
      aggregate = thunks.aggregate->make();
      slots.push_back(aggregate.get());
    }
    thunks.aggregate->assign[index - first](aggregate.get(), value);
  }
  return thunks.invoke(object, slots.data());
}

Value Member::get(void* object) const {
  if (constant) {
    return *constant;
  }
  if (thunks.get == nullptr) {
    refuse(*this, "not readable");
  }
  return thunks.get(object);
}

void Member::set(void* object, const Value& value) const {
  if (thunks.set == nullptr) {
    refuse(*this, "not writable");
  }
  if (!fits(value, result)) {
    refuse(*this, "the value is a " + std::string(type_name(result)));
  }
  thunks.set(object, value);
}

void Member::connect(void* object, std::function<void()> handler) const {
  if (thunks.connect == nullptr) {
    refuse(*this, "not an event");
  }
  thunks.connect(object, std::move(handler));
}

const Member* ClassInfo::find(std::string_view member_name) const {
  const auto found = std::find_if(members.begin(), members.end(),
                                  [&](const Member& member) { return member.name == member_name; });
  return found == members.end() ? nullptr : &*found;
}

const ClassInfo* find_class(std::string_view name) {
  for (const ClassInfo* info : classes()) {
    if (info->name == name) {
      return info;
    }
  }
  return nullptr;
}

}  // namespace bvconn::automation

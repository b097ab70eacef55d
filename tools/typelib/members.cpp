#include "members.h"

#include "bvconn/automation/interface.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn::typelib {
namespace {

using automation::Argument;
using automation::ClassInfo;
using automation::Member;
using automation::MemberKind;
using automation::ValueType;

std::string result_type(ValueType type) {
  switch (type) {
    case ValueType::kNone:
      return "void";
    case ValueType::kString:
      return "BSTR";
    case ValueType::kBoolean:
      return "VARIANT_BOOL";
    case ValueType::kInt16:
      return "short";
    case ValueType::kInt32:
      return "long";
    case ValueType::kVariant:
      return "VARIANT";
    case ValueType::kStringArray:
      return "SAFEARRAY(BSTR)";
    case ValueType::kSoapNode:
    case ValueType::kSoapEnvelope:
    case ValueType::kHTTPTransport:
    case ValueType::kXMLDocument:
      return interface_name(automation::type_name(type)) + " *";
    case ValueType::kObject:
      break;
  }
  // The members of a service object are those of the data access layer behind it.
  return "IDispatch *";
}

// Nodes and documents may be the caller's own objects, which no interface of ours is asked of.
std::string argument_type(ValueType type) {
  const bool is_object = type == ValueType::kSoapNode || type == ValueType::kXMLDocument;
  return is_object ? "IDispatch *" : result_type(type);
}

std::string quoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') out.push_back('\\');
    out.push_back(c);
  }
  return out + "\"";
}

std::string default_text(const Argument& argument) {
  const auto& value = std::get<Variant>(argument.default_value);
  switch (argument.type) {
    case ValueType::kString:
      return quoted(value.string());
    case ValueType::kBoolean:
      return value.boolean() ? "-1" : "0";
    case ValueType::kInt16:
    case ValueType::kInt32:
      return to_text(value);
    case ValueType::kSoapNode:
      return "0";
    default:
      return "";
  }
}

std::vector<TypedArgument> arguments_of(const Member& member) {
  std::vector<TypedArgument> arguments;
  for (const Argument& argument : member.arguments) {
    arguments.push_back({.name = argument.name,
                         .type = argument_type(argument.type),
                         .optional = argument.optional,
                         .default_value = argument.optional ? default_text(argument) : ""});
  }
  return arguments;
}

// Two of the services are addresses that each deployment sets for itself.
std::string help_of(const Member& member) {
  if (!member.constant || member.constant->string().starts_with("http")) return "";
  return member.constant->string();
}

void add_member(std::vector<TypedMember>& members, std::int32_t id, const Member& member) {
  if (member.kind == MemberKind::kEvent) return;
  const bool is_operation = member.kind == MemberKind::kOperation;
  if (is_operation || member.readable) {
    members.push_back({.id = id,
                       .access = is_operation ? Access::kMethod : Access::kGet,
                       .name = member.name,
                       .result = result_type(member.result),
                       .arguments = arguments_of(member),
                       .help = help_of(member)});
  }
  if (member.writable) {
    std::vector<TypedArgument> arguments = arguments_of(member);
    arguments.push_back({.name = "value", .type = argument_type(member.result)});
    members.push_back(
        {.id = id, .access = Access::kPut, .name = member.name, .arguments = std::move(arguments)});
  }
}

}  // namespace

std::string interface_name(std::string_view object) {
  return "_" + std::string(object);
}

std::vector<TypedInterface> all_interfaces() {
  std::vector<TypedInterface> all;
  for (const component::ComponentClass& row : component::component_classes()) {
    const ClassInfo* const info = automation::find_class(row.name);
    if (info == nullptr) continue;
    TypedInterface made{.name = info->name, .id = row.interface_id, .members = {}};
    std::int32_t id = 0;
    for (const Member& member : info->members) add_member(made.members, ++id, member);
    all.push_back(std::move(made));
  }
  for (TypedInterface& outside : outside_interfaces()) all.push_back(std::move(outside));
  return all;
}

}  // namespace bvconn::typelib

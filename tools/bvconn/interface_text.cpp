#include "interface_text.h"

#include <string_view>

namespace bvconn::tool {

std::string default_json(const automation::Argument& argument) {
  const auto* variant = std::get_if<Variant>(&argument.default_value);
  return variant != nullptr ? json_argument(*variant) : json_value(argument.default_value);
}

std::string argument_json(const automation::Argument& argument) {
  std::string text = "{\"name\":" + json_string(argument.name);
  text.append(",\"type\":").append(json_string(automation::type_name(argument.type)));
  text.append(",\"optional\":").append(argument.optional ? "true" : "false");
  if (argument.optional) text.append(",\"default\":").append(default_json(argument));
  return text.append("}");
}

std::string signature(const automation::Member& member) {
  if (member.kind == automation::MemberKind::kEvent) return "event " + member.name;
  std::string text(automation::type_name(member.result));
  text.append(" ").append(member.name);
  if (member.callable()) {
    std::string_view separator = "(";
    for (const automation::Argument& argument : member.arguments) {
      text.append(separator).append(automation::type_name(argument.type)).append(" ");
      text.append(argument.name);
      if (argument.optional) text.append(" = ").append(default_json(argument));
      separator = ", ";
    }
    text.append(member.arguments.empty() ? "()" : ")");
  }
  if (member.constant) return text.append(" = ").append(json_argument(*member.constant));
  if (member.kind == automation::MemberKind::kProperty) {
    text.append(!member.writable ? "  (read only)" : member.readable ? "" : "  (write only)");
  }
  return text;
}

}  // namespace bvconn::tool

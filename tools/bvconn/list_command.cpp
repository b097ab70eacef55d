#include "list_command.h"

#include <algorithm>
#include <string_view>

#include "batch.h"
#include "bvconn/automation/interface.h"
#include "json_text.h"

namespace bvconn::tool {
namespace {

using automation::Argument;
using automation::ClassInfo;
using automation::Member;
using automation::MemberKind;

/// A default in the form in which a batch takes the argument.
std::string default_json(const Argument& argument) {
  const auto* variant = std::get_if<Variant>(&argument.default_value);
  return variant != nullptr ? json_argument(*variant) : json_value(argument.default_value);
}

std::string argument_json(const Argument& argument) {
  std::string text = "{\"name\":" + json_string(argument.name);
  text.append(",\"type\":").append(json_string(automation::type_name(argument.type)));
  text.append(",\"optional\":").append(argument.optional ? "true" : "false");
  if (argument.optional) text.append(",\"default\":").append(default_json(argument));
  return text.append("}");
}

template <class Items, class Text>
std::string json_list(const Items& items, const Text& text_of) {
  std::string text = "[";
  for (const auto& item : items) {
    text.append(text.size() > 1 ? "," : "").append(text_of(item));
  }
  return text.append("]");
}

std::string member_json(const Member& member) {
  std::string text = "{\"name\":" + json_string(member.name);
  text.append(",\"kind\":").append(json_string(automation::kind_name(member.kind)));
  if (member.kind != MemberKind::kEvent) {
    text.append(",\"result\":").append(json_string(automation::type_name(member.result)));
  }
  if (member.kind == MemberKind::kProperty) {
    text.append(",\"readable\":").append(member.readable ? "true" : "false");
    text.append(",\"writable\":").append(member.writable ? "true" : "false");
  }
  if (member.callable()) {
    text.append(",\"arguments\":").append(json_list(member.arguments, argument_json));
  }
  if (member.constant) text.append(",\"value\":").append(json_argument(*member.constant));
  return text.append("}");
}

std::string class_json(const ClassInfo* info) {
  return "{\"class\":" + json_string(info->name) +
         ",\"members\":" + json_list(info->members, member_json) + "}";
}

std::string signature(const Member& member) {
  if (member.kind == MemberKind::kEvent) return "event " + member.name;
  std::string text(automation::type_name(member.result));
  text.append(" ").append(member.name);
  if (member.callable()) {
    std::string_view separator = "(";
    for (const Argument& argument : member.arguments) {
      text.append(separator).append(automation::type_name(argument.type)).append(" ");
      text.append(argument.name);
      if (argument.optional) text.append(" = ").append(default_json(argument));
      separator = ", ";
    }
    text.append(member.arguments.empty() ? "()" : ")");
  }
  if (member.constant) return text.append(" = ").append(json_argument(*member.constant));
  if (member.kind == MemberKind::kProperty) {
    text.append(!member.writable ? "  (read only)" : member.readable ? "" : "  (write only)");
  }
  return text;
}

void print_class(const ClassInfo& info, std::ostream& out) {
  out << info.name << '\n';
  for (const Member& member : info.members) out << "  " << signature(member) << '\n';
}

}  // namespace

int run_list(const ListOptions& options, std::ostream& out, std::ostream& err) {
  const ClassInfo* only = nullptr;
  if (!options.class_name.empty()) {
    only = automation::find_class(options.class_name);
    if (only == nullptr) {
      err << "bvconn: there is no class " << options.class_name << '\n';
      return kNotUnderstood;
    }
  }
  if (options.json) {
    const std::vector<const ClassInfo*> one{only};
    out << json_list(only != nullptr ? one : automation::classes(), class_json) << '\n';
  } else if (only != nullptr) {
    print_class(*only, out);
  } else {
    for (const ClassInfo* info : automation::classes()) {
      out << info->name << "  " << info->members.size()
          << (info->members.size() == 1 ? " member" : " members") << '\n';
    }
  }
  out.flush();
  return out ? kDone : kFailed;
}

}  // namespace bvconn::tool

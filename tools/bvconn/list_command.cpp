#include "list_command.h"

#include <algorithm>
#include <string_view>

#include "bvconn/automation/interface.h"
#include "interface_text.h"
#include "json_text.h"
#include "status.h"
#include "target.h"

namespace bvconn::tool {
namespace {

using automation::ClassInfo;
using automation::Member;
using automation::MemberKind;

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

void print_class(const ClassInfo& info, std::ostream& out) {
  out << info.name << '\n';
  for (const Member& member : info.members) out << "  " << signature(member) << '\n';
}

}  // namespace

int run_list(const ListOptions& options, std::ostream& out, std::ostream& err) {
  const ClassInfo* only = nullptr;
  if (!options.class_name.empty()) {
    try {
      only = &find_class(options.class_name);
    } catch (const UsageError& error) {
      err << "bvconn: " << error.what() << '\n';
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

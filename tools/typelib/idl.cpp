#include "idl.h"

#include <algorithm>
#include <string_view>

#include "bvconn/automation/interface.h"
#include "members.h"

namespace bvconn::typelib {
namespace {

using component::Guid;

// The compiler goes by the names of these types; what they look like here counts for nothing.
constexpr std::string_view kPrologue =
    R"(// What hosts see of the library. The program bvconn_typelib writes this file from the interface; a
// test compares the two.

typedef wchar_t *BSTR;
typedef short VARIANT_BOOL;
typedef struct tagVARIANT { short vt; } VARIANT;
[object, local, uuid(00000000-0000-0000-C000-000000000046)] interface IUnknown {}
[object, local, uuid(00020400-0000-0000-C000-000000000046)] interface IDispatch : IUnknown {}

)";

constexpr std::size_t kWidth = 100;

std::string uuid(const Guid& id) {
  const std::string text = component::guid_text(id);
  return "uuid(" + text.substr(1, text.size() - 2) + ")";
}

std::string argument_text(const TypedArgument& argument) {
  std::string text = "[in";
  if (argument.optional) text += ", optional";
  if (!argument.default_value.empty()) text += ", defaultvalue(" + argument.default_value + ")";
  text += "] " + argument.type;
  if (!text.ends_with('*')) text += " ";
  return text + argument.name;
}

std::string_view access_word(Access access) {
  switch (access) {
    case Access::kGet:
      return ", propget";
    case Access::kPut:
      return ", propput";
    case Access::kPutReference:
      return ", propputref";
    case Access::kMethod:
      break;
  }
  return "";
}

// One member, with its arguments broken to lines of the usual width.
std::string member_text(const TypedMember& member) {
  std::string text = "      [id(" + std::to_string(member.id) + ")";
  text += access_word(member.access);
  if (member.hidden) text += ", hidden, restricted";
  if (!member.help.empty()) text += ", helpstring(\"" + member.help + "\")";
  text += "] " + member.result;
  if (!text.ends_with('*')) text += " ";
  text += member.name + "(";
  std::size_t line = text.size();
  for (const TypedArgument& argument : member.arguments) {
    const bool is_first = &argument == &member.arguments.front();
    const std::string word = argument_text(argument);
    text += is_first ? "" : ",";
    if (line + word.size() + 4 > kWidth) {
      text += "\n          ";
      line = 10;
    } else if (!is_first) {
      text += " ";
    }
    text += word;
    line += word.size() + 2;
  }
  return text + ");\n";
}

std::string interface_text(const std::string& name, const Guid& id,
                           const std::vector<TypedMember>& members) {
  std::string text = "\n  [" + uuid(id) + "]\n  dispinterface " + name;
  text += " {\n    properties:\n    methods:\n";
  for (const TypedMember& member : members) text += member_text(member);
  return text + "  };\n";
}

std::string events_name(std::string_view class_name) {
  return "__" + std::string(class_name);
}

// An event's number is its place among the class's events.
std::vector<TypedMember> events_of(const automation::ClassInfo& info) {
  std::vector<TypedMember> events;
  for (const automation::Member& member : info.members) {
    if (member.kind != automation::MemberKind::kEvent) continue;
    TypedMember event;
    event.id = static_cast<std::int32_t>(events.size()) + 1;
    event.name = member.name;
    events.push_back(std::move(event));
  }
  return events;
}

template <class Row>
std::string class_text(const Row& row, std::string_view attributes, bool has_events) {
  std::string text = "\n  [" + uuid(row.id) + std::string(attributes) + "]\n  coclass ";
  text += std::string(row.name) + " {\n    [default] dispinterface " + interface_name(row.name);
  text += ";\n";
  if (has_events) text += "    [default, source] dispinterface " + events_name(row.name) + ";\n";
  return text + "  };\n";
}

std::string class_text(const component::ComponentClass& row) {
  const automation::ClassInfo* const info = automation::find_class(row.name);
  if (info == nullptr) return class_text(row, "", false);
  return class_text(row, info->predeclared ? ", appobject" : "", !events_of(*info).empty());
}

}  // namespace

std::string library_idl() {
  std::string text(kPrologue);
  text += "[" + uuid(component::kTypeLibrary) + ", version(" +
          std::to_string(component::kTypeLibraryMajor) + "." +
          std::to_string(component::kTypeLibraryMinor) +
          "), helpstring(\"BVConnector\")]\nlibrary BVConnector {\n";
  const std::vector<TypedInterface> interfaces = all_interfaces();
  for (const TypedInterface& each : interfaces) {
    text += "  dispinterface " + interface_name(each.name) + ";\n";
  }
  for (const TypedInterface& each : interfaces) {
    text += interface_text(interface_name(each.name), each.id, each.members);
  }
  for (const automation::ClassInfo* info : automation::classes()) {
    const std::vector<TypedMember> events = events_of(*info);
    if (events.empty()) continue;
    text += interface_text(events_name(info->name), component::kHeartBeatEvents, events);
  }
  for (const component::ComponentClass& row : component::component_classes()) {
    text += class_text(row);
  }
  for (const component::ResultObject& row : component::result_objects()) {
    text += class_text(row, ", noncreatable", false);
  }
  return text + "};\n";
}

}  // namespace bvconn::typelib

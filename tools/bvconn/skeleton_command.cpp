#include "skeleton_command.h"

#include <string_view>

#include "arguments.h"
#include "interface_text.h"
#include "json_text.h"
#include "status.h"
#include "target.h"

namespace bvconn::tool {
namespace {

using automation::Argument;
using automation::ValueType;

std::string placeholder(const Argument& argument) {
  const std::string text = "<" + argument.name + ">";
  switch (argument.type) {
    case ValueType::kBoolean:
      return "false";
    case ValueType::kInt16:
    case ValueType::kInt32:
      return "0";
    case ValueType::kStringArray:
      return "[" + json_string(text) + "]";
    case ValueType::kSoapNode:
      return "{\"xml\":" + json_string("<" + argument.name + "/>") + "}";
    case ValueType::kXMLDocument:
      return "{\"document\":true}";
    default:
      return json_string(text);
  }
}

std::string value_of(const Argument& argument) {
  return argument.optional ? default_json(argument) : placeholder(argument);
}

/// A word of a shell's, as it stands.
std::string shell_word(std::string_view word) {
  std::string text = "'";
  for (const char c : word) {
    if (c == '\'') {
      text.append("'\\''");
    } else {
      text.push_back(c);
    }
  }
  return text.append("'");
}

std::string batch_line(const Target& target) {
  std::string text = "{\"id\":1,\"call\":" + json_string(target.path()) + ",\"args\":{";
  std::string_view between = "";
  for (const Argument& argument : target.member->arguments) {
    text.append(between).append(json_string(argument.name)).append(":").append(value_of(argument));
    between = ",";
  }
  return text.append("}}");
}

std::string command_line(const Target& target) {
  std::string text = "bvconn call " + target.path();
  for (const Argument& argument : target.member->arguments) {
    const Json value = Json::parse(value_of(argument));
    text.append(" \\\n  ").append(argument.name);
    if (value.is_string()) {
      text.append("=").append(shell_word(value.get_ref<const std::string&>()));
    } else if (value.is_boolean() || value.is_number()) {
      text.append("=").append(value.dump());
    } else {
      text.append(":=").append(shell_word(value.dump()));
    }
  }
  return text;
}

}  // namespace

int run_skeleton(const SkeletonOptions& options, std::ostream& out, std::ostream& err) {
  try {
    const Target target = find_target(options.path);
    out << (options.shell ? command_line(target) : batch_line(target)) << '\n' << std::flush;
    return out ? kDone : kFailed;
  } catch (const UsageError& error) {
    err << "bvconn: " << options.path << ": " << error.what() << '\n';
    return kNotUnderstood;
  }
}

}  // namespace bvconn::tool

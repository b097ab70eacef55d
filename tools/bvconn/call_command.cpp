#include "call_command.h"

#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <utility>

#include "arguments.h"
#include "batch.h"
#include "bvconn/automation/interface.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/explain.h"
#include "exchange_view.h"
#include "json_text.h"
#include "node_tree.h"
#include "print_request.h"
#include "target.h"

namespace bvconn::tool {
namespace {

using automation::Member;
using automation::MemberKind;
using automation::Value;
using automation::ValueType;

std::string read_file(const std::string& name) {
  std::ifstream file;
  if (name != "-") file.open(name, std::ios::binary);
  std::istream& input = name == "-" ? std::cin : file;
  std::string text{std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
  if (!input || (name != "-" && !file.is_open())) throw UsageError("cannot read " + name);
  return text;
}

/// The text behind the equals sign: a file's contents, or itself.
std::string value_text(std::string_view given) {
  if (given.starts_with("@@")) return std::string(given.substr(1));
  if (given.starts_with('@')) return read_file(std::string(given.substr(1)));
  return std::string(given);
}

}  // namespace

std::string password_from(const std::string& file) {
  std::string text = read_file(file);
  if (text.ends_with('\n')) text.pop_back();
  if (text.ends_with('\r')) text.pop_back();
  return text;
}

CallArguments read_arguments(const Member& member, const std::vector<std::string>& texts) {
  CallArguments arguments;
  arguments.values.resize(member.arguments.size());
  for (const std::string& text : texts) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) throw UsageError(text + ": NAME=VALUE is expected");
    std::string_view name = std::string_view(text).substr(0, equals);
    const bool is_json = name.ends_with(':');
    if (is_json) name.remove_suffix(1);
    const automation::Argument* argument = member.find_argument(name);
    if (argument != nullptr &&
        !std::holds_alternative<std::monostate>(
            arguments.values[static_cast<std::size_t>(argument - member.arguments.data())])) {
      throw UsageError("argument " + std::string(name) + " is given twice");
    }
    place_argument(member, name, arguments, [&](ValueType type) {
      const std::string value = value_text(std::string_view(text).substr(equals + 1));
      return is_json ? value_from_json(parse_json(value), type, arguments)
                     : value_from_text(value, type, arguments);
    });
  }
  require_arguments(member, arguments);
  return arguments;
}

namespace {

/// A result as people read it.
void print_result(const Value& value, std::ostream& out) {
  const auto* variant = std::get_if<Variant>(&value);
  if (std::holds_alternative<std::monostate>(value)) return;
  if (variant != nullptr && variant->is(Variant::Type::kNode)) {
    if (variant->node()) out << node_tree(variant->node());
  } else if (variant != nullptr && variant->is(Variant::Type::kString)) {
    out << variant->string() << '\n';
  } else {
    out << json_value(value) << '\n';
  }
}

void print_documents(const Member& member, const CallArguments& arguments, std::ostream& out) {
  for (std::size_t index = 0; index < member.arguments.size(); ++index) {
    const auto* document = std::get_if<XMLDocument*>(&arguments.values[index]);
    if (document != nullptr && *document != nullptr) out << (*document)->xml() << '\n';
  }
}

/// The answer as a batch gives it to a request without an id.
void print_answer(const std::string& answer, std::ostream& out) {
  out << "{\"id\":null," << answer << "}\n";
}

int call(const CallOptions& options, const Target& target, const CallArguments& arguments,
         std::ostream& out, std::ostream& err) {
  const CallAnswer answer(*target.member, arguments);
  std::string error_json;
  try {
    const auto object = target.info->make();
    for (const Member& member : target.info->members) {
      if (member.kind != MemberKind::kEvent) continue;
      member.connect(object.get(), [&, name = target.info->name + "." + member.name] {
        if (options.json) {
          out << "{\"event\":" << json_string(name) << ",\"id\":null}\n";
        } else {
          err << "bvconn: event " << name << '\n';
        }
      });
    }
    const Value result = target.member->invoke(object.get(), arguments.values);
    if (options.json) {
      print_answer(answer.with_result(result), out);
    } else {
      print_result(result, out);
      print_documents(*target.member, arguments, out);
    }
    return kDone;
  } catch (const Error& error) {
    error_json = json_error(error);
    err << "bvconn: " << options.path << " failed: error " << hex_number(error.number) << " ("
        << error.number << ") from " << error.source << ": " << error.description << '\n'
        << "bvconn: hint: " << explain(error) << '\n';
  } catch (const std::exception& error) {
    error_json = internal_error_json(error.what());
    err << "bvconn: " << options.path << ": internal failure: " << error.what() << '\n';
  }
  if (options.json) print_answer(answer.with_error(error_json), out);
  return kFailed;
}

}  // namespace

int run_call(const CallOptions& options, std::ostream& out, std::ostream& err) {
  try {
    const Target target = find_target(options.path);
    const CallArguments arguments = read_arguments(*target.member, options.arguments);
    const int status =
        options.print_request
            ? print_request(target, arguments,
                            {.json = options.json, .shows_secrets = options.shows_secrets}, out,
                            err)
            : call(options, target, arguments, out, err);
    if (options.show_exchange) print_exchanges(err);
    out.flush();
    return out ? status : kFailed;
  } catch (const UsageError& error) {
    err << "bvconn: " << options.path << ": " << error.what() << '\n';
    if (options.json) {
      print_answer("\"usage\":" + json_string(options.path + ": " + error.what()), out);
    }
    return kNotUnderstood;
  }
}

}  // namespace bvconn::tool

#include "call_command.h"

#include <exception>
#include <utility>

#include "arguments.h"
#include "batch.h"
#include "bvconn/automation/interface.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/exchange/mask_request.h"
#include "bvconn/platform/explain.h"
#include "exchange_view.h"
#include "input_files.h"
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

/// The text behind the equals sign: a file's contents, or itself.
std::string value_text(std::string_view name, std::string_view given) {
  if (given.starts_with("@@")) return std::string(given.substr(1));
  if (!given.starts_with('@')) return std::string(given);
  std::string text = read_input(std::string(given.substr(1)));
  return names_password(name) ? without_line_end(std::move(text)) : text;
}

}  // namespace

CallArguments read_arguments(const Member& member, const std::vector<std::string>& texts,
                             const Connection& connection) {
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
      const std::string value = value_text(name, std::string_view(text).substr(equals + 1));
      return is_json ? value_from_json(parse_json(value), type, arguments)
                     : value_from_text(value, type, arguments);
    });
  }
  fill_arguments(member, connection, arguments);
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
    const CallArguments arguments =
        read_arguments(*target.member, options.arguments, options.connection);
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

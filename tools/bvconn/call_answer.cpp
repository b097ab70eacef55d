#include "call_answer.h"

#include "bvconn/platform/error.h"
#include "json_text.h"

namespace bvconn::tool {

using automation::Argument;
using automation::Value;
using automation::ValueType;

namespace {

bool is_node(const Argument& argument, const Value& value) {
  return argument.type == ValueType::kSoapNode && !std::holds_alternative<std::monostate>(value);
}

}  // namespace

void write_result(JsonOutput& out, const Value& value) {
  require_printable(value);
  write_json(out.raw(R"("result":)"), value);
}

void write_error(JsonOutput& out, std::string_view error_json) {
  out.raw(R"("error":)").raw(error_json);
}

std::string internal_error_json(const char* what) {
  return json_error(Error(-1, "bvconn", std::string("Internal failure: ") + what));
}

void CallAnswer::write_result(JsonOutput& out, const Value& result) const {
  require_printable_arguments();
  tool::write_result(out, result);
  write_arguments(out);
}

void CallAnswer::write_error(JsonOutput& out, std::string_view error_json) const {
  require_printable_arguments();
  tool::write_error(out, error_json);
  write_arguments(out);
}

void CallAnswer::require_printable_arguments() const {
  for (std::size_t index = 0; index < member_.arguments.size(); ++index) {
    if (is_node(member_.arguments[index], arguments_.values[index])) {
      require_printable(arguments_.values[index]);
    }
  }
}

void CallAnswer::write_arguments(JsonOutput& out) const {
  for (const Value& value : arguments_.values) {
    const auto* const document = std::get_if<XMLDocument*>(&value);
    if (document == nullptr || *document == nullptr) continue;
    write_json(out.raw(R"(,"document":)"), value);
  }
  bool has_nodes = false;
  for (std::size_t index = 0; index < member_.arguments.size(); ++index) {
    const Argument& argument = member_.arguments[index];
    if (!is_node(argument, arguments_.values[index])) continue;
    out.raw(has_nodes ? "," : R"(,"args":{)").string(argument.name).raw(':');
    write_json(out, arguments_.values[index]);
    has_nodes = true;
  }
  if (has_nodes) out.raw('}');
}

}  // namespace bvconn::tool

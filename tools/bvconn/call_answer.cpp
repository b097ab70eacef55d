#include "call_answer.h"

#include "bvconn/platform/error.h"
#include "json_text.h"

namespace bvconn::tool {

using automation::Value;

std::string result_text(const Value& value) {
  return "\"result\":" + json_value(value);
}

std::string error_text(const std::string& error_json) {
  return "\"error\":" + error_json;
}

std::string internal_error_json(const char* what) {
  return json_error(Error(-1, "bvconn", std::string("Internal failure: ") + what));
}

std::string CallAnswer::with_result(const Value& result) const {
  return finish(result_text(result));
}

std::string CallAnswer::with_error(const std::string& error_json) const {
  return finish(error_text(error_json));
}

std::string CallAnswer::finish(std::string text) const {
  std::string nodes;
  for (std::size_t index = 0; index < member_.arguments.size(); ++index) {
    const automation::Argument& argument = member_.arguments[index];
    const Value& value = arguments_.values[index];
    if (std::holds_alternative<std::monostate>(value)) continue;
    if (argument.type == automation::ValueType::kXMLDocument &&
        std::get<XMLDocument*>(value) != nullptr) {
      text.append(",\"document\":").append(json_value(value));
    } else if (argument.type == automation::ValueType::kSoapNode) {
      nodes.append(nodes.empty() ? "" : ",").append(json_string(argument.name));
      nodes.append(":").append(json_value(value));
    }
  }
  if (!nodes.empty()) text.append(",\"args\":{").append(nodes).append("}");
  return text;
}

}  // namespace bvconn::tool

#include "bvconn/testing/scripted_answer.h"

#include <utility>

#include "bvconn/platform/error_numbers.h"
#include "bvconn/testing/record.h"

namespace bvconn::test {
namespace {

std::string escaped(std::string_view text) {
  std::string safe;
  for (const char c : text) {
    if (c == '&') {
      safe += "&amp;";
    } else if (c == '<') {
      safe += "&lt;";
    } else if (c == '>') {
      safe += "&gt;";
    } else {
      safe += c;
    }
  }
  return safe;
}

/// As servers name it: the method's name and "Response".
std::string response_name(const SeenCall& call) {
  try {
    return call.envelope().MethodName() + "Response";
  } catch (const Error&) {
    return "response";
  }
}

}  // namespace

ScriptedAnswer ScriptedAnswer::reply(std::string_view result) {
  ScriptedAnswer answer;
  answer.is_whole_ = false;
  if (result.empty() || result.front() == '<') {
    answer.text_ = result;
  } else {
    answer.text_ = "<return>" + escaped(result) + "</return>";
  }
  return answer;
}

ScriptedAnswer ScriptedAnswer::fault(std::string_view code, std::string_view text) {
  return bytes(fault_text(escaped(code), escaped(text)));
}

ScriptedAnswer ScriptedAnswer::bytes(std::string whole) {
  ScriptedAnswer answer;
  answer.text_ = std::move(whole);
  return answer;
}

ScriptedAnswer ScriptedAnswer::failure(std::int32_t number, std::string_view description) {
  const bool in_receive =
      number == error_numbers::kHttpStatus || number == error_numbers::kBadReply;
  return failure(Error(number, "HTTPTransport",
                       description.empty() ? "a failure that the test scripted" : description),
                 in_receive);
}

ScriptedAnswer ScriptedAnswer::failure(const Error& error, bool in_receive) {
  ScriptedAnswer answer;
  answer.error_ = error;
  answer.fails_in_receive_ = in_receive;
  return answer;
}

ScriptedAnswer ScriptedAnswer::computed(std::function<ScriptedAnswer(const SeenCall&)> answer) {
  ScriptedAnswer result;
  result.compute_ = std::move(answer);
  return result;
}

ScriptedAnswer ScriptedAnswer::to(const SeenCall& call) const {
  return compute_ ? compute_(call).to(call) : *this;
}

std::string ScriptedAnswer::text_for(const SeenCall& call) const {
  return is_whole_ ? text_ : envelope_text(response_name(call), text_);
}

}  // namespace bvconn::test

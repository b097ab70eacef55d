#include "sandbox/record/wire_of_exchange.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "bvconn/platform/exchange/mask_exchange.h"
#include "sandbox/contract/words.h"
#include "sandbox/replay/dal_call.h"
#include "sandbox/replay/recording.h"
#include "sandbox/wire/wire_text.h"
#include "sandbox/wire/wire_writer.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;
using wire::WireStep;

std::string dumped(const json& value) {
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::string lines_of(const std::vector<Header>& headers) {
  std::string lines;
  for (const Header& each : headers) lines.append(each.name + ": " + each.value + "\n");
  return lines;
}

std::vector<std::string> split_lines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1);
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  return lines;
}

/// The texts among the arguments of a call: of each argument, then those in arrays.
std::vector<json*> texts_of(json& arguments) {
  std::vector<json*> texts;
  for (json& each : arguments) texts.push_back(&each);
  for (json& each : arguments) {
    if (!each.is_array()) continue;
    for (json& item : each) texts.push_back(&item);
  }
  return texts;
}

/// An exchange of the data access layer, with its call as JSON.
class MaskedCall {
 public:
  MaskedCall(const std::string& body, bvconn::Exchange& exchange) : exchange_(exchange) {
    // It can be read, and is not too deep.
    if (!dal_arguments(body)) throw std::runtime_error("its body is no call");
    call_ = json::parse(body);
    for (const json* each : texts_of(call_["arguments"])) {
      ExchangeArgument& argument = exchange_.arguments.emplace_back();
      if (each->is_string()) argument.text.text = each->get<std::string>();
    }
  }

  /// The line of a wire file, once the exchange is masked.
  void describe(WireStep& step) {
    json& arguments = call_["arguments"];
    const std::vector<json*> texts = texts_of(arguments);
    for (std::size_t i = 0; i < texts.size(); ++i) {
      if (texts[i]->is_string()) *texts[i] = exchange_.arguments[i].text.text;
    }
    std::string line = exchange_.object + "." + exchange_.object_operation + "(";
    for (const json& each : arguments) {
      if (line.back() != '(') line.append(", ");
      const bool is_request =
          arguments.size() == 1 && each.is_string() &&
          each.get_ref<const std::string&>().find("Envelope") != std::string::npos;
      if (is_request) wire::describe_request(each.get<std::string>(), step);
      line.append(is_request ? "{request}" : dumped(each));
    }
    step.dal = {line + ")"};
  }

 private:
  bvconn::Exchange& exchange_;
  json call_;
};

std::string bearer_of(const Request& request) {
  constexpr std::string_view kScheme = "Bearer ";
  const std::string value = request.header("Authorization").value_or("");
  return value.starts_with(kScheme) ? value.substr(kScheme.size()) : std::string();
}

std::optional<std::string> unquoted_action(const Request& request) {
  auto action = request.header("SOAPAction");
  if (action && action->size() >= 2 && action->front() == '"' && action->back() == '"') {
    return action->substr(1, action->size() - 2);
  }
  return action;
}

void describe_soap(const std::string& url, const Request& request, const Reply& reply,
                   WireStep& step) {
  bvconn::Exchange exchange;
  exchange.url = url;
  exchange.soap_action = unquoted_action(request);
  exchange.request.text = request.body;
  exchange.reply.text = reply.body;
  exchange.reply_headers.text = lines_of(reply.headers);
  mask_exchange(exchange, "");
  step.url = exchange.url;
  step.soap_action = exchange.soap_action.value_or("none");
  wire::describe_request(exchange.request.text, step);
  step.raw = std::move(exchange.reply.text);
  step.headers = split_lines(exchange.reply_headers.text);
}

void describe_call(const std::string& url, const Request& request, const Reply& reply,
                   WireStep& step) {
  bvconn::Exchange exchange;
  exchange.route = ExchangeRoute::kDal;
  exchange.url = url;
  const std::string_view target = request.path().substr(std::string_view("/dal/").size());
  const std::size_t slash = std::min(target.find('/'), target.size());
  exchange.object = target.substr(0, slash);
  exchange.object_operation = target.substr(std::min(target.size(), slash + 1));
  exchange.reply_headers.text = lines_of(reply.headers);
  MaskedCall call(request.body, exchange);
  exchange.result.text = reply.body;
  // The words of a refused login are for people; what another answers is secret.
  if (reply.status != 200) exchange.error.emplace();
  mask_exchange(exchange, bearer_of(request));
  call.describe(step);
  step.raw = std::move(exchange.result.text);
  step.headers = split_lines(exchange.reply_headers.text);
}

/// The operation and its arguments, for people; long ones are cut.
void describe_operation(const AskedRequest& asked, WireStep& step) {
  step.member = asked.operations.empty() ? "unknown" : asked.operations.front();
  nlohmann::ordered_json arguments = nlohmann::ordered_json::object();
  for (const auto& each : asked.arguments) arguments[each.name] = shortened(each.text);
  step.arguments = arguments.dump(-1, ' ', false, json::error_handler_t::replace);
}

/// Whether a replay would answer the same; a header may hold what no line can.
bool is_read_again(const WireStep& step) {
  const auto file = wire::read_wire_file(wire::wire_case_text({.claim = "a", .steps = {step}}));
  if (!file.problems.empty() || file.cases.size() != 1) return false;
  const WireStep& read = file.cases.front().steps.at(0);
  const Request there = http_request_of(read);
  const Request here = http_request_of(step);
  return there.target == here.target && there.body == here.body && read.raw == step.raw &&
         read.headers == step.headers && reply_of(read).status == reply_of(step).status;
}

}  // namespace

WireStep step_of_exchange(const std::string& url, const Request& request, const Reply& reply,
                          const RequestReader& reader) {
  WireStep step;
  const bool is_dal = request.path().starts_with("/dal/");
  (is_dal ? describe_call : describe_soap)(url, request, reply, step);
  step.status = std::to_string(reply.status);
  describe_operation(reader.read(http_request_of(step)), step);
  if (!is_read_again(step)) throw std::runtime_error("it cannot be written as a wire file");
  return step;
}

}  // namespace bvconn::sandbox

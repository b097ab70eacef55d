#include "sandbox/replay/asked_request.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include "bvconn/platform/error.h"
#include "sandbox/contract/observed.h"
#include "sandbox/endpoints/soap_request.h"
#include "sandbox/operations/operations.h"
#include "sandbox/replay/dal_call.h"

namespace bvconn::sandbox {
namespace {

constexpr std::string_view kDalPrefix = "/dal/";

std::vector<std::string> names_of(const std::vector<const OperationForm*>& forms) {
  std::vector<std::string> names;
  for (const OperationForm* form : forms) names.push_back(form->name);
  return names;
}

// The name that the interface has for a place, in the first form that has one.
std::string argument_name(const std::vector<const OperationForm*>& forms, std::size_t place,
                          std::string_view otherwise) {
  for (const OperationForm* form : forms) {
    if (place < form->places.size() && !form->places[place].argument.empty()) {
      return form->places[place].argument;
    }
  }
  return otherwise.empty() ? "argument " + std::to_string(place + 1) : std::string(otherwise);
}

/// Runs something that reads; false where there is nothing to be read.
template <class Body>
bool reads(const Body& body) {
  try {
    body();
    return true;
  } catch (const Fault&) {
    return false;
  } catch (const Error&) {
    return false;
  }
}

}  // namespace

std::string AskedRequest::title() const {
  if (!operations.empty()) return operations.front();
  if (method.empty()) return "a request that cannot be read";
  return method + " of " + service;
}

RequestReader::RequestReader(const std::vector<automation::ObservedOperation>& observations)
    : contract_(contract_of(observations)), dal_routes_(dal_routes_of(observations)) {}

bool RequestReader::read_envelope(const std::string& text, const Request& request,
                                  AskedRequest& asked) const {
  return reads([&] {
    const SoapRequest envelope =
        read_request(text, charset(request.header("Content-Type").value_or("")));
    Exchange exchange;
    exchange.forms = contract_.judge_envelope(envelope.facts).forms;
    for (const SoapNode& node : envelope.envelope.Parameters()) exchange.values.emplace_back(node);
    narrow_by_constants(exchange);
    asked.operations = names_of(exchange.forms);
    for (std::size_t i = 0; i < exchange.values.size(); ++i) {
      asked.arguments.push_back(
          {.name = argument_name(exchange.forms, i, envelope.facts.parameters[i].name),
           .text = exchange.values[i].text()});
    }
    if (asked.route == Route::kDal) return;
    asked.service = envelope.facts.service;
    asked.method = envelope.facts.method;
  });
}

void RequestReader::read_call(const Request& request, AskedRequest& asked) const {
  std::string_view path = request.path();
  path.remove_prefix(std::min(path.size(), kDalPrefix.size()));
  const std::size_t slash = std::min(path.find('/'), path.size());
  asked.service = path.substr(0, slash);
  asked.method = path.substr(std::min(path.size(), slash + 1));
  const auto arguments = dal_arguments(request.body);
  if (!arguments) {
    asked.arguments.push_back({.name = "the body", .text = request.body});
    return;
  }
  const auto route = dal_routes_.find({asked.service, asked.method});
  std::vector<const OperationForm*> forms;
  if (route != dal_routes_.end()) {
    for (const OperationForm& form : route->second.forms) forms.push_back(&form);
    const bool is_request = route->second.takes_request_text && arguments->size() == 1;
    if (is_request && read_envelope(arguments->front(), {}, asked)) return;
  }
  asked.operations = names_of(forms);
  for (std::size_t i = 0; i < arguments->size(); ++i) {
    asked.arguments.push_back({.name = argument_name(forms, i, ""), .text = (*arguments)[i]});
  }
}

AskedRequest RequestReader::read(const Request& request) const {
  AskedRequest asked;
  if (request.path().starts_with(kDalPrefix)) {
    asked.route = Route::kDal;
    read_call(request, asked);
  } else if (!read_envelope(request.body, request, asked)) {
    asked = {};
    asked.arguments.push_back({.name = "the body", .text = request.body});
  }
  return asked;
}

}  // namespace bvconn::sandbox

#include "sandbox/contract/observed.h"

#include <algorithm>
#include <string>
#include <utility>

namespace bvconn::sandbox {
namespace {

using automation::ObservedOperation;
using automation::ObservedRequest;

MethodContract& method_of(std::vector<MethodContract>& methods, const ObservedRequest& request) {
  const auto found = std::find_if(methods.begin(), methods.end(), [&](const MethodContract& each) {
    return each.service == request.service && each.name == request.method;
  });
  if (found != methods.end()) return *found;
  methods.push_back({.service = request.service,
                     .name = request.method,
                     .headers = request.headers,
                     .soap_actions = {},
                     .any_soap_action = false,
                     .shapes = {}});
  return methods.back();
}

OperationForm form_of(const ObservedOperation& operation, const ObservedRequest& request) {
  OperationForm form{.name = operation_name(operation), .places = {}};
  for (const auto& parameter : request.parameters) {
    form.places.push_back(place_of(parameter.origin));
    // What has children is no constant that could be compared.
    if (parameter.may_be_nil || !parameter.origin.constant.empty()) continue;
    form.places.back().is_constant = false;
  }
  for (std::size_t i = 0; i < request.headers.size(); ++i) {
    if (request.headers[i] != "userID") continue;
    form.session_argument = place_of(request.header_origins[i]).argument;
  }
  return form;
}

RequestShape shape_of(const ObservedOperation& operation, const ObservedRequest& request) {
  RequestShape shape{
      .parameters = {}, .open_ended = request.open_ended, .form = form_of(operation, request)};
  for (const auto& parameter : request.parameters) {
    shape.parameters.push_back(
        {.name = parameter.name,
         .name_space = parameter.name_space,
         .types = parameter.any_content ? std::vector<std::string>() : parameter.types,
         .may_be_nil = parameter.may_be_nil});
  }
  return shape;
}

void add_action(MethodContract& method, const ObservedRequest& request) {
  if (!request.soap_action) {
    method.any_soap_action = true;
  } else if (std::find(method.soap_actions.begin(), method.soap_actions.end(),
                       *request.soap_action) == method.soap_actions.end()) {
    method.soap_actions.push_back(*request.soap_action);
  }
}

}  // namespace

std::string operation_name(const ObservedOperation& operation) {
  return operation.cls + "." + operation.name;
}

OperationForm::Place place_of(const automation::Origin& origin) {
  return {.argument = origin.arguments.size() == 1 ? origin.arguments[0] : std::string(),
          .constant = origin.constant,
          .is_constant = origin.arguments.empty()};
}

std::vector<MethodContract> contract_of(
    const std::vector<automation::ObservedOperation>& observations) {
  std::vector<MethodContract> methods;
  for (const auto& operation : observations) {
    for (const ObservedRequest& request : operation.requests) {
      if (request.method.empty()) continue;
      MethodContract& method = method_of(methods, request);
      add_action(method, request);
      method.shapes.push_back(shape_of(operation, request));
    }
  }
  return methods;
}

}  // namespace bvconn::sandbox

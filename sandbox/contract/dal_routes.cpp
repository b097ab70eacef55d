#include "sandbox/contract/dal_routes.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "sandbox/contract/observed.h"
#include "sandbox/contract/words.h"

namespace bvconn::sandbox {
namespace {

using automation::ObservedDalCall;
using automation::ObservedOperation;
using automation::ObservedRequest;
using automation::Origin;

/// As the data access layer's HTTP form writes them: what was left out is null, a date a text.
JsonType json_type(std::string_view name) {
  if (name == "empty" || name == "missing") return JsonType::kNull;
  if (name == "boolean") return JsonType::kBoolean;
  if (name == "int16" || name == "int32") return JsonType::kInteger;
  if (name == "int64") return JsonType::kLongInteger;
  if (name == "double") return JsonType::kFloat;
  if (name == "array") return JsonType::kArray;
  return JsonType::kText;
}

bool holds(const std::vector<JsonType>& types, JsonType wanted) {
  return std::find(types.begin(), types.end(), wanted) != types.end();
}

DalArgument argument_of(const ObservedDalCall::Argument& observed) {
  DalArgument argument;
  if (observed.origin.arguments.size() == 1) argument.name = observed.origin.arguments[0];
  if (observed.any_type) return argument;
  for (const std::string& name : observed.types) {
    if (!holds(argument.types, json_type(name))) argument.types.push_back(json_type(name));
  }
  return argument;
}

bool same(const Origin& a, const Origin& b) {
  return a.arguments == b.arguments && a.constant == b.constant;
}

/// Argument and parameter belong together when they come from the same argument of the operation,
/// or are the same constant; their places may differ.
std::vector<RoutedParameter> parameters_of(const ObservedRequest& request,
                                           const ObservedDalCall& call) {
  std::vector<RoutedParameter> parameters;
  for (const auto& observed : request.parameters) {
    RoutedParameter parameter{.name = observed.name, .argument = {}, .constant = {}};
    const auto found =
        std::find_if(call.arguments.begin(), call.arguments.end(),
                     [&](const auto& each) { return same(each.origin, observed.origin); });
    if (found != call.arguments.end()) {
      parameter.argument = static_cast<std::size_t>(found - call.arguments.begin());
    } else {
      parameter.constant = observed.origin.constant;
    }
    parameters.push_back(std::move(parameter));
  }
  return parameters;
}

/// Without a method the parameters are the arguments themselves, under their names.
std::vector<RoutedParameter> own_parameters(const std::vector<DalArgument>& arguments) {
  std::vector<RoutedParameter> parameters;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    parameters.push_back({.name = arguments[i].name, .argument = i});
  }
  return parameters;
}

DalRoute route_of(const ObservedOperation& operation, const ObservedDalCall& call) {
  DalRoute route{.object = call.object,
                 .operation = call.operation,
                 .arguments = {},
                 .takes_request_text = false,
                 .methods = {},
                 .parameters = {}};
  OperationForm form{.name = operation_name(operation), .places = {}};
  for (const auto& each : call.arguments) {
    form.places.push_back(place_of(each.origin));
    route.arguments.push_back(argument_of(each));
    if (each.request_text) route.takes_request_text = true;
  }
  route.forms.push_back(std::move(form));
  for (const std::size_t place : call.requests) {
    const ObservedRequest& request = operation.requests[place];
    route.methods.emplace_back(request.service, request.method);
  }
  if (route.takes_request_text) return route;
  route.parameters = call.requests.empty()
                         ? own_parameters(route.arguments)
                         : parameters_of(operation.requests[call.requests[0]], call);
  return route;
}

/// Several operations of the library may make the same call. The first in the interface says where
/// it leads; the types that any of them passes are allowed.
void merge(DalRoute& known, const DalRoute& other) {
  if (known.arguments.size() != other.arguments.size()) {
    throw std::logic_error(known.operation + " of " + known.object +
                           " is called with different numbers of arguments");
  }
  for (std::size_t i = 0; i < known.arguments.size(); ++i) {
    auto& types = known.arguments[i].types;
    const auto& more = other.arguments[i].types;
    if (types.empty() || more.empty()) {
      types.clear();
      continue;
    }
    std::copy_if(more.begin(), more.end(), std::back_inserter(types),
                 [&](JsonType each) { return !holds(types, each); });
  }
  known.forms.insert(known.forms.end(), other.forms.begin(), other.forms.end());
  known.methods.insert(known.methods.end(), other.methods.begin(), other.methods.end());
}

std::string type_text(JsonType type) {
  switch (type) {
    case JsonType::kNull:
      return "null";
    case JsonType::kBoolean:
      return "a boolean";
    case JsonType::kInteger:
      return "a whole number of 32 bits";
    case JsonType::kLongInteger:
      return "a whole number of 64 bits";
    case JsonType::kFloat:
      return "a floating-point number";
    case JsonType::kText:
      return "a text";
    case JsonType::kArray:
      return "an array";
    case JsonType::kOther:
      break;
  }
  return "an object or a nested array";
}

std::string expected_text(const DalArgument& argument) {
  if (argument.types.empty()) return "a plain value or an array of them";
  return listed(argument.types, " or ", type_text);
}

std::string arguments_text(const DalRoute& route) {
  if (route.arguments.empty()) return {};
  if (route.takes_request_text) return " (the text of a request)";
  return " (" +
         listed(route.arguments, ", ",
                [](const DalArgument& each) {
                  return each.name.empty() ? expected_text(each) : in_quotes(each.name);
                }) +
         ")";
}

}  // namespace

DalRoutes dal_routes_of(const std::vector<ObservedOperation>& observations) {
  DalRoutes routes;
  for (const ObservedOperation& operation : observations) {
    for (const ObservedDalCall& call : operation.dal_calls) {
      const DalRoute route = route_of(operation, call);
      const auto [known, is_new] = routes.try_emplace({call.object, call.operation}, route);
      if (!is_new) merge(known->second, route);
    }
  }
  return routes;
}

std::vector<Difference> differences(const DalRoute& route, const std::vector<JsonType>& found) {
  const std::size_t expected = route.arguments.size();
  if (found.size() != expected) {
    return {{"", "has " + counted(found.size(), "argument"),
             std::to_string(expected) + arguments_text(route)}};
  }
  std::vector<Difference> all;
  for (std::size_t i = 0; i < expected; ++i) {
    const DalArgument& argument = route.arguments[i];
    const bool fits =
        argument.types.empty() ? found[i] != JsonType::kOther : holds(argument.types, found[i]);
    if (fits) continue;
    all.push_back({"argument " + std::to_string(i + 1) +
                       (argument.name.empty() ? "" : " (" + in_quotes(argument.name) + ")"),
                   "is " + type_text(found[i]), expected_text(argument)});
  }
  return all;
}

}  // namespace bvconn::sandbox

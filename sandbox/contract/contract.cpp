#include "sandbox/contract/contract.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "sandbox/contract/words.h"

namespace bvconn::sandbox {
namespace {

using Complaint = std::optional<std::string>;

bool holds(const std::vector<std::string>& texts, std::string_view wanted) {
  return std::find(texts.begin(), texts.end(), wanted) != texts.end();
}

std::string type_text(std::string_view type) {
  return type.empty() ? "no type" : "type " + quoted(type);
}

std::string namespace_text(std::string_view name_space) {
  return name_space.empty() ? "no namespace" : "the namespace " + quoted(name_space);
}

std::string types_text(const std::vector<std::string>& types) {
  return listed(types, " or ", type_text);
}

Complaint parameter_complaint(const RequestFacts::Parameter& found,
                              const ParameterContract& expected) {
  if (!expected.name.empty() && found.name != expected.name) {
    return "is named " + quoted(found.name) + ", expected " + quoted(expected.name);
  }
  if (expected.types.empty()) return std::nullopt;
  if (found.name_space != expected.name_space) {
    return "(" + quoted(found.name) + ") is in " + namespace_text(found.name_space) +
           ", expected " + namespace_text(expected.name_space);
  }
  if (found.nil) {
    if (expected.may_be_nil) return std::nullopt;
    return "(" + quoted(found.name) + ") is nil, expected " + types_text(expected.types);
  }
  if (holds(expected.types, found.type)) return std::nullopt;
  return "(" + quoted(found.name) + ") has " + type_text(found.type) + ", expected " +
         types_text(expected.types);
}

std::string names_text(const RequestShape& shape) {
  if (shape.parameters.empty()) return {};
  return " (" +
         listed(shape.parameters, ", ",
                [](const ParameterContract& each) {
                  return each.name.empty() ? "a document" : quoted(each.name);
                }) +
         ")";
}

/// How a request departs from one shape: the first difference, and how far the request had fitted
/// until then, so that of several shapes the one that was probably meant can be reported.
struct Departure {
  std::size_t fitted = 0;
  std::string text;
};

std::optional<Departure> departure(const RequestFacts& request, const RequestShape& shape) {
  const std::size_t found = request.parameters.size();
  const std::size_t expected = shape.parameters.size();
  const bool count_fits = shape.open_ended ? found >= expected : found == expected;
  const std::string count = "has " + counted(found, "parameter") + ", expected " +
                            (shape.open_ended ? "at least " : "") + std::to_string(expected) +
                            names_text(shape);
  for (std::size_t i = 0; i < std::min(found, expected); ++i) {
    const auto wrong = parameter_complaint(request.parameters[i], shape.parameters[i]);
    if (!wrong) continue;
    // A wrong name among a wrong number means that something is missing or too much: the number
    // says more then.
    if (!count_fits) return Departure{i, count};
    return Departure{i + 1, "parameter " + std::to_string(i + 1) + " " + *wrong};
  }
  if (count_fits) return std::nullopt;
  return Departure{std::min(found, expected), count};
}

Complaint parameters_complaint(const RequestFacts& request, const MethodContract& method) {
  std::optional<Departure> nearest;
  for (const RequestShape& shape : method.shapes) {
    auto differs = departure(request, shape);
    if (!differs) return std::nullopt;
    if (!nearest || differs->fitted > nearest->fitted) nearest = std::move(differs);
  }
  if (!nearest) return std::nullopt;
  return std::move(nearest->text);
}

Complaint action_complaint(const RequestFacts& request, const MethodContract& method) {
  if (method.any_soap_action) return std::nullopt;
  if (request.soap_action && holds(method.soap_actions, *request.soap_action)) return std::nullopt;
  return (request.soap_action ? "SOAPAction is " + quoted(*request.soap_action)
                              : std::string("the SOAPAction header is missing")) +
         ", expected " + listed(method.soap_actions, " or ", quoted);
}

Complaint header_complaint(const RequestFacts& request, const MethodContract& method) {
  if (request.headers == method.headers) return std::nullopt;
  const auto text = [](const std::vector<std::string>& names) {
    return names.empty() ? std::string("none") : listed(names, ", ", quoted);
  };
  return "the SOAP headers are " + text(request.headers) + ", expected " + text(method.headers);
}

std::string in_its_method(const RequestFacts& request, const std::string& wrong) {
  return request.method + " in " + request.service + ": " + wrong;
}

}  // namespace

Contract::Contract(std::vector<MethodContract> methods) : methods_(std::move(methods)) {}

Complaint Contract::complaint(const RequestFacts& request) const {
  const MethodContract* method = find(request.service, request.method);
  if (!method) return unknown_method(request);
  if (const auto wrong = action_complaint(request, *method)) return in_its_method(request, *wrong);
  return envelope_complaint(request);
}

Complaint Contract::envelope_complaint(const RequestFacts& request) const {
  const MethodContract* method = find(request.service, request.method);
  if (!method) return unknown_method(request);
  auto wrong = header_complaint(request, *method);
  if (!wrong) wrong = parameters_complaint(request, *method);
  if (!wrong) return std::nullopt;
  return in_its_method(request, *wrong);
}

std::vector<const OperationForm*> Contract::forms_of(const RequestFacts& request) const {
  std::vector<const OperationForm*> forms;
  const MethodContract* method = find(request.service, request.method);
  if (!method) return forms;
  constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();
  std::size_t most = 0;
  for (const RequestShape& shape : method->shapes) {
    const auto differs = departure(request, shape);
    const std::size_t fitted = differs ? differs->fitted : kAll;
    if (fitted > most) forms.clear();
    if (fitted >= most) forms.push_back(&shape.form);
    most = std::max(most, fitted);
  }
  return forms;
}

const MethodContract* Contract::find(std::string_view service, std::string_view name) const {
  const auto found = std::find_if(
      methods_.begin(), methods_.end(),
      [&](const MethodContract& each) { return each.service == service && each.name == name; });
  return found == methods_.end() ? nullptr : &*found;
}

std::string Contract::unknown_method(const RequestFacts& request) const {
  std::vector<std::string> services;
  std::vector<std::string> siblings;
  for (const MethodContract& each : methods_) {
    if (!holds(services, each.service)) services.push_back(each.service);
    if (each.service == request.service) siblings.push_back(each.name);
  }
  if (siblings.empty()) {
    return "there is no service " + quoted(request.service) + " (asked for method " +
           quoted(request.method) + "), expected one of " + listed(services, ", ", quoted);
  }
  return request.service + " has no method " + quoted(request.method) + ", expected one of " +
         listed(siblings, ", ", quoted);
}

std::vector<const OperationForm*> Contract::forms() const {
  std::vector<const OperationForm*> forms;
  for (const MethodContract& method : methods_) {
    for (const RequestShape& shape : method.shapes) forms.push_back(&shape.form);
  }
  return forms;
}

}  // namespace bvconn::sandbox

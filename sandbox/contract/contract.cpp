#include "sandbox/contract/contract.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "sandbox/contract/shapes.h"
#include "sandbox/contract/words.h"

namespace bvconn::sandbox {
namespace {

bool holds(const std::vector<std::string>& texts, std::string_view wanted) {
  return std::find(texts.begin(), texts.end(), wanted) != texts.end();
}

void compare_action(const RequestFacts& request, const MethodContract& method, Verdict& verdict) {
  if (method.any_soap_action) return;
  const auto& action = request.soap_action;
  if (action && holds(method.soap_actions, *action)) return;
  verdict.differences.push_back({action ? "SOAPAction" : "the SOAPAction header",
                                 action ? "is " + in_quotes(*action) : "is missing",
                                 listed(method.soap_actions, " or ", in_quotes)});
}

void compare_headers(const RequestFacts& request, const MethodContract& method, Verdict& verdict) {
  if (request.headers == method.headers) return;
  const auto text = [](const std::vector<std::string>& names) {
    return names.empty() ? std::string("none") : listed(names, ", ", in_quotes);
  };
  verdict.differences.push_back(
      {"the SOAP headers", "are " + text(request.headers), text(method.headers)});
}

void compare_parameters(const RequestFacts& request, const MethodContract& method,
                        Verdict& verdict) {
  for (const RequestShape& shape : method.shapes) {
    if (fits(request, shape)) verdict.forms.push_back(&shape.form);
  }
  if (!verdict.forms.empty()) return;
  std::size_t most = 0;
  const RequestShape* nearest = nullptr;
  for (const RequestShape& shape : method.shapes) {
    const std::size_t fitted = fitted_parameters(request, shape);
    if (!nearest || fitted > most) {
      verdict.forms.clear();
      nearest = &shape;
      most = fitted;
    }
    if (fitted == most) verdict.forms.push_back(&shape.form);
  }
  if (!nearest) return;
  auto found = differences(request, *nearest);
  std::move(found.begin(), found.end(), std::back_inserter(verdict.differences));
}

}  // namespace

std::optional<std::string> Verdict::complaint() const {
  if (differences.empty()) return std::nullopt;
  return complaint_text(subject, differences);
}

Contract::Contract(std::vector<MethodContract> methods) : methods_(std::move(methods)) {}

Verdict Contract::judge(const RequestFacts& request) const {
  return judge(request, true);
}

Verdict Contract::judge_envelope(const RequestFacts& request) const {
  return judge(request, false);
}

Verdict Contract::judge(const RequestFacts& request, bool with_action) const {
  Verdict verdict;
  const MethodContract* method = find(request.service, request.method);
  if (!method) {
    verdict.differences.push_back(unknown_method(request));
    return verdict;
  }
  if (with_action) compare_action(request, *method, verdict);
  compare_headers(request, *method, verdict);
  compare_parameters(request, *method, verdict);
  if (!verdict.differences.empty()) verdict.subject = request.method + " in " + request.service;
  return verdict;
}

const MethodContract* Contract::find(std::string_view service, std::string_view name) const {
  const auto found = std::find_if(
      methods_.begin(), methods_.end(),
      [&](const MethodContract& each) { return each.service == service && each.name == name; });
  return found == methods_.end() ? nullptr : &*found;
}

Difference Contract::unknown_method(const RequestFacts& request) const {
  std::vector<std::string> services;
  std::vector<std::string> siblings;
  for (const MethodContract& each : methods_) {
    if (!holds(services, each.service)) services.push_back(each.service);
    if (each.service == request.service) siblings.push_back(each.name);
  }
  if (siblings.empty()) {
    return {"",
            "there is no service " + in_quotes(request.service) + " (asked for method " +
                in_quotes(request.method) + ")",
            "one of " + listed(services, ", ", in_quotes)};
  }
  return {request.service, "has no method " + in_quotes(request.method),
          "one of " + listed(siblings, ", ", in_quotes)};
}

std::vector<const OperationForm*> Contract::forms() const {
  std::vector<const OperationForm*> forms;
  for (const MethodContract& method : methods_) {
    for (const RequestShape& shape : method.shapes) forms.push_back(&shape.form);
  }
  return forms;
}

}  // namespace bvconn::sandbox

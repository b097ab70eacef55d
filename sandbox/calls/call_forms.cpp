#include "sandbox/calls/call_forms.h"

#include <nlohmann/json.hpp>

#include "sandbox/calls/values.h"
#include "sandbox/contract/observed.h"

namespace bvconn::sandbox {
namespace {

using Json = nlohmann::ordered_json;

// What a session is set up with; each call does that by itself.
constexpr std::string_view kSessionClass = "BVConnectorObject";

}  // namespace

std::vector<CallForm> call_forms(const std::vector<automation::ObservedOperation>& observations) {
  std::vector<CallForm> forms;
  for (const auto& each : observations) {
    if (each.cls == kSessionClass) continue;
    const auto* const info = automation::find_class(each.cls);
    forms.push_back({.name = operation_name(each),
                     .info = info,
                     .member = info->find(each.name),
                     .by_soap = !each.requests.empty() || each.dal_calls.empty(),
                     .by_dal = !each.dal_calls.empty()});
  }
  return forms;
}

Json form_json(const CallForm& form) {
  Json routes = Json::array();
  if (form.by_soap) routes.push_back("soap");
  if (form.by_dal) routes.push_back("dal");
  Json arguments = Json::array();
  for (const automation::Argument& each : form.member->arguments) {
    Json argument{{"name", each.name},
                  {"type", automation::type_name(each.type)},
                  {"optional", each.optional}};
    if (each.optional) argument["default"] = default_json(each);
    arguments.push_back(std::move(argument));
  }
  return {{"operation", form.name},
          {"result", automation::type_name(form.member->result)},
          {"routes", routes},
          {"arguments", arguments}};
}

}  // namespace bvconn::sandbox

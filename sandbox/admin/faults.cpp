#include <array>
#include <nlohmann/json.hpp>
#include <string_view>
#include <variant>

#include "sandbox/admin/admin.h"
#include "sandbox/faults/fault_forms.h"

namespace bvconn::sandbox {
namespace {

Reply listed_reply(const nlohmann::ordered_json& faults) {
  constexpr int kIndent = 2;
  const nlohmann::ordered_json body{{"faults", faults}};
  return json_reply(
      200, body.dump(kIndent, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
}

/// "text", "whole number", "number" or "truth", by the place of the field's type in its variant.
std::string_view type_of(const FaultField& field) {
  constexpr std::array<std::string_view, std::variant_size_v<FaultField::Member>> kTypes{
      "text", "whole number", "number", "truth"};
  return kTypes[field.member.index()];
}

}  // namespace

Reply list_faults(AdminCall& call) {
  auto faults = nlohmann::ordered_json::array();
  for (const FaultInForce& each : call.sandbox.faults->list()) {
    auto fault = to_json(*each.rule);
    fault["seen"] = each.seen;
    fault["hit"] = each.hit;
    faults.push_back(std::move(fault));
  }
  return listed_reply(faults);
}

Reply list_fault_kinds(AdminCall& call) {
  expect_query(call, {});
  auto kinds = nlohmann::ordered_json::array();
  for (const FaultKind& kind : fault_kinds()) {
    auto fields = nlohmann::ordered_json::array();
    for (const FaultField& each : fault_fields()) {
      if (takes(kind, each)) fields.push_back(each.name);
    }
    kinds.push_back({{"kind", kind.name}, {"summary", kind.summary}, {"fields", fields}});
  }
  auto fields = nlohmann::ordered_json::array();
  for (const FaultField& each : fault_fields()) {
    fields.push_back({{"name", each.name}, {"type", type_of(each)}, {"summary", each.summary}});
  }
  return json_reply(200,
                    nlohmann::ordered_json{{"kinds", kinds}, {"fields", fields}}.dump() + "\n");
}

Reply add_faults(AdminCall& call) {
  try {
    const auto names =
        call.sandbox.faults->add(faults_from_text(call.request.body, call.sandbox.operation_names));
    auto added = nlohmann::ordered_json::array();
    for (const std::string& each : names) added.push_back({{"name", each}});
    return listed_reply(added);
  } catch (const BadFault& error) {
    throw AdminRefusal{400, error.what()};
  }
}

Reply clear_faults(AdminCall& call) {
  const std::size_t count = call.sandbox.faults->clear();
  return json_reply(200, nlohmann::json{{"removed", count}}.dump() + "\n");
}

Reply remove_fault(AdminCall& call) {
  if (!call.sandbox.faults->remove(call.below)) {
    throw AdminRefusal{404, "There is no fault with the name '" + call.below + "'"};
  }
  return json_reply(200, nlohmann::json{{"removed", 1}}.dump() + "\n");
}

}  // namespace bvconn::sandbox

#include <nlohmann/json.hpp>

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

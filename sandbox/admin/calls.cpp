#include <nlohmann/json.hpp>

#include "sandbox/admin/admin.h"
#include "sandbox/calls/caller.h"
#include "sandbox/calls/values.h"

namespace bvconn::sandbox {
namespace {

Caller& caller_of(const AdminCall& call) {
  if (call.sandbox.caller) return *call.sandbox.caller;
  throw AdminRefusal{404, "This sandbox makes no calls of its own"};
}

}  // namespace

Reply get_operations(AdminCall& call) {
  expect_query(call, {});
  auto operations = nlohmann::ordered_json::array();
  for (const CallForm& each : caller_of(call).forms()) operations.push_back(form_json(each));
  return json_reply(200, json_text({{"operations", operations}}) + "\n");
}

Reply post_call(AdminCall& call) {
  expect_query(call, {});
  const auto asked = nlohmann::json::parse(call.request.body, nullptr, /*allow_exceptions=*/false);
  try {
    return json_reply(200, json_text(caller_of(call).call(asked)) + "\n");
  } catch (const BadCall& error) {
    throw AdminRefusal{400, error.what()};
  } catch (const TooManyCalls&) {
    throw AdminRefusal{503, "Two calls are under way already; ask again when one has ended"};
  }
}

}  // namespace bvconn::sandbox

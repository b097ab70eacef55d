#include <functional>
#include <nlohmann/json.hpp>

#include "sandbox/admin/admin.h"

namespace bvconn::sandbox {
namespace {

Reply done(AdminCall& call, const std::function<void(Store&)>& act, const std::string& text) {
  expect_query(call, {});
  const HeldStore store = call.sandbox.stores.hold(Turn::kStore);
  try {
    act(*store);
  } catch (const SnapshotError& error) {
    throw AdminRefusal{400, error.what()};
  }
  return text_reply(200, text + "\n");
}

}  // namespace

Reply reset_store(AdminCall& call) {
  return done(
      call, [](Store& store) { store.reset(); }, "The store is as it was when it was new.");
}

Reply get_snapshots(AdminCall& call) {
  expect_query(call, {});
  auto rows = nlohmann::ordered_json::array();
  const HeldStore store = call.sandbox.stores.hold(Turn::kNone);
  for (const Snapshot& each : store->snapshots().all()) {
    rows.push_back({{"name", each.name}, {"made", each.made}});
  }
  return json_reply(200, nlohmann::ordered_json{{"snapshots", rows}}.dump());
}

Reply take_snapshot(AdminCall& call) {
  return done(
      call, [&](Store& store) { store.snapshots().take(call.below); },
      "The snapshot '" + call.below + "' is kept.");
}

Reply remove_snapshot(AdminCall& call) {
  return done(
      call, [&](Store& store) { store.snapshots().remove(call.below); },
      "The snapshot '" + call.below + "' is removed.");
}

Reply restore_snapshot(AdminCall& call) {
  return done(
      call, [&](Store& store) { store.snapshots().restore(call.below); },
      "The store is as it was in the snapshot '" + call.below + "'.");
}

}  // namespace bvconn::sandbox

#include "bvconn/observation/trial.h"

#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/observation/world.h"

namespace bvconn::automation::detail {

Trial try_call(World& world, const ClassInfo& info, const Member& operation,
               std::span<const Value> values, const Switches& switches) {
  BVConnectorObject session;
  session.InitTorvexDAL("http://given.example");
  session.GetDisabledDALServices(switches.disabled);
  session.UsingTorvexDAL(switches.route);
  session.UseDALSave(switches.save);
  world.forget();
  Trial trial;
  try {
    const auto object = info.make();
    operation.invoke(object.get(), values);
  } catch (const Error& error) {
    // It does not take these arguments, or it ends so with this answer.
    trial.raised = error;
  }
  trial.seen = world.sightings();
  return trial;
}

}  // namespace bvconn::automation::detail

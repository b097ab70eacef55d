#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/groups.h"
#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/dal/bv_connector_object.h"

namespace bvconn::automation {

// clang-format off
const ClassInfo& connector_object_class() {
  using C = BVConnectorObject;
  static const ClassInfo info =
      ClassBuilder<C>("BVConnectorObject")
          .predeclared()
          .read_only<&C::HTTPTransportObject>("HTTPTransportObject")
          .property<bool, &C::UsingTorvexDAL, &C::UsingTorvexDAL>("UsingTorvexDAL")
          .property<bool, &C::AllowDisabledDALMethods, &C::AllowDisabledDALMethods>("AllowDisabledDALMethods")
          .property<bool, &C::UseDALSave, &C::UseDALSave>("UseDALSave")
          .property_with<&C::SendDALMessageToLog>("SendDALMessageToLog", {"evalMethod", "evalMessage"})
          .property_with<&C::IsDALDisabled>("IsDALDisabled", {"evalMethod", "evalService"})
          .property<std::string, &C::GetDisabledDALServices, &C::GetDisabledDALServices>("GetDisabledDALServices")
          .property<std::string, &C::DALUrl, &C::DALUrl>("DALUrl")
          .write_only<&C::UserName>("UserName")
          .write_only<&C::Password>("Password")
          .write_only<&C::AppVer>("AppVer")
          .write_only<&C::SalesOrg>("SalesOrg")
#define BVCONN_SERVICE_OBJECT(name, ...) .read_only<&C::name>(#name)
#include "bvconn/platform/torvexlib/service_object_rows.inc"
          .operation<&C::InitTorvexDAL>("InitTorvexDAL", {"dal_server_url"})
          .operation<&C::UseTorvexDAL>("UseTorvexDAL")
          .take();
  return info;
}

const ClassInfo& generic_connector_class() {
  using C = BVGenericConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVGenericConnector")
          .operation<&C::Send>("Send", {"aService", "aMethod", "aRootNodeName", "aSoapNode", "aServerURL", "aTimeout?", {"aSessionID?", "NOTHING"}})
          .read_only<&C::SoapEnvelope>("SoapEnvelope")
          .take();
  return info;
}

const ClassInfo& heart_beat_connector_class() {
  using C = BVHeartBeatConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVHeartBeatConnector")
          .operation<&C::sendHeartBeat>("sendHeartBeat", {"aServerURL", "aSessionID", "isBrimvale?"})
          .operation<&C::UpdateHeartBeatTime>("UpdateHeartBeatTime")
          .event<&C::HeartBeatError>("HeartBeatError")
          .take();
  return info;
}
// clang-format on

}  // namespace bvconn::automation

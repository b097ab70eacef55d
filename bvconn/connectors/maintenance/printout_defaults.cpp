// Which printout is taken where none was chosen: five shapes, and which members each has.

#include "bvconn/connectors/maintenance/bv_maintenance_connector.h"
#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr std::string_view kClass = "BVMaintenanceConnector";

constexpr Operation maintenance(std::string_view name, MethodRow method) {
  return {.log = {.cls = kClass, .method = name},
          .method = method,
          .service = &BVServices::Maintenance};
}

constexpr Operation kSaveQuotePrintoutDefault =
    maintenance("SaveQuotePrintoutDefault", &BVMethods::SaveQuotePrintoutDefault);
constexpr Operation kSaveOrderPrintoutDefault =
    maintenance("SaveOrderPrintoutDefault", &BVMethods::SaveOrderPrintoutDefault);
constexpr Operation kSaveSAPPrintoutDefault =
    maintenance("SaveSAPPrintoutDefault", &BVMethods::SaveSAPPrintoutDefault);
constexpr Operation kSaveProjectPrintoutDefault =
    maintenance("SaveProjectPrintoutDefault", &BVMethods::SaveProjectPrintoutDefault);
constexpr Operation kSaveRFQPrintoutDefault =
    maintenance("SaveRFQPrintoutDefault", &BVMethods::SaveRFQPrintoutDefault);

constexpr Operation kSaveAgentQuotePrintoutDefault =
    maintenance("SaveAgentQuotePrintoutDefault", &BVMethods::SaveAgentQuotePrintoutDefault);
constexpr Operation kSaveAgentOrderPrintoutDefault =
    maintenance("SaveAgentOrderPrintoutDefault", &BVMethods::SaveAgentOrderPrintoutDefault);
constexpr Operation kSaveAgentProjectPrintoutDefault =
    maintenance("SaveAgentProjectPrintoutDefault", &BVMethods::SaveAgentProjectPrintoutDefault);
constexpr Operation kSaveAgentSAPPrintoutDefault =
    maintenance("SaveAgentSAPPrintoutDefault", &BVMethods::SaveAgentSAPPrintoutDefault);
constexpr Operation kSaveAgentOrderSubmitPrintoutDefault = maintenance(
    "SaveAgentOrderSubmitPrintoutDefault", &BVMethods::SaveAgentOrderSubmitPrintoutDefault);
constexpr Operation kSaveAgentRFQPrintoutDefault =
    maintenance("SaveAgentRFQPrintoutDefault", &BVMethods::SaveAgentRFQPrintoutDefault);

constexpr Operation kGetAgentQuotePrintoutDefault =
    maintenance("GetAgentQuotePrintoutDefault", &BVMethods::GetAgentQuotePrintoutDefault);
constexpr Operation kGetAgentOrderPrintoutDefault =
    maintenance("GetAgentOrderPrintoutDefault", &BVMethods::GetAgentOrderPrintoutDefault);
constexpr Operation kGetAgentSAPPrintoutDefault =
    maintenance("GetAgentSAPPrintoutDefault", &BVMethods::GetAgentSAPPrintoutDefault);
constexpr Operation kGetAgentProjectPrintoutDefault =
    maintenance("GetAgentProjectPrintoutDefault", &BVMethods::GetAgentProjectPrintoutDefault);
constexpr Operation kGetAgentOrderSubmitPrintoutDefault{
    // deliberate [submit-exit-name]: its exit line bears another operation's name; its enter and
    // error lines do not.
    .log = {.cls = kClass,
            .method = "GetAgentOrderSubmitPrintoutDefault",
            .exit = "GetAgentQuotePrintoutDefault"},
    .method = &BVMethods::GetAgentOrderSubmitPrintoutDefault,
    .service = &BVServices::Maintenance,
};
constexpr Operation kGetAgentRFQPrintoutDefault =
    maintenance("GetAgentRFQPrintoutDefault", &BVMethods::GetAgentRFQPrintoutDefault);

constexpr Operation kSetUserQuotePrintoutDefault =
    maintenance("SetUserQuotePrintoutDefault", &BVMethods::SetUserQuotePrintoutDefault);
constexpr Operation kSetUserOrderPrintoutDefault =
    maintenance("SetUserOrderPrintoutDefault", &BVMethods::SetUserOrderPrintoutDefault);
constexpr Operation kSetUserOrderSubmitPrintoutDefault =
    maintenance("SetUserOrderSubmitPrintoutDefault", &BVMethods::SetUserOrderSubmitPrintoutDefault);
constexpr Operation kSetUserSAPPrintoutDefault =
    maintenance("SetUserSAPPrintoutDefault", &BVMethods::SetUserSAPPrintoutDefault);
constexpr Operation kSetUserProjectPrintoutDefault =
    maintenance("SetUserProjectPrintoutDefault", &BVMethods::SetUserProjectPrintoutDefault);
constexpr Operation kSetUserRFQPrintoutDefault =
    maintenance("SetUserRFQPrintoutDefault", &BVMethods::SetUserRFQPrintoutDefault);

constexpr Operation kGetUserQuotePrintoutDefault =
    maintenance("GetUserQuotePrintoutDefault", &BVMethods::GetUserQuotePrintoutDefault);
constexpr Operation kGetUserOrderPrintoutDefault =
    maintenance("GetUserOrderPrintoutDefault", &BVMethods::GetUserOrderPrintoutDefault);
constexpr Operation kGetUserOrderSubmitPrintoutDefault =
    maintenance("GetUserOrderSubmitPrintoutDefault", &BVMethods::GetUserOrderSubmitPrintoutDefault);
constexpr Operation kGetUserRFQPrintoutDefault =
    maintenance("GetUserRFQPrintoutDefault", &BVMethods::GetUserRFQPrintoutDefault);
constexpr Operation kGetUserSAPPrintoutDefault =
    maintenance("GetUserSAPPrintoutDefault", &BVMethods::GetUserSAPPrintoutDefault);
constexpr Operation kGetUserProjectPrintoutDefault =
    maintenance("GetUserProjectPrintoutDefault", &BVMethods::GetUserProjectPrintoutDefault);

// The five shapes. Where an operation has a route by the data access layer, `by_dal` is its call
// there.

// A printout as the default, whole: the request is built in full on either route.
template <class ByDal>
SoapNode save_printout(const Operation& operation, const CallContext& context,
                       const SoapNode& printout, const ByDal& by_dal) {
  return ConnectorMethodFrame(operation, context, [&](Call& call) {
    call.request(kSoapEncoding).append(printout);
    if (call.takes_dal())
      return call.first_of(by_dal(call.dal().MaintenanceService(), call.request_text()));
    return call.send().first();
  });
}

// deliberate [soap-alone]: the agent's default has no other route, the user's has.
SoapNode save_for_agent(const Operation& operation, const CallContext& context,
                        std::string_view aPrintInfoUID) {
  return ConnectorMethodFrame(operation, context, [&](Call& call) {
    return call.request(kSoapEncoding).add("printInfoUID", aPrintInfoUID).send().first();
  });
}

std::string get_for_agent(const Operation& operation, const CallContext& context) {
  return ConnectorMethodFrame(
      operation, context, [&](Call& call) { return call.request(kSoapEncoding).send().text(); });
}

template <class ByDal>
std::string set_for_user(const Operation& operation, const CallContext& context,
                         std::string_view aPrintInfoUID, const ByDal& by_dal) {
  return ConnectorMethodFrame(operation, context, [&](Call& call) {
    if (call.takes_dal())
      return call.text_of(by_dal(call.dal().MaintenanceService(), aPrintInfoUID));
    return call.request(kSoapEncoding).add("printInfoUID", aPrintInfoUID).send().text();
  });
}

template <class ByDal>
std::string get_for_user(const Operation& operation, const CallContext& context,
                         const ByDal& by_dal) {
  return ConnectorMethodFrame(operation, context, [&](Call& call) {
    if (call.takes_dal()) return call.text_of(by_dal(call.dal().MaintenanceService()));
    return call.request(kSoapEncoding).send().text();
  });
}

}  // namespace

SoapNode BVMaintenanceConnector::SaveQuotePrintoutDefault(std::string_view aSessionID,
                                                          std::string_view aServerURL,
                                                          const SoapNode& aQuotePrintoutNode) {
  return save_printout(
      kSaveQuotePrintoutDefault, {aServerURL, aSessionID}, aQuotePrintoutNode,
      [](const auto& dal, const auto& text) { return dal.SaveQuotePrintoutDefault(text); });
}

SoapNode BVMaintenanceConnector::SaveOrderPrintoutDefault(std::string_view aSessionID,
                                                          std::string_view aServerURL,
                                                          const SoapNode& aOrderPrintoutNode) {
  return save_printout(
      kSaveOrderPrintoutDefault, {aServerURL, aSessionID}, aOrderPrintoutNode,
      [](const auto& dal, const auto& text) { return dal.SaveOrderPrintoutDefault(text); });
}

SoapNode BVMaintenanceConnector::SaveSAPPrintoutDefault(std::string_view aSessionID,
                                                        std::string_view aServerURL,
                                                        const SoapNode& aSAPPrintoutNode) {
  return save_printout(
      kSaveSAPPrintoutDefault, {aServerURL, aSessionID}, aSAPPrintoutNode,
      [](const auto& dal, const auto& text) { return dal.SaveSAPPrintoutDefault(text); });
}

SoapNode BVMaintenanceConnector::SaveProjectPrintoutDefault(std::string_view aSessionID,
                                                            std::string_view aServerURL,
                                                            const SoapNode& aProjectPrintoutNode) {
  return save_printout(
      kSaveProjectPrintoutDefault, {aServerURL, aSessionID}, aProjectPrintoutNode,
      [](const auto& dal, const auto& text) { return dal.SaveProjectPrintoutDefault(text); });
}

SoapNode BVMaintenanceConnector::SaveRFQPrintoutDefault(std::string_view aSessionID,
                                                        std::string_view aServerURL,
                                                        const SoapNode& aRFQPrintoutNode) {
  return save_printout(
      kSaveRFQPrintoutDefault, {aServerURL, aSessionID}, aRFQPrintoutNode,
      [](const auto& dal, const auto& text) { return dal.SaveRFQPrintoutDefault(text); });
}

SoapNode BVMaintenanceConnector::SaveAgentQuotePrintoutDefault(std::string_view aSessionID,
                                                               std::string_view aServerURL,
                                                               std::string_view aPrintInfoUID) {
  return save_for_agent(kSaveAgentQuotePrintoutDefault, {aServerURL, aSessionID}, aPrintInfoUID);
}

SoapNode BVMaintenanceConnector::SaveAgentOrderPrintoutDefault(std::string_view aSessionID,
                                                               std::string_view aServerURL,
                                                               std::string_view aPrintInfoUID) {
  return save_for_agent(kSaveAgentOrderPrintoutDefault, {aServerURL, aSessionID}, aPrintInfoUID);
}

SoapNode BVMaintenanceConnector::SaveAgentProjectPrintoutDefault(std::string_view aSessionID,
                                                                 std::string_view aServerURL,
                                                                 std::string_view aPrintInfoUID) {
  return save_for_agent(kSaveAgentProjectPrintoutDefault, {aServerURL, aSessionID}, aPrintInfoUID);
}

SoapNode BVMaintenanceConnector::SaveAgentSAPPrintoutDefault(std::string_view aSessionID,
                                                             std::string_view aServerURL,
                                                             std::string_view aPrintInfoUID) {
  return save_for_agent(kSaveAgentSAPPrintoutDefault, {aServerURL, aSessionID}, aPrintInfoUID);
}

SoapNode BVMaintenanceConnector::SaveAgentOrderSubmitPrintoutDefault(
    std::string_view aSessionID, std::string_view aServerURL, std::string_view aPrintInfoUID) {
  return save_for_agent(kSaveAgentOrderSubmitPrintoutDefault, {aServerURL, aSessionID},
                        aPrintInfoUID);
}

SoapNode BVMaintenanceConnector::SaveAgentRFQPrintoutDefault(std::string_view aSessionID,
                                                             std::string_view aServerURL,
                                                             std::string_view aPrintInfoUID) {
  return save_for_agent(kSaveAgentRFQPrintoutDefault, {aServerURL, aSessionID}, aPrintInfoUID);
}

std::string BVMaintenanceConnector::GetAgentQuotePrintoutDefault(std::string_view aSessionID,
                                                                 std::string_view aServerURL) {
  return get_for_agent(kGetAgentQuotePrintoutDefault, {aServerURL, aSessionID});
}

std::string BVMaintenanceConnector::GetAgentOrderPrintoutDefault(std::string_view aSessionID,
                                                                 std::string_view aServerURL) {
  return get_for_agent(kGetAgentOrderPrintoutDefault, {aServerURL, aSessionID});
}

std::string BVMaintenanceConnector::GetAgentSAPPrintoutDefault(std::string_view aSessionID,
                                                               std::string_view aServerURL) {
  return get_for_agent(kGetAgentSAPPrintoutDefault, {aServerURL, aSessionID});
}

std::string BVMaintenanceConnector::GetAgentProjectPrintoutDefault(std::string_view aSessionID,
                                                                   std::string_view aServerURL) {
  return get_for_agent(kGetAgentProjectPrintoutDefault, {aServerURL, aSessionID});
}

std::string BVMaintenanceConnector::GetAgentOrderSubmitPrintoutDefault(
    std::string_view aSessionID, std::string_view aServerURL) {
  return get_for_agent(kGetAgentOrderSubmitPrintoutDefault, {aServerURL, aSessionID});
}

std::string BVMaintenanceConnector::GetAgentRFQPrintoutDefault(std::string_view aSessionID,
                                                               std::string_view aServerURL) {
  return get_for_agent(kGetAgentRFQPrintoutDefault, {aServerURL, aSessionID});
}

std::string BVMaintenanceConnector::SetUserQuotePrintoutDefault(std::string_view aSessionID,
                                                                std::string_view aServerURL,
                                                                std::string_view aPrintInfoUID) {
  return set_for_user(
      kSetUserQuotePrintoutDefault, {aServerURL, aSessionID}, aPrintInfoUID,
      [](const auto& dal, auto uid) { return dal.SetUserQuotePrintoutDefault(uid); });
}

std::string BVMaintenanceConnector::SetUserOrderPrintoutDefault(std::string_view aSessionID,
                                                                std::string_view aServerURL,
                                                                std::string_view aPrintInfoUID) {
  return set_for_user(
      kSetUserOrderPrintoutDefault, {aServerURL, aSessionID}, aPrintInfoUID,
      [](const auto& dal, auto uid) { return dal.SetUserOrderPrintoutDefault(uid); });
}

std::string BVMaintenanceConnector::SetUserOrderSubmitPrintoutDefault(
    std::string_view aSessionID, std::string_view aServerURL, std::string_view aPrintInfoUID) {
  return set_for_user(
      kSetUserOrderSubmitPrintoutDefault, {aServerURL, aSessionID}, aPrintInfoUID,
      [](const auto& dal, auto uid) { return dal.SetUserOrderSubmitPrintoutDefault(uid); });
}

std::string BVMaintenanceConnector::SetUserSAPPrintoutDefault(std::string_view aSessionID,
                                                              std::string_view aServerURL,
                                                              std::string_view aPrintInfoUID) {
  return set_for_user(kSetUserSAPPrintoutDefault, {aServerURL, aSessionID}, aPrintInfoUID,
                      [](const auto& dal, auto uid) { return dal.SetUserSAPPrintoutDefault(uid); });
}

std::string BVMaintenanceConnector::SetUserProjectPrintoutDefault(std::string_view aSessionID,
                                                                  std::string_view aServerURL,
                                                                  std::string_view aPrintInfoUID) {
  return set_for_user(
      kSetUserProjectPrintoutDefault, {aServerURL, aSessionID}, aPrintInfoUID,
      [](const auto& dal, auto uid) { return dal.SetUserProjectPrintoutDefault(uid); });
}

std::string BVMaintenanceConnector::SetUserRFQPrintoutDefault(std::string_view aSessionID,
                                                              std::string_view aServerURL,
                                                              std::string_view aPrintInfoUID) {
  return set_for_user(kSetUserRFQPrintoutDefault, {aServerURL, aSessionID}, aPrintInfoUID,
                      [](const auto& dal, auto uid) { return dal.SetUserRFQPrintoutDefault(uid); });
}

std::string BVMaintenanceConnector::GetUserQuotePrintoutDefault(std::string_view aSessionID,
                                                                std::string_view aServerURL) {
  return get_for_user(kGetUserQuotePrintoutDefault, {aServerURL, aSessionID},
                      [](const auto& dal) { return dal.GetUserQuotePrintoutDefault(); });
}

std::string BVMaintenanceConnector::GetUserOrderPrintoutDefault(std::string_view aSessionID,
                                                                std::string_view aServerURL) {
  return get_for_user(kGetUserOrderPrintoutDefault, {aServerURL, aSessionID},
                      [](const auto& dal) { return dal.GetUserOrderPrintoutDefault(); });
}

std::string BVMaintenanceConnector::GetUserOrderSubmitPrintoutDefault(std::string_view aSessionID,
                                                                      std::string_view aServerURL) {
  return get_for_user(kGetUserOrderSubmitPrintoutDefault, {aServerURL, aSessionID},
                      [](const auto& dal) { return dal.GetUserOrderSubmitPrintoutDefault(); });
}

std::string BVMaintenanceConnector::GetUserRFQPrintoutDefault(std::string_view aSessionID,
                                                              std::string_view aServerURL) {
  return get_for_user(kGetUserRFQPrintoutDefault, {aServerURL, aSessionID},
                      [](const auto& dal) { return dal.GetUserRFQPrintoutDefault(); });
}

std::string BVMaintenanceConnector::GetUserSAPPrintoutDefault(std::string_view aSessionID,
                                                              std::string_view aServerURL) {
  return get_for_user(kGetUserSAPPrintoutDefault, {aServerURL, aSessionID},
                      [](const auto& dal) { return dal.GetUserSAPPrintoutDefault(); });
}

std::string BVMaintenanceConnector::GetUserProjectPrintoutDefault(std::string_view aSessionID,
                                                                  std::string_view aServerURL) {
  return get_for_user(kGetUserProjectPrintoutDefault, {aServerURL, aSessionID},
                      [](const auto& dal) { return dal.GetUserProjectPrintoutDefault(); });
}

}  // namespace bvconn

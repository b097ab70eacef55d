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

// Operations that can take the other route, with what they call there: it takes nothing, or a text.
struct Asking {
  Operation operation;
  std::string (dal::MaintenanceService::*dal)() const;
};
struct Giving {
  Operation operation;
  std::string (dal::MaintenanceService::*dal)(std::string_view) const;
};

constexpr Giving kSaveQuotePrintoutDefault{
    .operation = maintenance("SaveQuotePrintoutDefault", &BVMethods::SaveQuotePrintoutDefault),
    .dal = &dal::MaintenanceService::SaveQuotePrintoutDefault,
};
constexpr Giving kSaveOrderPrintoutDefault{
    .operation = maintenance("SaveOrderPrintoutDefault", &BVMethods::SaveOrderPrintoutDefault),
    .dal = &dal::MaintenanceService::SaveOrderPrintoutDefault,
};
constexpr Giving kSaveSAPPrintoutDefault{
    .operation = maintenance("SaveSAPPrintoutDefault", &BVMethods::SaveSAPPrintoutDefault),
    .dal = &dal::MaintenanceService::SaveSAPPrintoutDefault,
};
constexpr Giving kSaveProjectPrintoutDefault{
    .operation = maintenance("SaveProjectPrintoutDefault", &BVMethods::SaveProjectPrintoutDefault),
    .dal = &dal::MaintenanceService::SaveProjectPrintoutDefault,
};
constexpr Giving kSaveRFQPrintoutDefault{
    .operation = maintenance("SaveRFQPrintoutDefault", &BVMethods::SaveRFQPrintoutDefault),
    .dal = &dal::MaintenanceService::SaveRFQPrintoutDefault,
};

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
    // Its exit line bears another operation's name; its enter and error lines do not.
    .log = {.cls = kClass,
            .method = "GetAgentOrderSubmitPrintoutDefault",
            .exit = "GetAgentQuotePrintoutDefault"},
    .method = &BVMethods::GetAgentOrderSubmitPrintoutDefault,
    .service = &BVServices::Maintenance,
};
constexpr Operation kGetAgentRFQPrintoutDefault =
    maintenance("GetAgentRFQPrintoutDefault", &BVMethods::GetAgentRFQPrintoutDefault);

constexpr Giving kSetUserQuotePrintoutDefault{
    .operation =
        maintenance("SetUserQuotePrintoutDefault", &BVMethods::SetUserQuotePrintoutDefault),
    .dal = &dal::MaintenanceService::SetUserQuotePrintoutDefault,
};
constexpr Giving kSetUserOrderPrintoutDefault{
    .operation =
        maintenance("SetUserOrderPrintoutDefault", &BVMethods::SetUserOrderPrintoutDefault),
    .dal = &dal::MaintenanceService::SetUserOrderPrintoutDefault,
};
constexpr Giving kSetUserOrderSubmitPrintoutDefault{
    .operation = maintenance("SetUserOrderSubmitPrintoutDefault",
                             &BVMethods::SetUserOrderSubmitPrintoutDefault),
    .dal = &dal::MaintenanceService::SetUserOrderSubmitPrintoutDefault,
};
constexpr Giving kSetUserSAPPrintoutDefault{
    .operation = maintenance("SetUserSAPPrintoutDefault", &BVMethods::SetUserSAPPrintoutDefault),
    .dal = &dal::MaintenanceService::SetUserSAPPrintoutDefault,
};
constexpr Giving kSetUserProjectPrintoutDefault{
    .operation =
        maintenance("SetUserProjectPrintoutDefault", &BVMethods::SetUserProjectPrintoutDefault),
    .dal = &dal::MaintenanceService::SetUserProjectPrintoutDefault,
};
constexpr Giving kSetUserRFQPrintoutDefault{
    .operation = maintenance("SetUserRFQPrintoutDefault", &BVMethods::SetUserRFQPrintoutDefault),
    .dal = &dal::MaintenanceService::SetUserRFQPrintoutDefault,
};

constexpr Asking kGetUserQuotePrintoutDefault{
    .operation =
        maintenance("GetUserQuotePrintoutDefault", &BVMethods::GetUserQuotePrintoutDefault),
    .dal = &dal::MaintenanceService::GetUserQuotePrintoutDefault,
};
constexpr Asking kGetUserOrderPrintoutDefault{
    .operation =
        maintenance("GetUserOrderPrintoutDefault", &BVMethods::GetUserOrderPrintoutDefault),
    .dal = &dal::MaintenanceService::GetUserOrderPrintoutDefault,
};
constexpr Asking kGetUserOrderSubmitPrintoutDefault{
    .operation = maintenance("GetUserOrderSubmitPrintoutDefault",
                             &BVMethods::GetUserOrderSubmitPrintoutDefault),
    .dal = &dal::MaintenanceService::GetUserOrderSubmitPrintoutDefault,
};
constexpr Asking kGetUserRFQPrintoutDefault{
    .operation = maintenance("GetUserRFQPrintoutDefault", &BVMethods::GetUserRFQPrintoutDefault),
    .dal = &dal::MaintenanceService::GetUserRFQPrintoutDefault,
};
constexpr Asking kGetUserSAPPrintoutDefault{
    .operation = maintenance("GetUserSAPPrintoutDefault", &BVMethods::GetUserSAPPrintoutDefault),
    .dal = &dal::MaintenanceService::GetUserSAPPrintoutDefault,
};
constexpr Asking kGetUserProjectPrintoutDefault{
    .operation =
        maintenance("GetUserProjectPrintoutDefault", &BVMethods::GetUserProjectPrintoutDefault),
    .dal = &dal::MaintenanceService::GetUserProjectPrintoutDefault,
};

// The request is built in full on either route.
SoapNode save_plain(const Giving& save, std::string_view aSessionID, std::string_view aServerURL,
                    const SoapNode& printout) {
  return ConnectorMethodFrame(save.operation, [&](Call& call) {
    call.envelope(aSessionID, kSoapEncoding).Append(printout);
    if (call.takes_dal()) {
      return call.parse((call.dal().MaintenanceService().*save.dal)(call.request_text())).first();
    }
    return call.send(aServerURL).first();
  });
}

// The agent's defaults have no other route.
SoapNode save_agent(const Operation& operation, std::string_view aSessionID,
                    std::string_view aServerURL, std::string_view aPrintInfoUID) {
  return ConnectorMethodFrame(operation, [&](Call& call) {
    call.envelope(aSessionID, kSoapEncoding).Create("printInfoUID", aPrintInfoUID, "", "", "");
    return call.send(aServerURL).first();
  });
}

std::string get_agent(const Operation& operation, std::string_view aSessionID,
                      std::string_view aServerURL) {
  return ConnectorMethodFrame(operation, [&](Call& call) {
    call.envelope(aSessionID, kSoapEncoding);
    return call.send(aServerURL).text();
  });
}

std::string set_user(const Giving& set, std::string_view aSessionID, std::string_view aServerURL,
                     std::string_view aPrintInfoUID) {
  return ConnectorMethodFrame(set.operation, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse((call.dal().MaintenanceService().*set.dal)(aPrintInfoUID)).text();
    }
    call.envelope(aSessionID, kSoapEncoding).Create("printInfoUID", aPrintInfoUID, "", "", "");
    return call.send(aServerURL).text();
  });
}

std::string get_user(const Asking& get, std::string_view aSessionID, std::string_view aServerURL) {
  return ConnectorMethodFrame(get.operation, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse((call.dal().MaintenanceService().*get.dal)()).text();
    }
    call.envelope(aSessionID, kSoapEncoding);
    return call.send(aServerURL).text();
  });
}

}  // namespace

SoapNode BVMaintenanceConnector::SaveQuotePrintoutDefault(std::string_view aSessionID,
                                                          std::string_view aServerURL,
                                                          const SoapNode& aQuotePrintoutNode) {
  return save_plain(kSaveQuotePrintoutDefault, aSessionID, aServerURL, aQuotePrintoutNode);
}

SoapNode BVMaintenanceConnector::SaveOrderPrintoutDefault(std::string_view aSessionID,
                                                          std::string_view aServerURL,
                                                          const SoapNode& aOrderPrintoutNode) {
  return save_plain(kSaveOrderPrintoutDefault, aSessionID, aServerURL, aOrderPrintoutNode);
}

SoapNode BVMaintenanceConnector::SaveSAPPrintoutDefault(std::string_view aSessionID,
                                                        std::string_view aServerURL,
                                                        const SoapNode& aSAPPrintoutNode) {
  return save_plain(kSaveSAPPrintoutDefault, aSessionID, aServerURL, aSAPPrintoutNode);
}

SoapNode BVMaintenanceConnector::SaveProjectPrintoutDefault(std::string_view aSessionID,
                                                            std::string_view aServerURL,
                                                            const SoapNode& aProjectPrintoutNode) {
  return save_plain(kSaveProjectPrintoutDefault, aSessionID, aServerURL, aProjectPrintoutNode);
}

SoapNode BVMaintenanceConnector::SaveRFQPrintoutDefault(std::string_view aSessionID,
                                                        std::string_view aServerURL,
                                                        const SoapNode& aRFQPrintoutNode) {
  return save_plain(kSaveRFQPrintoutDefault, aSessionID, aServerURL, aRFQPrintoutNode);
}

SoapNode BVMaintenanceConnector::SaveAgentQuotePrintoutDefault(std::string_view aSessionID,
                                                               std::string_view aServerURL,
                                                               std::string_view aPrintInfoUID) {
  return save_agent(kSaveAgentQuotePrintoutDefault, aSessionID, aServerURL, aPrintInfoUID);
}

SoapNode BVMaintenanceConnector::SaveAgentOrderPrintoutDefault(std::string_view aSessionID,
                                                               std::string_view aServerURL,
                                                               std::string_view aPrintInfoUID) {
  return save_agent(kSaveAgentOrderPrintoutDefault, aSessionID, aServerURL, aPrintInfoUID);
}

SoapNode BVMaintenanceConnector::SaveAgentProjectPrintoutDefault(std::string_view aSessionID,
                                                                 std::string_view aServerURL,
                                                                 std::string_view aPrintInfoUID) {
  return save_agent(kSaveAgentProjectPrintoutDefault, aSessionID, aServerURL, aPrintInfoUID);
}

SoapNode BVMaintenanceConnector::SaveAgentSAPPrintoutDefault(std::string_view aSessionID,
                                                             std::string_view aServerURL,
                                                             std::string_view aPrintInfoUID) {
  return save_agent(kSaveAgentSAPPrintoutDefault, aSessionID, aServerURL, aPrintInfoUID);
}

SoapNode BVMaintenanceConnector::SaveAgentOrderSubmitPrintoutDefault(
    std::string_view aSessionID, std::string_view aServerURL, std::string_view aPrintInfoUID) {
  return save_agent(kSaveAgentOrderSubmitPrintoutDefault, aSessionID, aServerURL, aPrintInfoUID);
}

SoapNode BVMaintenanceConnector::SaveAgentRFQPrintoutDefault(std::string_view aSessionID,
                                                             std::string_view aServerURL,
                                                             std::string_view aPrintInfoUID) {
  return save_agent(kSaveAgentRFQPrintoutDefault, aSessionID, aServerURL, aPrintInfoUID);
}

std::string BVMaintenanceConnector::GetAgentQuotePrintoutDefault(std::string_view aSessionID,
                                                                 std::string_view aServerURL) {
  return get_agent(kGetAgentQuotePrintoutDefault, aSessionID, aServerURL);
}

std::string BVMaintenanceConnector::GetAgentOrderPrintoutDefault(std::string_view aSessionID,
                                                                 std::string_view aServerURL) {
  return get_agent(kGetAgentOrderPrintoutDefault, aSessionID, aServerURL);
}

std::string BVMaintenanceConnector::GetAgentSAPPrintoutDefault(std::string_view aSessionID,
                                                               std::string_view aServerURL) {
  return get_agent(kGetAgentSAPPrintoutDefault, aSessionID, aServerURL);
}

std::string BVMaintenanceConnector::GetAgentProjectPrintoutDefault(std::string_view aSessionID,
                                                                   std::string_view aServerURL) {
  return get_agent(kGetAgentProjectPrintoutDefault, aSessionID, aServerURL);
}

std::string BVMaintenanceConnector::GetAgentOrderSubmitPrintoutDefault(
    std::string_view aSessionID, std::string_view aServerURL) {
  return get_agent(kGetAgentOrderSubmitPrintoutDefault, aSessionID, aServerURL);
}

std::string BVMaintenanceConnector::GetAgentRFQPrintoutDefault(std::string_view aSessionID,
                                                               std::string_view aServerURL) {
  return get_agent(kGetAgentRFQPrintoutDefault, aSessionID, aServerURL);
}

std::string BVMaintenanceConnector::SetUserQuotePrintoutDefault(std::string_view aSessionID,
                                                                std::string_view aServerURL,
                                                                std::string_view aPrintInfoUID) {
  return set_user(kSetUserQuotePrintoutDefault, aSessionID, aServerURL, aPrintInfoUID);
}

std::string BVMaintenanceConnector::SetUserOrderPrintoutDefault(std::string_view aSessionID,
                                                                std::string_view aServerURL,
                                                                std::string_view aPrintInfoUID) {
  return set_user(kSetUserOrderPrintoutDefault, aSessionID, aServerURL, aPrintInfoUID);
}

std::string BVMaintenanceConnector::SetUserOrderSubmitPrintoutDefault(
    std::string_view aSessionID, std::string_view aServerURL, std::string_view aPrintInfoUID) {
  return set_user(kSetUserOrderSubmitPrintoutDefault, aSessionID, aServerURL, aPrintInfoUID);
}

std::string BVMaintenanceConnector::SetUserSAPPrintoutDefault(std::string_view aSessionID,
                                                              std::string_view aServerURL,
                                                              std::string_view aPrintInfoUID) {
  return set_user(kSetUserSAPPrintoutDefault, aSessionID, aServerURL, aPrintInfoUID);
}

std::string BVMaintenanceConnector::SetUserProjectPrintoutDefault(std::string_view aSessionID,
                                                                  std::string_view aServerURL,
                                                                  std::string_view aPrintInfoUID) {
  return set_user(kSetUserProjectPrintoutDefault, aSessionID, aServerURL, aPrintInfoUID);
}

std::string BVMaintenanceConnector::SetUserRFQPrintoutDefault(std::string_view aSessionID,
                                                              std::string_view aServerURL,
                                                              std::string_view aPrintInfoUID) {
  return set_user(kSetUserRFQPrintoutDefault, aSessionID, aServerURL, aPrintInfoUID);
}

std::string BVMaintenanceConnector::GetUserQuotePrintoutDefault(std::string_view aSessionID,
                                                                std::string_view aServerURL) {
  return get_user(kGetUserQuotePrintoutDefault, aSessionID, aServerURL);
}

std::string BVMaintenanceConnector::GetUserOrderPrintoutDefault(std::string_view aSessionID,
                                                                std::string_view aServerURL) {
  return get_user(kGetUserOrderPrintoutDefault, aSessionID, aServerURL);
}

std::string BVMaintenanceConnector::GetUserOrderSubmitPrintoutDefault(std::string_view aSessionID,
                                                                      std::string_view aServerURL) {
  return get_user(kGetUserOrderSubmitPrintoutDefault, aSessionID, aServerURL);
}

std::string BVMaintenanceConnector::GetUserRFQPrintoutDefault(std::string_view aSessionID,
                                                              std::string_view aServerURL) {
  return get_user(kGetUserRFQPrintoutDefault, aSessionID, aServerURL);
}

std::string BVMaintenanceConnector::GetUserSAPPrintoutDefault(std::string_view aSessionID,
                                                              std::string_view aServerURL) {
  return get_user(kGetUserSAPPrintoutDefault, aSessionID, aServerURL);
}

std::string BVMaintenanceConnector::GetUserProjectPrintoutDefault(std::string_view aSessionID,
                                                                  std::string_view aServerURL) {
  return get_user(kGetUserProjectPrintoutDefault, aSessionID, aServerURL);
}

}  // namespace bvconn

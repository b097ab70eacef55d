// Paragraphs and remarks: twins in all but their names.

#include "bvconn/connectors/maintenance/bv_maintenance_connector.h"
#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr Operation maintenance(std::string_view name, MethodRow method) {
  return {.log = {.cls = "BVMaintenanceConnector", .method = name, .form = LogForm::kTextLines},
          .method = method,
          .service = &BVServices::Maintenance};
}

constexpr Operation kGetAllParagraphs =
    maintenance("GetAllParagraphs", &BVMethods::GetAllParagraphs);
constexpr Operation kCreateParagraph = maintenance("CreateParagraph", &BVMethods::CreateParagraph);
constexpr Operation kUpdateParagraph = maintenance("UpdateParagraph", &BVMethods::UpdateParagraph);
constexpr Operation kDeleteParagraph = maintenance("DeleteParagraph", &BVMethods::DeleteParagraph);
constexpr Operation kOrderParagraphs = maintenance("OrderParagraphs", &BVMethods::OrderParagraphs);
constexpr Operation kGetAllRemarks = maintenance("GetAllRemarks", &BVMethods::GetAllRemarks);
constexpr Operation kCreateRemark = maintenance("CreateRemark", &BVMethods::CreateRemark);
constexpr Operation kUpdateRemark = maintenance("UpdateRemark", &BVMethods::UpdateRemark);
constexpr Operation kDeleteRemark = maintenance("DeleteRemark", &BVMethods::DeleteRemark);
constexpr Operation kOrderRemarks = maintenance("OrderRemarks", &BVMethods::OrderRemarks);

SoapNode get_all(const Operation& operation, std::string_view aSessionID,
                 std::string_view aServerURL) {
  return ConnectorMethodFrame(operation, [&](Call& call) {
    call.getEnvelope(aSessionID);
    return call.exchange(aServerURL).first();
  });
}

SoapNode create(const Operation& operation, std::string_view aSessionID, const SoapNode& aSoapNode,
                std::string_view aServerURL) {
  return ConnectorMethodFrame(operation, [&](Call& call) {
    call.getEnvelope(aSessionID).Append(aSoapNode);
    return call.exchange(aServerURL).first();
  });
}

std::string update(const Operation& operation, std::string_view aSessionID,
                   const SoapNode& aSoapNode, std::string_view aServerURL) {
  return ConnectorMethodFrame(operation, [&](Call& call) {
    call.getEnvelope(aSessionID).Append(aSoapNode);
    return call.exchange(aServerURL).text();
  });
}

// Deletes one, or puts several in order: a key as text, or keys as they stand, is the parameter.
std::string send_keys(const Operation& operation, std::string_view aSessionID, const Variant& keys,
                      std::string_view aServerURL) {
  return ConnectorMethodFrame(operation, [&](Call& call) {
    call.getEnvelope(aSessionID).Create("param", keys, "", "", "");
    return call.exchange(aServerURL).text();
  });
}

}  // namespace

SoapNode BVMaintenanceConnector::GetAllParagraphs(std::string_view aSessionID,
                                                  std::string_view aServerURL) {
  return get_all(kGetAllParagraphs, aSessionID, aServerURL);
}

SoapNode BVMaintenanceConnector::CreateParagraph(std::string_view aSessionID,
                                                 const SoapNode& aSoapNode,
                                                 std::string_view aServerURL) {
  return create(kCreateParagraph, aSessionID, aSoapNode, aServerURL);
}

std::string BVMaintenanceConnector::UpdateParagraph(std::string_view aSessionID,
                                                    const SoapNode& aSoapNode,
                                                    std::string_view aServerURL) {
  return update(kUpdateParagraph, aSessionID, aSoapNode, aServerURL);
}

std::string BVMaintenanceConnector::DeleteParagraph(std::string_view aSessionID,
                                                    std::string_view aParagraphUID,
                                                    std::string_view aServerURL) {
  return send_keys(kDeleteParagraph, aSessionID, aParagraphUID, aServerURL);
}

std::string BVMaintenanceConnector::OrderParagraphs(std::string_view aSessionID,
                                                    const Variant& aParagraphUID,
                                                    std::string_view aServerURL) {
  return send_keys(kOrderParagraphs, aSessionID, aParagraphUID, aServerURL);
}

SoapNode BVMaintenanceConnector::GetAllRemarks(std::string_view aSessionID,
                                               std::string_view aServerURL) {
  return get_all(kGetAllRemarks, aSessionID, aServerURL);
}

SoapNode BVMaintenanceConnector::CreateRemark(std::string_view aSessionID,
                                              const SoapNode& aSoapNode,
                                              std::string_view aServerURL) {
  return create(kCreateRemark, aSessionID, aSoapNode, aServerURL);
}

std::string BVMaintenanceConnector::UpdateRemark(std::string_view aSessionID,
                                                 const SoapNode& aSoapNode,
                                                 std::string_view aServerURL) {
  return update(kUpdateRemark, aSessionID, aSoapNode, aServerURL);
}

std::string BVMaintenanceConnector::DeleteRemark(std::string_view aSessionID,
                                                 std::string_view aRemarkUID,
                                                 std::string_view aServerURL) {
  return send_keys(kDeleteRemark, aSessionID, aRemarkUID, aServerURL);
}

std::string BVMaintenanceConnector::OrderRemarks(std::string_view aSessionID,
                                                 const Variant& aRemarkUID,
                                                 std::string_view aServerURL) {
  return send_keys(kOrderRemarks, aSessionID, aRemarkUID, aServerURL);
}

}  // namespace bvconn

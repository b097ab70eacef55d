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

// deliberate [two-steps]: the whole family sends in two steps, so without a timing line.
SoapNode get_all(const Operation& operation, const CallContext& context) {
  return ConnectorMethodFrame(operation, context,
                              [&](Call& call) { return call.getEnvelope().exchange().first(); });
}

SoapNode create(const Operation& operation, const CallContext& context, const SoapNode& aSoapNode) {
  return ConnectorMethodFrame(operation, context, [&](Call& call) {
    return call.getEnvelope().append(aSoapNode).exchange().first();
  });
}

std::string update(const Operation& operation, const CallContext& context,
                   const SoapNode& aSoapNode) {
  return ConnectorMethodFrame(operation, context, [&](Call& call) {
    return call.getEnvelope().append(aSoapNode).exchange().text();
  });
}

// Deletes one, or puts several in order: a key as text, or keys as they stand, is the parameter.
template <class Keys>
std::string send_keys(const Operation& operation, const CallContext& context, const Keys& keys) {
  return ConnectorMethodFrame(operation, context, [&](Call& call) {
    return call.getEnvelope().params(keys).exchange().text();
  });
}

}  // namespace

SoapNode BVMaintenanceConnector::GetAllParagraphs(std::string_view aSessionID,
                                                  std::string_view aServerURL) {
  return get_all(kGetAllParagraphs, {aServerURL, aSessionID});
}

SoapNode BVMaintenanceConnector::CreateParagraph(std::string_view aSessionID,
                                                 const SoapNode& aSoapNode,
                                                 std::string_view aServerURL) {
  return create(kCreateParagraph, {aServerURL, aSessionID}, aSoapNode);
}

std::string BVMaintenanceConnector::UpdateParagraph(std::string_view aSessionID,
                                                    const SoapNode& aSoapNode,
                                                    std::string_view aServerURL) {
  return update(kUpdateParagraph, {aServerURL, aSessionID}, aSoapNode);
}

std::string BVMaintenanceConnector::DeleteParagraph(std::string_view aSessionID,
                                                    std::string_view aParagraphUID,
                                                    std::string_view aServerURL) {
  return send_keys(kDeleteParagraph, {aServerURL, aSessionID}, aParagraphUID);
}

std::string BVMaintenanceConnector::OrderParagraphs(std::string_view aSessionID,
                                                    const Variant& aParagraphUID,
                                                    std::string_view aServerURL) {
  return send_keys(kOrderParagraphs, {aServerURL, aSessionID}, aParagraphUID);
}

SoapNode BVMaintenanceConnector::GetAllRemarks(std::string_view aSessionID,
                                               std::string_view aServerURL) {
  return get_all(kGetAllRemarks, {aServerURL, aSessionID});
}

SoapNode BVMaintenanceConnector::CreateRemark(std::string_view aSessionID,
                                              const SoapNode& aSoapNode,
                                              std::string_view aServerURL) {
  return create(kCreateRemark, {aServerURL, aSessionID}, aSoapNode);
}

std::string BVMaintenanceConnector::UpdateRemark(std::string_view aSessionID,
                                                 const SoapNode& aSoapNode,
                                                 std::string_view aServerURL) {
  return update(kUpdateRemark, {aServerURL, aSessionID}, aSoapNode);
}

std::string BVMaintenanceConnector::DeleteRemark(std::string_view aSessionID,
                                                 std::string_view aRemarkUID,
                                                 std::string_view aServerURL) {
  return send_keys(kDeleteRemark, {aServerURL, aSessionID}, aRemarkUID);
}

std::string BVMaintenanceConnector::OrderRemarks(std::string_view aSessionID,
                                                 const Variant& aRemarkUID,
                                                 std::string_view aServerURL) {
  return send_keys(kOrderRemarks, {aServerURL, aSessionID}, aRemarkUID);
}

}  // namespace bvconn

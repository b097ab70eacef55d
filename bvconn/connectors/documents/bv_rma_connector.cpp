#include "bvconn/connectors/documents/bv_rma_connector.h"

#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr std::string_view kClass = "BVRMAConnector";

constexpr Operation kGetNewRma{
    .log = {.cls = kClass, .method = "GetNewRMA", .brackets = true},
    .method = &BVMethods::GetNewRMA,
    .service = &BVServices::RMA,
};
constexpr Operation kGetExistingRma{
    .log = {.cls = kClass, .method = "GetExistingRMA", .brackets = true},
    .method = &BVMethods::GetExistingRMA,
    .service = &BVServices::RMA,
};
constexpr Operation kSaveRma{
    .log = {.cls = kClass, .method = "SaveRMA", .brackets = true},
    .method = &BVMethods::SaveRMA,
    .service = &BVServices::RMA,
};
constexpr Operation kSubmitRma{
    .log = {.cls = kClass, .method = "SubmitRMA", .brackets = true},
    .method = &BVMethods::SubmitRMA,
    .service = &BVServices::RMA,
};
constexpr Operation kOpenRma{
    // deliberate [open-rma-log-name]: errors are logged under the operation that fetches an RMA.
    // deliberate [no-row]: its wire name is in no row.
    .log = {.cls = kClass, .method = "openRMA", .brackets = true, .error = "GetExistingRMA"},
    .wire = "openRMA",
    .service = &BVServices::RMA,
};
// deliberate [small-log-name]: its lines begin with a small letter.
constexpr Operation kGetInvoiceInfo{
    .log = {.cls = kClass, .method = "getInvoiceInfo", .brackets = true},
    .name = "GetInvoiceInfo",
    .method = &BVMethods::GetInvoiceInfo,
    .service = &BVServices::RMA,
};

}  // namespace

SoapNode BVRMAConnector::GetNewRMA(std::string_view aManufacturerGID, std::string_view aServerURL,
                                   std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetNewRma, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().RMAService().GetNewRMA(aManufacturerGID));
    return call.request(kSoapEncoding).add("ManufacturerGID", aManufacturerGID).send().first();
  });
}

SoapNode BVRMAConnector::GetExistingRMA(std::string_view aServerURL, std::string_view aSessionID,
                                        std::string_view aUID) {
  return ConnectorMethodFrame(kGetExistingRma, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().RMAService().GetExistingRMA(aUID));
    return call.request(kSoapEncoding).add("UID", aUID).send().first();
  });
}

SoapNode BVRMAConnector::SaveRMA(std::string_view aServerURL, std::string_view aSessionID,
                                 const SoapNode& aSerializedRMA) {
  return ConnectorMethodFrame(kSaveRma, {aServerURL, aSessionID}, [&](Call& call) {
    // deliberate [serialized-node]: a node, whatever its name says.
    call.request().add("RMARequestBean", aSerializedRMA);
    if (call.takes_dal()) {
      call.parse(call.dal().RMAService().SaveRMA(call.request_text())).or_raise();
    } else {
      call.send().or_raise();
    }
    // deliberate [save-rma-deeper]: one level deeper than in SubmitRMA.
    return to_node(call.value());
  });
}

SoapNode BVRMAConnector::SubmitRMA(std::string_view aServerURL, std::string_view aSessionID,
                                   const SoapNode& aSerializedRMA) {
  return ConnectorMethodFrame(kSubmitRma, {aServerURL, aSessionID}, [&](Call& call) {
    call.request().add("RMARequestBean", aSerializedRMA);
    if (call.takes_dal())
      return call.first_of(call.dal().RMAService().SubmitRMA(call.request_text()));
    return call.send().first();
  });
}

SoapNode BVRMAConnector::openRMA(std::string_view aServerURL, std::string_view aSessionID,
                                 std::string_view aUID) {
  return ConnectorMethodFrame(kOpenRma, {aServerURL, aSessionID}, [&](Call& call) {
    // deliberate [soap-alone]: fetching an RMA has another route, opening it has none.
    return call.request(kSoapEncoding).add("UID", aUID).send().first();
  });
}

SoapNode BVRMAConnector::GetInvoiceInfo(std::string_view aServerURL, std::string_view aSessionID,
                                        std::string_view aInvoiceNumber) {
  return ConnectorMethodFrame(kGetInvoiceInfo, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().RMAService().GetInvoiceInfo(aInvoiceNumber));
    return call.request(kSoapEncoding).add("InvoiceNumber", aInvoiceNumber).send().first();
  });
}

}  // namespace bvconn

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
    // Errors are logged under the operation that fetches an RMA.
    .log = {.cls = kClass, .method = "openRMA", .brackets = true, .error = "GetExistingRMA"},
    .wire = "openRMA",
    .service = &BVServices::RMA,
};
constexpr Operation kGetInvoiceInfo{
    .log = {.cls = kClass, .method = "getInvoiceInfo", .brackets = true},
    .method = &BVMethods::GetInvoiceInfo,
    .service = &BVServices::RMA,
};

// The SOAP route of the reads: one named key.
SoapNode send_key(Call& call, std::string_view aServerURL, std::string_view aSessionID,
                  std::string_view name, std::string_view key) {
  call.envelope(aSessionID, kSoapEncoding).Create(name, key, "", "", "");
  return call.send(aServerURL).first();
}

}  // namespace

SoapNode BVRMAConnector::GetNewRMA(std::string_view aManufacturerGID, std::string_view aServerURL,
                                   std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetNewRma, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().RMAService().GetNewRMA(aManufacturerGID)).first();
    }
    return send_key(call, aServerURL, aSessionID, "ManufacturerGID", aManufacturerGID);
  });
}

SoapNode BVRMAConnector::GetExistingRMA(std::string_view aServerURL, std::string_view aSessionID,
                                        std::string_view aUID) {
  return ConnectorMethodFrame(kGetExistingRma, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().RMAService().GetExistingRMA(aUID)).first();
    }
    return send_key(call, aServerURL, aSessionID, "UID", aUID);
  });
}

SoapNode BVRMAConnector::SaveRMA(std::string_view aServerURL, std::string_view aSessionID,
                                 const SoapNode& aSerializedRMA) {
  return ConnectorMethodFrame(kSaveRma, [&](Call& call) {
    call.envelope(aSessionID).Create("RMARequestBean", aSerializedRMA, "", "", "");
    if (call.takes_dal()) {
      call.parse(call.dal().RMAService().SaveRMA(call.request_text()));
    } else {
      call.send(aServerURL);
    }
    // One level deeper than in SubmitRMA.
    return to_node(call.value());
  });
}

SoapNode BVRMAConnector::SubmitRMA(std::string_view aServerURL, std::string_view aSessionID,
                                   const SoapNode& aSerializedRMA) {
  return ConnectorMethodFrame(kSubmitRma, [&](Call& call) {
    call.envelope(aSessionID).Create("RMARequestBean", aSerializedRMA, "", "", "");
    if (call.takes_dal()) {
      return call.parse(call.dal().RMAService().SubmitRMA(call.request_text())).first();
    }
    return call.send(aServerURL).first();
  });
}

SoapNode BVRMAConnector::openRMA(std::string_view aServerURL, std::string_view aSessionID,
                                 std::string_view aUID) {
  return ConnectorMethodFrame(
      kOpenRma, [&](Call& call) { return send_key(call, aServerURL, aSessionID, "UID", aUID); });
}

SoapNode BVRMAConnector::GetInvoiceInfo(std::string_view aServerURL, std::string_view aSessionID,
                                        std::string_view aInvoiceNumber) {
  return ConnectorMethodFrame(kGetInvoiceInfo, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().RMAService().GetInvoiceInfo(aInvoiceNumber)).first();
    }
    return send_key(call, aServerURL, aSessionID, "InvoiceNumber", aInvoiceNumber);
  });
}

}  // namespace bvconn

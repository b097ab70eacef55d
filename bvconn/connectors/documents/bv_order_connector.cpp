#include "bvconn/connectors/documents/bv_order_connector.h"

#include "bvconn/core/session_state.h"
#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr Operation kGetSapOrderView{
    .log = {.cls = "BVOrderConnector", .method = "getSAPOrderView", .brackets = true},
    .method = &BVMethods::getSAPOrderView,
    .service = &BVServices::Order,
};
constexpr Operation kGetSapInfo{
    .log = {.cls = "BVOrderConnector", .method = "getSAPInfo"},
    .method = &BVMethods::getSAPInfo,
    .service = &BVServices::Order,
};

}  // namespace

SoapNode BVOrderConnector::getSAPOrderView(std::string_view aSessionID, std::string_view aServerURL,
                                           std::string_view aOrderGID, bool aIncludePrice) {
  return ConnectorMethodFrame(kGetSapOrderView, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().OrderService().getSAPOrderView(aOrderGID, aIncludePrice))
          .first();
    }
    auto& parameters = call.envelope(aSessionID);
    parameters.Create("GID", aOrderGID, "", "", "");
    parameters.Create("includePrice", aIncludePrice, "", "", "");
    return call.send(aServerURL).first();
  });
}

SoapNode BVOrderConnector::getSAPInfo(std::string_view aSessionID, std::string_view aServerURL,
                                      std::string_view aOrderGID, std::string_view aAgentGID,
                                      std::string_view aCustomerGID) {
  return ConnectorMethodFrame(kGetSapInfo, [&](Call& call) {
    auto& parameters = call.envelope(aSessionID);
    parameters.Create("param", aOrderGID, "", "", "");
    parameters.Create("param", aAgentGID, "", "", "");
    parameters.Create("param", aCustomerGID, "", "", "");
    if (call.takes_dal()) {
      session().UseDALSave = true;
      return call.parse(call.dal().OrderService().getSAPInfo(call.request_text())).first();
    }
    return call.send(aServerURL).first();
  });
}

}  // namespace bvconn

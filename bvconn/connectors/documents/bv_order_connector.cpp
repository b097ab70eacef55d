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
  return ConnectorMethodFrame(kGetSapOrderView, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().OrderService().getSAPOrderView(aOrderGID, aIncludePrice));
    return call.request().add("GID", aOrderGID).add("includePrice", aIncludePrice).send().first();
  });
}

SoapNode BVOrderConnector::getSAPInfo(std::string_view aSessionID, std::string_view aServerURL,
                                      std::string_view aOrderGID, std::string_view aAgentGID,
                                      std::string_view aCustomerGID) {
  return ConnectorMethodFrame(kGetSapInfo, {aServerURL, aSessionID}, [&](Call& call) {
    call.request().params(aOrderGID, aAgentGID, aCustomerGID);
    if (call.takes_dal()) {
      // deliberate [sap-info-opens-saves]: from here on projects are saved on this route too.
      session().UseDALSave = true;
      return call.first_of(call.dal().OrderService().getSAPInfo(call.request_text()));
    }
    return call.send().first();
  });
}

}  // namespace bvconn

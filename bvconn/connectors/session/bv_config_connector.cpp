#include "bvconn/connectors/session/bv_config_connector.h"

#include <string>

#include "bvconn/core/settings.h"
#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr Operation kGetConfiguredProduct{
    .log = {.cls = "BVConfigConnector", .method = "getConfiguredProduct", .brackets = true},
    .name = "GetConfiguredProduct",
    .method = &BVMethods::GetConfigXML,
    .service = &BVServices::ConfigService,
};

}  // namespace

SoapNode BVConfigConnector::GetConfiguredProduct(std::string_view aServerURL,
                                                 std::string_view aSalesInstrumentGID) {
  return ConnectorMethodFrame(kGetConfiguredProduct, {.url = aServerURL}, [&](Call& call) {
    const bool traced = Global::TraceSoapTraffic();
    Global::TraceSoapTraffic(false);
    // The server takes two keys; the second one stays empty.
    const StringArray guids{std::string(aSalesInstrumentGID), std::string()};
    call.request_without_session().parameters().Create("aGuids", guids, call.service());
    SoapNode product = call.send_as(call.service() + "/TorvexConfigContract/GetTorvexXML").first();
    // On success alone: a failure leaves the setting off.
    Global::TraceSoapTraffic(traced);
    return product;
  });
}

}  // namespace bvconn

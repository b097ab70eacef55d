#include "bvconn/connectors/session/bv_config_connector.h"

#include <string>

#include "bvconn/core/settings.h"
#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

// deliberate [small-log-name]: its lines begin with a small letter.
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
    // deliberate [config-tracing]: off for the time of the call, for all threads that read it.
    const bool traced = Global::TraceSoapTraffic();
    Global::TraceSoapTraffic(false);
    // deliberate [config-second-key]: the server takes two keys; the second one stays empty.
    const StringArray guids{std::string(aSalesInstrumentGID), std::string()};
    // deliberate [no-session]: no `userID`, and the one parameter that has a namespace.
    call.request_without_session().parameters().Create("aGuids", guids, call.service());
    // deliberate [config-action]: it names another operation than the wire name.
    SoapNode product = call.send_as(call.service() + "/TorvexConfigContract/GetTorvexXML").first();
    // deliberate [config-tracing]: on success alone; a failure leaves the setting off.
    Global::TraceSoapTraffic(traced);
    return product;
  });
}

}  // namespace bvconn

#include "bvconn/connectors/session/bv_postal_connector.h"

#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr Operation kGetCountries{
    // Errors are logged under another class and without the plural.
    .log = {.cls = "BVGenericConnector", .method = "GetCountry", .form = LogForm::kNone},
    .cls = "BVPostalConnector",
    .name = "GetCountries",
    .method = &BVMethods::GetCountries,
    .service = &BVServices::PostalService,
};

}  // namespace

SoapNode BVPostalConnector::GetCountries(std::string_view aServerURL, std::string_view aSessionID,
                                         bool aLazyLoad) {
  return ConnectorMethodFrame(kGetCountries, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().SearchService().GetCountries());
    return call.request(kSoapEncoding).add("LAZYLOAD", aLazyLoad).send().first();
  });
}

}  // namespace bvconn

#include "bvconn/connectors/session/bv_postal_connector.h"

#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr Operation kGetCountries{
    // deliberate [countries-log-name]: errors are logged under another class and without the
    // plural.
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
    // deliberate [countries-object]: the search object, though the service is the postal one, and
    // it is not told of `aLazyLoad`.
    if (call.takes_dal()) return call.first_of(call.dal().SearchService().GetCountries());
    return call.request(kSoapEncoding).add("LAZYLOAD", aLazyLoad).send().first();
  });
}

}  // namespace bvconn

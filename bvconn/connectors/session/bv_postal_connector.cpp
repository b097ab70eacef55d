#include "bvconn/connectors/session/bv_postal_connector.h"

#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr Operation kGetCountries{
    // Errors are logged under another class and without the plural.
    .log = {.cls = "BVGenericConnector", .method = "GetCountry", .form = LogForm::kNone},
    .method = &BVMethods::GetCountries,
    .service = &BVServices::PostalService,
};

}  // namespace

SoapNode BVPostalConnector::GetCountries(std::string_view aServerURL, std::string_view aSessionID,
                                         bool aLazyLoad) {
  return ConnectorMethodFrame(kGetCountries, catalogues_, [&](Call& call) {
    if (call.takes_dal()) return call.parse(call.dal().SearchService().GetCountries()).first();
    call.envelope(aSessionID, kSoapEncoding).Create("LAZYLOAD", aLazyLoad, "", "", "");
    return call.send(aServerURL).first();
  });
}

}  // namespace bvconn

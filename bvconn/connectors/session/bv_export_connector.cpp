#include "bvconn/connectors/session/bv_export_connector.h"

#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr Operation kSetExportComplete{
    .log = {.cls = "BVExportConnector", .method = "SetExportComplete", .form = LogForm::kNone},
    .method = &BVMethods::ExportComplete,
    .service = &BVServices::Order,
};

}  // namespace

SoapNode BVExportConnector::SetExportComplete(std::string_view aServerURL,
                                              std::string_view aSessionID,
                                              std::string_view aOrderGID) {
  return ConnectorMethodFrame(kSetExportComplete, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request(kSoapEncoding).params(aOrderGID).send().first();
  });
}

}  // namespace bvconn

// The type-ahead file, which the server keeps.

#include "bvconn/connectors/maintenance/bv_maintenance_connector.h"
#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr Operation kCheckTypeAheadFile{
    .log = {.cls = "BVMaintenanceConnector", .method = "CheckTypeAheadFile"},
    .method = &BVMethods::CheckTypeAheadFile,
    .service = &BVServices::Maintenance,
};

}  // namespace

bool BVMaintenanceConnector::CheckTypeAheadFile(std::string_view aSessionID,
                                                std::string_view aServerURL) {
  return ConnectorMethodFrame(kCheckTypeAheadFile, {aServerURL, aSessionID}, [&](Call& call) {
    call.request(kSoapEncoding);
    return call.send().boolean();
  });
}

}  // namespace bvconn

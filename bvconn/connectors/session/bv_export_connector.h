#pragma once

#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Tells the server about exports. Service "urn:OrderService".
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201 with the server's text.
class BVCONN_EXPORT BVExportConnector {
 public:
  /// Marks an order as exported. @return The reply's first parameter. Logs on failure alone.
  /// Always by SOAP `exportComplete`.
  SoapNode SetExportComplete(std::string_view aServerURL, std::string_view aSessionID,
                             std::string_view aOrderGID);
};

}  // namespace bvconn

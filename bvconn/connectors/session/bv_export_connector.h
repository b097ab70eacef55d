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
  /// What the server says to an order's being marked as exported: the reply's first parameter; a
  /// reply without one fails with 0x80044204. The key goes out as it stands, "" too. Logs on
  /// failure alone. Route: SOAP `exportComplete`.
  SoapNode SetExportComplete(std::string_view aServerURL, std::string_view aSessionID,
                             std::string_view aOrderGID);
};

}  // namespace bvconn

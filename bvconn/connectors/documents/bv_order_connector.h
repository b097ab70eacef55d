#pragma once

#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Orders as SAP sees them. Service "urn:OrderService". Note that `aSessionID` comes first. Keys go
/// out as they stand, "" too.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text. Results are the reply's first parameter;
/// a reply without one fails with 0x80044204.
class BVCONN_EXPORT BVOrderConnector {
 public:
  /// The SAP view of an order. `aIncludePrice` is always sent, false too.
  /// Route: DAL `OrderService.getSAPOrderView`, else SOAP `getSAPOrderView`.
  SoapNode getSAPOrderView(std::string_view aSessionID, std::string_view aServerURL,
                           std::string_view aOrderGID, bool aIncludePrice);
  /// What SAP knows of an order, an agent and a customer; the server tells the three keys apart by
  /// their place, so all three are always sent. The DAL route sets `UseDALSave`.
  /// Route: DAL `OrderService.getSAPInfo` with the request's text, else SOAP `getSAPInfo`.
  SoapNode getSAPInfo(std::string_view aSessionID, std::string_view aServerURL,
                      std::string_view aOrderGID, std::string_view aAgentGID,
                      std::string_view aCustomerGID);
};

}  // namespace bvconn

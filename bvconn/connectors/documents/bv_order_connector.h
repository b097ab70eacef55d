#pragma once

#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Orders as SAP sees them. Service "urn:OrderService". Note that `aSessionID` comes first.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`.
class BVCONN_EXPORT BVOrderConnector {
 public:
  /// The SAP view of an order. Route: data access layer, else SOAP `getSAPOrderView`.
  SoapNode getSAPOrderView(std::string_view aSessionID, std::string_view aServerURL,
                           std::string_view aOrderGID, bool aIncludePrice);
  /// What SAP knows of an order, an agent and a customer; the three keys are distinguished by
  /// place. Route: data access layer with the request's text, which sets `UseDALSave`, else SOAP
  /// `getSAPInfo`.
  SoapNode getSAPInfo(std::string_view aSessionID, std::string_view aServerURL,
                      std::string_view aOrderGID, std::string_view aAgentGID,
                      std::string_view aCustomerGID);
};

}  // namespace bvconn

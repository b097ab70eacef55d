#pragma once

#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Invoices, order reconciles and commission statements. Always by SOAP, service
/// "urn:InvoiceService".
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; each operation names
/// the fault codes that it maps.
class BVCONN_EXPORT BVInvoiceConnector {
 public:
  /// One invoice, as the server's node.
  /// @param aServerURL     Whole endpoint URL.
  /// @param aSessionID     Text of the header `userID`.
  /// @param strInvoiceUID  Key of the invoice; sent as it stands.
  /// @throws Error  0x80042739 (source "BVInvoiceConnector", no description) for the server's fault
  ///                code 10041; 0x80044201 with the server's text for any other fault.
  SoapNode GetInvoice(std::string_view aServerURL, std::string_view aSessionID,
                      std::string_view strInvoiceUID);
};

}  // namespace bvconn

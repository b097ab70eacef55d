#pragma once

#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Returns (RMA). Service "urn:RMAService". An RMA is a node that the application holds; it is sent
/// as the content of "RMARequestBean", an empty reference as nil, and not changed. Keys and numbers
/// go out as they stand, "" too.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text. Results are the reply's first parameter,
/// but for `SaveRMA`; a reply without one fails with 0x80044204.
class BVCONN_EXPORT BVRMAConnector {
 public:
  /// An empty RMA. Note that the key comes first.
  /// Route: DAL `RMAService.GetNewRMA`, else SOAP `newRMA`.
  SoapNode GetNewRMA(std::string_view aManufacturerGID, std::string_view aServerURL,
                     std::string_view aSessionID);
  /// The RMA with this key. Route: DAL `RMAService.GetExistingRMA`, else SOAP `getRMA`.
  SoapNode GetExistingRMA(std::string_view aServerURL, std::string_view aSessionID,
                          std::string_view aUID);
  /// The RMA as the server saved it: what the reply's first parameter holds as its value, which
  /// must be a node; anything else fails with error 13. Does not ask for `UseDALSave`.
  /// Route: DAL `RMAService.SaveRMA` with the request's text, else SOAP `saveRMA`.
  SoapNode SaveRMA(std::string_view aServerURL, std::string_view aSessionID,
                   const SoapNode& aSerializedRMA);
  /// What the server says to an RMA that is submitted: the parameter itself, unlike `SaveRMA`.
  /// Route: DAL `RMAService.SubmitRMA` with the request's text, else SOAP `submitRMA`.
  SoapNode SubmitRMA(std::string_view aServerURL, std::string_view aSessionID,
                     const SoapNode& aSerializedRMA);
  /// The RMA with this key, opened. Its failures are logged under `GetExistingRMA`,
  /// deliberate [open-rma-log-name].
  /// Route: SOAP `openRMA`.
  SoapNode openRMA(std::string_view aServerURL, std::string_view aSessionID, std::string_view aUID);
  /// What the RMA service knows of the invoice with this number.
  /// Route: DAL `RMAService.GetInvoiceInfo`, else SOAP `getInvoiceInfo`.
  SoapNode GetInvoiceInfo(std::string_view aServerURL, std::string_view aSessionID,
                          std::string_view aInvoiceNumber);
};

}  // namespace bvconn

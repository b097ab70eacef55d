#pragma once

#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Returns (RMA). Service "urn:RMAService". An RMA is a node that the application holds; it is sent
/// as the content of "RMARequestBean" and not changed.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`. Results are the reply's
/// first parameter, but for `SaveRMA`.
class BVCONN_EXPORT BVRMAConnector {
 public:
  /// An empty RMA. Note that the key comes first. Route: data access layer, else SOAP `newRMA`.
  SoapNode GetNewRMA(std::string_view aManufacturerGID, std::string_view aServerURL,
                     std::string_view aSessionID);
  /// The RMA with this key. Route: data access layer, else SOAP `getRMA`.
  SoapNode GetExistingRMA(std::string_view aServerURL, std::string_view aSessionID,
                          std::string_view aUID);
  /// Saves an RMA. @return What the reply's first parameter holds as its value, which must be a
  /// node: anything else fails with 13.
  /// Route: data access layer with the request's text, else SOAP `saveRMA`.
  SoapNode SaveRMA(std::string_view aServerURL, std::string_view aSessionID,
                   const SoapNode& aSerializedRMA);
  /// Submits an RMA. Route: data access layer with the request's text, else SOAP `submitRMA`.
  SoapNode SubmitRMA(std::string_view aServerURL, std::string_view aSessionID,
                     const SoapNode& aSerializedRMA);
  /// Opens an RMA. Always by SOAP `openRMA`.
  SoapNode openRMA(std::string_view aServerURL, std::string_view aSessionID, std::string_view aUID);
  /// The invoice with this number. Route: data access layer, else SOAP `getInvoiceInfo`.
  SoapNode GetInvoiceInfo(std::string_view aServerURL, std::string_view aSessionID,
                          std::string_view aInvoiceNumber);
};

}  // namespace bvconn

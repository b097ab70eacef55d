#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Requests for quote. Nothing here writes a log line of its own; a server fault reaches the caller
/// as 0x80042B5D with the server's text.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`.
class BVCONN_EXPORT BVRequestForQuoteConnector {
 public:
  /// Records the manufacturer's quote number. Gives the server's answer as text.
  /// Route: data access layer, else SOAP `updateRFQ` of "urn:QuoteService".
  std::string updateRFQ(std::string_view RFQGID, std::string_view mfrQuoteNumber,
                        std::string_view aServerURL, std::string_view aSessionID);
  /// The requests for quote of a quote. Always by SOAP `getRFQSummary` of "urn:SummaryService".
  SoapNode getRFQs(std::string_view QuoteGID, std::string_view aServerURL,
                   std::string_view aSessionID);
};

}  // namespace bvconn

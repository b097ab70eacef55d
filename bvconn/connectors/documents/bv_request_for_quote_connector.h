#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Requests for quote. Keys go out as they stand, "" too. Nothing here writes a line of its own.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault, on
/// either route, as 0x80042B5D with the server's text. A reply without a parameter fails with
/// 0x80044204.
class BVCONN_EXPORT BVRequestForQuoteConnector {
 public:
  /// What the server says to the manufacturer's quote number, which it records: a text; an array
  /// or a node fails with error 13.
  /// Route: DAL `QuoteService.updateRFQ`, else SOAP `updateRFQ` of "urn:QuoteService".
  std::string updateRFQ(std::string_view RFQGID, std::string_view mfrQuoteNumber,
                        std::string_view aServerURL, std::string_view aSessionID);
  /// The requests for quote of a quote, the reply's first parameter.
  /// Route: SOAP `getRFQSummary` of "urn:SummaryService".
  SoapNode getRFQs(std::string_view QuoteGID, std::string_view aServerURL,
                   std::string_view aSessionID);
};

}  // namespace bvconn

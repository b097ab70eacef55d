#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Quote documents: fetch one, mark it as quoted, ask about its prices' expiration. Service
/// "urn:QuoteService".
///
/// Keys go out as they stand, "" too.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text. A reply without a parameter fails with
/// 0x80044204.
class BVCONN_EXPORT BVQuoteConnector {
 public:
  /// The quote with this key, the reply's first parameter. Its failures are logged under
  /// `getExistingProject`, deliberate [quote-log-name]. Route: SOAP `getQuote`.
  SoapNode getExistingQuote(std::string_view aServerURL, std::string_view aSessionID,
                            std::string_view aGID);
  /// What the server says to a quote's being marked as quoted: the reply's first parameter.
  /// Route: DAL `QuoteService.SetQuoteStatusToQuoted`, else SOAP `setQuoteStatusToQuoted`.
  SoapNode SetQuoteStatusToQuoted(std::string_view aServerURL, std::string_view aSessionID,
                                  std::string_view aGID);
  /// Whether the expiration of the quote's prices can be overridden: a boolean, a number (false
  /// when zero), or the word in any case. Writes no log line of its own, and errors leave as they
  /// arose; an answer that is no boolean, nil too, fails with error 13.
  /// Route: SOAP `canExpirationBeOveridden`.
  bool canExpirationBeOveridden(std::string_view aServerURL, std::string_view aSessionID,
                                std::string_view aQuoteGID);
  /// The date to which the quote's prices hold, as `m/d/yyyy`; a number is a serial day, and an
  /// answer that reads as neither comes back as its text, "" for an empty one; one that has none,
  /// an array or a node, fails with error 13. Writes no log line of its own, and errors leave as
  /// they arose.
  /// Route: SOAP `getNewPriceExpirationDate`.
  std::string getNewPriceExpirationDate(std::string_view aServerURL, std::string_view aSessionID,
                                        std::string_view aQuoteGID);
};

}  // namespace bvconn

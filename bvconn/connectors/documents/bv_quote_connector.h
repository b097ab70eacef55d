#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Quote documents: fetch one, mark it as quoted, ask about its prices' expiration. Service
/// "urn:QuoteService".
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`.
class BVCONN_EXPORT BVQuoteConnector {
 public:
  /// The quote with this key. Always by SOAP `getQuote`.
  SoapNode getExistingQuote(std::string_view aServerURL, std::string_view aSessionID,
                            std::string_view aGID);
  /// Marks a quote as quoted. Route: data access layer, else SOAP `setQuoteStatusToQuoted`.
  SoapNode SetQuoteStatusToQuoted(std::string_view aServerURL, std::string_view aSessionID,
                                  std::string_view aGID);
  /// Whether the expiration of the quote's prices can be overridden. Always by SOAP, without a log
  /// line; errors leave as they arose, 13 for an answer that is no boolean or nil.
  bool canExpirationBeOveridden(std::string_view aServerURL, std::string_view aSessionID,
                                std::string_view aQuoteGID);
  /// The date to which the quote's prices hold, as `m/d/yyyy`; a number is a serial day, and an
  /// answer that reads as neither comes back as its text. Always by SOAP, without a log line;
  /// errors leave as they arose.
  std::string getNewPriceExpirationDate(std::string_view aServerURL, std::string_view aSessionID,
                                        std::string_view aQuoteGID);
};

}  // namespace bvconn

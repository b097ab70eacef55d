#pragma once

#include <cstdint>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn {

/// Short views: of a user's work, and of single documents and what belongs to them. Service
/// "urn:SummaryService". Every argument list ends with `aServerURL`, `aSessionID`.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text. Results are the reply's first parameter.
class BVCONN_EXPORT BVSummaryConnector {
 public:
  /// The user's latest documents, so many of each kind. Always by SOAP `getUserSummary`.
  SoapNode GetUserSummary(std::int16_t numProjects, std::int16_t numQuotes, std::int16_t numOrders,
                          std::string_view aServerURL, std::string_view aSessionID);
  /// The documents with these keys, one array of strings for each kind.
  /// Route: data access layer, else SOAP `getUserSummary`. The data access layer gets each array as
  /// one text: keys without the blanks around them, with ";" in between, or "" where the first
  /// element is "nogid". There a variant that holds no array fails with 13, an array without
  /// elements with 9. SOAP sends the variants as they are.
  SoapNode GetUserSummaryByGIDs(const Variant& projectGIDs, const Variant& quoteGIDs,
                                const Variant& orderGIDs, std::string_view aServerURL,
                                std::string_view aSessionID);
  /// Route: data access layer, else SOAP `getProjectSummary`.
  SoapNode getProjectSummary(std::string_view ProjectGID, std::string_view aServerURL,
                             std::string_view aSessionID);
  /// Route: data access layer, else SOAP `getQuoteSummary`.
  SoapNode getQuoteSummary(std::string_view QuoteGID, std::string_view aServerURL,
                           std::string_view aSessionID);
  /// Always by SOAP `getProposalsForQuote`.
  SoapNode getProposalsForQuote(std::string_view QuoteGID, std::string_view aServerURL,
                                std::string_view aSessionID);
  /// Always by SOAP `getOrdersForQuote`.
  SoapNode getOrdersForQuote(std::string_view QuoteGID, std::string_view aServerURL,
                             std::string_view aSessionID);
  /// Always by SOAP `getQuotesForProject`.
  SoapNode getQuotesForProject(std::string_view ProjectGID, std::string_view aServerURL,
                               std::string_view aSessionID);
  /// Route: data access layer, else SOAP `getOrderSummary`.
  SoapNode getOrderSummary(std::string_view orderGID, std::string_view aServerURL,
                           std::string_view aSessionID);
};

}  // namespace bvconn

#pragma once

#include <cstdint>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn {

/// Short views: of a user's work, and of single documents and what belongs to them. Service
/// "urn:SummaryService". Every argument list ends with `aServerURL`, `aSessionID`. Keys go out as
/// they stand, "" too.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text. Results are the reply's first parameter;
/// a reply without one fails with 0x80044204.
class BVCONN_EXPORT BVSummaryConnector {
 public:
  /// The user's latest documents, so many of each kind; 0 is sent too.
  /// Route: SOAP `getUserSummary`.
  SoapNode GetUserSummary(std::int16_t numProjects, std::int16_t numQuotes, std::int16_t numOrders,
                          std::string_view aServerURL, std::string_view aSessionID);
  /// The documents with these keys, one array of strings for each kind. SOAP sends the variants as
  /// they are. The DAL route passes each array as one text: keys without the blanks around them,
  /// with ";" in between, or "" where the first element is "nogid"; there a variant that holds no
  /// array fails with error 13, an array without elements with error 9.
  /// Route: DAL `SummaryService.GetUserSummaryByGIDs`, else SOAP `getUserSummary`.
  SoapNode GetUserSummaryByGIDs(const Variant& projectGIDs, const Variant& quoteGIDs,
                                const Variant& orderGIDs, std::string_view aServerURL,
                                std::string_view aSessionID);
  /// The short view of the project with this key.
  /// Route: DAL `SummaryService.getProjectSummary`, else SOAP `getProjectSummary`.
  SoapNode getProjectSummary(std::string_view ProjectGID, std::string_view aServerURL,
                             std::string_view aSessionID);
  /// The short view of the quote with this key.
  /// Route: DAL `SummaryService.getQuoteSummary`, else SOAP `getQuoteSummary`.
  SoapNode getQuoteSummary(std::string_view QuoteGID, std::string_view aServerURL,
                           std::string_view aSessionID);
  /// The proposals of a quote. Route: SOAP `getProposalsForQuote`.
  SoapNode getProposalsForQuote(std::string_view QuoteGID, std::string_view aServerURL,
                                std::string_view aSessionID);
  /// The orders of a quote. Route: SOAP `getOrdersForQuote`.
  SoapNode getOrdersForQuote(std::string_view QuoteGID, std::string_view aServerURL,
                             std::string_view aSessionID);
  /// The quotes of a project. Route: SOAP `getQuotesForProject`.
  SoapNode getQuotesForProject(std::string_view ProjectGID, std::string_view aServerURL,
                               std::string_view aSessionID);
  /// The short view of the order with this key.
  /// Route: DAL `SummaryService.getOrderSummary`, else SOAP `getOrderSummary`.
  SoapNode getOrderSummary(std::string_view orderGID, std::string_view aServerURL,
                           std::string_view aSessionID);
};

}  // namespace bvconn

#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/xml_document.h"

namespace bvconn {

/// What works across projects, quotes and orders: comments, approvals, cost, commission people,
/// column prices, pilfering. Five services; which one often depends on the instrument's type. The
/// order of `aServerURL` and `aSessionID` differs from operation to operation.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201. Node results are the reply's first parameter, text results its value.
class BVCONN_EXPORT BVSalesInstrumentConnector {
 public:
  /// Approvals of products for an agent. `aLineItemsNode` is sent as it is.
  /// Route: data access layer with the request's text, else SOAP `getProductApprovals`.
  SoapNode GetProductApprovals(std::string_view aServerURL, std::string_view aSessionID,
                               std::string_view aAgentGID, const SoapNode& aLineItemsNode);
  /// Header comments of an instrument. SOAP `getHeaderComments`.
  SoapNode GetHeaderComments(std::string_view aSalesInstrumentGID,
                             std::string_view aCommentTypeCode, std::string_view aServerURL,
                             std::string_view aSessionID);
  /// Comments of a line. Route: data access layer if `UseDALSave` says so too, else SOAP
  /// `getLineItemComments`.
  SoapNode GetLineComments(std::string_view aSalesInstrumentGID, std::string_view aLineItemGID,
                           std::string_view aServerURL, std::string_view aSessionID);
  /// Replaces header comments; they are sent as the content of "HeaderComments". SOAP
  /// `updateHeaderComments`.
  std::string UpdateHeaderComments(std::string_view aSessionID, const SoapNode& aSoapNode,
                                   std::string_view aServerURL);
  /// Replaces line comments.
  /// @param aSalseInstrType  "project", "quote" or "order" in any case chooses the service; any
  ///                         other goes on with an empty one.
  /// @param aCommentXML      XML, pasted into the request as it stands.
  /// Route: data access layer if `UseDALSave` says so too, always to its order object; else SOAP
  /// `updateLineItemComments`, which does not count as a contact with the server.
  std::string SetLineComments(std::string_view aSalseInstrType, std::string_view aCommentXML,
                              std::string_view aServerURL, std::string_view aSessionID);
  /// The column prices that were in force before.
  /// @param astrSIType  "quote" or "order" in any case; any other goes on with an empty service.
  /// Route: data access layer, where another type calls nothing and fails with 0x80044202; else
  /// SOAP `getDefaultColumnValues`.
  SoapNode getPreviousSalesInstrumentColumnPrices(std::string_view astrSIGid,
                                                  std::string_view astrSIType,
                                                  std::string_view aServerURL,
                                                  std::string_view aSessionID);
  /// Takes over the lock of an instrument. The reply's bytes are loaded into `doc` (a fault too: it
  /// is not distinguished); with a null `doc` nothing is received. `SIType` is not used.
  void pilferSalesInstrument(std::string_view SIGID, XMLDocument* doc, std::string_view SIType,
                             std::string_view aServerURL, std::string_view aSessionID);
  /// Replaces the commission sales people of an order. The caller's node is renamed
  /// "CommissionableSalesPeople" and sent as it is. SOAP `updateCommSalesPeople`.
  SoapNode UpdateCommSalesPeople(std::string_view aSessionID, std::string_view aServerURL,
                                 std::string_view aGID, SoapNode aNode);
  /// The cost of products; the line items are sent as the content of "LineItemsLite".
  /// Route: data access layer with the request's text, else SOAP `getProductCost`.
  SoapNode GetProductCost(std::string_view aSessionID, std::string_view aServerURL,
                          std::string_view aAgentGID, std::string_view aCustomerGID,
                          std::string_view aNationalAccountGID, const SoapNode& aLineItemsNode);

  // Header comments by the instrument's kind. Route: data access layer, else SOAP
  // `getHeaderComments`.
  SoapNode GetOrderHeaderComments(std::string_view aOrderGID, std::string_view aCommentType,
                                  std::string_view aSessionID, std::string_view aServerURL);
  /// Goes out under the SOAPAction of the order service.
  SoapNode GetQuoteHeaderComments(std::string_view aQuoteGID, std::string_view aCommentType,
                                  std::string_view aSessionID, std::string_view aServerURL);
  /// As `GetQuoteHeaderComments`, by SOAP under a wire name of its own.
  SoapNode getHeaderCommentsForCopyToOrder(std::string_view aQuoteGID,
                                           std::string_view aCommentType,
                                           std::string_view aSessionID,
                                           std::string_view aServerURL);
  SoapNode GetProjectHeaderComments(std::string_view aProjectGID, std::string_view aCommentType,
                                    std::string_view aSessionID, std::string_view aServerURL);

  // Replace header comments, sent as the content of "BVOrderComments", "BVQuoteComments" and
  // "BVProjectComments". Route: data access layer with the request's text, else SOAP
  // `updateHeaderComments`.
  SoapNode UpdateOrderHeaderComments(const SoapNode& aNode, std::string_view aSessionID,
                                     std::string_view aServerURL);
  SoapNode UpdateQuoteHeaderComments(const SoapNode& aNode, std::string_view aSessionID,
                                     std::string_view aServerURL);
  SoapNode UpdateProjectHeaderComments(const SoapNode& aNode, std::string_view aSessionID,
                                       std::string_view aServerURL);
};

}  // namespace bvconn

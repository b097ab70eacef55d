#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/xml_document.h"

namespace bvconn {

/// What works across projects, quotes and orders: comments, approvals, cost, commission people,
/// column prices, pilfering. Five services; which one often depends on the instrument's type. The
/// order of `aServerURL` and `aSessionID` differs from operation to operation. Keys and codes go
/// out as they stand, "" too; nothing looks into a document.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text. Node results are the reply's first
/// parameter, text results its value; a reply without one fails with 0x80044204.
class BVCONN_EXPORT BVSalesInstrumentConnector {
 public:
  /// Approvals of products for an agent. `aLineItemsNode` is sent as it is, under its own name; an
  /// empty reference fails with error 91.
  /// Route: DAL `SearchService.GetProductApprovals` with the request's text, else SOAP
  /// `getProductApprovals` of "urn:ProductService".
  SoapNode GetProductApprovals(std::string_view aServerURL, std::string_view aSessionID,
                               std::string_view aAgentGID, const SoapNode& aLineItemsNode);
  /// The header comments of an instrument of any type, of one comment type.
  /// Route: SOAP `getHeaderComments` of "urn:SalesInstrumentService".
  SoapNode GetHeaderComments(std::string_view aSalesInstrumentGID,
                             std::string_view aCommentTypeCode, std::string_view aServerURL,
                             std::string_view aSessionID);
  /// The comments of a line.
  /// Route: DAL `SalesInstrumentService.GetLineComments`, if `UseDALSave` is true too, else SOAP
  /// `getLineItemComments` of "urn:SalesInstrumentService".
  SoapNode GetLineComments(std::string_view aSalesInstrumentGID, std::string_view aLineItemGID,
                           std::string_view aServerURL, std::string_view aSessionID);
  /// What the server says to new header comments, as text; an array or a node fails with error 13.
  /// `aSoapNode` is sent as the content of "HeaderComments", an empty reference as nil.
  /// Route: SOAP `updateHeaderComments` of "urn:SalesInstrumentService".
  std::string UpdateHeaderComments(std::string_view aSessionID, const SoapNode& aSoapNode,
                                   std::string_view aServerURL);
  /// What the server says to new line comments, as text; an array or a node fails with error 13.
  /// The SOAP route writes no line with the time that it took, and a fault leaves it without the
  /// server's text.
  /// @param aSalseInstrType  "project", "quote" or "order" in any case chooses the service; any
  ///                         other goes on with an empty one. deliberate [misspelt-salse].
  /// @param aCommentXML      XML, pasted into the request as it stands.
  /// Route: DAL `OrderService.SetLineComments` with the request's text, whatever the type, if
  /// `UseDALSave` is true too, else SOAP `updateLineItemComments` of "urn:ProjectService",
  /// "urn:QuoteService" or "urn:OrderService".
  std::string SetLineComments(std::string_view aSalseInstrType, std::string_view aCommentXML,
                              std::string_view aServerURL, std::string_view aSessionID);
  /// The column prices that were in force before.
  /// @param astrSIType  "quote" or "order" in any case; any other, "project" too, goes on with an
  ///                    empty service, and calls nothing on the DAL route: 0x80044202.
  /// Route: DAL `QuoteService.getPreviousSalesInstrumentColumnPrices` or
  /// `OrderService.getPreviousSalesInstrumentColumnPrices`, else SOAP `getDefaultColumnValues` of
  /// "urn:QuoteService" or "urn:OrderService".
  SoapNode getPreviousSalesInstrumentColumnPrices(std::string_view astrSIGid,
                                                  std::string_view astrSIType,
                                                  std::string_view aServerURL,
                                                  std::string_view aSessionID);
  /// Takes over the lock of an instrument. The reply's bytes are loaded into `doc`, which stays
  /// empty where they are no XML; a server fault is not told apart, the application finds it there.
  /// With a null `doc` nothing is received. `SIType` is not used: deliberate [pilfer-type].
  /// Route: SOAP `pilferSalesInstrument` of "urn:SalesInstrumentService".
  void pilferSalesInstrument(std::string_view SIGID, XMLDocument* doc, std::string_view SIType,
                             std::string_view aServerURL, std::string_view aSessionID);
  /// What the server says to the new commission sales people of an order. The caller's node is
  /// renamed "CommissionableSalesPeople", which it stays, and sent as it is, ahead of the key; an
  /// empty reference fails with error 91.
  /// Route: SOAP `updateCommSalesPeople` of "urn:OrderService".
  SoapNode UpdateCommSalesPeople(std::string_view aSessionID, std::string_view aServerURL,
                                 std::string_view aGID, SoapNode aNode);
  /// The cost of products. The line items are sent as the content of "LineItemsLite", an empty
  /// reference as nil.
  /// Route: DAL `SalesInstrumentService.GetProductCost` with the request's text, else SOAP
  /// `getProductCost` of "urn:ProductService".
  SoapNode GetProductCost(std::string_view aSessionID, std::string_view aServerURL,
                          std::string_view aAgentGID, std::string_view aCustomerGID,
                          std::string_view aNationalAccountGID, const SoapNode& aLineItemsNode);

  // The header comments of one type, of an instrument of one kind.
  // Route: DAL `…Service.Get…HeaderComments`, else SOAP `getHeaderComments` of "urn:…Service".
  SoapNode GetOrderHeaderComments(std::string_view aOrderGID, std::string_view aCommentType,
                                  std::string_view aSessionID, std::string_view aServerURL);
  /// Those of a quote. The SOAPAction is another service's: deliberate [quote-comments-action].
  /// Route: DAL `QuoteService.GetQuoteHeaderComments`, else SOAP `getHeaderComments` of
  /// "urn:QuoteService" under the SOAPAction "urn:OrderService".
  SoapNode GetQuoteHeaderComments(std::string_view aQuoteGID, std::string_view aCommentType,
                                  std::string_view aSessionID, std::string_view aServerURL);
  /// Those that an order made from the quote takes over. The DAL route is that of
  /// `GetQuoteHeaderComments`.
  /// Route: DAL `QuoteService.GetQuoteHeaderComments`, else SOAP `getHeaderCommentsForCopyToOrder`
  /// of "urn:QuoteService" under the SOAPAction "urn:OrderService".
  SoapNode getHeaderCommentsForCopyToOrder(std::string_view aQuoteGID,
                                           std::string_view aCommentType,
                                           std::string_view aSessionID,
                                           std::string_view aServerURL);
  SoapNode GetProjectHeaderComments(std::string_view aProjectGID, std::string_view aCommentType,
                                    std::string_view aSessionID, std::string_view aServerURL);

  // What the server says to new header comments of an instrument of one kind. They are sent as the
  // content of "BVOrderComments", "BVQuoteComments" and "BVProjectComments", an empty reference as
  // nil.
  // Route: DAL `…Service.Update…HeaderComments` with the request's text, else SOAP
  // `updateHeaderComments` of "urn:…Service".
  SoapNode UpdateOrderHeaderComments(const SoapNode& aNode, std::string_view aSessionID,
                                     std::string_view aServerURL);
  SoapNode UpdateQuoteHeaderComments(const SoapNode& aNode, std::string_view aSessionID,
                                     std::string_view aServerURL);
  SoapNode UpdateProjectHeaderComments(const SoapNode& aNode, std::string_view aSessionID,
                                       std::string_view aServerURL);
};

}  // namespace bvconn

#pragma once

#include <string>
#include <string_view>

#include "bvconn/connectors/search/approvals_criteria.h"
#include "bvconn/connectors/search/customers_and_agents_criteria.h"
#include "bvconn/connectors/search/documents_criteria.h"
#include "bvconn/connectors/search/price_and_inventory_criteria.h"
#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn {

/// Lists, look-ups and searches, and the few commands that stand beside them.
///
/// Text goes out exactly as given: no date is formatted, no number parsed, no criterion filled in.
/// What is left out is sent all the same, as "" or false, since the server knows a criterion by its
/// place alone. Results are the reply's first parameter. Where no service is named it is
/// "urn:SearchService".
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text (the two inventory searches: without it),
/// on the other one without it (`SearchForAuthorizations` and `SearchForCustomers`: with it).
class BVCONN_EXPORT BVSearchConnector {
 public:
  /// Agents by any of five criteria. SOAP `searchForAgents`.
  SoapNode SearchForAgents(std::string_view aSessionID, std::string_view aServerURL,
                           std::string_view AgentID = "", std::string_view Name = "",
                           std::string_view PartnerID = "", std::string_view State = "",
                           std::string_view Country = "");
  /// Documents that wait for an approval. SOAP `searchForApprovals`.
  SoapNode SearchForApprovals(std::string_view aSessionID, std::string_view aServerURL,
                              const SearchForApprovalsCriteria& criteria = {});
  /// The approval queue. The four arrays go whole by SOAP, joined with ";" and trimmed by the
  /// data access layer, where one that was never allocated fails with 9. Route: data access
  /// layer, else SOAP `searchApprovalQueue`.
  SoapNode SearchApprovalQueue(std::string_view aSessionID, std::string_view aServerURL,
                               const SearchApprovalQueueCriteria& criteria);
  /// Authorizations. Route: data access layer, else SOAP `searchForAuthorizations`.
  SoapNode SearchForAuthorizations(std::string_view aSessionID, std::string_view aServerURL);
  /// Brands. Route: data access layer, else SOAP `searchForBrands`.
  SoapNode SearchForBrands(std::string_view aSessionID, std::string_view aServerURL);
  /// Catalogue numbers of an invoice. SOAP `getInvoiceInformation` of the RMA service; errors
  /// leave as they arose.
  SoapNode SearchForCatalogNumbersFromInvoice(std::string_view aSessionID,
                                              std::string_view aServerURL,
                                              std::string_view aInvoiceNumber);
  /// The SAP view of an order. Route: data access layer, else SOAP `searchForSAPOrderView`.
  SoapNode SearchForSAPOrderView(std::string_view aSessionID, std::string_view aServerURL,
                                 std::string_view aTORVEXOrderNumber,
                                 std::string_view aSAPOrderNumber, bool aIncludePrices);
  /// Catalogue numbers by ten criteria. SOAP `searchForCatalogNbrs`.
  SoapNode SearchForCatalogNbrs(std::string_view aSessionID, std::string_view aServerURL,
                                const SearchForCatalogNbrsCriteria& criteria = {});
  /// Customers. `ExSearch`, `OnlyActive` and `OnlyBrimvale` are texts that read as booleans; one
  /// that does not, "" included, fails with 13 before anything is sent. Route: data access layer,
  /// else SOAP `searchForCustomers`.
  SoapNode SearchForCustomers(std::string_view aSessionID, std::string_view aServerURL,
                              const SearchForCustomersCriteria& criteria = {});
  /// What else is known of a customer. Route: data access layer, else SOAP
  /// `searchForCustomerAxillaryInfo`.
  SoapNode SearchForCustomerAxillaryInfo(std::string_view aSessionID, std::string_view aServerURL,
                                         std::string_view CustomerGID = "",
                                         std::string_view AgentID = "");
  /// Default agents. Route: data access layer, else SOAP `searchForDefaultAgents`.
  SoapNode SearchForDefaultAgents(std::string_view aSessionID, std::string_view aServerURL);
  /// All agents, or those of one. Route: data access layer (the number in 32 bits, 0 when left
  /// out), else SOAP `searchForAllAgents` (in 16 bits, beyond them 6; without a node when left
  /// out).
  SoapNode SearchForAllAgents(std::string_view aSessionID, std::string_view aServerURL,
                              const Variant& aAgentID = Variant::Missing{});
  /// All customers of an agent. Route: data access layer (the agent as a number), else SOAP
  /// `searchForAllCustomersLite` (as it stands).
  SoapNode SearchForAllCustomers(std::string_view aSessionID, std::string_view aServerURL,
                                 std::string_view aAgentID);
  /// An enumeration. SOAP `searchForEnumeration`.
  SoapNode SearchForEnumeration(std::string_view aSessionID, std::string_view aServerURL,
                                std::string_view aEnumGroup);
  /// A group of enumerations. Route: data access layer, else SOAP `searchForEnumerationGroup`.
  SoapNode SearchForEnumerationGroup(std::string_view aSessionID, std::string_view aServerURL,
                                     std::string_view aGroupCode);
  /// Vendors of an account group. Route: data access layer, else SOAP `searchForVendors`.
  SoapNode SearchForVendors(std::string_view aSessionID, std::string_view aServerURL,
                            std::string_view aAccountGroup);
  /// The customer with this key. Route: data access layer, else SOAP `searchForCustomer`.
  SoapNode SearchForCustomer(std::string_view aSessionID, std::string_view aServerURL,
                             std::string_view aGID);
  /// All CUD codes. Errors leave as they arose. Route: data access layer, else SOAP
  /// `searchForAllCUDCodes`.
  SoapNode SearchForAllCUDCodes(std::string_view aSessionID, std::string_view aServerURL);
  /// GL codes. `Misc` is a text that reads as a boolean; one that does not, "" included, fails
  /// with 13. Route: data access layer, else SOAP `searchForGLCodes`.
  SoapNode SearchForGLCodes(std::string_view aSessionID, std::string_view aServerURL,
                            std::string_view Code = "", std::string_view Desc = "",
                            std::string_view Misc = "");
  /// Kinds of header comments. SOAP `searchForHeaderCommentInfo`.
  SoapNode SearchForHeaderCommentInfo(std::string_view aSessionID, std::string_view aServerURL,
                                      std::string_view aSalesInstrGID = "");
  /// Manufacturers, as a variant that holds the node. Route: data access layer, else SOAP
  /// `searchForManufacturers`.
  Variant SearchForManufacturers(std::string_view aSessionID, std::string_view aServerURL);
  /// National accounts. Route: data access layer, else SOAP `searchForNatlAccts`.
  SoapNode SearchForNatlAccts(std::string_view aSessionID, std::string_view aServerURL,
                              const SearchForNatlAcctsCriteria& criteria = {});
  /// Orders. Data access layer alone, whatever the switch says; 91 where it is not set up.
  /// `aSessionID` and `aServerURL` are not used.
  SoapNode SearchForOrders(std::string_view aSessionID, std::string_view aServerURL,
                           const SearchForOrdersCriteria& criteria = {});
  /// Has found orders sent by e-mail. Data access layer alone. @return An empty reference.
  SoapNode SearchForOrdersForEmail(std::string_view aSessionID, std::string_view aServerURL,
                                   const SearchForOrdersForEmailCriteria& criteria = {});
  /// History of an order. Route: data access layer, else SOAP `searchForOrderHeaderHistory`.
  SoapNode SearchForOrderHeaderHistory(std::string_view aSessionID, std::string_view aServerURL,
                                       std::string_view OrderNbr = "");
  /// History of an order's lines. Route: data access layer, else SOAP
  /// `searchForOrderLineHistory`.
  SoapNode SearchForOrderLineHistory(std::string_view aSessionID, std::string_view aServerURL,
                                     std::string_view OrderNbr = "");
  /// Distribution centres. Route: data access layer, else SOAP `searchForAllDistCenters`.
  SoapNode SearchForDistributionCenters(std::string_view aSessionID, std::string_view aServerURL);
  /// Price history. Route: data access layer, else SOAP `searchForPriceHistory`.
  SoapNode SearchForPriceHistory(std::string_view aSessionID, std::string_view aServerURL,
                                 std::string_view SearchType = "", std::string_view CatalogNbr = "",
                                 std::string_view AgentID = "",
                                 std::string_view DistributorName = "",
                                 std::string_view DistributorGID = "",
                                 std::string_view EndDate = "");
  /// Price history of catalogue numbers. The array goes last and whole by SOAP, joined with ";"
  /// and trimmed by the data access layer. Route: data access layer, else SOAP `searchForPH`.
  SoapNode SearchForPH(std::string_view aSessionID, std::string_view aServerURL,
                       const StringArray& catalogArray, std::string_view Description = "",
                       std::string_view AgentID = "", std::string_view CustomerGID = "");
  /// Average of a price history. As `SearchForPH`; by the data access layer an array of more than
  /// 32768 elements fails with 6.
  SoapNode searchForPHAverage(std::string_view aSessionID, std::string_view aServerURL,
                              const StringArray& catalogArray, std::string_view aType = "",
                              std::string_view Description = "", std::string_view AgentID = "",
                              std::string_view CustomerGID = "");
  /// Projects. Data access layer alone (its project object), whatever the switch says; 91 where
  /// it is not set up.
  SoapNode SearchForProjects(std::string_view aSessionID, std::string_view aServerURL,
                             const SearchForProjectsCriteria& criteria = {});
  /// Has found projects sent by e-mail. Data access layer alone. @return An empty reference.
  SoapNode SearchForProjectsForEmail(std::string_view aSessionID, std::string_view aServerURL,
                                     const SearchForProjectsForEmailCriteria& criteria = {});
  /// Promotions. Route: data access layer, else SOAP `searchForPromotions`.
  SoapNode SearchForPromotions(std::string_view aSessionID, std::string_view aServerURL);
  /// Quotes. Data access layer alone, whatever the switch says; 91 where it is not set up.
  SoapNode SearchForQuotes(std::string_view aSessionID, std::string_view aServerURL,
                           const SearchForQuotesCriteria& criteria = {});
  /// Has found quotes sent by e-mail. Data access layer alone. @return An empty reference.
  SoapNode SearchForQuotesForEmail(std::string_view aSessionID, std::string_view aServerURL,
                                   const SearchForQuotesForEmailCriteria& criteria = {});
  /// Return codes. SOAP `getRMAReturnCodes` of the RMA service.
  SoapNode SearchForRMAReturnCodes(std::string_view aSessionID, std::string_view aServerURL);
  /// States of an RMA. Route: data access layer, else SOAP `searchForRMAStatuses`.
  SoapNode SearchForRMAStatuses(std::string_view aSessionID, std::string_view aServerURL);
  /// Reasons for a return of an order. Route: data access layer, else SOAP
  /// `searchForOrderReasons`.
  SoapNode SearchForReturnReasons(std::string_view aSessionID, std::string_view aServerURL);
  /// Terms of an RMA's processing. Route: data access layer, else SOAP `getRMAProcessingTerms` of
  /// the RMA service.
  SoapNode searchForRMAProcessingTerms(std::string_view aSessionID, std::string_view aServerURL);
  /// RMAs. `aSubmitSaveDate` is sent as it stands. Route: data access layer with the request's
  /// text, else SOAP `searchRMA`.
  SoapNode SearchForRMA(std::string_view aSessionID, std::string_view aServerURL,
                        std::string_view aCustomerRefNumber, std::string_view aTORVEXRMANumber,
                        std::string_view aDistributorGID, std::string_view aSubmitSaveDate);
  /// Sales people of an agent. Note the place of `aAgentGID`. Route: data access layer, else SOAP
  /// `searchForSalesPeople`.
  SoapNode SearchForSalesPeople(std::string_view aSessionID, std::string_view aAgentGID,
                                std::string_view aServerURL);
  /// Shipping methods. SOAP `searchForShippingMethods`.
  SoapNode SearchForShippingMethods(std::string_view aSessionID, std::string_view aServerURL);
  /// Shipping methods to show in the approval queue. Route: data access layer, else SOAP
  /// `getShippingMethodsToDisplayInTheApprovalQueue`.
  SoapNode SearchForApprovalQueueShippingMethods(std::string_view aSessionID,
                                                 std::string_view aServerURL);
  /// Special credit terms. Route: data access layer, else SOAP `searchForSpecialCreditTerms`.
  SoapNode SearchForSpecialCreditTerms(std::string_view aSessionID, std::string_view aServerURL);
  /// Users of the sales organisation. SOAP `searchForUserNamesAtSalesOrg`.
  SoapNode SearchForUserNamesAtSalesOrg(std::string_view aSessionID, std::string_view aServerURL);
  /// The Torvex view of an order. Route: data access layer (its order object), else SOAP
  /// `getOrderTorvexView` of the order service.
  SoapNode SearchForOrderTorvexView(std::string_view aSessionID, std::string_view aServerURL,
                                    std::string_view orderGID = "");
  /// The Zelt view of an order by its key. SOAP `find`.
  SoapNode searchForZeltViewUsingGID(std::string_view aSessionID, std::string_view aServerURL,
                                     std::string_view orderGID = "");
  /// The Zelt view by other criteria; the agent goes second. SOAP `find`.
  SoapNode searchForZeltViewUsingParameters(std::string_view aSessionID,
                                            std::string_view aServerURL,
                                            std::string_view PONumber = "",
                                            std::string_view CustAcctNbr = "",
                                            std::string_view AgentID = "");
  /// The whole inventory. `strInfo` is XML, pasted into the request as it stands. Goes out under
  /// the SOAPAction of the request before. Route: data access layer with the request's text, else
  /// SOAP `getTotalInventoryInfo`; both count as a contact with the server.
  SoapNode SearchForTotalInventory(std::string_view strInfo, std::string_view aSessionID,
                                   std::string_view aServerURL);
  /// Inventory. `strInfo` is XML, pasted into the request as it stands. Goes out under the
  /// SOAPAction of the request before. Route: data access layer with `strInfo`, else SOAP
  /// `getInventoryInfo`; only the latter counts as a contact with the server.
  SoapNode SearchForInventory(std::string_view strInfo, std::string_view aSessionID,
                              std::string_view aServerURL);
  /// A project made from a template. Route: data access layer, else SOAP
  /// `copyProjectFromTemplate` of the project service.
  SoapNode CreateProjectFromTemplate(std::string_view aSessionID, std::string_view aServerURL,
                                     std::string_view aGID = "");
  /// An order made from a template. SOAP `createOrderFromTemplate` of the order service.
  SoapNode CreateOrderFromTemplate(std::string_view aSessionID, std::string_view aServerURL,
                                   std::string_view aProjectGID = "",
                                   std::string_view aProjectName = "",
                                   std::string_view aProjectCity = "",
                                   std::string_view aProjectStateCode = "");
  /// Makes a project a template. Route: data access layer, else SOAP `convertToTemplate` of the
  /// project service.
  SoapNode ConvertToTemplate(std::string_view aSessionID, std::string_view aServerURL,
                             std::string_view aGID = "");
  /// The address of a carrier's tracking page. SOAP `getCarrierTrackingURL`.
  std::string GetCarrierTrackingURL(std::string_view aSessionID, std::string_view aServerURL,
                                    std::string_view aCarrierCode,
                                    std::string_view aTrackingNumber);
  /// Deactivates a sales instrument. Route: data access layer, else SOAP `deactivate`.
  SoapNode Deactivate(std::string_view aSessionID, std::string_view aServerURL,
                      std::string_view aGID = "");
};

}  // namespace bvconn

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
/// Text goes out exactly as given: no date is formatted, no number parsed, no criterion filled in,
/// unless stated otherwise. What is left out is sent all the same, as "" or false, since the server
/// knows a criterion by its place alone. Results are the reply's first parameter; a reply without
/// one fails with 0x80044204. Where no service is named it is "urn:SearchService". `aSessionID` and
/// `aServerURL` matter to the SOAP route alone, and where the data access layer gets the request's
/// text.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text unless stated otherwise, on the other one
/// without it unless stated otherwise.
class BVCONN_EXPORT BVSearchConnector {
 public:
  /// Agents by any of five criteria. Route: SOAP `searchForAgents`.
  SoapNode SearchForAgents(std::string_view aSessionID, std::string_view aServerURL,
                           std::string_view AgentID = "", std::string_view Name = "",
                           std::string_view PartnerID = "", std::string_view State = "",
                           std::string_view Country = "");
  /// Documents that wait for an approval. Route: SOAP `searchForApprovals`.
  SoapNode SearchForApprovals(std::string_view aSessionID, std::string_view aServerURL,
                              const SearchForApprovalsCriteria& criteria = {});
  /// The approval queue. The four arrays go whole by SOAP; the DAL route joins each with ";" and
  /// without the blanks around its elements, an empty array as "", where one that was never
  /// allocated fails with error 9.
  /// Route: DAL `SearchService.SearchApprovalQueue`, else SOAP `searchApprovalQueue`.
  SoapNode SearchApprovalQueue(std::string_view aSessionID, std::string_view aServerURL,
                               const SearchApprovalQueueCriteria& criteria);
  /// Authorizations. A fault has the server's text on either route.
  /// Route: DAL `SearchService.SearchForAuthorizations`, else SOAP `searchForAuthorizations`.
  SoapNode SearchForAuthorizations(std::string_view aSessionID, std::string_view aServerURL);
  /// Brands. Route: DAL `SearchService.SearchForBrands`, else SOAP `searchForBrands`.
  SoapNode SearchForBrands(std::string_view aSessionID, std::string_view aServerURL);
  /// Catalogue numbers of an invoice. Errors leave as they arose.
  /// Route: SOAP `getInvoiceInformation` of "urn:RMAService".
  SoapNode SearchForCatalogNumbersFromInvoice(std::string_view aSessionID,
                                              std::string_view aServerURL,
                                              std::string_view aInvoiceNumber);
  /// The SAP view of an order, by either of its numbers.
  /// Route: DAL `SearchService.SearchForSAPOrderView`, else SOAP `searchForSAPOrderView`.
  SoapNode SearchForSAPOrderView(std::string_view aSessionID, std::string_view aServerURL,
                                 std::string_view aTORVEXOrderNumber,
                                 std::string_view aSAPOrderNumber, bool aIncludePrices);
  /// Catalogue numbers by ten criteria. Route: SOAP `searchForCatalogNbrs`.
  SoapNode SearchForCatalogNbrs(std::string_view aSessionID, std::string_view aServerURL,
                                const SearchForCatalogNbrsCriteria& criteria = {});
  /// Customers. `ExSearch`, `OnlyActive` and `OnlyBrimvale` are texts that read as booleans; one
  /// that does not, "" included, fails with error 13 before anything is sent. A fault has the
  /// server's text on either route.
  /// Route: DAL `SearchService.SearchForCustomers`, else SOAP `searchForCustomers`.
  SoapNode SearchForCustomers(std::string_view aSessionID, std::string_view aServerURL,
                              const SearchForCustomersCriteria& criteria = {});
  /// What else is known of a customer. Route: DAL `SearchService.SearchForCustomerAxillaryInfo`,
  /// else SOAP `searchForCustomerAxillaryInfo`.
  SoapNode SearchForCustomerAxillaryInfo(std::string_view aSessionID, std::string_view aServerURL,
                                         std::string_view CustomerGID = "",
                                         std::string_view AgentID = "");
  /// Default agents.
  /// Route: DAL `SearchService.SearchForDefaultAgents`, else SOAP `searchForDefaultAgents`.
  SoapNode SearchForDefaultAgents(std::string_view aSessionID, std::string_view aServerURL);
  /// All agents, or those of one: a number, or a text that reads as one; else it fails with error
  /// 13. By SOAP it goes out in 16 bits, without a node when left out; on the DAL route in 32, as 0
  /// when left out. One that does not fit fails with error 6.
  /// Route: DAL `SearchService.SearchForAllAgents`, else SOAP `searchForAllAgents`.
  SoapNode SearchForAllAgents(std::string_view aSessionID, std::string_view aServerURL,
                              const Variant& aAgentID = Variant::Missing{});
  /// All customers of an agent. By SOAP the agent goes out as it stands; on the DAL route as a
  /// number of 32 bits: text that is none fails with error 13, one out of range with error 6.
  /// Route: DAL `SearchService.SearchForAllCustomers`, else SOAP `searchForAllCustomersLite`.
  SoapNode SearchForAllCustomers(std::string_view aSessionID, std::string_view aServerURL,
                                 std::string_view aAgentID);
  /// An enumeration. Logged under `SearchForAllCUDCodes`: deliberate [enumeration-log-name].
  /// Route: SOAP `searchForEnumeration`.
  SoapNode SearchForEnumeration(std::string_view aSessionID, std::string_view aServerURL,
                                std::string_view aEnumGroup);
  /// A group of enumerations.
  /// Route: DAL `SearchService.SearchForEnumerationGroup`, else SOAP `searchForEnumerationGroup`.
  SoapNode SearchForEnumerationGroup(std::string_view aSessionID, std::string_view aServerURL,
                                     std::string_view aGroupCode);
  /// Vendors of an account group.
  /// Route: DAL `SearchService.SearchForVendors`, else SOAP `searchForVendors`.
  SoapNode SearchForVendors(std::string_view aSessionID, std::string_view aServerURL,
                            std::string_view aAccountGroup);
  /// The customer with this key.
  /// Route: DAL `SearchService.SearchForCustomer`, else SOAP `searchForCustomer`.
  SoapNode SearchForCustomer(std::string_view aSessionID, std::string_view aServerURL,
                             std::string_view aGID);
  /// All CUD codes. Errors leave as they arose.
  /// Route: DAL `SearchService.SearchForAllCUDCodes`, else SOAP `searchForAllCUDCodes`.
  SoapNode SearchForAllCUDCodes(std::string_view aSessionID, std::string_view aServerURL);
  /// GL codes. `Misc` is a text that reads as a boolean; one that does not, "" included, fails with
  /// error 13. Route: DAL `SearchService.SearchForGLCodes`, else SOAP `searchForGLCodes`.
  SoapNode SearchForGLCodes(std::string_view aSessionID, std::string_view aServerURL,
                            std::string_view Code = "", std::string_view Desc = "",
                            std::string_view Misc = "");
  /// Kinds of header comments. Route: SOAP `searchForHeaderCommentInfo`.
  SoapNode SearchForHeaderCommentInfo(std::string_view aSessionID, std::string_view aServerURL,
                                      std::string_view aSalesInstrGID = "");
  /// Manufacturers, as a variant that holds the node.
  /// Route: DAL `SearchService.SearchForManufacturers`, else SOAP `searchForManufacturers`.
  Variant SearchForManufacturers(std::string_view aSessionID, std::string_view aServerURL);
  /// National accounts.
  /// Route: DAL `SearchService.SearchForNatlAccts`, else SOAP `searchForNatlAccts`.
  SoapNode SearchForNatlAccts(std::string_view aSessionID, std::string_view aServerURL,
                              const SearchForNatlAcctsCriteria& criteria = {});
  /// Orders, whatever the switch says. `ContractorFirstPO` goes as text, "" when left out; an array
  /// or a node fails with error 13. Where the data access layer is not set up: error 91.
  /// Route: DAL `SearchService.SearchForOrders` alone.
  SoapNode SearchForOrders(std::string_view aSessionID, std::string_view aServerURL,
                           const SearchForOrdersCriteria& criteria = {});
  /// Has found orders sent by e-mail: always an empty reference, though a fault in the answer is
  /// raised. `ContractorFirstPO` goes as it stands. Where the layer is not set up: error 91.
  /// Route: DAL `SearchService.OrdersSearchEmailExport` alone.
  SoapNode SearchForOrdersForEmail(std::string_view aSessionID, std::string_view aServerURL,
                                   const SearchForOrdersForEmailCriteria& criteria = {});
  /// History of an order. Route: DAL `SearchService.SearchForOrderHeaderHistory`, else SOAP
  /// `searchForOrderHeaderHistory`.
  SoapNode SearchForOrderHeaderHistory(std::string_view aSessionID, std::string_view aServerURL,
                                       std::string_view OrderNbr = "");
  /// History of an order's lines.
  /// Route: DAL `SearchService.SearchForOrderLineHistory`, else SOAP `searchForOrderLineHistory`.
  SoapNode SearchForOrderLineHistory(std::string_view aSessionID, std::string_view aServerURL,
                                     std::string_view OrderNbr = "");
  /// Distribution centres. Route: DAL `SearchService.SearchForDistributionCenters`, else SOAP
  /// `searchForAllDistCenters`.
  SoapNode SearchForDistributionCenters(std::string_view aSessionID, std::string_view aServerURL);
  /// Price history. `EndDate` is a date in the application's own form.
  /// Route: DAL `SearchService.SearchForPriceHistory`, else SOAP `searchForPriceHistory`.
  SoapNode SearchForPriceHistory(std::string_view aSessionID, std::string_view aServerURL,
                                 std::string_view SearchType = "", std::string_view CatalogNbr = "",
                                 std::string_view AgentID = "",
                                 std::string_view DistributorName = "",
                                 std::string_view DistributorGID = "",
                                 std::string_view EndDate = "");
  /// Price history of catalogue numbers. The array goes last and whole by SOAP; the DAL route joins
  /// it as `SearchApprovalQueue` does, where one that was never allocated fails with error 9.
  /// Route: DAL `SearchService.SearchForPH`, else SOAP `searchForPH`.
  SoapNode SearchForPH(std::string_view aSessionID, std::string_view aServerURL,
                       const StringArray& catalogArray, std::string_view Description = "",
                       std::string_view AgentID = "", std::string_view CustomerGID = "");
  /// Average of a price history. The array as in `SearchForPH`, so error 9 too; on the DAL route
  /// one of more than 32768 elements fails with error 6. Logged with a capital S:
  /// deliberate [average-log-name].
  /// Route: DAL `SearchService.searchForPHAverage`, else SOAP `searchForPHAverage`.
  SoapNode searchForPHAverage(std::string_view aSessionID, std::string_view aServerURL,
                              const StringArray& catalogArray, std::string_view aType = "",
                              std::string_view Description = "", std::string_view AgentID = "",
                              std::string_view CustomerGID = "");
  /// Projects, whatever the switch says. Where the data access layer is not set up: error 91.
  /// Route: DAL `ProjectService.SearchForProjects` alone.
  SoapNode SearchForProjects(std::string_view aSessionID, std::string_view aServerURL,
                             const SearchForProjectsCriteria& criteria = {});
  /// Has found projects sent by e-mail; see `SearchForOrdersForEmail`, also for error 91.
  /// Route: DAL `SearchService.ProjectsSearchEmailExport` alone.
  SoapNode SearchForProjectsForEmail(std::string_view aSessionID, std::string_view aServerURL,
                                     const SearchForProjectsForEmailCriteria& criteria = {});
  /// Promotions. Route: DAL `SearchService.SearchForPromotions`, else SOAP `searchForPromotions`.
  SoapNode SearchForPromotions(std::string_view aSessionID, std::string_view aServerURL);
  /// Quotes, whatever the switch says. Where the data access layer is not set up: error 91.
  /// Route: DAL `SearchService.SearchForQuotes` alone.
  SoapNode SearchForQuotes(std::string_view aSessionID, std::string_view aServerURL,
                           const SearchForQuotesCriteria& criteria = {});
  /// Has found quotes sent by e-mail; see `SearchForOrdersForEmail`, also for error 91.
  /// Route: DAL `SearchService.QuotesSearchEmailExport` alone.
  SoapNode SearchForQuotesForEmail(std::string_view aSessionID, std::string_view aServerURL,
                                   const SearchForQuotesForEmailCriteria& criteria = {});
  /// Return codes. Route: SOAP `getRMAReturnCodes` of "urn:RMAService".
  SoapNode SearchForRMAReturnCodes(std::string_view aSessionID, std::string_view aServerURL);
  /// States of an RMA.
  /// Route: DAL `SearchService.SearchForRMAStatuses`, else SOAP `searchForRMAStatuses`.
  SoapNode SearchForRMAStatuses(std::string_view aSessionID, std::string_view aServerURL);
  /// Reasons for a return of an order, always of the document type "ZRE".
  /// Route: DAL `SearchService.SearchForReturnReasons`, else SOAP `searchForOrderReasons`.
  SoapNode SearchForReturnReasons(std::string_view aSessionID, std::string_view aServerURL);
  /// Terms of an RMA's processing. Route: DAL `RMAService.searchForRMAProcessingTerms`, else SOAP
  /// `getRMAProcessingTerms` of "urn:RMAService".
  SoapNode searchForRMAProcessingTerms(std::string_view aSessionID, std::string_view aServerURL);
  /// RMAs. `aSubmitSaveDate` is sent as it stands. Route: DAL `RMAService.SearchForRMA` with the
  /// request's text, else SOAP `searchRMA` of "urn:RMAService".
  SoapNode SearchForRMA(std::string_view aSessionID, std::string_view aServerURL,
                        std::string_view aCustomerRefNumber, std::string_view aTORVEXRMANumber,
                        std::string_view aDistributorGID, std::string_view aSubmitSaveDate);
  /// Sales people of an agent. Note the place of `aAgentGID`.
  /// Route: DAL `SearchService.SearchForSalesPeople`, else SOAP `searchForSalesPeople`.
  SoapNode SearchForSalesPeople(std::string_view aSessionID, std::string_view aAgentGID,
                                std::string_view aServerURL);
  /// Shipping methods. Route: SOAP `searchForShippingMethods`.
  SoapNode SearchForShippingMethods(std::string_view aSessionID, std::string_view aServerURL);
  /// The shipping methods that the approval queue shows.
  /// Route: DAL `SearchService.SearchForApprovalQueueShippingMethods`, else SOAP
  /// `getShippingMethodsToDisplayInTheApprovalQueue`.
  SoapNode SearchForApprovalQueueShippingMethods(std::string_view aSessionID,
                                                 std::string_view aServerURL);
  /// Special credit terms. Route: DAL `SearchService.SearchForSpecialCreditTerms`, else SOAP
  /// `searchForSpecialCreditTerms`.
  SoapNode SearchForSpecialCreditTerms(std::string_view aSessionID, std::string_view aServerURL);
  /// The names of the users of the sales organisation.
  /// Route: SOAP `searchForUserNamesAtSalesOrg`.
  SoapNode SearchForUserNamesAtSalesOrg(std::string_view aSessionID, std::string_view aServerURL);
  /// The Torvex view of an order. Route: DAL `OrderService.SearchForOrderTorvexView`, else
  /// SOAP `getOrderTorvexView` of "urn:OrderService".
  SoapNode SearchForOrderTorvexView(std::string_view aSessionID, std::string_view aServerURL,
                                    std::string_view orderGID = "");
  /// The Zelt view of an order by its key. Route: SOAP `find` of "urn:ZeltViewService".
  SoapNode searchForZeltViewUsingGID(std::string_view aSessionID, std::string_view aServerURL,
                                     std::string_view orderGID = "");
  /// The Zelt view by other criteria; the agent goes second. The server tells it from
  /// `searchForZeltViewUsingGID` by the number of parameters.
  /// Route: SOAP `find` of "urn:ZeltViewService".
  SoapNode searchForZeltViewUsingParameters(std::string_view aSessionID,
                                            std::string_view aServerURL,
                                            std::string_view PONumber = "",
                                            std::string_view CustAcctNbr = "",
                                            std::string_view AgentID = "");
  /// The whole inventory; the time it took is logged. `strInfo` is XML, pasted into the request as
  /// it stands. Both routes count as a contact with the server. A fault leaves without the server's
  /// text.
  /// Route: DAL `InventoryInquiryService.SearchForTotalInventory` with the request's text, else
  /// SOAP `getTotalInventoryInfo` of "urn:InventoryInquiryService" under the SOAPAction of the
  /// request before.
  SoapNode SearchForTotalInventory(std::string_view strInfo, std::string_view aSessionID,
                                   std::string_view aServerURL);
  /// Inventory. `strInfo` is XML, pasted into the request as it stands, or alone what the DAL route
  /// passes on. Only the SOAP route counts as a contact with the server. A fault leaves without the
  /// server's text.
  /// Route: DAL `InventoryInquiryService.SearchForInventory`, else SOAP `getInventoryInfo` of
  /// "urn:InventoryInquiryService" under the SOAPAction of the request before.
  SoapNode SearchForInventory(std::string_view strInfo, std::string_view aSessionID,
                              std::string_view aServerURL);
  /// A project made from a template. Route: DAL `ProjectService.CreateProjectFromTemplate`, else
  /// SOAP `copyProjectFromTemplate` of "urn:ProjectService".
  SoapNode CreateProjectFromTemplate(std::string_view aSessionID, std::string_view aServerURL,
                                     std::string_view aGID = "");
  /// An order made from a template.
  /// Route: SOAP `createOrderFromTemplate` of "urn:OrderService".
  SoapNode CreateOrderFromTemplate(std::string_view aSessionID, std::string_view aServerURL,
                                   std::string_view aProjectGID = "",
                                   std::string_view aProjectName = "",
                                   std::string_view aProjectCity = "",
                                   std::string_view aProjectStateCode = "");
  /// What the server says to a project's becoming a template. Route: DAL
  /// `ProjectService.ConvertToTemplate`, else SOAP `convertToTemplate` of "urn:ProjectService".
  SoapNode ConvertToTemplate(std::string_view aSessionID, std::string_view aServerURL,
                             std::string_view aGID = "");
  /// The address of a carrier's tracking page, as text, "" for an empty one; an array or a node
  /// fails with error 13. Route: SOAP `getCarrierTrackingURL` of "urn:ZeltViewService".
  std::string GetCarrierTrackingURL(std::string_view aSessionID, std::string_view aServerURL,
                                    std::string_view aCarrierCode,
                                    std::string_view aTrackingNumber);
  /// What the server says to a sales instrument's deactivation. Route: DAL
  /// `SalesInstrumentService.Deactivate`, else SOAP `deactivate` of "urn:SalesInstrumentService".
  SoapNode Deactivate(std::string_view aSessionID, std::string_view aServerURL,
                      std::string_view aGID = "");
};

}  // namespace bvconn

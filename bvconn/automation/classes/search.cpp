#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/declared_classes.h"
#include "bvconn/connectors/search/bv_search_connector.h"

namespace bvconn::automation {

// NOLINTNEXTLINE(readability-function-size): a line for each of 55 operations and their fields
const ClassInfo& search_connector_class() {
  using C = BVSearchConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVSearchConnector")
          .BVCONN_OPERATION(SearchForAgents, "aSessionID", "aServerURL", "AgentID?", "Name?",
                            "PartnerID?", "State?", "Country?")
          .BVCONN_OPERATION(
              SearchForApprovals, "aSessionID", "aServerURL",
              BVCONN_OPTIONAL(SearchForApprovalsCriteria, AgentID, Project, Quote, Order, NAOnly,
                              NAExclude, CFOnly, CFExclude, OnlyProjectOrders, OnlyStockOrders,
                              Pricing, Config, Review, ApprGranted, ApprDenied, Returned,
                              QSSRCatChange, SpecSubmit, SpecReg, SpecDenied, ChangeReq, ChangeRev,
                              Territory, BrandGID, InternationalShipping, CompetitiveReview,
                              PromoGID))
          .BVCONN_OPERATION(
              SearchApprovalQueue, "aSessionID", "aServerURL",
              {BVCONN_REQUIRED(SearchApprovalQueueCriteria, BrandCode, PromoCode, ManufacturerCode,
                               IndustryCode),
               BVCONN_OPTIONAL(SearchApprovalQueueCriteria, AgentID, Project, Quote, Order, NAOnly,
                               NAExclude, CFOnly, CFExclude, ProjectOnly, StockOnly, Pricing,
                               Config, Review, Returned, SpecSubmit, SpecReg, SpecDenied, ChangeReq,
                               InternationalShipping, shippingMethod, HFR, QuickShip)})
          .BVCONN_OPERATION(SearchForAuthorizations, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForBrands, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForCatalogNumbersFromInvoice, "aSessionID", "aServerURL",
                            "aInvoiceNumber")
          .BVCONN_OPERATION(SearchForSAPOrderView, "aSessionID", "aServerURL", "aTORVEXOrderNumber",
                            "aSAPOrderNumber", "aIncludePrices")
          .BVCONN_OPERATION(
              SearchForCatalogNbrs, "aSessionID", "aServerURL",
              BVCONN_OPTIONAL(SearchForCatalogNbrsCriteria, BrandGID, ProdType, CatNbr, Desc,
                              AgentID, Country, MfgGID, MaterialID, UPCNumber, Classification))
          .BVCONN_OPERATION(SearchForCustomers, "aSessionID", "aServerURL",
                            BVCONN_OPTIONAL(SearchForCustomersCriteria, Name, Keyword, CustType,
                                            AcctNbr, PrevAcctNbr, AgentID, City, State, ZipCode,
                                            ExSearch, OnlyActive, OnlyBrimvale, Country))
          .BVCONN_OPERATION(SearchForCustomerAxillaryInfo, "aSessionID", "aServerURL",
                            "CustomerGID?", "AgentID?")
          .BVCONN_OPERATION(SearchForDefaultAgents, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForAllAgents, "aSessionID", "aServerURL", "aAgentID?")
          .BVCONN_OPERATION(SearchForAllCustomers, "aSessionID", "aServerURL", "aAgentID")
          .BVCONN_OPERATION(SearchForEnumeration, "aSessionID", "aServerURL", "aEnumGroup")
          .BVCONN_OPERATION(SearchForEnumerationGroup, "aSessionID", "aServerURL", "aGroupCode")
          .BVCONN_OPERATION(SearchForVendors, "aSessionID", "aServerURL", "aAccountGroup")
          .BVCONN_OPERATION(SearchForCustomer, "aSessionID", "aServerURL", "aGID")
          .BVCONN_OPERATION(SearchForAllCUDCodes, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForGLCodes, "aSessionID", "aServerURL", "Code?", "Desc?", "Misc?")
          .BVCONN_OPERATION(SearchForHeaderCommentInfo, "aSessionID", "aServerURL",
                            "aSalesInstrGID?")
          .BVCONN_OPERATION(SearchForManufacturers, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForNatlAccts, "aSessionID", "aServerURL",
                            BVCONN_OPTIONAL(SearchForNatlAcctsCriteria, AcctName, AcctCode,
                                            AcctTypeCode, SpecTypeCode, aShowNA, aShowNS, aShowCF))
          .BVCONN_OPERATION(
              SearchForOrders, "aSessionID", "aServerURL",
              BVCONN_OPTIONAL(SearchForOrdersCriteria, OrderNbr, SAPOrderNumber, OrderStatus,
                              ProjName, PONbr, QuoteNbr, AgentID, CatalogNbr, CustGID, CustName,
                              CustCity, CustState, NationalAccount, CFAccount, MfgGID,
                              CreateDateStart, CreateDateEnd, GetAllRevisions, OnlyHFR, OrderSource,
                              CustCountry, DodgeNumber, ContractorFirstPO))
          .BVCONN_OPERATION(
              SearchForOrdersForEmail, "aSessionID", "aServerURL",
              BVCONN_OPTIONAL(SearchForOrdersForEmailCriteria, OrderNbr, SAPOrderNumber,
                              OrderStatus, ProjName, PONbr, QuoteNbr, AgentID, CatalogNbr, CustGID,
                              CustName, CustCity, CustState, NationalAccount, CFAccount, MfgGID,
                              CreateDateStart, CreateDateEnd, GetAllRevisions, OnlyHFR, OrderSource,
                              CustCountry, DodgeNumber, ContractorFirstPO, userGID, UserName))
          .BVCONN_OPERATION(SearchForOrderHeaderHistory, "aSessionID", "aServerURL", "OrderNbr?")
          .BVCONN_OPERATION(SearchForOrderLineHistory, "aSessionID", "aServerURL", "OrderNbr?")
          .BVCONN_OPERATION(SearchForDistributionCenters, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForPriceHistory, "aSessionID", "aServerURL", "SearchType?",
                            "CatalogNbr?", "AgentID?", "DistributorName?", "DistributorGID?",
                            "EndDate?")
          .BVCONN_OPERATION(SearchForPH, "aSessionID", "aServerURL", "catalogArray", "Description?",
                            "AgentID?", "CustomerGID?")
          .BVCONN_OPERATION(searchForPHAverage, "aSessionID", "aServerURL", "catalogArray",
                            "aType?", "Description?", "AgentID?", "CustomerGID?")
          .BVCONN_OPERATION(
              SearchForProjects, "aSessionID", "aServerURL",
              BVCONN_OPTIONAL(SearchForProjectsCriteria, ProjNbr, ProjName, ProjCity, ProjState,
                              ProjStatus, AgentID, CatNbr, CustomerGID, CustomerName, BidStart,
                              BidEnd, QuoteNbr, AppNbr, SpecStatus, SpecNbr, NatlAcct, ProjCountry,
                              DodgeNumber, nsCustomerGID, nsCustomerName, SpecType))
          .BVCONN_OPERATION(
              SearchForProjectsForEmail, "aSessionID", "aServerURL",
              BVCONN_OPTIONAL(SearchForProjectsForEmailCriteria, ProjNbr, ProjName, ProjCity,
                              ProjState, ProjStatus, AgentID, CatNbr, CustomerGID, CustomerName,
                              BidStart, BidEnd, QuoteNbr, AppNbr, SpecStatus, SpecNbr, NatlAcct,
                              ProjCountry, DodgeNumber, nsCustomerGID, nsCustomerName, userGID,
                              UserName, SpecType))
          .BVCONN_OPERATION(SearchForPromotions, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(
              SearchForQuotes, "aSessionID", "aServerURL",
              BVCONN_OPTIONAL(SearchForQuotesCriteria, QuoteNbr, QuoteStatus, ProjName, ProjCity,
                              ProjState, AgentID, CatNbr, DistGID, DistName, ContGID, ContName,
                              SpecGID, SpecName, BidStart, BidEnd, NationalAccount, GetAllRevisions,
                              ProjCountry, DodgeNumber))
          .BVCONN_OPERATION(
              SearchForQuotesForEmail, "aSessionID", "aServerURL",
              BVCONN_OPTIONAL(SearchForQuotesForEmailCriteria, QuoteNbr, QuoteStatus, ProjName,
                              ProjCity, ProjState, AgentID, CatNbr, DistGID, DistName, ContGID,
                              ContName, SpecGID, SpecName, BidStart, BidEnd, NationalAccount,
                              GetAllRevisions, ProjCountry, DodgeNumber, userGID, UserName))
          .BVCONN_OPERATION(SearchForRMAReturnCodes, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForRMAStatuses, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForReturnReasons, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(searchForRMAProcessingTerms, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForRMA, "aSessionID", "aServerURL", "aCustomerRefNumber",
                            "aTORVEXRMANumber", "aDistributorGID", "aSubmitSaveDate")
          .BVCONN_OPERATION(SearchForSalesPeople, "aSessionID", "aAgentGID", "aServerURL")
          .BVCONN_OPERATION(SearchForShippingMethods, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForApprovalQueueShippingMethods, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForSpecialCreditTerms, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForUserNamesAtSalesOrg, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForOrderTorvexView, "aSessionID", "aServerURL", "orderGID?")
          .BVCONN_OPERATION(searchForZeltViewUsingGID, "aSessionID", "aServerURL", "orderGID?")
          .BVCONN_OPERATION(searchForZeltViewUsingParameters, "aSessionID", "aServerURL",
                            "PONumber?", "CustAcctNbr?", "AgentID?")
          .BVCONN_OPERATION(SearchForTotalInventory, "strInfo", "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SearchForInventory, "strInfo", "aSessionID", "aServerURL")
          .BVCONN_OPERATION(CreateProjectFromTemplate, "aSessionID", "aServerURL", "aGID?")
          .BVCONN_OPERATION(CreateOrderFromTemplate, "aSessionID", "aServerURL", "aProjectGID?",
                            "aProjectName?", "aProjectCity?", "aProjectStateCode?")
          .BVCONN_OPERATION(ConvertToTemplate, "aSessionID", "aServerURL", "aGID?")
          .BVCONN_OPERATION(GetCarrierTrackingURL, "aSessionID", "aServerURL", "aCarrierCode",
                            "aTrackingNumber")
          .BVCONN_OPERATION(Deactivate, "aSessionID", "aServerURL", "aGID?")
          .take();
  return info;
}

}  // namespace bvconn::automation

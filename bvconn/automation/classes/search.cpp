#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/groups.h"
#include "bvconn/connectors/search/bv_search_connector.h"

namespace bvconn::automation {

// clang-format off
// NOLINTNEXTLINE(readability-function-size): a line for each of 55 operations and their fields
const ClassInfo& search_connector_class() {
  using C = BVSearchConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVSearchConnector")
          .operation<&C::SearchForAgents>("SearchForAgents", {"aSessionID", "aServerURL", "AgentID?", "Name?", "PartnerID?", "State?", "Country?"})
          .operation<&C::SearchForApprovals>("SearchForApprovals", {"aSessionID", "aServerURL"},
                     {field<&SearchForApprovalsCriteria::AgentID>("AgentID?"), field<&SearchForApprovalsCriteria::Project>("Project?"),
                      field<&SearchForApprovalsCriteria::Quote>("Quote?"), field<&SearchForApprovalsCriteria::Order>("Order?"), field<&SearchForApprovalsCriteria::NAOnly>("NAOnly?"),
                      field<&SearchForApprovalsCriteria::NAExclude>("NAExclude?"), field<&SearchForApprovalsCriteria::CFOnly>("CFOnly?"),
                      field<&SearchForApprovalsCriteria::CFExclude>("CFExclude?"), field<&SearchForApprovalsCriteria::OnlyProjectOrders>("OnlyProjectOrders?"),
                      field<&SearchForApprovalsCriteria::OnlyStockOrders>("OnlyStockOrders?"), field<&SearchForApprovalsCriteria::Pricing>("Pricing?"),
                      field<&SearchForApprovalsCriteria::Config>("Config?"), field<&SearchForApprovalsCriteria::Review>("Review?"), field<&SearchForApprovalsCriteria::ApprGranted>("ApprGranted?"),
                      field<&SearchForApprovalsCriteria::ApprDenied>("ApprDenied?"), field<&SearchForApprovalsCriteria::Returned>("Returned?"),
                      field<&SearchForApprovalsCriteria::QSSRCatChange>("QSSRCatChange?"), field<&SearchForApprovalsCriteria::SpecSubmit>("SpecSubmit?"),
                      field<&SearchForApprovalsCriteria::SpecReg>("SpecReg?"), field<&SearchForApprovalsCriteria::SpecDenied>("SpecDenied?"),
                      field<&SearchForApprovalsCriteria::ChangeReq>("ChangeReq?"), field<&SearchForApprovalsCriteria::ChangeRev>("ChangeRev?"),
                      field<&SearchForApprovalsCriteria::Territory>("Territory?"), field<&SearchForApprovalsCriteria::BrandGID>("BrandGID?"),
                      field<&SearchForApprovalsCriteria::InternationalShipping>("InternationalShipping?"), field<&SearchForApprovalsCriteria::CompetitiveReview>("CompetitiveReview?"),
                      field<&SearchForApprovalsCriteria::PromoGID>("PromoGID?")})
          .operation<&C::SearchApprovalQueue>("SearchApprovalQueue", {"aSessionID", "aServerURL"},
                     {field<&SearchApprovalQueueCriteria::BrandCode>("BrandCode"), field<&SearchApprovalQueueCriteria::PromoCode>("PromoCode"),
                      field<&SearchApprovalQueueCriteria::ManufacturerCode>("ManufacturerCode"), field<&SearchApprovalQueueCriteria::IndustryCode>("IndustryCode"),
                      field<&SearchApprovalQueueCriteria::AgentID>("AgentID?"), field<&SearchApprovalQueueCriteria::Project>("Project?"),
                      field<&SearchApprovalQueueCriteria::Quote>("Quote?"), field<&SearchApprovalQueueCriteria::Order>("Order?"), field<&SearchApprovalQueueCriteria::NAOnly>("NAOnly?"),
                      field<&SearchApprovalQueueCriteria::NAExclude>("NAExclude?"), field<&SearchApprovalQueueCriteria::CFOnly>("CFOnly?"),
                      field<&SearchApprovalQueueCriteria::CFExclude>("CFExclude?"), field<&SearchApprovalQueueCriteria::ProjectOnly>("ProjectOnly?"),
                      field<&SearchApprovalQueueCriteria::StockOnly>("StockOnly?"), field<&SearchApprovalQueueCriteria::Pricing>("Pricing?"),
                      field<&SearchApprovalQueueCriteria::Config>("Config?"), field<&SearchApprovalQueueCriteria::Review>("Review?"), field<&SearchApprovalQueueCriteria::Returned>("Returned?"),
                      field<&SearchApprovalQueueCriteria::SpecSubmit>("SpecSubmit?"), field<&SearchApprovalQueueCriteria::SpecReg>("SpecReg?"),
                      field<&SearchApprovalQueueCriteria::SpecDenied>("SpecDenied?"), field<&SearchApprovalQueueCriteria::ChangeReq>("ChangeReq?"),
                      field<&SearchApprovalQueueCriteria::InternationalShipping>("InternationalShipping?"), field<&SearchApprovalQueueCriteria::shippingMethod>("shippingMethod?"),
                      field<&SearchApprovalQueueCriteria::HFR>("HFR?"), field<&SearchApprovalQueueCriteria::QuickShip>("QuickShip?")})
          .operation<&C::SearchForAuthorizations>("SearchForAuthorizations", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForBrands>("SearchForBrands", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForCatalogNumbersFromInvoice>("SearchForCatalogNumbersFromInvoice", {"aSessionID", "aServerURL", "aInvoiceNumber"})
          .operation<&C::SearchForSAPOrderView>("SearchForSAPOrderView", {"aSessionID", "aServerURL", "aTORVEXOrderNumber", "aSAPOrderNumber", "aIncludePrices"})
          .operation<&C::SearchForCatalogNbrs>("SearchForCatalogNbrs", {"aSessionID", "aServerURL"},
                     {field<&SearchForCatalogNbrsCriteria::BrandGID>("BrandGID?"), field<&SearchForCatalogNbrsCriteria::ProdType>("ProdType?"),
                      field<&SearchForCatalogNbrsCriteria::CatNbr>("CatNbr?"), field<&SearchForCatalogNbrsCriteria::Desc>("Desc?"), field<&SearchForCatalogNbrsCriteria::AgentID>("AgentID?"),
                      field<&SearchForCatalogNbrsCriteria::Country>("Country?"), field<&SearchForCatalogNbrsCriteria::MfgGID>("MfgGID?"),
                      field<&SearchForCatalogNbrsCriteria::MaterialID>("MaterialID?"), field<&SearchForCatalogNbrsCriteria::UPCNumber>("UPCNumber?"),
                      field<&SearchForCatalogNbrsCriteria::Classification>("Classification?")})
          .operation<&C::SearchForCustomers>("SearchForCustomers", {"aSessionID", "aServerURL"},
                     {field<&SearchForCustomersCriteria::Name>("Name?"), field<&SearchForCustomersCriteria::Keyword>("Keyword?"), field<&SearchForCustomersCriteria::CustType>("CustType?"),
                      field<&SearchForCustomersCriteria::AcctNbr>("AcctNbr?"), field<&SearchForCustomersCriteria::PrevAcctNbr>("PrevAcctNbr?"),
                      field<&SearchForCustomersCriteria::AgentID>("AgentID?"), field<&SearchForCustomersCriteria::City>("City?"), field<&SearchForCustomersCriteria::State>("State?"),
                      field<&SearchForCustomersCriteria::ZipCode>("ZipCode?"), field<&SearchForCustomersCriteria::ExSearch>("ExSearch?"),
                      field<&SearchForCustomersCriteria::OnlyActive>("OnlyActive?"), field<&SearchForCustomersCriteria::OnlyBrimvale>("OnlyBrimvale?"),
                      field<&SearchForCustomersCriteria::Country>("Country?")})
          .operation<&C::SearchForCustomerAxillaryInfo>("SearchForCustomerAxillaryInfo", {"aSessionID", "aServerURL", "CustomerGID?", "AgentID?"})
          .operation<&C::SearchForDefaultAgents>("SearchForDefaultAgents", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForAllAgents>("SearchForAllAgents", {"aSessionID", "aServerURL", "aAgentID?"})
          .operation<&C::SearchForAllCustomers>("SearchForAllCustomers", {"aSessionID", "aServerURL", "aAgentID"})
          .operation<&C::SearchForEnumeration>("SearchForEnumeration", {"aSessionID", "aServerURL", "aEnumGroup"})
          .operation<&C::SearchForEnumerationGroup>("SearchForEnumerationGroup", {"aSessionID", "aServerURL", "aGroupCode"})
          .operation<&C::SearchForVendors>("SearchForVendors", {"aSessionID", "aServerURL", "aAccountGroup"})
          .operation<&C::SearchForCustomer>("SearchForCustomer", {"aSessionID", "aServerURL", "aGID"})
          .operation<&C::SearchForAllCUDCodes>("SearchForAllCUDCodes", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForGLCodes>("SearchForGLCodes", {"aSessionID", "aServerURL", "Code?", "Desc?", "Misc?"})
          .operation<&C::SearchForHeaderCommentInfo>("SearchForHeaderCommentInfo", {"aSessionID", "aServerURL", "aSalesInstrGID?"})
          .operation<&C::SearchForManufacturers>("SearchForManufacturers", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForNatlAccts>("SearchForNatlAccts", {"aSessionID", "aServerURL"},
                     {field<&SearchForNatlAcctsCriteria::AcctName>("AcctName?"), field<&SearchForNatlAcctsCriteria::AcctCode>("AcctCode?"),
                      field<&SearchForNatlAcctsCriteria::AcctTypeCode>("AcctTypeCode?"), field<&SearchForNatlAcctsCriteria::SpecTypeCode>("SpecTypeCode?"),
                      field<&SearchForNatlAcctsCriteria::aShowNA>("aShowNA?"), field<&SearchForNatlAcctsCriteria::aShowNS>("aShowNS?"),
                      field<&SearchForNatlAcctsCriteria::aShowCF>("aShowCF?")})
          .operation<&C::SearchForOrders>("SearchForOrders", {"aSessionID", "aServerURL"},
                     {field<&SearchForOrdersCriteria::OrderNbr>("OrderNbr?"), field<&SearchForOrdersCriteria::SAPOrderNumber>("SAPOrderNumber?"),
                      field<&SearchForOrdersCriteria::OrderStatus>("OrderStatus?"), field<&SearchForOrdersCriteria::ProjName>("ProjName?"),
                      field<&SearchForOrdersCriteria::PONbr>("PONbr?"), field<&SearchForOrdersCriteria::QuoteNbr>("QuoteNbr?"), field<&SearchForOrdersCriteria::AgentID>("AgentID?"),
                      field<&SearchForOrdersCriteria::CatalogNbr>("CatalogNbr?"), field<&SearchForOrdersCriteria::CustGID>("CustGID?"),
                      field<&SearchForOrdersCriteria::CustName>("CustName?"), field<&SearchForOrdersCriteria::CustCity>("CustCity?"), field<&SearchForOrdersCriteria::CustState>("CustState?"),
                      field<&SearchForOrdersCriteria::NationalAccount>("NationalAccount?"), field<&SearchForOrdersCriteria::CFAccount>("CFAccount?"),
                      field<&SearchForOrdersCriteria::MfgGID>("MfgGID?"), field<&SearchForOrdersCriteria::CreateDateStart>("CreateDateStart?"),
                      field<&SearchForOrdersCriteria::CreateDateEnd>("CreateDateEnd?"), field<&SearchForOrdersCriteria::GetAllRevisions>("GetAllRevisions?"),
                      field<&SearchForOrdersCriteria::OnlyHFR>("OnlyHFR?"), field<&SearchForOrdersCriteria::OrderSource>("OrderSource?"),
                      field<&SearchForOrdersCriteria::CustCountry>("CustCountry?"), field<&SearchForOrdersCriteria::DodgeNumber>("DodgeNumber?"),
                      field<&SearchForOrdersCriteria::ContractorFirstPO>("ContractorFirstPO?")})
          .operation<&C::SearchForOrdersForEmail>("SearchForOrdersForEmail", {"aSessionID", "aServerURL"},
                     {field<&SearchForOrdersForEmailCriteria::OrderNbr>("OrderNbr?"), field<&SearchForOrdersForEmailCriteria::SAPOrderNumber>("SAPOrderNumber?"),
                      field<&SearchForOrdersForEmailCriteria::OrderStatus>("OrderStatus?"), field<&SearchForOrdersForEmailCriteria::ProjName>("ProjName?"),
                      field<&SearchForOrdersForEmailCriteria::PONbr>("PONbr?"), field<&SearchForOrdersForEmailCriteria::QuoteNbr>("QuoteNbr?"),
                      field<&SearchForOrdersForEmailCriteria::AgentID>("AgentID?"), field<&SearchForOrdersForEmailCriteria::CatalogNbr>("CatalogNbr?"),
                      field<&SearchForOrdersForEmailCriteria::CustGID>("CustGID?"), field<&SearchForOrdersForEmailCriteria::CustName>("CustName?"),
                      field<&SearchForOrdersForEmailCriteria::CustCity>("CustCity?"), field<&SearchForOrdersForEmailCriteria::CustState>("CustState?"),
                      field<&SearchForOrdersForEmailCriteria::NationalAccount>("NationalAccount?"), field<&SearchForOrdersForEmailCriteria::CFAccount>("CFAccount?"),
                      field<&SearchForOrdersForEmailCriteria::MfgGID>("MfgGID?"), field<&SearchForOrdersForEmailCriteria::CreateDateStart>("CreateDateStart?"),
                      field<&SearchForOrdersForEmailCriteria::CreateDateEnd>("CreateDateEnd?"), field<&SearchForOrdersForEmailCriteria::GetAllRevisions>("GetAllRevisions?"),
                      field<&SearchForOrdersForEmailCriteria::OnlyHFR>("OnlyHFR?"), field<&SearchForOrdersForEmailCriteria::OrderSource>("OrderSource?"),
                      field<&SearchForOrdersForEmailCriteria::CustCountry>("CustCountry?"), field<&SearchForOrdersForEmailCriteria::DodgeNumber>("DodgeNumber?"),
                      field<&SearchForOrdersForEmailCriteria::ContractorFirstPO>("ContractorFirstPO?"), field<&SearchForOrdersForEmailCriteria::userGID>("userGID?"),
                      field<&SearchForOrdersForEmailCriteria::UserName>("UserName?")})
          .operation<&C::SearchForOrderHeaderHistory>("SearchForOrderHeaderHistory", {"aSessionID", "aServerURL", "OrderNbr?"})
          .operation<&C::SearchForOrderLineHistory>("SearchForOrderLineHistory", {"aSessionID", "aServerURL", "OrderNbr?"})
          .operation<&C::SearchForDistributionCenters>("SearchForDistributionCenters", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForPriceHistory>("SearchForPriceHistory", {"aSessionID", "aServerURL", "SearchType?", "CatalogNbr?", "AgentID?", "DistributorName?", "DistributorGID?", "EndDate?"})
          .operation<&C::SearchForPH>("SearchForPH", {"aSessionID", "aServerURL", "catalogArray", "Description?", "AgentID?", "CustomerGID?"})
          .operation<&C::searchForPHAverage>("searchForPHAverage", {"aSessionID", "aServerURL", "catalogArray", "aType?", "Description?", "AgentID?", "CustomerGID?"})
          .operation<&C::SearchForProjects>("SearchForProjects", {"aSessionID", "aServerURL"},
                     {field<&SearchForProjectsCriteria::ProjNbr>("ProjNbr?"), field<&SearchForProjectsCriteria::ProjName>("ProjName?"),
                      field<&SearchForProjectsCriteria::ProjCity>("ProjCity?"), field<&SearchForProjectsCriteria::ProjState>("ProjState?"),
                      field<&SearchForProjectsCriteria::ProjStatus>("ProjStatus?"), field<&SearchForProjectsCriteria::AgentID>("AgentID?"),
                      field<&SearchForProjectsCriteria::CatNbr>("CatNbr?"), field<&SearchForProjectsCriteria::CustomerGID>("CustomerGID?"),
                      field<&SearchForProjectsCriteria::CustomerName>("CustomerName?"), field<&SearchForProjectsCriteria::BidStart>("BidStart?"),
                      field<&SearchForProjectsCriteria::BidEnd>("BidEnd?"), field<&SearchForProjectsCriteria::QuoteNbr>("QuoteNbr?"), field<&SearchForProjectsCriteria::AppNbr>("AppNbr?"),
                      field<&SearchForProjectsCriteria::SpecStatus>("SpecStatus?"), field<&SearchForProjectsCriteria::SpecNbr>("SpecNbr?"),
                      field<&SearchForProjectsCriteria::NatlAcct>("NatlAcct?"), field<&SearchForProjectsCriteria::ProjCountry>("ProjCountry?"),
                      field<&SearchForProjectsCriteria::DodgeNumber>("DodgeNumber?"), field<&SearchForProjectsCriteria::nsCustomerGID>("nsCustomerGID?"),
                      field<&SearchForProjectsCriteria::nsCustomerName>("nsCustomerName?"), field<&SearchForProjectsCriteria::SpecType>("SpecType?")})
          .operation<&C::SearchForProjectsForEmail>("SearchForProjectsForEmail", {"aSessionID", "aServerURL"},
                     {field<&SearchForProjectsForEmailCriteria::ProjNbr>("ProjNbr?"), field<&SearchForProjectsForEmailCriteria::ProjName>("ProjName?"),
                      field<&SearchForProjectsForEmailCriteria::ProjCity>("ProjCity?"), field<&SearchForProjectsForEmailCriteria::ProjState>("ProjState?"),
                      field<&SearchForProjectsForEmailCriteria::ProjStatus>("ProjStatus?"), field<&SearchForProjectsForEmailCriteria::AgentID>("AgentID?"),
                      field<&SearchForProjectsForEmailCriteria::CatNbr>("CatNbr?"), field<&SearchForProjectsForEmailCriteria::CustomerGID>("CustomerGID?"),
                      field<&SearchForProjectsForEmailCriteria::CustomerName>("CustomerName?"), field<&SearchForProjectsForEmailCriteria::BidStart>("BidStart?"),
                      field<&SearchForProjectsForEmailCriteria::BidEnd>("BidEnd?"), field<&SearchForProjectsForEmailCriteria::QuoteNbr>("QuoteNbr?"),
                      field<&SearchForProjectsForEmailCriteria::AppNbr>("AppNbr?"), field<&SearchForProjectsForEmailCriteria::SpecStatus>("SpecStatus?"),
                      field<&SearchForProjectsForEmailCriteria::SpecNbr>("SpecNbr?"), field<&SearchForProjectsForEmailCriteria::NatlAcct>("NatlAcct?"),
                      field<&SearchForProjectsForEmailCriteria::ProjCountry>("ProjCountry?"), field<&SearchForProjectsForEmailCriteria::DodgeNumber>("DodgeNumber?"),
                      field<&SearchForProjectsForEmailCriteria::nsCustomerGID>("nsCustomerGID?"), field<&SearchForProjectsForEmailCriteria::nsCustomerName>("nsCustomerName?"),
                      field<&SearchForProjectsForEmailCriteria::userGID>("userGID?"), field<&SearchForProjectsForEmailCriteria::UserName>("UserName?"),
                      field<&SearchForProjectsForEmailCriteria::SpecType>("SpecType?")})
          .operation<&C::SearchForPromotions>("SearchForPromotions", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForQuotes>("SearchForQuotes", {"aSessionID", "aServerURL"},
                     {field<&SearchForQuotesCriteria::QuoteNbr>("QuoteNbr?"), field<&SearchForQuotesCriteria::QuoteStatus>("QuoteStatus?"),
                      field<&SearchForQuotesCriteria::ProjName>("ProjName?"), field<&SearchForQuotesCriteria::ProjCity>("ProjCity?"), field<&SearchForQuotesCriteria::ProjState>("ProjState?"),
                      field<&SearchForQuotesCriteria::AgentID>("AgentID?"), field<&SearchForQuotesCriteria::CatNbr>("CatNbr?"), field<&SearchForQuotesCriteria::DistGID>("DistGID?"),
                      field<&SearchForQuotesCriteria::DistName>("DistName?"), field<&SearchForQuotesCriteria::ContGID>("ContGID?"), field<&SearchForQuotesCriteria::ContName>("ContName?"),
                      field<&SearchForQuotesCriteria::SpecGID>("SpecGID?"), field<&SearchForQuotesCriteria::SpecName>("SpecName?"), field<&SearchForQuotesCriteria::BidStart>("BidStart?"),
                      field<&SearchForQuotesCriteria::BidEnd>("BidEnd?"), field<&SearchForQuotesCriteria::NationalAccount>("NationalAccount?"),
                      field<&SearchForQuotesCriteria::GetAllRevisions>("GetAllRevisions?"), field<&SearchForQuotesCriteria::ProjCountry>("ProjCountry?"),
                      field<&SearchForQuotesCriteria::DodgeNumber>("DodgeNumber?")})
          .operation<&C::SearchForQuotesForEmail>("SearchForQuotesForEmail", {"aSessionID", "aServerURL"},
                     {field<&SearchForQuotesForEmailCriteria::QuoteNbr>("QuoteNbr?"), field<&SearchForQuotesForEmailCriteria::QuoteStatus>("QuoteStatus?"),
                      field<&SearchForQuotesForEmailCriteria::ProjName>("ProjName?"), field<&SearchForQuotesForEmailCriteria::ProjCity>("ProjCity?"),
                      field<&SearchForQuotesForEmailCriteria::ProjState>("ProjState?"), field<&SearchForQuotesForEmailCriteria::AgentID>("AgentID?"),
                      field<&SearchForQuotesForEmailCriteria::CatNbr>("CatNbr?"), field<&SearchForQuotesForEmailCriteria::DistGID>("DistGID?"),
                      field<&SearchForQuotesForEmailCriteria::DistName>("DistName?"), field<&SearchForQuotesForEmailCriteria::ContGID>("ContGID?"),
                      field<&SearchForQuotesForEmailCriteria::ContName>("ContName?"), field<&SearchForQuotesForEmailCriteria::SpecGID>("SpecGID?"),
                      field<&SearchForQuotesForEmailCriteria::SpecName>("SpecName?"), field<&SearchForQuotesForEmailCriteria::BidStart>("BidStart?"),
                      field<&SearchForQuotesForEmailCriteria::BidEnd>("BidEnd?"), field<&SearchForQuotesForEmailCriteria::NationalAccount>("NationalAccount?"),
                      field<&SearchForQuotesForEmailCriteria::GetAllRevisions>("GetAllRevisions?"), field<&SearchForQuotesForEmailCriteria::ProjCountry>("ProjCountry?"),
                      field<&SearchForQuotesForEmailCriteria::DodgeNumber>("DodgeNumber?"), field<&SearchForQuotesForEmailCriteria::userGID>("userGID?"),
                      field<&SearchForQuotesForEmailCriteria::UserName>("UserName?")})
          .operation<&C::SearchForRMAReturnCodes>("SearchForRMAReturnCodes", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForRMAStatuses>("SearchForRMAStatuses", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForReturnReasons>("SearchForReturnReasons", {"aSessionID", "aServerURL"})
          .operation<&C::searchForRMAProcessingTerms>("searchForRMAProcessingTerms", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForRMA>("SearchForRMA", {"aSessionID", "aServerURL", "aCustomerRefNumber", "aTORVEXRMANumber", "aDistributorGID", "aSubmitSaveDate"})
          .operation<&C::SearchForSalesPeople>("SearchForSalesPeople", {"aSessionID", "aAgentGID", "aServerURL"})
          .operation<&C::SearchForShippingMethods>("SearchForShippingMethods", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForApprovalQueueShippingMethods>("SearchForApprovalQueueShippingMethods", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForSpecialCreditTerms>("SearchForSpecialCreditTerms", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForUserNamesAtSalesOrg>("SearchForUserNamesAtSalesOrg", {"aSessionID", "aServerURL"})
          .operation<&C::SearchForOrderTorvexView>("SearchForOrderTorvexView", {"aSessionID", "aServerURL", "orderGID?"})
          .operation<&C::searchForZeltViewUsingGID>("searchForZeltViewUsingGID", {"aSessionID", "aServerURL", "orderGID?"})
          .operation<&C::searchForZeltViewUsingParameters>("searchForZeltViewUsingParameters", {"aSessionID", "aServerURL", "PONumber?", "CustAcctNbr?", "AgentID?"})
          .operation<&C::SearchForTotalInventory>("SearchForTotalInventory", {"strInfo", "aSessionID", "aServerURL"})
          .operation<&C::SearchForInventory>("SearchForInventory", {"strInfo", "aSessionID", "aServerURL"})
          .operation<&C::CreateProjectFromTemplate>("CreateProjectFromTemplate", {"aSessionID", "aServerURL", "aGID?"})
          .operation<&C::CreateOrderFromTemplate>("CreateOrderFromTemplate", {"aSessionID", "aServerURL", "aProjectGID?", "aProjectName?", "aProjectCity?", "aProjectStateCode?"})
          .operation<&C::ConvertToTemplate>("ConvertToTemplate", {"aSessionID", "aServerURL", "aGID?"})
          .operation<&C::GetCarrierTrackingURL>("GetCarrierTrackingURL", {"aSessionID", "aServerURL", "aCarrierCode", "aTrackingNumber"})
          .operation<&C::Deactivate>("Deactivate", {"aSessionID", "aServerURL", "aGID?"})
          .take();
  return info;
}
// clang-format on

}  // namespace bvconn::automation

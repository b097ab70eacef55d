#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "bvconn/platform/torvexlib/service_object.h"

/// The operations of the data access layer's 15 service objects that the connectors call, typed,
/// with their arguments in the order of each object. Every operation gives the text of a whole SOAP
/// response. Where no object was made (`InitTorvexDAL` was not called) it fails with 91.
///
/// `InvoiceService` and `PriceAndAvailabilityService` have no class here: they are made, and no
/// connector calls an operation of theirs. `requestText` is the serialised request envelope of the
/// same connector call.
namespace bvconn::dal {

/// Calls one service object.
class ServiceCaller {
 public:
  explicit ServiceCaller(std::shared_ptr<ServiceObject> object) : object_(std::move(object)) {}

  template <class... Arguments>
  std::string operator()(std::string_view operation, const Arguments&... arguments) const {
    const std::array<Variant, sizeof...(arguments)> values{Variant(arguments)...};
    return invoke(operation, values, false);
  }

  /// Looks the operation up at run time; every argument goes by reference.
  template <class... Arguments>
  std::string by_name(std::string_view operation, const Arguments&... arguments) const {
    const std::array<Variant, sizeof...(arguments)> values{Variant(arguments)...};
    return invoke(operation, values, true);
  }

 private:
  std::string invoke(std::string_view operation, std::span<const Variant> arguments,
                     bool by_name) const;

  std::shared_ptr<ServiceObject> object_;
};

class AuthenticationService {
 public:
  explicit AuthenticationService(std::shared_ptr<ServiceObject> object)
      : call_(std::move(object)) {}

  std::string Login(std::string_view UserName, std::string_view Password, std::string_view AppVer,
                    std::string_view countryCode) const {
    return call_("Login", UserName, Password, AppVer, countryCode);
  }
  void SetServerUrl(std::string_view DALUrl) const { call_("SetServerUrl", DALUrl); }
  std::string GetDisabledServices() const { return call_("GetDisabledServices"); }

 private:
  ServiceCaller call_;
};

class SummaryService {
 public:
  explicit SummaryService(std::shared_ptr<ServiceObject> object) : call_(std::move(object)) {}

  std::string getProjectSummary(std::string_view ProjectGID) const {
    return call_("getProjectSummary", ProjectGID);
  }
  std::string getOrderSummary(std::string_view orderGID) const {
    return call_("getOrderSummary", orderGID);
  }
  std::string GetUserSummaryByGIDs(std::string_view projectGIDs, std::string_view quoteGIDs,
                                   std::string_view orderGIDs) const {
    return call_("GetUserSummaryByGIDs", projectGIDs, quoteGIDs, orderGIDs);
  }
  std::string getQuoteSummary(std::string_view QuoteGID) const {
    return call_("getQuoteSummary", QuoteGID);
  }

 private:
  ServiceCaller call_;
};

class HeartBeatService {
 public:
  explicit HeartBeatService(std::shared_ptr<ServiceObject> object) : call_(std::move(object)) {}

  std::string sendHeartBeat() const { return call_("sendHeartBeat"); }

 private:
  ServiceCaller call_;
};

class SearchService {
 public:
  explicit SearchService(std::shared_ptr<ServiceObject> object) : call_(std::move(object)) {}

  std::string SearchForBrands() const { return call_("SearchForBrands"); }
  std::string SearchForAllAgents(std::int32_t aAgentID) const {
    return call_("SearchForAllAgents", aAgentID);
  }
  std::string GetCountries() const { return call_("GetCountries"); }
  std::string SearchForEnumerationGroup(std::string_view aGroupCode) const {
    return call_("SearchForEnumerationGroup", aGroupCode);
  }
  std::string SearchForSalesPeople(std::string_view aAgentGID) const {
    return call_("SearchForSalesPeople", aAgentGID);
  }
  std::string SearchForAllCustomers(std::int32_t aAgentID) const {
    return call_("SearchForAllCustomers", aAgentID);
  }
  std::string SearchForManufacturers() const { return call_("SearchForManufacturers"); }
  std::string SearchForVendors(std::string_view aAccountGroup) const {
    return call_("SearchForVendors", aAccountGroup);
  }
  std::string SearchForDistributionCenters() const { return call_("SearchForDistributionCenters"); }
  std::string SearchForAllCUDCodes() const { return call_("SearchForAllCUDCodes"); }
  std::string SearchForDefaultAgents() const { return call_("SearchForDefaultAgents"); }
  std::string SearchForCustomer(std::string_view aGID) const {
    return call_("SearchForCustomer", aGID);
  }
  std::string SearchForAuthorizations() const { return call_("SearchForAuthorizations"); }
  std::string SearchForApprovalQueueShippingMethods() const {
    return call_("SearchForApprovalQueueShippingMethods");
  }
  std::string getProposalComments() const { return call_("getProposalComments"); }
  std::string SearchForSpecialCreditTerms() const { return call_("SearchForSpecialCreditTerms"); }
  std::string SearchForPromotions() const { return call_("SearchForPromotions"); }
  std::string SearchForReturnReasons(std::string_view DocumentTypeCode) const {
    return call_("SearchForReturnReasons", DocumentTypeCode);
  }
  std::string SearchForCustomerAxillaryInfo(std::string_view CustomerGID,
                                            std::string_view AgentID) const {
    return call_("SearchForCustomerAxillaryInfo", CustomerGID, AgentID);
  }
  std::string SearchForQuotes(std::string_view QuoteNbr, std::string_view QuoteStatus,
                              std::string_view ProjName, std::string_view ProjCity,
                              std::string_view ProjState, std::string_view AgentID,
                              std::string_view CatNbr, std::string_view DistGID,
                              std::string_view DistName, std::string_view ContGID,
                              std::string_view ContName, std::string_view SpecGID,
                              std::string_view SpecName, std::string_view BidStart,
                              std::string_view BidEnd, std::string_view NationalAccount,
                              bool GetAllRevisions, std::string_view ProjCountry,
                              std::string_view DodgeNumber) const {
    return call_("SearchForQuotes", QuoteNbr, QuoteStatus, ProjName, ProjCity, ProjState, AgentID,
                 CatNbr, DistGID, DistName, ContGID, ContName, SpecGID, SpecName, BidStart, BidEnd,
                 NationalAccount, GetAllRevisions, ProjCountry, DodgeNumber);
  }
  std::string SearchForCustomers(std::string_view Name, std::string_view Keyword,
                                 std::string_view CustType, std::string_view AcctNbr,
                                 std::string_view PrevAcctNbr, std::string_view AgentID,
                                 std::string_view City, std::string_view State,
                                 std::string_view Country, std::string_view ZipCode, bool ExSearch,
                                 bool OnlyActive, bool OnlyBrimvale) const {
    return call_("SearchForCustomers", Name, Keyword, CustType, AcctNbr, PrevAcctNbr, AgentID, City,
                 State, Country, ZipCode, ExSearch, OnlyActive, OnlyBrimvale);
  }
  std::string SearchForOrders(
      std::string_view OrderNbr, std::string_view SAPOrderNumber, std::string_view OrderStatus,
      std::string_view ProjName, std::string_view PONbr, std::string_view QuoteNbr,
      std::string_view AgentID, std::string_view CatalogNbr, std::string_view CustGID,
      std::string_view CustName, std::string_view CustCity, std::string_view CustState,
      std::string_view CustCountry, std::string_view NationalAccount, std::string_view CFAccount,
      std::string_view MfgGID, std::string_view CreateDateStart, std::string_view CreateDateEnd,
      bool GetAllRevisions, bool OnlyHFR, std::string_view OrderSource,
      std::string_view DodgeNumber, std::string_view ContractorFirstPO) const {
    return call_("SearchForOrders", OrderNbr, SAPOrderNumber, OrderStatus, ProjName, PONbr,
                 QuoteNbr, AgentID, CatalogNbr, CustGID, CustName, CustCity, CustState, CustCountry,
                 NationalAccount, CFAccount, MfgGID, CreateDateStart, CreateDateEnd,
                 GetAllRevisions, OnlyHFR, OrderSource, DodgeNumber, ContractorFirstPO);
  }
  std::string SearchForPH(std::string_view Description, std::string_view AgentID,
                          std::string_view CustomerGID, std::string_view catalogs) const {
    return call_("SearchForPH", Description, AgentID, CustomerGID, catalogs);
  }
  std::string searchForPHAverage(std::string_view Description, std::string_view aType,
                                 std::string_view AgentID, std::string_view CustomerGID,
                                 std::string_view catalogs) const {
    return call_("searchForPHAverage", Description, aType, AgentID, CustomerGID, catalogs);
  }
  std::string SearchForPriceHistory(std::string_view SearchType, std::string_view CatalogNbr,
                                    std::string_view AgentID, std::string_view DistributorName,
                                    std::string_view DistributorGID,
                                    std::string_view EndDate) const {
    return call_("SearchForPriceHistory", SearchType, CatalogNbr, AgentID, DistributorName,
                 DistributorGID, EndDate);
  }
  std::string SearchForNatlAccts(std::string_view AcctName, std::string_view AcctCode,
                                 std::string_view AcctTypeCode, std::string_view SpecTypeCode,
                                 bool aShowNA, bool aShowNS, bool aShowCF) const {
    return call_("SearchForNatlAccts", AcctName, AcctCode, AcctTypeCode, SpecTypeCode, aShowNA,
                 aShowNS, aShowCF);
  }
  std::string SearchForRMAStatuses() const { return call_("SearchForRMAStatuses"); }
  std::string SearchForGLCodes(std::string_view Code, std::string_view Desc, bool Misc) const {
    return call_("SearchForGLCodes", Code, Desc, Misc);
  }
  std::string SearchApprovalQueue(std::string_view AgentID, std::string_view BrandCodes,
                                  std::string_view PromoCodes, std::string_view ManufacturerCodes,
                                  std::string_view shippingMethod, bool Project, bool Quote,
                                  bool Order, bool NAOnly, bool NAExclude, bool CFOnly,
                                  bool CFExclude, bool ProjectOnly, bool StockOnly, bool Pricing,
                                  bool Config, bool Review, bool Returned, bool SpecSubmit,
                                  bool SpecReg, bool SpecDenied, bool ChangeReq,
                                  bool InternationalShipping, bool HFR,
                                  std::string_view IndustryCodes, bool QuickShip) const {
    return call_("SearchApprovalQueue", AgentID, BrandCodes, PromoCodes, ManufacturerCodes,
                 shippingMethod, Project, Quote, Order, NAOnly, NAExclude, CFOnly, CFExclude,
                 ProjectOnly, StockOnly, Pricing, Config, Review, Returned, SpecSubmit, SpecReg,
                 SpecDenied, ChangeReq, InternationalShipping, HFR, IndustryCodes, QuickShip);
  }
  std::string SearchForSAPOrderView(std::string_view aTORVEXOrderNumber,
                                    std::string_view aSAPOrderNumber, bool aIncludePrices) const {
    return call_("SearchForSAPOrderView", aTORVEXOrderNumber, aSAPOrderNumber, aIncludePrices);
  }
  std::string SearchForOrderHeaderHistory(std::string_view OrderNbr) const {
    return call_("SearchForOrderHeaderHistory", OrderNbr);
  }
  std::string SearchForOrderLineHistory(std::string_view OrderNbr) const {
    return call_("SearchForOrderLineHistory", OrderNbr);
  }
  std::string GetProductApprovals(std::string_view requestText) const {
    return call_("GetProductApprovals", requestText);
  }
  std::string OrdersSearchEmailExport(
      std::string_view userGID, std::string_view UserName, std::string_view OrderNbr,
      std::string_view SAPOrderNumber, std::string_view OrderStatus, std::string_view ProjName,
      std::string_view PONbr, std::string_view QuoteNbr, std::string_view AgentID,
      std::string_view CatalogNbr, std::string_view CustGID, std::string_view CustName,
      std::string_view CustCity, std::string_view CustState, std::string_view CustCountry,
      std::string_view NationalAccount, std::string_view CFAccount, std::string_view MfgGID,
      std::string_view CreateDateStart, std::string_view CreateDateEnd, bool GetAllRevisions,
      bool OnlyHFR, std::string_view OrderSource, std::string_view DodgeNumber,
      const Variant& ContractorFirstPO) const {
    return call_.by_name("OrdersSearchEmailExport", userGID, UserName, OrderNbr, SAPOrderNumber,
                         OrderStatus, ProjName, PONbr, QuoteNbr, AgentID, CatalogNbr, CustGID,
                         CustName, CustCity, CustState, CustCountry, NationalAccount, CFAccount,
                         MfgGID, CreateDateStart, CreateDateEnd, GetAllRevisions, OnlyHFR,
                         OrderSource, DodgeNumber, ContractorFirstPO);
  }
  std::string ProjectsSearchEmailExport(
      std::string_view userGID, std::string_view UserName, std::string_view ProjNbr,
      std::string_view ProjName, std::string_view ProjCity, std::string_view ProjState,
      std::string_view ProjCountry, std::string_view ProjStatus, std::string_view AgentID,
      std::string_view CatNbr, std::string_view CustomerGID, std::string_view CustomerName,
      std::string_view BidStart, std::string_view BidEnd, std::string_view QuoteNbr,
      std::string_view AppNbr, std::string_view SpecStatus, std::string_view SpecNbr,
      std::string_view NatlAcct, std::string_view DodgeNumber, std::string_view nsCustomerGID,
      std::string_view nsCustomerName, std::string_view SpecType) const {
    return call_.by_name("ProjectsSearchEmailExport", userGID, UserName, ProjNbr, ProjName,
                         ProjCity, ProjState, ProjCountry, ProjStatus, AgentID, CatNbr, CustomerGID,
                         CustomerName, BidStart, BidEnd, QuoteNbr, AppNbr, SpecStatus, SpecNbr,
                         NatlAcct, DodgeNumber, nsCustomerGID, nsCustomerName, SpecType);
  }
  std::string QuotesSearchEmailExport(
      std::string_view userGID, std::string_view UserName, std::string_view QuoteNbr,
      std::string_view QuoteStatus, std::string_view ProjName, std::string_view ProjCity,
      std::string_view ProjState, std::string_view AgentID, std::string_view CatNbr,
      std::string_view DistGID, std::string_view DistName, std::string_view ContGID,
      std::string_view ContName, std::string_view SpecGID, std::string_view SpecName,
      std::string_view BidStart, std::string_view BidEnd, std::string_view NationalAccount,
      bool GetAllRevisions, std::string_view ProjCountry, std::string_view DodgeNumber) const {
    return call_.by_name("QuotesSearchEmailExport", userGID, UserName, QuoteNbr, QuoteStatus,
                         ProjName, ProjCity, ProjState, AgentID, CatNbr, DistGID, DistName, ContGID,
                         ContName, SpecGID, SpecName, BidStart, BidEnd, NationalAccount,
                         GetAllRevisions, ProjCountry, DodgeNumber);
  }

 private:
  ServiceCaller call_;
};

class ProjectService {
 public:
  explicit ProjectService(std::shared_ptr<ServiceObject> object) : call_(std::move(object)) {}

  std::string GetProjectHeaderComments(std::string_view aProjectGID,
                                       std::string_view aCommentType) const {
    return call_("GetProjectHeaderComments", aProjectGID, aCommentType);
  }
  std::string getExistingProject(std::string_view aGID) const {
    return call_("getExistingProject", aGID);
  }
  std::string getRFQFromProjAuxInfo(std::string_view aProjectGID,
                                    std::string_view aManufacturerGID) const {
    return call_("getRFQFromProjAuxInfo", aProjectGID, aManufacturerGID);
  }
  std::string SaveProject(std::string_view requestText) const {
    return call_("SaveProject", requestText);
  }
  std::string getNewProject() const { return call_("getNewProject"); }
  std::string getRevertedProject(std::string_view aGID) const {
    return call_("getRevertedProject", aGID);
  }
  std::string UpdateProjectHeaderComments(std::string_view requestText) const {
    return call_("UpdateProjectHeaderComments", requestText);
  }
  std::string generateQuotes(std::string_view requestText) const {
    return call_("generateQuotes", requestText);
  }
  std::string ConvertToTemplate(std::string_view aGID) const {
    return call_("ConvertToTemplate", aGID);
  }
  std::string CheckSingleSaveStatus(std::string_view aGID) const {
    return call_("CheckSingleSaveStatus", aGID);
  }
  std::string CopyProject(std::string_view aGID) const { return call_("CopyProject", aGID); }
  std::string CreateProjectFromTemplate(std::string_view aGID) const {
    return call_("CreateProjectFromTemplate", aGID);
  }
  std::string RequestReview(std::string_view requestText) const {
    return call_("RequestReview", requestText);
  }
  std::string ReturnToAgent(std::string_view requestText) const {
    return call_("ReturnToAgent", requestText);
  }
  std::string SearchForProjects(std::string_view ProjNbr, std::string_view ProjName,
                                std::string_view ProjCity, std::string_view ProjState,
                                std::string_view ProjCountry, std::string_view ProjStatus,
                                std::string_view AgentID, std::string_view CatNbr,
                                std::string_view CustomerGID, std::string_view CustomerName,
                                std::string_view BidStart, std::string_view BidEnd,
                                std::string_view QuoteNbr, std::string_view AppNbr,
                                std::string_view SpecStatus, std::string_view SpecNbr,
                                std::string_view NatlAcct, std::string_view DodgeNumber,
                                std::string_view nsCustomerGID, std::string_view nsCustomerName,
                                std::string_view SpecType) const {
    return call_.by_name("SearchForProjects", ProjNbr, ProjName, ProjCity, ProjState, ProjCountry,
                         ProjStatus, AgentID, CatNbr, CustomerGID, CustomerName, BidStart, BidEnd,
                         QuoteNbr, AppNbr, SpecStatus, SpecNbr, NatlAcct, DodgeNumber,
                         nsCustomerGID, nsCustomerName, SpecType);
  }

 private:
  ServiceCaller call_;
};

class QuoteService {
 public:
  explicit QuoteService(std::shared_ptr<ServiceObject> object) : call_(std::move(object)) {}

  std::string GetQuoteHeaderComments(std::string_view aQuoteGID,
                                     std::string_view aCommentType) const {
    return call_("GetQuoteHeaderComments", aQuoteGID, aCommentType);
  }
  std::string getRFQAuxiliaryInfo(std::string_view aQuoteGID,
                                  std::string_view aManufacturerGID) const {
    return call_("getRFQAuxiliaryInfo", aQuoteGID, aManufacturerGID);
  }
  std::string UpdateQuoteHeaderComments(std::string_view requestText) const {
    return call_("UpdateQuoteHeaderComments", requestText);
  }
  std::string getPreviousSalesInstrumentColumnPrices(std::string_view astrSIGid) const {
    return call_("getPreviousSalesInstrumentColumnPrices", astrSIGid);
  }
  std::string updateRFQ(std::string_view RFQGID, std::string_view mfrQuoteNumber) const {
    return call_("updateRFQ", RFQGID, mfrQuoteNumber);
  }
  std::string SetQuoteStatusToQuoted(std::string_view aGID) const {
    return call_("SetQuoteStatusToQuoted", aGID);
  }

 private:
  ServiceCaller call_;
};

class OrderService {
 public:
  explicit OrderService(std::shared_ptr<ServiceObject> object) : call_(std::move(object)) {}

  std::string GetOrderHeaderComments(std::string_view aOrderGID,
                                     std::string_view aCommentType) const {
    return call_("GetOrderHeaderComments", aOrderGID, aCommentType);
  }
  std::string UpdateOrderHeaderComments(std::string_view requestText) const {
    return call_("UpdateOrderHeaderComments", requestText);
  }
  std::string SetLineComments(std::string_view requestText) const {
    return call_("SetLineComments", requestText);
  }
  std::string getPreviousSalesInstrumentColumnPrices(std::string_view astrSIGid) const {
    return call_("getPreviousSalesInstrumentColumnPrices", astrSIGid);
  }
  std::string SearchForOrderTorvexView(std::string_view orderGID) const {
    return call_("SearchForOrderTorvexView", orderGID);
  }
  std::string getSAPInfo(std::string_view requestText) const {
    return call_("getSAPInfo", requestText);
  }
  std::string getSAPOrderView(std::string_view aOrderGID, bool aIncludePrice) const {
    return call_("getSAPOrderView", aOrderGID, aIncludePrice);
  }

 private:
  ServiceCaller call_;
};

class MaintenanceService {
 public:
  explicit MaintenanceService(std::shared_ptr<ServiceObject> object) : call_(std::move(object)) {}

  std::string GetUserOrderPrintoutDefault() const { return call_("GetUserOrderPrintoutDefault"); }
  std::string GetUserOrderSubmitPrintoutDefault() const {
    return call_("GetUserOrderSubmitPrintoutDefault");
  }
  std::string GetUserProjectPrintoutDefault() const {
    return call_("GetUserProjectPrintoutDefault");
  }
  std::string GetUserQuotePrintoutDefault() const { return call_("GetUserQuotePrintoutDefault"); }
  std::string GetUserRFQPrintoutDefault() const { return call_("GetUserRFQPrintoutDefault"); }
  std::string GetUserSAPPrintoutDefault() const { return call_("GetUserSAPPrintoutDefault"); }
  std::string GetUserLogoList() const { return call_("GetUserLogoList"); }
  std::string GetUserLogo() const { return call_("GetUserLogo"); }
  std::string SaveOrderPrintoutDefault(std::string_view requestText) const {
    return call_("SaveOrderPrintoutDefault", requestText);
  }
  std::string SaveProjectPrintoutDefault(std::string_view requestText) const {
    return call_("SaveProjectPrintoutDefault", requestText);
  }
  std::string SaveQuotePrintoutDefault(std::string_view requestText) const {
    return call_("SaveQuotePrintoutDefault", requestText);
  }
  std::string SaveRFQPrintoutDefault(std::string_view requestText) const {
    return call_("SaveRFQPrintoutDefault", requestText);
  }
  std::string SaveSAPPrintoutDefault(std::string_view requestText) const {
    return call_("SaveSAPPrintoutDefault", requestText);
  }
  std::string SetUserLogo(std::string_view aLogo) const { return call_("SetUserLogo", aLogo); }
  std::string SetUserOrderPrintoutDefault(std::string_view aPrintInfoUID) const {
    return call_("SetUserOrderPrintoutDefault", aPrintInfoUID);
  }
  std::string SetUserOrderSubmitPrintoutDefault(std::string_view aPrintInfoUID) const {
    return call_("SetUserOrderSubmitPrintoutDefault", aPrintInfoUID);
  }
  std::string SetUserProjectPrintoutDefault(std::string_view aPrintInfoUID) const {
    return call_("SetUserProjectPrintoutDefault", aPrintInfoUID);
  }
  std::string SetUserQuotePrintoutDefault(std::string_view aPrintInfoUID) const {
    return call_("SetUserQuotePrintoutDefault", aPrintInfoUID);
  }
  std::string SetUserRFQPrintoutDefault(std::string_view aPrintInfoUID) const {
    return call_("SetUserRFQPrintoutDefault", aPrintInfoUID);
  }
  std::string SetUserSAPPrintoutDefault(std::string_view aPrintInfoUID) const {
    return call_("SetUserSAPPrintoutDefault", aPrintInfoUID);
  }
  std::string SetUserProfile(std::string_view requestText) const {
    return call_("SetUserProfile", requestText);
  }

 private:
  ServiceCaller call_;
};

class InventoryInquiryService {
 public:
  explicit InventoryInquiryService(std::shared_ptr<ServiceObject> object)
      : call_(std::move(object)) {}

  std::string SearchForInventory(std::string_view strInfo) const {
    return call_("SearchForInventory", strInfo);
  }
  std::string SearchForTotalInventory(std::string_view requestText) const {
    return call_("SearchForTotalInventory", requestText);
  }

 private:
  ServiceCaller call_;
};

class RMAService {
 public:
  explicit RMAService(std::shared_ptr<ServiceObject> object) : call_(std::move(object)) {}

  std::string GetExistingRMA(std::string_view aUID) const { return call_("GetExistingRMA", aUID); }
  std::string searchForRMAProcessingTerms() const { return call_("searchForRMAProcessingTerms"); }
  std::string GetInvoiceInfo(std::string_view aInvoiceNumber) const {
    return call_("GetInvoiceInfo", aInvoiceNumber);
  }
  std::string SaveRMA(std::string_view requestText) const { return call_("SaveRMA", requestText); }
  std::string GetNewRMA(std::string_view aManufacturerGID) const {
    return call_("GetNewRMA", aManufacturerGID);
  }
  std::string SubmitRMA(std::string_view requestText) const {
    return call_("SubmitRMA", requestText);
  }
  std::string SearchForRMA(std::string_view requestText) const {
    return call_("SearchForRMA", requestText);
  }

 private:
  ServiceCaller call_;
};

class PrintingService {
 public:
  explicit PrintingService(std::shared_ptr<ServiceObject> object) : call_(std::move(object)) {}

  std::string GetPrintInfos() const { return call_("GetPrintInfos"); }
  std::string GetQuotePrintout(std::string_view aUID) const {
    return call_("GetQuotePrintout", aUID);
  }
  std::string GetPrintTemplates() const { return call_("GetPrintTemplates"); }
  std::string GetProjectPrintoutDefaults(bool getUserDefaults) const {
    return call_("GetProjectPrintoutDefaults", getUserDefaults);
  }
  std::string GetOrderPrintoutDefaults(bool getUserDefaults) const {
    return call_("GetOrderPrintoutDefaults", getUserDefaults);
  }
  std::string GetQuotePrintoutDefaults(bool getUserDefaults) const {
    return call_("GetQuotePrintoutDefaults", getUserDefaults);
  }
  std::string GetRFQPrintoutDefaults(bool getUserDefaults) const {
    return call_("GetRFQPrintoutDefaults", getUserDefaults);
  }
  std::string GetSAPPrintoutDefaults(bool getUserDefaults) const {
    return call_("GetSAPPrintoutDefaults", getUserDefaults);
  }

 private:
  ServiceCaller call_;
};

class SubmittalService {
 public:
  explicit SubmittalService(std::shared_ptr<ServiceObject> object) : call_(std::move(object)) {}

  std::string GetUpdatableSubmittalsForProject(std::string_view aProjectGID) const {
    return call_("GetUpdatableSubmittalsForProject", aProjectGID);
  }
  std::string GetUpdatableSubmittalsForQuote(std::string_view aQuoteNbr) const {
    return call_("GetUpdatableSubmittalsForQuote", aQuoteNbr);
  }
  std::string GetAllSubmittalsForProject(std::string_view aProjectGID) const {
    return call_("GetAllSubmittalsForProject", aProjectGID);
  }
  std::string GetAllSubmittalsForQuote(std::string_view aQuoteNbr) const {
    return call_("GetAllSubmittalsForQuote", aQuoteNbr);
  }

 private:
  ServiceCaller call_;
};

class SalesInstrumentService {
 public:
  explicit SalesInstrumentService(std::shared_ptr<ServiceObject> object)
      : call_(std::move(object)) {}

  std::string GetLineComments(std::string_view aSalesInstrumentGID,
                              std::string_view aLineItemGID) const {
    return call_("GetLineComments", aSalesInstrumentGID, aLineItemGID);
  }
  std::string Deactivate(std::string_view aGID) const { return call_("Deactivate", aGID); }
  std::string GetProductCost(std::string_view requestText) const {
    return call_("GetProductCost", requestText);
  }

 private:
  ServiceCaller call_;
};

}  // namespace bvconn::dal

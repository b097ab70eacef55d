#include "dal/service_object_cases.h"

namespace bvconn::dal::test {

Cases search_service_lookups() {
  return {
      {"SearchService.SearchForBrands()",
       [](const Services& s) { return s.SearchService().SearchForBrands(); }},
      {"SearchService.SearchForAllAgents(70001)",
       [](const Services& s) { return s.SearchService().SearchForAllAgents(70001); }},
      {"SearchService.GetCountries()",
       [](const Services& s) { return s.SearchService().GetCountries(); }},
      {R"(SearchService.SearchForEnumerationGroup("group"))",
       [](const Services& s) { return s.SearchService().SearchForEnumerationGroup("group"); }},
      {R"(SearchService.SearchForSalesPeople("agent"))",
       [](const Services& s) { return s.SearchService().SearchForSalesPeople("agent"); }},
      {"SearchService.SearchForAllCustomers(70002)",
       [](const Services& s) { return s.SearchService().SearchForAllCustomers(70002); }},
      {"SearchService.SearchForManufacturers()",
       [](const Services& s) { return s.SearchService().SearchForManufacturers(); }},
      {R"(SearchService.SearchForVendors("account group"))",
       [](const Services& s) { return s.SearchService().SearchForVendors("account group"); }},
      {"SearchService.SearchForDistributionCenters()",
       [](const Services& s) { return s.SearchService().SearchForDistributionCenters(); }},
      {"SearchService.SearchForAllCUDCodes()",
       [](const Services& s) { return s.SearchService().SearchForAllCUDCodes(); }},
      {"SearchService.SearchForDefaultAgents()",
       [](const Services& s) { return s.SearchService().SearchForDefaultAgents(); }},
      {R"(SearchService.SearchForCustomer("customer"))",
       [](const Services& s) { return s.SearchService().SearchForCustomer("customer"); }},
      {"SearchService.SearchForAuthorizations()",
       [](const Services& s) { return s.SearchService().SearchForAuthorizations(); }},
      {"SearchService.SearchForApprovalQueueShippingMethods()",
       [](const Services& s) { return s.SearchService().SearchForApprovalQueueShippingMethods(); }},
      {"SearchService.getProposalComments()",
       [](const Services& s) { return s.SearchService().getProposalComments(); }},
      {"SearchService.SearchForSpecialCreditTerms()",
       [](const Services& s) { return s.SearchService().SearchForSpecialCreditTerms(); }},
      {"SearchService.SearchForPromotions()",
       [](const Services& s) { return s.SearchService().SearchForPromotions(); }},
      {R"(SearchService.SearchForReturnReasons("ZRE"))",
       [](const Services& s) { return s.SearchService().SearchForReturnReasons("ZRE"); }},
      {R"(SearchService.SearchForCustomerAxillaryInfo("customer", "agent"))",
       [](const Services& s) {
         return s.SearchService().SearchForCustomerAxillaryInfo("customer", "agent");
       }},
  };
}

Cases search_service_searches() {
  return {
      {R"(SearchService.SearchForQuotes("QuoteNbr", "QuoteStatus", "ProjName", "ProjCity", )"
       R"("ProjState", "AgentID", "CatNbr", "DistGID", "DistName", "ContGID", "ContName", )"
       R"("SpecGID", "SpecName", "BidStart", "BidEnd", "NationalAccount", true, "ProjCountry", )"
       R"("DodgeNumber"))",
       [](const Services& s) {
         return s.SearchService().SearchForQuotes(
             "QuoteNbr", "QuoteStatus", "ProjName", "ProjCity", "ProjState", "AgentID", "CatNbr",
             "DistGID", "DistName", "ContGID", "ContName", "SpecGID", "SpecName", "BidStart",
             "BidEnd", "NationalAccount", true, "ProjCountry", "DodgeNumber");
       }},
      {R"(SearchService.SearchForCustomers("Name", "Keyword", "CustType", "AcctNbr", )"
       R"("PrevAcctNbr", "AgentID", "City", "State", "Country", "ZipCode", true, false, true))",
       [](const Services& s) {
         return s.SearchService().SearchForCustomers("Name", "Keyword", "CustType", "AcctNbr",
                                                     "PrevAcctNbr", "AgentID", "City", "State",
                                                     "Country", "ZipCode", true, false, true);
       }},
      {R"(SearchService.SearchForOrders("OrderNbr", "SAPOrderNumber", "OrderStatus", "ProjName", )"
       R"("PONbr", "QuoteNbr", "AgentID", "CatalogNbr", "CustGID", "CustName", "CustCity", )"
       R"("CustState", "CustCountry", "NationalAccount", "CFAccount", "MfgGID", )"
       R"("CreateDateStart", "CreateDateEnd", true, false, "OrderSource", "DodgeNumber", )"
       R"("ContractorFirstPO"))",
       [](const Services& s) {
         return s.SearchService().SearchForOrders(
             "OrderNbr", "SAPOrderNumber", "OrderStatus", "ProjName", "PONbr", "QuoteNbr",
             "AgentID", "CatalogNbr", "CustGID", "CustName", "CustCity", "CustState", "CustCountry",
             "NationalAccount", "CFAccount", "MfgGID", "CreateDateStart", "CreateDateEnd", true,
             false, "OrderSource", "DodgeNumber", "ContractorFirstPO");
       }},
      {R"(SearchService.SearchForPH("Description", "AgentID", "CustomerGID", "C1;C2"))",
       [](const Services& s) {
         return s.SearchService().SearchForPH("Description", "AgentID", "CustomerGID", "C1;C2");
       }},
      {R"(SearchService.searchForPHAverage("Description", "aType", "AgentID", "CustomerGID", )"
       R"("C1;C2"))",
       [](const Services& s) {
         return s.SearchService().searchForPHAverage("Description", "aType", "AgentID",
                                                     "CustomerGID", "C1;C2");
       }},
      {R"(SearchService.SearchForPriceHistory("SearchType", "CatalogNbr", "AgentID", )"
       R"("DistributorName", "DistributorGID", "EndDate"))",
       [](const Services& s) {
         return s.SearchService().SearchForPriceHistory(
             "SearchType", "CatalogNbr", "AgentID", "DistributorName", "DistributorGID", "EndDate");
       }},
      {R"(SearchService.SearchForNatlAccts("AcctName", "AcctCode", "AcctTypeCode", )"
       R"("SpecTypeCode", true, false, true))",
       [](const Services& s) {
         return s.SearchService().SearchForNatlAccts("AcctName", "AcctCode", "AcctTypeCode",
                                                     "SpecTypeCode", true, false, true);
       }},
      {"SearchService.SearchForRMAStatuses()",
       [](const Services& s) { return s.SearchService().SearchForRMAStatuses(); }},
      {R"(SearchService.SearchForGLCodes("Code", "Desc", true))",
       [](const Services& s) { return s.SearchService().SearchForGLCodes("Code", "Desc", true); }},
      {R"(SearchService.SearchApprovalQueue("AgentID", "B1;B2", "P1;P2", "M1;M2", )"
       R"("shippingMethod", true, false, true, false, true, false, true, false, true, false, )"
       R"(true, false, true, false, true, false, true, false, true, "I1;I2", false))",
       [](const Services& s) {
         return s.SearchService().SearchApprovalQueue(
             "AgentID", "B1;B2", "P1;P2", "M1;M2", "shippingMethod", true, false, true, false, true,
             false, true, false, true, false, true, false, true, false, true, false, true, false,
             true, "I1;I2", false);
       }},
      {R"(SearchService.SearchForSAPOrderView("torvex number", "SAP number", true))",
       [](const Services& s) {
         return s.SearchService().SearchForSAPOrderView("torvex number", "SAP number", true);
       }},
      {R"(SearchService.SearchForOrderHeaderHistory("order H"))",
       [](const Services& s) { return s.SearchService().SearchForOrderHeaderHistory("order H"); }},
      {R"(SearchService.SearchForOrderLineHistory("order L"))",
       [](const Services& s) { return s.SearchService().SearchForOrderLineHistory("order L"); }},
      {R"(SearchService.GetProductApprovals("<request/>"))",
       [](const Services& s) { return s.SearchService().GetProductApprovals("<request/>"); }},
  };
}

Cases search_service_exports() {
  return {
      {R"(SearchService.OrdersSearchEmailExport("userGID", "UserName", "OrderNbr", )"
       R"("SAPOrderNumber", "OrderStatus", "ProjName", "PONbr", "QuoteNbr", "AgentID", )"
       R"("CatalogNbr", "CustGID", "CustName", "CustCity", "CustState", "CustCountry", )"
       R"("NationalAccount", "CFAccount", "MfgGID", "CreateDateStart", "CreateDateEnd", true, )"
       R"(false, "OrderSource", "DodgeNumber", missing) by name)",
       [](const Services& s) {
         return s.SearchService().OrdersSearchEmailExport(
             "userGID", "UserName", "OrderNbr", "SAPOrderNumber", "OrderStatus", "ProjName",
             "PONbr", "QuoteNbr", "AgentID", "CatalogNbr", "CustGID", "CustName", "CustCity",
             "CustState", "CustCountry", "NationalAccount", "CFAccount", "MfgGID",
             "CreateDateStart", "CreateDateEnd", true, false, "OrderSource", "DodgeNumber",
             Variant::Missing());
       }},
      {R"(SearchService.ProjectsSearchEmailExport("userGID", "UserName", "ProjNbr", "ProjName", )"
       R"("ProjCity", "ProjState", "ProjCountry", "ProjStatus", "AgentID", "CatNbr", )"
       R"("CustomerGID", "CustomerName", "BidStart", "BidEnd", "QuoteNbr", "AppNbr", )"
       R"("SpecStatus", "SpecNbr", "NatlAcct", "DodgeNumber", "nsCustomerGID", )"
       R"("nsCustomerName", "SpecType") by name)",
       [](const Services& s) {
         return s.SearchService().ProjectsSearchEmailExport(
             "userGID", "UserName", "ProjNbr", "ProjName", "ProjCity", "ProjState", "ProjCountry",
             "ProjStatus", "AgentID", "CatNbr", "CustomerGID", "CustomerName", "BidStart", "BidEnd",
             "QuoteNbr", "AppNbr", "SpecStatus", "SpecNbr", "NatlAcct", "DodgeNumber",
             "nsCustomerGID", "nsCustomerName", "SpecType");
       }},
      {R"(SearchService.QuotesSearchEmailExport("userGID", "UserName", "QuoteNbr", )"
       R"("QuoteStatus", "ProjName", "ProjCity", "ProjState", "AgentID", "CatNbr", "DistGID", )"
       R"("DistName", "ContGID", "ContName", "SpecGID", "SpecName", "BidStart", "BidEnd", )"
       R"("NationalAccount", true, "ProjCountry", "DodgeNumber") by name)",
       [](const Services& s) {
         return s.SearchService().QuotesSearchEmailExport(
             "userGID", "UserName", "QuoteNbr", "QuoteStatus", "ProjName", "ProjCity", "ProjState",
             "AgentID", "CatNbr", "DistGID", "DistName", "ContGID", "ContName", "SpecGID",
             "SpecName", "BidStart", "BidEnd", "NationalAccount", true, "ProjCountry",
             "DodgeNumber");
       }},
  };
}

}  // namespace bvconn::dal::test

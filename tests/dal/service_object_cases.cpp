#include "dal/service_object_cases.h"

namespace bvconn::dal::test {

Cases authentication_service() {
  return {
      {R"(AuthenticationService.Login("name", "secret", "7.2", "CAN"))",
       [](const Services& s) {
         return s.AuthenticationService().Login("name", "secret", "7.2", "CAN");
       }},
      {R"(AuthenticationService.SetServerUrl("http://dal.example/"))",
       [](const Services& s) {
         return s.AuthenticationService().SetServerUrl("http://dal.example/");
       }},
      {"AuthenticationService.GetDisabledServices()",
       [](const Services& s) { return s.AuthenticationService().GetDisabledServices(); }},
  };
}

Cases summary_service() {
  return {
      {R"(SummaryService.getProjectSummary("P1"))",
       [](const Services& s) { return s.SummaryService().getProjectSummary("P1"); }},
      {R"(SummaryService.getOrderSummary("O1"))",
       [](const Services& s) { return s.SummaryService().getOrderSummary("O1"); }},
      {R"(SummaryService.GetUserSummaryByGIDs("P1;P2", "Q1;Q2", "O1;O2"))",
       [](const Services& s) {
         return s.SummaryService().GetUserSummaryByGIDs("P1;P2", "Q1;Q2", "O1;O2");
       }},
      {R"(SummaryService.getQuoteSummary("Q1"))",
       [](const Services& s) { return s.SummaryService().getQuoteSummary("Q1"); }},
  };
}

Cases heart_beat_service() {
  return {
      {"HeartBeatService.sendHeartBeat()",
       [](const Services& s) { return s.HeartBeatService().sendHeartBeat(); }},
  };
}

Cases project_service() {
  return {
      {R"(ProjectService.GetProjectHeaderComments("P1", "type"))",
       [](const Services& s) { return s.ProjectService().GetProjectHeaderComments("P1", "type"); }},
      {R"(ProjectService.getExistingProject("P2"))",
       [](const Services& s) { return s.ProjectService().getExistingProject("P2"); }},
      {R"(ProjectService.getRFQFromProjAuxInfo("P3", "manufacturer"))",
       [](const Services& s) {
         return s.ProjectService().getRFQFromProjAuxInfo("P3", "manufacturer");
       }},
      {R"(ProjectService.SaveProject("<save/>"))",
       [](const Services& s) { return s.ProjectService().SaveProject("<save/>"); }},
      {"ProjectService.getNewProject()",
       [](const Services& s) { return s.ProjectService().getNewProject(); }},
      {R"(ProjectService.getRevertedProject("P4"))",
       [](const Services& s) { return s.ProjectService().getRevertedProject("P4"); }},
      {R"(ProjectService.UpdateProjectHeaderComments("<update/>"))",
       [](const Services& s) {
         return s.ProjectService().UpdateProjectHeaderComments("<update/>");
       }},
      {R"(ProjectService.generateQuotes("<generate/>"))",
       [](const Services& s) { return s.ProjectService().generateQuotes("<generate/>"); }},
      {R"(ProjectService.ConvertToTemplate("P5"))",
       [](const Services& s) { return s.ProjectService().ConvertToTemplate("P5"); }},
      {R"(ProjectService.CheckSingleSaveStatus("P6"))",
       [](const Services& s) { return s.ProjectService().CheckSingleSaveStatus("P6"); }},
      {R"(ProjectService.CopyProject("P7"))",
       [](const Services& s) { return s.ProjectService().CopyProject("P7"); }},
      {R"(ProjectService.CreateProjectFromTemplate("P8"))",
       [](const Services& s) { return s.ProjectService().CreateProjectFromTemplate("P8"); }},
      {R"(ProjectService.RequestReview("<review/>"))",
       [](const Services& s) { return s.ProjectService().RequestReview("<review/>"); }},
      {R"(ProjectService.ReturnToAgent("<return/>"))",
       [](const Services& s) { return s.ProjectService().ReturnToAgent("<return/>"); }},
      {R"(ProjectService.SearchForProjects("ProjNbr", "ProjName", "ProjCity", "ProjState", )"
       R"("ProjCountry", "ProjStatus", "AgentID", "CatNbr", "CustomerGID", "CustomerName", )"
       R"("BidStart", "BidEnd", "QuoteNbr", "AppNbr", "SpecStatus", "SpecNbr", "NatlAcct", )"
       R"("DodgeNumber", "nsCustomerGID", "nsCustomerName", "SpecType") by name)",
       [](const Services& s) {
         return s.ProjectService().SearchForProjects(
             "ProjNbr", "ProjName", "ProjCity", "ProjState", "ProjCountry", "ProjStatus", "AgentID",
             "CatNbr", "CustomerGID", "CustomerName", "BidStart", "BidEnd", "QuoteNbr", "AppNbr",
             "SpecStatus", "SpecNbr", "NatlAcct", "DodgeNumber", "nsCustomerGID", "nsCustomerName",
             "SpecType");
       }},
  };
}

Cases quote_service() {
  return {
      {R"(QuoteService.GetQuoteHeaderComments("Q1", "type"))",
       [](const Services& s) { return s.QuoteService().GetQuoteHeaderComments("Q1", "type"); }},
      {R"(QuoteService.getRFQAuxiliaryInfo("Q2", "manufacturer"))",
       [](const Services& s) {
         return s.QuoteService().getRFQAuxiliaryInfo("Q2", "manufacturer");
       }},
      {R"(QuoteService.UpdateQuoteHeaderComments("<update/>"))",
       [](const Services& s) { return s.QuoteService().UpdateQuoteHeaderComments("<update/>"); }},
      {R"(QuoteService.getPreviousSalesInstrumentColumnPrices("Q3"))",
       [](const Services& s) {
         return s.QuoteService().getPreviousSalesInstrumentColumnPrices("Q3");
       }},
      {R"(QuoteService.updateRFQ("R1", "manufacturer's number"))",
       [](const Services& s) { return s.QuoteService().updateRFQ("R1", "manufacturer's number"); }},
      {R"(QuoteService.SetQuoteStatusToQuoted("Q4"))",
       [](const Services& s) { return s.QuoteService().SetQuoteStatusToQuoted("Q4"); }},
  };
}

Cases order_service() {
  return {
      {R"(OrderService.GetOrderHeaderComments("O1", "type"))",
       [](const Services& s) { return s.OrderService().GetOrderHeaderComments("O1", "type"); }},
      {R"(OrderService.UpdateOrderHeaderComments("<update/>"))",
       [](const Services& s) { return s.OrderService().UpdateOrderHeaderComments("<update/>"); }},
      {R"(OrderService.SetLineComments("<lines/>"))",
       [](const Services& s) { return s.OrderService().SetLineComments("<lines/>"); }},
      {R"(OrderService.getPreviousSalesInstrumentColumnPrices("O2"))",
       [](const Services& s) {
         return s.OrderService().getPreviousSalesInstrumentColumnPrices("O2");
       }},
      {R"(OrderService.SearchForOrderTorvexView("O3"))",
       [](const Services& s) { return s.OrderService().SearchForOrderTorvexView("O3"); }},
      {R"(OrderService.getSAPInfo("<info/>"))",
       [](const Services& s) { return s.OrderService().getSAPInfo("<info/>"); }},
      {R"(OrderService.getSAPOrderView("O4", true))",
       [](const Services& s) { return s.OrderService().getSAPOrderView("O4", true); }},
  };
}

Cases maintenance_service() {
  return {
      {"MaintenanceService.GetUserOrderPrintoutDefault()",
       [](const Services& s) { return s.MaintenanceService().GetUserOrderPrintoutDefault(); }},
      {"MaintenanceService.GetUserOrderSubmitPrintoutDefault()",
       [](const Services& s) {
         return s.MaintenanceService().GetUserOrderSubmitPrintoutDefault();
       }},
      {"MaintenanceService.GetUserProjectPrintoutDefault()",
       [](const Services& s) { return s.MaintenanceService().GetUserProjectPrintoutDefault(); }},
      {"MaintenanceService.GetUserQuotePrintoutDefault()",
       [](const Services& s) { return s.MaintenanceService().GetUserQuotePrintoutDefault(); }},
      {"MaintenanceService.GetUserRFQPrintoutDefault()",
       [](const Services& s) { return s.MaintenanceService().GetUserRFQPrintoutDefault(); }},
      {"MaintenanceService.GetUserSAPPrintoutDefault()",
       [](const Services& s) { return s.MaintenanceService().GetUserSAPPrintoutDefault(); }},
      {"MaintenanceService.GetUserLogoList()",
       [](const Services& s) { return s.MaintenanceService().GetUserLogoList(); }},
      {"MaintenanceService.GetUserLogo()",
       [](const Services& s) { return s.MaintenanceService().GetUserLogo(); }},
      {R"(MaintenanceService.SaveOrderPrintoutDefault("<order/>"))",
       [](const Services& s) {
         return s.MaintenanceService().SaveOrderPrintoutDefault("<order/>");
       }},
      {R"(MaintenanceService.SaveProjectPrintoutDefault("<project/>"))",
       [](const Services& s) {
         return s.MaintenanceService().SaveProjectPrintoutDefault("<project/>");
       }},
      {R"(MaintenanceService.SaveQuotePrintoutDefault("<quote/>"))",
       [](const Services& s) {
         return s.MaintenanceService().SaveQuotePrintoutDefault("<quote/>");
       }},
      {R"(MaintenanceService.SaveRFQPrintoutDefault("<rfq/>"))",
       [](const Services& s) { return s.MaintenanceService().SaveRFQPrintoutDefault("<rfq/>"); }},
      {R"(MaintenanceService.SaveSAPPrintoutDefault("<sap/>"))",
       [](const Services& s) { return s.MaintenanceService().SaveSAPPrintoutDefault("<sap/>"); }},
      {R"(MaintenanceService.SetUserLogo("logo"))",
       [](const Services& s) { return s.MaintenanceService().SetUserLogo("logo"); }},
      {R"(MaintenanceService.SetUserOrderPrintoutDefault("I1"))",
       [](const Services& s) { return s.MaintenanceService().SetUserOrderPrintoutDefault("I1"); }},
      {R"(MaintenanceService.SetUserOrderSubmitPrintoutDefault("I2"))",
       [](const Services& s) {
         return s.MaintenanceService().SetUserOrderSubmitPrintoutDefault("I2");
       }},
      {R"(MaintenanceService.SetUserProjectPrintoutDefault("I3"))",
       [](const Services& s) {
         return s.MaintenanceService().SetUserProjectPrintoutDefault("I3");
       }},
      {R"(MaintenanceService.SetUserQuotePrintoutDefault("I4"))",
       [](const Services& s) { return s.MaintenanceService().SetUserQuotePrintoutDefault("I4"); }},
      {R"(MaintenanceService.SetUserRFQPrintoutDefault("I5"))",
       [](const Services& s) { return s.MaintenanceService().SetUserRFQPrintoutDefault("I5"); }},
      {R"(MaintenanceService.SetUserSAPPrintoutDefault("I6"))",
       [](const Services& s) { return s.MaintenanceService().SetUserSAPPrintoutDefault("I6"); }},
      {R"(MaintenanceService.SetUserProfile("<profile/>"))",
       [](const Services& s) { return s.MaintenanceService().SetUserProfile("<profile/>"); }},
  };
}

Cases inventory_inquiry_service() {
  return {
      {R"(InventoryInquiryService.SearchForInventory("<info/>"))",
       [](const Services& s) { return s.InventoryInquiryService().SearchForInventory("<info/>"); }},
      {R"(InventoryInquiryService.SearchForTotalInventory("<envelope/>"))",
       [](const Services& s) {
         return s.InventoryInquiryService().SearchForTotalInventory("<envelope/>");
       }},
  };
}

Cases rma_service() {
  return {
      {R"(RMAService.GetExistingRMA("R1"))",
       [](const Services& s) { return s.RMAService().GetExistingRMA("R1"); }},
      {"RMAService.searchForRMAProcessingTerms()",
       [](const Services& s) { return s.RMAService().searchForRMAProcessingTerms(); }},
      {R"(RMAService.GetInvoiceInfo("4711"))",
       [](const Services& s) { return s.RMAService().GetInvoiceInfo("4711"); }},
      {R"(RMAService.SaveRMA("<save/>"))",
       [](const Services& s) { return s.RMAService().SaveRMA("<save/>"); }},
      {R"(RMAService.GetNewRMA("manufacturer"))",
       [](const Services& s) { return s.RMAService().GetNewRMA("manufacturer"); }},
      {R"(RMAService.SubmitRMA("<submit/>"))",
       [](const Services& s) { return s.RMAService().SubmitRMA("<submit/>"); }},
      {R"(RMAService.SearchForRMA("<search/>"))",
       [](const Services& s) { return s.RMAService().SearchForRMA("<search/>"); }},
  };
}

Cases printing_service() {
  return {
      {"PrintingService.GetPrintInfos()",
       [](const Services& s) { return s.PrintingService().GetPrintInfos(); }},
      {R"(PrintingService.GetQuotePrintout("U1"))",
       [](const Services& s) { return s.PrintingService().GetQuotePrintout("U1"); }},
      {"PrintingService.GetPrintTemplates()",
       [](const Services& s) { return s.PrintingService().GetPrintTemplates(); }},
      {"PrintingService.GetProjectPrintoutDefaults(true)",
       [](const Services& s) { return s.PrintingService().GetProjectPrintoutDefaults(true); }},
      {"PrintingService.GetOrderPrintoutDefaults(false)",
       [](const Services& s) { return s.PrintingService().GetOrderPrintoutDefaults(false); }},
      {"PrintingService.GetQuotePrintoutDefaults(true)",
       [](const Services& s) { return s.PrintingService().GetQuotePrintoutDefaults(true); }},
      {"PrintingService.GetRFQPrintoutDefaults(false)",
       [](const Services& s) { return s.PrintingService().GetRFQPrintoutDefaults(false); }},
      {"PrintingService.GetSAPPrintoutDefaults(true)",
       [](const Services& s) { return s.PrintingService().GetSAPPrintoutDefaults(true); }},
  };
}

Cases submittal_service() {
  return {
      {R"(SubmittalService.GetUpdatableSubmittalsForProject("P1"))",
       [](const Services& s) {
         return s.SubmittalService().GetUpdatableSubmittalsForProject("P1");
       }},
      {R"(SubmittalService.GetUpdatableSubmittalsForQuote("Q1"))",
       [](const Services& s) { return s.SubmittalService().GetUpdatableSubmittalsForQuote("Q1"); }},
      {R"(SubmittalService.GetAllSubmittalsForProject("P2"))",
       [](const Services& s) { return s.SubmittalService().GetAllSubmittalsForProject("P2"); }},
      {R"(SubmittalService.GetAllSubmittalsForQuote("Q2"))",
       [](const Services& s) { return s.SubmittalService().GetAllSubmittalsForQuote("Q2"); }},
  };
}

Cases sales_instrument_service() {
  return {
      {R"(SalesInstrumentService.GetLineComments("S1", "L1"))",
       [](const Services& s) { return s.SalesInstrumentService().GetLineComments("S1", "L1"); }},
      {R"(SalesInstrumentService.Deactivate("S2"))",
       [](const Services& s) { return s.SalesInstrumentService().Deactivate("S2"); }},
      {R"(SalesInstrumentService.GetProductCost("<cost/>"))",
       [](const Services& s) { return s.SalesInstrumentService().GetProductCost("<cost/>"); }},
  };
}

Cases all_cases() {
  Cases all;
  for (const auto& part :
       {authentication_service(), summary_service(), heart_beat_service(), search_service_lookups(),
        search_service_searches(), search_service_exports(), project_service(), quote_service(),
        order_service(), maintenance_service(), inventory_inquiry_service(), rma_service(),
        printing_service(), submittal_service(), sales_instrument_service()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace bvconn::dal::test

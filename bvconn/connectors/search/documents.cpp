#include "bvconn/connectors/search/bv_search_connector.h"

#include "bvconn/connectors/search/search_frames.h"

namespace bvconn {
namespace {

using namespace search;

constexpr Operation kSearchForCatalogNumbersFromInvoice{
    .log = silent("SearchForCatalogNumbersFromInvoice"),
    .method = &BVMethods::GetCatalogNumbersFromInvoice,
    .service = &BVServices::RMA,
    .tail = Tail::kNone,
};
constexpr Operation kSearchForSAPOrderView{
    .log = with_brackets("SearchForSAPOrderView"),
    .method = &BVMethods::SearchForSAPOrderView,
    .service = &BVServices::Search,
};
constexpr Operation kSearchForOrders{
    .log = silent("SearchForOrders"),
    .method = &BVMethods::SearchForOrders,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForOrdersForEmail{
    .log = silent("SearchForOrdersForEmail"),
    .method = &BVMethods::SearchForOrdersForExport,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForOrderHeaderHistory{
    .log = silent("SearchForOrderHeaderHistory"),
    .method = &BVMethods::SearchForOrderHeaderHistory,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForOrderLineHistory{
    .log = silent("SearchForOrderLineHistory"),
    .method = &BVMethods::SearchForOrderLineHistory,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForProjects{
    .log = silent("SearchForProjects"),
    .method = &BVMethods::SearchForProjects,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForProjectsForEmail{
    .log = silent("SearchForProjectsForEmail"),
    .method = &BVMethods::SearchForProjectsForExport,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForQuotes{
    .log = silent("SearchForQuotes"),
    .method = &BVMethods::SearchForQuotes,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForQuotesForEmail{
    .log = silent("SearchForQuotesForEmail"),
    .method = &BVMethods::SearchForQuotesForExport,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForOrderTorvexView{
    .log = silent("SearchForOrderTorvexView"),
    .method = &BVMethods::GetTorvexView,
    .service = &BVServices::Order,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForZeltViewUsingGID{
    .log = silent("searchForZeltViewUsingGID"),
    .method = &BVMethods::Find,
    .service = &BVServices::ZeltViewService,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForZeltViewUsingParameters{
    .log = silent("searchForZeltViewUsingParameters"),
    .method = &BVMethods::Find,
    .service = &BVServices::ZeltViewService,
    .tail = Tail::kBare,
};

}  // namespace

SoapNode BVSearchConnector::SearchForCatalogNumbersFromInvoice(std::string_view aSessionID,
                                                               std::string_view aServerURL,
                                                               std::string_view aInvoiceNumber) {
  return NamedSearchFrame(kSearchForCatalogNumbersFromInvoice, aSessionID, aServerURL,
                          [&](SoapNodes& parameters) {
                            parameters.Create("InvoiceNumber", aInvoiceNumber, "", "", "");
                          });
}

SoapNode BVSearchConnector::SearchForSAPOrderView(std::string_view aSessionID,
                                                  std::string_view aServerURL,
                                                  std::string_view aTORVEXOrderNumber,
                                                  std::string_view aSAPOrderNumber,
                                                  bool aIncludePrices) {
  return NamedSearchFrame(
      kSearchForSAPOrderView, aSessionID, aServerURL,
      [&](SoapNodes& parameters) {
        parameters.Create("TORVEXOrderNumber", aTORVEXOrderNumber, "", "", "");
        parameters.Create("SAPOrderNumber", aSAPOrderNumber, "", "", "");
        parameters.Create("IncludePrices", aIncludePrices, "", "", "");
      },
      [&](const dal::Services& dal) {
        return dal.SearchService().SearchForSAPOrderView(aTORVEXOrderNumber, aSAPOrderNumber,
                                                         aIncludePrices);
      });
}

// The six searches on the data access layer alone take a session and a server like all others, and
// use neither. Their rows in the catalogues are looked up by nobody.

SoapNode BVSearchConnector::SearchForOrders(std::string_view /*aSessionID*/,
                                            std::string_view /*aServerURL*/,
                                            const SearchForOrdersCriteria& criteria) {
  const auto& c = criteria;
  return DalOnlySearchFrame(kSearchForOrders, catalogues_, [&](const dal::Services& dal) {
    // An omitted one is no text; only this operation turns the variant into one.
    const std::string first_po = c.ContractorFirstPO.missing() ? "" : to_text(c.ContractorFirstPO);
    return dal.SearchService().SearchForOrders(
        c.OrderNbr, c.SAPOrderNumber, c.OrderStatus, c.ProjName, c.PONbr, c.QuoteNbr, c.AgentID,
        c.CatalogNbr, c.CustGID, c.CustName, c.CustCity, c.CustState, c.CustCountry,
        c.NationalAccount, c.CFAccount, c.MfgGID, c.CreateDateStart, c.CreateDateEnd,
        c.GetAllRevisions, c.OnlyHFR, c.OrderSource, c.DodgeNumber, first_po);
  });
}

SoapNode BVSearchConnector::SearchForOrdersForEmail(
    std::string_view /*aSessionID*/, std::string_view /*aServerURL*/,
    const SearchForOrdersForEmailCriteria& criteria) {
  const auto& c = criteria;
  return DalOnlyExportFrame(kSearchForOrdersForEmail, catalogues_, [&](const dal::Services& dal) {
    return dal.SearchService().OrdersSearchEmailExport(
        c.userGID, c.UserName, c.OrderNbr, c.SAPOrderNumber, c.OrderStatus, c.ProjName, c.PONbr,
        c.QuoteNbr, c.AgentID, c.CatalogNbr, c.CustGID, c.CustName, c.CustCity, c.CustState,
        c.CustCountry, c.NationalAccount, c.CFAccount, c.MfgGID, c.CreateDateStart, c.CreateDateEnd,
        c.GetAllRevisions, c.OnlyHFR, c.OrderSource, c.DodgeNumber, c.ContractorFirstPO);
  });
}

SoapNode BVSearchConnector::SearchForOrderHeaderHistory(std::string_view aSessionID,
                                                        std::string_view aServerURL,
                                                        std::string_view OrderNbr) {
  return PositionalSearchFrame(
      kSearchForOrderHeaderHistory, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { positional(parameters, OrderNbr); },
      [&](const dal::Services& dal) {
        return dal.SearchService().SearchForOrderHeaderHistory(OrderNbr);
      });
}

SoapNode BVSearchConnector::SearchForOrderLineHistory(std::string_view aSessionID,
                                                      std::string_view aServerURL,
                                                      std::string_view OrderNbr) {
  return PositionalSearchFrame(
      kSearchForOrderLineHistory, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { positional(parameters, OrderNbr); },
      [&](const dal::Services& dal) {
        return dal.SearchService().SearchForOrderLineHistory(OrderNbr);
      });
}

SoapNode BVSearchConnector::SearchForProjects(std::string_view /*aSessionID*/,
                                              std::string_view /*aServerURL*/,
                                              const SearchForProjectsCriteria& criteria) {
  const auto& c = criteria;
  return DalOnlySearchFrame(kSearchForProjects, catalogues_, [&](const dal::Services& dal) {
    return dal.ProjectService().SearchForProjects(
        c.ProjNbr, c.ProjName, c.ProjCity, c.ProjState, c.ProjCountry, c.ProjStatus, c.AgentID,
        c.CatNbr, c.CustomerGID, c.CustomerName, c.BidStart, c.BidEnd, c.QuoteNbr, c.AppNbr,
        c.SpecStatus, c.SpecNbr, c.NatlAcct, c.DodgeNumber, c.nsCustomerGID, c.nsCustomerName,
        c.SpecType);
  });
}

SoapNode BVSearchConnector::SearchForProjectsForEmail(
    std::string_view /*aSessionID*/, std::string_view /*aServerURL*/,
    const SearchForProjectsForEmailCriteria& criteria) {
  const auto& c = criteria;
  return DalOnlyExportFrame(kSearchForProjectsForEmail, catalogues_, [&](const dal::Services& dal) {
    return dal.SearchService().ProjectsSearchEmailExport(
        c.userGID, c.UserName, c.ProjNbr, c.ProjName, c.ProjCity, c.ProjState, c.ProjCountry,
        c.ProjStatus, c.AgentID, c.CatNbr, c.CustomerGID, c.CustomerName, c.BidStart, c.BidEnd,
        c.QuoteNbr, c.AppNbr, c.SpecStatus, c.SpecNbr, c.NatlAcct, c.DodgeNumber, c.nsCustomerGID,
        c.nsCustomerName, c.SpecType);
  });
}

SoapNode BVSearchConnector::SearchForQuotes(std::string_view /*aSessionID*/,
                                            std::string_view /*aServerURL*/,
                                            const SearchForQuotesCriteria& criteria) {
  const auto& c = criteria;
  return DalOnlySearchFrame(kSearchForQuotes, catalogues_, [&](const dal::Services& dal) {
    return dal.SearchService().SearchForQuotes(
        c.QuoteNbr, c.QuoteStatus, c.ProjName, c.ProjCity, c.ProjState, c.AgentID, c.CatNbr,
        c.DistGID, c.DistName, c.ContGID, c.ContName, c.SpecGID, c.SpecName, c.BidStart, c.BidEnd,
        c.NationalAccount, c.GetAllRevisions, c.ProjCountry, c.DodgeNumber);
  });
}

SoapNode BVSearchConnector::SearchForQuotesForEmail(
    std::string_view /*aSessionID*/, std::string_view /*aServerURL*/,
    const SearchForQuotesForEmailCriteria& criteria) {
  const auto& c = criteria;
  return DalOnlyExportFrame(kSearchForQuotesForEmail, catalogues_, [&](const dal::Services& dal) {
    return dal.SearchService().QuotesSearchEmailExport(
        c.userGID, c.UserName, c.QuoteNbr, c.QuoteStatus, c.ProjName, c.ProjCity, c.ProjState,
        c.AgentID, c.CatNbr, c.DistGID, c.DistName, c.ContGID, c.ContName, c.SpecGID, c.SpecName,
        c.BidStart, c.BidEnd, c.NationalAccount, c.GetAllRevisions, c.ProjCountry, c.DodgeNumber);
  });
}

SoapNode BVSearchConnector::SearchForOrderTorvexView(std::string_view aSessionID,
                                                     std::string_view aServerURL,
                                                     std::string_view orderGID) {
  return PositionalSearchFrame(
      kSearchForOrderTorvexView, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { positional(parameters, orderGID); },
      [&](const dal::Services& dal) {
        return dal.OrderService().SearchForOrderTorvexView(orderGID);
      });
}

SoapNode BVSearchConnector::searchForZeltViewUsingGID(std::string_view aSessionID,
                                                      std::string_view aServerURL,
                                                      std::string_view orderGID) {
  return PositionalSearchFrame(kSearchForZeltViewUsingGID, catalogues_, aSessionID, aServerURL,
                               [&](SoapNodes& parameters) { positional(parameters, orderGID); });
}

SoapNode BVSearchConnector::searchForZeltViewUsingParameters(std::string_view aSessionID,
                                                             std::string_view aServerURL,
                                                             std::string_view PONumber,
                                                             std::string_view CustAcctNbr,
                                                             std::string_view AgentID) {
  return PositionalSearchFrame(
      kSearchForZeltViewUsingParameters, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { positional(parameters, PONumber, AgentID, CustAcctNbr); });
}

}  // namespace bvconn

#include "bvconn/connectors/search/bv_search_connector.h"

#include "bvconn/connectors/search/search_blocks.h"

namespace bvconn {
namespace {

using namespace search;

// deliberate [no-tail]: the error goes to the caller as it is.
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
constexpr Operation kGetCarrierTrackingURL{
    .log = silent("GetCarrierTrackingURL"),
    .method = &BVMethods::GetCarrierTrackingURL,
    .service = &BVServices::ZeltViewService,
    .tail = Tail::kBare,
};

}  // namespace

SoapNode BVSearchConnector::SearchForCatalogNumbersFromInvoice(std::string_view aSessionID,
                                                               std::string_view aServerURL,
                                                               std::string_view aInvoiceNumber) {
  return ConnectorMethodFrame(kSearchForCatalogNumbersFromInvoice, {aServerURL, aSessionID},
                              [&](Call& call) {
                                call.request(kSoapEncoding).add("InvoiceNumber", aInvoiceNumber);
                                return call.send().first();
                              });
}

SoapNode BVSearchConnector::SearchForSAPOrderView(std::string_view aSessionID,
                                                  std::string_view aServerURL,
                                                  std::string_view aTORVEXOrderNumber,
                                                  std::string_view aSAPOrderNumber,
                                                  bool aIncludePrices) {
  return ConnectorMethodFrame(kSearchForSAPOrderView, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      return call.first_of(call.dal().SearchService().SearchForSAPOrderView(
          aTORVEXOrderNumber, aSAPOrderNumber, aIncludePrices));
    }
    call.request(kSoapEncoding)
        .add("TORVEXOrderNumber", aTORVEXOrderNumber)
        .add("SAPOrderNumber", aSAPOrderNumber)
        .add("IncludePrices", aIncludePrices);
    return call.send().first();
  });
}

// deliberate [dal-alone]: the six searches on the data access layer alone take a session and a
// server like all others, and use neither: no test of the switch, no fallback. Their rows in the
// catalogues are looked up by nobody.
// deliberate [email-results]: the e-mail forms read their answer, so that a fault in it is raised,
// and take nothing from it.
// deliberate [dal-alone-order]: the service objects' order of arguments is not the signature's.

SoapNode BVSearchConnector::SearchForOrders(std::string_view /*aSessionID*/,
                                            std::string_view /*aServerURL*/,
                                            const SearchForOrdersCriteria& criteria) {
  const auto& c = criteria;
  return ConnectorMethodFrame(kSearchForOrders, [&](Call& call) {
    // deliberate [first-order-text]: an omitted one is no text; only this operation turns the
    // variant into one.
    const std::string first_po = c.ContractorFirstPO.missing() ? "" : to_text(c.ContractorFirstPO);
    return call.first_of(call.dal().SearchService().SearchForOrders(
        c.OrderNbr, c.SAPOrderNumber, c.OrderStatus, c.ProjName, c.PONbr, c.QuoteNbr, c.AgentID,
        c.CatalogNbr, c.CustGID, c.CustName, c.CustCity, c.CustState, c.CustCountry,
        c.NationalAccount, c.CFAccount, c.MfgGID, c.CreateDateStart, c.CreateDateEnd,
        c.GetAllRevisions, c.OnlyHFR, c.OrderSource, c.DodgeNumber, first_po));
  });
}

SoapNode BVSearchConnector::SearchForOrdersForEmail(
    std::string_view /*aSessionID*/, std::string_view /*aServerURL*/,
    const SearchForOrdersForEmailCriteria& criteria) {
  const auto& c = criteria;
  return ConnectorMethodFrame(kSearchForOrdersForEmail, [&](Call& call) {
    call.parse(call.dal().SearchService().OrdersSearchEmailExport(
                   c.userGID, c.UserName, c.OrderNbr, c.SAPOrderNumber, c.OrderStatus, c.ProjName,
                   c.PONbr, c.QuoteNbr, c.AgentID, c.CatalogNbr, c.CustGID, c.CustName, c.CustCity,
                   c.CustState, c.CustCountry, c.NationalAccount, c.CFAccount, c.MfgGID,
                   c.CreateDateStart, c.CreateDateEnd, c.GetAllRevisions, c.OnlyHFR, c.OrderSource,
                   c.DodgeNumber, c.ContractorFirstPO))
        .or_raise();
    return SoapNode();
  });
}

SoapNode BVSearchConnector::SearchForOrderHeaderHistory(std::string_view aSessionID,
                                                        std::string_view aServerURL,
                                                        std::string_view OrderNbr) {
  return ConnectorMethodFrame(
      kSearchForOrderHeaderHistory, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal())
          return call.first_of(call.dal().SearchService().SearchForOrderHeaderHistory(OrderNbr));
        return call.request().params(OrderNbr).send().first();
      });
}

SoapNode BVSearchConnector::SearchForOrderLineHistory(std::string_view aSessionID,
                                                      std::string_view aServerURL,
                                                      std::string_view OrderNbr) {
  return ConnectorMethodFrame(
      kSearchForOrderLineHistory, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal())
          return call.first_of(call.dal().SearchService().SearchForOrderLineHistory(OrderNbr));
        return call.request().params(OrderNbr).send().first();
      });
}

SoapNode BVSearchConnector::SearchForProjects(std::string_view /*aSessionID*/,
                                              std::string_view /*aServerURL*/,
                                              const SearchForProjectsCriteria& criteria) {
  const auto& c = criteria;
  return ConnectorMethodFrame(kSearchForProjects, [&](Call& call) {
    // deliberate [projects-object]: the project object; the e-mail form goes to the search object.
    return call.first_of(call.dal().ProjectService().SearchForProjects(
        c.ProjNbr, c.ProjName, c.ProjCity, c.ProjState, c.ProjCountry, c.ProjStatus, c.AgentID,
        c.CatNbr, c.CustomerGID, c.CustomerName, c.BidStart, c.BidEnd, c.QuoteNbr, c.AppNbr,
        c.SpecStatus, c.SpecNbr, c.NatlAcct, c.DodgeNumber, c.nsCustomerGID, c.nsCustomerName,
        c.SpecType));
  });
}

SoapNode BVSearchConnector::SearchForProjectsForEmail(
    std::string_view /*aSessionID*/, std::string_view /*aServerURL*/,
    const SearchForProjectsForEmailCriteria& criteria) {
  const auto& c = criteria;
  return ConnectorMethodFrame(kSearchForProjectsForEmail, [&](Call& call) {
    call.parse(call.dal().SearchService().ProjectsSearchEmailExport(
                   c.userGID, c.UserName, c.ProjNbr, c.ProjName, c.ProjCity, c.ProjState,
                   c.ProjCountry, c.ProjStatus, c.AgentID, c.CatNbr, c.CustomerGID, c.CustomerName,
                   c.BidStart, c.BidEnd, c.QuoteNbr, c.AppNbr, c.SpecStatus, c.SpecNbr, c.NatlAcct,
                   c.DodgeNumber, c.nsCustomerGID, c.nsCustomerName, c.SpecType))
        .or_raise();
    return SoapNode();
  });
}

SoapNode BVSearchConnector::SearchForQuotes(std::string_view /*aSessionID*/,
                                            std::string_view /*aServerURL*/,
                                            const SearchForQuotesCriteria& criteria) {
  const auto& c = criteria;
  return ConnectorMethodFrame(kSearchForQuotes, [&](Call& call) {
    return call.first_of(call.dal().SearchService().SearchForQuotes(
        c.QuoteNbr, c.QuoteStatus, c.ProjName, c.ProjCity, c.ProjState, c.AgentID, c.CatNbr,
        c.DistGID, c.DistName, c.ContGID, c.ContName, c.SpecGID, c.SpecName, c.BidStart, c.BidEnd,
        c.NationalAccount, c.GetAllRevisions, c.ProjCountry, c.DodgeNumber));
  });
}

SoapNode BVSearchConnector::SearchForQuotesForEmail(
    std::string_view /*aSessionID*/, std::string_view /*aServerURL*/,
    const SearchForQuotesForEmailCriteria& criteria) {
  const auto& c = criteria;
  return ConnectorMethodFrame(kSearchForQuotesForEmail, [&](Call& call) {
    call.parse(call.dal().SearchService().QuotesSearchEmailExport(
                   c.userGID, c.UserName, c.QuoteNbr, c.QuoteStatus, c.ProjName, c.ProjCity,
                   c.ProjState, c.AgentID, c.CatNbr, c.DistGID, c.DistName, c.ContGID, c.ContName,
                   c.SpecGID, c.SpecName, c.BidStart, c.BidEnd, c.NationalAccount,
                   c.GetAllRevisions, c.ProjCountry, c.DodgeNumber))
        .or_raise();
    return SoapNode();
  });
}

SoapNode BVSearchConnector::SearchForOrderTorvexView(std::string_view aSessionID,
                                                     std::string_view aServerURL,
                                                     std::string_view orderGID) {
  return ConnectorMethodFrame(kSearchForOrderTorvexView, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().OrderService().SearchForOrderTorvexView(orderGID));
    return call.request().params(orderGID).send().first();
  });
}

SoapNode BVSearchConnector::searchForZeltViewUsingGID(std::string_view aSessionID,
                                                      std::string_view aServerURL,
                                                      std::string_view orderGID) {
  return ConnectorMethodFrame(
      kSearchForZeltViewUsingGID, {aServerURL, aSessionID},
      [&](Call& call) { return call.request().params(orderGID).send().first(); });
}

SoapNode BVSearchConnector::searchForZeltViewUsingParameters(std::string_view aSessionID,
                                                             std::string_view aServerURL,
                                                             std::string_view PONumber,
                                                             std::string_view CustAcctNbr,
                                                             std::string_view AgentID) {
  return ConnectorMethodFrame(
      kSearchForZeltViewUsingParameters, {aServerURL, aSessionID}, [&](Call& call) {
        // deliberate [zelt-order]: the agent second, unlike the signature.
        return call.request().params(PONumber, AgentID, CustAcctNbr).send().first();
      });
}

std::string BVSearchConnector::GetCarrierTrackingURL(std::string_view aSessionID,
                                                     std::string_view aServerURL,
                                                     std::string_view aCarrierCode,
                                                     std::string_view aTrackingNumber) {
  return ConnectorMethodFrame(kGetCarrierTrackingURL, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request().params(aCarrierCode, aTrackingNumber).send().text();
  });
}

}  // namespace bvconn

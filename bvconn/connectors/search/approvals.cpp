#include "bvconn/connectors/search/bv_search_connector.h"

#include "bvconn/connectors/search/search_blocks.h"

namespace bvconn {
namespace {

using namespace search;

constexpr Operation kSearchForApprovals{
    .log = silent("SearchForApprovals"),
    .method = &BVMethods::SearchForApprovals,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchApprovalQueue{
    .log = silent("SearchApprovalQueue"),
    .method = &BVMethods::SearchApprovalQueue,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForAuthorizations{
    .log = silent("SearchForAuthorizations"),
    .method = &BVMethods::SearchForAuthorizations,
    .service = &BVServices::Search,
    .tail = Tail::kFaultString,
};
// deliberate [log-names]: without the brackets of the class's other lines.
constexpr Operation kSearchForApprovalQueueShippingMethods{
    .log = {.cls = kClass, .method = "SearchForApprovalQueueShippingMethods"},
    .method = &BVMethods::GetShippingMethodsToDisplayInTheApprovalQueue,
    .service = &BVServices::Search,
};

// The arguments in their order; the arrays go joined.
std::string search_queue_by_dal(const dal::SearchService& search,
                                const SearchApprovalQueueCriteria& c) {
  const std::string brands = joined(c.BrandCode);
  const std::string promotions = joined(c.PromoCode);
  const std::string manufacturers = joined(c.ManufacturerCode);
  const std::string industries = joined(c.IndustryCode);
  return search.SearchApprovalQueue(
      c.AgentID, brands, promotions, manufacturers, c.shippingMethod, c.Project, c.Quote, c.Order,
      c.NAOnly, c.NAExclude, c.CFOnly, c.CFExclude, c.ProjectOnly, c.StockOnly, c.Pricing, c.Config,
      c.Review, c.Returned, c.SpecSubmit, c.SpecReg, c.SpecDenied, c.ChangeReq,
      c.InternationalShipping, c.HFR, industries, c.QuickShip);
}

}  // namespace

SoapNode BVSearchConnector::SearchForApprovals(std::string_view aSessionID,
                                               std::string_view aServerURL,
                                               const SearchForApprovalsCriteria& criteria) {
  return ConnectorMethodFrame(kSearchForApprovals, {aServerURL, aSessionID}, [&](Call& call) {
    // deliberate [approvals-order]: the server's order, not the signature's.
    // deliberate [soap-alone]: the queue has another route, this search has none.
    call.request().params(
        criteria.AgentID, criteria.BrandGID, criteria.Project, criteria.Quote, criteria.Order,
        criteria.NAOnly, criteria.NAExclude, criteria.CFOnly, criteria.CFExclude,
        criteria.OnlyProjectOrders, criteria.OnlyStockOrders, criteria.Pricing, criteria.Config,
        criteria.Review, criteria.ApprGranted, criteria.ApprDenied, criteria.Returned,
        criteria.QSSRCatChange, criteria.SpecSubmit, criteria.SpecReg, criteria.SpecDenied,
        criteria.Territory, criteria.ChangeReq, criteria.ChangeRev, criteria.InternationalShipping,
        criteria.CompetitiveReview, criteria.PromoGID);
    return call.send().first();
  });
}

SoapNode BVSearchConnector::SearchApprovalQueue(std::string_view aSessionID,
                                                std::string_view aServerURL,
                                                const SearchApprovalQueueCriteria& criteria) {
  return ConnectorMethodFrame(kSearchApprovalQueue, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(search_queue_by_dal(call.dal().SearchService(), criteria));
    // deliberate [queue-order]: the server's order, not the signature's.
    call.request().params(
        criteria.AgentID, criteria.BrandCode, criteria.PromoCode, criteria.ManufacturerCode,
        criteria.shippingMethod, criteria.Project, criteria.Quote, criteria.Order, criteria.NAOnly,
        criteria.NAExclude, criteria.CFOnly, criteria.CFExclude, criteria.ProjectOnly,
        criteria.StockOnly, criteria.Pricing, criteria.Config, criteria.Review, criteria.Returned,
        criteria.SpecSubmit, criteria.SpecReg, criteria.SpecDenied, criteria.ChangeReq,
        criteria.InternationalShipping, criteria.HFR, criteria.IndustryCode, criteria.QuickShip);
    return call.send().first();
  });
}

SoapNode BVSearchConnector::SearchForAuthorizations(std::string_view aSessionID,
                                                    std::string_view aServerURL) {
  return ConnectorMethodFrame(kSearchForAuthorizations, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().SearchService().SearchForAuthorizations());
    return call.request().send().first();
  });
}

SoapNode BVSearchConnector::SearchForApprovalQueueShippingMethods(std::string_view aSessionID,
                                                                  std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kSearchForApprovalQueueShippingMethods, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal())
          return call.first_of(call.dal().SearchService().SearchForApprovalQueueShippingMethods());
        return call.request().send().first();
      });
}

}  // namespace bvconn

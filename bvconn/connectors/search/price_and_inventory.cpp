#include "bvconn/connectors/search/bv_search_connector.h"

#include <cstdint>
#include <limits>

#include "bvconn/connectors/search/search_blocks.h"
#include "bvconn/core/heart_beat_time.h"
#include "bvconn/core/session_state.h"
#include "bvconn/core/timing.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn {
namespace {

using namespace search;

constexpr Operation kSearchForCatalogNbrs{
    .log = silent("SearchForCatalogNbrs"),
    .method = &BVMethods::SearchForCatalogNbrs,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForPriceHistory{
    .log = silent("SearchForPriceHistory"),
    .method = &BVMethods::SearchForPriceHistory,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
// deliberate [log-names]: without the brackets of the class's other lines, here and in the next.
constexpr Operation kSearchForPH{
    .log = {.cls = kClass, .method = "SearchForPH"},
    .method = &BVMethods::SearchForPH,
    .service = &BVServices::Search,
};
// deliberate [average-log-name]: its lines begin with a capital.
constexpr Operation kSearchForPHAverage{
    .log = {.cls = kClass, .method = "SearchForPHAverage"},
    .name = "searchForPHAverage",
    .method = &BVMethods::searchForPHAverage,
    .service = &BVServices::Search,
};
constexpr Operation kSearchForPromotions{
    .log = silent("SearchForPromotions"),
    .method = &BVMethods::SearchForPromotions,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForTotalInventory{
    .log = silent("SearchForTotalInventory"),
    .method = &BVMethods::GetTotalInventoryInfo,
    .service = &BVServices::InventorySearch,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForInventory{
    .log = silent("SearchForInventory"),
    .method = &BVMethods::GetInventoryInfo,
    .service = &BVServices::InventorySearch,
    .tail = Tail::kBare,
};

// deliberate [average-bound]: as `joined`, with the upper bound held in 16 bits.
std::string joined_with_16_bit_bound(const StringArray& codes) {
  if (codes.upper_bound() > std::numeric_limits<std::int16_t>::max()) {
    throw Error(error_numbers::kOverflow, "BVConn",
                "the array of catalogue numbers has more than 32768 elements");
  }
  return joined(codes);
}

// The exchange of the inventory operations, run without `sendXML`: traced to the log file by the
// mask alone, under the SOAPAction of the request before.
void exchange_inventory(Call& call, std::string_view text) {
  call.exchange_text(*inline_transport(TracingRule::kLogFileByMaskAlone), text).or_raise();
}

}  // namespace

SoapNode BVSearchConnector::SearchForCatalogNbrs(std::string_view aSessionID,
                                                 std::string_view aServerURL,
                                                 const SearchForCatalogNbrsCriteria& criteria) {
  return ConnectorMethodFrame(kSearchForCatalogNbrs, {aServerURL, aSessionID}, [&](Call& call) {
    // deliberate [catalogue-order]: the server's order, not the signature's.
    call.request().params(criteria.BrandGID, criteria.ProdType, criteria.CatNbr,
                          criteria.MaterialID, criteria.UPCNumber, criteria.Desc, criteria.AgentID,
                          criteria.Country, criteria.MfgGID, criteria.Classification);
    return call.send().first();
  });
}

SoapNode BVSearchConnector::SearchForPriceHistory(
    std::string_view aSessionID, std::string_view aServerURL, std::string_view SearchType,
    std::string_view CatalogNbr, std::string_view AgentID, std::string_view DistributorName,
    std::string_view DistributorGID, std::string_view EndDate) {
  return ConnectorMethodFrame(kSearchForPriceHistory, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      return call.first_of(call.dal().SearchService().SearchForPriceHistory(
          SearchType, CatalogNbr, AgentID, DistributorName, DistributorGID, EndDate));
    }
    call.request().params(SearchType, CatalogNbr, AgentID, DistributorName, DistributorGID,
                          EndDate);
    return call.send().first();
  });
}

SoapNode BVSearchConnector::SearchForPH(std::string_view aSessionID, std::string_view aServerURL,
                                        const StringArray& catalogArray,
                                        std::string_view Description, std::string_view AgentID,
                                        std::string_view CustomerGID) {
  return ConnectorMethodFrame(kSearchForPH, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      return call.first_of(call.dal().SearchService().SearchForPH(Description, AgentID, CustomerGID,
                                                                  joined(catalogArray)));
    }
    // deliberate [array-last]: first in the signature, last on the wire.
    call.request().params(Description, AgentID, CustomerGID, catalogArray);
    return call.send().first();
  });
}

SoapNode BVSearchConnector::searchForPHAverage(std::string_view aSessionID,
                                               std::string_view aServerURL,
                                               const StringArray& catalogArray,
                                               std::string_view aType, std::string_view Description,
                                               std::string_view AgentID,
                                               std::string_view CustomerGID) {
  return ConnectorMethodFrame(kSearchForPHAverage, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      return call.first_of(call.dal().SearchService().searchForPHAverage(
          Description, aType, AgentID, CustomerGID, joined_with_16_bit_bound(catalogArray)));
    }
    call.request().params(Description, aType, AgentID, CustomerGID, catalogArray);
    return call.send().first();
  });
}

SoapNode BVSearchConnector::SearchForPromotions(std::string_view aSessionID,
                                                std::string_view aServerURL) {
  return ConnectorMethodFrame(kSearchForPromotions, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().SearchService().SearchForPromotions());
    return call.request().send().first();
  });
}

SoapNode BVSearchConnector::SearchForTotalInventory(std::string_view strInfo,
                                                    std::string_view aSessionID,
                                                    std::string_view aServerURL) {
  return ConnectorMethodFrame(kSearchForTotalInventory, {aServerURL, aSessionID}, [&](Call& call) {
    // Both readings are those of the 32-bit timer, widened: the line shows their difference in
    // full.
    const double start = timer_seconds();
    const std::string text = call.literal_request(strInfo);
    if (call.takes_dal()) {
      // deliberate [inventory-argument]: the whole request, where SearchForInventory passes
      // `strInfo` alone.
      call.parse(call.dal().InventoryInquiryService().SearchForTotalInventory(text)).or_raise();
    } else {
      exchange_inventory(call, text);
    }
    // deliberate [inventory-contact]: a contact on either route, unlike all other operations.
    Global::LastHeartBeat(session().clock().now());
    SoapNode result = call.first();
    const double seconds = timer_seconds() - start;
    // deliberate [inventory-class-name]: the class's name ends in "y" in this one line.
    session().Logger().LogAtLevel(
        16, "BVSearchConnectory", "SearchForTotalInventory",
        "Time to search Total Inventory: " + conversions::double_text(seconds), 0);
    return result;
  });
}

SoapNode BVSearchConnector::SearchForInventory(std::string_view strInfo,
                                               std::string_view aSessionID,
                                               std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kSearchForInventory, {aServerURL, aSessionID}, [&](Call& call) -> SoapNode {
        if (call.takes_dal())
          return call.first_of(call.dal().InventoryInquiryService().SearchForInventory(strInfo));
        exchange_inventory(call, call.literal_request(strInfo));
        Global::LastHeartBeat(session().clock().now());
        return call.first();
      });
}

}  // namespace bvconn

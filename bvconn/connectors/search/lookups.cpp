#include "bvconn/connectors/search/bv_search_connector.h"

#include "bvconn/connectors/search/search_blocks.h"
#include "bvconn/platform/conversions/conversions.h"

namespace bvconn {
namespace {

using namespace search;

constexpr Operation kSearchForBrands{
    .log = silent("SearchForBrands"),
    .method = &BVMethods::SearchForBrands,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForVendors{
    .log = with_brackets("SearchForVendors"),
    .method = &BVMethods::SearchForVendors,
    .service = &BVServices::Search,
};
// deliberate [no-tail]: the error goes to the caller as it is.
constexpr Operation kSearchForAllCUDCodes{
    .log = silent("SearchForAllCUDCodes"),
    .method = &BVMethods::SearchForAllCUDCodes,
    .service = &BVServices::Search,
    .tail = Tail::kNone,
};
constexpr Operation kSearchForHeaderCommentInfo{
    .log = silent("SearchForHeaderCommentInfo"),
    .method = &BVMethods::SearchForHeaderCommentInfo,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForManufacturers{
    .log = silent("SearchForManufacturers"),
    .method = &BVMethods::SearchForManufacturers,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForDistributionCenters{
    .log = silent("SearchForDistributionCenters"),
    .method = &BVMethods::SearchForDistributionCenters,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForShippingMethods{
    .log = silent("SearchForShippingMethods"),
    .method = &BVMethods::SearchForShippingMethods,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForSpecialCreditTerms{
    .log = silent("SearchForSpecialCreditTerms"),
    .method = &BVMethods::SearchForSpecialCreditTerms,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForUserNamesAtSalesOrg{
    .log = silent("SearchForUserNamesAtSalesOrg"),
    .method = &BVMethods::SearchForUserNamesAtSalesOrg,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
// deliberate [enumeration-log-name]: all its lines stand under another operation's name.
constexpr Operation kSearchForEnumeration{
    .log = {.cls = kClass, .method = "SearchForAllCUDCodes"},
    .name = "SearchForEnumeration",
    .method = &BVMethods::SearchForEnumeration,
    .service = &BVServices::Search,
};
constexpr Operation kSearchForEnumerationGroup{
    .log = with_brackets("SearchForEnumerationGroup"),
    .method = &BVMethods::SearchForEnumerationGroup,
    .service = &BVServices::Search,
};
constexpr Operation kSearchForGLCodes{
    .log = silent("SearchForGLCodes"),
    .method = &BVMethods::SearchForGLCodes,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};

}  // namespace

SoapNode BVSearchConnector::SearchForBrands(std::string_view aSessionID,
                                            std::string_view aServerURL) {
  return ConnectorMethodFrame(kSearchForBrands, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().SearchService().SearchForBrands());
    return call.request().send().first();
  });
}

SoapNode BVSearchConnector::SearchForVendors(std::string_view aSessionID,
                                             std::string_view aServerURL,
                                             std::string_view aAccountGroup) {
  return ConnectorMethodFrame(kSearchForVendors, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().SearchService().SearchForVendors(aAccountGroup));
    return call.request(kSoapEncoding).add("accountGroup", aAccountGroup).send().first();
  });
}

SoapNode BVSearchConnector::SearchForAllCUDCodes(std::string_view aSessionID,
                                                 std::string_view aServerURL) {
  return ConnectorMethodFrame(kSearchForAllCUDCodes, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().SearchService().SearchForAllCUDCodes());
    return call.request(kSoapEncoding).send().first();
  });
}

SoapNode BVSearchConnector::SearchForHeaderCommentInfo(std::string_view aSessionID,
                                                       std::string_view aServerURL,
                                                       std::string_view aSalesInstrGID) {
  return ConnectorMethodFrame(
      kSearchForHeaderCommentInfo, {aServerURL, aSessionID},
      [&](Call& call) { return call.request().params(aSalesInstrGID).send().first(); });
}

// deliberate [manufacturers-variant]: the one result that is a variant.
Variant BVSearchConnector::SearchForManufacturers(std::string_view aSessionID,
                                                  std::string_view aServerURL) {
  return ConnectorMethodFrame(kSearchForManufacturers, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().SearchService().SearchForManufacturers());
    return call.request().send().first();
  });
}

SoapNode BVSearchConnector::SearchForDistributionCenters(std::string_view aSessionID,
                                                         std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kSearchForDistributionCenters, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal())
          return call.first_of(call.dal().SearchService().SearchForDistributionCenters());
        return call.request().send().first();
      });
}

SoapNode BVSearchConnector::SearchForShippingMethods(std::string_view aSessionID,
                                                     std::string_view aServerURL) {
  return ConnectorMethodFrame(kSearchForShippingMethods, {aServerURL, aSessionID},
                              [&](Call& call) { return call.request().send().first(); });
}

SoapNode BVSearchConnector::SearchForSpecialCreditTerms(std::string_view aSessionID,
                                                        std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kSearchForSpecialCreditTerms, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal())
          return call.first_of(call.dal().SearchService().SearchForSpecialCreditTerms());
        return call.request().send().first();
      });
}

SoapNode BVSearchConnector::SearchForUserNamesAtSalesOrg(std::string_view aSessionID,
                                                         std::string_view aServerURL) {
  return ConnectorMethodFrame(kSearchForUserNamesAtSalesOrg, {aServerURL, aSessionID},
                              [&](Call& call) { return call.request().send().first(); });
}

SoapNode BVSearchConnector::SearchForEnumeration(std::string_view aSessionID,
                                                 std::string_view aServerURL,
                                                 std::string_view aEnumGroup) {
  return ConnectorMethodFrame(kSearchForEnumeration, {aServerURL, aSessionID}, [&](Call& call) {
    // deliberate [group-node]: the group of enumerations is sent as "groupCode".
    // deliberate [soap-alone]: and has another route.
    return call.request(kSoapEncoding).add("group", aEnumGroup).send().first();
  });
}

SoapNode BVSearchConnector::SearchForEnumerationGroup(std::string_view aSessionID,
                                                      std::string_view aServerURL,
                                                      std::string_view aGroupCode) {
  return ConnectorMethodFrame(
      kSearchForEnumerationGroup, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal())
          return call.first_of(call.dal().SearchService().SearchForEnumerationGroup(aGroupCode));
        return call.request(kSoapEncoding).add("groupCode", aGroupCode).send().first();
      });
}

SoapNode BVSearchConnector::SearchForGLCodes(std::string_view aSessionID,
                                             std::string_view aServerURL, std::string_view Code,
                                             std::string_view Desc, std::string_view Misc) {
  using conversions::text_to_boolean;
  // deliberate [text-booleans]: a boolean that is passed as text; left out, it is none.
  return ConnectorMethodFrame(kSearchForGLCodes, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      return call.first_of(
          call.dal().SearchService().SearchForGLCodes(Code, Desc, text_to_boolean(Misc)));
    }
    return call.request().params(Code, Desc, text_to_boolean(Misc)).send().first();
  });
}

}  // namespace bvconn

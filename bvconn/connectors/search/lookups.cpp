#include "bvconn/connectors/search/bv_search_connector.h"

#include "bvconn/connectors/search/search_frames.h"

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

}  // namespace

SoapNode BVSearchConnector::SearchForBrands(std::string_view aSessionID,
                                            std::string_view aServerURL) {
  return PositionalSearchFrame(
      kSearchForBrands, catalogues_, aSessionID, aServerURL, no_parameters,
      [&](const dal::Services& dal) { return dal.SearchService().SearchForBrands(); });
}

SoapNode BVSearchConnector::SearchForVendors(std::string_view aSessionID,
                                             std::string_view aServerURL,
                                             std::string_view aAccountGroup) {
  return NamedSearchFrame(
      kSearchForVendors, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { parameters.Create("accountGroup", aAccountGroup, "", "", ""); },
      [&](const dal::Services& dal) {
        return dal.SearchService().SearchForVendors(aAccountGroup);
      });
}

SoapNode BVSearchConnector::SearchForAllCUDCodes(std::string_view aSessionID,
                                                 std::string_view aServerURL) {
  return NamedSearchFrame(
      kSearchForAllCUDCodes, aSessionID, aServerURL, no_parameters,
      [&](const dal::Services& dal) { return dal.SearchService().SearchForAllCUDCodes(); });
}

SoapNode BVSearchConnector::SearchForHeaderCommentInfo(std::string_view aSessionID,
                                                       std::string_view aServerURL,
                                                       std::string_view aSalesInstrGID) {
  return PositionalSearchFrame(
      kSearchForHeaderCommentInfo, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { positional(parameters, aSalesInstrGID); });
}

Variant BVSearchConnector::SearchForManufacturers(std::string_view aSessionID,
                                                  std::string_view aServerURL) {
  return PositionalSearchFrame(
      kSearchForManufacturers, catalogues_, aSessionID, aServerURL, no_parameters,
      [&](const dal::Services& dal) { return dal.SearchService().SearchForManufacturers(); });
}

SoapNode BVSearchConnector::SearchForDistributionCenters(std::string_view aSessionID,
                                                         std::string_view aServerURL) {
  return PositionalSearchFrame(
      kSearchForDistributionCenters, catalogues_, aSessionID, aServerURL, no_parameters,
      [&](const dal::Services& dal) { return dal.SearchService().SearchForDistributionCenters(); });
}

SoapNode BVSearchConnector::SearchForShippingMethods(std::string_view aSessionID,
                                                     std::string_view aServerURL) {
  return PositionalSearchFrame(kSearchForShippingMethods, catalogues_, aSessionID, aServerURL,
                               no_parameters);
}

SoapNode BVSearchConnector::SearchForSpecialCreditTerms(std::string_view aSessionID,
                                                        std::string_view aServerURL) {
  return PositionalSearchFrame(
      kSearchForSpecialCreditTerms, catalogues_, aSessionID, aServerURL, no_parameters,
      [&](const dal::Services& dal) { return dal.SearchService().SearchForSpecialCreditTerms(); });
}

SoapNode BVSearchConnector::SearchForUserNamesAtSalesOrg(std::string_view aSessionID,
                                                         std::string_view aServerURL) {
  return PositionalSearchFrame(kSearchForUserNamesAtSalesOrg, catalogues_, aSessionID, aServerURL,
                               no_parameters);
}

}  // namespace bvconn

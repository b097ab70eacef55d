#include "bvconn/connectors/search/bv_search_connector.h"

#include "bvconn/connectors/search/search_blocks.h"

namespace bvconn {
namespace {

using namespace search;

constexpr Operation kSearchForRMAReturnCodes{
    .log = with_brackets("SearchForRMAReturnCodes"),
    .method = &BVMethods::GetAllRMAReturnReasons,
    .service = &BVServices::RMA,
};
constexpr Operation kSearchForRMAStatuses{
    .log = with_brackets("SearchForRMAStatuses"),
    .method = &BVMethods::SearchForRMAStatuses,
    .service = &BVServices::Search,
};
constexpr Operation kSearchForReturnReasons{
    .log = with_brackets("SearchForReturnReasons"),
    .method = &BVMethods::SearchForReturnReasons,
    .service = &BVServices::Search,
};
constexpr Operation kSearchForRMAProcessingTerms{
    .log = with_brackets("searchForRMAProcessingTerms"),
    .method = &BVMethods::GetAllRMAProcessingTerms,
    .service = &BVServices::RMA,
};
constexpr Operation kSearchForRMA{
    .log = with_brackets("SearchForRMA"),
    .method = &BVMethods::SearchForRMA,
    .service = &BVServices::RMA,
};

// deliberate [one-document-type]: whose reasons are asked for; the caller can't change it.
constexpr std::string_view kOrderReturns = "ZRE";

}  // namespace

SoapNode BVSearchConnector::SearchForRMAReturnCodes(std::string_view aSessionID,
                                                    std::string_view aServerURL) {
  return ConnectorMethodFrame(kSearchForRMAReturnCodes, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request(kSoapEncoding).send().first();
  });
}

SoapNode BVSearchConnector::SearchForRMAStatuses(std::string_view aSessionID,
                                                 std::string_view aServerURL) {
  return ConnectorMethodFrame(kSearchForRMAStatuses, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().SearchService().SearchForRMAStatuses());
    return call.request(kSoapEncoding).send().first();
  });
}

SoapNode BVSearchConnector::SearchForReturnReasons(std::string_view aSessionID,
                                                   std::string_view aServerURL) {
  return ConnectorMethodFrame(kSearchForReturnReasons, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().SearchService().SearchForReturnReasons(kOrderReturns));
    call.request(kSoapEncoding).add("DocumentTypeCode", kOrderReturns);
    return call.send().first();
  });
}

SoapNode BVSearchConnector::searchForRMAProcessingTerms(std::string_view aSessionID,
                                                        std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kSearchForRMAProcessingTerms, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal())
          return call.first_of(call.dal().RMAService().searchForRMAProcessingTerms());
        return call.request(kSoapEncoding).send().first();
      });
}

SoapNode BVSearchConnector::SearchForRMA(std::string_view aSessionID, std::string_view aServerURL,
                                         std::string_view aCustomerRefNumber,
                                         std::string_view aTORVEXRMANumber,
                                         std::string_view aDistributorGID,
                                         std::string_view aSubmitSaveDate) {
  return ConnectorMethodFrame(kSearchForRMA, {aServerURL, aSessionID}, [&](Call& call) {
    // deliberate [torvex-letters]: the name in these letters, unlike the argument's.
    // deliberate [rma-search-text]: the one search whose service object gets the whole request.
    call.request(kSoapEncoding)
        .add("CustomerRefNumber", aCustomerRefNumber)
        .add("TorvexRMANumber", aTORVEXRMANumber)
        .add("DistributorGID", aDistributorGID)
        .add("DateSubmitted", aSubmitSaveDate);
    if (call.takes_dal())
      return call.first_of(call.dal().RMAService().SearchForRMA(call.request_text()));
    return call.send().first();
  });
}

}  // namespace bvconn

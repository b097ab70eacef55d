#include "bvconn/connectors/session/bv_summary_connector.h"

#include <string>
#include <vector>

#include "bvconn/core/joined_codes.h"
#include "bvconn/operation/method_frame.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn {
namespace {

constexpr std::string_view kClass = "BVSummaryConnector";

constexpr Operation kGetUserSummary{
    .log = {.cls = kClass, .method = "GetUserSummary"},
    .method = &BVMethods::GetUserSummary,
    .service = &BVServices::Summary,
};
// deliberate [summary-row]: another operation for the caller, the same method for the server.
constexpr Operation kGetUserSummaryByGIDs{
    .log = {.cls = kClass, .method = "GetUserSummaryByGIDs"},
    .method = &BVMethods::GetUserSummary,
    .service = &BVServices::Summary,
};
constexpr Operation kGetProjectSummary{
    .log = {.cls = kClass, .method = "getProjectSummary"},
    .method = &BVMethods::getProjectSummary,
    .service = &BVServices::Summary,
};
constexpr Operation kGetQuoteSummary{
    .log = {.cls = kClass, .method = "getQuoteSummary"},
    .method = &BVMethods::getQuoteSummary,
    .service = &BVServices::Summary,
};
constexpr Operation kGetProposalsForQuote{
    .log = {.cls = kClass, .method = "getProposalsForQuote"},
    .method = &BVMethods::getProposalsForQuote,
    .service = &BVServices::Summary,
};
constexpr Operation kGetOrdersForQuote{
    .log = {.cls = kClass, .method = "getOrdersForQuote"},
    .method = &BVMethods::getOrdersForQuote,
    .service = &BVServices::Summary,
};
constexpr Operation kGetQuotesForProject{
    .log = {.cls = kClass, .method = "getQuotesForProject"},
    .method = &BVMethods::getQuotesForProject,
    .service = &BVServices::Summary,
};
constexpr Operation kGetOrderSummary{
    .log = {.cls = kClass, .method = "getOrderSummary"},
    .method = &BVMethods::getOrderSummary,
    .service = &BVServices::Summary,
};

// The keys as the data access layer takes them.
// deliberate [nogid]: "nogid" in the first place stands for no keys at all, whatever follows it; by
// SOAP it goes to the server.
std::string joined_keys(const Variant& gids) {
  const std::vector<Variant>& items = gids.array().items();
  if (items.empty()) {
    throw Error(error_numbers::kSubscriptOutOfRange, "BVConn", "the array of keys has no elements");
  }
  std::vector<std::string> keys{to_text(items.front())};
  if (keys.front() == "nogid") return "";
  for (std::size_t i = 1; i < items.size(); ++i) keys.push_back(to_text(items[i]));
  return joined_codes(keys);
}

}  // namespace

SoapNode BVSummaryConnector::GetUserSummary(std::int16_t numProjects, std::int16_t numQuotes,
                                            std::int16_t numOrders, std::string_view aServerURL,
                                            std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetUserSummary, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request().params(numProjects, numQuotes, numOrders).send().first();
  });
}

SoapNode BVSummaryConnector::GetUserSummaryByGIDs(const Variant& projectGIDs,
                                                  const Variant& quoteGIDs,
                                                  const Variant& orderGIDs,
                                                  std::string_view aServerURL,
                                                  std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetUserSummaryByGIDs, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      const std::string projects = joined_keys(projectGIDs);
      const std::string quotes = joined_keys(quoteGIDs);
      const std::string orders = joined_keys(orderGIDs);
      return call.first_of(
          call.dal().SummaryService().GetUserSummaryByGIDs(projects, quotes, orders));
    }
    return call.request().params(projectGIDs, quoteGIDs, orderGIDs).send().first();
  });
}

SoapNode BVSummaryConnector::getProjectSummary(std::string_view ProjectGID,
                                               std::string_view aServerURL,
                                               std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetProjectSummary, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().SummaryService().getProjectSummary(ProjectGID));
    return call.getEnvelope().params(ProjectGID).send().first();
  });
}

SoapNode BVSummaryConnector::getQuoteSummary(std::string_view QuoteGID, std::string_view aServerURL,
                                             std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetQuoteSummary, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().SummaryService().getQuoteSummary(QuoteGID));
    return call.getEnvelope().params(QuoteGID).send().first();
  });
}

SoapNode BVSummaryConnector::getProposalsForQuote(std::string_view QuoteGID,
                                                  std::string_view aServerURL,
                                                  std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetProposalsForQuote, {aServerURL, aSessionID}, [&](Call& call) {
    return call.getEnvelope().params(QuoteGID).send().first();
  });
}

SoapNode BVSummaryConnector::getOrdersForQuote(std::string_view QuoteGID,
                                               std::string_view aServerURL,
                                               std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetOrdersForQuote, {aServerURL, aSessionID}, [&](Call& call) {
    return call.getEnvelope().params(QuoteGID).send().first();
  });
}

SoapNode BVSummaryConnector::getQuotesForProject(std::string_view ProjectGID,
                                                 std::string_view aServerURL,
                                                 std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetQuotesForProject, {aServerURL, aSessionID}, [&](Call& call) {
    return call.getEnvelope().params(ProjectGID).send().first();
  });
}

SoapNode BVSummaryConnector::getOrderSummary(std::string_view orderGID, std::string_view aServerURL,
                                             std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetOrderSummary, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().SummaryService().getOrderSummary(orderGID));
    return call.getEnvelope().params(orderGID).send().first();
  });
}

}  // namespace bvconn

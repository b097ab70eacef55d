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
// Another operation for the caller, the same method for the server.
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

SoapNode send_key(Call& call, std::string_view key, std::string_view aServerURL,
                  std::string_view aSessionID) {
  call.getEnvelope(aSessionID).Create("param", key, "", "", "");
  return call.send(aServerURL).first();
}

// The keys as the data access layer takes them; "nogid" in the first place stands for no keys at
// all, whatever follows it.
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
  return ConnectorMethodFrame(kGetUserSummary, [&](Call& call) {
    auto& parameters = call.envelope(aSessionID);
    parameters.Create("param", numProjects, "", "", "");
    parameters.Create("param", numQuotes, "", "", "");
    parameters.Create("param", numOrders, "", "", "");
    return call.send(aServerURL).first();
  });
}

SoapNode BVSummaryConnector::GetUserSummaryByGIDs(const Variant& projectGIDs,
                                                  const Variant& quoteGIDs,
                                                  const Variant& orderGIDs,
                                                  std::string_view aServerURL,
                                                  std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetUserSummaryByGIDs, [&](Call& call) {
    if (call.takes_dal()) {
      const std::string projects = joined_keys(projectGIDs);
      const std::string quotes = joined_keys(quoteGIDs);
      const std::string orders = joined_keys(orderGIDs);
      return call.parse(call.dal().SummaryService().GetUserSummaryByGIDs(projects, quotes, orders))
          .first();
    }
    auto& parameters = call.envelope(aSessionID);
    parameters.Create("param", projectGIDs, "", "", "");
    parameters.Create("param", quoteGIDs, "", "", "");
    parameters.Create("param", orderGIDs, "", "", "");
    return call.send(aServerURL).first();
  });
}

SoapNode BVSummaryConnector::getProjectSummary(std::string_view ProjectGID,
                                               std::string_view aServerURL,
                                               std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetProjectSummary, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().SummaryService().getProjectSummary(ProjectGID)).first();
    }
    return send_key(call, ProjectGID, aServerURL, aSessionID);
  });
}

SoapNode BVSummaryConnector::getQuoteSummary(std::string_view QuoteGID, std::string_view aServerURL,
                                             std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetQuoteSummary, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().SummaryService().getQuoteSummary(QuoteGID)).first();
    }
    return send_key(call, QuoteGID, aServerURL, aSessionID);
  });
}

SoapNode BVSummaryConnector::getProposalsForQuote(std::string_view QuoteGID,
                                                  std::string_view aServerURL,
                                                  std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetProposalsForQuote, [&](Call& call) {
    return send_key(call, QuoteGID, aServerURL, aSessionID);
  });
}

SoapNode BVSummaryConnector::getOrdersForQuote(std::string_view QuoteGID,
                                               std::string_view aServerURL,
                                               std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetOrdersForQuote, [&](Call& call) {
    return send_key(call, QuoteGID, aServerURL, aSessionID);
  });
}

SoapNode BVSummaryConnector::getQuotesForProject(std::string_view ProjectGID,
                                                 std::string_view aServerURL,
                                                 std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetQuotesForProject, [&](Call& call) {
    return send_key(call, ProjectGID, aServerURL, aSessionID);
  });
}

SoapNode BVSummaryConnector::getOrderSummary(std::string_view orderGID, std::string_view aServerURL,
                                             std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetOrderSummary, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().SummaryService().getOrderSummary(orderGID)).first();
    }
    return send_key(call, orderGID, aServerURL, aSessionID);
  });
}

}  // namespace bvconn

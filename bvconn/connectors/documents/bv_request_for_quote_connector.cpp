#include "bvconn/connectors/documents/bv_request_for_quote_connector.h"

#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr Operation kUpdateRfq{
    .log = {.cls = "BVRequestForQuoteConnector", .method = "updateRFQ", .form = LogForm::kNone},
    .method = &BVMethods::updateRFQ,
    .service = &BVServices::Quote,
    .tail = Tail::kRfq,
};
constexpr Operation kGetRfqs{
    .log = {.cls = "BVRequestForQuoteConnector", .method = "getRFQs", .form = LogForm::kNone},
    .method = &BVMethods::GetRFQSummary,
    .service = &BVServices::Summary,
    .tail = Tail::kRfq,
};

}  // namespace

std::string BVRequestForQuoteConnector::updateRFQ(std::string_view RFQGID,
                                                  std::string_view mfrQuoteNumber,
                                                  std::string_view aServerURL,
                                                  std::string_view aSessionID) {
  return ConnectorMethodFrame(kUpdateRfq, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().QuoteService().updateRFQ(RFQGID, mfrQuoteNumber)).text();
    }
    auto& parameters = call.getEnvelope(aSessionID);
    parameters.Create("RFQGid", RFQGID, "", "String", "");
    parameters.Create("mfrQuoteNumber", mfrQuoteNumber, "", "String", "");
    return call.send(aServerURL).text();
  });
}

SoapNode BVRequestForQuoteConnector::getRFQs(std::string_view QuoteGID, std::string_view aServerURL,
                                             std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetRfqs, [&](Call& call) {
    call.getEnvelope(aSessionID).Create("QuoteGID", QuoteGID, "", "String", "");
    return call.send(aServerURL).first();
  });
}

}  // namespace bvconn

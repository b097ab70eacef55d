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
  return ConnectorMethodFrame(kUpdateRfq, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.text_of(call.dal().QuoteService().updateRFQ(RFQGID, mfrQuoteNumber));
    // deliberate [rfq-gid]: the name in these letters, unlike the argument's.
    // deliberate [rfq-type]: a type of no namespace, which no other operation gives.
    call.getEnvelope()
        .add("RFQGid", RFQGID, "String")
        .add("mfrQuoteNumber", mfrQuoteNumber, "String");
    return call.send().text();
  });
}

SoapNode BVRequestForQuoteConnector::getRFQs(std::string_view QuoteGID, std::string_view aServerURL,
                                             std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetRfqs, {aServerURL, aSessionID}, [&](Call& call) {
    return call.getEnvelope().add("QuoteGID", QuoteGID, "String").send().first();
  });
}

}  // namespace bvconn

#include "bvconn/connectors/documents/bv_acknowledgement_connector.h"

#include "bvconn/core/envelope.h"
#include "bvconn/operation/method_frame.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn {
namespace {

constexpr std::string_view kClass = "BVAcknowledgementConnector";

constexpr Operation kGetOverview{
    .log = {.cls = kClass, .method = "getOverview", .form = LogForm::kNone},
    .method = &BVMethods::GetAcknowledgmentOverview,
    .service = &BVServices::Order,
    .tail = Tail::kOverview,
};
constexpr Operation kGetExistingAcknowledgement{
    .log = {.cls = kClass, .method = "GetExistingAcknowledgement", .form = LogForm::kNone},
    .method = &BVMethods::GetAcknowledgement,
    .service = &BVServices::Order,
    .tail = Tail::kBare,
};
// deliberate [ack-spelling]: with and without the second "e", as interface, row and wire name each
// have it.
constexpr Operation kGetNewAcknowledgment{
    .log = {.cls = kClass, .method = "getNewAcknowledgment", .form = LogForm::kNone},
    .method = &BVMethods::NewAcknowledgment,
    .service = &BVServices::Order,
    .tail = Tail::kBare,
};

// The answer's text.
// deliberate [ack-address]: it must hold "http:" in these letters, which no "https:" does.
// deliberate [ack-sources]: the sources spell class and operation in a way of their own.
std::string address_in(Call& call, std::string_view source) {
  std::string text = call.text();
  if (text.find("http:") == std::string::npos) {
    throw Error(error_numbers::kUnexpectedAnswer, source,
                "Did not receive the expected response from the server");
  }
  return text;
}

}  // namespace

SoapNode BVAcknowledgementConnector::getOverview(std::string_view orderGID,
                                                 std::string_view aServerURL,
                                                 std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetOverview, {aServerURL, aSessionID}, [&](Call& call) {
    // deliberate [overview-arguments]: the error line shows all arguments, the session too.
    std::string line_name = "getOverview(";
    line_name.append(orderGID).append(", ").append(aServerURL).append(", ").append(aSessionID);
    call.error_name(line_name + ")");
    return call.request().params(orderGID).send().first();
  });
}

std::string BVAcknowledgementConnector::GetExistingAcknowledgement(std::string_view ackGID,
                                                                   std::string_view aServerURL,
                                                                   std::string_view aSessionID) {
  return ConnectorMethodFrame(
      kGetExistingAcknowledgement, {aServerURL, aSessionID}, [&](Call& call) {
        call.request().params(ackGID).send().or_raise();
        return address_in(call, "BVAcknowledgmentConnector.getExistingAcknowledgment");
      });
}

std::string BVAcknowledgementConnector::getNewAcknowledgment(std::string_view serializedAckObject,
                                                             std::string_view aServerURL,
                                                             std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetNewAcknowledgment, {aServerURL, aSessionID}, [&](Call& call) {
    const std::string text = call.literal_request(serializedAckObject);
    // deliberate [ack-no-contact]: unlike other exchanges it does not count as a contact.
    call.exchange_text(*inline_transport(TracingRule::kLogFile), text).or_raise();
    return address_in(call, "BVAcknowledgmentConnector.getNewAcknowledgment");
  });
}

}  // namespace bvconn

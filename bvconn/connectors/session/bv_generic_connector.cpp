#include "bvconn/connectors/session/bv_generic_connector.h"

#include <string>

#include "bvconn/core/envelope.h"
#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr Operation kSend{
    .log = {.cls = "BVGenericConnector", .method = "Send", .form = LogForm::kTextLines},
};
// deliberate [nothing-word]: the default of `aSessionID`, which makes no `userID` header at all.
constexpr std::string_view kNoSession = "NOTHING";

}  // namespace

SoapNode BVGenericConnector::Send(std::string_view aService, std::string_view aMethod,
                                  std::string_view aRootNodeName, const SoapNode& aSoapNode,
                                  std::string_view aServerURL, std::int32_t aTimeout,
                                  std::string_view aSessionID) {
  // deliberate [kept-envelope]: made before the first line, and a failure leaves it to be looked
  // at.
  with_plain_tail(kSend.log, [&] { envelope_ = bvconn::SoapEnvelope::make(); });
  return ConnectorMethodFrame(kSend, {aServerURL, aSessionID, &envelope_}, [&](Call& call) {
    call.service(std::string(aService));
    call.envelope().SetMethod(aMethod, aService);
    if (aSessionID != kNoSession) Global::create_user_id(call.envelope(), aSessionID);
    SoapNode result = call.add(aRootNodeName, aSoapNode).send(aTimeout).first();
    envelope_ = {};
    return result;
  });
}

}  // namespace bvconn

#pragma once

#include <cstdint>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Calls any server method, above all those that have no operation of their own; always by SOAP.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; on a server fault the
/// number is 0x80044201 and the description the server's `faultstring`. A reply without a parameter
/// fails with 0x80044204.
class BVCONN_EXPORT BVGenericConnector {
 public:
  /// Sends one request and gives the first parameter of the reply.
  /// @param aService       URN: the method's namespace and the SOAPAction.
  /// @param aMethod        Wire name of the method.
  /// @param aRootNodeName  Name of the request's one parameter.
  /// @param aSoapNode      What that parameter holds: the element has `aRootNodeName` and the
  ///                       content of this node. An empty reference is sent as nil.
  /// @param aServerURL     Whole endpoint URL.
  /// @param aTimeout       Milliseconds; 0 is the default time-out, negative none.
  /// @param aSessionID     Text of the header `userID`, also when it is ""; left out, there is no
  ///                       such header.
  /// Names that XML does not allow, "" too, fail with 0x80044205.
  /// Route: SOAP under a name of the caller's.
  SoapNode Send(std::string_view aService, std::string_view aMethod, std::string_view aRootNodeName,
                const SoapNode& aSoapNode, std::string_view aServerURL, std::int32_t aTimeout = 0,
                std::string_view aSessionID = "NOTHING");

  /// After a failed `Send`, the envelope with what the server answered (for a fault its elements,
  /// `faultcode` and `faultstring` among them). An empty reference before the first `Send` and
  /// after a success.
  bvconn::SoapEnvelope SoapEnvelope() const { return envelope_; }

 private:
  bvconn::SoapEnvelope envelope_;
};

}  // namespace bvconn

#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Acknowledgements of an order. Always by SOAP. Service "urn:OrderService". Keys go out as they
/// stand, "" too. Nothing here writes enter or exit lines.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201. A reply without a parameter fails with 0x80044204.
class BVCONN_EXPORT BVAcknowledgementConnector {
 public:
  /// All acknowledgements of an order, the reply's first parameter. A failure reaches the caller
  /// without a description, so without the server's text, and its log line shows the three
  /// arguments: deliberate [overview-words]. Route: SOAP `getAllAcknowledgementOverview`.
  SoapNode getOverview(std::string_view orderGID, std::string_view aServerURL,
                       std::string_view aSessionID);
  /// The address of an acknowledgement: a text that holds "http:" somewhere, in small letters. One
  /// without it, "" and "https:" too, fails with 0x80042AF9, an array or a node with error 13.
  /// Failures are not logged, and keep all their five values. A fault has the server's text.
  /// Route: SOAP `getAcknowledgement`.
  std::string GetExistingAcknowledgement(std::string_view ackGID, std::string_view aServerURL,
                                         std::string_view aSessionID);
  /// The address of an acknowledgement that the server makes: as `GetExistingAcknowledgement`, also
  /// in its failures (0x80042AF9, error 13), but that a fault comes without the server's text. Does
  /// not count as a contact with the server.
  /// @param serializedAckObject  XML, pasted into the request as it stands.
  /// Route: SOAP `newAcknowledgement` under the SOAPAction of the request before, none where there
  /// was none.
  std::string getNewAcknowledgment(std::string_view serializedAckObject,
                                   std::string_view aServerURL, std::string_view aSessionID);
};

}  // namespace bvconn

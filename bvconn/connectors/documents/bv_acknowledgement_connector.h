#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Acknowledgements of an order. Always by SOAP, service "urn:OrderService"; no enter or exit
/// lines.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`. An answer that holds no
/// "http:" is error 0x80042AF9.
class BVCONN_EXPORT BVAcknowledgementConnector {
 public:
  /// All acknowledgements of an order. A failure reaches the caller without a description, and its
  /// log line shows the three arguments.
  SoapNode getOverview(std::string_view orderGID, std::string_view aServerURL,
                       std::string_view aSessionID);
  /// The address of an acknowledgement: a text that holds "http:".
  std::string GetExistingAcknowledgement(std::string_view ackGID, std::string_view aServerURL,
                                         std::string_view aSessionID);
  /// Makes an acknowledgement and gives its address: a text that holds "http:".
  /// @param serializedAckObject  XML, pasted into the request as it stands.
  /// Goes out with the SOAPAction that the last request of the thread left, and does not count as a
  /// contact with the server.
  std::string getNewAcknowledgment(std::string_view serializedAckObject,
                                   std::string_view aServerURL, std::string_view aSessionID);
};

}  // namespace bvconn

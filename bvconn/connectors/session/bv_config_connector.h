#pragma once

#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Configured products, from a service that is not of the usual kind: its namespace is the URI of
/// `BVServices.ConfigService`, it knows no sessions, and its traffic is not to be traced.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201 with the server's text.
class BVCONN_EXPORT BVConfigConnector {
 public:
  /// The configuration of the products of a sales instrument, the reply's first parameter; a reply
  /// without one fails with 0x80044204. The key goes out as it stands, "" too, as the first of an
  /// array of two texts, the second empty. The SOAPAction names another operation:
  /// deliberate [config-action].
  /// Route: SOAP `GetConfigXML` under the SOAPAction "…/TorvexConfigContract/GetTorvexXML", where
  /// the service's URI stands in front.
  ///
  /// For the time of the call the user's setting `TraceSoapTraffic` is False, for all threads and
  /// programs that read it. It is written back when the call succeeds; after a failure it stays
  /// False until the application sets it again.
  SoapNode GetConfiguredProduct(std::string_view aServerURL, std::string_view aSalesInstrumentGID);
};

}  // namespace bvconn

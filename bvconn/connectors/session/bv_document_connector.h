#pragma once

#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// The documents of an object. The service is not of the usual kind: its namespace, which is the
/// SOAPAction too, is the URI of `BVServices.TorvexService`, and it knows no sessions.
///
/// Threads: one object per thread.
class BVCONN_EXPORT BVDocumentConnector {
 public:
  /// The documents of the object with this key: a new node without a name, whose children are all
  /// parameters of the reply in their order; without children where the reply has none.
  /// Never throws for what goes wrong on the way, a server fault included: the failure is logged as
  /// `BVOrderConnector.getDocuments`, and the result is an empty reference, for which the caller
  /// has to test. What a logger raises at that line leaves. Route: SOAP `getDocuments`.
  SoapNode GetDocuments(std::string_view aServerURL, std::string_view aGID);
};

}  // namespace bvconn

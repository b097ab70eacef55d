#pragma once

#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Countries. Service "urn:Postal".
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text.
class BVCONN_EXPORT BVPostalConnector {
 public:
  /// The list of countries, the reply's first parameter; a reply without one fails with 0x80044204.
  /// Logs on failure alone, as `BVGenericConnector.GetCountry`: deliberate [countries-log-name].
  /// @param aLazyLoad  Always sent on the SOAP route, false too; the other one does not use it.
  /// Route: DAL `SearchService.GetCountries`, else SOAP `getCountries`.
  SoapNode GetCountries(std::string_view aServerURL, std::string_view aSessionID, bool aLazyLoad);
};

}  // namespace bvconn

#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/http/http_transport.h"
#include "bvconn/platform/torvexlib/service_object.h"

namespace bvconn {

/// The application's handle on the calling thread's session. It holds no state: two instances on
/// one thread see the same values, another thread has its own, and no connector needs it to be
/// touched first.
///
/// For the data access layer (DAL): set `SalesOrg`, `UserName`, `Password` and `AppVer`, call
/// `InitTorvexDAL`, then `UseTorvexDAL`. Without them every call goes by SOAP, but for the searches
/// that have no such route. The comment of each operation of the connectors says its route: "SOAP
/// `method`" is posted to the server; "DAL `Object.Operation`, else SOAP `method`" asks that
/// service object where `UsingTorvexDAL` is true and the SOAP method is not disabled there, and is
/// posted otherwise. Nothing is tried twice: a DAL call that fails is a failure, error 91 where the
/// objects have not been made.
class BVCONN_EXPORT BVConnectorObject {
 public:
  /// The very object that the library sends with on this thread, made at first use. What the last
  /// request set on it stands until the next one.
  std::shared_ptr<HTTPTransport> HTTPTransportObject() const;
  /// Whether operations with a data access layer route take it; false in a new session.
  void UsingTorvexDAL(bool value);
  bool UsingTorvexDAL() const;
  /// Takes the data access layer route also for the methods that the server has disabled there;
  /// false in a new session.
  void AllowDisabledDALMethods(bool value);
  bool AllowDisabledDALMethods() const;
  /// Whether the document at hand may be saved through the data access layer; false in a new
  /// session. Some operations write it too, and say so.
  void UseDALSave(bool value);
  bool UseDALSave() const;
  /// Writes "evalMethod - evalMessage" to the log file, as it stands, with no date. Always true;
  /// throws when the file cannot be written.
  bool SendDALMessageToLog(std::string_view evalMethod, std::string_view evalMessage) const;
  /// Whether a method (wire name) of a service (URN) is disabled on the data access layer; the case
  /// of letters counts, and a longer entry that ends alike matches too. Never where
  /// `AllowDisabledDALMethods` is true.
  bool IsDALDisabled(std::string_view evalMethod, std::string_view evalService) const;
  /// The disabled methods: entries "service.method|", with nothing in front of the first; "" for
  /// none. `InitTorvexDAL` replaces them.
  /// deliberate [get-that-sets]: the property is written too.
  void GetDisabledDALServices(std::string_view value);
  std::string GetDisabledDALServices() const;
  /// The address that the last `InitTorvexDAL` was given; writing it alone changes no connection.
  void DALUrl(std::string_view value);
  std::string DALUrl() const;

  // What the next `InitTorvexDAL` logs in with; they can be written only. A `SalesOrg` of exactly
  // "2200" logs in for the country "CAN", any other, "" too, for "US".
  void UserName(std::string_view value);
  void Password(std::string_view value);
  void AppVer(std::string_view value);
  void SalesOrg(std::string_view value);

  // The service objects as they stand, `AuthenticationService()` to `SalesInstrumentService()`;
  // empty before `InitTorvexDAL`. deliberate [search-getter]: but `SearchService()` is not the
  // search object: it gives the heart beat object, seen through the search interface, and fails
  // with error 13 unless that object offers it.
#define BVCONN_SERVICE_OBJECT(name, ...) std::shared_ptr<ServiceObject> name() const;
#include "bvconn/platform/torvexlib/service_object_rows.inc"

  /// Makes the 15 service objects anew, logs in and reads the disabled methods. Does not turn the
  /// route on. Any error ends it at once and silently; what was written before stays.
  void InitTorvexDAL(std::string_view dal_server_url);
  /// Turns the route on, for saves too. An error is shown in a message box and goes no further.
  void UseTorvexDAL();
};

}  // namespace bvconn

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bvconn/catalogues/bv_methods.h"
#include "bvconn/catalogues/bv_services.h"
#include "bvconn/platform/exchange/exchange_log.h"
#include "bvconn/platform/platform.h"

namespace bvconn {

/// Everything that outlives one call: one record for each thread, zeroed when the thread starts.
/// No call is needed to set it up, no two threads ever share one, and what it made is released when
/// its thread ends, without a log line or a call to a server. A `platform::ScopedPlatform` puts a
/// fresh one in its place.
///
/// The four accessors create their object at first use. The fields are as the application or
/// `InitTorvexDAL` left them.
struct SessionState {
  BVCONN_EXPORT SessionLogger& Logger();
  /// Whether lines at a level, or text lines without one, can be written at all: false only where
  /// the logger is the library's own and would drop them, so that nobody has to put them together.
  BVCONN_EXPORT bool writes_lines(std::int32_t level);
  BVCONN_EXPORT bool writes_info_lines();
  BVCONN_EXPORT BVServices& Services();
  BVCONN_EXPORT BVMethods& Methods();
  /// The thread's one transport. What a request sets on it stays set until the next overwrites it.
  BVCONN_EXPORT const std::shared_ptr<HTTPTransport>& Transport();
  BVCONN_EXPORT Clock& clock();

  /// The thread's last request to the server and what became of it; nothing where there was none or
  /// none is kept. Passwords, session identifiers and tokens are masked unless asked for.
  BVCONN_EXPORT std::optional<Exchange> LastExchange(Secrets secrets = Secrets::kMasked) const;
  /// The last ones, oldest first.
  BVCONN_EXPORT std::vector<Exchange> Exchanges(Secrets secrets = Secrets::kMasked) const;
  /// Keeps so many from now on; 8 where this is never called, 0 for none.
  BVCONN_EXPORT void KeepExchanges(std::size_t count);
  /// Where they are written.
  BVCONN_EXPORT ExchangeLog& exchanges() noexcept;

  /// Empty until `TracePort` has asked the settings once; "" is a value like any other.
  std::optional<std::string> TracePortCache;
  /// 0 until `DefaultTimeout` has asked the settings once. Milliseconds.
  std::int32_t DefaultTimeoutCache = 0;

  // The service objects of the data access layer; empty before `InitTorvexDAL`.
#define BVCONN_SERVICE_OBJECT(name, ...) std::shared_ptr<ServiceObject> name;
#include "bvconn/platform/torvexlib/service_object_rows.inc"

  std::string UserName;
  std::string Password;
  std::string DALUrl;
  std::string AppVer;
  std::string SalesOrg;
  bool UsingTorvexDAL = false;
  /// Whether the document at hand may be saved through the data access layer.
  bool UseDALSave = false;
  /// Entries "service.method|", with no separator in front of the first.
  std::string DisabledDALServices;
  bool AllowDisabledDALMethods = false;
  /// Set by each heart beat; matters for traffic tracing alone.
  bool isBrimvale = false;
  /// The time of the last reply of any kind. Written through `Global::LastHeartBeat`.
  Date LastHeartBeat;

 private:
  std::shared_ptr<SessionLogger> logger_;
  std::optional<BVServices> services_;
  std::optional<BVMethods> methods_;
  std::shared_ptr<HTTPTransport> transport_;
  std::shared_ptr<Clock> clock_;
  ExchangeLog exchanges_;
  bool exchanges_are_shown_ = false;
};

/// The calling thread's record. A call that comes after the thread has released it, from the
/// destructor of an object that outlives it, is given one more, zeroed.
BVCONN_EXPORT SessionState& session();

}  // namespace bvconn

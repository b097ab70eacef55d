#pragma once

#include <optional>

#include "bvconn/platform/timeout_scope.h"
#include "bvconn/platform/tls_files.h"
#include "connection_options.h"

namespace bvconn::tool {

/// Puts a connection's time-out and TLS files in force for the calling thread, for as long as this
/// object lives.
class ConnectionScope {
 public:
  explicit ConnectionScope(const Connection& connection);
  ~ConnectionScope();
  ConnectionScope(const ConnectionScope&) = delete;
  ConnectionScope& operator=(const ConnectionScope&) = delete;

 private:
  std::optional<TimeoutScope> limit_;
  TlsFiles before_ = tls_files();
};

}  // namespace bvconn::tool

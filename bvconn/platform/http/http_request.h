#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/tls_files.h"

namespace bvconn::detail {

struct HttpProxy {
  std::string host{};
  std::string port{};
};

/// One request as a client makes it: always a POST, with a body of known length.
struct HttpRequest {
  std::string_view source{};  ///< of the errors that are raised over it
  std::string url{};
  std::string_view body{};
  std::vector<std::string> headers{};  ///< whole lines, without their ends
  std::optional<HttpProxy> proxy{};
  std::chrono::milliseconds time_out{0};  ///< for the whole exchange; 0 is none
  std::chrono::milliseconds connect_time_out{0};
  TlsFiles tls{};
  std::string tracing_file{};  ///< gets the exchange as it crosses the wire, unless empty
};

}  // namespace bvconn::detail

#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bvconn::detail {

/// Who is trusted, and as whom the client shows itself; with an empty `ca_file` the system's store
/// counts, with an empty `client_cert` the client shows nothing.
struct TlsFiles {
  std::string ca_file{};
  std::string client_cert{};
  std::string client_key{};
};

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

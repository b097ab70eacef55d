#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "bvconn/platform/tls_files.h"

namespace bvconn::detail {

struct HttpProxy {
  std::string host{};
  std::string port{};

  bool operator==(const HttpProxy&) const = default;
};

/// One request as a client makes it: always a POST, with a body of known length. What it refers to
/// has to last until it has been made.
struct HttpRequest {
  std::string_view source{};  ///< of the errors that are raised over it
  std::string_view url{};
  std::string_view body{};
  std::span<const std::string> headers{};  ///< whole lines, without their ends
  const HttpProxy* proxy = nullptr;
  std::chrono::milliseconds time_out{0};  ///< for the whole exchange; 0 is none
  std::chrono::milliseconds connect_time_out{0};
  TlsFiles tls{};
  std::string_view tracing_file{};  ///< gets the exchange as it crosses the wire, unless empty
};

}  // namespace bvconn::detail

#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sockets.h"

/// The first steps of a request, one by one: a name becomes addresses, an address is connected to.
/// Each takes a bounded time.
namespace bvconn::tool {

/// Where a URL of http or https leads to.
struct HostAndPort {
  bool tls = false;
  std::string host;  ///< without the brackets of an IPv6 address
  std::string port;
};

/// Nothing for what is no such URL.
std::optional<HostAndPort> host_and_port(std::string_view url);

struct Resolved {
  std::vector<SocketAddress> addresses;
  std::string trouble;  ///< why there are none
  std::chrono::milliseconds took{0};
};

Resolved resolve(const std::string& host, const std::string& port,
                 std::chrono::milliseconds patience);

struct Connected {
  std::string address;  ///< the one that was reached, or the last one that was tried
  int code = 0;         ///< the system's error number of that; 0 where it was reached
  std::chrono::milliseconds took{0};
};

/// Connects to the first address that can be reached, and lets go of it at once.
Connected connect_to_any(const std::vector<SocketAddress>& addresses,
                         std::chrono::milliseconds patience);

}  // namespace bvconn::tool

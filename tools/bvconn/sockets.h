#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

/// The system's names and connections.
namespace bvconn::tool {

struct SocketAddress {
  alignas(std::max_align_t) std::array<std::byte, 128> bytes{};  ///< as the system has it
  std::size_t size = 0;

  std::string text() const;  ///< "127.0.0.1"
};

struct LookedUp {
  std::vector<SocketAddress> addresses;
  std::string trouble;  ///< why there are none
};

/// For as long as the system takes.
LookedUp look_up(const std::string& host, const std::string& port);

/// The error number of connecting, or 0. The connection is let go of at once.
int try_to_connect(const SocketAddress& address, std::chrono::milliseconds patience);

}  // namespace bvconn::tool

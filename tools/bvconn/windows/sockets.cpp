#include "sockets.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>

#include "bvconn/platform/windows/system.h"
#include "bvconn/platform/windows/wide_text.h"

namespace bvconn::tool {
namespace {

// Once for the process, which keeps it.
void start_sockets() {
  [[maybe_unused]] static const int started = [] {
    WSADATA data{};
    return ::WSAStartup(MAKEWORD(2, 2), &data);
  }();
}

const sockaddr* address_of(const SocketAddress& address) {
  return reinterpret_cast<const sockaddr*>(address.bytes.data());
}

int size_of(const SocketAddress& address) {
  return static_cast<int>(address.size);
}

int errno_of_socket(int code) {
  switch (code) {
    case 0:
      return 0;
    case WSAECONNREFUSED:
      return ECONNREFUSED;
    case WSAETIMEDOUT:
      return ETIMEDOUT;
    case WSAENETUNREACH:
      return ENETUNREACH;
    case WSAEHOSTUNREACH:
      return EHOSTUNREACH;
    case WSAECONNRESET:
      return ECONNRESET;
    case WSAEACCES:
      return EACCES;
    default:
      return EIO;
  }
}

}  // namespace

std::string SocketAddress::text() const {
  start_sockets();
  std::array<char, NI_MAXHOST> host{};
  if (::getnameinfo(address_of(*this), size_of(*this), host.data(), host.size(), nullptr, 0,
                    NI_NUMERICHOST) != 0) {
    return "an unknown address";
  }
  return host.data();
}

LookedUp look_up(const std::string& host, const std::string& port) {
  start_sockets();
  LookedUp found;
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  const int code = ::getaddrinfo(host.c_str(), port.c_str(), &hints, &list);
  if (code != 0) {
    found.trouble = detail::windows_message(static_cast<unsigned long>(code));
    return found;
  }
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(list, &::freeaddrinfo);
  for (const addrinfo* each = list; each != nullptr; each = each->ai_next) {
    SocketAddress address;
    address.size = std::min<std::size_t>(each->ai_addrlen, address.bytes.size());
    std::memcpy(address.bytes.data(), each->ai_addr, address.size);
    found.addresses.push_back(address);
  }
  return found;
}

int try_to_connect(const SocketAddress& address, std::chrono::milliseconds patience) {
  start_sockets();
  const SOCKET socket = ::socket(address_of(address)->sa_family, SOCK_STREAM, 0);
  if (socket == INVALID_SOCKET) return errno_of_socket(::WSAGetLastError());
  u_long without_waiting = 1;
  ::ioctlsocket(socket, static_cast<long>(FIONBIO), &without_waiting);
  int code = 0;
  if (::connect(socket, address_of(address), size_of(address)) != 0) code = ::WSAGetLastError();
  if (code == WSAEWOULDBLOCK) {
    // A connection that is refused shows among the exceptional here, and not among the writable.
    fd_set writable;
    FD_ZERO(&writable);
    FD_SET(socket, &writable);
    fd_set failed = writable;
    const std::int64_t wait_ms = std::max<std::int64_t>(patience.count(), 0);
    timeval limit{static_cast<long>(wait_ms / 1000), static_cast<long>(wait_ms % 1000 * 1000)};
    int size = sizeof(code);
    if (::select(0, nullptr, &writable, &failed, &limit) <= 0) {
      code = WSAETIMEDOUT;
    } else if (::getsockopt(socket, SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&code), &size) !=
               0) {
      code = ::WSAGetLastError();
    }
  }
  ::closesocket(socket);
  return errno_of_socket(code);
}

}  // namespace bvconn::tool

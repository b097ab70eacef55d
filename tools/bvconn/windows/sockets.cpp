#include "sockets.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "bvconn/platform/windows/system.h"
#include "bvconn/platform/windows/wide_text.h"
#include "found_addresses.h"

namespace bvconn::tool {
namespace {

// Once for the process, which keeps it.
void start_sockets() {
  [[maybe_unused]] static const int started = [] {
    WSADATA data{};
    return ::WSAStartup(MAKEWORD(2, 2), &data);
  }();
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
  return address_text(*this);
}

LookedUp look_up(const std::string& host, const std::string& port) {
  start_sockets();
  return found_addresses(host, port, [](int code) {
    return detail::windows_message(static_cast<unsigned long>(code));
  });
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

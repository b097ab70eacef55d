#include "sockets.h"

#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>

namespace bvconn::tool {
namespace {

const sockaddr* address_of(const SocketAddress& address) {
  return reinterpret_cast<const sockaddr*>(address.bytes.data());
}

socklen_t size_of(const SocketAddress& address) {
  return static_cast<socklen_t>(address.size);
}

}  // namespace

std::string SocketAddress::text() const {
  std::array<char, NI_MAXHOST> host{};
  if (::getnameinfo(address_of(*this), size_of(*this), host.data(), host.size(), nullptr, 0,
                    NI_NUMERICHOST) != 0) {
    return "an unknown address";
  }
  return host.data();
}

LookedUp look_up(const std::string& host, const std::string& port) {
  LookedUp found;
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  const int code = ::getaddrinfo(host.c_str(), port.c_str(), &hints, &list);
  if (code != 0) {
    found.trouble = ::gai_strerror(code);
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

// The socket's own error tells what became of the connection.
int try_to_connect(const SocketAddress& address, std::chrono::milliseconds patience) {
  constexpr int kKind = SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC;
  const int file = ::socket(address_of(address)->sa_family, kKind, 0);
  if (file < 0) return errno;
  int code = 0;
  if (::connect(file, address_of(address), size_of(address)) != 0) code = errno;
  if (code == EINPROGRESS) {
    pollfd waiting{.fd = file, .events = POLLOUT, .revents = 0};
    socklen_t size = sizeof(code);
    if (::poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(patience.count(), 0))) <= 0) {
      code = ETIMEDOUT;
    } else if (::getsockopt(file, SOL_SOCKET, SO_ERROR, &code, &size) != 0) {
      code = errno;
    }
  }
  ::close(file);
  return code;
}

}  // namespace bvconn::tool

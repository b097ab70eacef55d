#include "sockets.h"

#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "found_addresses.h"

namespace bvconn::tool {

std::string SocketAddress::text() const {
  return address_text(*this);
}

LookedUp look_up(const std::string& host, const std::string& port) {
  return found_addresses(host, port, ::gai_strerror);
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

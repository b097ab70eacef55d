#include "reachability.h"

#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <future>
#include <memory>
#include <thread>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"

namespace bvconn::tool {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

milliseconds since(Clock::time_point begin) {
  return std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
}

Resolved look_up(const std::string& host, const std::string& port) {
  Resolved resolved;
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  const int code = ::getaddrinfo(host.c_str(), port.c_str(), &hints, &list);
  if (code != 0) {
    resolved.trouble = ::gai_strerror(code);
    return resolved;
  }
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(list, &::freeaddrinfo);
  for (const addrinfo* each = list; each != nullptr; each = each->ai_next) {
    SocketAddress address;
    address.size = std::min<socklen_t>(each->ai_addrlen, sizeof(address.storage));
    std::memcpy(&address.storage, each->ai_addr, address.size);
    resolved.addresses.push_back(address);
  }
  return resolved;
}

/// The error number of connecting, or 0. The socket's own error tells what became of it.
int try_to_connect(const SocketAddress& address, milliseconds patience) {
  constexpr int kKind = SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC;
  const int file = ::socket(address.storage.ss_family, kKind, 0);
  if (file < 0) return errno;
  int code = 0;
  if (::connect(file, reinterpret_cast<const sockaddr*>(&address.storage), address.size) != 0) {
    code = errno;
  }
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

}  // namespace

std::optional<HostAndPort> host_and_port(std::string_view url) {
  const std::size_t colon = url.find("://");
  if (colon == std::string_view::npos) return std::nullopt;
  const std::string_view scheme = url.substr(0, colon);
  HostAndPort found{.tls = conversions::equal_ignoring_case(scheme, "https"), .host{}, .port{}};
  if (!found.tls && !conversions::equal_ignoring_case(scheme, "http")) return std::nullopt;
  std::string_view authority = url.substr(colon + 3);
  authority = authority.substr(0, authority.find_first_of("/?#"));
  authority.remove_prefix(authority.rfind('@') + 1);
  const std::size_t bracket = authority.find(']');
  const bool in_brackets = authority.starts_with('[') && bracket != std::string_view::npos;
  const std::size_t port = authority.find(':', in_brackets ? bracket : 0);
  std::string_view host = authority.substr(0, port);
  if (in_brackets) host = host.substr(1, host.size() - 2);
  if (host.empty()) return std::nullopt;
  found.host = host;
  found.port = port == std::string_view::npos ? "" : authority.substr(port + 1);
  if (found.port.empty()) found.port = found.tls ? "443" : "80";
  return found;
}

std::string SocketAddress::text() const {
  std::array<char, NI_MAXHOST> host{};
  const auto* address = reinterpret_cast<const sockaddr*>(&storage);
  if (::getnameinfo(address, size, host.data(), host.size(), nullptr, 0, NI_NUMERICHOST) != 0) {
    return "an unknown address";
  }
  return host.data();
}

Resolved resolve(const std::string& host, const std::string& port, milliseconds patience) {
  const auto begin = Clock::now();
  // The system's call knows no time-out. One that hangs is left behind, with all that it needs.
  std::packaged_task<Resolved()> task([host, port] { return look_up(host, port); });
  std::future<Resolved> answer = task.get_future();
  std::thread(std::move(task)).detach();
  Resolved resolved;
  if (answer.wait_for(patience) == std::future_status::ready) {
    resolved = answer.get();
  } else {
    resolved.trouble = "no answer within " + std::to_string(patience.count()) + " ms";
  }
  resolved.took = since(begin);
  return resolved;
}

Connected connect_to_any(const std::vector<SocketAddress>& addresses, milliseconds patience) {
  const auto begin = Clock::now();
  Connected last{.address = "", .code = EHOSTUNREACH};
  for (const SocketAddress& address : addresses) {
    last = {.address = address.text(), .code = try_to_connect(address, patience - since(begin))};
    if (last.code == 0) break;
  }
  last.took = since(begin);
  return last;
}

}  // namespace bvconn::tool

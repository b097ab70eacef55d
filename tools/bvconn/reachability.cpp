#include "reachability.h"

#include <cerrno>
#include <future>
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

Resolved resolve(const std::string& host, const std::string& port, milliseconds patience) {
  const auto begin = Clock::now();
  // The system's call knows no time-out. One that hangs is left behind, with all that it needs.
  std::packaged_task<LookedUp()> task([host, port] { return look_up(host, port); });
  std::future<LookedUp> answer = task.get_future();
  std::thread(std::move(task)).detach();
  Resolved resolved;
  if (answer.wait_for(patience) == std::future_status::ready) {
    LookedUp found = answer.get();
    resolved.addresses = std::move(found.addresses);
    resolved.trouble = std::move(found.trouble);
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

#include "sandbox/calls/own_address.h"

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include "sandbox/http/address.h"
#include "sandbox/own_files.h"
#include "sandbox/tls/certificates.h"

namespace bvconn::sandbox {
namespace {

constexpr std::size_t kLargestFile = std::size_t{1} << 20;

struct FreeAddresses {
  void operator()(addrinfo* first) const { ::freeaddrinfo(first); }
};
using Addresses = std::unique_ptr<addrinfo, FreeAddresses>;

Addresses addresses_of(const std::string& name) {
  addrinfo wanted{};
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  const int status = ::getaddrinfo(name.c_str(), nullptr, &wanted, &found);
  return Addresses(status == 0 ? found : nullptr);
}

std::string text_of(const addrinfo& address) {
  std::array<char, NI_MAXHOST> text{};
  const int status = ::getnameinfo(address.ai_addr, address.ai_addrlen, text.data(), text.size(),
                                   nullptr, 0, NI_NUMERICHOST);
  return status == 0 ? text.data() : "";
}

/// Only such an address can be listened on; the loopback's may be named where it is switched off.
bool is_of_this_machine(const addrinfo& address) {
  if (is_loopback(text_of(address))) return true;
  const int socket = ::socket(address.ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (socket < 0) return false;
  const bool is_bound = ::bind(socket, address.ai_addr, address.ai_addrlen) == 0;
  ::close(socket);
  return is_bound;
}

/// Whether all addresses of a name are this machine's, and one of them is listened on.
bool leads_here(const std::string& name, const std::string& listening) {
  const Addresses all = addresses_of(name);
  bool is_reached = false;
  for (const addrinfo* each = all.get(); each != nullptr; each = each->ai_next) {
    if (!is_of_this_machine(*each)) return false;
    const bool is_heard = listening == "::" || text_of(*each) == listening ||
                          (listening == "0.0.0.0" && each->ai_family == AF_INET);
    is_reached = is_reached || is_heard;
  }
  return is_reached;
}

}  // namespace

OwnAddress own_address_by(const std::string& certificate_file, const std::string& url,
                          const std::string& listening) {
  OwnAddress own{.url = url, .ca_file = certificate_file};
  const std::vector<std::string> names =
      server_names_in(text_of_file(certificate_file, kLargestFile));
  const std::string host = address_in_url(listening);
  const auto stands_for = [&](const std::string& name) { return address_in_url(name) == host; };
  if (std::any_of(names.begin(), names.end(), stands_for)) return own;
  for (const std::string& each : names) {
    // A pattern is the name of no server.
    if (each.starts_with("*.") || !leads_here(each, listening)) continue;
    own.url.replace(own.url.find(host), host.size(), address_in_url(each));
    break;
  }
  return own;
}

}  // namespace bvconn::sandbox

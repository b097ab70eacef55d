#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>

#include "sockets.h"

/// What the system's names come to, in the form that all systems share. Their declarations are in
/// headers of many names: whoever includes this one includes those first.
namespace bvconn::tool {

inline const sockaddr* address_of(const SocketAddress& address) {
  return reinterpret_cast<const sockaddr*>(address.bytes.data());
}

inline socklen_t size_of(const SocketAddress& address) {
  return static_cast<socklen_t>(address.size);
}

inline std::string address_text(const SocketAddress& address) {
  std::array<char, NI_MAXHOST> host{};
  if (::getnameinfo(address_of(address), size_of(address), host.data(), host.size(), nullptr, 0,
                    NI_NUMERICHOST) != 0) {
    return "an unknown address";
  }
  return host.data();
}

/// `words_of` has the system's words for the code of a failure.
template <class WordsOf>
LookedUp found_addresses(const std::string& host, const std::string& port, WordsOf words_of) {
  LookedUp found;
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  const int code = ::getaddrinfo(host.c_str(), port.c_str(), &hints, &list);
  if (code != 0) {
    found.trouble = words_of(code);
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

}  // namespace bvconn::tool

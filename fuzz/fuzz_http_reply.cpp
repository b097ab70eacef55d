// The input is what a server sends, over a socket to the transport of SOAP or to that of the data
// access layer. Where libcurl asks for a TCP connection it gets a pair of sockets, whose other end
// holds the whole reply and its end already; bytes arrive in pieces that the input chooses.
#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/export.h"
#include "bvconn/platform/http/http_transport.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/torvexlib/service_object.h"
#include "fuzzing.h"

namespace {

using namespace bvconn;  // NOLINT(google-build-using-namespace): the interface under test
using fuzz::Choices;
using fuzz::require;
namespace numbers = error_numbers;

constexpr std::size_t kBodyMax = std::size_t{1} << 20;
constexpr std::string_view kUrl = "http://127.0.0.1:9/soap";
constexpr std::string_view kGoodBody =
    "<s:Envelope xmlns:s='http://schemas.xmlsoap.org/soap/envelope/'><s:Body><r><return>good"
    "</return></r></s:Body></s:Envelope>";

std::string good_reply() {
  return "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nContent-Length: " +
         std::to_string(kGoodBody.size()) + "\r\n\r\n" + std::string(kGoodBody);
}

/// The servers that libcurl connects to: each sends the reply at once and says no more.
class Wire {
 public:
  ~Wire() { close_ends(); }

  void reply(std::string_view bytes, std::size_t piece_max) {
    close_ends();
    reply_ = bytes;
    piece_max_ = piece_max;
    connections_ = 0;
  }

  /// The client's end of a new connection.
  int open() {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return -1;
    ++connections_;
    clients_.push_back(ends[0]);
    servers_.push_back(ends[1]);
    const ssize_t sent = ::send(ends[1], reply_.data(), reply_.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    require(sent == static_cast<ssize_t>(reply_.size()), "the pair of sockets is too small");
    ::shutdown(ends[1], SHUT_WR);
    return ends[0];
  }

  bool owns(int socket) const {
    return std::find(clients_.begin(), clients_.end(), socket) != clients_.end();
  }
  std::size_t piece_max() const { return piece_max_; }
  int connections() const { return connections_; }

  /// What the client sent on the last connection.
  std::string request() const {
    std::array<char, 16384> block;
    if (servers_.empty()) return "";
    const ssize_t got = ::recv(servers_.back(), block.data(), block.size(), MSG_DONTWAIT);
    return {block.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0))};
  }

 private:
  void close_ends() {
    for (const int end : servers_) ::close(end);
    servers_.clear();
    clients_.clear();
  }

  std::string_view reply_;
  std::size_t piece_max_ = 0;
  int connections_ = 0;
  std::vector<int> clients_;  ///< owned by libcurl
  std::vector<int> servers_;
};

Wire& wire() {
  static Wire the_wire;
  return the_wire;
}

template <typename Function>
Function next_function(const char* name) {
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

// What libcurl calls of the system.
extern "C" BVCONN_EXPORT int socket(int domain, int type, int protocol) {
  static const auto system_socket = next_function<int (*)(int, int, int)>("socket");
  return domain == AF_INET ? wire().open() : system_socket(domain, type, protocol);
}

extern "C" BVCONN_EXPORT int connect(int socket, const sockaddr* address, socklen_t size) {
  static const auto system_connect =
      next_function<int (*)(int, const sockaddr*, socklen_t)>("connect");
  return wire().owns(socket) ? 0 : system_connect(socket, address, size);
}

extern "C" BVCONN_EXPORT ssize_t recv(int socket, void* data, std::size_t size, int flags) {
  static const auto system_recv = next_function<ssize_t (*)(int, void*, std::size_t, int)>("recv");
  const std::size_t piece_max = wire().owns(socket) ? wire().piece_max() : 0;
  return system_recv(socket, data, piece_max == 0 ? size : std::min(size, piece_max), flags);
}

namespace {

/// A request's headers, whose names no reply can change.
void require_own_headers(const std::string& request) {
  constexpr std::array<std::string_view, 10> kNames{"POST ",
                                                    "Host: ",
                                                    "Accept: ",
                                                    "Content-Type: ",
                                                    "Content-Length: ",
                                                    "SOAPAction: ",
                                                    "Accept-Encoding: ",
                                                    "Authorization: ",
                                                    "User-Agent: ",
                                                    "Connection: "};
  std::string_view rest(request);
  rest = rest.substr(0, rest.find("\r\n\r\n"));
  while (!rest.empty()) {
    const std::string_view line = rest.substr(0, rest.find("\r\n"));
    rest.remove_prefix(std::min(rest.size(), line.size() + 2));
    require(std::any_of(kNames.begin(), kNames.end(),
                        [&](std::string_view name) { return line.starts_with(name); }),
            "a header that is not the client's", request);
  }
}

std::optional<std::string> receive(HTTPTransport& transport) {
  try {
    transport.Send(kUrl, "<question/>");
  } catch (const Error& error) {
    fuzz::require_error(error, {numbers::kConnectionLost});
    return std::nullopt;
  }
  try {
    return transport.Receive("UTF-8");
  } catch (const Error& error) {
    fuzz::require_error(error,
                        {numbers::kHttpStatus, numbers::kBadReply, numbers::kConnectionLost});
    return std::nullopt;
  }
}

void parse(const std::string& body) {
  try {
    SoapEnvelope::make().Parse(body, "");
  } catch (const Error& error) {
    fuzz::require_error(error, {numbers::kSoapFault, numbers::kNotWellFormed,
                                numbers::kNotASoapEnvelope, numbers::kSoapLimit});
  }
}

void call_soap(std::string_view reply, std::size_t piece_max) {
  static const auto transport = [] {
    auto made = make_http_transport();
    made->Option("http.max_reply_bytes", std::to_string(kBodyMax));
    made->Timeout(5000);
    return made;
  }();
  wire().reply(reply, piece_max);
  if (const auto body = receive(*transport)) {
    require(body->size() <= kBodyMax, "a reply beyond the limit");
    parse(*body);
  }
  require(wire().connections() == 1, "a request that goes out twice");
  const std::string good = good_reply();
  wire().reply(good, piece_max);
  require(receive(*transport) == kGoodBody, "the good call fails afterwards", reply);
}

/// Whether the operation returns.
bool invoke(ServiceObject& object, std::string_view operation,
            const std::vector<Variant>& arguments) {
  try {
    static_cast<void>(object.invoke(operation, arguments, false));
    return true;
  } catch (const Error& error) {
    // What the body of a refusal tells may have any number, and any words.
    if (error.outcome != Outcome::kAnswered) {
      fuzz::require_error(error, {numbers::kBadReply, numbers::kConnectionLost});
    }
    return false;
  }
}

void call_dal(std::string_view reply, std::size_t piece_max) {
  static const auto authentication = make_http_service_object("AuthenticationService");
  static const auto search = make_http_service_object("SearchService");
  authentication->invoke("SetServerUrl", std::vector<Variant>{Variant(kUrl)}, false);
  wire().reply(reply, piece_max);
  invoke(*authentication, "Login", {"1000", "joe", "secret", "1.0"});
  require(wire().connections() == 1, "a request that goes out twice");
  const std::string good = good_reply();
  wire().reply(good, piece_max);
  require(invoke(*search, "SearchForBrands", {}), "the good call fails afterwards", reply);
  require_own_headers(wire().request());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::array<std::size_t, 4> kPieces{0, 1, 7, 1000};
  Choices choices(data, size);
  // A letter, so that inputs can be written by hand: from 'P' to 'S' for SOAP, from 'D' to 'G' for
  // the other.
  const std::uint8_t choice = choices.byte();
  const std::size_t piece_max = kPieces[choice % kPieces.size()];
  if (choice >= 'P') {
    call_soap(choices.rest(), piece_max);
  } else {
    call_dal(choices.rest(), piece_max);
  }
  return 0;
}

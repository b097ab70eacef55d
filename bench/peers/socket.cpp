// What the kernel and the server take: the request written to a socket, the reply's bytes read from
// it, and of HTTP no more than its length.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <charconv>
#include <stdexcept>
#include <string_view>

#include "peers/peer.h"

namespace {

int port_of(const std::string& url) {
  return std::stoi(url.substr(url.rfind(':') + 1));
}

class Socket final : public bench::Peer {
 public:
  explicit Socket(const std::string& url)
      : request_(bench::request()), socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<in_port_t>(port_of(url)));
    const int on = 1;
    ::setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
    if (::connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
      throw std::runtime_error("the server is not there");
    }
    buffer_.resize(16U << 20U);
  }
  ~Socket() override { ::close(socket_); }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  void call(const bench::Case& which) override {
    head_.assign("POST /")
        .append(which.name)
        .append(" HTTP/1.1\r\nHost: bench\r\nContent-Length: ");
    head_.append(std::to_string(request_.size())).append("\r\n\r\n").append(request_);
    if (::send(socket_, head_.data(), head_.size(), MSG_NOSIGNAL) < 0) fail();
    have_ = 0;
    std::size_t body_begin = 0;
    while (body_begin == 0) {
      read_some();
      const std::size_t end = received().find("\r\n\r\n");
      if (end != std::string_view::npos) body_begin = end + 4;
    }
    body_ = announced(received().substr(0, body_begin));
    if (body_ == 0) {
      while (!received().ends_with("\r\n0\r\n\r\n")) read_some();
      return;
    }
    while (have_ < body_begin + body_) read_some();
  }
  std::string seen(const bench::Case& which) override {
    if (!which.is_chunked) return std::to_string(body_);
    // What frames the chunks is not told from what they hold.
    return received().size() > bench::envelope(which).size() ? bench::facts(which) : "less";
  }

 private:
  [[noreturn]] static void fail() { throw std::runtime_error("the connection is lost"); }
  std::string_view received() const { return std::string_view(buffer_).substr(0, have_); }

  void read_some() {
    const ssize_t count = ::recv(socket_, buffer_.data() + have_, buffer_.size() - have_, 0);
    if (count <= 0) fail();
    have_ += static_cast<std::size_t>(count);
  }

  /// The bytes of the body; 0 where it comes in chunks.
  static std::size_t announced(std::string_view head) {
    constexpr std::string_view kName = "Content-Length: ";
    const std::size_t at = head.find(kName);
    std::size_t size = 0;
    if (at == std::string_view::npos) return size;
    std::from_chars(head.data() + at + kName.size(), head.data() + head.size(), size);
    return size;
  }

  std::string request_;
  int socket_;
  std::string head_;
  std::string buffer_;
  std::size_t have_ = 0;
  std::size_t body_ = 0;
};

}  // namespace

std::unique_ptr<bench::Peer> bench::make_peer(const std::string& url) {
  return std::make_unique<Socket>(url);
}

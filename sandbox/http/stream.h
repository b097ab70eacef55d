#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <optional>
#include <utility>

namespace bvconn::sandbox {

/// A connection, plain or with TLS on it. What reads and writes does not see which: it is a stream
/// in the sense of Asio.
class Stream {
 public:
  using Socket = boost::asio::ip::tcp::socket;
  using executor_type = Socket::executor_type;

  explicit Stream(Socket socket) : socket_(std::move(socket)) {}
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  executor_type get_executor() { return socket_.get_executor(); }
  /// What is below TLS: to look at, to cancel and to end.
  Socket& socket() { return socket_; }
  bool is_secure() const { return tls_.has_value(); }

  /// Everything that follows goes through TLS, which begins with a handshake.
  template <typename Handler>
  void async_secure(boost::asio::ssl::context& context, Handler handler) {
    tls_.emplace(socket_, context);
    tls_->async_handshake(boost::asio::ssl::stream_base::server, std::move(handler));
  }
  /// Says that nothing more will come, which TLS has words of its own for, and waits for the other
  /// side to say so too.
  template <typename Handler>
  void async_say_end(Handler handler) {
    tls_->async_shutdown(std::move(handler));
  }

  template <typename Buffers, typename Handler>
  auto async_read_some(const Buffers& buffers, Handler&& handler) {
    if (tls_) return tls_->async_read_some(buffers, std::forward<Handler>(handler));
    return socket_.async_read_some(buffers, std::forward<Handler>(handler));
  }
  template <typename Buffers, typename Handler>
  auto async_write_some(const Buffers& buffers, Handler&& handler) {
    if (tls_) return tls_->async_write_some(buffers, std::forward<Handler>(handler));
    return socket_.async_write_some(buffers, std::forward<Handler>(handler));
  }

 private:
  Socket socket_;
  std::optional<boost::asio::ssl::stream<Socket&>> tls_;
};

}  // namespace bvconn::sandbox

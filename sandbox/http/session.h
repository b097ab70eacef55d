#pragma once

#include <array>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>
#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/http/delivery.h"
#include "sandbox/http/message.h"
#include "sandbox/http/server.h"
#include "sandbox/http/stream.h"
#include "sandbox/http/workers.h"

namespace bvconn::sandbox {

/// One connection, from its first byte to its end. It keeps itself alive through the handlers of
/// whatever it waits for.
class Session : public std::enable_shared_from_this<Session> {
 public:
  Session(boost::asio::ip::tcp::socket socket, const Limits& limits, const Server::Handler& handler,
          Workers& workers);
  /// With a context it speaks TLS; whoever speaks anything else is told so.
  void start(std::shared_ptr<boost::asio::ssl::context> tls);

 private:
  using ErrorCode = boost::system::error_code;
  using Parser = boost::beast::http::request_parser<boost::beast::http::string_body>;

  void await_first_byte();
  void on_first_byte(ErrorCode error);
  void shake_hands();
  void await_request();
  void read_header();
  void on_header(ErrorCode error);
  void read_body();
  void on_request(ErrorCode error);
  void refuse(ErrorCode error);
  void answer();
  std::vector<Step> reply_to(const Request& request, bool keep_alive, bool with_body) const;
  void deliver(const Reply& reply, bool keep_alive, bool with_body);
  void begin(std::vector<Step> steps);
  void do_step();
  void next_step();
  void send(Step& step);
  void fill(Step& step);
  void wait(std::chrono::milliseconds pause, void (Session::*then)());
  void reset();
  // In session_stream.cpp.
  void follow(const Step& step);
  void watch_reader();
  void send_news(std::optional<std::string> news);
  void stop_following();
  void close_gently();
  void end_sending();
  void drain();

  /// Whatever is under way on the socket is cancelled when the time is over.
  void limit_to(std::chrono::milliseconds time);

  std::shared_ptr<boost::asio::ssl::context> tls_;  ///< null for a plain connection
  Stream stream_;
  boost::asio::steady_timer timer_;
  const Limits& limits_;
  const Server::Handler& handler_;
  Workers& workers_;
  std::shared_ptr<void> place_;  ///< among the workers, from a request's end to its reply's
  boost::beast::flat_buffer buffer_;
  std::optional<Parser> parser_;
  std::string outgoing_;
  std::vector<Step> steps_;  ///< of the reply that is on its way
  std::size_t step_ = 0;
  std::size_t sent_ = 0;  ///< of the step's bytes
  std::array<char, 16 * 1024> drained_{};
  std::size_t drained_bytes_ = 0;
  bool timed_out_ = false;
  bool following_ = false;  ///< a step of that kind has begun
  bool reader_gone_ = false;
};

}  // namespace bvconn::sandbox

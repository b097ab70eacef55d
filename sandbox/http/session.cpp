#include "sandbox/http/session.h"

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/asio/ssl/error.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http/error.hpp>
#include <boost/beast/http/field.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/rfc7230.hpp>
#include <exception>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"

namespace bvconn::sandbox {
namespace asio = boost::asio;
namespace http = boost::beast::http;

namespace {

constexpr std::size_t kReadBytes = 16U * 1024;
/// How much of a refused request is still taken in, so that its sender comes to read the answer.
constexpr std::size_t kDrainedBytesMax = 64U * 1024 * 1024;
constexpr std::chrono::milliseconds kDrainTime{2'000};
/// What is made on the way leaves in pieces of this size.
constexpr std::size_t kFillBytes = 64U * 1024;
constexpr char kFiller = 'x';
/// What the first record of every handshake begins with.
constexpr char kHandshake = 0x16;

Request plain_request(http::request<http::string_body>&& request) {
  Request plain;
  plain.method = std::string(request.method_string());
  plain.target = std::string(request.target());
  for (const auto& field : request) {
    plain.headers.push_back(
        {.name = std::string(field.name_string()), .value = std::string(field.value())});
  }
  plain.body = std::move(request.body());
  return plain;
}

Reply refusal(const boost::system::error_code& error, const Limits& limits) {
  if (error == http::error::body_limit) {
    return text_reply(413,
                      "The body is larger than " + std::to_string(limits.body_bytes) + " bytes.\n");
  }
  if (error == http::error::header_limit || error == http::error::buffer_overflow) {
    return text_reply(431, "The request's headers are larger than " +
                               std::to_string(limits.header_bytes) + " bytes.\n");
  }
  return text_reply(400, "This is not HTTP: " + error.message() + ".\n");
}

}  // namespace

Session::Session(asio::ip::tcp::socket socket, const Limits& limits, const Server::Handler& handler,
                 Workers& workers)
    : stream_(std::move(socket)),
      timer_(stream_.get_executor()),
      limits_(limits),
      handler_(handler),
      workers_(workers) {}

void Session::limit_to(std::chrono::milliseconds time) {
  timed_out_ = false;
  timer_.expires_after(time);
  timer_.async_wait([weak = weak_from_this()](ErrorCode error) {
    const auto self = weak.lock();
    // The handler may have been on its way already when the limit was moved.
    if (error || !self || self->timer_.expiry() > asio::steady_timer::clock_type::now()) return;
    self->timed_out_ = true;
    ErrorCode ignored;
    self->stream_.socket().cancel(ignored);
  });
}

void Session::start(std::shared_ptr<asio::ssl::context> tls) {
  tls_ = std::move(tls);
  if (tls_) return await_first_byte();
  await_request();
}

void Session::await_first_byte() {
  // For the handshake too, so that none that never ends is waited for.
  limit_to(limits_.request);
  stream_.socket().async_wait(
      asio::ip::tcp::socket::wait_read,
      [self = shared_from_this()](ErrorCode error) { self->on_first_byte(error); });
}

void Session::on_first_byte(ErrorCode error) {
  if (error) return close_gently();
  char first = 0;
  const auto size =
      stream_.socket().receive(asio::buffer(&first, 1), asio::ip::tcp::socket::message_peek, error);
  if (error || size == 0) return close_gently();
  if (first == kHandshake) return shake_hands();
  deliver(text_reply(400, "This port speaks TLS: the address begins with https://.\n"), false,
          true);
}

void Session::shake_hands() {
  stream_.async_secure(*tls_, [self = shared_from_this()](ErrorCode error) {
    if (error) return self->end_sending();
    self->await_request();
  });
}

void Session::await_request() {
  if (buffer_.size() > 0) return read_header();
  limit_to(limits_.idle);
  stream_.async_read_some(buffer_.prepare(kReadBytes),
                          [self = shared_from_this()](ErrorCode error, std::size_t bytes) {
                            if (error) return self->close_gently();
                            self->buffer_.commit(bytes);
                            self->read_header();
                          });
}

void Session::read_header() {
  limit_to(limits_.request);
  parser_.emplace();
  parser_->header_limit(limits_.header_bytes);
  parser_->body_limit(limits_.body_bytes);
  http::async_read_header(stream_, buffer_, *parser_,
                          [self = shared_from_this()](ErrorCode error, std::size_t /*bytes*/) {
                            self->on_header(error);
                          });
}

void Session::on_header(ErrorCode error) {
  if (error) return refuse(error);
  const auto expectation = parser_->get()[http::field::expect];
  if (!conversions::equal_ignoring_case({expectation.data(), expectation.size()}, "100-continue")) {
    return read_body();
  }
  outgoing_ = "HTTP/1.1 100 Continue\r\n\r\n";
  asio::async_write(stream_, asio::buffer(outgoing_),
                    [self = shared_from_this()](ErrorCode failed, std::size_t /*bytes*/) {
                      if (failed) return self->close_gently();
                      self->read_body();
                    });
}

void Session::read_body() {
  http::async_read(stream_, buffer_, *parser_,
                   [self = shared_from_this()](ErrorCode error, std::size_t /*bytes*/) {
                     self->on_request(error);
                   });
}

void Session::on_request(ErrorCode error) {
  if (error) return refuse(error);
  answer();
}

void Session::refuse(ErrorCode error) {
  if (timed_out_) {
    return deliver(text_reply(408, "The request did not arrive in time.\n"), false, true);
  }
  const bool gone = error == http::error::end_of_stream ||
                    error.category() == asio::error::get_system_category() ||
                    error.category() == asio::error::get_misc_category() ||
                    error.category() == asio::error::get_ssl_category() ||
                    error.category() == asio::ssl::error::get_stream_category();
  if (gone) return close_gently();
  deliver(refusal(error, limits_), false, true);
}

void Session::answer() {
  const bool keep_alive = parser_->keep_alive();
  const bool with_body = parser_->get().method() != http::verb::head;
  place_ = workers_.enter(parser_->get().body().size());
  if (!place_) {
    return deliver(text_reply(503, "The server has too much to do.\n"), false, with_body);
  }
  timer_.cancel();
  auto work = [self = shared_from_this(), request = plain_request(parser_->release()), keep_alive,
               with_body]() mutable {
    std::vector<Step> steps = self->reply_to(request, keep_alive, with_body);
    // Freed here, where it holds up nobody.
    request = Request();
    const auto executor = self->stream_.get_executor();
    asio::post(executor, [self = std::move(self), steps = std::move(steps)]() mutable {
      self->begin(std::move(steps));
    });
  };
  workers_.run(std::move(work));
}

/// The end of the connection where not even a reply could be made.
std::vector<Step> Session::reply_to(const Request& request, bool keep_alive, bool with_body) const {
  try {
    return steps_of(handler_(request), keep_alive, with_body);
  } catch (const std::exception&) {
    return {{.kind = Step::Kind::kClose}};
  }
}

void Session::deliver(const Reply& reply, bool keep_alive, bool with_body) {
  begin(steps_of(reply, keep_alive, with_body));
}

void Session::begin(std::vector<Step> steps) {
  steps_ = std::move(steps);
  step_ = 0;
  do_step();
}

void Session::do_step() {
  if (step_ == steps_.size()) {
    place_.reset();
    return await_request();
  }
  Step& step = steps_[step_];
  switch (step.kind) {
    case Step::Kind::kSend:
      return send(step);
    case Step::Kind::kFill:
      return fill(step);
    case Step::Kind::kWait:
      return wait(step.pause, &Session::next_step);
    case Step::Kind::kClose:
      return close_gently();
    case Step::Kind::kReset:
      return reset();
    case Step::Kind::kFollow:
      return follow(step);
  }
}

void Session::next_step() {
  sent_ = 0;
  ++step_;
  do_step();
}

void Session::send(Step& step) {
  const std::size_t left = step.bytes.size() - sent_;
  const std::size_t size = step.piece_bytes == 0 ? left : std::min(left, step.piece_bytes);
  limit_to(limits_.reply);
  asio::async_write(stream_, asio::buffer(step.bytes.data() + sent_, size),
                    [self = shared_from_this(), &step](ErrorCode error, std::size_t bytes) {
                      if (error) return self->close_gently();
                      self->sent_ += bytes;
                      if (self->sent_ == step.bytes.size()) return self->next_step();
                      self->wait(step.pause, &Session::do_step);
                    });
}

void Session::fill(Step& step) {
  static const std::string piece = std::string(kFillBytes, kFiller);
  if (step.count == 0) return next_step();
  const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(step.count, piece.size()));
  limit_to(limits_.reply);
  asio::async_write(stream_, asio::buffer(piece.data(), size),
                    [self = shared_from_this(), &step](ErrorCode error, std::size_t bytes) {
                      if (error) return self->close_gently();
                      step.count -= bytes;
                      self->do_step();
                    });
}

void Session::wait(std::chrono::milliseconds pause, void (Session::*then)()) {
  timer_.expires_after(pause);
  timer_.async_wait([self = shared_from_this(), then](ErrorCode error) {
    if (error) return self->close_gently();
    (self.get()->*then)();
  });
}

/// The client sees a reset of the connection, not its end.
void Session::reset() {
  place_.reset();
  timer_.cancel();
  ErrorCode ignored;
  stream_.socket().set_option(asio::socket_base::linger(true, 0), ignored);
  stream_.socket().close(ignored);
}

void Session::close_gently() {
  if (!stream_.is_secure()) return end_sending();
  limit_to(kDrainTime);
  stream_.async_say_end([self = shared_from_this()](ErrorCode /*error*/) { self->end_sending(); });
}

void Session::end_sending() {
  // Only now, since a server that is about to end does so when nobody has a place any longer.
  place_.reset();
  ErrorCode ignored;
  stream_.socket().shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
  if (ignored) return;
  // Closing on unread bytes would reset the connection, and the client might lose the answer.
  limit_to(kDrainTime);
  drain();
}

void Session::drain() {
  stream_.socket().async_read_some(
      asio::buffer(drained_), [self = shared_from_this()](ErrorCode error, std::size_t bytes) {
        self->drained_bytes_ += bytes;
        if (error || self->timed_out_ || self->drained_bytes_ > kDrainedBytesMax) {
          self->timer_.cancel();
          return;
        }
        self->drain();
      });
}

}  // namespace bvconn::sandbox

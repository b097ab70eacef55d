#include "sandbox/http/server.h"

#include <unistd.h>

#include <array>
#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ip/v6_only.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>
#include <csignal>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "sandbox/http/address.h"
#include "sandbox/http/session.h"
#include "sandbox/http/tls.h"
#include "sandbox/http/workers.h"

namespace bvconn::sandbox {
namespace asio = boost::asio;
using asio::ip::tcp;

namespace {
/// The pause after a failed accept: the usual reason is that files have run out, and that lasts.
constexpr std::chrono::milliseconds kAcceptPause{50};

tcp::acceptor listen(asio::io_context& context, const Listening& where) {
  try {
    const tcp::endpoint endpoint(asio::ip::make_address(where.address), where.port);
    tcp::acceptor acceptor(context);
    acceptor.open(endpoint.protocol());
    acceptor.set_option(tcp::acceptor::reuse_address(true));
    // All addresses of this machine are those of the older version too, whatever the system's
    // default is.
    if (endpoint.address().is_v6()) acceptor.set_option(asio::ip::v6_only(false));
    acceptor.bind(endpoint);
    acceptor.listen();
    return acceptor;
  } catch (const boost::system::system_error& error) {
    const bool is_v6 = where.address.find(':') != std::string::npos;
    const std::string place =
        (is_v6 ? "[" + where.address + "]" : where.address) + ":" + std::to_string(where.port);
    throw std::system_error(error.code().value(), std::system_category(),
                            "cannot listen on " + place);
  }
}

}  // namespace

struct Server::State {
  State(Listening where, Limits the_limits, Handler the_handler)
      : limits(the_limits),
        handler(std::move(the_handler)),
        workers(limits),
        acceptor(listen(context, where)),
        pause(context),
        patience(context),
        signals(context),
        input(context) {
    if (where.tls) tls.emplace(std::move(where.tls));
  }

  ~State() { workers.end(); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  void accept() {
    acceptor.async_accept([this](boost::system::error_code error, tcp::socket socket) {
      if (error == asio::error::operation_aborted) return;
      if (error) return accept_later();
      boost::system::error_code ignored;
      socket.set_option(tcp::no_delay(true), ignored);
      std::make_shared<Session>(std::move(socket), limits, handler, workers)
          ->start(tls ? tls->context() : nullptr);
      accept();
    });
  }

  void accept_later() {
    pause.expires_after(kAcceptPause);
    pause.async_wait([this](boost::system::error_code error) {
      if (!error) accept();
    });
  }

  void watch_input() {
    input.async_read_some(asio::buffer(unused_input),
                          [this](boost::system::error_code error, std::size_t /*bytes*/) {
                            if (error) return drain();
                            watch_input();
                          });
  }

  void watch_signals() {
    signals.async_wait([this](boost::system::error_code error, int /*signal*/) {
      if (error) return;
      if (draining) return context.stop();
      drain();
      watch_signals();
    });
  }

  void drain() {
    draining = true;
    boost::system::error_code ignored;
    acceptor.close(ignored);
    pause.cancel();
    patience.expires_after(limits.drain);
    patience.async_wait([this](boost::system::error_code error) {
      if (!error) context.stop();
    });
    workers.drain([this] { context.stop(); });
  }

  // Sessions end with the context and refer to limits, handler and workers, so these come first.
  Limits limits;
  Handler handler;
  Workers workers;
  std::optional<Tls> tls;
  asio::io_context context{1};
  tcp::acceptor acceptor;
  asio::steady_timer pause;
  asio::steady_timer patience;
  bool draining = false;
  asio::signal_set signals;
  asio::posix::stream_descriptor input;
  std::array<char, 4096> unused_input{};
};

Server::Server(Listening where, Limits limits, Handler handler)
    : state_(std::make_unique<State>(std::move(where), limits, std::move(handler))) {}

Server::~Server() = default;

std::string Server::url() const {
  const auto address = state_->acceptor.local_endpoint().address().to_string();
  return (state_->tls ? "https://" : "http://") + address_in_url(address) + ":" +
         std::to_string(port());
}

std::uint16_t Server::port() const {
  return state_->acceptor.local_endpoint().port();
}

void Server::stop_on_signals() {
  state_->signals.add(SIGTERM);
  state_->signals.add(SIGINT);
  state_->watch_signals();
}

void Server::stop_when_input_ends() {
  // A copy, so that closing it leaves standard input itself open.
  state_->input.assign(::dup(STDIN_FILENO));
  state_->watch_input();
}

void Server::run() {
  state_->accept();
  state_->context.run();
}

void Server::finish() {
  asio::post(state_->context, [this] { state_->drain(); });
}

void Server::stop() {
  state_->context.stop();
}

}  // namespace bvconn::sandbox

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include "sandbox/http/message.h"

namespace bvconn::sandbox {

/// What a client may ask of the server, and for how long.
struct Limits {
  std::uint32_t header_bytes = 64U * 1024;
  std::uint64_t body_bytes = 64U * 1024 * 1024;
  /// From the first byte of a request to its last; a slower client is answered 408.
  std::chrono::milliseconds request{10'000};
  /// How long a kept connection may rest between two requests.
  std::chrono::milliseconds idle{60'000};
  /// From the first byte of a reply to its last; the connection of a slower client is dropped.
  std::chrono::milliseconds reply{30'000};
};

/// An HTTP/1.1 server on 127.0.0.1. It runs on one thread: handlers are never called at once, and
/// a slow client holds up nobody, since all waiting is asynchronous.
class Server {
 public:
  using Handler = std::function<Reply(const Request&)>;

  /// Listens at once; port 0 takes any free one. Throws std::system_error when it cannot.
  Server(std::uint16_t port, Limits limits, Handler handler);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  std::uint16_t port() const;
  /// SIGTERM and SIGINT end `run` from now on.
  void stop_on_signals();
  /// The end of standard input ends `run` from now on.
  void stop_when_input_ends();
  /// Serves until it is stopped.
  void run();
  /// Ends `run`, from any thread.
  void stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace bvconn::sandbox

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

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
  /// So many requests are read and answered at once; others wait.
  std::size_t workers = 4;
  /// How many requests, and how much of their bodies, may be waiting, worked on or on their way out
  /// as replies. Whoever comes then is answered 503.
  std::size_t requests = 1'000;
  std::size_t requests_bytes = 256U * 1024 * 1024;
  /// How long a server that was asked to end goes on for the requests that have arrived.
  std::chrono::milliseconds drain{5'000};
};

/// What a server shows to those that connect by TLS; both texts are PEM.
struct TlsIdentity {
  std::string certificates;  ///< its own first, then those that lead to an authority
  std::string key;
  /// From then on the next connection asks for another one.
  std::chrono::system_clock::time_point renew_at;
};
using TlsSource = std::function<TlsIdentity()>;

/// Where a server listens.
struct Listening {
  /// A numeric address, of either version; "0.0.0.0" and "::" are all of this machine.
  std::string address = "127.0.0.1";
  std::uint16_t port = 0;  ///< 0 takes any free one
  /// Where there is one, only TLS is spoken, and who speaks anything else is told so.
  TlsSource tls{};
};

/// An HTTP/1.1 server. All waiting is asynchronous on one thread, so a slow client
/// holds up nobody; handlers are called on a few threads beside it, so neither does a large
/// request. The requests of one connection are answered one after another.
class Server {
 public:
  /// Called on several threads at once.
  using Handler = std::function<Reply(const Request&)>;

  /// Listens at once. Throws std::system_error when it cannot, and std::runtime_error where what it
  /// shows by TLS cannot be used.
  Server(Listening where, Limits limits, Handler handler);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  std::uint16_t port() const;
  /// As a program of this machine comes to it, without a path: "https://127.0.0.1:8080".
  std::string url() const;
  /// SIGTERM and SIGINT call `finish` from now on, the second of them `stop`.
  void stop_on_signals();
  /// The end of standard input calls `finish` from now on.
  void stop_when_input_ends();
  /// Serves until it is stopped.
  void run();
  /// Ends `run` once the requests that have arrived are answered, from any thread. No new ones are
  /// taken, and after a while it waits no longer.
  void finish();
  /// Ends `run` at once, from any thread.
  void stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace bvconn::sandbox

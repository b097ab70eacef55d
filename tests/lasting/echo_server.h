#pragma once

#include <atomic>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>

#include "lasting/mark.h"

namespace bvconn::test {

/// A server on 127.0.0.1 for both routes that answers each request with the mark that it bears, or
/// with the mishap that the mark asks for. It runs on one thread, and keeps nothing but its open
/// connections, however long it lasts.
class EchoServer {
 public:
  /// Takes connections at once; `serve` looks after them.
  EchoServer();
  ~EchoServer();
  EchoServer(const EchoServer&) = delete;
  EchoServer& operator=(const EchoServer&) = delete;

  std::uint16_t port() const { return port_; }
  /// "http://127.0.0.1:port" and the path.
  std::string url(std::string_view path) const;

  /// Serves until it is stopped.
  void serve();
  /// Ends `serve`, from any thread.
  void stop();
  /// How many connections are open, as far as it has noticed.
  int open() const { return open_; }
  /// How many requests bore the marks of several calls.
  int mixed() const { return mixed_; }

 private:
  struct Connection {
    int socket = -1;
    std::string unread{};
  };

  void take_connection();
  /// False when the connection is over.
  bool read(Connection& connection);
  bool answer(const Connection& connection, std::string_view head, std::string_view body);

  int listener_ = -1;
  int stop_reader_ = -1;
  int stop_writer_ = -1;
  std::uint16_t port_ = 0;
  std::list<Connection> connections_;
  std::atomic<int> open_ = 0;
  std::atomic<int> mixed_ = 0;
};

/// What the reply to a call bears for the caller to know it by.
std::string echo_of(const Mark& mark);

}  // namespace bvconn::test

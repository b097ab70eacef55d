// Sends the input to the sandbox's HTTP server over a connection of its own, and ends its half of
// it. Whatever it was, what comes back is a row of whole replies, and the next connection is
// served.
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "fuzzing.h"
#include "sandbox/http/server.h"

namespace {

using namespace bvconn;  // NOLINT(google-build-using-namespace): the interface under test
using fuzz::require;

constexpr std::string_view kGood =
    "POST /good HTTP/1.1\r\nHost: h\r\nContent-Length: 4\r\n\r\nbody";
constexpr std::string_view kGoodBody = "POST /good body";

/// The server on a thread of its own, as long as the program runs.
class EchoServer {
 public:
  EchoServer()
      : server_({},
                {.header_bytes = 4096,
                 .body_bytes = 8192,
                 .request = std::chrono::seconds(5),
                 .idle = std::chrono::seconds(5),
                 .reply = std::chrono::seconds(5)},
                [this](const sandbox::Request& request) { return echo(request); }),
        thread_([this] { server_.run(); }) {}
  ~EchoServer() {
    server_.stop();
    thread_.join();
  }
  EchoServer(const EchoServer&) = delete;
  EchoServer& operator=(const EchoServer&) = delete;

  std::uint16_t port() const { return server_.port(); }

  /// Of the requests since the last time: whether each was a HEAD, whose reply has no body.
  std::vector<bool> take_heads() {
    const std::lock_guard lock(mutex_);
    return std::exchange(heads_, {});
  }

 private:
  sandbox::Reply echo(const sandbox::Request& request) {
    {
      const std::lock_guard lock(mutex_);
      heads_.push_back(request.method == "HEAD");
    }
    return sandbox::text_reply(
        200, request.method + " " + std::string(request.path()) + " " + request.body);
  }

  std::mutex mutex_;
  std::vector<bool> heads_;
  sandbox::Server server_;
  std::thread thread_;
};

/// libFuzzer's clock would interrupt the calls of this thread. The server has times of its own.
bool leave_the_clock_to_others() {
  sigset_t clock;
  sigemptyset(&clock);
  sigaddset(&clock, SIGALRM);
  return ::pthread_sigmask(SIG_BLOCK, &clock, nullptr) == 0;
}

/// Sends the bytes, ends, and reads all that comes back.
std::string exchange(std::uint16_t port, std::string_view bytes) {
  const int connection = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  require(::connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0,
          "the server takes no connection", std::strerror(errno));
  const timeval patience{.tv_sec = 10, .tv_usec = 0};
  ::setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
  ::shutdown(connection, SHUT_WR);
  std::string reply;
  char block[4096];
  ssize_t got = 0;
  while ((got = ::recv(connection, block, sizeof block, 0)) > 0) {
    reply.append(block, static_cast<std::size_t>(got));
  }
  require(got == 0, "the server does not end the connection", std::strerror(errno));
  ::close(connection);
  return reply;
}

/// Takes one reply off the front and gives its body; `has_body` is false for the reply to a HEAD.
std::string take_reply(std::string_view& replies, bool has_body) {
  constexpr std::string_view kBegin = "HTTP/1.1 ";
  constexpr std::string_view kLength = "\r\nContent-Length: ";
  const std::string shown(replies.substr(0, 300));
  require(replies.starts_with(kBegin), "bytes that are no reply", shown);
  const int status = std::atoi(shown.c_str() + kBegin.size());
  const std::size_t end = replies.find("\r\n\r\n");
  require(end != std::string_view::npos, "headers that do not end", shown);
  const std::string_view headers = replies.substr(0, end);
  replies.remove_prefix(end + 4);
  if (status == 100) return take_reply(replies, has_body);
  require(status == 200 || status == 400 || status == 413 || status == 431,
          "a status that the server does not have", shown);
  const std::size_t at = headers.find(kLength);
  require(at != std::string_view::npos, "a reply without a length", shown);
  const std::size_t length =
      has_body ? std::strtoul(headers.data() + at + kLength.size(), nullptr, 10) : 0;
  require(replies.size() >= length, "a reply that was cut", shown);
  const std::string body(replies.substr(0, length));
  replies.remove_prefix(length);
  return body;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static EchoServer server;
  static const bool is_left_alone = leave_the_clock_to_others();
  require(is_left_alone, "the clock cannot be blocked");
  server.take_heads();
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::string replies = exchange(server.port(), bytes);
  std::string_view rest = replies;
  for (const bool is_head : server.take_heads()) take_reply(rest, !is_head);
  // What is refused is the last thing that the server answers on a connection.
  if (rest.starts_with("HTTP/1.1 100 ")) rest.remove_prefix(rest.find("\r\n\r\n") + 4);
  if (!rest.empty()) take_reply(rest, true);
  require(rest.empty(), "bytes behind the last reply", rest);
  const std::string good = exchange(server.port(), kGood);
  rest = good;
  require(take_reply(rest, true) == kGoodBody, "the good request fails afterwards", good);
  return 0;
}

#include "sandbox/connections.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace bench {
namespace {

/// Longer than any answer takes; a server that says nothing is given up.
constexpr int kPatienceMs = 30'000;

[[noreturn]] void fail(const char* what) {
  throw std::system_error(errno, std::system_category(), what);
}

std::int64_t now_ns() {
  return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::nanoseconds(1);
}

int connected(std::uint16_t port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (socket < 0) fail("no more sockets");
  const int on = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
    fail("cannot connect");
  }
  return socket;
}

/// How long the answer is that begins the text; 0 as long as its head is not there.
std::size_t answer_bytes(std::string_view text) {
  constexpr std::string_view kEnd = "\r\n\r\n";
  constexpr std::string_view kLength = "\r\nContent-Length: ";
  const auto end = text.find(kEnd);
  if (end == std::string_view::npos) return 0;
  const auto at = text.substr(0, end).find(kLength);
  std::size_t length = 0;
  if (at == std::string_view::npos) throw std::runtime_error("an answer says no length");
  const std::string_view digits = text.substr(at + kLength.size());
  std::from_chars(digits.data(), digits.data() + digits.size(), length);
  return end + kEnd.size() + length;
}

}  // namespace

Connections::Connections() : events_(::epoll_create1(EPOLL_CLOEXEC)) {
  if (events_ < 0) fail("epoll");
}

Connections::~Connections() {
  close();
  ::close(events_);
}

void Connections::open(std::size_t count, const std::vector<std::uint16_t>& ports) {
  close();
  connections_.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    connections_.push_back({.socket = connected(ports[i % ports.size()])});
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.u64 = i;
    if (::epoll_ctl(events_, EPOLL_CTL_ADD, connections_[i].socket, &event) != 0) fail("epoll");
  }
}

void Connections::close() {
  for (const Connection& each : connections_) {
    if (each.socket >= 0) ::close(each.socket);
  }
  connections_.clear();
}

void Connections::lose(Connection& connection) {
  ::close(connection.socket);
  connection.socket = -1;
  if (!connection.request) return;
  connection.request = nullptr;
  --under_way_;
  ++answers_.lost;
}

void Connections::begin(Connection& connection, const std::string& request) {
  connection.request = &request;
  connection.sent = 0;
  connection.received.clear();
  connection.began_ns = now_ns();
  ++under_way_;
  if (!write(connection)) lose(connection);
}

/// Requests are small beside what a socket takes in, so writing may wait.
bool Connections::write(Connection& connection) const {
  const std::string& text = *connection.request;
  while (connection.sent < text.size()) {
    const ssize_t count = ::send(connection.socket, text.data() + connection.sent,
                                 text.size() - connection.sent, MSG_NOSIGNAL);
    if (count <= 0) return false;
    connection.sent += static_cast<std::size_t>(count);
  }
  return true;
}

bool Connections::read(Connection& connection) {
  static thread_local std::array<char, 256 * 1024> block;
  const ssize_t count = ::recv(connection.socket, block.data(), block.size(), MSG_DONTWAIT);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return false;
  if (count <= 0) {
    lose(connection);
    return false;
  }
  connection.received.append(block.data(), static_cast<std::size_t>(count));
  const std::size_t whole = answer_bytes(connection.received);
  if (whole == 0 || connection.received.size() < whole) return false;
  if (connection.received.size() > whole || !connection.request) {
    throw std::runtime_error("more came back than was asked for");
  }
  return true;
}

Answers Connections::ask(const std::vector<std::string>& texts, std::size_t requests,
                         std::chrono::milliseconds time) {
  answers_ = {};
  std::size_t asked = 0;
  const std::int64_t end_ns = now_ns() + std::chrono::nanoseconds(time).count();
  const auto go_on = [&](Connection& each) {
    if (asked == requests || now_ns() >= end_ns || each.socket < 0) return;
    begin(each, texts[asked++ % texts.size()]);
  };
  for (Connection& each : connections_) go_on(each);
  std::array<epoll_event, 256> events{};
  while (under_way_ > 0) {
    const int count =
        ::epoll_wait(events_, events.data(), static_cast<int>(events.size()), kPatienceMs);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) throw std::runtime_error("a server says nothing any more");
    for (int i = 0; i < count; ++i) {
      Connection& each = connections_[events[static_cast<std::size_t>(i)].data.u64];
      if (!read(each)) continue;
      answers_.times_ns.push_back(now_ns() - each.began_ns);
      if (each.received.starts_with("HTTP/1.1 200 ")) ++answers_.good;
      each.request = nullptr;
      --under_way_;
      go_on(each);
    }
  }
  return std::move(answers_);
}

}  // namespace bench

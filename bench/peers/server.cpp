// Answers each request with the canned reply that its path names, on a free port of the loopback
// address, until its standard input ends.
//
//   server CORE [DELAY-MS]
//
// Each connection has a thread that reads and writes without asking whether it can: what the server
// itself takes is as little as may be, and the same for all. A delay lets whoever counts its
// instructions always find the reply not there yet.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>

#include "common/process.h"
#include "common/replies.h"

namespace {

constexpr std::size_t kChunk = 8192;

std::string in_chunks(std::string_view body) {
  std::string text;
  for (; !body.empty(); body.remove_prefix(std::min(kChunk, body.size()))) {
    const std::string_view chunk = body.substr(0, kChunk);
    std::array<char, 16> size;
    const auto [end, error] =
        std::to_chars(size.data(), size.data() + size.size(), chunk.size(), 16);
    text.append(size.data(), end).append("\r\n").append(chunk).append("\r\n");
  }
  return text + "0\r\n\r\n";
}

std::string reply(const bench::Case& which) {
  const std::string body = envelope(which);
  std::string text =
      which.is_fault ? "HTTP/1.1 500 Internal Server Error\r\n" : "HTTP/1.1 200 OK\r\n";
  text.append("Date: Fri, 05 Jan 2007 13:04:09 GMT\r\nServer: bench\r\n");
  text.append("Content-Type: text/xml; charset=utf-8\r\n");
  if (which.is_chunked) return text + "Transfer-Encoding: chunked\r\n\r\n" + in_chunks(body);
  return text + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

using Replies = std::map<std::string, std::string, std::less<>>;

Replies replies() {
  Replies all;
  for (const bench::Case& each : bench::kCases)
    all.emplace("/" + std::string(each.name), reply(each));
  return all;
}

/// One request; its bytes are gone through as they come.
class Request {
 public:
  explicit Request(int socket) : socket_(socket) {}

  /// False when the connection has ended.
  bool read() {
    bytes_.clear();
    std::size_t body_begin = 0;
    while (body_begin == 0) {
      if (!read_some()) return false;
      const std::size_t end = bytes_.find("\r\n\r\n");
      if (end != std::string::npos) body_begin = end + 4;
    }
    const std::size_t whole = body_begin + announced(body_begin);
    while (bytes_.size() < whole) {
      if (!read_some()) return false;
    }
    return true;
  }

  std::string_view path() const {
    const std::size_t begin = bytes_.find(' ') + 1;
    return std::string_view(bytes_).substr(begin, bytes_.find(' ', begin) - begin);
  }

 private:
  bool read_some() {
    const ssize_t count = ::recv(socket_, block_.data(), block_.size(), 0);
    if (count <= 0) return false;
    bytes_.append(block_.data(), static_cast<std::size_t>(count));
    return true;
  }

  std::size_t announced(std::size_t head_size) const {
    constexpr std::string_view kName = "\r\nContent-Length: ";
    const std::size_t at = bytes_.find(kName);
    std::size_t size = 0;
    if (at >= head_size) return size;
    std::from_chars(bytes_.data() + at + kName.size(), bytes_.data() + head_size, size);
    return size;
  }

  int socket_;
  std::string bytes_;
  std::array<char, 16 * 1024> block_;
};

bool send_all(int socket, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

void serve(int socket, const Replies& all, std::chrono::milliseconds delay) {
  const int on = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
  for (Request request(socket); request.read();) {
    const auto found = all.find(request.path());
    if (found == all.end()) break;
    if (delay.count() != 0) std::this_thread::sleep_for(delay);
    if (!send_all(socket, found->second)) break;
  }
  ::close(socket);
}

int listening_socket() {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  // Room for the larger replies, so that what reads them finds them whole.
  const int room = 1 << 20;
  ::setsockopt(listener, SOL_SOCKET, SO_SNDBUF, &room, sizeof(room));
  if (::bind(listener, generic, size) != 0 || ::listen(listener, 64) != 0 ||
      ::getsockname(listener, generic, &size) != 0) {
    throw std::runtime_error("no socket on 127.0.0.1 to be had");
  }
  std::printf("http://127.0.0.1:%d\n", ntohs(address.sin_port));
  std::fflush(stdout);
  return listener;
}

}  // namespace

int main(int argc, char** argv) {
  bench::stay_on_core(argc > 1 ? std::atoi(argv[1]) : -1);
  const std::chrono::milliseconds delay(argc > 2 ? std::atoi(argv[2]) : 0);
  const Replies all = replies();
  const int listener = listening_socket();
  std::thread([] {
    while (std::getchar() != EOF) continue;
    std::_Exit(0);
  }).detach();
  while (true) {
    const int socket = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) continue;
    std::thread(serve, socket, std::cref(all), delay).detach();
  }
}

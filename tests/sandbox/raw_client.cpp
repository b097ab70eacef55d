#include "sandbox/raw_client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <utility>

namespace bvconn::test {

std::string RawReply::header(std::string_view name) const {
  const std::string start = "\r\n" + std::string(name) + ": ";
  const auto at = headers.find(start);
  if (at == std::string::npos) return {};
  const auto first = at + start.size();
  return headers.substr(first, headers.find("\r\n", first) - first);
}

RawClient::RawClient(std::uint16_t port) : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    ::close(socket_);
    socket_ = -1;
  }
}

RawClient::~RawClient() {
  if (socket_ >= 0) ::close(socket_);
}

bool RawClient::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

void RawClient::finish() {
  ::shutdown(socket_, SHUT_WR);
}

bool RawClient::read_more(std::chrono::steady_clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
      deadline - std::chrono::steady_clock::now());
  if (left.count() <= 0) return false;
  pollfd waiting{.fd = socket_, .events = POLLIN, .revents = 0};
  if (::poll(&waiting, 1, static_cast<int>(left.count())) != 1) return false;
  std::array<char, 16384> bytes{};
  const auto count = ::recv(socket_, bytes.data(), bytes.size(), 0);
  if (count <= 0) return false;
  pending_.append(bytes.data(), static_cast<std::size_t>(count));
  return true;
}

RawReply RawClient::read_headers(std::chrono::steady_clock::time_point deadline) {
  constexpr std::string_view kEnd = "\r\n\r\n";
  while (pending_.find(kEnd) == std::string::npos) {
    if (!read_more(deadline)) return {};
  }
  RawReply reply;
  const auto size = pending_.find(kEnd) + kEnd.size();
  reply.headers = pending_.substr(0, size);
  pending_.erase(0, size);
  const char* const number = reply.headers.data() + std::string_view("HTTP/1.1 ").size();
  std::from_chars(number, reply.headers.data() + size, reply.status);
  return reply;
}

RawReply RawClient::receive_head() {
  return read_headers(std::chrono::steady_clock::now() + std::chrono::seconds(10));
}

RawReply RawClient::receive(std::chrono::milliseconds patience) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  RawReply reply = read_headers(deadline);
  was_cut_ = reply.status == 0 && !pending_.empty();
  std::size_t length = 0;
  const std::string length_text = reply.header("Content-Length");
  std::from_chars(length_text.data(), length_text.data() + length_text.size(), length);
  while (pending_.size() < length) {
    if (read_more(deadline)) continue;
    was_cut_ = true;
    return {};
  }
  reply.body = pending_.substr(0, length);
  pending_.erase(0, length);
  return reply;
}

std::string RawClient::receive_some(std::chrono::milliseconds patience) {
  read_more(std::chrono::steady_clock::now() + patience);
  return std::exchange(pending_, {});
}

bool RawClient::ends(std::chrono::milliseconds patience) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (read_more(deadline)) {
  }
  return std::chrono::steady_clock::now() < deadline;
}

std::string http_request(std::string_view method, std::string_view target, std::string_view headers,
                         std::string_view body) {
  std::string request;
  request.append(method).append(" ").append(target).append(" HTTP/1.1\r\nHost: localhost\r\n");
  request.append(headers).append("Content-Length: ").append(std::to_string(body.size()));
  request.append("\r\n\r\n").append(body);
  return request;
}

RawReply exchange(std::uint16_t port, std::string_view request) {
  RawClient client(port);
  if (!client.connected() || !client.send(request)) return {};
  return client.receive();
}

}  // namespace bvconn::test

#include "automation/scripted_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace bvconn::test {
namespace {

int bind_loopback(std::uint16_t& port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  if (socket < 0 || ::bind(socket, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("no loopback socket");
  }
  port = ntohs(address.sin_port);
  return socket;
}

std::string url_of(std::uint16_t port) {
  return "http://127.0.0.1:" + std::to_string(port) + "/";
}

std::size_t content_length(const std::string& headers) {
  const std::size_t at = headers.find("Content-Length:");
  return at == std::string::npos ? 0 : std::strtoul(headers.c_str() + at + 15, nullptr, 10);
}

}  // namespace

ScriptedServer::ScriptedServer() : listener_(bind_loopback(port_)) {
  if (::listen(listener_, 16) != 0) throw std::runtime_error("cannot listen");
  thread_ = std::thread([this] { serve(); });
}

ScriptedServer::~ScriptedServer() {
  stopping_ = true;
  thread_.join();
  ::close(listener_);
}

std::string ScriptedServer::url() const {
  return url_of(port_);
}

void ScriptedServer::reply(std::string body) {
  reply_with("HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=utf-8\r\n", std::move(body));
}

void ScriptedServer::reply_with(std::string head, std::string body) {
  head.append("Connection: close\r\nContent-Length: ").append(std::to_string(body.size()));
  const std::lock_guard lock(mutex_);
  replies_.push_back(head + "\r\n\r\n" + body);
}

std::vector<ScriptedServer::Request> ScriptedServer::requests() {
  const std::lock_guard lock(mutex_);
  return requests_;
}

void ScriptedServer::serve() {
  while (!stopping_) {
    pollfd waiting{.fd = listener_, .events = POLLIN, .revents = 0};
    if (::poll(&waiting, 1, 20) <= 0) continue;
    const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection < 0) continue;
    answer(connection);
    ::close(connection);
  }
}

void ScriptedServer::answer(int connection) {
  std::string data;
  std::size_t head_end = std::string::npos;
  char buffer[4096];
  while (head_end == std::string::npos ||
         data.size() < head_end + 4 + content_length(data.substr(0, head_end))) {
    const ssize_t count = ::recv(connection, buffer, sizeof(buffer), 0);
    if (count <= 0) return;
    data.append(buffer, static_cast<std::size_t>(count));
    head_end = data.find("\r\n\r\n");
  }
  const std::size_t line_end = data.find("\r\n");
  std::string reply = "HTTP/1.1 500 Not Scripted\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
  {
    const std::lock_guard lock(mutex_);
    requests_.push_back({.line = data.substr(0, line_end),
                         .headers = data.substr(line_end + 2, head_end - line_end),
                         .body = data.substr(head_end + 4)});
    if (!replies_.empty()) {
      reply = std::move(replies_.front());
      replies_.pop_front();
    }
  }
  for (std::size_t sent = 0; sent < reply.size();) {
    const ssize_t count =
        ::send(connection, reply.data() + sent, reply.size() - sent, MSG_NOSIGNAL);
    if (count <= 0) return;
    sent += static_cast<std::size_t>(count);
  }
  ::shutdown(connection, SHUT_WR);
  while (::recv(connection, buffer, sizeof(buffer), 0) > 0) {
  }
}

std::string dead_url() {
  std::uint16_t port = 0;
  // Bound but not listening: connections are refused.
  static const int socket = bind_loopback(port);
  static const std::uint16_t dead_port = port;
  (void)socket;
  return url_of(dead_port);
}

std::string reply_envelope(const std::string& inner, const std::string& method) {
  return "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
         "<SOAP-ENV:Body><" +
         method + ">" + inner + "</" + method + "></SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

std::string fault_envelope(const std::string& code, const std::string& text) {
  return reply_envelope(
      "<faultcode>" + code + "</faultcode><faultstring>" + text + "</faultstring>",
      "SOAP-ENV:Fault");
}

}  // namespace bvconn::test

#include "lasting/echo_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <vector>

namespace bvconn::test {
namespace {

constexpr std::string_view kEnvelope =
    "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body>";
constexpr std::string_view kEnd = "</e:Body></e:Envelope>";

std::string reply(std::string_view status, std::string_view type, std::string_view body,
                  std::string_view header = "") {
  std::string text("HTTP/1.1 ");
  text.append(status).append("\r\nContent-Type: ").append(type);
  text.append("\r\nContent-Length: ").append(std::to_string(body.size())).append("\r\n");
  return text.append(header).append("\r\n").append(body);
}

std::string good_body(const Mark& mark) {
  std::string body(kEnvelope);
  body.append("<r><return>");
  switch (mark.answering) {
    case Answering::kAddress:
      body.append("http://answer.example/").append(mark.text());
      break;
    case Answering::kTrue:
      body.append("true");
      break;
    case Answering::kNumber:
      body.append("7");
      break;
  }
  return body.append("</return>").append(echo_of(mark)).append("</r>").append(kEnd);
}

std::string fault(std::string_view code, std::string_view text) {
  std::string body(kEnvelope);
  body.append("<e:Fault><faultcode>").append(code).append("</faultcode><faultstring>");
  return body.append(text).append("</faultstring></e:Fault>").append(kEnd);
}

constexpr std::string_view kXml = "text/xml; charset=utf-8";

/// The bytes of an answer; none where the connection ends without a word.
std::string bytes_of(const Mark& mark) {
  switch (mark.mishap) {
    case Mishap::kReset:
    case Mishap::kClosed:
    case Mishap::kSilence:
      return "";
    case Mishap::kCut: {
      const std::string whole = reply("200 OK", kXml, good_body(mark));
      return whole.substr(0, whole.size() - 40);
    }
    case Mishap::kFault:
      return reply("500 Internal Server Error", kXml, fault("10041", "no such thing"));
    case Mishap::kRefused:
      return reply("503 Service Unavailable", "text/html", "<html>later</html>");
    case Mishap::kNotXml:
      return reply("200 OK", kXml, "<e:Envelope><not closed");
    case Mishap::kNone:
      break;
  }
  return reply("200 OK", kXml, good_body(mark));
}

bool ends_connection(Mishap mishap) {
  return mishap == Mishap::kReset || mishap == Mishap::kClosed || mishap == Mishap::kCut;
}

/// The bytes of the body that a request's head announces, as the library writes it.
std::size_t announced(std::string_view head) {
  constexpr std::string_view kName = "\r\nContent-Length: ";
  const std::size_t at = head.find(kName);
  std::size_t size = 0;
  if (at == std::string_view::npos) return size;
  std::from_chars(head.data() + at + kName.size(), head.data() + head.size(), size);
  return size;
}

bool send_all(int socket, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

/// The mark of a request. Its own stand in the request line and in the body; where an operation of
/// the data access layer sends none, that of its login counts. Nothing where several calls meet.
std::optional<Mark> mark_of(std::string_view head, std::string_view body) {
  const std::string_view line = head.substr(0, head.find('\r'));
  std::vector<Mark> own = marks_in(line);
  const std::vector<Mark> others = marks_in(body);
  own.insert(own.end(), others.begin(), others.end());
  const std::vector<Mark> login = marks_in(head.substr(line.size()));
  if (own.empty() && login.empty()) return std::nullopt;
  const Mark mark = own.empty() ? login.front() : own.front();
  const auto is_mark = [&](const Mark& each) { return each == mark; };
  const auto is_of_session = [&](const Mark& each) {
    return each.thread == mark.thread && each.session == mark.session;
  };
  if (!std::all_of(own.begin(), own.end(), is_mark)) return std::nullopt;
  if (!std::all_of(login.begin(), login.end(), is_of_session)) return std::nullopt;
  return mark;
}

}  // namespace

std::string echo_of(const Mark& mark) {
  return "<echo>" + mark.text() + "</echo>";
}

EchoServer::EchoServer() : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  std::array<int, 2> ends{-1, -1};
  if (::bind(listener_, generic, size) != 0 || ::listen(listener_, 128) != 0 ||
      ::getsockname(listener_, generic, &size) != 0 || ::pipe(ends.data()) != 0) {
    throw std::runtime_error("no socket on 127.0.0.1 to be had");
  }
  port_ = ntohs(address.sin_port);
  stop_reader_ = ends[0];
  stop_writer_ = ends[1];
}

EchoServer::~EchoServer() {
  for (const Connection& connection : connections_) ::close(connection.socket);
  for (const int descriptor : {listener_, stop_reader_, stop_writer_}) ::close(descriptor);
}

std::string EchoServer::url(std::string_view path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + std::string(path);
}

void EchoServer::stop() {
  const char word = 0;
  if (::write(stop_writer_, &word, 1) != 1) throw std::runtime_error("the server cannot be ended");
}

void EchoServer::serve() {
  while (true) {
    std::vector<pollfd> waiting{{stop_reader_, POLLIN, 0}, {listener_, POLLIN, 0}};
    for (const Connection& each : connections_) waiting.push_back({each.socket, POLLIN, 0});
    if (::poll(waiting.data(), waiting.size(), -1) < 0) continue;
    if (waiting[0].revents != 0) return;
    std::size_t index = 2;
    for (auto at = connections_.begin(); at != connections_.end();) {
      const bool ended = waiting[index++].revents != 0 && !read(*at);
      if (ended) ::close(at->socket);
      at = ended ? connections_.erase(at) : std::next(at);
    }
    if (waiting[1].revents != 0) take_connection();
    open_ = static_cast<int>(connections_.size());
  }
}

void EchoServer::take_connection() {
  const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  if (socket >= 0) connections_.push_back({.socket = socket});
}

bool EchoServer::read(Connection& connection) {
  std::array<char, 16 * 1024> block;
  const ssize_t count = ::recv(connection.socket, block.data(), block.size(), 0);
  if (count <= 0) return false;
  std::string& bytes = connection.unread;
  bytes.append(block.data(), static_cast<std::size_t>(count));
  const std::size_t head_end = bytes.find("\r\n\r\n");
  if (head_end == std::string::npos) return true;
  const std::string_view head = std::string_view(bytes).substr(0, head_end + 4);
  const std::size_t whole = head.size() + announced(head);
  if (bytes.size() < whole) return true;
  const bool goes_on = answer(connection, head, std::string_view(bytes).substr(head.size()));
  bytes.clear();
  return goes_on;
}

bool EchoServer::answer(const Connection& connection, std::string_view head,
                        std::string_view body) {
  const auto mark = mark_of(head, body);
  if (!mark) {
    ++mixed_;
    return send_all(connection.socket, reply("400 Bad Request", "text/plain", "whose is it?"));
  }
  const auto goes_to = [&](std::string_view operation) {
    return head.find("/AuthenticationService/" + std::string(operation) + " ") !=
           std::string_view::npos;
  };
  if (goes_to("Login")) {
    const std::string token = "Session-Token: " + mark->text() + "\r\n";
    return send_all(connection.socket, reply("200 OK", "text/plain", "welcome", token));
  }
  if (goes_to("GetDisabledServices")) {
    return send_all(connection.socket, reply("200 OK", "text/plain", ""));
  }
  const bool sent = send_all(connection.socket, bytes_of(*mark));
  if (mark->mishap == Mishap::kReset) {
    const linger at_once{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(connection.socket, SOL_SOCKET, SO_LINGER, &at_once, sizeof(at_once));
  }
  return sent && !ends_connection(mark->mishap);
}

}  // namespace bvconn::test

#include "support/misbehaving_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <iterator>
#include <stdexcept>

namespace bvconn::test {
namespace {

using Kind = Step::Kind;

class PlainStream final : public ServerStream {
 public:
  explicit PlainStream(int socket) : socket_(socket) {}

  ssize_t read(char* data, std::size_t size) override { return ::recv(socket_, data, size, 0); }

  bool write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (sent <= 0) {
        return false;
      }
      bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
  }

 private:
  int socket_;
};

std::string lower_case(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return lower;
}

// The size of the body that a request's head announces.
std::size_t body_size(std::string_view head) {
  constexpr std::string_view kName = "\r\ncontent-length:";
  const std::string lower = lower_case(head);
  std::size_t at = lower.find(kName);
  if (at == std::string::npos) {
    return 0;
  }
  at = lower.find_first_not_of(' ', at + kName.size());
  std::size_t size = 0;
  std::from_chars(lower.data() + at, lower.data() + lower.size(), size);
  return size;
}

std::string head(std::string_view status_line, const answers::Headers& headers) {
  std::string text(status_line);
  text += "\r\n";
  for (const auto& [name, value] : headers) {
    text.append(name).append(": ").append(value).append("\r\n");
  }
  return text + "\r\n";
}

std::string xml_head(const answers::Headers& headers = {}) {
  answers::Headers all = headers;
  all.insert(all.begin(), {"Content-Type", std::string(answers::kXml)});
  return head("HTTP/1.1 200 OK", all);
}

std::string hex(std::size_t number) {
  std::array<char, 16> digits{};
  const auto [end, code] = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16);
  return {digits.data(), end};
}

// A client that went away must not end the test program, and the program's other threads keep the
// signal, so that the code under test has to cope with it.
void block_broken_pipe_signal() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void shut_down(int socket) {
  ::shutdown(socket, SHUT_RDWR);
}

// False when the connection is over.
bool play_step(const Step& step, int socket, ServerStream& stream) {
  switch (step.kind) {
    case Kind::kSend:
      return stream.write(step.bytes);
    case Kind::kBelow:
      return PlainStream(socket).write(step.bytes);
    case Kind::kRepeat:
      while (stream.write(step.bytes)) {
      }
      return false;
    case Kind::kWait: {
      // Nothing to wait for but the end of the connection, by either side.
      pollfd end{socket, POLLRDHUP, 0};
      return ::poll(&end, 1, static_cast<int>(step.pause.count())) == 0;
    }
    case Kind::kHang: {
      char ignored = 0;
      while (stream.read(&ignored, 1) > 0) {
      }
      return false;
    }
    case Kind::kUnread: {
      pollfd arrival{socket, POLLIN, 0};
      return ::poll(&arrival, 1, -1) > 0;
    }
    case Kind::kClose:
      stream.say_goodbye();
      return false;
    case Kind::kReset: {
      const linger at_once{.l_onoff = 1, .l_linger = 0};
      ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &at_once, sizeof(at_once));
      return false;
    }
    case Kind::kCut:
    case Kind::kDeaf:
      return false;
  }
  return false;
}

}  // namespace

bool play(const Answer& answer, int socket, ServerStream& stream) {
  return std::all_of(answer.begin(), answer.end(),
                     [&](const Step& step) { return play_step(step, socket, stream); });
}

Answer operator+(Answer first, Answer then) {
  first.insert(first.end(), std::make_move_iterator(then.begin()),
               std::make_move_iterator(then.end()));
  return first;
}

namespace answers {

Answer raw(std::string_view bytes) {
  return {{.bytes = std::string(bytes)}};
}

Answer reply(std::string_view body, std::string_view status, std::string_view content_type,
             const Headers& headers) {
  Headers all;
  if (!content_type.empty()) {
    all.emplace_back("Content-Type", content_type);
  }
  all.insert(all.end(), headers.begin(), headers.end());
  all.emplace_back("Content-Length", std::to_string(body.size()));
  return raw(head("HTTP/1.1 " + std::string(status), all) + std::string(body));
}

Answer brands() {
  return reply(
      "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body><r>"
      "<return>the brands</return></r></e:Body></e:Envelope>",
      "200 OK", kXml, {{"Session-Token", "T"}});
}

Answer wrong_length(std::string_view body, std::size_t stated_length) {
  return raw(xml_head({{"Content-Length", std::to_string(stated_length)}}) + std::string(body));
}

Answer chunked(std::string_view body, std::size_t chunk_size, const Headers& headers) {
  Headers all = headers;
  all.emplace_back("Transfer-Encoding", "chunked");
  std::string text = xml_head(all);
  while (!body.empty()) {
    const std::string_view chunk = body.substr(0, chunk_size);
    text.append(hex(chunk.size())).append("\r\n").append(chunk).append("\r\n");
    body.remove_prefix(chunk.size());
  }
  return raw(text + "0\r\n\r\n");
}

Answer close_delimited(std::string_view body) {
  return then_close(raw(xml_head() + std::string(body)));
}

Answer http10(std::string_view body) {
  return then_close(
      raw(head("HTTP/1.0 200 OK", {{"Content-Type", std::string(kXml)}}) + std::string(body)));
}

Answer fault(std::string_view faultstring) {
  const std::string body =
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><e:Fault>"
      "<faultcode>e:Server</faultcode><faultstring>" +
      std::string(faultstring) + "</faultstring></e:Fault></e:Body></e:Envelope>";
  return reply(body, "500 Internal Server Error");
}

Answer redirect(std::string_view location) {
  return reply("", "302 Found", "text/html", {{"Location", std::string(location)}});
}

Answer cut_body(std::string_view body, std::size_t arrives) {
  return then_close(wrong_length(body.substr(0, arrives), body.size()));
}

Answer cut_chunk() {
  return then_close(raw(xml_head({{"Transfer-Encoding", "chunked"}}) + "8\r\n<ok/>"));
}

Answer cut_headers() {
  return then_close(raw("HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n"));
}

Answer close_before_status() {
  return {{.kind = Kind::kClose}};
}

Answer garbage() {
  return then_close(raw("\x01\x02 this is not HTTP\r\n\r\n<ok/>"));
}

Answer endless_headers() {
  return raw("HTTP/1.1 200 OK\r\n") + Answer{{.kind = Kind::kRepeat, .bytes = "X-Filler: 0\r\n"}};
}

Answer endless_header_line() {
  return raw("HTTP/1.1 200 OK\r\nX-Filler: ") + Answer{{.kind = Kind::kRepeat, .bytes = "0000"}};
}

Answer endless_body() {
  return raw(xml_head()) + Answer{{.kind = Kind::kRepeat, .bytes = std::string(1000, ' ')}};
}

Answer dribble(std::string_view body, std::chrono::milliseconds pause) {
  const Answer whole = reply(body);
  Answer slow;
  for (const char byte : whole.front().bytes) {
    slow.push_back({.bytes = std::string(1, byte)});
    slow.push_back({.kind = Kind::kWait, .pause = pause});
  }
  return slow;
}

Answer never() {
  return {{.kind = Kind::kHang}};
}

Answer continue_first(Answer answer) {
  return raw("HTTP/1.1 100 Continue\r\nX-Interim: yes\r\n\r\n") + std::move(answer);
}

Answer then_close(Answer answer) {
  return std::move(answer) + Answer{{.kind = Kind::kClose}};
}

Answer then_reset_next(Answer answer) {
  return std::move(answer) + Answer{{.kind = Kind::kUnread}, {.kind = Kind::kReset}};
}

}  // namespace answers

struct MisbehavingServer::Connection {
  int number = 0;
  int socket = -1;
  std::string unread{};
  bool closed = false;
  std::thread thread{};
};

std::function<std::unique_ptr<ServerStream>(int socket)> plain_streams() {
  return [](int socket) { return std::make_unique<PlainStream>(socket); };
}

MisbehavingServer::MisbehavingServer() : MisbehavingServer(plain_streams()) {}

MisbehavingServer::MisbehavingServer(StreamMaker make_stream, Until until)
    : make_stream_(std::move(make_stream)), listener_(::socket(AF_INET, SOCK_STREAM, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (::bind(listener_, generic, size) != 0 || ::getsockname(listener_, generic, &size) != 0) {
    throw std::runtime_error("no socket on 127.0.0.1 to be had");
  }
  port_ = ntohs(address.sin_port);
  if (until == Until::kFull) {
    fill_queue();
  } else if (until == Until::kNoMatter) {
    start();
  }
  acceptor_ = std::thread([this] { accept_connections(); });
}

// A queue that is said to have no places has one.
void MisbehavingServer::fill_queue() {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port_);
  waiting_ = ::socket(AF_INET, SOCK_STREAM, 0);
  if (::listen(listener_, 0) != 0 ||
      ::connect(waiting_, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
    throw std::runtime_error("the queue of a socket cannot be filled");
  }
}

void MisbehavingServer::start() {
  if (waiting_ >= 0) {
    shut_down(waiting_);
  }
  if (::listen(listener_, 64) != 0) {
    throw std::runtime_error("no connections on 127.0.0.1 to be had");
  }
  {
    const std::scoped_lock lock(mutex_);
    started_ = true;
  }
  changed_.notify_all();
}

MisbehavingServer::~MisbehavingServer() {
  {
    const std::scoped_lock lock(mutex_);
    stopping_ = true;
    for (const Connection& connection : connections_) {
      if (!connection.closed) {
        shut_down(connection.socket);
      }
    }
  }
  changed_.notify_all();
  shut_down(listener_);
  acceptor_.join();
  if (waiting_ >= 0) {
    ::close(waiting_);
  }
  for (Connection& connection : connections_) {
    connection.thread.join();
  }
  ::close(listener_);
}

void MisbehavingServer::otherwise(Answer answer) {
  const std::scoped_lock lock(mutex_);
  otherwise_ = std::move(answer);
}

void MisbehavingServer::answer(Answer next) {
  const std::scoped_lock lock(mutex_);
  script_.push_back(std::move(next));
}

void MisbehavingServer::answer(std::initializer_list<Answer> next) {
  const std::scoped_lock lock(mutex_);
  script_.insert(script_.end(), next.begin(), next.end());
}

std::string MisbehavingServer::url(std::string_view path, std::string_view scheme) const {
  return std::string(scheme) + "://" + host() + std::string(path);
}

std::string MisbehavingServer::host() const {
  return "127.0.0.1:" + std::to_string(port_);
}

std::vector<SeenRequest> MisbehavingServer::requests() const {
  const std::scoped_lock lock(mutex_);
  return requests_;
}

SeenRequest MisbehavingServer::last_request() const {
  const std::scoped_lock lock(mutex_);
  return requests_.empty() ? SeenRequest() : requests_.back();
}

int MisbehavingServer::connections() const {
  const std::scoped_lock lock(mutex_);
  return static_cast<int>(connections_.size());
}

bool MisbehavingServer::wait_for_closed(int count) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, std::chrono::seconds(5), [&] { return closed_ >= count; });
}

void MisbehavingServer::accept_connections() {
  {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return started_ || stopping_; });
  }
  while (true) {
    const int socket = ::accept(listener_, nullptr, nullptr);
    const std::scoped_lock lock(mutex_);
    if (socket < 0 || stopping_) {
      ::close(socket);
      return;
    }
    Connection& connection = connections_.emplace_back();
    connection.number = static_cast<int>(connections_.size());
    connection.socket = socket;
    connection.thread = std::thread([this, &connection] { serve(connection); });
  }
}

void MisbehavingServer::serve(Connection& connection) {
  block_broken_pipe_signal();
  if (const std::unique_ptr<ServerStream> stream = make_stream_(connection.socket)) {
    while (read_request(connection, *stream) && play_here(next_answer(), connection, *stream)) {
    }
  }
  {
    const std::scoped_lock lock(mutex_);
    ::close(connection.socket);
    connection.closed = true;
    ++closed_;
  }
  changed_.notify_all();
}

bool MisbehavingServer::read_request(Connection& connection, ServerStream& stream) {
  std::string& bytes = connection.unread;
  std::size_t whole = std::string::npos;
  std::size_t head_size = 0;
  while (bytes.size() < whole) {
    if (whole == std::string::npos) {
      const std::size_t end = bytes.find("\r\n\r\n");
      if (end != std::string::npos) {
        head_size = end + 4;
        whole = head_size + body_size(std::string_view(bytes).substr(0, head_size));
        continue;
      }
    }
    std::array<char, 16 * 1024> block;
    const ssize_t count = stream.read(block.data(), block.size());
    if (count <= 0) {
      return false;
    }
    bytes.append(block.data(), static_cast<std::size_t>(count));
  }
  const std::scoped_lock lock(mutex_);
  requests_.push_back({.bytes = bytes.substr(0, whole),
                       .body = bytes.substr(head_size, whole - head_size),
                       .connection = connection.number});
  bytes.erase(0, whole);
  return true;
}

bool MisbehavingServer::play_here(const Answer& answer, Connection& connection,
                                  ServerStream& stream) {
  return std::all_of(answer.begin(), answer.end(), [&](const Step& step) {
    if (step.kind == Kind::kDeaf) {
      shut_down(listener_);
      return true;
    }
    return play({step}, connection.socket, stream);
  });
}

Answer MisbehavingServer::next_answer() {
  const std::scoped_lock lock(mutex_);
  if (script_.empty()) {
    return otherwise_;
  }
  Answer next = std::move(script_.front());
  script_.pop_front();
  return next;
}

}  // namespace bvconn::test

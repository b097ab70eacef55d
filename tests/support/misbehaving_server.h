#pragma once

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <initializer_list>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace bvconn::test {

/// A whole request as it arrived.
struct SeenRequest {
  std::string bytes;  ///< everything, head and body
  std::string body;
  int connection = 0;  ///< which connection of the server it came on, from 1
};

/// One thing that the server does while it answers.
struct Step {
  enum class Kind {
    kSend,    ///< sends `bytes`
    kBelow,   ///< sends `bytes` below TLS, as they stand; over plain sockets as kSend
    kRepeat,  ///< sends `bytes` again and again, until the client goes away
    kWait,    ///< waits for `pause`
    kHang,    ///< waits until the client goes away
    kUnread,  ///< waits until the next request has begun to arrive, and leaves it unread
    kClose,   ///< closes in order
    kCut,     ///< closes without the closing words of TLS; over plain sockets as kClose
    kReset,   ///< resets the connection
    kDeaf,    ///< takes no further connections from now on
  };
  Kind kind = Kind::kSend;
  std::string bytes{};
  std::chrono::milliseconds pause{0};
};

/// What the server does with one request. After the last step it waits for the next request on the
/// same connection.
using Answer = std::vector<Step>;

/// The answer and what comes after it.
Answer operator+(Answer first, Answer then);

/// Answers by their names. Bodies are XML unless it says otherwise.
namespace answers {

using Headers = std::vector<std::pair<std::string, std::string>>;

inline constexpr std::string_view kXml = "text/xml; charset=utf-8";

/// Any bytes, taken for a reply.
Answer raw(std::string_view bytes);
/// A reply with a right Content-Length, by itself or with further headers.
Answer reply(std::string_view body, std::string_view status = "200 OK",
             std::string_view content_type = kXml, const Headers& headers = {});
/// What answers a search for brands on both routes: one text, "the brands", and a token.
Answer brands();
/// A reply that states another length than its body has.
Answer wrong_length(std::string_view body, std::size_t stated_length);
/// In chunks of so many bytes.
Answer chunked(std::string_view body, std::size_t chunk_size, const Headers& headers = {});
/// Without a length: the end of the connection is the end of the body.
Answer close_delimited(std::string_view body);
/// An HTTP/1.0 reply, without a length.
Answer http10(std::string_view body);
/// A SOAP fault with the status that faults have.
Answer fault(std::string_view faultstring);
Answer redirect(std::string_view location);
Answer cut_body(std::string_view body, std::size_t arrives);
Answer cut_chunk();
Answer cut_headers();
Answer close_before_status();
Answer garbage();
Answer endless_headers();
Answer endless_header_line();
Answer endless_body();
/// A whole reply, but one byte at a time with a pause after each.
Answer dribble(std::string_view body, std::chrono::milliseconds pause);
Answer never();
/// A 100 Continue ahead of the answer.
Answer continue_first(Answer answer);
/// The answer, and then the connection is closed in order, without a word ahead.
Answer then_close(Answer answer);
/// The answer; then, when the next request arrives on this connection, it is reset unread.
Answer then_reset_next(Answer answer);

}  // namespace answers

/// The server's end of one connection.
class ServerStream {
 public:
  virtual ~ServerStream() = default;
  /// Bytes read, 0 at the end, negative when the connection is gone.
  virtual ssize_t read(char* data, std::size_t size) = 0;
  virtual bool write(std::string_view bytes) = 0;
  /// Says goodbye where the protocol has words for it; the socket is closed by the server.
  virtual void say_goodbye() {}
};

/// Streams over the sockets as they are.
std::function<std::unique_ptr<ServerStream>(int socket)> plain_streams();

/// Takes the steps on a connection; false when the connection is over. There is no kDeaf here.
bool play(const Answer& answer, int socket, ServerStream& stream);

/// A server on 127.0.0.1 that answers each request with the next scripted answer, and with one that
/// is always the same when none is left. It records every request, whole. One thread for each
/// connection; all of them are ended and joined when the server is destroyed, whatever they wait
/// for.
class MisbehavingServer {
 public:
  /// Makes the stream on an accepted socket; null when the handshake fails.
  using StreamMaker = std::function<std::unique_ptr<ServerStream>(int socket)>;

  /// Before `start`.
  enum class Until : std::uint8_t {
    kStarted,   ///< the port is the server's own, and refuses connections
    kFull,      ///< its queue of connections is full, so that further ones wait
    kNoMatter,  ///< it was started at once
  };

  MisbehavingServer();
  explicit MisbehavingServer(StreamMaker make_stream, Until until = Until::kNoMatter);
  ~MisbehavingServer();
  MisbehavingServer(const MisbehavingServer&) = delete;
  MisbehavingServer& operator=(const MisbehavingServer&) = delete;

  /// Begins to take connections.
  void start();

  /// What a request gets when no answer is left; "<ok/>" until it is set.
  void otherwise(Answer answer);

  /// Adds answers to the script.
  void answer(Answer next);
  void answer(std::initializer_list<Answer> next);

  std::uint16_t port() const { return port_; }
  /// "http://127.0.0.1:port" and the path.
  std::string url(std::string_view path = "/", std::string_view scheme = "http") const;
  /// "127.0.0.1:port"
  std::string host() const;

  std::vector<SeenRequest> requests() const;
  SeenRequest last_request() const;
  int connections() const;
  /// Waits until so many connections were closed by either side; false after five seconds.
  bool wait_for_closed(int count) const;

 private:
  struct Connection;

  void accept_connections();
  void serve(Connection& connection);
  bool read_request(Connection& connection, ServerStream& stream);
  bool play_here(const Answer& answer, Connection& connection, ServerStream& stream);
  void fill_queue();
  Answer next_answer();

  StreamMaker make_stream_;
  int listener_ = -1;
  std::uint16_t port_ = 0;
  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  bool started_ = false;
  bool stopping_ = false;
  int closed_ = 0;
  std::deque<Answer> script_;
  Answer otherwise_ = answers::reply("<ok/>");
  int waiting_ = -1;  ///< the connection that fills the queue
  std::vector<SeenRequest> requests_;
  std::list<Connection> connections_;
  std::thread acceptor_;
};

}  // namespace bvconn::test

#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace bvconn::test {

/// What came back over a connection.
struct RawReply {
  int status = 0;       ///< 0: nothing, or nothing that is HTTP
  std::string headers;  ///< the status line and all headers
  std::string body;

  /// The value of a header, by its exact name; "" when there is none.
  std::string header(std::string_view name) const;
};

/// A bare TCP connection to 127.0.0.1: it can send what no HTTP client would.
class RawClient {
 public:
  explicit RawClient(std::uint16_t port);
  ~RawClient();
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;

  bool connected() const { return socket_ >= 0; }
  /// False when the other side does not take it.
  bool send(std::string_view bytes);
  /// No more will be sent.
  void finish();
  /// Reads one reply by its Content-Length.
  RawReply receive(std::chrono::milliseconds patience = std::chrono::seconds(10));
  /// Reads the reply to a HEAD: status line and headers.
  RawReply receive_head();
  /// Whether the last reply that was read began to come and did not end.
  bool was_cut() const { return was_cut_; }
  /// What comes within this time, whatever it is.
  std::string receive_some(std::chrono::milliseconds patience);
  /// Whether the other side ends the connection within this time.
  bool ends(std::chrono::milliseconds patience = std::chrono::seconds(10));

 private:
  /// Waits for bytes and adds them to what has come; false at the end, an error or after the wait.
  bool read_more(std::chrono::steady_clock::time_point deadline);

  RawReply read_headers(std::chrono::steady_clock::time_point deadline);

  int socket_ = -1;
  bool was_cut_ = false;
  std::string pending_;
};

/// A request as text; Content-Length is added.
std::string http_request(std::string_view method, std::string_view target, std::string_view headers,
                         std::string_view body);

/// Sends a request on a connection of its own and reads the reply.
RawReply exchange(std::uint16_t port, std::string_view request);

}  // namespace bvconn::test

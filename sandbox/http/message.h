#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bvconn::sandbox {

struct Header {
  std::string name;
  std::string value;
};

/// A request as it arrived, complete and within the limits.
struct Request {
  std::string method;
  std::string target;
  std::vector<Header> headers;
  std::string body;

  /// The value of the first header of this name, in any case.
  std::optional<std::string> header(std::string_view name) const;
  /// The target without its query.
  std::string_view path() const;
};

/// The media type of a Content-Type header in lower case, without its parameters.
std::string media_type(std::string_view content_type);
/// The charset parameter of a Content-Type header, without quotes; "" when there is none.
std::string charset(std::string_view content_type);

/// How a reply leaves, where it does not simply do so: what goes wrong below a well-made reply.
struct Delivery {
  /// Before the first byte.
  std::chrono::milliseconds delay{0};
  /// So many bytes at once, with a pause after each time; 0 for all of them.
  std::size_t piece_bytes = 0;
  std::chrono::milliseconds pause{0};
  /// Of the body, so many bytes leave, and then the connection ends; with -1 not even a status line
  /// does.
  std::optional<std::int64_t> cut_after{};
  /// The connection ends by a reset and not in order.
  bool resets = false;
  /// Added to what Content-Length says; the connection ends after the body.
  std::int64_t length_error = 0;
  /// In chunks, the second of which has a size that is none.
  bool bad_chunk = false;
  /// So many bytes more, made on the way, stand in the body before the byte at this place.
  std::uint64_t filler_bytes = 0;
  std::size_t filler_at = 0;
};

/// The body of a reply that goes on as long as its reader stays.
class ReplyStream {
 public:
  virtual ~ReplyStream() = default;
  /// What has come up since the last time, "" for nothing. It is asked again a moment after that
  /// has left, on any of the workers, so it should neither wait nor say more than a slow reader can
  /// take in. Where it throws, the connection ends.
  virtual std::string next() = 0;
};

struct Reply {
  int status = 200;
  std::vector<Header> headers;
  std::string body;
  std::optional<Delivery> delivery{};
  /// Follows the headers in place of a body. The reply is no longer among those that the server
  /// waits for when it ends.
  std::shared_ptr<ReplyStream> stream{};
  /// Not sent: what is wrong with the request, for whoever watches the sandbox.
  std::string remark{};
};

Reply text_reply(int status, std::string_view text);
Reply xml_reply(int status, std::string text);
Reply json_reply(int status, std::string text);

/// The status line and the headers, without the empty line behind them.
std::string head_bytes(const Reply& reply);
/// The reply as it crosses the wire where nothing goes wrong, complete with status line,
/// Content-Length and Connection. `with_body` is false for the answer to a HEAD.
std::string to_bytes(const Reply& reply, bool keep_alive, bool with_body);

}  // namespace bvconn::sandbox

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/error.h"

namespace bvconn::detail {

class GzipReader;

/// A reply while it arrives: its status line, the few headers that count, its body.
///
/// Nothing that a server sends or claims makes it grow beyond the limits: header lines are counted,
/// the body is counted after unpacking, and a length that a header claims reserves little.
class HttpReply {
 public:
  HttpReply(std::string shown_url, std::uint64_t body_size_max);
  ~HttpReply();
  HttpReply(const HttpReply&) = delete;
  HttpReply& operator=(const HttpReply&) = delete;

  /// A header line with its line end; the empty line too. False: the reply is to be given up.
  bool take_header(std::string_view line);
  /// Bytes of the body, without the framing of chunks. False: the reply is to be given up.
  bool take_body(std::string_view bytes);

  /// Whether the status line of a final reply came; those of interim replies do not count.
  bool has_status() const { return status_ >= 200; }
  /// Whether the end of the connection alone tells where this reply's body ends.
  bool ends_with_connection() const;
  /// Whether taking the reply in was given up; `finish` knows why.
  bool given_up() const { return given_up_; }

  /// Ends the reply. `trouble` is what the connection has to say against it, when anything.
  /// @return The error to raise when the reply is asked for; nothing when its body is good.
  std::optional<Error> finish(std::optional<Error> trouble);
  std::string take() { return std::move(body_); }

 private:
  bool take_status_line(std::string_view line);
  bool take_field(std::string_view name, std::string_view value);
  bool end_headers();
  bool is_refused() const;
  Error refusal() const;
  bool give_up(std::int32_t number, std::string_view reason);
  Error failure(std::int32_t number, std::string_view reason) const;

  std::string shown_url_;
  std::uint64_t body_size_max_;
  std::uint64_t header_size_ = 0;
  bool in_headers_ = false;
  bool headers_complete_ = false;
  bool given_up_ = false;
  int status_ = 0;
  std::string reason_;
  std::string content_type_;
  std::string content_encoding_;
  std::string content_length_;
  bool is_chunked_ = false;
  std::string location_;
  std::string body_;
  std::unique_ptr<GzipReader> gzip_;
  std::optional<Error> error_;
};

/// Whether a Content-Type is one of XML: text/xml, application/xml, or any that ends in +xml;
/// parameters and case do not count.
bool is_xml_content_type(std::string_view content_type);

}  // namespace bvconn::detail

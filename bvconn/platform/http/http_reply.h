#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "bvconn/platform/error.h"
#include "bvconn/platform/exchange/exchange.h"
#include "bvconn/platform/http/header_fields.h"
#include "bvconn/platform/text_buffer.h"

namespace bvconn::detail {

class GzipReader;

/// What a client makes of the replies to its requests.
struct ReplyRules {
  /// Whether a reply with this status and content type is one that the client asked for; any other
  /// is refused with the error 0x80044305.
  bool (*accepts)(int status, std::string_view content_type) = nullptr;
  std::uint64_t body_size_max = std::uint64_t{1} << 30;  ///< counted after unpacking
  /// So much is kept of the body of a reply that is refused: what the record of the exchange keeps,
  /// and one byte that tells it of more.
  std::uint64_t refused_body_size_max = kKeptTextMax + 1;
  bool takes_gzip = false;  ///< where it was asked for
};

/// A reply while it arrives, and afterwards: its status line, its headers, its body.
///
/// Nothing that a server sends or claims makes it grow beyond the limits: header lines are counted,
/// the body is counted after unpacking, and a length that a header claims reserves little.
class HttpReply {
 public:
  /// Source and URL have to last as long as the reply.
  HttpReply(std::string_view source, std::string_view url, const ReplyRules& rules);
  HttpReply(HttpReply&& other) noexcept;
  HttpReply& operator=(HttpReply&& other) = delete;
  ~HttpReply();

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
  void finish(std::optional<Error> trouble);

  // Of a reply that ended.

  /// What is wrong with it; nothing where its body is good.
  const std::optional<Error>& error() const { return error_; }
  /// Whether the rules refuse it, which says more than whatever happened to its body.
  bool is_refused() const { return is_refused_; }
  int status() const { return status_; }
  /// What its status line says of the status: "OK".
  const std::string& reason() const { return reason_; }
  /// The last header of this name, whatever its case; "" where there is none.
  std::string_view field(std::string_view name) const { return fields_.last(name); }
  /// Its body, also where it is refused or in error: then as much as is kept of it, or arrived.
  std::string_view body() const { return body_.view(); }
  TextBuffer take() { return std::move(body_); }

 private:
  bool take_status_line(std::string_view line);
  bool take_field(std::string_view name, std::string_view value);
  bool end_headers();
  bool add_to_body(std::string_view bytes);
  Error refusal() const;
  bool give_up(std::int32_t number, std::string_view reason);
  Error failure(std::int32_t number, std::string_view reason) const;

  std::string_view source_;
  std::string_view url_;
  ReplyRules rules_;
  std::uint64_t header_size_ = 0;
  bool in_headers_ = false;
  bool headers_complete_ = false;
  bool given_up_ = false;
  int status_ = 0;
  std::string reason_;
  HeaderFields fields_;
  bool is_refused_ = false;
  TextBuffer body_;
  std::unique_ptr<GzipReader> gzip_;
  std::optional<Error> error_;
};

/// Where a reply came from and its status: "answered to URL with the status 200 OK".
std::string reply_summary(std::string_view url, int status, std::string_view reason);

/// Whether a Content-Type is one of XML: text/xml, application/xml, or any that ends in +xml;
/// parameters and case do not count.
bool is_xml_content_type(std::string_view content_type);

}  // namespace bvconn::detail

#pragma once

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

struct Reply {
  int status = 200;
  std::vector<Header> headers;
  std::string body;
};

Reply text_reply(int status, std::string_view text);
Reply xml_reply(int status, std::string text);
Reply json_reply(int status, std::string text);

/// The reply as it crosses the wire, complete with status line, Content-Length and Connection.
/// `with_body` is false for the answer to a HEAD.
std::string to_bytes(const Reply& reply, bool keep_alive, bool with_body);

}  // namespace bvconn::sandbox

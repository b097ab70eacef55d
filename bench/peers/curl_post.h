#pragma once

#include <curl/curl.h>

#include <functional>
#include <string>
#include <string_view>

#include "common/replies.h"

namespace bench {

/// The floor: a POST of ready text by libcurl, set up once, whose reply goes to a buffer that is
/// used again and again.
class CurlPost {
 public:
  using Sink = std::function<void(std::string_view piece)>;

  /// With a sink the reply goes there, piece by piece, and not to the buffer.
  explicit CurlPost(std::string url, Sink sink = {});
  ~CurlPost();
  CurlPost(const CurlPost&) = delete;
  CurlPost& operator=(const CurlPost&) = delete;

  /// Makes the call; the body stays until the next.
  std::string& call(const Case& which);
  std::string& body() { return body_; }

 private:
  static std::size_t take(char* bytes, std::size_t size, std::size_t count, void* post);

  std::string url_;
  Sink sink_;
  std::string request_ = request();
  std::string body_;
  const Case* last_ = nullptr;
  CURL* handle_;
  curl_slist* headers_ = nullptr;
};

}  // namespace bench

#pragma once

#include <curl/curl.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace bvconn::detail {

/// A reply of the data access layer, whatever its status.
struct JsonReply {
  int status = 0;
  std::string reason;
  std::string location;
  std::string session_token;
  std::string body;
};

/// Posts JSON over a connection of its own, which stays open between calls.
class JsonPoster {
 public:
  struct Limits {
    std::chrono::milliseconds time_out{300'000};
    std::uint64_t reply_bytes = std::uint64_t{1} << 30;
  };

  JsonPoster();
  explicit JsonPoster(const Limits& limits);

  /// Runs one exchange; with a token that is not "", as its bearer. Whatever keeps a whole reply
  /// from arriving is an `Error` with this source and the transport's numbers; a status is not.
  JsonReply post(std::string_view source, const std::string& url, const std::string& token,
                 std::string_view body);

 private:
  struct HandleDeleter {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  };
  struct Exchange;

  void take_clean_handle(std::string_view source);
  void prepare(Exchange& exchange, const std::string& url, std::string_view body,
               curl_slist* headers);
  template <typename Value>
  void set(std::string_view source, CURLoption option, Value value);

  Limits limits_;
  std::unique_ptr<CURL, HandleDeleter> handle_;
};

}  // namespace bvconn::detail

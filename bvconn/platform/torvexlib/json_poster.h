#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/error.h"
#include "bvconn/platform/http/http_client.h"

namespace bvconn::detail {

/// A reply of the data access layer, whatever its status.
struct JsonReply {
  std::string body;
  std::string session_token;
  /// For any status but 200, which only the body can explain better: 0x80044305.
  std::optional<Error> refusal;
};

/// Posts JSON over a connection of its own, which stays open between calls, with the calling
/// thread's TLS files.
class JsonPoster {
 public:
  struct Settings {
    std::chrono::milliseconds time_out{300'000};  ///< where no `TimeoutScope` says otherwise
    std::uint64_t reply_bytes = std::uint64_t{1} << 30;
  };

  JsonPoster();
  explicit JsonPoster(Settings settings);

  /// Runs one exchange; with a token that is not "", as its bearer. Whatever keeps a whole reply
  /// from arriving is an `Error` with this source and the transport's numbers.
  JsonReply post(std::string_view source, const std::string& url, const std::string& token,
                 std::string_view body);

  /// What the last exchange showed on the wire.
  const WireFacts& facts() const { return client_.facts(); }
  void clear_facts() { client_.clear_facts(); }

 private:
  std::chrono::milliseconds time_out_in_force() const;

  Settings settings_;
  HttpClient client_;
};

}  // namespace bvconn::detail

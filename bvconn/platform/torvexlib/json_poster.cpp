#include "bvconn/platform/torvexlib/json_poster.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "bvconn/platform/timeout_scope.h"
#include "bvconn/platform/tls_files.h"

namespace bvconn::detail {
namespace {

/// An error that is reported in JSON is short; of any other page only the beginning is shown.
constexpr std::uint64_t kErrorBytesMax = 1 << 20;

bool accepts(int status, std::string_view /*content_type*/) {
  return status == 200;
}

std::vector<std::string> request_headers(const std::string& token) {
  std::vector<std::string> headers{"Content-Type: application/json"};
  if (!token.empty()) {
    headers.push_back("Authorization: Bearer " + token);
  }
  return headers;
}

// libcurl takes 0 for no limit of the whole, but for a limit of its own in connecting.
std::chrono::milliseconds connect_time_out(std::chrono::milliseconds whole) {
  constexpr std::chrono::milliseconds kMax{std::numeric_limits<std::int32_t>::max()};
  return whole.count() == 0 ? kMax : whole;
}

}  // namespace

JsonPoster::JsonPoster() : JsonPoster(Settings{}) {}

JsonPoster::JsonPoster(Settings settings) : settings_(std::move(settings)) {}

std::chrono::milliseconds JsonPoster::time_out_in_force() const {
  const std::optional<std::int32_t> scope = TimeoutScope::in_force();
  return scope ? std::chrono::milliseconds(std::max(*scope, 0)) : settings_.time_out;
}

JsonReply JsonPoster::post(std::string_view source, const std::string& url,
                           const std::string& token, std::string_view body) {
  const std::chrono::milliseconds time_out = time_out_in_force();
  HttpReply reply = client_.post({.source = source,
                                  .url = url,
                                  .body = body,
                                  .headers = request_headers(token),
                                  .time_out = time_out,
                                  .connect_time_out = connect_time_out(time_out),
                                  .tls = tls_files()},
                                 {.accepts = &accepts,
                                  .body_size_max = settings_.reply_bytes,
                                  .refused_body_size_max = kErrorBytesMax});
  if (reply.error() && !reply.is_refused()) {
    throw Error(*reply.error());
  }
  return {.body = reply.take().take_string(),
          .session_token = std::string(reply.field("Session-Token")),
          .refusal = reply.error()};
}

}  // namespace bvconn::detail

#include "bvconn/platform/torvexlib/json_poster.h"

#include <utility>
#include <vector>

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

}  // namespace

JsonPoster::JsonPoster() : JsonPoster(Settings{}) {}

JsonPoster::JsonPoster(Settings settings) : settings_(std::move(settings)) {}

JsonReply JsonPoster::post(std::string_view source, const std::string& url,
                           const std::string& token, std::string_view body) {
  HttpReply reply = client_.post({.source = source,
                                  .url = url,
                                  .body = body,
                                  .headers = request_headers(token),
                                  .time_out = settings_.time_out,
                                  .connect_time_out = settings_.time_out,
                                  .tls = {.ca_file = settings_.ca_file}},
                                 {.accepts = &accepts,
                                  .body_size_max = settings_.reply_bytes,
                                  .refused_body_size_max = kErrorBytesMax});
  if (reply.error() && !reply.is_refused()) {
    throw Error(*reply.error());
  }
  return {.body = reply.take(),
          .session_token = std::string(reply.field("Session-Token")),
          .refusal = reply.error()};
}

}  // namespace bvconn::detail

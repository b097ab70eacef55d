#include "bvconn/platform/http/http_client.h"

#include <fcntl.h>

#include <cerrno>
#include <optional>
#include <utility>

#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/files.h"
#include "bvconn/platform/http/curl_errors.h"
#include "bvconn/platform/http/http_url.h"
#include "bvconn/platform/http/quiet_socket.h"

namespace bvconn::detail {
namespace {

// Shorter than the five seconds after which servers begin to close idle connections, so that the
// client lets go of a connection before the server does.
constexpr std::chrono::seconds kIdleConnectionMax{3};

// For libcurl an empty proxy means that one of the environment does not count either.
std::string proxy_of(const HttpRequest& request) {
  if (request.proxy == nullptr) {
    return "";
  }
  std::optional<std::string> url = proxy_url(request.proxy->host, request.proxy->port);
  if (!url) {
    throw Error(error_numbers::kProxy, request.source,
                "The proxy with the host " + shown_proxy_part(request.proxy->host) +
                    " and the port " + shown_proxy_part(request.proxy->port) +
                    " cannot be used for " + shown_url(request.url));
  }
  return *std::move(url);
}

void check_tls_file(const HttpRequest& request, std::string_view kind, const std::string& file) {
  if (file.empty()) return;
  const bool is_name = file.find('\0') == std::string::npos;
  const int code = is_name ? open_file(file, O_RDONLY).code : ENOENT;
  if (code == 0) return;
  std::string text(trouble_text(error_numbers::kTls));
  text.append(shown_url(request.url)).append(": the file of ").append(kind).append(", ");
  text.append(shown(file)).append(", cannot be read: ").append(system_message(code));
  throw Error(error_numbers::kTls, request.source, text);
}

// libcurl would look for them when it connects, and does not name all of them.
void check_tls_files(const HttpRequest& request) {
  check_tls_file(request, "the trusted authorities", request.tls.ca_file);
  check_tls_file(request, "the client's certificate", request.tls.client_cert);
  check_tls_file(request, "the client's key", request.tls.client_key);
}

}  // namespace

HttpReply HttpClient::post(const HttpRequest& request, const ReplyRules& rules) {
  facts_.clear();
  try {
    return run(request, rules);
  } catch (Error& error) {
    error.outcome = facts_.went_out ? Outcome::kUnknown : Outcome::kNotSent;
    throw;
  }
}

HttpReply HttpClient::run(const HttpRequest& request, const ReplyRules& rules) {
  const bool is_known = handle_ != nullptr && handle_->knows(request.url);
  ParsedUrl new_url = is_known ? nullptr : parse_url(request.url, request.source);
  const auto idle = std::chrono::steady_clock::now() - last_use_;
  if (handle_ != nullptr && (idle > kIdleConnectionMax || !handle_->leads_for(request))) {
    disconnect();
  }
  HttpExchange exchange(request, rules, facts_);
  const CURLcode code = perform(request, std::move(new_url), exchange);
  return exchange.finish(code);
}

// Unless it is kept, the handle goes when its run is over, and with it what is left of a connection
// that ended.
CURLcode HttpClient::perform(const HttpRequest& request, ParsedUrl url, HttpExchange& exchange) {
  std::unique_ptr<HttpHandle> handle = take_handle(request);
  if (!handle->knows(request.url)) {
    // One that the handle before it knew has to be taken apart again.
    if (url == nullptr) url = parse_url(request.url, request.source);
    handle->go_to(request, std::move(url));
  }
  const CURLcode code = handle->run(request, exchange);
  last_use_ = std::chrono::steady_clock::now();
  const bool goes_on = !is_https(request.url) || handle->active_socket() != CURL_SOCKET_BAD;
  if (code == CURLE_OK && goes_on && handle->let_go()) handle_ = std::move(handle);
  return code;
}

// A kept connection has nothing to say between two calls. One that has was closed by the server,
// or brings what nobody asked for, which must not be taken for the next reply.
std::unique_ptr<HttpHandle> HttpClient::take_handle(const HttpRequest& request) {
  const std::string proxy = proxy_of(request);
  if (is_https(request.url)) check_tls_files(request);
  if (handle_ != nullptr) {
    const curl_socket_t kept = handle_->active_socket();
    if (kept == CURL_SOCKET_BAD || is_quiet(kept)) {
      return std::move(handle_);
    }
    disconnect();
  }
  return std::make_unique<HttpHandle>(request, proxy);
}

}  // namespace bvconn::detail

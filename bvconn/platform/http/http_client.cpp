#include "bvconn/platform/http/http_client.h"

#include <fcntl.h>
#include <poll.h>

#include <cerrno>
#include <optional>
#include <utility>

#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/files.h"
#include "bvconn/platform/http/curl_errors.h"
#include "bvconn/platform/http/http_exchange.h"
#include "bvconn/platform/http/http_url.h"

namespace bvconn::detail {
namespace {

// Shorter than the five seconds after which servers begin to close idle connections, so that the
// client lets go of a connection before the server does.
constexpr std::chrono::seconds kIdleConnectionMax{3};
constexpr long kReceiveBufferSize = 128L << 10;

struct ListDeleter {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using HeaderList = std::unique_ptr<curl_slist, ListDeleter>;

void append(HeaderList& list, const std::string& line) {
  curl_slist* longer = curl_slist_append(list.get(), line.c_str());
  if (longer == nullptr) {
    fail_without_memory();
  }
  static_cast<void>(list.release());
  list.reset(longer);
}

HeaderList header_list(const HttpRequest& request) {
  HeaderList list;
  for (const std::string& line : request.headers) {
    append(list, line);
  }
  // Without a value it is not sent: no wait for an interim reply before a large request.
  append(list, "Expect:");
  return list;
}

// For libcurl an empty proxy means that one of the environment does not count either.
std::string proxy_of(const HttpRequest& request) {
  if (!request.proxy) {
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

void prepare_tls(CURL* handle, const HttpRequest& request) {
  const auto option = [&](CURLoption key, auto value) {
    set_option(handle, request.source, key, value);
  };
  option(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  option(CURLOPT_SSL_VERIFYPEER, 1L);
  option(CURLOPT_SSL_VERIFYHOST, 2L);
  if (!request.tls.ca_file.empty()) {
    // Who names an authority trusts that one, not the system's store besides.
    option(CURLOPT_CAINFO, request.tls.ca_file.c_str());
    option(CURLOPT_CAPATH, static_cast<char*>(nullptr));
  }
  if (!request.tls.client_cert.empty()) {
    option(CURLOPT_SSLCERT, request.tls.client_cert.c_str());
  }
  if (!request.tls.client_key.empty()) {
    option(CURLOPT_SSLKEY, request.tls.client_key.c_str());
  }
  // Otherwise the TLS library would ask for the pass phrase of a key on the terminal, and wait.
  option(CURLOPT_KEYPASSWD, "");
}

void prepare(CURL* handle, const HttpRequest& request, const std::string& proxy,
             curl_slist* headers) {
  const auto option = [&](CURLoption key, auto value) {
    set_option(handle, request.source, key, value);
  };
  option(CURLOPT_URL, request.url.c_str());
  option(CURLOPT_PATH_AS_IS, 1L);
  option(CURLOPT_PROTOCOLS_STR, "http,https");
  option(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  option(CURLOPT_FOLLOWLOCATION, 0L);
  option(CURLOPT_POST, 1L);
  option(CURLOPT_POSTFIELDS, request.body.empty() ? "" : request.body.data());
  option(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size()));
  option(CURLOPT_HTTPHEADER, headers);
  option(CURLOPT_PROXY, proxy.c_str());
  option(CURLOPT_NOPROXY, "");
  option(CURLOPT_NOSIGNAL, 1L);
  option(CURLOPT_TIMEOUT_MS, static_cast<long>(request.time_out.count()));
  // libcurl has a limit for connecting of its own unless it is given one.
  option(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(request.connect_time_out.count()));
  option(CURLOPT_BUFFERSIZE, kReceiveBufferSize);
  option(CURLOPT_MAXCONNECTS, 1L);
  prepare_tls(handle, request);
}

curl_socket_t active_socket(CURL* handle) {
  curl_socket_t socket = CURL_SOCKET_BAD;
  curl_easy_getinfo(handle, CURLINFO_ACTIVESOCKET, &socket);
  return socket;
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
  check_url(request.url, request.source);
  Peer peer{.origin = origin_of(request.url), .proxy = proxy_of(request), .tls = request.tls};
  const HeaderList headers = header_list(request);
  if (is_https(request.url)) check_tls_files(request);
  const auto idle = std::chrono::steady_clock::now() - last_use_;
  if (peer != peer_ || idle > kIdleConnectionMax) disconnect();
  peer_ = std::move(peer);
  HttpExchange exchange(request, rules, facts_);
  const CURLcode code = perform(request, headers.get(), exchange);
  return exchange.finish(code);
}

// Unless it is kept, the handle goes when its run is over, and with it what is left of a connection
// that ended.
CURLcode HttpClient::perform(const HttpRequest& request, curl_slist* headers,
                             HttpExchange& exchange) {
  Handle handle = take_handle(request.source);
  prepare(handle.get(), request, peer_.proxy, headers);
  exchange.attach_to(handle.get());
  const CURLcode code = curl_easy_perform(handle.get());
  exchange.measure(handle.get());
  last_use_ = std::chrono::steady_clock::now();
  const bool goes_on = !is_https(request.url) || active_socket(handle.get()) != CURL_SOCKET_BAD;
  if (code == CURLE_OK && goes_on && HttpExchange::detach_from(handle.get())) {
    handle_ = std::move(handle);
  }
  return code;
}

// A kept connection has nothing to say between two calls. One that has was closed by the server,
// or brings what nobody asked for, which must not be taken for the next reply.
HttpClient::Handle HttpClient::take_handle(std::string_view source) {
  if (handle_ != nullptr) {
    pollfd kept{active_socket(handle_.get()), POLLIN, 0};
    if (kept.fd == CURL_SOCKET_BAD || poll(&kept, 1, 0) == 0) {
      return std::move(handle_);
    }
    disconnect();
  }
  start_libcurl(source);
  Handle handle(curl_easy_init());
  if (handle == nullptr) {
    fail_without_memory();
  }
  return handle;
}

}  // namespace bvconn::detail

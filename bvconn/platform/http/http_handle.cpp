#include "bvconn/platform/http/http_handle.h"

#include <algorithm>
#include <utility>

#include "bvconn/platform/http/curl_errors.h"
#include "bvconn/platform/http/http_url.h"
#include "bvconn/platform/http/tls_options.h"

namespace bvconn::detail {
namespace {

constexpr long kReceiveBufferSize = 128L << 10;

}  // namespace

HttpHandle::HttpHandle(const HttpRequest& request, const std::string& proxy)
    : origin_(origin_of(request.url)), tls_(request.tls) {
  if (request.proxy != nullptr) proxy_ = *request.proxy;
  start_libcurl(request.source);
  handle_.reset(curl_easy_init());
  if (handle_ == nullptr) fail_without_memory();
  set_up(request, proxy);
}

void HttpHandle::set_up(const HttpRequest& request, const std::string& proxy) {
  const auto option = [&](CURLoption key, auto value) {
    set_option(handle_.get(), request.source, key, value);
  };
  option(CURLOPT_PATH_AS_IS, 1L);
  option(CURLOPT_PROTOCOLS_STR, "http,https");
  option(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  option(CURLOPT_FOLLOWLOCATION, 0L);
  option(CURLOPT_POST, 1L);
  option(CURLOPT_PROXY, proxy.c_str());
  option(CURLOPT_NOPROXY, "");
  option(CURLOPT_NOSIGNAL, 1L);
  option(CURLOPT_BUFFERSIZE, kReceiveBufferSize);
  option(CURLOPT_MAXCONNECTS, 1L);
  set_up_tls(request);
  running_.watch(handle_.get(), request.source);
}

void HttpHandle::set_up_tls(const HttpRequest& request) {
  const auto option = [&](CURLoption key, auto value) {
    set_option(handle_.get(), request.source, key, value);
  };
  option(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  option(CURLOPT_SSL_VERIFYPEER, 1L);
  option(CURLOPT_SSL_VERIFYHOST, 2L);
  use_tls_files(handle_.get(), request);
  // Otherwise the TLS library would ask for the pass phrase of a key on the terminal, and wait.
  option(CURLOPT_KEYPASSWD, "");
}

bool HttpHandle::leads_for(const HttpRequest& request) const {
  const bool same_proxy = request.proxy == nullptr ? !proxy_ : proxy_ == *request.proxy;
  return same_proxy && request.tls == tls_ &&
         (knows(request.url) || origin_of(request.url) == origin_);
}

curl_socket_t HttpHandle::active_socket() const {
  curl_socket_t socket = CURL_SOCKET_BAD;
  curl_easy_getinfo(handle_.get(), CURLINFO_ACTIVESOCKET, &socket);
  return socket;
}

// libcurl goes by the URL that is taken apart, and shows the other one.
void HttpHandle::go_to(const HttpRequest& request, ParsedUrl url) {
  url_.assign(request.url);
  set_option(handle_.get(), request.source, CURLOPT_URL, url_.c_str());
  set_option(handle_.get(), request.source, CURLOPT_CURLU, url.get());
  parsed_url_ = std::move(url);
}

CURLcode HttpHandle::run(const HttpRequest& request, HttpExchange& exchange) {
  running_.begin(exchange);
  set_changes(request);
  const CURLcode code = curl_easy_perform(handle_.get());
  if (code != CURLE_OK) running_.note_error();
  exchange.measure(handle_.get());
  return code;
}

bool HttpHandle::let_go() {
  running_.end();
  return curl_easy_setopt(handle_.get(), CURLOPT_POSTFIELDS, nullptr) == CURLE_OK;
}

void HttpHandle::set_changes(const HttpRequest& request) {
  const auto option = [&](CURLoption key, auto value) {
    set_option(handle_.get(), request.source, key, value);
  };
  set_headers(request);
  option(CURLOPT_POSTFIELDS, request.body.empty() ? "" : request.body.data());
  option(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size()));
  if (time_out_ != request.time_out) {
    option(CURLOPT_TIMEOUT_MS, static_cast<long>(request.time_out.count()));
    time_out_ = request.time_out;
  }
  if (connect_time_out_ != request.connect_time_out) {
    // libcurl has a limit for connecting of its own unless it is given one.
    option(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(request.connect_time_out.count()));
    connect_time_out_ = request.connect_time_out;
  }
  const bool is_watched = is_https(request.url) || !request.tracing_file.empty();
  if (is_watched_ != is_watched) {
    option(CURLOPT_VERBOSE, is_watched ? 1L : 0L);
    is_watched_ = is_watched;
  }
}

void HttpHandle::set_headers(const HttpRequest& request) {
  if (header_list_ != nullptr && std::ranges::equal(headers_, request.headers)) return;
  HeaderList list;
  const auto append = [&list](const char* line) {
    curl_slist* longer = curl_slist_append(list.get(), line);
    if (longer == nullptr) fail_without_memory();
    static_cast<void>(list.release());
    list.reset(longer);
  };
  for (const std::string& line : request.headers) append(line.c_str());
  // Without a value it is not sent: no wait for an interim reply before a large request.
  append("Expect:");
  set_option(handle_.get(), request.source, CURLOPT_HTTPHEADER, list.get());
  header_list_ = std::move(list);
  headers_.assign(request.headers.begin(), request.headers.end());
}

}  // namespace bvconn::detail

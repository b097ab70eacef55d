#include "bvconn/platform/http/http_exchange.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <string_view>
#include <utility>

#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/http/curl_errors.h"
#include "bvconn/platform/http/http_url.h"
#include "bvconn/platform/http/interrupted_exchanges.h"

namespace bvconn::detail {
namespace {

constexpr std::string_view kWithoutEndOfTls = "it ended without the closing message of TLS";

// With OpenSSL, older libcurls take the bare end of a connection for the end of its TLS stream, but
// show the messages of TLS; later ones, and the other TLS libraries, fail by themselves.
bool takes_bare_end_for_tls_end() {
  const std::string_view library = curl_version_info(CURLVERSION_NOW)->ssl_version;
  return library.starts_with("OpenSSL") || library.starts_with("LibreSSL");
}

// What fails before a request goes out. After one did, it is about a second connection.
bool is_about_connecting(CURLcode code) {
  return code == CURLE_ABORTED_BY_CALLBACK || code == CURLE_COULDNT_CONNECT ||
         code == CURLE_COULDNT_RESOLVE_HOST || code == CURLE_COULDNT_RESOLVE_PROXY ||
         code == CURLE_PROXY;
}

}  // namespace

HttpExchange::HttpExchange(const HttpRequest& request, const ReplyRules& rules, WireFacts& facts)
    : request_(request),
      secure_(is_https(request.url)),
      reply_(request.source, request.url, rules),
      facts_(facts),
      meter_(facts, request.body.size()) {
  if (!request.tracing_file.empty()) {
    traffic_.emplace(std::string(request.tracing_file), shown_url(request.url));
  }
}

void RunningExchange::watch(CURL* handle, std::string_view source) {
  const auto option = [&](CURLoption key, auto value) { set_option(handle, source, key, value); };
  option(CURLOPT_ERRORBUFFER, error_text_.data());
  option(CURLOPT_HEADERFUNCTION, &HttpExchange::on_header);
  option(CURLOPT_HEADERDATA, this);
  option(CURLOPT_WRITEFUNCTION, &HttpExchange::on_body);
  option(CURLOPT_WRITEDATA, this);
  option(CURLOPT_SOCKOPTFUNCTION, &HttpExchange::on_new_socket);
  option(CURLOPT_SOCKOPTDATA, this);
  option(CURLOPT_PREREQFUNCTION, &HttpExchange::on_request);
  option(CURLOPT_PREREQDATA, this);
  option(CURLOPT_XFERINFOFUNCTION, &HttpExchange::on_progress);
  option(CURLOPT_XFERINFODATA, this);
  option(CURLOPT_NOPROGRESS, 0L);
  option(CURLOPT_DEBUGFUNCTION, &HttpExchange::on_traffic);
  option(CURLOPT_DEBUGDATA, this);
}

void RunningExchange::note_error() {
  exchange_->error_text_ = error_text_.data();
}

HttpExchange& HttpExchange::of(void* running) {
  return *static_cast<RunningExchange*>(running)->exchange_;
}

// No exception may pass through libcurl.
template <typename Take>
std::size_t HttpExchange::guarded(std::size_t size, Take take) noexcept {
  try {
    return take() ? size : 0;
  } catch (const std::exception&) {
    out_of_memory_ = true;
    return 0;
  }
}

std::size_t HttpExchange::on_header(char* data, std::size_t size, std::size_t count,
                                    void* running) {
  HttpExchange& exchange = of(running);
  const std::string_view line(data, size * count);
  return exchange.guarded(line.size(), [&] {
    if (!exchange.request_went_out_) return exchange.take_tunnel_header(line);
    exchange.meter_.take_header(line);
    return exchange.reply_.take_header(line);
  });
}

// A proxy that makes no tunnel may explain itself without end, and libcurl would listen to all of
// it.
bool HttpExchange::take_tunnel_header(std::string_view line) {
  constexpr std::size_t kHeadSizeMax = 64 << 10;
  tunnel_head_size_ += line.size();
  if (tunnel_head_size_ > kHeadSizeMax) {
    tunnel_trouble_ = "its headers are too large";
  } else if (line.starts_with("HTTP/")) {
    tunnel_status_ = trimmed(line.substr(std::min(line.find(' '), line.size())));
  } else if (trimmed(line).empty() && tunnel_status_ >= "3") {
    tunnel_trouble_ = "it answered with the status " + tunnel_status_;
  }
  return tunnel_trouble_.empty();
}

std::size_t HttpExchange::on_body(char* data, std::size_t size, std::size_t count, void* running) {
  HttpExchange& exchange = of(running);
  const std::string_view bytes(data, size * count);
  return exchange.guarded(bytes.size(), [&] { return exchange.reply_.take_body(bytes); });
}

int HttpExchange::on_traffic(CURL*, curl_infotype type, char* data, std::size_t size,
                             void* running) {
  using std::string_view_literals::operator""sv;
  constexpr auto kCloseNotify = "\x01\x00"sv;  // A warning (1) with the number 0.
  // A handle that goes between two exchanges has something to say too.
  if (static_cast<RunningExchange*>(running)->exchange_ == nullptr) return 0;
  HttpExchange& exchange = of(running);
  const std::string_view bytes(data, size);
  exchange.guarded(size, [&] {
    if (type == CURLINFO_SSL_DATA_IN) {
      exchange.tls_ended_ |= bytes == kCloseNotify;
    } else if (type == CURLINFO_HEADER_OUT || type == CURLINFO_DATA_OUT) {
      exchange.trace(TrafficFile::Direction::kOut, bytes);
    } else if (type == CURLINFO_HEADER_IN || type == CURLINFO_DATA_IN) {
      exchange.trace(TrafficFile::Direction::kIn, bytes);
    }
    return true;
  });
  return 0;
}

void HttpExchange::trace(TrafficFile::Direction direction, std::string_view bytes) {
  if (traffic_) traffic_->add(direction, bytes);
}

// Where a kept connection ends without a byte of reply, libcurl connects anew and sends the request
// again. The server may have acted on it already: so there is no new connection after the request
// began to go out...
int HttpExchange::on_new_socket(void* running, curl_socket_t, curlsocktype) {
  return of(running).request_went_out_ ? CURL_SOCKOPT_ERROR : CURL_SOCKOPT_OK;
}

// ...and no second request, whatever connection libcurl may have for it.
int HttpExchange::on_request(void* running, char*, char*, int, int) {
  HttpExchange& exchange = of(running);
  if (std::exchange(exchange.request_went_out_, true)) return CURL_PREREQFUNC_ABORT;
  exchange.meter_.request_begins();
  return CURL_PREREQFUNC_OK;
}

int HttpExchange::on_progress(void* running, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent) {
  of(running).meter_.request_goes_on(static_cast<std::uint64_t>(sent));
  return exchanges_are_interrupted() ? 1 : 0;
}

HttpReply HttpExchange::finish(CURLcode code) {
  std::optional<Error> against;
  if (out_of_memory_) {
    against = Error(error_numbers::kOutOfMemory, "BVConn",
                    "out of memory: there is none for the reply of " + shown_url(request_.url));
  } else if (!tunnel_trouble_.empty()) {
    throw failure(error_numbers::kProxy, "no tunnel was made: " + tunnel_trouble_);
  } else if (!reply_.given_up() && (code != CURLE_OK || !reply_.has_status())) {
    against = trouble(code);
    const bool about_reply = against->number == error_numbers::kBadReply || reply_.has_status();
    if (against->number == error_numbers::kTimeout || !about_reply) {
      facts_.refused_reply.assign(reply_.body());
      throw *std::move(against);
    }
  } else if (code == CURLE_OK && lacks_end_of_tls() && takes_bare_end_for_tls_end()) {
    against = failure(error_numbers::kConnectionLost, kWithoutEndOfTls);
  }
  reply_.finish(std::move(against));
  if (reply_.error()) facts_.refused_reply.assign(reply_.body());
  return std::move(reply_);
}

// Where only the end of the connection tells the end of the reply, TLS has to vouch for it.
bool HttpExchange::lacks_end_of_tls() const {
  return secure_ && reply_.ends_with_connection() && !tls_ended_;
}

// What the run's code says against the exchange, with what libcurl has to say about it.
Error HttpExchange::trouble(CURLcode code) const {
  if (code == CURLE_ABORTED_BY_CALLBACK && exchanges_are_interrupted()) {
    return failure(
        request_went_out_ ? error_numbers::kConnectionLost : error_numbers::kCannotConnect,
        "it was interrupted");
  }
  if (code == CURLE_OK || (request_went_out_ && is_about_connecting(code))) {
    return failure(error_numbers::kConnectionLost, "the server ended it before its reply began");
  }
  // Later it is how libcurl reports a header line beyond its limit.
  if (code == CURLE_OUT_OF_MEMORY && !request_went_out_) fail_without_memory();
  const std::string_view words = error_text_;
  const std::string_view detail = words.empty() ? curl_easy_strerror(code) : words;
  const std::int32_t number = trouble_number(code, detail);
  if (number == error_numbers::kConnectionLost && lacks_end_of_tls()) {
    return failure(number, std::string(kWithoutEndOfTls).append(": ").append(detail));
  }
  return failure(number, detail);
}

std::int32_t HttpExchange::trouble_number(CURLcode code, std::string_view detail) const {
  const std::int32_t number = number_for(code, detail);
  // Ahead of the request nobody but a proxy has anything to say.
  if (number == error_numbers::kBadReply && !request_went_out_ && request_.proxy) {
    return error_numbers::kProxy;
  }
  if (number == error_numbers::kTimeout || number == error_numbers::kBadReply) {
    return number;
  }
  if (reply_.has_status()) {
    return error_numbers::kConnectionLost;
  }
  const bool unreached =
      number == error_numbers::kCannotConnect || number == error_numbers::kConnectionLost;
  if (unreached && !request_went_out_) {
    // With a proxy it is the proxy that cannot be reached or makes no tunnel.
    return request_.proxy ? error_numbers::kProxy : error_numbers::kCannotConnect;
  }
  return number;
}

Error HttpExchange::failure(std::int32_t number, std::string_view detail) const {
  std::string text(trouble_text(number));
  text.append(shown_url(request_.url)).append(": ").append(excerpt(detail, CURL_ERROR_SIZE));
  return {number, request_.source, text};
}

}  // namespace bvconn::detail

#include "bvconn/platform/http/curl_transport.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/http/curl_errors.h"
#include "bvconn/platform/http/http_reply.h"
#include "bvconn/platform/http/http_url.h"
#include "bvconn/platform/http/traffic_file.h"

namespace bvconn::detail {
namespace {

// Shorter than the five seconds after which servers begin to close idle connections, so that the
// transport lets go of a connection before the server does.
constexpr long kIdleConnectionMaxSeconds = 3;
constexpr long kReceiveBufferSize = 128L << 10;

Error failure(std::int32_t number, std::string_view description) {
  return {number, "HTTPTransport", description};
}

template <typename Integer>
Integer positive_number(std::string_view key, std::string_view text, Integer max) {
  Integer number = 0;
  const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (code != std::errc() || end != text.data() + text.size() || number < 1 || number > max) {
    throw failure(error_numbers::kUnknownOption,
                  "The option " + std::string(key) + " takes a number from 1 to " +
                      conversions::integer_text(static_cast<std::int64_t>(max)) + ", not " +
                      shown(text));
  }
  return number;
}

std::string file_name(std::string_view key, std::string_view value) {
  if (value.find('\0') != std::string_view::npos) {
    throw failure(error_numbers::kUnknownOption,
                  "The option " + std::string(key) + " takes a file name, not " + shown(value));
  }
  return std::string(value);
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

// With OpenSSL, libcurl takes the bare end of a connection for the end of its TLS stream, but shows
// the messages of TLS; the other TLS libraries fail by themselves.
bool takes_bare_end_for_tls_end() {
  const std::string_view library = curl_version_info(CURLVERSION_NOW)->ssl_version;
  return library.starts_with("OpenSSL") || library.starts_with("LibreSSL");
}

bool is_reset(long system_error) {
  return system_error == ECONNRESET || system_error == EPIPE;
}

bool is_proxy_host(std::string_view host) {
  return !host.empty() && std::all_of(host.begin(), host.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           contains(".-_:[]", {&c, 1});
  });
}

bool is_port(std::string_view text) {
  std::uint16_t port = 0;
  const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), port);
  return code == std::errc() && end == text.data() + text.size() && port != 0;
}

}  // namespace

// What the callbacks of one exchange work on.
struct CurlTransport::Exchange {
  Exchange(CURL* curl, const bool& reset, std::string shown, std::uint64_t reply_size_max,
           const std::string& tracing_file)
      : handle(curl),
        saw_reset(reset),
        url(std::move(shown)),
        reply(url, reply_size_max),
        secure(conversions::equal_ignoring_case(std::string_view(url).substr(0, 6), "https:")),
        traffic(tracing_file, url) {}

  // No exception may pass through libcurl.
  template <typename Take>
  std::size_t guarded(std::size_t size, Take take) noexcept {
    try {
      return take() ? size : 0;
    } catch (const std::exception&) {
      out_of_memory = true;
      return 0;
    }
  }

  static std::size_t on_header(char* data, std::size_t size, std::size_t count, void* self) {
    auto& exchange = *static_cast<Exchange*>(self);
    const std::string_view line(data, size * count);
    return exchange.guarded(line.size(), [&] { return exchange.reply.take_header(line); });
  }

  static std::size_t on_body(char* data, std::size_t size, std::size_t count, void* self) {
    auto& exchange = *static_cast<Exchange*>(self);
    const std::string_view bytes(data, size * count);
    return exchange.guarded(bytes.size(), [&] { return exchange.reply.take_body(bytes); });
  }

  static int on_traffic(CURL*, curl_infotype type, char* data, std::size_t size, void* self) {
    using std::string_view_literals::operator""sv;
    constexpr auto kCloseNotify = "\x01\x00"sv;  // A warning (1) with the number 0.
    auto& exchange = *static_cast<Exchange*>(self);
    const std::string_view bytes(data, size);
    exchange.guarded(size, [&] {
      if (type == CURLINFO_SSL_DATA_IN) {
        exchange.tls_ended |= bytes == kCloseNotify;
      } else if (type == CURLINFO_HEADER_OUT || type == CURLINFO_DATA_OUT) {
        exchange.traffic.add(TrafficFile::Direction::kOut, bytes);
      } else if (type == CURLINFO_HEADER_IN || type == CURLINFO_DATA_IN) {
        exchange.traffic.add(TrafficFile::Direction::kIn, bytes);
      }
      return true;
    });
    return 0;
  }

  // Called before each request that libcurl sends: a second time only if a kept connection ended
  // without a byte of reply.
  static int on_request(void* self, char*, char*, int, int) {
    auto& exchange = *static_cast<Exchange*>(self);
    if (exchange.requests++ == 0) {
      return CURL_PREREQFUNC_OK;
    }
    long system_error = 0;
    curl_easy_getinfo(exchange.handle, CURLINFO_OS_ERRNO, &system_error);
    // On closing, TLS says goodbye first: a reset may then be the answer to just that.
    const bool reset = is_reset(system_error) || (exchange.saw_reset && !exchange.secure);
    return reset ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
  }

  CURL* handle;
  const bool& saw_reset;
  std::string url;
  HttpReply reply;
  bool secure;
  TrafficFile traffic;
  std::array<char, CURL_ERROR_SIZE> error_text{};
  int requests = 0;
  bool tls_ended = false;
  bool out_of_memory = false;
};

CurlTransport::CurlTransport()
    : no_body_(failure(error_numbers::kBadReply, "There is no reply: nothing was sent")) {
  start_libcurl("HTTPTransport");
}

CurlTransport::~CurlTransport() = default;

void CurlTransport::Option(std::string_view key, std::string_view value) {
  if (key == "tracing.file") {
    tracing_file_ = file_name(key, value);
  } else if (key == "tls.ca_file") {
    set_tls_file(ca_file_, file_name(key, value));
  } else if (key == "tls.client_cert") {
    set_tls_file(client_cert_, file_name(key, value));
  } else if (key == "tls.client_key") {
    set_tls_file(client_key_, file_name(key, value));
  } else if (key == "http.max_reply_bytes") {
    constexpr auto kMax = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    reply_size_max_ = positive_number<std::uint64_t>(key, value, kMax);
  } else if (key == "http.connect_timeout_ms") {
    constexpr auto kMax = std::numeric_limits<std::int32_t>::max();
    connect_timeout_ms_ = positive_number<std::int32_t>(key, value, kMax);
  } else {
    throw failure(error_numbers::kUnknownOption, "There is no option " + shown(key));
  }
}

// A kept connection was trusted under the old setting, and libcurl does not compare all of them.
void CurlTransport::set_tls_file(std::string& setting, std::string file) {
  if (setting != file) {
    setting = std::move(file);
    handle_.reset();
  }
}

void CurlTransport::setProxy(std::string_view host, std::string_view port) {
  uses_proxy_ = true;
  proxy_host_ = host;
  proxy_port_ = port;
}

void CurlTransport::NoProxy() {
  uses_proxy_ = false;
}

void CurlTransport::SOAPAction(std::string_view value) {
  const auto breaks_header = [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && c != '\t') || byte == 0x7F;
  };
  if (std::any_of(value.begin(), value.end(), breaks_header)) {
    throw failure(error_numbers::kBadUrlOrHeader,
                  "The SOAPAction " + shown(value) + " holds a control character");
  }
  soap_action_ = value;
}

void CurlTransport::Timeout(std::int32_t milliseconds) {
  timeout_ms_ = milliseconds;
}

void CurlTransport::Send(std::string_view url, std::string_view text) {
  body_.reset();
  no_body_ = failure(error_numbers::kBadReply, "There is no reply: the last request failed");
  check_url(url);
  take_clean_handle();
  saw_reset_ = false;
  Exchange exchange(handle_.get(), saw_reset_, shown_url(url), reply_size_max_, tracing_file_);
  const HeaderList headers = request_headers();
  prepare(exchange, std::string(url), text, headers.get());
  const CURLcode code = curl_easy_perform(handle_.get());
  if (code == CURLE_OK) {
    curl_easy_reset(handle_.get());  // It keeps its connection, but nothing that points to here.
  } else {
    handle_.reset();
  }
  conclude(exchange, code);
}

std::string CurlTransport::Receive(std::string_view /*encoding*/) {
  if (!body_) {
    throw Error(no_body_);
  }
  std::string body = *std::move(body_);
  body_.reset();
  no_body_ = failure(error_numbers::kBadReply, "There is no reply: it was received already");
  return body;
}

// A kept connection has nothing to say between two calls. One that has was closed by the server,
// or brings what nobody asked for, which must not be taken for the next reply.
void CurlTransport::take_clean_handle() {
  if (handle_ != nullptr) {
    pollfd kept{-1, POLLIN, 0};
    curl_easy_getinfo(handle_.get(), CURLINFO_ACTIVESOCKET, &kept.fd);
    if (kept.fd == CURL_SOCKET_BAD || poll(&kept, 1, 0) == 0) {
      return;
    }
  }
  handle_.reset(curl_easy_init());
  if (handle_ == nullptr) {
    throw failure(error_numbers::kCannotConnect, "libcurl has no memory");
  }
}

CurlTransport::HeaderList CurlTransport::request_headers() const {
  HeaderList list;
  const auto add = [&list](const std::string& line) {
    curl_slist* longer = curl_slist_append(list.get(), line.c_str());
    if (longer == nullptr) {
      throw failure(error_numbers::kCannotConnect, "libcurl has no memory");
    }
    static_cast<void>(list.release());
    list.reset(longer);
  };
  add("Accept-Encoding: gzip");
  add("Content-Type: text/xml; charset=utf-8");
  if (soap_action_) {
    add("SOAPAction: \"" + *soap_action_ + "\"");
  }
  // Without a value it is not sent: no wait for an interim reply before a large request.
  add("Expect:");
  return list;
}

std::string CurlTransport::proxy_url(std::string_view shown_url) const {
  if (!uses_proxy_) {
    return "";  // For libcurl this means that a proxy of the environment does not count either.
  }
  if (!is_proxy_host(proxy_host_) || !is_port(proxy_port_)) {
    throw failure(error_numbers::kProxy, "The proxy with the host " + shown(proxy_host_) +
                                             " and the port " + shown(proxy_port_) +
                                             " cannot be used for " + std::string(shown_url));
  }
  const bool bare_ipv6 = contains(proxy_host_, ":") && !proxy_host_.starts_with('[');
  return "http://" + (bare_ipv6 ? "[" + proxy_host_ + "]" : proxy_host_) + ":" + proxy_port_;
}

template <typename Value>
void CurlTransport::set(CURLoption option, Value value) {
  const CURLcode code = curl_easy_setopt(handle_.get(), option, value);
  if (code != CURLE_OK) {
    throw failure(error_numbers::kCannotConnect,
                  std::string("libcurl cannot be set up: ") + curl_easy_strerror(code));
  }
}

void CurlTransport::prepare(Exchange& exchange, const std::string& url, std::string_view text,
                            curl_slist* headers) {
  set(CURLOPT_URL, url.c_str());
  set(CURLOPT_PATH_AS_IS, 1L);
  set(CURLOPT_PROTOCOLS_STR, "http,https");
  set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  set(CURLOPT_FOLLOWLOCATION, 0L);
  set(CURLOPT_POST, 1L);
  set(CURLOPT_POSTFIELDS, text.empty() ? "" : text.data());
  set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(text.size()));
  set(CURLOPT_HTTPHEADER, headers);
  set(CURLOPT_PROXY, proxy_url(exchange.url).c_str());
  set(CURLOPT_NOPROXY, "");
  set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  prepare_limits();
  prepare_tls();
  prepare_callbacks(exchange);
}

void CurlTransport::prepare_limits() {
  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_TIMEOUT_MS, static_cast<long>(std::max(timeout_ms_, 0)));
  // libcurl has a limit for connecting of its own unless it is given one.
  set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(connect_timeout_ms_));
  set(CURLOPT_BUFFERSIZE, kReceiveBufferSize);
  set(CURLOPT_MAXCONNECTS, 1L);
  set(CURLOPT_MAXAGE_CONN, kIdleConnectionMaxSeconds);
}

void CurlTransport::prepare_tls() {
  set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  set(CURLOPT_SSL_VERIFYPEER, 1L);
  set(CURLOPT_SSL_VERIFYHOST, 2L);
  if (!ca_file_.empty()) {
    // Who names an authority trusts that one, not the system's store besides.
    set(CURLOPT_CAINFO, ca_file_.c_str());
    set(CURLOPT_CAPATH, static_cast<char*>(nullptr));
  }
  if (!client_cert_.empty()) {
    set(CURLOPT_SSLCERT, client_cert_.c_str());
  }
  if (!client_key_.empty()) {
    set(CURLOPT_SSLKEY, client_key_.c_str());
  }
  // Otherwise the TLS library would ask for the pass phrase of a key on the terminal, and wait.
  set(CURLOPT_KEYPASSWD, "");
}

void CurlTransport::prepare_callbacks(Exchange& exchange) {
  set(CURLOPT_ERRORBUFFER, exchange.error_text.data());
  set(CURLOPT_HEADERFUNCTION, &Exchange::on_header);
  set(CURLOPT_HEADERDATA, &exchange);
  set(CURLOPT_WRITEFUNCTION, &Exchange::on_body);
  set(CURLOPT_WRITEDATA, &exchange);
  set(CURLOPT_PREREQFUNCTION, &Exchange::on_request);
  set(CURLOPT_PREREQDATA, &exchange);
  set(CURLOPT_CLOSESOCKETFUNCTION, &CurlTransport::on_close);
  set(CURLOPT_CLOSESOCKETDATA, this);
  set(CURLOPT_DEBUGFUNCTION, &Exchange::on_traffic);
  set(CURLOPT_DEBUGDATA, &exchange);
  set(CURLOPT_VERBOSE, exchange.secure || !tracing_file_.empty() ? 1L : 0L);
}

// A reset that came after the end of the stream shows nowhere else: reading sees the end alone.
int CurlTransport::on_close(void* self, curl_socket_t socket) {
  int error = 0;
  socklen_t size = sizeof(error);
  if (getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && is_reset(error)) {
    static_cast<CurlTransport*>(self)->saw_reset_ = true;
  }
  return close(socket);
}

bool CurlTransport::was_cut_by_tls(const Exchange& exchange, CURLcode code) const {
  return code == CURLE_OK && exchange.secure && exchange.reply.ends_with_connection() &&
         !exchange.tls_ended && takes_bare_end_for_tls_end();
}

void CurlTransport::conclude(Exchange& exchange, CURLcode code) {
  HttpReply& reply = exchange.reply;
  std::optional<Error> trouble;
  if (exchange.out_of_memory) {
    trouble =
        failure(error_numbers::kBadReply, "There is no memory for the reply of " + exchange.url);
  } else if (!reply.given_up() && (code != CURLE_OK || !reply.has_status())) {
    trouble = judge(exchange, code);
    const bool about_reply = trouble->number == error_numbers::kBadReply || reply.has_status();
    if (trouble->number == error_numbers::kTimeout || !about_reply) {
      throw *std::move(trouble);
    }
  }
  if (was_cut_by_tls(exchange, code)) {
    trouble = failure(error_numbers::kConnectionLost,
                      std::string(trouble_text(error_numbers::kConnectionLost)) + exchange.url +
                          ": it ended without the closing message of TLS");
  }
  if (std::optional<Error> error = reply.finish(std::move(trouble))) {
    no_body_ = *std::move(error);
  } else {
    body_ = reply.take();
  }
}

Error CurlTransport::judge(const Exchange& exchange, CURLcode code) const {
  std::string detail = exchange.error_text.data();
  if (detail.empty() || code == CURLE_ABORTED_BY_CALLBACK) {
    detail = code == CURLE_OK || code == CURLE_ABORTED_BY_CALLBACK
                 ? "the server closed it before its reply began"
                 : curl_easy_strerror(code);
  }
  std::int32_t number = number_for(code, detail);
  const bool status = exchange.reply.has_status();
  if (status && number != error_numbers::kTimeout && number != error_numbers::kBadReply) {
    number = error_numbers::kConnectionLost;
  } else if (number == error_numbers::kCannotConnect ||
             (number == error_numbers::kConnectionLost && exchange.requests == 0)) {
    // No request went out: with a proxy it is the proxy that cannot be reached or makes no tunnel.
    number = uses_proxy_ ? error_numbers::kProxy : error_numbers::kCannotConnect;
  }
  std::string text(trouble_text(number));
  text.append(exchange.url).append(": ").append(excerpt(detail, CURL_ERROR_SIZE));
  return failure(number, text);
}

}  // namespace bvconn::detail

#include "bvconn/platform/torvexlib/json_poster.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <exception>
#include <limits>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/decimal.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/http/curl_errors.h"
#include "bvconn/platform/http/http_url.h"

namespace bvconn::detail {
namespace {

constexpr std::uint64_t kHeaderBytesMax = 256 << 10;
/// An error that is reported in JSON is short; of any other page only the beginning is shown.
constexpr std::uint64_t kErrorBytesMax = 1 << 20;
/// Shorter than servers keep an idle connection, so that it is let go of before they close it.
constexpr long kIdleConnectionMaxSeconds = 3;
constexpr int kOk = 200;

[[noreturn]] void fail(std::int32_t number, std::string_view source, std::string_view text) {
  throw Error(number, source, text);
}

class HeaderList {
 public:
  explicit HeaderList(std::string_view source) : source_(source) {}
  ~HeaderList() { curl_slist_free_all(list_); }
  HeaderList(const HeaderList&) = delete;
  HeaderList& operator=(const HeaderList&) = delete;

  void add(const std::string& line) {
    curl_slist* longer = curl_slist_append(list_, line.c_str());
    if (longer == nullptr) {
      fail(error_numbers::kCannotConnect, source_, "libcurl has no memory");
    }
    list_ = longer;
  }
  curl_slist* get() const { return list_; }

 private:
  std::string_view source_;
  curl_slist* list_ = nullptr;
};

}  // namespace

/// What the callbacks of one exchange work on.
struct JsonPoster::Exchange {
  // No exception may pass through libcurl.
  template <typename Take>
  std::size_t guarded(std::size_t size, Take take) noexcept {
    try {
      return take() ? size : 0;
    } catch (const std::exception&) {
      refusal = "there is no memory for it";
      return 0;
    }
  }

  static std::size_t on_header(char* data, std::size_t size, std::size_t count, void* self) {
    auto& exchange = *static_cast<Exchange*>(self);
    const std::string_view line(data, size * count);
    return exchange.guarded(line.size(), [&] { return exchange.take_header(line); });
  }

  static std::size_t on_body(char* data, std::size_t size, std::size_t count, void* self) {
    auto& exchange = *static_cast<Exchange*>(self);
    const std::string_view bytes(data, size * count);
    return exchange.guarded(bytes.size(), [&] { return exchange.take_body(bytes); });
  }

  // Called before each request that libcurl sends: a second time only if a kept connection ended
  // without a byte of reply. A reset shows that the server never took the request in; after a
  // silent close it may have acted on it, and nothing is sent twice.
  static int on_request(void* self, char*, char*, int, int) {
    auto& exchange = *static_cast<Exchange*>(self);
    long system_error = 0;
    curl_easy_getinfo(exchange.handle, CURLINFO_OS_ERRNO, &system_error);
    const bool first = exchange.requests++ == 0;
    return first || system_error == ECONNRESET || system_error == EPIPE ? CURL_PREREQFUNC_OK
                                                                        : CURL_PREREQFUNC_ABORT;
  }

  bool take_header(std::string_view line) {
    header_bytes += line.size();
    if (header_bytes > kHeaderBytesMax) {
      refusal = "its headers are too large";
      return false;
    }
    const std::string_view text = trim_white(line);
    if (text.starts_with("HTTP/") && !std::exchange(in_headers, true)) {
      // The status line of an interim reply, or of the final one.
      const std::size_t space = std::min(text.find(' ', text.find(' ') + 1), text.size());
      reply = JsonReply{};
      reply.reason = trim_white(text.substr(space));
    } else if (text.empty()) {
      in_headers = false;
    } else if (in_headers) {
      return take_field(text);
    }
    return true;
  }

  bool take_field(std::string_view text) {
    using conversions::equal_ignoring_case;
    const std::size_t colon = std::min(text.find(':'), text.size());
    const std::string_view name = text.substr(0, colon);
    const std::string_view value = trim_white(text.substr(std::min(colon + 1, text.size())));
    if (equal_ignoring_case(name, "Location")) {
      reply.location = value;
    } else if (equal_ignoring_case(name, "Session-Token")) {
      reply.session_token = value;
    } else if (equal_ignoring_case(name, "Content-Encoding") && !value.empty() &&
               !equal_ignoring_case(value, "identity")) {
      refusal = "it has a content encoding that was not asked for";
      return false;
    }
    return true;
  }

  bool take_body(std::string_view bytes) {
    const bool good = status() == kOk;
    const std::uint64_t limit = good ? body_bytes_max : std::min(kErrorBytesMax, body_bytes_max);
    if (bytes.size() <= limit - reply.body.size()) {
      reply.body.append(bytes);
      return true;
    }
    if (good) {
      refusal = "it is larger than " + std::to_string(limit) + " bytes, which is the limit";
    }
    return false;
  }

  int status() const {
    long code = 0;
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &code);
    return static_cast<int>(code);
  }

  /// Raises what stands against the reply. A status other than 200 says more than whatever happened
  /// to the page that explains it.
  void check(CURLcode code) {
    reply.status = code == CURLE_OK || header_bytes > 0 ? status() : 0;
    if (!refusal.empty()) {
      fail(error_numbers::kBadReply, source, "The reply of " + url + " cannot be used: " + refusal);
    }
    // For libcurl a connection that ends inside the headers ends them.
    const bool complete = code == CURLE_OK && !in_headers && reply.status >= kOk;
    const bool refused = reply.status > kOk && code != CURLE_OPERATION_TIMEDOUT;
    if (!complete && !refused) {
      fail_incomplete(code);
    }
  }

  [[noreturn]] void fail_incomplete(CURLcode code) const {
    std::string detail = error_text.data();
    if (code == CURLE_ABORTED_BY_CALLBACK) {
      detail = "the server closed it before its reply began";
    } else if (code == CURLE_OK) {
      detail = "the reply ended inside its headers";
    } else if (detail.empty()) {
      detail = curl_easy_strerror(code);
    }
    std::int32_t number = number_for(code, detail);
    if (reply.status >= kOk && number != error_numbers::kTimeout &&
        number != error_numbers::kBadReply) {
      number = error_numbers::kConnectionLost;
    } else if (number == error_numbers::kConnectionLost && requests == 0) {
      number = error_numbers::kCannotConnect;
    }
    fail(number, source,
         std::string(trouble_text(number))
             .append(url)
             .append(": ")
             .append(excerpt(detail, CURL_ERROR_SIZE)));
  }

  CURL* handle = nullptr;
  std::string_view source;
  std::string url;  ///< as it is shown to people
  std::uint64_t body_bytes_max = 0;
  std::uint64_t header_bytes = 0;
  bool in_headers = false;
  int requests = 0;
  std::string refusal;
  JsonReply reply;
  std::array<char, CURL_ERROR_SIZE> error_text{};
};

JsonPoster::JsonPoster() : JsonPoster(Limits{}) {}

JsonPoster::JsonPoster(const Limits& limits) : limits_(limits) {}

JsonReply JsonPoster::post(std::string_view source, const std::string& url,
                           const std::string& token, std::string_view body) {
  try {
    check_url(url);
  } catch (const Error& error) {
    throw Error(error.number, source, error.description);
  }
  take_clean_handle(source);
  HeaderList headers(source);
  headers.add("Content-Type: application/json");
  if (!token.empty()) {
    headers.add("Authorization: Bearer " + token);
  }
  // Without a value it is not sent: no wait for an interim reply before a large request.
  headers.add("Expect:");
  Exchange exchange;
  exchange.handle = handle_.get();
  exchange.source = source;
  exchange.url = shown_url(url);
  exchange.body_bytes_max = limits_.reply_bytes;
  prepare(exchange, url, body, headers.get());
  const CURLcode code = curl_easy_perform(handle_.get());
  const auto drop_failed = [&] {
    if (code != CURLE_OK) {
      handle_.reset();
    }
  };
  try {
    exchange.check(code);
  } catch (const Error&) {
    drop_failed();
    throw;
  }
  drop_failed();
  return std::move(exchange.reply);
}

// A kept connection has nothing to say between two calls; one that has was closed, or brings what
// nobody asked for, which must not be taken for the next reply.
void JsonPoster::take_clean_handle(std::string_view source) {
  if (handle_ != nullptr) {
    pollfd kept{-1, POLLIN, 0};
    curl_easy_getinfo(handle_.get(), CURLINFO_ACTIVESOCKET, &kept.fd);
    if (kept.fd == CURL_SOCKET_BAD || poll(&kept, 1, 0) == 0) {
      curl_easy_reset(handle_.get());
      return;
    }
  }
  start_libcurl(source);
  handle_.reset(curl_easy_init());
  if (handle_ == nullptr) {
    fail(error_numbers::kCannotConnect, source, "libcurl has no memory");
  }
}

template <typename Value>
void JsonPoster::set(std::string_view source, CURLoption option, Value value) {
  const CURLcode code = curl_easy_setopt(handle_.get(), option, value);
  if (code != CURLE_OK) {
    fail(error_numbers::kCannotConnect, source,
         std::string("libcurl cannot be set up: ") + curl_easy_strerror(code));
  }
}

void JsonPoster::prepare(Exchange& exchange, const std::string& url, std::string_view body,
                         curl_slist* headers) {
  const auto option = [&](CURLoption key, auto value) { set(exchange.source, key, value); };
  option(CURLOPT_URL, url.c_str());
  option(CURLOPT_PATH_AS_IS, 1L);
  option(CURLOPT_PROTOCOLS_STR, "http,https");
  option(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  option(CURLOPT_FOLLOWLOCATION, 0L);
  // An empty proxy means that one of the environment does not count either.
  option(CURLOPT_PROXY, "");
  option(CURLOPT_POST, 1L);
  option(CURLOPT_POSTFIELDS, body.data());
  option(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
  option(CURLOPT_HTTPHEADER, headers);
  option(CURLOPT_NOSIGNAL, 1L);
  option(CURLOPT_TIMEOUT_MS, static_cast<long>(limits_.time_out.count()));
  // libcurl has a limit for connecting of its own unless it is given one.
  option(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limits_.time_out.count()));
  option(CURLOPT_MAXCONNECTS, 1L);
  option(CURLOPT_MAXAGE_CONN, kIdleConnectionMaxSeconds);
  option(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  option(CURLOPT_ERRORBUFFER, exchange.error_text.data());
  option(CURLOPT_HEADERFUNCTION, &Exchange::on_header);
  option(CURLOPT_HEADERDATA, &exchange);
  option(CURLOPT_WRITEFUNCTION, &Exchange::on_body);
  option(CURLOPT_WRITEDATA, &exchange);
  option(CURLOPT_PREREQFUNCTION, &Exchange::on_request);
  option(CURLOPT_PREREQDATA, &exchange);
}

}  // namespace bvconn::detail

#include "bvconn/platform/http/socket_transport.h"

#include <algorithm>
#include <charconv>
#include <typeinfo>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/http/buffered_reply.h"
#include "bvconn/platform/http/curl_errors.h"

namespace bvconn::detail {
namespace {

constexpr std::string_view kSource = "HTTPTransport";
/// The headers that every request has.
constexpr std::size_t kUsualHeaders = 2;

Error failure(std::int32_t number, std::string_view description) {
  return {number, kSource, description};
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

// Whatever a redirect brings along, it is not the answer to the request.
bool is_redirect(int status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

// A fault is XML, and comes with a status of its own.
bool accepts(int status, std::string_view content_type) {
  return status < 300 || (is_xml_content_type(content_type) && !is_redirect(status));
}

}  // namespace

SocketTransport::SocketTransport()
    : headers_{"Accept-Encoding: gzip", "Content-Type: text/xml; charset=utf-8"} {
  start_libcurl(kSource);
}

void SocketTransport::Option(std::string_view key, std::string_view value) {
  if (key == "tracing.file") {
    tracing_file_ = file_name(key, value);
  } else if (key == "tls.ca_file") {
    ca_file_ = file_name(key, value);
  } else if (key == "tls.client_cert") {
    client_cert_ = file_name(key, value);
  } else if (key == "tls.client_key") {
    client_key_ = file_name(key, value);
  } else if (key == "http.max_reply_bytes") {
    constexpr auto kMax = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    reply_size_max_ = positive_number<std::uint64_t>(key, value, kMax);
  } else if (key == "http.connect_timeout_ms") {
    constexpr auto kMax = std::numeric_limits<std::int32_t>::max();
    connect_time_out_ = std::chrono::milliseconds(positive_number<std::int32_t>(key, value, kMax));
  } else {
    throw failure(error_numbers::kUnknownOption, "There is no option " + shown(key));
  }
}

TlsFiles SocketTransport::tls() const {
  TlsFiles files = tls_files();
  if (ca_file_) files.ca_file = *ca_file_;
  // A key belongs to its certificate: they are never taken from two places.
  if (client_cert_ || client_key_) {
    files.client_cert = client_cert_.value_or("");
    files.client_key = client_key_.value_or("");
  }
  return files;
}

void SocketTransport::setProxy(std::string_view host, std::string_view port) {
  proxy_ = HttpProxy{.host = std::string(host), .port = std::string(port)};
}

void SocketTransport::NoProxy() {
  proxy_.reset();
}

void SocketTransport::SOAPAction(std::string_view value) {
  const auto breaks_header = [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && c != '\t') || byte == 0x7F;
  };
  if (std::any_of(value.begin(), value.end(), breaks_header)) {
    throw failure(error_numbers::kBadUrlOrHeader,
                  "The SOAPAction " + shown(value) + " holds a control character");
  }
  // Most requests of a session go to the service of the one before.
  constexpr std::string_view kBegin = "SOAPAction: \"";
  const bool is_set = headers_.size() > kUsualHeaders;
  if (is_set && headers_.back().size() == kBegin.size() + value.size() + 1 &&
      headers_.back().compare(kBegin.size(), value.size(), value) == 0) {
    return;
  }
  std::string line(kBegin);
  line.append(value).append("\"");
  if (is_set) {
    headers_.back() = std::move(line);
  } else {
    headers_.push_back(std::move(line));
  }
}

void SocketTransport::Timeout(std::int32_t milliseconds) {
  time_out_ = std::chrono::milliseconds(std::max(milliseconds, 0));
}

void SocketTransport::Send(std::string_view url, std::string_view text) {
  body_.reset();
  no_body_.reset();
  without_body_ = "the last request failed";
  last_status_ = 0;
  HttpReply reply =
      client_.post({.source = kSource,
                    .url = url,
                    .body = text,
                    .headers = headers_,
                    .proxy = proxy_ ? &*proxy_ : nullptr,
                    .time_out = time_out_,
                    .connect_time_out = connect_time_out_,
                    .tls = tls(),
                    .tracing_file = tracing_file_},
                   {.accepts = &accepts, .body_size_max = reply_size_max_, .takes_gzip = true});
  last_url_.assign(url);
  last_reason_.assign(reply.reason());
  last_status_ = reply.status();
  if (reply.error()) {
    no_body_ = *reply.error();
  } else {
    body_ = reply.take();
  }
}

std::string SocketTransport::Receive(std::string_view /*encoding*/) {
  return receive_buffer().take_string();
}

TextBuffer receive_buffer(HTTPTransport& transport) {
  if (typeid(transport) != typeid(SocketTransport)) return transport.Receive("UTF-8");
  return static_cast<SocketTransport&>(transport).receive_buffer();
}

TextBuffer SocketTransport::receive_buffer() {
  if (!body_) {
    if (no_body_) throw Error(*no_body_);
    throw failure(error_numbers::kBadReply,
                  std::string("There is no reply: ").append(without_body_));
  }
  TextBuffer body = *std::move(body_);
  body_.reset();
  without_body_ = "it was received already";
  return body;
}

std::string SocketTransport::LastReply() const {
  if (last_status_ == 0) return "";
  return "the server " + reply_summary(last_url_, last_status_, last_reason_);
}

}  // namespace bvconn::detail

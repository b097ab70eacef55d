#include "bvconn/platform/http/http_reply.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/http/gzip_reader.h"
#include "bvconn/platform/http/http_url.h"

namespace bvconn::detail {
namespace {

using conversions::equal_ignoring_case;

constexpr std::uint64_t kHeaderSizeMax = 256 << 10;
// A length in a header is a claim: more than this is not reserved for it in advance.
constexpr std::uint64_t kReserveMax = 1 << 20;
// Of a reply that is refused for its status only the beginning is shown, so little is kept.
constexpr std::size_t kRefusedBodyMax = 16 << 10;
constexpr std::size_t kShownBodyMax = 300;
constexpr std::size_t kShownFieldMax = 300;

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
  return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

std::optional<std::uint64_t> length_of(std::string_view text) {
  std::uint64_t length = 0;
  const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), length);
  if (code != std::errc() || end != text.data() + text.size()) {
    return std::nullopt;
  }
  return length;
}

}  // namespace

bool is_xml_content_type(std::string_view content_type) {
  const std::string_view type = trimmed(content_type.substr(0, content_type.find(';')));
  constexpr std::string_view kSuffix = "+xml";
  return equal_ignoring_case(type, "text/xml") || equal_ignoring_case(type, "application/xml") ||
         (type.size() > kSuffix.size() && type.find('/') != std::string_view::npos &&
          equal_ignoring_case(type.substr(type.size() - kSuffix.size()), kSuffix));
}

HttpReply::HttpReply(std::string shown_url, std::uint64_t body_size_max)
    : shown_url_(std::move(shown_url)), body_size_max_(body_size_max) {}

HttpReply::~HttpReply() = default;

bool HttpReply::take_header(std::string_view line) {
  header_size_ += line.size();
  if (header_size_ > kHeaderSizeMax) {
    return give_up(error_numbers::kBadReply, "its headers are too large");
  }
  if (headers_complete_) {
    return true;  // A trailer after the chunks of the body.
  }
  const std::string_view text = trimmed(line);
  if (!std::exchange(in_headers_, true)) {
    return take_status_line(text);
  }
  if (text.empty()) {
    return end_headers();
  }
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) {
    return true;
  }
  return take_field(text.substr(0, colon), trimmed(text.substr(colon + 1)));
}

bool HttpReply::take_status_line(std::string_view line) {
  const std::string_view rest = trimmed(line.substr(std::min(line.find(' '), line.size())));
  const auto [end, code] = std::from_chars(rest.data(), rest.data() + rest.size(), status_);
  if (code != std::errc() || status_ < 100) {
    return give_up(error_numbers::kBadReply, "its status line is not one of HTTP");
  }
  reason_ = trimmed(rest.substr(static_cast<std::size_t>(end - rest.data())));
  return true;
}

bool HttpReply::take_field(std::string_view name, std::string_view value) {
  if (equal_ignoring_case(name, "Content-Type")) {
    content_type_ = value;
  } else if (equal_ignoring_case(name, "Content-Encoding")) {
    content_encoding_ = value;
  } else if (equal_ignoring_case(name, "Location")) {
    location_ = value;
  } else if (equal_ignoring_case(name, "Transfer-Encoding")) {
    is_chunked_ = equal_ignoring_case(value, "chunked");
  } else if (equal_ignoring_case(name, "Content-Length")) {
    if (!content_length_.empty() && content_length_ != value) {
      return give_up(error_numbers::kBadReply, "it states two different lengths");
    }
    content_length_ = value;
  }
  return true;
}

bool HttpReply::end_headers() {
  in_headers_ = false;
  if (!has_status()) {
    // An interim reply; the final one begins with a status line of its own.
    content_type_.clear();
    content_encoding_.clear();
    content_length_.clear();
    is_chunked_ = false;
    location_.clear();
    return true;
  }
  headers_complete_ = true;
  if (equal_ignoring_case(content_encoding_, "gzip") ||
      equal_ignoring_case(content_encoding_, "x-gzip")) {
    gzip_ = std::make_unique<GzipReader>();
  } else if (!content_encoding_.empty() && !equal_ignoring_case(content_encoding_, "identity")) {
    return give_up(error_numbers::kBadReply, "it has the content encoding \"" +
                                                 excerpt(content_encoding_, kShownFieldMax) + "\"");
  }
  const std::uint64_t length = length_of(content_length_).value_or(0);
  body_.reserve(static_cast<std::size_t>(std::min({length, kReserveMax, body_size_max_})));
  return true;
}

bool HttpReply::take_body(std::string_view bytes) {
  const std::uint64_t size_max =
      is_refused() ? std::min<std::uint64_t>(kRefusedBodyMax, body_size_max_) : body_size_max_;
  auto outcome = GzipReader::Outcome::kGood;
  if (gzip_ != nullptr) {
    outcome = gzip_->read(bytes, body_, size_max);
  } else if (bytes.size() > size_max - body_.size()) {
    outcome = GzipReader::Outcome::kTooLarge;
    if (is_refused()) {
      body_.append(bytes.substr(0, static_cast<std::size_t>(size_max) - body_.size()));
    }
  } else {
    body_.append(bytes);
  }
  if (outcome == GzipReader::Outcome::kMalformed) {
    return give_up(error_numbers::kBadReply, "its gzip stream is malformed");
  }
  if (outcome == GzipReader::Outcome::kTooLarge) {
    return give_up(error_numbers::kBadReply,
                   "it has more than " +
                       conversions::integer_text(static_cast<std::int64_t>(body_size_max_)) +
                       " bytes, which is the limit");
  }
  return true;
}

bool HttpReply::ends_with_connection() const {
  const bool bodiless = status_ == 204 || status_ == 304;
  return headers_complete_ && !bodiless && content_length_.empty() && !is_chunked_;
}

std::optional<Error> HttpReply::finish(std::optional<Error> trouble) {
  if (headers_complete_ && is_refused()) {
    // The status says more than whatever happened to the page that explains it.
    error_ = refusal();
  } else if (!error_ && trouble) {
    error_ = std::move(trouble);
  } else if (!error_ && !headers_complete_) {
    error_ = failure(error_numbers::kConnectionLost, "it was cut inside its headers");
  } else if (!error_ && gzip_ != nullptr && !gzip_->complete()) {
    error_ = failure(error_numbers::kConnectionLost, "its gzip stream was cut");
  }
  return error_;
}

bool HttpReply::is_refused() const {
  return status_ >= 300 && !is_xml_content_type(content_type_);
}

Error HttpReply::refusal() const {
  std::string text = "The server answered to " + shown_url_ + " with the status " +
                     conversions::integer_text(status_);
  if (!reason_.empty()) {
    text += " " + excerpt(reason_, kShownFieldMax);
  }
  if (!location_.empty()) {
    text += " and names another location, " + shown_url(location_) + ", which is not followed";
  }
  const std::string beginning = excerpt(body_, kShownBodyMax);
  return {error_numbers::kHttpStatus, "HTTPTransport",
          beginning.empty() ? text : text + ": " + beginning};
}

bool HttpReply::give_up(std::int32_t number, std::string_view reason) {
  given_up_ = true;
  error_ = failure(number, reason);
  return false;
}

Error HttpReply::failure(std::int32_t number, std::string_view reason) const {
  return {number, "HTTPTransport",
          "The reply of " + shown_url_ + " cannot be used: " + std::string(reason)};
}

}  // namespace bvconn::detail

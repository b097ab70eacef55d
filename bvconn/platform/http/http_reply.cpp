#include "bvconn/platform/http/http_reply.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/http/gzip_reader.h"
#include "bvconn/platform/http/http_url.h"

namespace bvconn::detail {
namespace {

using conversions::equal_ignoring_case;

constexpr std::uint64_t kHeaderSizeMax = 256 << 10;
// A length in a header is a claim: more than this is not reserved for it in advance. What is
// reserved beyond `MemoryBlock::kLarge` is address space, and no memory before bytes arrive.
constexpr std::uint64_t kReserveMax = 16 << 20;
constexpr std::size_t kShownBodyMax = 300;
constexpr std::size_t kShownFieldMax = 300;

/// A length is digits and nothing else. A list of lengths, which comes of headers that were joined
/// on the way, is one length where all its members are the same.
std::optional<std::uint64_t> length_of(std::string_view text) {
  std::optional<std::uint64_t> length;
  while (true) {
    const std::string_view part = text.substr(0, text.find(','));
    const std::string_view digits = trimmed(part);
    std::uint64_t stated = 0;
    const auto [end, code] = std::from_chars(digits.data(), digits.data() + digits.size(), stated);
    if (code != std::errc() || end != digits.data() + digits.size() ||
        length.value_or(stated) != stated) {
      return std::nullopt;
    }
    length = stated;
    if (part.size() == text.size()) return length;
    text.remove_prefix(part.size() + 1);
  }
}

}  // namespace

bool is_xml_content_type(std::string_view content_type) {
  const std::string_view type = trimmed(content_type.substr(0, content_type.find(';')));
  constexpr std::string_view kSuffix = "+xml";
  return equal_ignoring_case(type, "text/xml") || equal_ignoring_case(type, "application/xml") ||
         (type.size() > kSuffix.size() && type.find('/') != std::string_view::npos &&
          equal_ignoring_case(type.substr(type.size() - kSuffix.size()), kSuffix));
}

HttpReply::HttpReply(std::string_view source, std::string_view url, const ReplyRules& rules)
    : source_(source), url_(url), rules_(rules) {}

HttpReply::HttpReply(HttpReply&& other) noexcept = default;

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
  // libcurl reads such a line of any later version too.
  if (!line.starts_with("HTTP/1.")) {
    return give_up(error_numbers::kBadReply, "it is not one of HTTP/1");
  }
  const std::string_view rest = trimmed(line.substr(std::min(line.find(' '), line.size())));
  const auto [end, code] = std::from_chars(rest.data(), rest.data() + rest.size(), status_);
  if (code != std::errc() || status_ < 100) {
    return give_up(error_numbers::kBadReply, "its status line is not one of HTTP");
  }
  reason_ = trimmed(rest.substr(static_cast<std::size_t>(end - rest.data())));
  return true;
}

bool HttpReply::take_field(std::string_view name, std::string_view value) {
  if (equal_ignoring_case(name, "Content-Length")) {
    const std::optional<std::uint64_t> length = length_of(value);
    if (!length) {
      return give_up(error_numbers::kBadReply, "its length is " + shown(value));
    }
    const std::string_view stated = field(name);
    if (!stated.empty() && length_of(stated) != length) {
      return give_up(error_numbers::kBadReply, "it states two different lengths");
    }
  }
  fields_.add(name, value);
  return true;
}

bool HttpReply::end_headers() {
  in_headers_ = false;
  if (!has_status()) {
    fields_.clear();  // An interim reply; the final one begins with a status line of its own.
    return true;
  }
  headers_complete_ = true;
  is_refused_ = !rules_.accepts(status_, field("Content-Type"));
  const std::string_view encoding = field("Content-Encoding");
  if (rules_.takes_gzip &&
      (equal_ignoring_case(encoding, "gzip") || equal_ignoring_case(encoding, "x-gzip"))) {
    gzip_ = std::make_unique<GzipReader>();
  } else if (!encoding.empty() && !equal_ignoring_case(encoding, "identity")) {
    return give_up(error_numbers::kBadReply, "it has the content encoding \"" +
                                                 excerpt(encoding, kShownFieldMax) +
                                                 "\", which was not asked for");
  }
  const std::uint64_t length = length_of(field("Content-Length")).value_or(0);
  if (length > 0) {
    body_.reserve(static_cast<std::size_t>(std::min({length, kReserveMax, rules_.body_size_max})));
  }
  return true;
}

bool HttpReply::take_body(std::string_view bytes) {
  using Outcome = GzipReader::Outcome;
  Outcome outcome = Outcome::kGood;
  if (gzip_ != nullptr) {
    outcome = gzip_->read(bytes, [this](std::string_view plain) { return add_to_body(plain); });
  } else if (!add_to_body(bytes)) {
    outcome = Outcome::kRefused;
  }
  if (outcome == Outcome::kMalformed) {
    return give_up(error_numbers::kBadReply, "its gzip stream is malformed");
  }
  if (outcome == Outcome::kRefused) {
    return give_up(error_numbers::kBadReply,
                   "it has more than " +
                       conversions::integer_text(static_cast<std::int64_t>(rules_.body_size_max)) +
                       " bytes, which is the limit");
  }
  return true;
}

// A text that grows holds its old memory and its new memory at once. As long as the new one is at
// most half of the limit they keep within it together, and the next step is the limit itself, which
// is never outgrown; memory that is not written to costs nothing until then.
bool HttpReply::add_to_body(std::string_view bytes) {
  const std::uint64_t size_max = is_refused()
                                     ? std::min(rules_.refused_body_size_max, rules_.body_size_max)
                                     : rules_.body_size_max;
  const auto fitting =
      static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), size_max - body_.size()));
  const std::size_t size = body_.size() + fitting;
  if (size > body_.capacity()) {
    const std::size_t factor = body_.capacity() < MemoryBlock::kLarge ? 2 : 4;
    const std::size_t grown = std::max(size, factor * body_.capacity());
    body_.reserve(grown > size_max / 2 ? static_cast<std::size_t>(size_max) : grown);
  }
  body_.append(bytes.substr(0, fitting));
  return fitting == bytes.size();
}

bool HttpReply::ends_with_connection() const {
  const bool bodiless = status_ == 204 || status_ == 304;
  return headers_complete_ && !bodiless && field("Content-Length").empty() &&
         !equal_ignoring_case(field("Transfer-Encoding"), "chunked");
}

void HttpReply::finish(std::optional<Error> trouble) {
  if (is_refused()) {
    // The status says more than whatever happened to the page that explains it.
    error_ = refusal();
  } else if (!error_ && trouble) {
    error_ = std::move(trouble);
  } else if (!error_ && !headers_complete_) {
    error_ = failure(error_numbers::kConnectionLost, "it was cut inside its headers");
  } else if (!error_ && gzip_ != nullptr && !gzip_->complete()) {
    error_ = failure(error_numbers::kConnectionLost, "its gzip stream was cut");
  }
  if (error_) {
    // What is missing of a reply that was cut may be what would have told.
    error_->outcome = error_->number == error_numbers::kConnectionLost ? bvconn::Outcome::kUnknown
                                                                       : bvconn::Outcome::kAnswered;
  }
}

std::string reply_summary(std::string_view url, int status, std::string_view reason) {
  const std::string text =
      "answered to " + shown_url(url) + " with the status " + conversions::integer_text(status);
  return reason.empty() ? text : text + " " + excerpt(reason, kShownFieldMax);
}

Error HttpReply::refusal() const {
  std::string text = "The server " + reply_summary(url_, status_, reason_);
  if (const std::string_view location = field("Location"); !location.empty()) {
    text += " and names another location, " + shown_url(location) + ", which is not followed";
  }
  const std::string beginning = excerpt(body(), kShownBodyMax);
  return {error_numbers::kHttpStatus, source_, beginning.empty() ? text : text + ": " + beginning};
}

bool HttpReply::give_up(std::int32_t number, std::string_view reason) {
  given_up_ = true;
  error_ = failure(number, reason);
  return false;
}

Error HttpReply::failure(std::int32_t number, std::string_view reason) const {
  return {number, source_,
          "The reply of " + shown_url(url_) + " cannot be used: " + std::string(reason)};
}

}  // namespace bvconn::detail

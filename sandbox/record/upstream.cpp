#include "sandbox/record/upstream.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/http/http_client.h"

namespace bvconn::sandbox {
namespace {

using conversions::equal_ignoring_case;

/// What belongs to one connection, or what the recorder states itself. Without Accept-Encoding the
/// server does not pack what it sends, and a recording can be read.
constexpr std::array<std::string_view, 14> kOwnHeaders{
    "Host",    "Connection", "Content-Length",   "Transfer-Encoding",
    "Expect",  "Keep-Alive", "Proxy-Connection", "TE",
    "Trailer", "Upgrade",    "Accept-Encoding",  "Proxy-Authorization",
    "Server",  "Date"};

bool is_passed_on(std::string_view name) {
  return std::none_of(kOwnHeaders.begin(), kOwnHeaders.end(),
                      [&](std::string_view each) { return equal_ignoring_case(each, name); });
}

bool accepts(int /*status*/, std::string_view /*content_type*/) {
  return true;
}

std::vector<Header> headers_of(std::string_view lines) {
  std::vector<Header> headers;
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find('\n'), lines.size() - 1) + 1;
    const std::string_view line = detail::trimmed(lines.substr(0, end));
    lines.remove_prefix(end);
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || line.starts_with("HTTP/")) continue;
    const std::string_view name = line.substr(0, colon);
    const std::string_view value = detail::trimmed(line.substr(colon + 1));
    if (value.empty() || !is_passed_on(name)) continue;
    headers.push_back({.name = std::string(name), .value = std::string(value)});
  }
  return headers;
}

std::string checked_url(std::string_view url) {
  const bool is_secure = url.starts_with("https://");
  const std::string_view rest = url.substr(is_secure ? 8 : std::min<std::size_t>(7, url.size()));
  if ((!is_secure && !url.starts_with("http://")) || rest.empty() || rest.front() == '/' ||
      rest.find_first_of("?# ") != std::string_view::npos) {
    throw std::invalid_argument("'" + std::string(url) +
                                "' is no address of a server, expected one such as "
                                "https://server/soap");
  }
  while (url.ends_with('/')) url.remove_suffix(1);
  return std::string(url);
}

}  // namespace

UpstreamAddresses upstream_addresses(std::string_view url, std::string_view dal) {
  UpstreamAddresses addresses{.soap = checked_url(url), .dal = {}};
  const std::size_t authority = addresses.soap.find("://") + 3;
  const bool has_path = addresses.soap.find('/', authority) != std::string::npos;
  const std::string base =
      has_path ? addresses.soap.substr(0, addresses.soap.rfind('/')) : addresses.soap;
  if (!has_path) addresses.soap.append("/soap");
  addresses.dal = dal.empty() ? base + "/dal" : checked_url(dal);
  return addresses;
}

/// A connection that is kept between exchanges.
class Upstream::Line {
 public:
  detail::HttpClient client;
};

Upstream::Upstream(TlsFiles files) : files_(std::move(files)) {}
Upstream::~Upstream() = default;

std::unique_ptr<Upstream::Line> Upstream::take_line() {
  const std::lock_guard lock(mutex_);
  if (lines_.empty()) return std::make_unique<Line>();
  auto line = std::move(lines_.back());
  lines_.pop_back();
  return line;
}

Reply Upstream::send(const std::string& url, const Request& request) {
  std::vector<std::string> headers;
  for (const Header& each : request.headers) {
    if (is_passed_on(each.name)) headers.push_back(each.name + ": " + each.value);
  }
  auto line = take_line();
  detail::HttpReply reply =
      line->client.post({.source = "bvsandbox",
                         .url = url,
                         .body = request.body,
                         .headers = headers,
                         .time_out = kPatience,
                         .connect_time_out = kPatience,
                         .tls = files_},
                        {.accepts = &accepts, .body_size_max = kMostReplyBytes});
  if (reply.error()) throw Error(*reply.error());
  Reply passed{.status = reply.status(),
               .headers = headers_of(line->client.facts().reply_headers.text),
               .body = reply.take().take_string()};
  const std::lock_guard lock(mutex_);
  lines_.push_back(std::move(line));
  return passed;
}

}  // namespace bvconn::sandbox

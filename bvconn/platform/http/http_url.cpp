#include "bvconn/platform/http/http_url.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/http/curl_errors.h"
#include "bvconn/platform/http/parsed_url.h"

namespace bvconn::detail {
namespace {

constexpr std::size_t kShownUrlMax = 500;

bool is_blank_or_control(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte <= 0x20 || byte == 0x7F;
}

// Where the host part begins, user name and password included.
std::size_t authority_begin(std::string_view url) {
  const std::size_t slashes = url.find("//");
  return slashes == std::string_view::npos ? 0 : slashes + 2;
}

// Any text without what may be user and password in the URLs that it holds.
std::string without_user_info(std::string_view text) {
  std::string kept;
  for (std::size_t slashes = text.find("//"); slashes != std::string_view::npos;
       slashes = text.find("//")) {
    const std::size_t begin = slashes + 2;
    kept.append(text.substr(0, begin));
    text.remove_prefix(begin);
    const std::size_t end = text.find_first_of("/?# \t\r\n");
    text.remove_prefix(text.substr(0, end).rfind('@') + 1);
  }
  return kept.append(text);
}

std::string without(std::string_view url, std::size_t begin, std::size_t end) {
  std::string kept(url.substr(0, begin));
  kept.append(url.substr(end));
  return excerpt(kept, kShownUrlMax);
}

// In a URL that cannot be taken apart a password may stand anywhere before an @, so that everything
// up to the last one goes.
std::string shown_bad_url(std::string_view url) {
  const std::size_t at = url.rfind('@');
  const std::size_t begin = authority_begin(url);
  if (at == std::string_view::npos) {
    return excerpt(url, kShownUrlMax);
  }
  return at < begin ? without(url, 0, at + 1) : without(url, begin, at + 1);
}

bool is_proxy_host(std::string_view host) {
  return !host.empty() && std::all_of(host.begin(), host.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           std::string_view(".-_:[]").find(c) != std::string_view::npos;
  });
}

bool is_port(std::string_view text) {
  std::uint16_t port = 0;
  const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), port);
  return code == std::errc() && end == text.data() + text.size() && port != 0;
}

bool has_http_scheme(std::string_view url) {
  const std::string_view scheme = url.substr(0, url.find(':'));
  const bool known = conversions::equal_ignoring_case(scheme, "http") ||
                     conversions::equal_ignoring_case(scheme, "https");
  return known && url.substr(scheme.size()).starts_with("://");
}

}  // namespace

ParsedUrl parse_url(std::string_view url, std::string_view source) {
  const auto refuse = [&](std::string_view reason) {
    throw Error(error_numbers::kBadUrlOrHeader, source,
                "The URL \"" + shown_bad_url(url) + "\" cannot be used: " + std::string(reason));
  };
  if (std::any_of(url.begin(), url.end(), is_blank_or_control)) {
    refuse("it holds white space or a control character");
  }
  if (!has_http_scheme(url)) {
    refuse("it does not begin with http:// or https://");
  }
  // libcurl takes a third slash for a slip of the pen and the path's first word for the host.
  if (url.substr(authority_begin(url)).starts_with('/')) {
    refuse("it names no host");
  }
  ParsedUrl parts(curl_url());
  if (parts == nullptr) fail_without_memory();
  const CURLUcode code =
      curl_url_set(parts.get(), CURLUPART_URL, std::string(url).c_str(), CURLU_PATH_AS_IS);
  if (code == CURLUE_OUT_OF_MEMORY) fail_without_memory();
  if (code != CURLUE_OK) {
    refuse(curl_url_strerror(code));
  }
  return parts;
}

bool is_https(std::string_view url) {
  // Most are not, which their fifth letter shows.
  return url.size() > 5 && (url[4] == 's' || url[4] == 'S') &&
         conversions::equal_ignoring_case(url.substr(0, 6), "https:");
}

std::string origin_of(std::string_view url) {
  const std::size_t begin = authority_begin(url);
  const std::string_view authority = url.substr(begin, url.find_first_of("/?#", begin) - begin);
  std::string origin(url.substr(0, begin));
  return origin.append(authority.substr(authority.rfind('@') + 1));
}

std::string shown_url(std::string_view url) {
  const std::size_t begin = authority_begin(url);
  const std::size_t end = std::min(url.find_first_of("/?#", begin), url.size());
  const std::size_t at = url.substr(0, end).rfind('@');
  if (at == std::string_view::npos || at < begin) {
    return excerpt(url, kShownUrlMax);
  }
  return without(url, begin, at + 1);
}

std::string shown_proxy_part(std::string_view text) {
  return shown(text.substr(text.rfind('@') + 1));
}

std::optional<std::string> proxy_url(std::string_view host, std::string_view port) {
  if (!is_proxy_host(host) || !is_port(port)) {
    return std::nullopt;
  }
  const bool bare_ipv6 = host.find(':') != std::string_view::npos && !host.starts_with('[');
  std::string url("http://");
  url.append(bare_ipv6 ? "[" : "").append(host).append(bare_ipv6 ? "]" : "");
  return url.append(":").append(port);
}

std::string excerpt(std::string_view text, std::size_t length_max) {
  const std::string kept = without_user_info(text);
  text = kept;
  std::string line;
  bool blank = false;
  for (std::size_t at = 0; at < text.size();) {
    if (std::string_view(" \t\r\n").find(text[at]) != std::string_view::npos) {
      blank = !line.empty();
      ++at;
      continue;
    }
    const std::size_t length = std::max<std::size_t>(utf8_length(text.substr(at)), 1);
    std::string piece(blank ? " " : "");
    append_escaped(piece, text.substr(at, length));
    if (line.size() + piece.size() > length_max) {
      return line + "...";
    }
    line += piece;
    blank = false;
    at += length;
  }
  return line;
}

}  // namespace bvconn::detail

#include "mask_urls.h"

#include <algorithm>

#include "bvconn/platform/exchange/mask_request.h"

namespace bvconn::tool {
namespace {

using detail::user_info_size;

/// Where what stands in one word of a JSON text ends: at a blank, escaped or not, at a tag of the
/// XML that it may be, or at the quotation mark.
std::size_t end_of_word(std::string_view json) {
  std::size_t at = 0;
  for (; at < json.size() && std::string_view(" <>\"").find(json[at]) == std::string_view::npos;
       ++at) {
    if (json[at] != '\\') continue;
    if (std::string_view("nrt").find(json.substr(at + 1, 1)) != std::string_view::npos) break;
    ++at;
  }
  return std::min(at, json.size());
}

}  // namespace

std::string mask_urls(std::string_view json) {
  std::string masked;
  for (std::size_t slashes = json.find("//"); slashes != std::string_view::npos;
       slashes = json.find("//")) {
    masked.append(json.substr(0, slashes + 2));
    json.remove_prefix(slashes + 2);
    const std::size_t secret = user_info_size(json.substr(0, end_of_word(json)));
    if (secret > 0) masked.append(kMasked);
    json.remove_prefix(secret);
  }
  return masked.append(json);
}

std::string mask_url(std::string_view url) {
  const std::size_t slashes = url.find("//");
  const std::size_t begin = slashes == std::string_view::npos ? 0 : slashes + 2;
  const std::string_view rest = url.substr(begin);
  std::size_t secret = user_info_size(rest);
  // No URL is so shaped, and in what is none a password may stand anywhere before an @.
  const bool is_none =
      slashes == std::string_view::npos || url.find_first_of(" \t\r\n") != std::string_view::npos;
  if (is_none && rest.rfind('@') != std::string_view::npos) secret = rest.rfind('@');
  if (secret == 0) return std::string(url);
  return std::string(url.substr(0, begin)).append(kMasked).append(rest.substr(secret));
}

}  // namespace bvconn::tool

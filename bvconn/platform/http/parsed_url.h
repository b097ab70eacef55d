#pragma once

#include <curl/curl.h>

#include <memory>
#include <string_view>

namespace bvconn::detail {

struct FreeUrl {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};

/// A URL taken apart, as libcurl takes it: it is spared doing so for each request.
using ParsedUrl = std::unique_ptr<CURLU, FreeUrl>;

/// Fails with 0x80044308 and this source unless `url` is an absolute http or https URL that can be
/// sent as it stands: no white space, no control characters, a host, a port in range.
ParsedUrl parse_url(std::string_view url, std::string_view source);

}  // namespace bvconn::detail

#pragma once

#include <string>
#include <string_view>

/// Users and passwords of URLs, which nobody is to see in what the tool shows.
namespace bvconn::tool {

/// A URL, or what was given as one, without user and password.
std::string mask_url(std::string_view url);
/// A line of JSON without user and password in the URLs that its texts hold.
std::string mask_urls(std::string_view json);

}  // namespace bvconn::tool

#pragma once

#include <string>
#include <string_view>

namespace bvconn::tool {

/// What stands in a trace where a password stood.
inline constexpr std::string_view kMasked = "***";

/// A request as a trace may show it: of the method updatePassword every text, of a login the
/// password (an element named so, else the second parameter). Other requests are unchanged.
std::string mask_request(std::string_view request);

}  // namespace bvconn::tool

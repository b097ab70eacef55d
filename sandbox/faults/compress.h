#pragma once

#include <string>
#include <string_view>

namespace bvconn::sandbox {

/// The bytes as one gzip stream.
std::string gzip_of(std::string_view bytes);

}  // namespace bvconn::sandbox

#pragma once

#include <string>

#include "bvconn/platform/export.h"

namespace bvconn {

/// The library that the transport stands on, and those below it, with their versions, as in
/// "libcurl/8.5.0 OpenSSL/3.0.13 zlib/1.3".
BVCONN_EXPORT std::string http_library_versions();

}  // namespace bvconn

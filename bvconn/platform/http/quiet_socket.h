#pragma once

#include <curl/curl.h>

namespace bvconn::detail {

/// Whether the other side has neither sent anything over a kept connection nor closed it.
bool is_quiet(curl_socket_t socket) noexcept;

}  // namespace bvconn::detail

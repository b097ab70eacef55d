#pragma once

#include <curl/curl.h>

#include <cstdint>
#include <string_view>

/// What the users of libcurl share: its start, and its failures as error numbers.
namespace bvconn::detail {

/// libcurl wants to be set up once in a process, before any other use; it is never taken down,
/// since the host may use it too. `source` is that of the error when it cannot be.
void start_libcurl(std::string_view source);

/// Which error number a result of libcurl stands for. `detail` is its own description: two troubles
/// that are to be distinguished share a result code.
std::int32_t number_for(CURLcode code, std::string_view detail);

/// How a description of this trouble begins; the URL follows.
std::string_view trouble_text(std::int32_t number);

}  // namespace bvconn::detail

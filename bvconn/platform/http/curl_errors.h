#pragma once

#include <curl/curl.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"

/// libcurl as its one user needs it: its start, its options, its failures as error numbers.
namespace bvconn::detail {

/// libcurl wants to be set up once in a process, before any other use; it is never taken down,
/// since the host may use it too. `source` is that of the error when it cannot be.
void start_libcurl(std::string_view source);

/// Sets an option of a handle; an option that libcurl refuses is an error with this source.
template <typename Value>
void set_option(CURL* handle, std::string_view source, CURLoption option, Value value) {
  const CURLcode code = curl_easy_setopt(handle, option, value);
  if (code != CURLE_OK) {
    throw Error(error_numbers::kCannotConnect, source,
                std::string("libcurl cannot be set up: ") + curl_easy_strerror(code));
  }
}

/// Which error number a result of libcurl stands for. `detail` is its own description: two troubles
/// that are to be distinguished share a result code.
std::int32_t number_for(CURLcode code, std::string_view detail);

/// How a description of this trouble begins; the URL follows.
std::string_view trouble_text(std::int32_t number);

}  // namespace bvconn::detail

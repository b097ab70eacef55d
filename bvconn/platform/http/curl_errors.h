#pragma once

#include <curl/curl.h>

#include <cstdint>
#include <string_view>

/// libcurl as its one user needs it: its start, its options, its failures as error numbers.
namespace bvconn::detail {

/// Fails with error 7.
[[noreturn]] void fail_without_memory();

/// Fails where libcurl refuses something that it was asked to get ready.
[[noreturn]] void fail_to_set_up(CURLcode code, std::string_view source, std::string_view what);

/// libcurl wants to be set up once in a process, before any other use; it is never taken down,
/// since the host may use it too. `source` is that of the error when it cannot be; the next call
/// tries again.
void start_libcurl(std::string_view source);

/// Sets an option of a handle; an option that libcurl refuses is an error with this source.
template <typename Value>
void set_option(CURL* handle, std::string_view source, CURLoption option, Value value) {
  const CURLcode code = curl_easy_setopt(handle, option, value);
  if (code != CURLE_OK) {
    fail_to_set_up(code, source, "set up");
  }
}

/// Which error number a result of libcurl stands for. `detail` is its own description: two troubles
/// that are to be distinguished share a result code.
std::int32_t number_for(CURLcode code, std::string_view detail);

/// How a description of this trouble begins; the URL follows.
std::string_view trouble_text(std::int32_t number);

}  // namespace bvconn::detail

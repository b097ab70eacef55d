#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Between the library's texts, which are UTF-8, and the system's, which are UTF-16.
namespace bvconn::detail {

/// What is no UTF-8 becomes the sign for it. A text beyond 2 GB throws `std::bad_alloc`.
std::wstring wide(std::string_view text);
std::string narrow(std::wstring_view text);
/// Nothing for what is no UTF-16.
std::optional<std::string> narrow_strictly(std::wstring_view text);

/// As the system wants a path, however long. One with a NUL ends there, as everywhere else.
std::wstring wide_path(std::string_view path);

/// The number of C's library for one of the system's, as from `GetLastError`.
int errno_of(unsigned long code) noexcept;
/// The system's own text for one of its numbers.
std::string windows_message(unsigned long code);

}  // namespace bvconn::detail

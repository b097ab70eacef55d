#pragma once

#include <string>
#include <string_view>

namespace bvconn::sandbox {

/// The address of a database as messages may show it: user, host and name, but no password. One
/// that cannot be read is an error that repeats nothing of it.
std::string without_secrets(const std::string& address);

/// What the library says, which may have several lines and ends with one.
std::string in_one_line(std::string_view text);

}  // namespace bvconn::sandbox

#pragma once

#include <string>

namespace bvconn::tool {

/// All that a file holds, byte for byte; "-" is standard input. @throws UsageError  saying why it
/// cannot be read.
std::string read_input(const std::string& name);

/// The text without the line end behind it: editors put one behind a password.
std::string without_line_end(std::string text);

}  // namespace bvconn::tool

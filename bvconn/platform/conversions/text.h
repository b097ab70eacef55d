#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "bvconn/platform/export.h"

/// Text as bytes of UTF-8, for the rooms of the platform; not a part of the interface.
namespace bvconn::detail {

/// Bytes of the UTF-8 character that `text` begins with; 0 where it begins with none (ill-formed,
/// overlong, a surrogate, beyond U+10FFFF, or empty).
std::size_t utf8_length(std::string_view text);

bool is_utf8(std::string_view text);

/// Control characters as `\n`, `\t`, `\r`, `\x1B`, bytes that are no UTF-8 as `\xFF`: the result is
/// one line of text. A backslash stays as it is, since paths and keys are read by people.
BVCONN_EXPORT void append_escaped(std::string& out, std::string_view text);

/// Text for an error's description: in quotes, escaped, and cut when it is long.
std::string shown(std::string_view text);

}  // namespace bvconn::detail

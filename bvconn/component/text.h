#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "bvconn/component/abi.h"

/// Texts as they cross the interface (UTF-16 with a length before it), and as the library holds
/// them (UTF-8).
namespace bvconn::component {

/// UTF-16 to UTF-8; nothing for text with a surrogate that stands alone.
std::optional<std::string> utf8_from_utf16(std::u16string_view text);
/// UTF-8 to UTF-16. Bytes that are no UTF-8 become U+FFFD, one for each longest beginning of a
/// character: texts out of the library come from servers, and the call that brought them
/// succeeded.
std::u16string utf16_from_utf8(std::string_view text);

/// A new text that the receiver frees with `free_string`; null when memory is short or the length
/// does not fit. A null `text` makes a text of zeros.
StringPointer alloc_string(const char16_t* text, std::size_t length) noexcept;
void free_string(StringPointer text) noexcept;
/// Length in bytes, from before the text; 0 for null.
std::uint32_t string_bytes(const char16_t* text) noexcept;
/// In code units.
std::uint32_t string_length(const char16_t* text) noexcept;

/// The text that a host passed; nothing where it is no UTF-16 (an odd number of bytes, a lone
/// surrogate). Null is "".
std::optional<std::string> text_of(const char16_t* text);
/// Throws std::bad_alloc when memory is short.
StringPointer string_from_utf8(std::string_view text);

}  // namespace bvconn::component

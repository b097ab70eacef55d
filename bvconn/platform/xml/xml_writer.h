#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The text of XML documents, in UTF-8. What a document cannot hold is not written; who calls
/// decides what that means.
namespace bvconn::detail::xml {

/// Appends character data so that a reader gets the very same text. Returns the offset of the first
/// byte that no document can carry (a control character, or no UTF-8), `npos` when there is none.
std::size_t append_text(std::string& out, std::string_view text);
/// The same for the value of an attribute in quotation marks; the marks are not written.
std::size_t append_attribute(std::string& out, std::string_view text);

/// Whether an element may have this local name.
bool is_local_name(std::string_view name) noexcept;

/// For people: what stands at an offset that cannot be written, "U+0007" or "bytes that are not
/// UTF-8".
std::string unwritable_character(std::string_view text, std::size_t offset);

}  // namespace bvconn::detail::xml

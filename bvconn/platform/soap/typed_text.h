#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/variant.h"

/// Values as XML Schema writes them.
namespace bvconn::detail {

/// The value of an element's text by its `xsi:type`: the simple types of XML Schema (2001 and its
/// drafts of 2000 and 1999) and of the SOAP encoding. Any other type, and none, gives a string.
/// Nothing for text that the type does not have, or that no variant can hold.
///
/// A moment with a zone becomes local time. A type without bounds (`integer`, `decimal`) is read as
/// a 64-bit integer or float.
std::optional<Variant> typed_value(std::string_view text, std::string_view type,
                                   std::string_view type_space);

/// A type as it is looked up once for many texts.
using TypeIndex = std::uint8_t;
/// That of a type whose every text is its value as it stands, a string.
inline constexpr TypeIndex kStringType = 0;
TypeIndex type_index(std::string_view type, std::string_view type_space) noexcept;
/// As above; Empty, which no text is, in place of nothing.
Variant typed_value(std::string_view text, TypeIndex type);

/// A simple value the way an element carries it; neither node, array, nor nothing.
std::string value_text(const Variant& value);

std::optional<Bytes> from_base64(std::string_view text);
BVCONN_EXPORT std::string to_base64(std::span<const std::byte> bytes);

}  // namespace bvconn::detail

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/xml/xml_error.h"

namespace bvconn::detail::xml {

/// The size of an XML declaration at the beginning that says UTF-8 in the words that nearly all
/// documents have: there is nothing to find out about it. 0 for any other, and for none.
std::size_t usual_declaration(std::string_view document) noexcept;

/// The bytes of a document as UTF-8, for `parse`. Text that is UTF-8 (or plain ASCII) already is
/// handed back as it came, unchecked: the reader checks it.
///
/// `override_encoding` is the encoding when it is not empty, whatever the document says. Without it
/// the bytes decide where they leave no doubt: a byte-order mark, or a first character `<` with a
/// zero byte on one side (UTF-16), count more than the XML declaration. Then the declaration
/// decides, then it is UTF-8. A declaration of UTF-16 in a document of single bytes is an error.
///
/// Known are UTF-8, UTF-16 (LE, BE), ISO-8859-1, ISO-8859-15, windows-1252 and US-ASCII under their
/// usual names in any case. Throws `ReadError` for any other name and for bytes that the encoding
/// does not have; its position is that in `bytes`. The declaration is
/// left as it is, and so is a byte-order mark: the reader skips it.
std::string to_utf8(std::string bytes, std::string_view override_encoding);

/// The same; nothing where the bytes are UTF-8 as they are.
std::optional<std::string> converted_to_utf8(std::string_view bytes,
                                             std::string_view override_encoding);

}  // namespace bvconn::detail::xml

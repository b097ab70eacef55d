#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/export.h"

/// URLs as the transport takes them, and as it shows them to people.
namespace bvconn::detail {

/// Whether a URL that `parse_url` let pass is one of TLS.
bool is_https(std::string_view url);

/// Scheme, host and port of a URL that `parse_url` let pass, as they are written there: whom a
/// connection leads to.
std::string origin_of(std::string_view url);

/// The URL without user name and password, as one line of printable text.
BVCONN_EXPORT std::string shown_url(std::string_view url);

/// The URL of an HTTP proxy; nothing where host or port cannot be one.
std::optional<std::string> proxy_url(std::string_view host, std::string_view port);

/// Host or port of a proxy, in quotes, without a user name and password that stand before it.
std::string shown_proxy_part(std::string_view text);

/// At most `length_max` bytes of the text on one line, for a description: white space becomes a
/// single blank, whatever cannot be printed is escaped, and what stands before the @ in the host
/// part of a URL is left out.
std::string excerpt(std::string_view text, std::size_t length_max);

}  // namespace bvconn::detail

#pragma once

#include <optional>
#include <string>

namespace bvconn::sandbox {

/// A numeric address in its usual form, also of one in brackets and of "localhost"; nothing where
/// the text is none.
std::optional<std::string> numeric_address(const std::string& text);

/// Whether only programs of this machine come to a numeric address.
bool is_loopback(const std::string& address);

/// The address by which a program of this machine comes to one that is listened on, as a URL has
/// it: in brackets where that is needed, and the loopback's for all addresses of the machine.
std::string address_in_url(const std::string& listening);

}  // namespace bvconn::sandbox

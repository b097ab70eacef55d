#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "sandbox/store/documents.h"

/// The forms that the sandbox itself gives to documents.
namespace bvconn::sandbox {

/// A project, quote or order that holds no more than its key, a number and its empty list of lines.
SoapNode empty_instrument(std::string_view root, const DocumentKind& kind, std::string_view gid);
/// What one instrument takes over from the one that it is made of: name, agent, customer, lines.
void take_over(const SoapNode& from, const SoapNode& to);
/// Gives each line a key that is made of its document's.
void number_lines(const SoapNode& document, std::string_view gid);
void append_line(const SoapNode& document, const Product& product, std::int64_t quantity,
                 std::int64_t unit_price_cents);
void set_customer(const SoapNode& document, std::string_view gid, std::string_view name);

SoapNode quote_form(std::string_view gid, const SoapNode& project, std::string_view project_gid);
SoapNode order_form(std::string_view gid, const SoapNode& quote);
SoapNode rfq_form(std::string_view gid, std::string_view quote_gid,
                  std::string_view manufacturer_gid, std::string_view manufacturer);
SoapNode rma_form(std::string_view uid, std::string_view manufacturer_gid,
                  std::string_view manufacturer);
/// Where people can look at an acknowledgement.
std::string acknowledgement_address(std::string_view gid);
/// A comment as it stands in a set of comments.
SoapNode comment_form(std::string_view root, std::string_view gid, std::string_view type,
                      std::string_view text);

}  // namespace bvconn::sandbox

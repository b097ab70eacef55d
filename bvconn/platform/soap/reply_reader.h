#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/error.h"
#include "bvconn/platform/soap/node_data.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/text_buffer.h"
#include "bvconn/platform/xml/xml_error.h"

namespace bvconn::detail {

/// A document as a tree of nodes. Plain XML: `id` and `href` mean nothing. Throws `xml::ReadError`.
SoapNode read_document(std::string utf8);

/// What an envelope holds.
struct Reply {
  SoapNodes headers;
  SoapNodes parameters;
  std::string method;
  std::string name_space;
  std::string encoding_style;
  bool is_fault = false;
};

/// Reads an envelope of SOAP 1.1. Fails with 0x80044202, 0x80044203 and 0x80044206.
Reply read_reply(TextBuffer bytes, std::string_view encoding);

/// The error that says why a document cannot be read: one line of text whatever it holds. The two
/// beginnings are those of its description.
Error document_error(const xml::ReadError& error, std::string_view source,
                     std::string_view passes_limit, std::string_view not_well_formed);

}  // namespace bvconn::detail

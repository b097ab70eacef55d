#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "bvconn/platform/exchange/exchange.h"

/// The record of exchanges as people read it.
namespace bvconn::tool {

/// A text as it may go to a terminal, each line behind `indent` blanks: XML with one element a
/// line, JSON likewise, anything else line by line. It may be cut anywhere. Control characters are
/// escaped, so that a reply cannot rule the terminal.
std::string indented_text(std::string_view text, std::size_t indent);

/// An exchange in lines, as it stands: hide its secrets before.
std::string exchange_view(const Exchange& exchange);

/// Every exchange of this thread that is kept, masked, oldest first; a word where there is none.
void print_exchanges(std::ostream& out);

}  // namespace bvconn::tool

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/exchange/exchange.h"
#include "text_mask.h"

namespace bvconn::tool {

/// An exchange as a line of JSON holds it (docs/exchanges.md), for showing: members that are
/// missing stay empty. Nothing for what is no such line.
std::optional<Exchange> exchange_from_json(std::string_view line);

/// The exchange with its secrets hidden, also where the line was written without that; what was
/// hidden is remembered in `mask`.
void mask_again(Exchange& exchange, TextMask& mask);

}  // namespace bvconn::tool

#pragma once

#include <string_view>

#include "bvconn/platform/exchange/exchange.h"
#include "bvconn/platform/export.h"

namespace bvconn {

/// Hides what nobody but the caller is to know: passwords (of logins, of updatePassword, in
/// elements named like one, in URLs), the session identifier, tokens and cookies in headers, what a
/// login answered. Where one of them, if it has four bytes or more, turns up in another of the
/// record's texts, it is hidden there too. `session_id` is the one that the call was given.
BVCONN_EXPORT void mask_exchange(Exchange& exchange, std::string_view session_id);

}  // namespace bvconn

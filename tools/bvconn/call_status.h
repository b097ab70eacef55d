#pragma once

#include <optional>

#include "bvconn/platform/error.h"
#include "bvconn/platform/exchange/exchange.h"

namespace bvconn::tool {

/// The exit status of a call that ended with this error; `exchange` is what the record has of it.
int call_status(const Error& error, const std::optional<Exchange>& exchange);

/// The exit status of a call that returned although its exchange failed: some operations keep their
/// errors to themselves.
int call_status(const Exchange& failure);

/// The error in the record, as one to explain.
Error recorded_error(const Exchange& failure);

}  // namespace bvconn::tool

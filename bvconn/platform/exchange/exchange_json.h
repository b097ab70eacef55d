#pragma once

#include <string>

#include "bvconn/platform/exchange/exchange.h"
#include "bvconn/platform/export.h"

namespace bvconn {

/// An exchange as one object of JSON on one line, in the form of docs/exchanges.md. It shows what
/// the record holds: hide secrets before. Bytes that are no UTF-8 are replaced.
BVCONN_EXPORT std::string exchange_json(const Exchange& exchange);

}  // namespace bvconn

#pragma once

#include "bvconn/platform/exchange/exchange_log.h"

namespace bvconn {

/// What appends each exchange that it is shown to the file that the environment variable
/// `BVCONN_EXCHANGES` names: one line of JSON, written whole, with the numbers of process and
/// thread in front. The file is made for its owner alone; anything but a regular file is left
/// alone, and what cannot be written is lost without a word. Empty where the variable is not set.
ExchangeLog::Listener make_exchange_file();

}  // namespace bvconn

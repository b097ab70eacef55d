#pragma once

#include <functional>

#include "sandbox/exchange.h"
#include "sandbox/faults/fault.h"
#include "sandbox/faults/fault_book.h"
#include "sandbox/http/message.h"

namespace bvconn::sandbox {

/// The reply that a fault makes of a request. `right_answer` does what the request asks and gives
/// the reply that it would have had; it is called once, or not at all where the fault says so.
Reply misbehave(const FaultRule& rule, const Exchange& exchange, FaultBook& book,
                const std::function<Reply()>& right_answer);

}  // namespace bvconn::sandbox

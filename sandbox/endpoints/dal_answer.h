#pragma once

#include <optional>
#include <string>

#include "sandbox/contract/dal_routes.h"
#include "sandbox/endpoints/asked.h"
#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {

/// Whether something answers the calls of a route.
bool is_served(const Operations& operations, const DalRoute& route);

/// Reads the one argument of a call that carries the text of a request. It has to be what the SOAP
/// route would send for the same operation; otherwise this is the answer.
std::optional<Reply> refusal_of_request_text(const Sandbox& sandbox, Asked& asked);

/// The text of the envelope that answers a call whose arguments fit its route. Throws a `Fault`
/// where that is one.
std::string dal_answer(Sandbox& sandbox, const Operations& operations, const Asked& asked);

}  // namespace bvconn::sandbox

#pragma once

#include <string>

#include "sandbox/http/message.h"
#include "sandbox/replay/asked_request.h"
#include "sandbox/wire/wire_file.h"

namespace bvconn::sandbox {

/// An exchange as a wire file tells it, masked as the library masks its record of exchanges:
/// session, passwords, tokens and cookies, where they have their place and wherever else they
/// stand. `url` is where the request went.
wire::WireStep step_of_exchange(const std::string& url, const Request& request, const Reply& reply,
                                const RequestReader& reader);

}  // namespace bvconn::sandbox

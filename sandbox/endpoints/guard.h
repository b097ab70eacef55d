#pragma once

#include <optional>

#include "sandbox/endpoints/served_sandbox.h"
#include "sandbox/http/message.h"

namespace bvconn::sandbox {

/// Refuses what a page of another origin makes a browser ask, and what comes by a name that is not
/// the sandbox's, which is how such a page would become one of the same origin. /soap and /dal take
/// every name, since a client may go through another machine; there a name counts only in requests
/// that a browser marks as its own.
std::optional<Reply> refuse_stranger(const ServedSandbox& sandbox, const Request& request);

/// For a server that has the library's two routes and nothing else: refuses other paths, other
/// methods than POST, and all that a page in a browser asks. No path leads up and elsewhere.
std::optional<Reply> refuse_but_clients(const Request& request);

}  // namespace bvconn::sandbox

#pragma once

#include <optional>
#include <vector>

#include "sandbox/endpoints/asked.h"

namespace bvconn::sandbox {

/// The forms of all requests that a stub can answer.
std::vector<const OperationForm*> forms_for_stubs(const Sandbox& sandbox);

/// The answer of the stub that fits a request, if there is one. What answers is noted.
std::optional<Reply> stubbed(Sandbox& sandbox, const Operations& operations, Asked& asked);

}  // namespace bvconn::sandbox

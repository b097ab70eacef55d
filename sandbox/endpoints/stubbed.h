#pragma once

#include <optional>

#include "sandbox/endpoints/asked.h"

namespace bvconn::sandbox {

/// The answer of the stub that fits a request, if there is one.
std::optional<Reply> stubbed(Sandbox& sandbox, const Operations& operations, const Asked& asked);

}  // namespace bvconn::sandbox

#pragma once

#include <optional>

#include "sandbox/endpoints/asked.h"

namespace bvconn::sandbox {

/// The answer of the stub that fits a request, if there is one. What answers is noted.
std::optional<Reply> stubbed(Sandbox& sandbox, const Operations& operations, Asked& asked);

}  // namespace bvconn::sandbox

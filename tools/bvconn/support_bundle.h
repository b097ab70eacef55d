#pragma once

#include <string>

#include "connection_options.h"

namespace bvconn::tool {

/// What support staff ask for, as one text without secrets: versions, system, settings, the
/// environment's variables that count, the doctor's lines, the last exchanges and the end of the
/// log. `version` is the tool's.
std::string support_bundle(const Connection& connection, const std::string& version);

}  // namespace bvconn::tool

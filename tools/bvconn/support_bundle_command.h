#pragma once

#include <ostream>
#include <string>

#include "connection_options.h"

namespace bvconn::tool {

/// `bvconn support-bundle FILE`: gathers and writes it. Gives the exit status.
int run_support_bundle(const Connection& connection, const std::string& file,
                       const std::string& version, std::ostream& err);

}  // namespace bvconn::tool

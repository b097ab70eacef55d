#pragma once

#include <vector>

#include "connection_options.h"
#include "doctor_checks.h"

namespace bvconn::tool {

/// A heart beat to the connection's server: what became of TLS, and of the beat itself.
void check_heart_beat(const Connection& connection, std::vector<Check>& checks);

/// A login to the connection's data access layer, if it names one.
void check_dal(const Connection& connection, std::vector<Check>& checks);

}  // namespace bvconn::tool

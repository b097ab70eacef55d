#pragma once

#include <ostream>

#include "doctor_checks.h"

namespace bvconn::tool {

/// A line for each check: its state, its name, what was found and what to do.
void print_checks(const std::vector<Check>& checks, std::ostream& out);

/// `bvconn doctor`: looks for what is in the way of calls. The exit status is kDone where nothing
/// is.
int run_doctor(const Connection& connection, bool json, std::ostream& out);

}  // namespace bvconn::tool

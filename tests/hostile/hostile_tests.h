#pragma once

#include <functional>
#include <string>

#include "hostile/hostile_file.h"

namespace bvconn::test {

using HostileBody = std::function<void(const HostileCase& hostile, const std::string& route)>;

/// What `main` of a runner does: each case of the files that its arguments name is a test on each
/// of its routes. Gives the exit status.
int run_hostile_files(int argc, char** argv, const HostileBody& body);

}  // namespace bvconn::test

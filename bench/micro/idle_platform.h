#pragma once

#include <string>

#include "bvconn/platform/platform.h"

namespace bench {

/// The real platform, but for a transport that sends nothing and gives the same reply each time.
bvconn::platform::Platform idle_platform(std::string reply);

/// Where log and settings of this process are, with the mask that is asked for: in a folder of its
/// own, with the values that an application has after its first call.
void use_own_files(const char* log_mask);

}  // namespace bench

#pragma once

#include "bvconn/platform/platform.h"

namespace bvconn::sandbox {

/// The real world for calls that the sandbox makes itself: no log, no settings of this machine, no
/// message on a screen, and replies of no more than people look at.
platform::Platform quiet_platform();

}  // namespace bvconn::sandbox

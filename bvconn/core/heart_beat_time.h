#pragma once

#include "bvconn/platform/conversions/date.h"

namespace bvconn::Global {

/// The time of the last reply of any kind on this thread; date 0 before the first.
Date LastHeartBeat();
/// Logs "Heart Beat Time Updated: " with the time at level 4, then stores it.
void LastHeartBeat(Date time);

}  // namespace bvconn::Global

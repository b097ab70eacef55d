#pragma once

#include <optional>
#include <span>

#include "bvconn/automation/interface.h"
#include "bvconn/observation/sightings.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/export.h"

namespace bvconn::automation {

/// What a call would have done.
struct Rehearsal {
  Sightings seen;
  /// What it ended with; where something was sent, that may be for want of a real answer.
  std::optional<Error> raised;
};

/// Calls an operation without sending, logging or storing anything, in a session of its own; every
/// request is answered alike. The settings are those in force; none are written.
/// While it runs the process's platform is replaced: no other thread may be inside the library.
/// @param dal  Whether the data access layer route is on, with nothing disabled.
BVCONN_EXPORT Rehearsal rehearse(const ClassInfo& info, const Member& operation,
                                 std::span<const Value> values, bool dal);

}  // namespace bvconn::automation

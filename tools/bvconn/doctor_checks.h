#pragma once

#include <string>
#include <vector>

#include "connection_options.h"

namespace bvconn::tool {

enum class CheckState { kOk, kFailed, kSkipped };

/// What one look at this machine and its way to the server gave.
struct Check {
  std::string name;
  CheckState state = CheckState::kOk;
  std::string text;    ///< what was found
  std::string advice;  ///< of one that failed: the likely cause, and what to do
};

/// Looks at everything that a call needs, in the order in which a call needs it. What the
/// connection does not name is skipped, and so is what cannot work since something before it does
/// not. Each look is bounded in time. A heart beat and a login are all that is sent. What is left
/// on this machine: a line in the log, and what any call leaves too (the log's own lines about
/// failures, a log that was full put aside, a line in the file of exchanges, `TraceSoapTraffic` in
/// the settings where it is absent). The texts hold no secrets.
std::vector<Check> examine(const Connection& connection);

/// "OK", "FAILED", "skipped".
std::string_view state_text(CheckState state);

}  // namespace bvconn::tool

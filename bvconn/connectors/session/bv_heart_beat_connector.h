#pragma once

#include <functional>
#include <string_view>

#include "bvconn/platform/export.h"

namespace bvconn {

/// Tells the server that the session lives, and the application when the server has been out of
/// reach for too long. The application calls `sendHeartBeat` from a timer of its own.
///
/// Threads: one object per thread; the time of the last contact belongs to the thread's session.
class BVCONN_EXPORT BVHeartBeatConnector {
 public:
  /// Sends a beat, with a time-out of five seconds. A failure is written to the log and not thrown,
  /// and past 15 minutes without any reply it raises `HeartBeatError`, at each failed beat anew.
  /// Only what fails in that, such as the logger at its line, leaves as an `Error`.
  /// @param isBrimvale  Kept in the session at each call; it matters for traffic tracing alone.
  /// Route: data access layer where the session allows it, else SOAP `beat`.
  void sendHeartBeat(std::string_view aServerURL, std::string_view aSessionID,
                     bool isBrimvale = false);

  /// Counts the current time as a contact with the server.
  void UpdateHeartBeatTime();

  /// The event: the server has been out of reach for more than 15 minutes. A handler may replace
  /// itself and may delete the connector. What it throws is logged and goes no further.
  std::function<void()> HeartBeatError;
};

}  // namespace bvconn

#pragma once

#include <functional>
#include <string_view>

#include "bvconn/platform/export.h"

namespace bvconn {

/// Tells the server that the session lives, and the application when the server has been out of
/// reach for too long. The application calls `sendHeartBeat` from a timer of its own. Service
/// "urn:HeartBeatService".
///
/// Threads: one object per thread; the time of the last contact belongs to the thread's session.
class BVCONN_EXPORT BVHeartBeatConnector {
 public:
  /// Sends a beat, with a time-out of five seconds. A failure, and an answer that is not exactly
  /// "OK", is written to the log and not thrown, and past 15 minutes without any reply it raises
  /// `HeartBeatError`, at each failed beat anew. Minutes are counted by the boundaries crossed, and
  /// a thread that has had no reply yet is past them. Only what fails in that, such as the logger
  /// at its line, leaves as an `Error`.
  /// @param isBrimvale  Kept in the session at each call; it matters for traffic tracing alone.
  /// Route: DAL `HeartBeatService.sendHeartBeat`, else SOAP `beat`.
  void sendHeartBeat(std::string_view aServerURL, std::string_view aSessionID,
                     bool isBrimvale = false);

  /// Counts the current time as a contact with the server. Route: none; nothing is sent.
  void UpdateHeartBeatTime();

  /// The event: the server has been out of reach for more than 15 minutes. A handler may replace
  /// itself and may delete the connector. What it throws is logged and goes no further.
  std::function<void()> HeartBeatError;
};

}  // namespace bvconn

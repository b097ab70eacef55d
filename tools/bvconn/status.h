#pragma once

#include <stdexcept>

namespace bvconn::tool {

// Exit statuses. Those above 2 are of `call`, but for kSomeFailed.
inline constexpr int kDone = 0;
/// An internal failure, an output that cannot be written, an error that is none of those below.
inline constexpr int kFailed = 1;
inline constexpr int kNotUnderstood = 2;
inline constexpr int kSettings = 3;    ///< settings or profiles that cannot be used
inline constexpr int kRefused = 4;     ///< a fault, or a service object's refusal
inline constexpr int kNotReached = 5;  ///< name, connection, TLS, proxy: nothing was sent
inline constexpr int kLost = 6;        ///< the connection was lost; the outcome is unknown
inline constexpr int kTimedOut = 7;
inline constexpr int kBadAnswer = 8;   ///< anything else about a reply
inline constexpr int kSomeFailed = 9;  ///< of a batch that was to tell so
inline constexpr int kInterrupted = 130;

/// A request that was not understood; nothing was called.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A file of settings or profiles that cannot be used.
struct SettingsError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace bvconn::tool

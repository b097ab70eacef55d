#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "bvconn/platform/settings/settings_key.h"

/// The three settings that the library shares with the application, under the key
/// "Software\Brimvale\Torvex\AppData".
namespace bvconn::Global {

/// The key that all three lie under.
inline constexpr std::string_view kSettingsKey = detail::kSettingsKey;
/// What stands in for an absent `defaultTimeOut`, and for one of 0.
inline constexpr std::int32_t kBuiltInTimeout_ms = 300000;

/// The port of a tracing proxy on this machine; "" for none. Read once for each thread.
std::string TracePort();

/// The time-out for requests that name none, in milliseconds: 300000 where the setting is absent or
/// 0. A negative value is taken as it stands. Read once for each thread.
std::int32_t DefaultTimeout();

/// Whether SOAP traffic is traced to a file. Read at each use; any failure is logged and gives
/// False, so that no send ever fails for this setting.
bool TraceSoapTraffic();
/// Writes the setting. A failure is logged and not reported to the caller.
void TraceSoapTraffic(bool value);

}  // namespace bvconn::Global

#include "bvconn/core/settings.h"

#include <cstdint>
#include <memory>
#include <string_view>

#include "bvconn/core/logging.h"
#include "bvconn/core/session_state.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/settings/settings_moment.h"
#include "bvconn/platform/thread_record.h"

namespace bvconn::Global {
namespace {

// deliberate [app-data-spelling]: the same key with another spelling; names in the settings know no
// case.
constexpr std::string_view kTraceSoapTrafficPath =
    R"(HKCU\Software\Brimvale\Torvex\appData\TraceSoapTraffic)";

constexpr LogBlock kTracePortLog{.cls = "Global", .method = "TracePort", .level = 2};
constexpr LogBlock kDefaultTimeoutLog{.cls = "Global", .method = "DefaultTimeout", .level = 2};

constexpr std::string_view kTraceReader = "TraceSoapTraffic() - Property Get";
// deliberate [foreign-log-names]: no class of this library bears the names of these lines; they are
// what readers of the log look for.
constexpr LogBlock kTraceWriterLog{
    .cls = "clsSessionInfo", .method = "TraceSoapTraffic", .level = 4};

std::unique_ptr<RegistryAccess> settings() {
  return platform::current().settings();
}

/// What the setting was in the state of the settings in which the thread asked last.
struct KnownTracing {
  std::uint64_t state = 0;
  bool is_on = false;
};

bool read_tracing(RegistryAccess& registry, SessionLogger& logger) {
  if (!registry.Exists(kTraceSoapTrafficPath)) {
    // deliberate [trace-default]: a number, where all others write a word.
    logger.LogWarning("clsSessionInfo", "LoadPreferences()()",
                      "TraceSoapTraffic not found in registry, default value set.", 0);
    registry.Write(kTraceSoapTrafficPath, std::int64_t{0}, "");
  }
  return conversions::text_to_boolean(
      registry.ReadString(SettingsRoot::kCurrentUser, kSettingsKey, "TraceSoapTraffic"));
}

bool current_tracing(SessionLogger& logger) {
  // One look at the file answers all questions.
  const detail::SettingsMoment moment;
  const auto registry = settings();
  KnownTracing& known = detail::ThreadRecord<KnownTracing>::get();
  const auto state = [&] { return detail::settings_state(*registry, SettingsRoot::kCurrentUser); };
  if (known.state == 0 || state() != known.state) {
    known = {};
    const bool is_on = read_tracing(*registry, logger);
    known = {.state = state(), .is_on = is_on};
    return is_on;
  }
  return known.is_on;
}

}  // namespace

std::string TracePort() {
  return run_logged(kTracePortLog, [] {
    auto& cache = session().TracePortCache;
    if (!cache)
      cache = settings()->ReadString(SettingsRoot::kLocalMachine, kSettingsKey, "tracePort");
    return *cache;
  });
}

std::int32_t DefaultTimeout() {
  return run_logged(kDefaultTimeoutLog, [] {
    auto& cache = session().DefaultTimeoutCache;
    if (cache == 0) {
      cache = conversions::double_to_int32(
          settings()->ReadNumber(SettingsRoot::kLocalMachine, kSettingsKey, "defaultTimeOut"));
    }
    if (cache == 0) cache = kBuiltInTimeout_ms;
    return cache;
  });
}

bool TraceSoapTraffic() {
  try {
    auto& logger = session().Logger();
    logger.LogInfo("Global", kTraceReader, "Entering Method...", 0);
    const bool value = current_tracing(logger);
    // deliberate [entering-twice]: the closing line has the words of the opening one.
    logger.LogInfo("Global", kTraceReader, "Entering Method...", 0);
    return value;
  } catch (...) {
    only_errors([error = live_error()] { log_error("Global", kTraceReader, error); });
    return false;
  }
}

// deliberate [trace-silent]: what fails here or above is logged, and the caller is not told.
void TraceSoapTraffic(bool value) {
  try {
    log_enter(kTraceWriterLog);
    session().Logger().LogInfo("BVPreferences", "SavePreferences()",
                               "One or more values have been changed... saving to registry.", 0);
    settings()->Write(kTraceSoapTrafficPath, conversions::boolean_text(value), "REG_SZ");
    log_exit(kTraceWriterLog);
  } catch (...) {
    only_errors([error = live_error()] { log_error(kTraceWriterLog, error); });
  }
}

}  // namespace bvconn::Global

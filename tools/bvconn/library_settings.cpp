#include "library_settings.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "arguments.h"
#include "bvconn/core/settings.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/platform.h"
#include "nearest_names.h"
#include "own_settings.h"

namespace bvconn::tool {
namespace {

constexpr std::string_view kTracePort = "tracePort";
constexpr std::string_view kDefaultTimeOut = "defaultTimeOut";
constexpr std::string_view kTraceSoapTraffic = "TraceSoapTraffic";
constexpr double kHighestPort = 65535;

constexpr std::array kLibrarySettings{
    LibrarySetting{kTracePort, SettingsRoot::kLocalMachine, "",
                   "requests go through the HTTP proxy on this port of this machine; empty: no "
                   "proxy"},
    LibrarySetting{kDefaultTimeOut, SettingsRoot::kLocalMachine, "300000",
                   "milliseconds for a request that names no time-out; negative: no limit"},
    LibrarySetting{kTraceSoapTraffic, SettingsRoot::kCurrentUser, "False",
                   "True appends all traffic to the traffic file"},
};
static_assert(Global::kBuiltInTimeout_ms == 300000);

std::optional<double> whole_number(std::string_view text) {
  const auto number = conversions::number_of(text);
  if (!number || *number != conversions::round_half_even(*number, 0)) return std::nullopt;
  return number;
}

bool is_port(std::string_view text) {
  const bool digits = text.find_first_not_of("0123456789") == std::string_view::npos;
  const auto number = digits ? whole_number(text) : std::nullopt;
  return number && *number >= 1 && *number <= kHighestPort;
}

void judge_port(SettingState& state) {
  if (state.value.empty() || is_port(state.value)) return;
  state.wrong = true;
  state.remark = "no port: every request fails at the proxy";
}

void judge_timeout(SettingState& state, RegistryAccess& registry) {
  try {
    const std::int32_t number = conversions::double_to_int32(
        registry.ReadNumber(state.setting->root, Global::kSettingsKey, kDefaultTimeOut));
    if (number < 0) state.remark = "no limit";
    if (number != 0) return;
    state.value = state.setting->default_text;
    state.remark = "0 counts as " + state.value;
  } catch (const Error&) {
    state.wrong = true;
    state.remark = "no 32-bit whole number: every request fails before it is sent";
  }
}

void judge_tracing(SettingState& state) {
  try {
    state.value = conversions::boolean_text(conversions::text_to_boolean(state.value));
  } catch (const Error&) {
    state.wrong = true;
    state.remark = "neither True nor False: counts as False, and each request logs an error";
  }
}

bool is_word_of(const LibrarySetting& setting, std::string_view text) {
  return text.empty() || std::ranges::any_of(setting.words, [text](std::string_view word) {
           return conversions::equal_ignoring_case(word, text);
         });
}

// "component or http"
std::string words_text(const LibrarySetting& setting) {
  std::string text;
  for (const std::string_view word : setting.words) {
    text.append(text.empty() ? "" : " or ").append(word);
  }
  return text;
}

void judge_word(SettingState& state) {
  if (is_word_of(*state.setting, state.value)) return;
  state.wrong = true;
  state.remark = "not " + words_text(*state.setting);
}

std::vector<LibrarySetting> all_settings() {
  std::vector<LibrarySetting> all(kLibrarySettings.begin(), kLibrarySettings.end());
  std::ranges::copy(own_settings(), std::back_inserter(all));
  return all;
}

}  // namespace

std::string_view LibrarySetting::root_text() const {
  return root == SettingsRoot::kLocalMachine ? "local machine" : "current user";
}

std::string LibrarySetting::path() const {
  std::string path = root == SettingsRoot::kLocalMachine ? "HKLM\\" : "HKCU\\";
  return path.append(Global::kSettingsKey).append("\\").append(name);
}

std::span<const LibrarySetting> library_settings() {
  static const std::vector<LibrarySetting> all = all_settings();
  return all;
}

const LibrarySetting& find_setting(std::string_view name) {
  std::vector<std::string> names;
  for (const LibrarySetting& setting : library_settings()) {
    if (conversions::equal_ignoring_case(setting.name, name)) return setting;
    names.emplace_back(setting.name);
  }
  const std::string nearest = did_you_mean(name, names);
  throw UsageError("there is no setting " + std::string(name) + nearest +
                   (nearest.empty() ? "; " : " ") + "`bvconn settings list` shows all");
}

SettingState read_setting(const LibrarySetting& setting) {
  SettingState state{.setting = &setting, .place = settings_place(setting.root)};
  try {
    const auto registry = platform::current().settings();
    state.is_given = registry->Exists(setting.path());
    state.value = state.is_given
                      ? registry->ReadString(setting.root, Global::kSettingsKey, setting.name)
                      : std::string(setting.default_text);
    if (!state.is_given) return state;
    if (setting.name == kTracePort) judge_port(state);
    if (setting.name == kDefaultTimeOut) judge_timeout(state, *registry);
    if (setting.name == kTraceSoapTraffic) judge_tracing(state);
    if (!setting.words.empty()) judge_word(state);
  } catch (const Error& error) {
    state.failure = error;
  }
  return state;
}

std::vector<SettingState> read_all_settings() {
  std::vector<SettingState> states;
  std::ranges::transform(library_settings(), std::back_inserter(states), read_setting);
  return states;
}

SettingValue setting_value(const LibrarySetting& setting, std::string_view text) {
  if (!setting.words.empty()) {
    if (is_word_of(setting, text)) return std::string(text);
    throw UsageError(std::string(setting.name) + " takes " + words_text(setting) +
                     ", or an empty text");
  }
  if (setting.name == kTracePort) {
    if (text.empty() || is_port(text)) return std::string(text);
    throw UsageError("tracePort takes a port from 1 to 65535, or an empty text for no proxy");
  }
  if (setting.name == kDefaultTimeOut) {
    const auto number = whole_number(text);
    try {
      if (number) return std::int64_t{conversions::double_to_int32(*number)};
    } catch (const Error&) {
      // Too large: refused below like any other text.
    }
    throw UsageError("defaultTimeOut takes whole milliseconds, at most 2147483647");
  }
  try {
    return conversions::boolean_text(conversions::text_to_boolean(text));
  } catch (const Error&) {
    throw UsageError("TraceSoapTraffic takes True or False");
  }
}

}  // namespace bvconn::tool

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/error.h"
#include "bvconn/platform/settings/registry_access.h"
#include "settings_place.h"

/// The settings that the library shares with the application, for those who look after a machine.
namespace bvconn::tool {

struct LibrarySetting {
  std::string_view name;
  SettingsRoot root;
  std::string_view default_text;  ///< what counts where there is no such value
  std::string_view meaning;
  std::span<const std::string_view> words{};  ///< what alone it may be, besides empty; none: any

  std::string_view root_text() const;
  /// The value's full path, root and key included.
  std::string path() const;
};

std::span<const LibrarySetting> library_settings();
/// By its name, in any case. @throws UsageError, with the names that are near.
const LibrarySetting& find_setting(std::string_view name);

/// A setting as it stands.
struct SettingState {
  const LibrarySetting* setting = nullptr;
  SettingsPlace place;
  std::string value{};             ///< what the library makes of it
  bool is_given = false;           ///< otherwise the default counts
  std::string remark{};            ///< what is peculiar or wrong about the value; "" for nothing
  bool wrong = false;              ///< no value that the library can use
  std::optional<Error> failure{};  ///< of reading it
};

SettingState read_setting(const LibrarySetting& setting);
std::vector<SettingState> read_all_settings();

/// A text as the value that is to be kept. @throws UsageError  where it cannot be one.
SettingValue setting_value(const LibrarySetting& setting, std::string_view text);

}  // namespace bvconn::tool

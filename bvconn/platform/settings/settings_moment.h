#pragma once

#include <cstdint>

#include "bvconn/platform/settings/registry_access.h"

namespace bvconn::detail {

/// While it lives, the calling thread's settings files are looked at once each: what is asked of
/// one file within a moment is answered from one state of it. Moments nest; a write ends what was
/// seen of its file.
class SettingsMoment {
 public:
  SettingsMoment();
  ~SettingsMoment();
  SettingsMoment(const SettingsMoment&) = delete;
  SettingsMoment& operator=(const SettingsMoment&) = delete;
};

/// A number for what these settings hold at this moment, once they have been asked something. As
/// long as it is the same on the calling thread, so is every answer; 0 where nothing tells whether
/// it is, as with settings of the application's own.
std::uint64_t settings_state(const RegistryAccess& settings, SettingsRoot root);

}  // namespace bvconn::detail

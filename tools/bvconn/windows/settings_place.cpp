#include "settings_place.h"

#include "bvconn/core/settings.h"
#include "bvconn/platform/files.h"

namespace bvconn::tool {

SettingsPlace settings_place(SettingsRoot root) {
  const bool is_user = root == SettingsRoot::kCurrentUser;
  const char* variable = is_user ? "BVCONN_USER_SETTINGS" : "BVCONN_MACHINE_SETTINGS";
  if (!detail::environment(variable).empty()) return {.name = settings_file(root)};
  const std::string key(Global::kSettingsKey);
  return {.name = (is_user ? "HKCU\\" : "HKLM\\") + key, .is_file = false};
}

}  // namespace bvconn::tool

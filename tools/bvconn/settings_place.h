#pragma once

#include <string>

#include "bvconn/platform/settings/registry_access.h"

namespace bvconn::tool {

/// Where the values of a root lie.
struct SettingsPlace {
  std::string name;  ///< a file's path, "" where there is no home for it; or a key of the registry
  bool is_file = true;

  const char* kind() const { return is_file ? "file" : "registry"; }
};

SettingsPlace settings_place(SettingsRoot root);

}  // namespace bvconn::tool

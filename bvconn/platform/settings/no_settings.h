#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/settings/registry_access.h"

namespace bvconn {

/// Settings without values, into which nothing can be written: for a platform that is to depend on
/// none of the machine's.
class NoSettings final : public RegistryAccess {
 public:
  bool Exists(std::string_view) override { return false; }
  void Write(std::string_view, const SettingValue&, std::string_view) override {}
  double ReadNumber(SettingsRoot, std::string_view, std::string_view) override { return 0; }
  std::string ReadString(SettingsRoot, std::string_view, std::string_view) override { return ""; }
};

}  // namespace bvconn

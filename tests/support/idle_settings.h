#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/settings/registry_access.h"

namespace bvconn::test {

/// Settings that are there and say nothing but a minute for each number, and take no memory for it.
class IdleSettings : public RegistryAccess {
 public:
  bool Exists(std::string_view) override { return true; }
  void Write(std::string_view, const SettingValue&, std::string_view) override {}
  double ReadNumber(SettingsRoot, std::string_view, std::string_view) override { return 60000; }
  std::string ReadString(SettingsRoot, std::string_view, std::string_view) override { return ""; }
};

}  // namespace bvconn::test

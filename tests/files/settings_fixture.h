#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "bvconn/platform/settings/registry_access.h"
#include "files/temp_folder.h"
#include "support/error_of.h"

namespace bvconn::files_test {

using test::error_of;

/// Settings over two files of the test's own.
class SettingsFixture : public testing::Test {
 protected:
  std::string machine() const { return folder_.file("machine/settings.toml"); }
  std::string user() const { return folder_.file("user/settings.toml"); }

  void put_machine(std::string_view toml) const { put(machine(), toml); }
  void put_user(std::string_view toml) const { put(user(), toml); }

  static std::unique_ptr<RegistryAccess> settings() { return make_settings_files(); }

  TempFolder folder_;

 private:
  static void put(const std::string& path, std::string_view toml) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    put_bytes(path, toml);
  }

  ScopedEnvironment machine_{"BVCONN_MACHINE_SETTINGS", machine()};
  ScopedEnvironment user_{"BVCONN_USER_SETTINGS", user()};
};

inline constexpr std::string_view kAppData = R"(Software\Brimvale\Torvex\AppData)";
inline constexpr std::string_view kTraceSwitch =
    R"(HKCU\Software\Brimvale\Torvex\appData\TraceSoapTraffic)";
inline constexpr auto kMachine = SettingsRoot::kLocalMachine;
inline constexpr auto kUser = SettingsRoot::kCurrentUser;

inline std::string settings_with(std::string_view port) {
  return "['" + std::string(kAppData) + "']\ntracePort = \"" + std::string(port) + "\"\n";
}

/// Writes over what is there, so that the file stays the same one.
inline void overwrite(const std::string& path, std::string_view bytes) {
  put_bytes(path, bytes);
}

class ChangedSettings : public SettingsFixture {
 protected:
  static std::string port() { return settings()->ReadString(kUser, kAppData, "tracePort"); }

  /// A file that has not changed for so long that its stamp is trusted, and that was read since.
  void put_old_file(std::string_view known_port) {
    put_user(settings_with(known_port));
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    ASSERT_EQ(port(), known_port);
    ASSERT_EQ(port(), known_port);
  }
};

}  // namespace bvconn::files_test

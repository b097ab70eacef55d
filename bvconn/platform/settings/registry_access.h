#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "bvconn/platform/export.h"

namespace bvconn {

enum class SettingsRoot { kLocalMachine, kCurrentUser };

/// What `RegistryAccess::Write` stores: a whole number or a text.
using SettingValue = std::variant<std::int64_t, std::string>;

/// The settings that the library shares with the application. Keys and value names are compared
/// without regard to case. Errors have the source "RegistryAccess".
class BVCONN_EXPORT RegistryAccess {
 public:
  virtual ~RegistryAccess();

  /// Whether the value exists. `path` is a root ("HKCU" or "HKLM"), the key and the value name,
  /// joined by backslashes.
  virtual bool Exists(std::string_view path) = 0;
  /// Writes a value to a full path; `type` is "" or "REG_SZ".
  virtual void Write(std::string_view path, const SettingValue& value, std::string_view type) = 0;
  /// The value as a number; 0 when it is absent.
  virtual double ReadNumber(SettingsRoot root, std::string_view key, std::string_view name) = 0;
  /// The value as text; "" when it is absent.
  virtual std::string ReadString(SettingsRoot root, std::string_view key,
                                 std::string_view name) = 0;
};

/// The file that stands for a root; "" where this user has no home folder to keep it in.
BVCONN_EXPORT std::string settings_file(SettingsRoot root);

/// The settings over two TOML files, see docs/settings.md.
BVCONN_EXPORT std::unique_ptr<RegistryAccess> make_settings_files();

}  // namespace bvconn

#pragma once

#include <CLI/CLI.hpp>
#include <optional>

#include "connection_options.h"
#include "settings_command.h"

namespace bvconn::tool {

/// The commands of those who find out why something does not work.
class SupportCommands {
 public:
  /// Adds them to the program's.
  explicit SupportCommands(CLI::App& app);
  /// Runs the one that was parsed and gives its exit status; nothing where another one was.
  std::optional<int> run() const;

 private:
  void add_settings(CLI::App& app);
  void add_doctor(CLI::App& app);

  CLI::App* settings_ = nullptr;
  SettingsOptions settings_options_;
  CLI::App* doctor_ = nullptr;
  bool doctor_json_ = false;
  ConnectionOptions connection_;
};

}  // namespace bvconn::tool

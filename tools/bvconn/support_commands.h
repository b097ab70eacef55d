#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "connection_options.h"
#include "settings_command.h"

namespace bvconn::tool {

/// The commands of those who find out why something does not work.
class SupportCommands {
 public:
  /// Adds them to the program's.
  SupportCommands(CLI::App& app, std::string version);
  /// Runs the one that was parsed and gives its exit status; nothing where another one was.
  std::optional<int> run() const;

 private:
  void add_settings(CLI::App& app);
  void add_doctor(CLI::App& app);
  void add_bundle(CLI::App& app);

  CLI::App* settings_ = nullptr;
  SettingsOptions settings_options_;
  CLI::App* doctor_ = nullptr;
  bool doctor_json_ = false;
  CLI::App* bundle_ = nullptr;
  std::string bundle_file_;
  std::string version_;
  ConnectionOptions connection_;
};

}  // namespace bvconn::tool

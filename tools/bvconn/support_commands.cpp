#include "support_commands.h"

#include <iostream>

#include "command_line.h"
#include "doctor_command.h"

namespace bvconn::tool {

SupportCommands::SupportCommands(CLI::App& app) {
  add_settings(app);
  add_doctor(app);
}

void SupportCommands::add_settings(CLI::App& app) {
  using Action = SettingsOptions::Action;
  SettingsOptions& options = settings_options_;
  settings_ = app.add_subcommand("settings", "Show and change the settings of the library");
  settings_->require_subcommand(1);

  CLI::App* list = settings_->add_subcommand("list", "All of them, and where they come from");
  list->add_flag("--json", options.json, "As data");
  list->callback([&options] { options.action = Action::kList; });

  CLI::App* get = settings_->add_subcommand("get", "The value of one");
  get->add_option("NAME", options.name, "Its name")->required();
  get->add_flag("--json", options.json, "As data, with root, file and default");
  get->callback([&options] { options.action = Action::kGet; });

  CLI::App* set = settings_->add_subcommand("set", "Write the value of one to its file");
  set->add_option("NAME", options.name, "Its name")->required();
  set->add_option("VALUE", options.value, "What it is to be; negative numbers after --")
      ->required();
  set->callback([&options] { options.action = Action::kSet; });
}

void SupportCommands::add_doctor(CLI::App& app) {
  doctor_ = app.add_subcommand(
      "doctor", "Look for what is in the way of calls: a line OK, or the likely cause, for each");
  doctor_->add_flag("--json", doctor_json_, "As data");
  add_connection_options(*doctor_, connection_);
}

std::optional<int> SupportCommands::run() const {
  if (settings_->parsed()) return run_settings(settings_options_, std::cout, std::cerr);
  if (doctor_->parsed()) {
    return run_doctor(resolve_connection(connection_), doctor_json_, std::cout);
  }
  return std::nullopt;
}

}  // namespace bvconn::tool

#include "support_commands.h"

#include <iostream>
#include <utility>

#include "command_line.h"
#include "doctor_command.h"
#include "support_bundle_command.h"

namespace bvconn::tool {

SupportCommands::SupportCommands(CLI::App& app, std::string version)
    : version_(std::move(version)) {
  add_settings(app);
  add_doctor(app);
  add_bundle(app);
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

void SupportCommands::add_bundle(CLI::App& app) {
  bundle_ = app.add_subcommand(
      "support-bundle",
      "Gather what support staff ask for in one text file: versions, settings, the doctor's lines, "
      "the last exchanges, the end of the log; secrets are hidden");
  bundle_->add_option("FILE", bundle_file_, "Where it goes; - is standard output")->required();
  add_connection_options(*bundle_, connection_);
}

std::optional<int> SupportCommands::run() const {
  if (settings_->parsed()) return run_settings(settings_options_, std::cout, std::cerr);
  if (doctor_->parsed()) {
    return run_doctor(resolve_connection(connection_), doctor_json_, std::cout);
  }
  if (bundle_->parsed()) {
    return run_support_bundle(resolve_connection(connection_), bundle_file_, version_, std::cerr);
  }
  return std::nullopt;
}

}  // namespace bvconn::tool

#include "command_line.h"

#include <algorithm>

#include "nearest_names.h"

namespace bvconn::tool {
namespace {

std::vector<const CLI::App*> subcommands_of(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<std::string> names_of(const std::vector<const CLI::App*>& commands) {
  std::vector<std::string> names;
  for (const CLI::App* each : commands) names.push_back(each->get_name());
  return names;
}

std::vector<OptionWords> options_of(const CLI::App& command) {
  std::vector<OptionWords> options;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      options.push_back({.name = "--" + name, .takes_value = option->get_expected_max() > 0});
    }
  }
  return options;
}

/// A word of this command line that looks like an option and is none.
std::string explain_option(const CLI::App& command, const std::vector<std::string>& words) {
  std::vector<std::string> known;
  for (const OptionWords& option : options_of(command)) known.push_back(option.name);
  for (const std::string& word : words) {
    if (word == "--") break;
    const std::string name = word.substr(0, word.find('='));
    if (!word.starts_with("--") || std::find(known.begin(), known.end(), name) != known.end()) {
      continue;
    }
    return command.get_name() + ": there is no option " + name + did_you_mean(name, known);
  }
  return "";
}

}  // namespace

void add_connection_options(CLI::App& command, ConnectionOptions& options,
                            std::initializer_list<std::string_view> left_out) {
  constexpr const char* kGroup = "Connection";
  command
      .add_option_function<std::string>(
          "--profile", [&options](const std::string& name) { options.profile = name; },
          "Take what is not given here from this profile (or BVCONN_PROFILE)")
      ->type_name("NAME")
      ->group(kGroup);
  for (const ConnectionField& field : kConnectionFields) {
    if (std::find(left_out.begin(), left_out.end(), field.name) != left_out.end()) continue;
    command
        .add_option_function<std::string>(
            "--" + std::string(field.name),
            [&options, name = field.name](const std::string& text) { options.given[name] = text; },
            std::string(field.help) + " (or " + std::string(field.variable) + ")")
        ->type_name(std::string(field.type))
        ->group(kGroup);
  }
}

std::string explain_slip(const CLI::App& app, const std::vector<std::string>& words) {
  if (words.empty() || words.front().starts_with("-")) return explain_option(app, words);
  for (const CLI::App* command : subcommands_of(app)) {
    if (command->get_name() != words.front()) continue;
    const std::vector<std::string> rest(words.begin() + 1, words.end());
    return subcommands_of(*command).empty() ? explain_option(*command, rest)
                                            : explain_slip(*command, rest);
  }
  std::string text = app.get_parent() == nullptr ? "" : app.get_name() + ": ";
  text.append("there is no subcommand ").append(words.front());
  return text + did_you_mean(words.front(), names_of(subcommands_of(app)));
}

std::string command_prefix(const CLI::App& app, const std::vector<std::string>& words) {
  std::string names;
  const CLI::App* command = &app;
  for (const std::string& word : words) {
    const auto below = subcommands_of(*command);
    const auto named =
        std::ranges::find(below, word, [](const CLI::App* each) { return each->get_name(); });
    if (named == below.end()) break;
    command = *named;
    names.append(names.empty() ? "" : " ").append(word);
  }
  return names.empty() ? "" : names + ": ";
}

std::vector<CommandWords> command_words(const CLI::App& app) {
  std::vector<CommandWords> commands;
  for (const CLI::App* each : subcommands_of(app)) {
    commands.push_back({.name = each->get_name(),
                        .options = options_of(*each),
                        .subcommands = names_of(subcommands_of(*each))});
  }
  return commands;
}

}  // namespace bvconn::tool

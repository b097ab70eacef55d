#include "settings_command.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <set>
#include <vector>

#include "arguments.h"
#include "batch.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/explain.h"
#include "bvconn/platform/platform.h"
#include "json_text.h"
#include "library_settings.h"

namespace bvconn::tool {
namespace {

std::string shown_value(const SettingState& state) {
  if (state.failure) return "(unreadable)";
  std::string shown;
  detail::append_escaped(shown, state.value);
  return shown.empty() ? "(empty)" : shown;
}

void print_table(const std::vector<SettingState>& states, std::ostream& out) {
  using Row = std::array<std::string, 6>;
  std::vector<Row> rows{{"NAME", "VALUE", "FROM", "DEFAULT", "ROOT", "FILE"}};
  const bool all_in_files =
      std::ranges::all_of(states, [](const SettingState& each) { return each.place.is_file; });
  if (!all_in_files) rows.front().back() = "PLACE";
  for (const SettingState& state : states) {
    const LibrarySetting& setting = *state.setting;
    const std::string usual(setting.default_text);
    rows.push_back({std::string(setting.name), shown_value(state),
                    state.failure    ? "-"
                    : state.is_given ? state.place.kind()
                                     : "default",
                    usual.empty() ? "(empty)" : usual, std::string(setting.root_text()),
                    state.place.name.empty() ? "(no home folder)" : state.place.name});
  }
  for (const Row& row : rows) {
    for (std::size_t column = 0; column < row.size(); ++column) {
      out << row[column];
      if (column + 1 == row.size()) break;
      std::size_t width = 0;
      for (const Row& each : rows) width = std::max(width, each[column].size());
      out << std::string(width - row[column].size() + 2, ' ');
    }
    out << '\n';
  }
}

Json state_json(const SettingState& state) {
  const LibrarySetting& setting = *state.setting;
  Json json{{"name", setting.name},
            {"value", state.failure ? Json() : Json(state.value)},
            {"from", state.is_given ? state.place.kind() : "default"},
            {"default", setting.default_text},
            {"root", setting.root_text()},
            {"path", setting.path()},
            {state.place.kind(), state.place.name},
            {"meaning", setting.meaning}};
  if (!state.remark.empty()) json["remark"] = state.remark;
  if (state.failure) json["error"] = Json::parse(json_error(*state.failure));
  return json;
}

int report_failure(const Error& error, std::ostream& err) {
  err << "bvconn: settings: error " << hex_number(error.number) << " from " << error.source << ": "
      << error.description << '\n'
      << "bvconn: hint: " << explain(error) << '\n';
  return kFailed;
}

int list(const SettingsOptions& options, std::ostream& out, std::ostream& err) {
  const std::vector<SettingState> states = read_all_settings();
  if (options.json) {
    Json all = Json::array();
    for (const SettingState& state : states) all.push_back(state_json(state));
    out << all.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
  } else {
    print_table(states, out);
  }
  std::set<std::string> told;
  int status = kDone;
  for (const SettingState& state : states) {
    if (!state.remark.empty()) {
      err << "bvconn: " << state.setting->name << ": " << state.remark << '\n';
    }
    if (!state.failure) continue;
    status = kFailed;
    if (told.insert(state.failure->description).second) report_failure(*state.failure, err);
  }
  return status;
}

int get(const SettingsOptions& options, std::ostream& out, std::ostream& err) {
  const SettingState state = read_setting(find_setting(options.name));
  if (state.failure) return report_failure(*state.failure, err);
  if (options.json) {
    out << state_json(state).dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
  } else {
    out << state.value << '\n';
  }
  if (!state.remark.empty())
    err << "bvconn: " << state.setting->name << ": " << state.remark << '\n';
  return kDone;
}

/// The comment of a line of TOML, if it has one; a # inside of a text begins none.
std::string_view comment_of(std::string_view line) {
  char quote = '\0';
  for (std::size_t at = 0; at < line.size(); ++at) {
    const char c = line[at];
    if (quote == '\0' && c == '#') return line.substr(at);
    if (quote == '"' && c == '\\') {
      ++at;
    } else if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '"' || c == '\'') {
      quote = c;
    }
  }
  return {};
}

/// The comments of a file, for what a rewrite of it may lose.
std::multiset<std::string> comments_of(const std::string& path) {
  std::multiset<std::string> comments;
  std::ifstream file(std::filesystem::path(path), std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    const std::string_view comment = comment_of(line);
    if (!comment.empty()) comments.emplace(comment);
  }
  return comments;
}

int set(const SettingsOptions& options, std::ostream& err) {
  const LibrarySetting& setting = find_setting(options.name);
  const SettingValue value = setting_value(setting, options.value);
  const std::string file = settings_place(setting.root).name;
  const auto before = comments_of(file);
  try {
    const bool is_text = std::holds_alternative<std::string>(value);
    platform::current().settings()->Write(setting.path(), value, is_text ? "REG_SZ" : "");
  } catch (const Error& error) {
    return report_failure(error, err);
  }
  const auto after = comments_of(file);
  std::vector<std::string> lost;
  std::ranges::set_difference(before, after, std::back_inserter(lost));
  if (lost.empty()) return kDone;
  err << "bvconn: " << file << " was written anew: its values are kept, in alphabetical order, but "
      << "these comments are gone:\n";
  for (const std::string& comment : lost) {
    std::string shown;
    detail::append_escaped(shown, comment);
    err << "  " << shown << '\n';
  }
  return kDone;
}

}  // namespace

int run_settings(const SettingsOptions& options, std::ostream& out, std::ostream& err) {
  try {
    int status = kDone;
    switch (options.action) {
      case SettingsOptions::Action::kList:
        status = list(options, out, err);
        break;
      case SettingsOptions::Action::kGet:
        status = get(options, out, err);
        break;
      case SettingsOptions::Action::kSet:
        status = set(options, err);
        break;
    }
    out.flush();
    return out ? status : kFailed;
  } catch (const UsageError& error) {
    err << "bvconn: settings: " << error.what() << '\n';
    return kNotUnderstood;
  }
}

}  // namespace bvconn::tool

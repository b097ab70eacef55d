#include "connection_options.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <filesystem>
#include <limits>
#include <sstream>
#include <utility>
#include <vector>

#include "bvconn/platform/settings/toml_reader.h"
#include "input_files.h"
#include "nearest_names.h"
#include "status.h"
#include "system.h"

namespace bvconn::tool {
namespace {

/// What the origin of a value begins with that a profile gives.
constexpr std::string_view kProfileOrigin = "profile ";
/// Far beyond any use, and small enough for a reader that recurses.
constexpr std::size_t kLargestProfiles = std::size_t{64} << 10;

/// "" where it is not set.
std::string variable(std::string_view name) {
  return variable_of(std::string(name).c_str()).value_or("");
}

[[noreturn]] void fail_not_toml(const std::string& file, const detail::TomlTrouble& trouble) {
  throw SettingsError("profiles: " + file + " is not TOML at line " +
                      std::to_string(trouble.at.line) + ", column " +
                      std::to_string(trouble.at.column) + ": " + trouble.reason);
}

toml::table parse_profiles(const std::string& file) {
  std::string text;
  try {
    text = read_input(file);
  } catch (const UsageError& error) {
    throw SettingsError(std::string("profiles: ") + error.what());
  }
  if (text.size() > kLargestProfiles) {
    throw SettingsError("profiles: " + file + " is larger than " +
                        std::to_string(kLargestProfiles) + " bytes");
  }
  detail::TomlReading reading = detail::read_toml(text);
  if (reading.trouble) fail_not_toml(file, *reading.trouble);
  return std::move(reading.table);
}

/// A value as the text that an option would have.
std::optional<std::string> text_of(const toml::node& node) {
  if (const auto* text = node.as_string()) return text->get();
  if (const auto* number = node.as_integer()) return std::to_string(number->get());
  return std::nullopt;
}

std::vector<std::string> keys_of(const toml::table& table) {
  std::vector<std::string> keys;
  for (auto&& [key, value] : table) keys.emplace_back(key.str());
  return keys;
}

std::vector<std::string> field_names() {
  std::vector<std::string> names;
  for (const ConnectionField& field : kConnectionFields) names.emplace_back(field.name);
  return names;
}

/// One table of the file of profiles.
class Profile {
 public:
  explicit Profile(const std::string& name) : origin_(std::string(kProfileOrigin) + name) {
    const std::string file = profiles_file();
    folder_ = std::filesystem::path(file).parent_path();
    if (file.empty() || !std::filesystem::exists(file)) {
      throw UsageError("there is no profile " + name + ", since there is no file " +
                       (file.empty() ? "of profiles without a home" : file));
    }
    const toml::table profiles = parse_profiles(file);
    const toml::table* table = profiles[name].as_table();
    if (table == nullptr) fail_unknown(name, profiles, file);
    for (auto&& [key, value] : *table) take(key.str(), value, file);
  }

  void give(const ConnectionField& field, ConnectionValue& value) const {
    const auto found = values_.find(std::string(field.name));
    if (found == values_.end()) return;
    // A file is looked for beside the profiles, wherever the tool is started.
    const bool below = field.is_file && !found->second.empty();
    value = {.text = below ? (folder_ / found->second).string() : found->second, .origin = origin_};
  }

 private:
  [[noreturn]] static void fail_unknown(const std::string& name, const toml::table& profiles,
                                        const std::string& file) {
    throw UsageError("there is no profile " + name + " in " + file +
                     did_you_mean(name, keys_of(profiles)));
  }

  void take(std::string_view key, const toml::node& value, const std::string& file) {
    const auto place = file + ", " + origin_ + ": ";
    const std::vector<std::string> names = field_names();
    if (std::find(names.begin(), names.end(), key) == names.end()) {
      throw SettingsError(place + "there is no " + std::string(key) + did_you_mean(key, names));
    }
    const auto text = text_of(value);
    if (!text) throw SettingsError(place + std::string(key) + ": a text is expected");
    values_.emplace(key, *text);
  }

  std::string origin_;
  std::filesystem::path folder_;
  std::map<std::string, std::string> values_;
};

std::optional<Profile> chosen_profile(const ConnectionOptions& options) {
  const std::string name = options.profile.value_or(variable("BVCONN_PROFILE"));
  if (name.empty()) return std::nullopt;
  return Profile(name);
}

ConnectionValue found_value(const ConnectionField& field, const ConnectionOptions& options,
                            const std::optional<Profile>& profile, bool looks_around) {
  if (const auto option = options.given.find(field.name); option != options.given.end()) {
    return {.text = option->second, .origin = "--" + std::string(field.name)};
  }
  ConnectionValue value;
  if (!looks_around) return value;
  if (std::string text = variable(field.variable); !text.empty()) {
    return {.text = std::move(text), .origin = std::string(field.variable)};
  }
  if (profile) profile->give(field, value);
  return value;
}

/// Milliseconds of one unit; 0 for a unit that there is not.
double unit_ms(std::string_view unit) {
  constexpr double kSecond_ms = 1000;
  if (unit.empty() || unit == "s") return kSecond_ms;
  if (unit == "ms") return 1;
  return unit == "m" ? 60 * kSecond_ms : 0;
}

}  // namespace

std::optional<std::chrono::milliseconds> Connection::time_limit() const {
  if (timeout.empty()) return std::nullopt;
  const std::string& text = timeout.text;
  double count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  const double limit_ms =
      count * unit_ms({end, static_cast<std::size_t>(text.data() + text.size() - end)});
  if (error != std::errc() || !(limit_ms >= 1 && limit_ms <= std::numeric_limits<int>::max())) {
    throw UsageError(timeout.origin + ": a time is expected, such as 30, 2.5s, 500ms or 2m, not " +
                     text);
  }
  return std::chrono::milliseconds(static_cast<std::int64_t>(limit_ms));
}

std::string Connection::password() const {
  if (password_file.empty()) return "";
  try {
    return without_line_end(read_input(password_file.text));
  } catch (const UsageError& error) {
    throw UsageError(password_file.origin + ": " + error.what());
  }
}

Connection resolve_connection(const ConnectionOptions& options, ConnectionSources sources) {
  const bool looks_around = sources == ConnectionSources::kAll;
  const std::optional<Profile> profile = looks_around ? chosen_profile(options) : std::nullopt;
  Connection connection;
  for (const ConnectionField& field : kConnectionFields) {
    connection.*field.value = found_value(field, options, profile, looks_around);
  }
  try {
    static_cast<void>(connection.time_limit());  // What cannot be understood shows at once.
  } catch (const UsageError& error) {
    if (connection.timeout.origin.starts_with(kProfileOrigin)) throw SettingsError(error.what());
    throw;
  }
  return connection;
}

std::string profiles_file() {
  const std::string folder = user_settings_folder();
  return folder.empty() ? "" : folder + "/bvconn/profiles.toml";
}

std::vector<std::string> profile_names() {
  try {
    return keys_of(parse_profiles(profiles_file()));
  } catch (const SettingsError&) {
    return {};
  }
}

}  // namespace bvconn::tool

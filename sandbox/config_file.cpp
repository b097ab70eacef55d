#include "sandbox/config_file.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <optional>

#include "bvconn/platform/conversions/nearest_names.h"
#include "sandbox/toml_file.h"

namespace bvconn::sandbox {
namespace {

namespace fs = std::filesystem;

/// A value as the command line would have it; nothing where it could not.
std::optional<std::string> text_of(const toml::node& value) {
  if (const auto* text = value.as_string()) return text->get();
  if (const auto* number = value.as_integer()) return std::to_string(number->get());
  if (const auto* truth = value.as_boolean()) return truth->get() ? "true" : "false";
  return std::nullopt;
}

/// Whether the command line has decided it.
bool is_settled(const CLI::Option& option) {
  const auto& excluded = option.get_excludes();
  return option.count() > 0 || std::any_of(excluded.begin(), excluded.end(),
                                           [](const auto* each) { return each->count() > 0; });
}

class Config {
 public:
  Config(const std::string& file, const CLI::App& app) : file_(file), app_(app) {}

  std::vector<std::string> words() {
    const toml::table table = [this] {
      try {
        return read_toml_file(file_);
      } catch (const std::runtime_error& error) {
        throw BadConfig(error.what());
      }
    }();
    for (auto&& [key, value] : table) take(std::string(key.str()), value);
    return std::move(words_);
  }

 private:
  void take(const std::string& key, const toml::node& value) {
    const CLI::Option& option = named(key);
    if (is_settled(option)) return;
    const toml::array* const list = value.as_array();
    if (list == nullptr) return take_one(key, option, value);
    for (const toml::node& each : *list) take_one(key, option, each);
  }

  const CLI::Option& named(const std::string& key) const {
    std::vector<std::string> known;
    for (const CLI::Option* each : app_.get_options()) {
      const std::string name = each->get_name().substr(2);
      if (name == "help" || name == "version" || name == "config") continue;
      if (name == key) return *each;
      known.push_back(name);
    }
    throw BadConfig(file_ + ": there is no option " + key + did_you_mean(key, known));
  }

  void take_one(const std::string& key, const CLI::Option& option, const toml::node& value) {
    std::optional<std::string> text = text_of(value);
    const bool is_flag = option.get_expected_max() == 0;
    if (!text || is_flag != value.is_boolean()) {
      throw BadConfig(file_ + ": " + key + " is no value that the option --" + key + " takes");
    }
    words_.push_back("--" + key + "=" + (is_file(option) ? beside(*text) : *text));
  }

  static bool is_file(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    return type == "FILE" || type == "FOLDER";
  }

  /// An address of a database is no file.
  std::string beside(const std::string& path) const {
    if (path.find("://") != std::string::npos) return path;
    return (fs::path(file_).parent_path() / path).string();
  }

  const std::string& file_;
  const CLI::App& app_;
  std::vector<std::string> words_;
};

}  // namespace

std::vector<std::string> words_of_config(const std::string& file, const CLI::App& app) {
  return Config(file, app).words();
}

}  // namespace bvconn::sandbox

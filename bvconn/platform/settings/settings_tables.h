#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/settings/registry_access.h"
#include "bvconn/platform/settings/toml_reader.h"

/// Where a value lies in the tables of a settings file.
namespace bvconn::detail {

/// A full path, taken apart. The views point into the path.
struct ValuePath {
  SettingsRoot root;
  std::string_view key;
  std::string_view name;
};

inline ValuePath split_path(std::string_view path) {
  const std::size_t first = path.find('\\');
  const std::size_t last = path.rfind('\\');
  const std::string_view root = path.substr(0, first);
  const auto is_root = [root](std::string_view brief, std::string_view full) {
    return conversions::equal_ignoring_case(root, brief) ||
           conversions::equal_ignoring_case(root, full);
  };
  const bool user = is_root("HKCU", "HKEY_CURRENT_USER");
  if (first == std::string_view::npos || !(user || is_root("HKLM", "HKEY_LOCAL_MACHINE"))) {
    throw Error(error_numbers::kSettingsUnusable, "RegistryAccess",
                "The path " + shown(path) + " begins with no known root");
  }
  return {.root = user ? SettingsRoot::kCurrentUser : SettingsRoot::kLocalMachine,
          .key = last > first ? path.substr(first + 1, last - first - 1) : std::string_view(),
          .name = path.substr(last + 1)};
}

/// What is left of `key` behind `part`, its first component or components; nothing when the key
/// does not begin with them.
inline std::optional<std::string_view> behind(std::string_view key, std::string_view part) {
  if (part.size() > key.size() ||
      !conversions::equal_ignoring_case(key.substr(0, part.size()), part)) {
    return std::nullopt;
  }
  std::string_view rest = key.substr(part.size());
  if (rest.empty()) {
    return rest;
  }
  if (!rest.starts_with('\\')) {
    return std::nullopt;
  }
  rest.remove_prefix(1);
  return rest;
}

/// All tables that stand for a key: a key path may be one name or be spread over nested tables, and
/// several spellings of it may stand in one file.
inline void collect_tables(toml::table& table, std::string_view key,
                           std::vector<toml::table*>& found) {
  if (key.empty()) {
    found.push_back(&table);
    return;
  }
  for (auto&& [name, node] : table) {
    toml::table* inner = node.as_table();
    const std::optional<std::string_view> rest = inner ? behind(key, name.str()) : std::nullopt;
    if (rest) {
      collect_tables(*inner, *rest, found);
    }
  }
}

/// A value's place: its table, and its name as the file spells it.
struct Place {
  toml::table* table = nullptr;
  std::string_view name;
};

/// The first value of this name among those of the tables that stand for the key.
inline std::optional<Place> find_value(toml::table& table, std::string_view key,
                                       std::string_view name) {
  for (auto&& [spelling, node] : table) {
    toml::table* inner = node.as_table();
    if (key.empty()) {
      const bool is_it = inner == nullptr && conversions::equal_ignoring_case(spelling.str(), name);
      if (is_it) return Place{&table, spelling.str()};
      continue;
    }
    const std::optional<std::string_view> rest =
        inner != nullptr ? behind(key, spelling.str()) : std::nullopt;
    if (!rest) continue;
    if (auto found = find_value(*inner, *rest, name)) return found;
  }
  return std::nullopt;
}

}  // namespace bvconn::detail

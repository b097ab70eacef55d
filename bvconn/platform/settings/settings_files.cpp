#include <cmath>
#include <locale>
#include <sstream>
#include <typeinfo>
#include <utility>
#include <vector>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/settings/file_store.h"
#include "bvconn/platform/settings/known_tables.h"
#include "bvconn/platform/settings/registry_access.h"
#include "bvconn/platform/settings/settings_moment.h"
#include "bvconn/platform/settings/settings_tables.h"
#include "bvconn/platform/settings/toml_reader.h"

namespace bvconn {

RegistryAccess::~RegistryAccess() = default;

namespace {

using conversions::equal_ignoring_case;
using detail::collect_tables;
using detail::find_value;
using detail::Place;
using detail::split_path;
using detail::ValuePath;

/// Writers hold the lock for as long as it takes to write a small file.
constexpr std::chrono::milliseconds kLockWait{5000};

std::string serialize(const toml::table& table) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  // Otherwise a stream that finds no memory only stops writing.
  out.exceptions(std::ios::badbit);
  out << table << '\n';
  return out.str();
}

class SettingsFiles final : public RegistryAccess {
 public:
  bool Exists(std::string_view path) override {
    const ValuePath value = split_path(path);
    const auto file = load(value.root);
    return node_at(*file, value) != nullptr;
  }

  void Write(std::string_view path, const SettingValue& value, std::string_view type) override;

  double ReadNumber(SettingsRoot root, std::string_view key, std::string_view name) override {
    const auto file = load(root);
    const toml::node* node = node_at(*file, {.root = root, .key = key, .name = name});
    if (node == nullptr) {
      return 0;
    }
    if (const auto* integer = node->as_integer()) {
      return static_cast<double>(integer->get());
    }
    if (const auto* number = node->as_floating_point()) {
      return number->get();
    }
    if (const auto* text = node->as_string()) {
      return conversions::text_to_double(text->get());
    }
    fail_mismatch(path_of(root), name, "number");
  }

  std::string ReadString(SettingsRoot root, std::string_view key, std::string_view name) override {
    const auto file = load(root);
    const toml::node* node = node_at(*file, {.root = root, .key = key, .name = name});
    if (node == nullptr) {
      return "";
    }
    switch (node->type()) {
      case toml::node_type::string:
        return node->as_string()->get();
      case toml::node_type::integer:
        return conversions::integer_text(node->as_integer()->get());
      case toml::node_type::floating_point:
        return conversions::double_text(node->as_floating_point()->get());
      case toml::node_type::boolean:
        return conversions::boolean_text(node->as_boolean()->get());
      default:
        fail_mismatch(path_of(root), name, "text");
    }
  }

  /// See `settings_state`.
  std::uint64_t state(SettingsRoot root) const { return detail::known_state(root, path_of(root)); }

 private:
  const std::string& path_of(SettingsRoot root) const {
    std::optional<std::string>& path =
        root == SettingsRoot::kCurrentUser ? user_path_ : machine_path_;
    if (!path) path = settings_file(root);
    return *path;
  }

  /// As the file is now: a switch that support staff turn on counts at once.
  std::shared_ptr<toml::table> load(SettingsRoot root) const {
    return detail::known_table(root, path_of(root));
  }

  static const toml::node* node_at(toml::table& file, const ValuePath& value) {
    const std::optional<Place> place = find_value(file, value.key, value.name);
    return place ? place->table->get(place->name) : nullptr;
  }

  [[noreturn]] static void fail_mismatch(const std::string& path, std::string_view name,
                                         std::string_view wanted) {
    throw Error(
        error_numbers::kTypeMismatch, "BVConn",
        "The value " + detail::shown(name) + " in \"" + path + "\" is no " + std::string(wanted));
  }

  // Known when they are first asked for.
  mutable std::optional<std::string> machine_path_;
  mutable std::optional<std::string> user_path_;
};

/// The table to write a value to, and the name that the value has there already or is to have. No
/// table when something that is none stands in its place.
Place place_for(toml::table& file, const ValuePath& value) {
  if (const std::optional<Place> standing = find_value(file, value.key, value.name)) {
    return *standing;
  }
  std::vector<toml::table*> tables;
  collect_tables(file, value.key, tables);
  toml::table* table = tables.empty()
                           ? file.insert(value.key, toml::table()).first->second.as_table()
                           : tables.front();
  const bool taken = table != nullptr && table->contains(value.name);
  return {.table = taken ? nullptr : table, .name = value.name};
}

void put(toml::table& file, const std::string& path, const ValuePath& value,
         const SettingValue& content) {
  const Place place = place_for(file, value);
  if (place.table == nullptr) {
    detail::fail_unusable("write", path,
                          "a table stands where the value " + detail::shown(value.name) +
                              " is to go, or a value where its table is to go");
  }
  const std::string name(place.name);
  std::visit([&](const auto& simple) { place.table->insert_or_assign(name, simple); }, content);
}

/// A text that is no UTF-8 would make the file unreadable for everybody.
void check_writable(const std::string& path, const ValuePath& value, const SettingValue& content) {
  const auto* text = std::get_if<std::string>(&content);
  if (!detail::is_utf8(value.key) || !detail::is_utf8(value.name) ||
      (text != nullptr && !detail::is_utf8(*text))) {
    detail::fail_unusable("write", path,
                          "the value " + detail::shown(value.name) + " is not UTF-8 text");
  }
  if (path.empty()) {
    detail::fail_unusable("write", path, "the user has no home folder to keep settings in");
  }
}

void SettingsFiles::Write(std::string_view path, const SettingValue& value, std::string_view type) {
  const ValuePath place = split_path(path);
  const auto* number = std::get_if<std::int64_t>(&value);
  const bool number_as_text = number != nullptr && equal_ignoring_case(type, "REG_SZ");
  const SettingValue number_text(number_as_text ? conversions::integer_text(*number) : "");
  // No copy of the value: that of a variant which fails for lack of memory is undone wrongly by
  // GCC 12's standard library.
  const SettingValue& content = number_as_text ? number_text : value;
  check_writable(path_of(place.root), place, content);
  const std::string file_path = detail::resolve_links(path_of(place.root));
  detail::make_folders_of(file_path);
  const detail::FileLock lock(file_path + ".lock", kLockWait);
  // Whatever comes of it, nothing that was seen before holds any longer.
  detail::forget_tables();
  toml::table file = detail::read_table(file_path).table;
  put(file, file_path, place, content);
  const std::string text = serialize(file);
  // Better no change than a file that has lost something.
  if (detail::parse_settings(text, file_path) != file) {
    detail::fail_unusable("write", file_path, "it holds values that do not survive a rewrite");
  }
  detail::replace_file(file_path, text);
}

}  // namespace

std::string settings_file(SettingsRoot root) {
  const bool machine = root == SettingsRoot::kLocalMachine;
  std::string path =
      detail::environment(machine ? "BVCONN_MACHINE_SETTINGS" : "BVCONN_USER_SETTINGS");
  if (!path.empty()) {
    return path;
  }
  return machine ? detail::machine_file("bvconn/settings.toml")
                 : detail::user_file(detail::UserFolder::kSettings, "bvconn/settings.toml");
}

std::uint64_t detail::settings_state(const RegistryAccess& settings, SettingsRoot root) {
  if (typeid(settings) != typeid(SettingsFiles)) return 0;
  return static_cast<const SettingsFiles&>(settings).state(root);
}

std::unique_ptr<RegistryAccess> make_settings_files() {
  return std::make_unique<SettingsFiles>();
}

}  // namespace bvconn

#include "bvconn/platform/settings/known_tables.h"

#include <array>
#include <cstddef>
#include <utility>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/settings/file_store.h"
#include "bvconn/platform/settings/settings_moment.h"
#include "bvconn/platform/thread_record.h"

namespace bvconn::detail {
namespace {

/// A larger file is rather read again than kept by each thread.
constexpr std::size_t kLargestKept = std::size_t{64} << 10;

/// A settings file as the thread knows it.
struct KnownFile {
  std::string path;
  std::shared_ptr<toml::table> table;
  std::optional<FileStamp> stamp;  ///< without one the table holds for the moment alone
  std::uint64_t reading = 0;       ///< which one of the thread's brought the table
  bool was_looked_at = false;      ///< in this moment
};

struct KnownFiles {
  std::array<KnownFile, 2> files;
  int moments = 0;
  std::uint64_t readings = 0;
};
using ThreadsFiles = ThreadRecord<KnownFiles>;

KnownFile& known_file(KnownFiles& files, SettingsRoot root) {
  return files.files[root == SettingsRoot::kLocalMachine ? 0 : 1];
}

bool is_as_known(const KnownFile& known, const std::string& path) {
  if (known.table == nullptr || known.path != path) return false;
  return known.was_looked_at || (known.stamp && stamp_of(path) == known.stamp);
}

[[noreturn]] void fail_not_toml(const std::string& path, const TomlTrouble& trouble) {
  throw Error(error_numbers::kSettingsNotToml, "RegistryAccess",
              "The settings file \"" + path + "\" is not TOML at line " +
                  std::to_string(trouble.at.line) + ", column " +
                  std::to_string(trouble.at.column) + ": " + trouble.reason);
}

}  // namespace

toml::table parse_settings(std::string_view text, const std::string& path) {
  TomlReading reading = read_toml(text);
  if (reading.trouble) fail_not_toml(path, *reading.trouble);
  return std::move(reading.table);
}

ReadTable read_table(const std::string& path) {
  const std::optional<SettingsText> text = read_settings_file(path);
  if (!text) return {};
  return {.table = parse_settings(text->bytes, path),
          .stamp = text->bytes.size() <= kLargestKept ? text->stamp : std::nullopt};
}

std::shared_ptr<toml::table> known_table(SettingsRoot root, const std::string& path) {
  KnownFiles& files = ThreadsFiles::get();
  KnownFile& known = known_file(files, root);
  if (!is_as_known(known, path)) {
    known = {};
    ReadTable read = read_table(path);
    auto table = std::make_shared<toml::table>(std::move(read.table));
    if (!read.stamp && files.moments == 0) return table;
    known.path = path;
    known.stamp = read.stamp;
    known.table = std::move(table);
    known.reading = ++files.readings;
  }
  known.was_looked_at = files.moments != 0;
  return known.table;
}

std::uint64_t known_state(SettingsRoot root, const std::string& path) {
  KnownFiles& files = ThreadsFiles::get();
  KnownFile& known = known_file(files, root);
  if (!known.stamp || !is_as_known(known, path)) return 0;
  known.was_looked_at = files.moments != 0;
  return known.reading;
}

void forget_tables() {
  for (KnownFile& known : ThreadsFiles::get().files) known = {};
}

SettingsMoment::SettingsMoment() {
  ++ThreadsFiles::get().moments;
}

SettingsMoment::~SettingsMoment() {
  KnownFiles& files = ThreadsFiles::get();
  if (--files.moments != 0) return;
  for (KnownFile& known : files.files) {
    if (known.stamp) {
      known.was_looked_at = false;
    } else {
      known = {};
    }
  }
}

}  // namespace bvconn::detail

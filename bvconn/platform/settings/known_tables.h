#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/settings/file_stamp.h"
#include "bvconn/platform/settings/registry_access.h"
#include "bvconn/platform/settings/toml_reader.h"

/// Settings files as tables, read again only when they have changed.
namespace bvconn::detail {

/// What the text of a settings file holds. Fails with 0x80041001, naming file, line and column.
toml::table parse_settings(std::string_view text, const std::string& path);

/// What a file holds; an empty table where there is none.
struct ReadTable {
  toml::table table;
  /// As long as the file has this stamp it holds this table; nothing where no stamp says so.
  std::optional<FileStamp> stamp;
};
ReadTable read_table(const std::string& path);

/// What the file of a root holds at this moment. It is read where the calling thread has not read
/// it before or its stamp is another one.
std::shared_ptr<toml::table> known_table(SettingsRoot root, const std::string& path);

/// A number for what the file of a root holds at this moment. As long as it is the same on the
/// calling thread, so is that; 0 where nothing tells whether it is.
std::uint64_t known_state(SettingsRoot root, const std::string& path);

/// Makes the calling thread read its files again.
void forget_tables();

}  // namespace bvconn::detail

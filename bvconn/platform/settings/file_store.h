#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/files.h"
#include "bvconn/platform/settings/file_stamp.h"

/// Settings files as bytes: read, locked, replaced. Errors have the source "RegistryAccess" and the
/// number 0x80041002, and name the file and the reason.
namespace bvconn::detail {

[[noreturn]] void fail_unusable(std::string_view doing, const std::string& path,
                                std::string_view reason);

/// Bytes of a settings file. A larger one is not read to its end, nor is one written.
inline constexpr std::size_t kLargestSettings = std::size_t{1} << 20;

/// What a settings file holds.
struct SettingsText {
  std::string bytes;
  /// As long as the file has this stamp it holds the same bytes; nothing where no stamp says so.
  std::optional<FileStamp> stamp;
};

/// Nothing when the file is absent. Fails with 0x80041001 for one that is too large.
std::optional<SettingsText> read_settings_file(const std::string& path);

/// The file that a path leads to in the end: symbolic links are followed, so that writing changes
/// the file that they point at and leaves them in place. Fails for a pipe, a socket or a device,
/// which a file must not take the place of.
std::string resolve_links(const std::string& path);

/// Excludes other writers, in this process and in others, for its lifetime. Fails with 0x80041004
/// when another one holds the lock for longer than `wait`.
class FileLock {
 public:
  FileLock(const std::string& path, std::chrono::milliseconds wait);

 private:
  Descriptor file_;
};

/// Replaces a file as a whole: readers see the old bytes or the new ones, also after a crash. A new
/// file is its owner's alone (0600); one that was there keeps owner and permissions.
void replace_file(const std::string& path, std::string_view bytes);

}  // namespace bvconn::detail

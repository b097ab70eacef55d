#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "bvconn/platform/file_state.h"

namespace bvconn::detail {

/// What tells one state of a file from another without reading it. The time of the last change of
/// its status is among it since, unlike that of its content, nobody can set it.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  std::int64_t content_ns = 0;  ///< since 1970
  std::int64_t status_ns = 0;

  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// Of a regular file; nothing of anything else. Links are followed.
std::optional<FileStamp> stamp_of(const std::string& path);
std::optional<FileStamp> stamp_of(const FileState& state);

/// Whether any later change of the file must give it another stamp. A file that was changed twice
/// within one step of its file system's clock has the same stamp both times, so a stamp is trusted
/// only when it is older than such a step: 100 ms, or 3 s where its times are whole seconds. The
/// longest steps in use are 10 ms and 2 s; the rest is for a file server whose clock is behind.
/// `now_ns` is from before the stamp was taken.
bool can_be_trusted(const FileStamp& stamp, std::int64_t now_ns);

/// Nanoseconds since 1970.
std::int64_t now_ns();

}  // namespace bvconn::detail

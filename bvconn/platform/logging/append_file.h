#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "bvconn/platform/file_state.h"
#include "bvconn/platform/files.h"

namespace bvconn {

/// Appends bytes to a file in one write, so that lines of several writers never mix. The file and
/// the folders of its path are made (for their owner alone) when they are missing. Fails with
/// `Error` 0x80041003, source "SessionLogger", naming the file and the reason.
///
/// A file that would grow beyond `max_bytes` is put aside first: it becomes `path.1`, in the place
/// of an older one. 0 is no bound. Where it cannot be put aside it goes on growing. Writers of
/// any number of threads and processes lose nothing over that: all that use these functions agree
/// by a lock on the file, with or without a bound of their own.
void append_to_file(const std::string& path, std::string_view bytes, std::uint64_t max_bytes = 0);

/// The same, without an error: whether the bytes were written.
bool try_append_to_file(const std::string& path, std::string_view bytes,
                        std::uint64_t max_bytes = 0);

/// A file that lines are appended to one by one, as with `try_append_to_file`; it stays open
/// between them, as long as its path leads to it.
///
/// No lock is taken for a line as a rule: a file that is put aside or removed in the very moment of
/// the write takes the line with it, as it takes all those before.
class AppendedFile {
 public:
  AppendedFile(std::string path, std::uint64_t max_bytes)
      : path_(std::move(path)), max_bytes_(max_bytes) {}

  const std::string& path() const { return path_; }
  std::uint64_t max_bytes() const { return max_bytes_; }
  /// Whether the lines were written. Several go with one write, where the file has room for all.
  bool append(std::string_view lines);

 private:
  bool append_and_keep(std::string_view line);
  std::optional<bool> append_to_open(std::string_view bytes) const;

  std::string path_;
  std::uint64_t max_bytes_;
  detail::Descriptor file_;
  detail::FileState state_;  ///< when it was opened
};

}  // namespace bvconn

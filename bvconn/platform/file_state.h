#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// What the rooms that keep files ask the system about them; not a part of the interface.
namespace bvconn::detail {

struct FileState {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  std::int64_t content_ns = 0;  ///< of its last change, since 1970
  std::int64_t status_ns = 0;   ///< of the last change of what is said of it; nobody can set it
  bool is_regular = false;

  bool is_same_file(const FileState& other) const {
    return device == other.device && inode == other.inode;
  }
};

/// Of what a path leads to, links being followed, or of an open file. Nothing where there is none:
/// `errno` says why.
std::optional<FileState> state_of(const std::string& path) noexcept;
std::optional<FileState> state_of(int file) noexcept;

/// The same but for the times, which say nothing: for a file that is written to again and again. A
/// look at them may make the next write a slow one, since from then on the system counts them
/// finer, or first brings to a server what was written.
std::optional<FileState> state_without_times_of(const std::string& path) noexcept;
std::optional<FileState> state_without_times_of(int file) noexcept;

enum class FileHold : std::uint8_t { kShared, kAlone };

/// Tries to take the lock that programs agree by; 0, or the error number: EWOULDBLOCK and EINTR
/// where it is worth another attempt. The lock goes when the file is closed.
int try_lock(int file, FileHold hold) noexcept;
void unlock(int file) noexcept;

/// The path without links; "" where it leads nowhere.
std::string real_path(const std::string& path);

/// Gives a file another name, in place of the file that has it; 0, or the error number.
int rename_file(const std::string& from, const std::string& to) noexcept;
void remove_file(const std::string& path) noexcept;

/// Brings what was written to the disk; 0, or the error number.
int flush_file(int file) noexcept;
/// The same of a folder's names. Not every file system can do that.
void flush_folder(const std::string& path) noexcept;

/// Gives an open file owner and permissions of the one at a path, if there is one; 0, or the error
/// number. Another owner can be kept by the administrator alone; anybody else's write makes the
/// file their own.
int take_over_owner(int file, const std::string& path) noexcept;

}  // namespace bvconn::detail

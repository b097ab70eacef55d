#include "bvconn/platform/file_state.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "bvconn/platform/files.h"

namespace bvconn::detail {
namespace {

std::int64_t in_ns(const struct timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

FileState state_from(const struct stat& status) {
  return {.device = status.st_dev,
          .inode = status.st_ino,
          .size = status.st_size,
          .content_ns = in_ns(status.st_mtim),
          .status_ns = in_ns(status.st_ctim),
          .is_regular = S_ISREG(status.st_mode)};
}

#ifdef STATX_BASIC_STATS
/// Nothing also where the system cannot be asked in this way: `stat` has the last word.
std::optional<FileState> asked_without_times(int folder, const char* path, int flags) noexcept {
  constexpr unsigned kWanted = STATX_TYPE | STATX_INO | STATX_SIZE;
  struct statx status {};
  if (::statx(folder, path, flags, kWanted, &status) != 0) return std::nullopt;
  if ((status.stx_mask & kWanted) != kWanted) return std::nullopt;
  return FileState{.device = makedev(status.stx_dev_major, status.stx_dev_minor),
                   .inode = status.stx_ino,
                   .size = static_cast<std::int64_t>(status.stx_size),
                   .is_regular = S_ISREG(status.stx_mode)};
}
#endif

}  // namespace

std::optional<FileState> state_of(const std::string& path) noexcept {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return state_from(status);
}

std::optional<FileState> state_of(int file) noexcept {
  struct stat status {};
  if (::fstat(file, &status) != 0) return std::nullopt;
  return state_from(status);
}

std::optional<FileState> state_without_times_of(const std::string& path) noexcept {
#ifdef STATX_BASIC_STATS
  if (const auto state = asked_without_times(AT_FDCWD, path.c_str(), 0)) return state;
#endif
  return state_of(path);
}

std::optional<FileState> state_without_times_of(int file) noexcept {
#ifdef STATX_BASIC_STATS
  if (const auto state = asked_without_times(file, "", AT_EMPTY_PATH)) return state;
#endif
  return state_of(file);
}

int try_lock(int file, FileHold hold) noexcept {
  return ::flock(file, (hold == FileHold::kAlone ? LOCK_EX : LOCK_SH) | LOCK_NB) == 0 ? 0 : errno;
}

void unlock(int file) noexcept {
  ::flock(file, LOCK_UN);
}

std::string real_path(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), &std::free);
  return real == nullptr ? "" : real.get();
}

int rename_file(const std::string& from, const std::string& to) noexcept {
  return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

void remove_file(const std::string& path) noexcept {
  ::unlink(path.c_str());
}

int flush_file(int file) noexcept {
  return ::fsync(file) == 0 ? 0 : errno;
}

void flush_folder(const std::string& path) noexcept {
  const Descriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOCTTY));
  if (folder) ::fsync(folder.get());
}

int take_over_owner(int file, const std::string& path) noexcept {
  struct stat old {};
  if (::stat(path.c_str(), &old) != 0) return 0;
  if (::fchown(file, old.st_uid, old.st_gid) != 0 && errno != EPERM) return errno;
  return ::fchmod(file, old.st_mode & 0777U) == 0 ? 0 : errno;
}

}  // namespace bvconn::detail

#include "bvconn/platform/file_state.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
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
          .links = status.st_nlink,
          .size = status.st_size,
          .content_ns = in_ns(status.st_mtim),
          .status_ns = in_ns(status.st_ctim),
          .is_regular = S_ISREG(status.st_mode)};
}

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

#include "file_tail.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace bvconn::tool {
namespace {

constexpr int kOwnerOnly = 0600;

/// Closes the file with this object.
struct OpenFile {
  explicit OpenFile(int opened) : file(opened) {}
  ~OpenFile() {
    if (file >= 0) ::close(file);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  int file;
};

/// The error number, or 0.
int write_whole(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(file, text.data(), text.size());
    if (written < 0 && errno != EINTR) return errno;
    if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

}  // namespace

FileTail file_tail(const std::string& path, std::size_t size_max) {
  const OpenFile opened(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  if (opened.file < 0) return {.text{}, .trouble = std::strerror(errno)};
  struct stat state {};
  if (::fstat(opened.file, &state) != 0 || !S_ISREG(state.st_mode)) {
    return {.text{}, .trouble = "it is no regular file"};
  }
  const off_t size = state.st_size;
  const off_t begin = std::max<off_t>(0, size - static_cast<off_t>(size_max));
  FileTail tail;
  std::array<char, 65536> block{};
  for (off_t at = begin; at < size;) {
    const auto wanted = std::min<std::size_t>(block.size(), static_cast<std::size_t>(size - at));
    const ssize_t got = ::pread(opened.file, block.data(), wanted, at);
    if (got <= 0) break;
    tail.text.append(block.data(), static_cast<std::size_t>(got));
    at += got;
  }
  if (begin > 0) tail.text.erase(0, std::min(tail.text.find('\n'), tail.text.size() - 1) + 1);
  return tail;
}

std::string write_private_file(const std::string& path, std::string_view text) {
  int code = 0;
  if (path == "-") {
    code = write_whole(STDOUT_FILENO, text);
  } else {
    constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    const OpenFile opened(::open(path.c_str(), kFlags, kOwnerOnly));
    struct stat state {};
    if (opened.file < 0) {
      code = errno;
    } else if (::fstat(opened.file, &state) == 0 && S_ISREG(state.st_mode) &&
               ::fchmod(opened.file, kOwnerOnly) != 0) {
      code = errno;
    } else {
      code = write_whole(opened.file, text);
    }
  }
  return code == 0 ? "" : std::strerror(code);
}

}  // namespace bvconn::tool

#include "bvconn/platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

namespace bvconn::detail {

namespace {

/// The code of what is there but no file; the system has none that says so.
constexpr int kNoFile = -1;

/// 0, or why the descriptor is none that files are kept in. Asked of what is open already: a name
/// could lead elsewhere by the time that it is opened.
int refusal_of(int file) {
  // Linux gives this device the same numbers everywhere.
  constexpr unsigned kMemoryDevices = 1;
  constexpr unsigned kNullDevice = 3;
  struct stat status {};
  if (::fstat(file, &status) != 0) return errno;
  if (S_ISREG(status.st_mode)) return 0;
  if (S_ISDIR(status.st_mode)) return EISDIR;
  const bool is_null =
      S_ISCHR(status.st_mode) && status.st_rdev == makedev(kMemoryDevices, kNullDevice);
  return is_null ? 0 : kNoFile;
}

}  // namespace

OpenedFile open_file(const std::string& path, int flags) {
  Descriptor file(::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0600));
  // ENXIO: a pipe that nobody reads, or a socket.
  const int code = file ? refusal_of(file.get()) : errno == ENXIO ? kNoFile : errno;
  return {.file = code == 0 ? std::move(file) : Descriptor(), .code = code};
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::string user_file(UserFolder kind, std::string_view name) {
  const bool is_state = kind == UserFolder::kState;
  std::string folder = environment(is_state ? "XDG_STATE_HOME" : "XDG_CONFIG_HOME");
  // A relative folder there would mean another one in each working directory.
  if (!folder.starts_with('/')) {
    folder = environment("HOME");
    if (folder.empty()) {
      return "";
    }
    folder.append("/").append(is_state ? ".local/state" : ".config");
  }
  return folder.append("/").append(name);
}

std::string machine_file(std::string_view name) {
  return std::string("/etc/").append(name);
}

bool make_folders_of(const std::string& path) {
  bool there = true;
  for (std::size_t end = path.find('/', 1); end != std::string::npos;
       end = path.find('/', end + 1)) {
    const std::string folder = path.substr(0, end);
    there = ::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST;
  }
  return there;
}

std::ptrdiff_t read_some(int file, char* to, std::size_t size) noexcept {
  return ::read(file, to, size);
}

int write_all(int file, std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

std::string system_message(int code) {
  if (code == kNoFile) return "It is neither a regular file nor /dev/null";
  return std::generic_category().message(code);
}

}  // namespace bvconn::detail

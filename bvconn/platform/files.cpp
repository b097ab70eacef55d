#include "bvconn/platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

namespace bvconn::detail {

Descriptor::Descriptor(Descriptor&& other) noexcept : file_(std::exchange(other.file_, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  if (this != &other) {
    close();
    file_ = std::exchange(other.file_, -1);
  }
  return *this;
}

Descriptor::~Descriptor() {
  close();
}

int Descriptor::close() noexcept {
  const int file = std::exchange(file_, -1);
  return file >= 0 && ::close(file) != 0 ? errno : 0;
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::string user_file(const char* variable, std::string_view fallback, std::string_view name) {
  std::string folder = environment(variable);
  // A relative folder there would mean another one in each working directory.
  if (!folder.starts_with('/')) {
    folder = environment("HOME");
    if (folder.empty()) {
      return "";
    }
    folder.append("/").append(fallback);
  }
  return folder.append("/").append(name);
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
  return std::generic_category().message(code);
}

}  // namespace bvconn::detail

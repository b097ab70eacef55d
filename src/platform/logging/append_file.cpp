#include "bvconn/platform/logging/append_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn {
namespace {

[[noreturn]] void fail(const std::string& path, const char* doing, int code) {
  throw Error(error_numbers::kLogFile, "SessionLogger",
              std::string("cannot ") + doing + " the log file \"" + path +
                  "\": " + std::generic_category().message(code));
}

}  // namespace

void append_to_file(const std::string& path, std::string_view bytes) {
  const int file = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
  if (file < 0) fail(path, "open", errno);
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) {
      const int code = errno;
      ::close(file);
      fail(path, "write", code);
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  ::close(file);
}

}  // namespace bvconn

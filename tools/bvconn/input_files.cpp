#include "input_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "status.h"

namespace bvconn::tool {
namespace {

[[noreturn]] void fail(const std::string& name, int code) {
  const std::string shown = name == "-" ? "standard input" : name;
  throw UsageError("cannot read " + shown + ": " + std::generic_category().message(code));
}

std::string read_all(int file, const std::string& name) {
  std::string text;
  std::array<char, 65536> block;
  while (true) {
    const ssize_t got = ::read(file, block.data(), block.size());
    if (got == 0) return text;
    if (got > 0) {
      text.append(block.data(), static_cast<std::size_t>(got));
    } else if (errno != EINTR) {
      fail(name, errno);
    }
  }
}

}  // namespace

std::string read_input(const std::string& name) {
  if (name == "-") return read_all(STDIN_FILENO, name);
  struct File {
    int number;
    ~File() {
      if (number >= 0) ::close(number);
    }
  };
  const File file{::open(name.c_str(), O_RDONLY | O_CLOEXEC)};
  if (file.number < 0) fail(name, errno);
  return read_all(file.number, name);
}

std::string without_line_end(std::string text) {
  if (text.ends_with('\n')) text.pop_back();
  if (text.ends_with('\r')) text.pop_back();
  return text;
}

}  // namespace bvconn::tool

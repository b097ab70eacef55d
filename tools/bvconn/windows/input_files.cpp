#include "input_files.h"

#include <fcntl.h>

#include <array>
#include <cerrno>

#include "bvconn/platform/files.h"
#include "status.h"

namespace bvconn::tool {
namespace {

[[noreturn]] void fail(const std::string& name, int code) {
  const std::string shown = name == "-" ? "standard input" : name;
  throw UsageError("cannot read " + shown + ": " + detail::system_message(code));
}

std::string read_all(int file, const std::string& name) {
  std::string text;
  std::array<char, 65536> block;
  while (true) {
    const std::ptrdiff_t got = detail::read_some(file, block.data(), block.size());
    if (got < 0) fail(name, errno);
    if (got == 0) return text;
    text.append(block.data(), static_cast<std::size_t>(got));
  }
}

}  // namespace

std::string read_input(const std::string& name) {
  if (name == "-") return read_all(0, name);
  const detail::OpenedFile opened = detail::open_file(name, O_RDONLY);
  if (opened.code != 0) fail(name, opened.code);
  return read_all(opened.file.get(), name);
}

std::string without_line_end(std::string text) {
  if (text.ends_with('\n')) text.pop_back();
  if (text.ends_with('\r')) text.pop_back();
  return text;
}

}  // namespace bvconn::tool

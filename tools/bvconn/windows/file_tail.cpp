#include "file_tail.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "bvconn/platform/file_state.h"
#include "bvconn/platform/files.h"

namespace bvconn::tool {

FileTail file_tail(const std::string& path, std::size_t size_max) {
  const detail::OpenedFile opened = detail::open_file(path, O_RDONLY);
  if (opened.code != 0) return {.text{}, .trouble = detail::system_message(opened.code)};
  const auto state = detail::state_of(opened.file.get());
  if (!state || !state->is_regular) return {.text{}, .trouble = "it is no regular file"};
  // Its beginning is read and let go of, which is quick enough for a log that has a bound.
  FileTail tail;
  bool is_whole = true;
  std::array<char, 65536> block{};
  while (true) {
    const std::ptrdiff_t got = detail::read_some(opened.file.get(), block.data(), block.size());
    if (got <= 0) break;
    tail.text.append(block.data(), static_cast<std::size_t>(got));
    if (tail.text.size() <= size_max) continue;
    tail.text.erase(0, tail.text.size() - size_max);
    is_whole = false;
  }
  if (!is_whole) tail.text.erase(0, std::min(tail.text.find('\n'), tail.text.size() - 1) + 1);
  return tail;
}

std::string write_private_file(const std::string& path, std::string_view text) {
  if (path == "-") {
    const int code = detail::write_all(1, text);
    return code == 0 ? "" : detail::system_message(code);
  }
  const detail::OpenedFile opened = detail::open_file(path, O_WRONLY | O_CREAT | O_TRUNC);
  const int code = opened.code != 0 ? opened.code : detail::write_all(opened.file.get(), text);
  return code == 0 ? "" : detail::system_message(code);
}

}  // namespace bvconn::tool

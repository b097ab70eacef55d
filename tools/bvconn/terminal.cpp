#include "terminal.h"

#include <unistd.h>

#include <cstdlib>

namespace bvconn::tool {

Terminal Terminal::of(int file) {
  Terminal terminal;
  terminal.is_terminal = ::isatty(file) == 1;
  const char* refusal = std::getenv("NO_COLOR");
  const char* kind = std::getenv("TERM");
  terminal.has_colours = terminal.is_terminal && (refusal == nullptr || *refusal == '\0') &&
                         kind != nullptr && std::string_view(kind) != "dumb";
  return terminal;
}

std::string Terminal::painted(std::string_view code, std::string_view text) const {
  if (!has_colours) return std::string(text);
  std::string result = "\x1b[";
  return result.append(code).append("m").append(text).append("\x1b[0m");
}

}  // namespace bvconn::tool

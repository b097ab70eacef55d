#include "bvconn/platform/logging/append_file.h"

#include <fcntl.h>

#include <cerrno>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/files.h"

namespace bvconn {
namespace {

detail::OpenedFile open_for_appending(const std::string& path) {
  return detail::open_file(path, O_WRONLY | O_APPEND | O_CREAT);
}

struct Appended {
  const char* step = "";
  int code = 0;
};

Appended append(const std::string& path, std::string_view bytes) {
  detail::OpenedFile opened = open_for_appending(path);
  // The folders are looked at only when something is missing: a line costs four calls as a rule.
  if (opened.code == ENOENT && detail::make_folders_of(path)) {
    opened = open_for_appending(path);
  }
  if (!opened.file) {
    return {"open", opened.code};
  }
  return {"write", detail::write_all(opened.file.get(), bytes)};
}

}  // namespace

void append_to_file(const std::string& path, std::string_view bytes) {
  const Appended appended = append(path, bytes);
  if (appended.code != 0) {
    throw Error(error_numbers::kLogFile, "SessionLogger",
                std::string("Cannot ") + appended.step + " the log file \"" + path +
                    "\": " + detail::system_message(appended.code));
  }
}

bool try_append_to_file(const std::string& path, std::string_view bytes) {
  return append(path, bytes).code == 0;
}

}  // namespace bvconn

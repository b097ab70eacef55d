#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "lasting/mark.h"

namespace bvconn::test {

/// Lines of a log, without what differs from call to call: time, thread, numbers, and of errors
/// the words.
using LogLines = std::vector<std::string>;
std::string text_of(const LogLines& lines);

/// The new lines of a log that only one thread writes to.
class LogWatch {
 public:
  explicit LogWatch(std::filesystem::path path) : path_(std::move(path)) {}
  LogLines new_lines();

 private:
  std::filesystem::path path_;
  std::streamoff seen_ = 0;
};

/// The system's number of the calling thread, which stands in its lines.
long system_thread_number();
/// Writes a line that ends what the log has of a call.
void mark_log(std::string_view mark);

struct LoggedCall {
  LogLines lines;
  std::vector<Mark> marks;  ///< that stand in them
  std::string mark;         ///< what `mark_log` was given
};

struct LogByThread {
  std::map<long, std::vector<LoggedCall>> threads;
  std::vector<std::string> broken;  ///< the first lines that are not whole
};
LogByThread read_log(const std::filesystem::path& path);

}  // namespace bvconn::test

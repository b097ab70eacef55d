#include "lasting/log_watch.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <optional>
#include <utility>

#include "bvconn/core/session_state.h"

namespace bvconn::test {
namespace {

constexpr std::string_view kMarkLine = "INFO Storm call ";

/// A line in its parts: "time [thread] rest".
struct Parts {
  long thread = 0;
  std::string_view rest;
};

std::optional<Parts> parts_of(std::string_view line) {
  constexpr std::string_view kOfTime = "0123456789-T:.+";
  const std::size_t open = line.find(" [");
  const std::size_t close = line.find("] ");
  constexpr std::size_t kTimeSize = std::string_view("2007-01-05T10:11:12.250+0100").size();
  if (open != kTimeSize || close == std::string_view::npos) return std::nullopt;
  if (line.find_first_not_of(kOfTime) < open) return std::nullopt;
  const std::string thread(line.substr(open + 2, close - open - 2));
  if (thread.empty() || thread.find_first_not_of("0123456789") != std::string::npos) {
    return std::nullopt;
  }
  return Parts{.thread = std::stol(thread), .rest = line.substr(close + 2)};
}

/// Numbers become "0".
std::string without_numbers(std::string_view text) {
  std::string common;
  for (const char c : text) {
    const bool numeric = (c >= '0' && c <= '9') || c == '.';
    if (!numeric) common += c;
    if (numeric && (common.empty() || common.back() != '0')) common += '0';
  }
  return common;
}

/// What is left of an error is its number: its words tell how far an exchange came.
std::string in_common(std::string_view rest) {
  constexpr std::string_view kNumber = " 0x80044201";
  const std::size_t number = rest.starts_with("ERROR ") ? rest.find(" 0x") : rest.size();
  std::string common = without_numbers(rest.substr(0, number));
  if (number < rest.size()) common.append(rest.substr(number, kNumber.size()));
  return common;
}

/// What an operation writes to the log on its own: "Name - text", with the text of a request.
bool is_own_line(std::string_view line) {
  const std::size_t end = line.find(" - <");
  if (end == std::string_view::npos || !line.ends_with(">\r")) return false;
  const std::vector<Mark> marks = marks_in(line);
  return std::all_of(marks.begin(), marks.end(),
                     [&](const Mark& each) { return each == marks.front(); });
}

}  // namespace

std::string text_of(const LogLines& lines) {
  std::string text;
  for (const std::string& line : lines) text.append(line).append("\n");
  return text;
}

LogLines LogWatch::new_lines() {
  LogLines lines;
  std::ifstream file(path_, std::ios::binary);
  file.seekg(seen_);
  for (std::string line; std::getline(file, line);) {
    seen_ += static_cast<std::streamoff>(line.size()) + 1;
    if (const auto parts = parts_of(line)) lines.push_back(in_common(parts->rest));
  }
  return lines;
}

long system_thread_number() {
  return ::gettid();
}

void mark_log(std::string_view mark) {
  session().Logger().LogInfo("Storm", "call", mark, 0);
}

LogByThread read_log(const std::filesystem::path& path) {
  LogByThread log;
  std::map<long, LoggedCall> open;
  std::ifstream file(path, std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    const auto parts = parts_of(line);
    if (!parts) {
      if (!is_own_line(line) && log.broken.size() < 5) log.broken.push_back(line);
      continue;
    }
    LoggedCall& call = open[parts->thread];
    if (parts->rest.starts_with(kMarkLine)) {
      call.mark = parts->rest.substr(kMarkLine.size());
      log.threads[parts->thread].push_back(std::exchange(call, {}));
      continue;
    }
    const std::vector<Mark> marks = marks_in(parts->rest);
    call.marks.insert(call.marks.end(), marks.begin(), marks.end());
    call.lines.push_back(in_common(parts->rest));
  }
  return log;
}

}  // namespace bvconn::test

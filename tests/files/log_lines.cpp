#include "bvconn/platform/logging/append_file.h"
#include "files/log_processes.h"

namespace bvconn::files_test {

std::string line_of(int process, int number) {
  const auto length = static_cast<std::size_t>(number % 50 == 0 ? 5000 : 20 + number % 30);
  return std::to_string(process) + " " + std::to_string(number) + " " +
         std::string(length, static_cast<char>('a' + process)) + "\n";
}

bool write_lines(int process, const std::string& path, std::uint64_t max_bytes) {
  for (int number = 0; number < kLinesOfEach; ++number) {
    if (!try_append_to_file(path, line_of(process, number), max_bytes)) return false;
  }
  return true;
}

}  // namespace bvconn::files_test

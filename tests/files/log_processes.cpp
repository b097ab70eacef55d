#include "files/log_processes.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace bvconn::files_test {

void write_from_processes(const std::string& path, std::uint64_t max_bytes) {
  std::array<pid_t, kProcesses> children{};
  for (int process = 0; process < kProcesses; ++process) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) ::_exit(write_lines(process, path, max_bytes) ? 0 : 1);
    children[static_cast<std::size_t>(process)] = child;
  }
  for (const pid_t child : children) {
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "a line was not written";
  }
}

}  // namespace bvconn::files_test

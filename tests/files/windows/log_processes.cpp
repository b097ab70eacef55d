#include "files/log_processes.h"

#include <gtest/gtest.h>
#include <process.h>

#include <array>
#include <cstdlib>
#include <sstream>

#include "files/temp_folder.h"

namespace bvconn::files_test {
namespace {

constexpr const char* kTask = "BVCONN_TEST_LOG_TASK";

}  // namespace

// The work of one of the processes: this program again, with this test alone.
TEST(LogOfFourProcesses, DISABLED_WritesTheLinesOfOne) {
  const char* const task = std::getenv(kTask);
  ASSERT_NE(task, nullptr);
  std::istringstream words(task);
  int process = -1;
  std::uint64_t max_bytes = 0;
  std::string path;
  words >> process >> max_bytes >> std::ws;
  std::getline(words, path);
  EXPECT_TRUE(write_lines(process, path, max_bytes)) << "a line was not written";
}

void write_from_processes(const std::string& path, std::uint64_t max_bytes) {
  std::array<std::intptr_t, kProcesses> children{};
  for (int process = 0; process < kProcesses; ++process) {
    const ScopedEnvironment task(
        kTask, std::to_string(process) + " " + std::to_string(max_bytes) + " " + path);
    const std::intptr_t child =
        ::_spawnl(_P_NOWAIT, _pgmptr, "writer", "--gtest_also_run_disabled_tests",
                  "--gtest_filter=LogOfFourProcesses.DISABLED_WritesTheLinesOfOne", nullptr);
    ASSERT_NE(child, -1);
    children[static_cast<std::size_t>(process)] = child;
  }
  for (const std::intptr_t child : children) {
    int status = -1;
    ASSERT_EQ(::_cwait(&status, child, 0), child);
    EXPECT_EQ(status, 0) << "a line was not written";
  }
}

}  // namespace bvconn::files_test

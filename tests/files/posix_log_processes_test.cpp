#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "bvconn/platform/logging/append_file.h"
#include "files/temp_folder.h"

namespace bvconn {
namespace {

using files_test::bytes_of;
using files_test::exists;
using files_test::lines_of;
using files_test::TempFolder;

constexpr int kProcesses = 4;
constexpr int kLinesOfEach = 3000;

/// Each process writes its numbered lines, the long ones a page and more.
void write_from_processes(const std::string& path, std::uint64_t max_bytes) {
  std::array<pid_t, kProcesses> children{};
  for (int process = 0; process < kProcesses; ++process) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      for (int i = 0; i < kLinesOfEach; ++i) {
        const auto length = static_cast<std::size_t>(i % 50 == 0 ? 5000 : 20 + i % 30);
        const std::string line = std::to_string(process) + " " + std::to_string(i) + " " +
                                 std::string(length, static_cast<char>('a' + process)) + "\n";
        if (!try_append_to_file(path, line, max_bytes)) ::_exit(1);
      }
      ::_exit(0);
    }
    children[static_cast<std::size_t>(process)] = child;
  }
  for (const pid_t child : children) {
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "a line was not written";
  }
}

/// The numbers of the lines of each process, in the order of the files; torn ones are failures.
std::array<std::vector<int>, kProcesses> numbers_in(const std::vector<std::string>& files) {
  std::array<std::vector<int>, kProcesses> numbers;
  for (const std::string& file : files) {
    for (const std::string& line : lines_of(file)) {
      const auto process = static_cast<std::size_t>(line.at(0) - '0');
      const std::size_t text = line.find(' ', 2) + 1;
      const int number = process < kProcesses && text > 2 ? std::stoi(line.substr(2)) : -1;
      if (number < 0) {
        ADD_FAILURE() << "torn: " << line.substr(0, 80);
        continue;
      }
      const auto length = static_cast<std::size_t>(number % 50 == 0 ? 5000 : 20 + number % 30);
      EXPECT_EQ(line.substr(text), std::string(length, static_cast<char>('a' + process)));
      numbers[process].push_back(number);
    }
  }
  return numbers;
}

TEST(LogOfFourProcesses, HasEveryLineWholeAndInOrderWithoutABound) {
  const TempFolder folder;
  const std::string path = folder.file("a.log");
  write_from_processes(path, 0);
  EXPECT_FALSE(exists(path + ".1"));
  for (const auto& numbers : numbers_in({path})) {
    ASSERT_EQ(numbers.size(), static_cast<std::size_t>(kLinesOfEach));
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
  }
}

TEST(LogOfFourProcesses, HasEveryLineInTheTwoFilesWhereOneWasPutAside) {
  const TempFolder folder;
  const std::string path = folder.file("a.log");
  // All together write about 1.7 MB: one file is put aside, and a second one is not needed.
  write_from_processes(path, 1'200'000);
  EXPECT_TRUE(exists(path + ".1"));
  for (const auto& numbers : numbers_in({path + ".1", path})) {
    ASSERT_EQ(numbers.size(), static_cast<std::size_t>(kLinesOfEach));
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
  }
}

TEST(LogOfFourProcesses, LosesNothingButWhatWasPutAsideTwice) {
  const TempFolder folder;
  const std::string path = folder.file("a.log");
  write_from_processes(path, 30'000);
  EXPECT_GT(bytes_of(path + ".1").size(), 15'000U);
  // A few lines more may come in while several writers see that there is room for one.
  EXPECT_LT(bytes_of(path + ".1").size(), 60'000U);
  int seen = 0;
  for (const auto& numbers : numbers_in({path + ".1", path})) {
    // What is there of a process is the end of what it wrote, without a gap.
    for (std::size_t i = 1; i < numbers.size(); ++i) {
      ASSERT_EQ(numbers[i], numbers[i - 1] + 1);
    }
    if (!numbers.empty()) {
      EXPECT_EQ(numbers.back(), kLinesOfEach - 1);
      ++seen;
    }
  }
  EXPECT_GE(seen, 1);
}

}  // namespace
}  // namespace bvconn

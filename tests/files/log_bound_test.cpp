#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "bvconn/platform/error.h"
#include "bvconn/platform/file_state.h"
#include "bvconn/platform/files.h"
#include "bvconn/platform/logging/append_file.h"
#include "bvconn/platform/logging/own_logger.h"
#include "bvconn/platform/logging/session_logger.h"
#include "files/log_processes.h"
#include "files/temp_folder.h"

namespace bvconn {
namespace {

using files_test::bytes_of;
using files_test::exists;
using files_test::kLinesOfEach;
using files_test::kProcesses;
using files_test::lines_of;
using files_test::put_bytes;
using files_test::ScopedEnvironment;
using files_test::TempFolder;
using files_test::write_from_processes;
using testing::ElementsAre;

std::uint64_t bound_from(const char* text) {
  const ScopedEnvironment bound("BVCONN_LOG_MAX_BYTES", text);
  return make_file_logger()->LogMaxBytes();
}

TEST(LogBound, Is64MiBWhereNobodySaysOtherwise) {
  EXPECT_EQ(bound_from(nullptr), 67'108'864U);
  EXPECT_EQ(bound_from(""), 67'108'864U);
}

TEST(LogBound, IsTheNumberOfBytesInTheVariable) {
  EXPECT_EQ(bound_from("1000"), 1000U);
  EXPECT_EQ(bound_from("0"), 0U);
  EXPECT_EQ(bound_from("18446744073709551615"), 18'446'744'073'709'551'615U);
}

TEST(LogBound, IsTheUsualOneWhereTheVariableIsNoNumber) {
  for (const char* text : {"64M", "-1", " 5", "5 ", "0x10", "many", "18446744073709551616"}) {
    EXPECT_EQ(bound_from(text), 67'108'864U) << text;
  }
}

TEST(LogBound, PutsAFileAsideThatWouldGrowBeyondIt) {
  const TempFolder folder;
  const std::string path = folder.file("a.log");
  append_to_file(path, "12345\n", 12);
  append_to_file(path, "1234\n\n", 12);
  EXPECT_FALSE(exists(path + ".1")) << "12 bytes are not beyond 12";
  append_to_file(path, "x\n", 12);
  EXPECT_EQ(bytes_of(path + ".1"), "12345\n1234\n\n");
  EXPECT_EQ(bytes_of(path), "x\n");
}

TEST(LogBound, KeepsOneOlderFile) {
  const TempFolder folder;
  const std::string path = folder.file("a.log");
  for (const char* line : {"one\n", "two\n", "three\n"}) append_to_file(path, line, 4);
  EXPECT_EQ(bytes_of(path), "three\n");
  EXPECT_EQ(bytes_of(path + ".1"), "two\n");
  EXPECT_FALSE(exists(path + ".2"));
}

TEST(LogBound, OfZeroLetsAFileGrow) {
  const TempFolder folder;
  const std::string path = folder.file("a.log");
  for (int i = 0; i < 10; ++i) append_to_file(path, "123456789\n", 0);
  EXPECT_EQ(bytes_of(path).size(), 100U);
  EXPECT_FALSE(exists(path + ".1"));
}

TEST(LogBound, ALineThatIsLongerStandsAlone) {
  const TempFolder folder;
  const std::string path = folder.file("a.log");
  append_to_file(path, "a line of some length\n", 4);
  EXPECT_EQ(bytes_of(path), "a line of some length\n");
  EXPECT_FALSE(exists(path + ".1")) << "an empty file was put aside";
}

TEST(LogBound, GoesWhereTheFileCannotBePutAside) {
  const TempFolder folder;
  const std::string path = folder.file("a.log");
  std::filesystem::create_directory(path + ".1");
  put_bytes(path + ".1/in the way", "x");
  EXPECT_TRUE(try_append_to_file(path, "one\n", 4));
  EXPECT_TRUE(try_append_to_file(path, "two\n", 4));
  EXPECT_EQ(bytes_of(path), "one\ntwo\n");
}

TEST(LogBound, LeavesTheNullDeviceAlone) {
  EXPECT_TRUE(try_append_to_file("/dev/null", "a line\n", 4));
  EXPECT_TRUE(try_append_to_file("/dev/null", "a line\n", 4));
  EXPECT_FALSE(exists("/dev/null.1"));
}

TEST(LogBound, IsNoReasonToWaitForAWriterThatWasStopped) {
  const TempFolder folder;
  const std::string path = folder.file("a.log");
  append_to_file(path, "one\n", 4);
  const detail::OpenedFile stopped = detail::open_file(path, O_RDONLY);
  ASSERT_EQ(detail::try_lock(stopped.file.get(), detail::FileHold::kAlone), 0);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(try_append_to_file(path, "two\n", 4));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_EQ(bytes_of(path), "one\ntwo\n");
}

TEST(LogBound, HoldsForTheLinesOfTheLogger) {
  const TempFolder folder;
  const ScopedEnvironment file("BVCONN_LOG_FILE", folder.file("a.log"));
  const ScopedEnvironment bound("BVCONN_LOG_MAX_BYTES", "300");
  const auto log = make_file_logger();
  for (int i = 0; i < 12; ++i) log->LogWarning("Class", "method", "text", 0);
  EXPECT_TRUE(exists(folder.file("a.log.1")));
  EXPECT_LE(bytes_of(folder.file("a.log")).size(), 300U);
  EXPECT_LE(bytes_of(folder.file("a.log.1")).size(), 300U);
}

TEST(LogBound, HoldsForLinesThatAreWrittenTogether) {
  const TempFolder folder;
  const ScopedEnvironment file("BVCONN_LOG_FILE", folder.file("a.log"));
  const ScopedEnvironment bound("BVCONN_LOG_MAX_BYTES", "300");
  const auto log = make_file_logger();
  log->LogWarning("Class", "method", "text", 0);
  auto& own = dynamic_cast<detail::OwnLogger&>(*log);
  own.hold_errors();
  for (int i = 0; i < 4; ++i) log->LogError("Class", "method", Error(i, "S", "text"), 0);
  own.release_errors();
  // Some 75 bytes each: there is room for four.
  EXPECT_LE(bytes_of(folder.file("a.log.1")).size(), 300U);
  EXPECT_EQ(lines_of(folder.file("a.log.1")).size(), 4U);
  EXPECT_EQ(lines_of(folder.file("a.log")).size(), 1U);
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
      EXPECT_EQ(line + "\n", files_test::line_of(static_cast<int>(process), number));
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

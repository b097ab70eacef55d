#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "bvconn/platform/logging/append_file.h"
#include "files/logger_fixture.h"

// What a log has on a system of this kind alone: links, permissions, pipes, folders of the
// environment; and what wine's Windows, where the other tests run too, has not: lines that several
// writers append at the same time are all there, and a file is gone once it is removed.
namespace bvconn {
namespace {

using files_test::bytes_of;
using files_test::FileLogger;
using files_test::lines_of;
using files_test::mode_of;
using files_test::pipe_at;
using files_test::ScopedEnvironment;
using files_test::TempFolder;
using testing::ElementsAre;

TEST(LogBound, MovesTheFileAndNotTheLinkToIt) {
  const TempFolder folder;
  const std::string path = folder.file("link.log");
  std::filesystem::create_symlink(folder.file("real.log"), path);
  append_to_file(path, "one\n", 4);
  append_to_file(path, "two\n", 4);
  EXPECT_TRUE(std::filesystem::is_symlink(path));
  EXPECT_EQ(bytes_of(folder.file("real.log")), "two\n");
  EXPECT_EQ(bytes_of(folder.file("real.log.1")), "one\n");
}

TEST_F(FileLogger, WritesTimeThreadKindClassMethodAndText) {
  logger("8")->LogInfo("ClassA", "methodB()", "some text", 0);
  const std::vector<std::string> all = lines_of(path());
  ASSERT_EQ(all.size(), 1U);
  const std::string thread = std::to_string(::gettid());
  EXPECT_TRUE(std::regex_match(
      all[0], std::regex("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}[+-]\\d{4} \\[" +
                         thread + "\\] INFO ClassA methodB\\(\\) some text")))
      << all[0];
}

TEST_F(FileLogger, ALineOfANewProcessBearsTheNumberOfItsOwnThread) {
  const auto log = logger("8");
  log->LogInfo("C", "m", "before", 0);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    log->LogInfo("C", "m", "in the child", 0);
    ::_exit(0);
  }
  ASSERT_EQ(::waitpid(child, nullptr, 0), child);
  log->LogInfo("C", "m", "after", 0);
  const std::vector<std::string> all = lines_of(path());
  ASSERT_EQ(all.size(), 3U);
  const std::string own = "[" + std::to_string(::gettid()) + "]";
  EXPECT_NE(all[0].find(own), std::string::npos) << all[0];
  EXPECT_NE(all[1].find("[" + std::to_string(child) + "] INFO C m in the child"), std::string::npos)
      << all[1];
  EXPECT_NE(all[2].find(own), std::string::npos) << all[2];
}

TEST_F(FileLogger, LinesOfTwoThreadsThroughOneLoggerBearTheirNumbers) {
  const auto log = logger("8");
  log->LogInfo("C", "m", "first", 0);
  pid_t other_number = 0;
  std::thread([&] {
    other_number = ::gettid();
    log->LogInfo("C", "m", "other", 0);
  }).join();
  const std::vector<std::string> all = lines_of(path());
  ASSERT_EQ(all.size(), 2U);
  EXPECT_NE(all[0].find("[" + std::to_string(::gettid()) + "]"), std::string::npos) << all[0];
  EXPECT_NE(all[1].find("[" + std::to_string(other_number) + "]"), std::string::npos) << all[1];
}

TEST_F(FileLogger, FileAndFoldersAreTheOwnersAlone) {
  logger("0")->LogWarning("C", "m", "text", 0);
  EXPECT_EQ(mode_of(folder_.file("logs")), 0700U);
  EXPECT_EQ(mode_of(folder_.file("logs/deep")), 0700U);
  EXPECT_EQ(mode_of(path()), 0600U);
}

TEST_F(FileLogger, WithoutVariablesTheFilesLieInTheUsersStateFolder) {
  const ScopedEnvironment log("BVCONN_LOG_FILE", nullptr);
  const ScopedEnvironment trace("BVCONN_TRACE_FILE", "");
  const ScopedEnvironment home("HOME", folder_.file("home"));
  {
    const ScopedEnvironment state("XDG_STATE_HOME", folder_.file("state"));
    EXPECT_EQ(make_file_logger()->LogFilePath(), folder_.file("state/bvconn/bvconn.log"));
    EXPECT_EQ(make_file_logger()->TracingFilePath(), folder_.file("state/bvconn/traffic.log"));
  }
  const ScopedEnvironment no_state("XDG_STATE_HOME", nullptr);
  EXPECT_EQ(make_file_logger()->LogFilePath(), folder_.file("home/.local/state/bvconn/bvconn.log"));
  EXPECT_EQ(make_file_logger()->TracingFilePath(),
            folder_.file("home/.local/state/bvconn/traffic.log"));
}

TEST_F(FileLogger, APipeThatNobodyReadsHoldsUpNoLine) {
  const ScopedEnvironment pipe("BVCONN_LOG_FILE", pipe_at(folder_.file("bvconn.log")));
  const auto log = make_file_logger();
  EXPECT_NO_THROW(log->LogWarning("C", "m", "text", 0));
}

TEST_F(FileLogger, AUserWithoutAHomeHasASilentLog) {
  const ScopedEnvironment log_file("BVCONN_LOG_FILE", nullptr);
  const ScopedEnvironment state("XDG_STATE_HOME", nullptr);
  const ScopedEnvironment home("HOME", nullptr);
  const auto log = make_file_logger();
  EXPECT_NO_THROW(log->LogWarning("C", "m", "text", 0));
  EXPECT_EQ(log->LogFilePath(), "");
}

TEST_F(FileLogger, ATimeHasTheZoneInForce) {
  const auto log = logger("8");
  {
    const ScopedEnvironment zone("TZ", "XST-05:30");
    log->LogInfo("C", "m", "one", 0);
  }
  {
    const ScopedEnvironment zone("TZ", "YST+08:15");
    log->LogInfo("C", "m", "two", 0);
  }
  const auto all = lines_of(path());
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].substr(23, 6), "+0530 ");
  EXPECT_EQ(all[1].substr(23, 6), "-0815 ");
}

TEST_F(FileLogger, LoggersOfTwoThreadsWriteWholeLinesToOneFile) {
  constexpr int kLines = 400;
  const auto first = logger("8");
  const auto second = logger("8");
  const auto write = [](const std::shared_ptr<SessionLogger>& log, char letter) {
    for (int i = 0; i < kLines; ++i) {
      log->LogInfo("C", "m", std::string(5000, letter), 0);
    }
  };
  std::thread other(write, second, 'b');
  write(first, 'a');
  other.join();
  const std::vector<std::string> written = lines();
  const auto count = [&written](char letter) {
    return std::count(written.begin(), written.end(), "INFO C m " + std::string(5000, letter));
  };
  EXPECT_EQ(written.size(), 2U * kLines);
  EXPECT_EQ(count('a'), kLines);
  EXPECT_EQ(count('b'), kLines);
}

TEST_F(FileLogger, ALogThatWasRemovedIsBegunAnew) {
  const auto log = logger("8");
  log->LogInfo("C", "m", "one", 0);
  std::filesystem::remove(path());
  log->LogInfo("C", "m", "two", 0);
  EXPECT_THAT(lines(), ElementsAre("INFO C m two"));
}

}  // namespace
}  // namespace bvconn

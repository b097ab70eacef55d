#include "bvconn/platform/logging/session_logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <optional>
#include <regex>
#include <thread>

#include "bvconn/platform/logging/own_logger.h"
#include "files/temp_folder.h"

namespace bvconn {
namespace {

using files_test::exists;
using files_test::lines_of;
using files_test::mode_of;
using files_test::pipe_at;
using files_test::ScopedEnvironment;
using files_test::TempFolder;
using testing::ElementsAre;
using testing::MatchesRegex;

class FileLogger : public testing::Test {
 protected:
  std::shared_ptr<SessionLogger> logger(const char* mask) {
    const ScopedEnvironment log("BVCONN_LOG_FILE", path());
    const ScopedEnvironment level("BVCONN_LOG_MASK", mask);
    return make_file_logger();
  }

  std::string path() const { return folder_.file("logs/deep/bvconn.log"); }

  /// The lines without time and thread.
  std::vector<std::string> lines() const {
    std::vector<std::string> texts;
    for (const std::string& line : lines_of(path())) {
      texts.push_back(line.substr(line.find("] ") + 2));
    }
    return texts;
  }

  TempFolder folder_;
};

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

TEST_F(FileLogger, EachCallHasItsKind) {
  const auto log = logger("0xFF");
  log->EnterMethod("C", "enter", 1);
  log->ExitMethod("C", "exit", 1);
  log->LogInfo("C", "info", "text 1", 0);
  log->LogWarning("C", "warning", "text 2", 0);
  log->LogAtLevel(16, "C", "level", "text 3", 0);
  log->LogError("C", "error", Error(91, "BVConn", "text 4"), 0);
  EXPECT_THAT(lines(), ElementsAre("ENTER C enter", "EXIT C exit", "INFO C info text 1",
                                   "WARNING C warning text 2", "LEVEL16 C level text 3",
                                   "ERROR C error 0x0000005B BVConn: text 4"));
}

TEST_F(FileLogger, CodesAndLineNumbersAreWrittenWhereThereAreSome) {
  const auto log = logger("8");
  log->LogInfo("C", "m", "text", 42);
  log->LogWarning("C", "m", "text", -1);
  log->LogError("C", "m", Error(13, "S", "text"), 120);
  EXPECT_THAT(lines(), ElementsAre("INFO C m text (code 42)", "WARNING C m text (code -1)",
                                   "ERROR C m 0x0000000D S: text (line 120)"));
}

TEST_F(FileLogger, ErrorsAndWarningsAreWrittenWithAnyMask) {
  const auto log = logger("0");
  log->LogError("C", "m", Error(13, "S", "text"), 0);
  log->LogWarning("C", "m", "text", 0);
  EXPECT_EQ(lines().size(), 2U);
}

TEST_F(FileLogger, AMaskOfZeroFiltersAllElse) {
  const auto log = logger("0");
  log->LogInfo("C", "m", "text", 0);
  log->EnterMethod("C", "m", 0);
  log->ExitMethod("C", "m", 0);
  log->EnterMethod("C", "m", 1);
  log->ExitMethod("C", "m", 2);
  log->LogAtLevel(0, "C", "m", "text", 0);
  log->LogAtLevel(16, "C", "m", "text", 0);
  EXPECT_FALSE(exists(folder_.file("logs")));
}

TEST_F(FileLogger, InfoLinesHangOnBitEight) {
  logger("0xF7")->LogInfo("C", "m", "no", 0);
  logger("8")->LogInfo("C", "m", "yes", 0);
  EXPECT_THAT(lines(), ElementsAre("INFO C m yes"));
}

TEST_F(FileLogger, LevelsHangOnTheirOwnBits) {
  const auto log = logger("18");
  log->EnterMethod("C", "one", 1);
  log->EnterMethod("C", "two", 2);
  log->ExitMethod("C", "three", 3);
  log->LogAtLevel(4, "C", "four", "t", 0);
  log->LogAtLevel(16, "C", "sixteen", "t", 0);
  EXPECT_THAT(lines(), ElementsAre("ENTER C two", "EXIT C three", "LEVEL16 C sixteen t"));
}

TEST_F(FileLogger, LevelZeroIsWrittenWithAnyMaskButZero) {
  const auto log = logger("0x40");
  log->EnterMethod("C", "m", 0);
  log->ExitMethod("C", "m", 0);
  log->LogAtLevel(0, "C", "m", "t", 0);
  EXPECT_THAT(lines(), ElementsAre("ENTER C m", "EXIT C m", "LEVEL0 C m t"));
}

TEST_F(FileLogger, TheMaskIsDecimalOrHexadecimal) {
  EXPECT_EQ(logger("24")->LogMask(), 24);
  EXPECT_EQ(logger("0x4F")->LogMask(), 0x4F);
  EXPECT_EQ(logger("0X4f")->LogMask(), 0x4F);
  EXPECT_EQ(logger("0xFFFFFFFF")->LogMask(), -1);
  EXPECT_EQ(logger(nullptr)->LogMask(), 0);
}

TEST_F(FileLogger, AMaskThatIsNoNumberIsZero) {
  for (const char* mask : {"", "all", "0x", "8x", "x8", "-1", " 8", "8 ", "0x1FFFFFFFF", "1e3"}) {
    EXPECT_EQ(logger(mask)->LogMask(), 0) << mask;
  }
}

TEST_F(FileLogger, TheEnvironmentCountsWhenTheLoggerIsMade) {
  const auto log = logger("8");
  const ScopedEnvironment later("BVCONN_LOG_MASK", "0");
  const ScopedEnvironment elsewhere("BVCONN_LOG_FILE", folder_.file("other.log"));
  log->LogInfo("C", "m", "text", 0);
  EXPECT_EQ(log->LogMask(), 8);
  EXPECT_THAT(lines(), ElementsAre("INFO C m text"));
  EXPECT_FALSE(exists(folder_.file("other.log")));
}

TEST_F(FileLogger, ALineStaysOneLine) {
  const auto log = logger("8");
  log->LogInfo("C\n", "m\r", std::string("a\r\nb\tc\x1B[0m\0d", 12), 0);
  log->LogError("C", "m", Error(13, "S\n", "x\ny \xE2\x80\xA8 \xC3\xA4 \xFF"), 0);
  EXPECT_THAT(lines(), ElementsAre("INFO C\\n m\\r a\\r\\nb\\tc\\x1B[0m\\x00d",
                                   "ERROR C m 0x0000000D S\\n: x\\ny \\xE2\\x80\\xA8 \xC3\xA4 "
                                   "\\xFF"));
}

detail::OwnLogger& own(const std::shared_ptr<SessionLogger>& logger) {
  return dynamic_cast<detail::OwnLogger&>(*logger);
}

TEST_F(FileLogger, HeldErrorLinesComeInTheirOrderWhenTheyAreReleased) {
  const auto log = logger("0");
  own(log).hold_errors();
  log->LogError("C", "one", Error(1, "S", "text"), 0);
  log->LogError("C", "two", Error(2, "S", "text"), 0);
  EXPECT_FALSE(exists(path()));
  own(log).release_errors();
  EXPECT_THAT(lines(),
              ElementsAre("ERROR C one 0x00000001 S: text", "ERROR C two 0x00000002 S: text"));
  log->LogError("C", "three", Error(3, "S", "text"), 0);
  EXPECT_EQ(lines().size(), 3U);
}

TEST_F(FileLogger, ALineOfAnotherKindTakesHeldOnesWithIt) {
  const auto log = logger("0");
  own(log).hold_errors();
  log->LogError("C", "one", Error(1, "S", "text"), 0);
  log->LogWarning("C", "two", "text", 0);
  EXPECT_THAT(lines(), ElementsAre("ERROR C one 0x00000001 S: text", "WARNING C two text"));
  own(log).release_errors();
  EXPECT_EQ(lines().size(), 2U);
}

TEST_F(FileLogger, TheFirstReleaseOfSeveralWritesWhatIsHeld) {
  const auto log = logger("0");
  own(log).hold_errors();
  own(log).hold_errors();
  log->LogError("C", "one", Error(1, "S", "text"), 0);
  own(log).release_errors();
  EXPECT_EQ(lines().size(), 1U);
  own(log).release_errors();
  log->LogError("C", "two", Error(2, "S", "text"), 0);
  EXPECT_EQ(lines().size(), 2U);
}

TEST_F(FileLogger, HeldErrorLinesAreThereForWhoAsksForThePathOrEndsTheLogger) {
  auto log = logger("0");
  own(log).hold_errors();
  log->LogError("C", "one", Error(1, "S", "text"), 0);
  log->LogFilePath();
  EXPECT_EQ(lines().size(), 1U);
  log->LogError("C", "two", Error(2, "S", "text"), 0);
  log.reset();
  EXPECT_EQ(lines().size(), 2U);
}

TEST_F(FileLogger, FileAndFoldersAreTheOwnersAlone) {
  logger("0")->LogWarning("C", "m", "text", 0);
  EXPECT_EQ(mode_of(folder_.file("logs")), 0700U);
  EXPECT_EQ(mode_of(folder_.file("logs/deep")), 0700U);
  EXPECT_EQ(mode_of(path()), 0600U);
}

TEST_F(FileLogger, WhoAsksForAPathCanWriteThere) {
  const ScopedEnvironment trace("BVCONN_TRACE_FILE", folder_.file("traces/traffic.log"));
  const auto log = logger("0");
  EXPECT_EQ(log->LogFilePath(), path());
  EXPECT_EQ(log->TracingFilePath(), folder_.file("traces/traffic.log"));
  EXPECT_EQ(mode_of(folder_.file("logs/deep")), 0700U);
  EXPECT_EQ(mode_of(folder_.file("traces")), 0700U);
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

TEST_F(FileLogger, ALogThatCannotBeMadeIsSilent) {
  files_test::put_bytes(folder_.file("file"), "x");
  const ScopedEnvironment blocked("BVCONN_LOG_FILE", folder_.file("file/below/bvconn.log"));
  const auto log = make_file_logger();
  EXPECT_NO_THROW(log->LogWarning("C", "m", "text", 0));
  EXPECT_NO_THROW(log->LogError("C", "m", Error(13, "S", "text"), 0));
  EXPECT_NO_THROW(log->LogFilePath());
  EXPECT_EQ(files_test::bytes_of(folder_.file("file")), "x");
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

TEST_F(FileLogger, ALogThatBecomesWritableIsWrittenAgain) {
  files_test::put_bytes(folder_.file("logs"), "in the way");
  const auto log = logger("0");
  log->LogWarning("C", "m", "lost", 0);
  std::filesystem::remove(folder_.file("logs"));
  log->LogWarning("C", "m", "kept", 0);
  EXPECT_THAT(lines(), ElementsAre("WARNING C m kept"));
}

TEST_F(FileLogger, ALogThatWasMovedAwayIsBegunAnew) {
  const auto log = logger("0");
  log->LogWarning("C", "m", "old", 0);
  std::filesystem::rename(path(), folder_.file("old.log"));
  log->LogWarning("C", "m", "new", 0);
  EXPECT_THAT(lines(), ElementsAre("WARNING C m new"));
}

TEST_F(FileLogger, ALogWhoseFolderWasMovedAwayIsBegunAnew) {
  const auto log = logger("0");
  log->LogWarning("C", "m", "old", 0);
  std::filesystem::rename(folder_.file("logs"), folder_.file("old logs"));
  log->LogWarning("C", "m", "new", 0);
  EXPECT_THAT(lines(), ElementsAre("WARNING C m new"));
}

TEST_F(FileLogger, ALogThatWasRemovedIsBegunAnew) {
  const auto log = logger("8");
  log->LogInfo("C", "m", "one", 0);
  std::filesystem::remove(path());
  log->LogInfo("C", "m", "two", 0);
  EXPECT_THAT(lines(), ElementsAre("INFO C m two"));
}

TEST_F(FileLogger, ALogThatAnotherTookThePlaceOfIsLeftAlone) {
  const auto log = logger("8");
  log->LogInfo("C", "m", "one", 0);
  std::filesystem::rename(path(), path() + ".old");
  files_test::put_bytes(path(), "a line] of another\n");
  log->LogInfo("C", "m", "two", 0);
  EXPECT_THAT(lines(), ElementsAre("of another", "INFO C m two"));
  EXPECT_EQ(lines_of(path() + ".old").size(), 1U);
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

}  // namespace
}  // namespace bvconn

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <thread>

#include "bvconn/platform/logging/own_logger.h"
#include "files/logger_fixture.h"

namespace bvconn {
namespace {

using files_test::exists;
using files_test::FileLogger;
using files_test::lines_of;
using files_test::ScopedEnvironment;
using testing::ElementsAre;

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

TEST_F(FileLogger, WhoAsksForAPathCanWriteThere) {
  const ScopedEnvironment trace("BVCONN_TRACE_FILE", folder_.file("traces/traffic.log"));
  const auto log = logger("0");
  EXPECT_EQ(log->LogFilePath(), path());
  EXPECT_EQ(log->TracingFilePath(), folder_.file("traces/traffic.log"));
  EXPECT_TRUE(exists(folder_.file("logs/deep")));
  EXPECT_TRUE(exists(folder_.file("traces")));
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

TEST_F(FileLogger, ALogThatAnotherTookThePlaceOfIsLeftAlone) {
  const auto log = logger("8");
  log->LogInfo("C", "m", "one", 0);
  std::filesystem::rename(path(), path() + ".old");
  files_test::put_bytes(path(), "a line] of another\n");
  log->LogInfo("C", "m", "two", 0);
  EXPECT_THAT(lines(), ElementsAre("of another", "INFO C m two"));
  EXPECT_EQ(lines_of(path() + ".old").size(), 1U);
}

}  // namespace
}  // namespace bvconn

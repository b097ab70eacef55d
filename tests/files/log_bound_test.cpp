#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "bvconn/platform/error.h"
#include "bvconn/platform/file_state.h"
#include "bvconn/platform/files.h"
#include "bvconn/platform/logging/append_file.h"
#include "bvconn/platform/logging/own_logger.h"
#include "bvconn/platform/logging/session_logger.h"
#include "files/temp_folder.h"

namespace bvconn {
namespace {

using files_test::bytes_of;
using files_test::exists;
using files_test::lines_of;
using files_test::put_bytes;
using files_test::ScopedEnvironment;
using files_test::TempFolder;
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

}  // namespace
}  // namespace bvconn

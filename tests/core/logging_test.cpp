#include "bvconn/core/logging.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/platform.h"
#include "files/temp_folder.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using test::error_of;
using test::RecordingPlatform;

class TemporaryFolder {
 public:
  std::filesystem::path path() const {
    return std::filesystem::path(folder_.file("file")).parent_path();
  }

 private:
  files_test::TempFolder folder_;
};

std::string contents(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(DALMessageToLog, AppendsNameDashMessageAndCrLf) {
  RecordingPlatform world;
  TemporaryFolder folder;
  world.log_file = (folder.path() / "bvconn.log").string();
  std::ofstream(world.log_file, std::ios::binary) << "before\n";
  EXPECT_TRUE(Global::DALMessageToLog("SaveProject", "<a>\nline</a>"));
  EXPECT_TRUE(BVConnectorObject().SendDALMessageToLog("generateQuotes", "<b/>"));
  EXPECT_EQ(contents(world.log_file),
            "before\nSaveProject - <a>\nline</a>\r\ngenerateQuotes - <b/>\r\n");
}

TEST(DALMessageToLog, KeepsToTheBoundOfTheLogFile) {
  const files_test::TempFolder folder;
  const files_test::ScopedEnvironment file("BVCONN_LOG_FILE", folder.file("a.log"));
  const files_test::ScopedEnvironment bound("BVCONN_LOG_MAX_BYTES", "20");
  const platform::ScopedPlatform real(platform::system_platform());
  Global::DALMessageToLog("SaveProject", "<a/>");
  Global::DALMessageToLog("SaveProject", "<b/>");
  EXPECT_EQ(contents(folder.file("a.log.1")), "SaveProject - <a/>\r\n");
  EXPECT_EQ(contents(folder.file("a.log")), "SaveProject - <b/>\r\n");
}

TEST(DALMessageToLog, LetsTheFileOfALoggerOfOnesOwnGrow) {
  RecordingPlatform world;
  const files_test::TempFolder folder;
  const files_test::ScopedEnvironment bound("BVCONN_LOG_MAX_BYTES", "20");
  world.log_file = folder.file("a.log");
  Global::DALMessageToLog("SaveProject", "<a/>");
  Global::DALMessageToLog("SaveProject", "<b/>");
  EXPECT_EQ(contents(world.log_file), "SaveProject - <a/>\r\nSaveProject - <b/>\r\n");
}

// On Windows a folder says so for all that is in it.
#if !defined(_WIN32)
TEST(DALMessageToLog, MakesAMissingFileAndItsFoldersForTheOwnerAlone) {
  RecordingPlatform world;
  TemporaryFolder folder;
  world.log_file = (folder.path() / "deep" / "er" / "bvconn.log").string();
  Global::DALMessageToLog("SaveProject", "x");
  EXPECT_EQ(files_test::mode_of(world.log_file), 0600U);
  EXPECT_EQ(files_test::mode_of((folder.path() / "deep").string()), 0700U);
}
#endif

TEST(DALMessageToLog, AFileThatCannotBeOpenedIsAnErrorThatNamesIt) {
  RecordingPlatform world;
  TemporaryFolder folder;
  std::ofstream(folder.path() / "file") << "no folder";
  world.log_file = (folder.path() / "file" / "bvconn.log").string();
  const Error error =
      error_of([&] { BVConnectorObject().SendDALMessageToLog("SaveProject", "x"); });
  EXPECT_EQ(error.number, error_numbers::kLogFile);
  EXPECT_NE(error.description.find(world.log_file), std::string::npos) << error.description;
}

TEST(DALMessageToLog, WritesNoLineThroughTheLogger) {
  RecordingPlatform world;
  TemporaryFolder folder;
  world.log_file = (folder.path() / "bvconn.log").string();
  Global::DALMessageToLog("SaveProject", "x");
  EXPECT_TRUE(world.record.log.empty());
  EXPECT_EQ(world.record.all, std::vector<std::string>{"SessionLogger LogFilePath"});
}

constexpr LogBlock kBlock{.cls = "C", .method = "m"};

TEST(PlainTail, LogsTheErrorAndRaisesItWithoutItsHelp) {
  RecordingPlatform world;
  const Error error = error_of(
      [&] { run_logged(kBlock, []() -> int { throw Error(5, "src", "what", "help.chm", 77); }); });
  EXPECT_EQ(error.number, 5);
  EXPECT_EQ(error.source, "src");
  EXPECT_EQ(error.description, "what");
  EXPECT_EQ(error.helpFile, "");
  EXPECT_EQ(error.helpContext, 0);
  EXPECT_EQ(world.record.log,
            (std::vector<std::string>{"EnterMethod C.m 1", "LogError C.m 5 \"src\" \"what\" 0"}));
}

TEST(PlainTail, AnErrorOfTheLoggerInTheTailLeavesAtOnceInItsPlace) {
  RecordingPlatform world;
  world.log_failure = {"LogError C.m 5 \"src\" \"what\" 0",
                       Error(70, "SessionLogger", "disk full")};
  const Error error =
      error_of([&] { run_logged(kBlock, []() -> int { throw Error(5, "src", "what"); }); });
  EXPECT_EQ(error.number, 70);
  EXPECT_EQ(error.description, "disk full");
}

TEST(PlainTail, AnErrorOfTheLoggerInTheEnterLineGoesThroughTheTail) {
  RecordingPlatform world;
  world.log_failure = {"EnterMethod C.m 1", Error(70, "SessionLogger", "disk full")};
  EXPECT_THROW(run_logged(kBlock, [] { return 1; }), Error);
  EXPECT_EQ(world.record.log,
            (std::vector<std::string>{"EnterMethod C.m 1",
                                      "LogError C.m 70 \"SessionLogger\" \"disk full\" 0"}));
}

TEST(LogBlock, TextLinesBearBracketsAndLevelsDoNot) {
  RecordingPlatform world;
  constexpr LogBlock kText{.cls = "C", .method = "m", .form = LogForm::kTextLines};
  constexpr LogBlock kBrackets{.cls = "C", .method = "m", .level = 0, .brackets = true};
  constexpr LogBlock kOwn{.cls = "C", .method = "m", .enter = "e()", .exit = "x", .error = "r"};
  constexpr LogBlock kNone{.cls = "C", .method = "m", .form = LogForm::kNone};
  for (const LogBlock& block : {kText, kBrackets, kOwn, kNone}) {
    log_enter(block);
    log_exit(block);
    log_error(block, Error(9, "s", "d"));
  }
  EXPECT_EQ(world.record.log, (std::vector<std::string>{
                                  "LogInfo C.m() \"Entering Method...\" 0",
                                  "LogInfo C.m() \"Exiting Method...\" 0",
                                  "LogError C.m 9 \"s\" \"d\" 0",
                                  "EnterMethod C.m() 0",
                                  "ExitMethod C.m() 0",
                                  "LogError C.m 9 \"s\" \"d\" 0",
                                  "EnterMethod C.e() 1",
                                  "ExitMethod C.x 1",
                                  "LogError C.r 9 \"s\" \"d\" 0",
                                  "LogError C.m 9 \"s\" \"d\" 0",
                              }));
}

}  // namespace
}  // namespace bvconn

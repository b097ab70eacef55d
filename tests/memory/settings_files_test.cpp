#include <gtest/gtest.h>

#include <new>
#include <string>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/logging/session_logger.h"
#include "bvconn/platform/settings/registry_access.h"
#include "files/temp_folder.h"
#include "support/watched_memory.h"

namespace bvconn::test {
namespace {

/// What reading came to while each allocation failed in turn.
struct Readings {
  std::size_t out_of_memory = 0;  ///< reported as such
  std::size_t errors = 0;         ///< of another number than 0x80041001
  std::size_t not_toml = 0;
};

/// Reads one value from a settings file of this text, with each allocation failing in turn.
Readings readings_of(const std::string& toml) {
  const files_test::TempFolder folder;
  const files_test::ScopedEnvironment place("BVCONN_MACHINE_SETTINGS", folder.file("s.toml"));
  files_test::put_bytes(folder.file("s.toml"), toml);
  const auto settings = make_settings_files();
  Readings readings;
  bool struck = true;
  for (std::size_t number = 1; struck; ++number) {
    try {
      const FailingMemory shortage(number, Shortage::kOnward);
      settings->ReadNumber(SettingsRoot::kLocalMachine, R"(Software\Brimvale)", "port");
      struck = FailingMemory::has_struck();
    } catch (const std::bad_alloc&) {
      ++readings.out_of_memory;
    } catch (const Error& error) {
      struck = FailingMemory::has_struck();
      ++(error.number == error_numbers::kSettingsNotToml ? readings.not_toml : readings.errors);
    }
  }
  return readings;
}

// Who catches it makes error 7 of it; a reader that swore never to throw would end the process.
TEST(LackOfMemory, IsReportedByTheReaderOfSettingsFiles) {
  const Readings readings = readings_of(
      "['Software\\Brimvale']\nport = 8888\ntext = \"of many letters, so "
      "that it needs memory\"\nlist = [1, {a.b = 2}]\n");
  EXPECT_GT(readings.out_of_memory, 5U);
  EXPECT_EQ(readings.errors, 0U);
  EXPECT_EQ(readings.not_toml, 0U);
}

TEST(LackOfMemory, IsReportedByTheReaderOfSettingsFilesThatAreNotToml) {
  const std::string good =
      "['Software\\Brimvale']\ntext = \"of many letters, for which it needs memory\"\n";
  for (const std::string& bad :
       {std::string("port = "), std::string("port = 1 2\n"), std::string("text = 1\n"),
        std::string("list = [1, {a.b = 2\n"), std::string("port = '\x80'\n"),
        std::string("port = \"\\q\"\n"), std::string("port = 1\r"), std::string("=\n"),
        std::string("['Software\\Brimvale']\n"), std::string("date = 2007-13-45\n"),
        std::string("port = 99999999999999999999\n"), std::string(200, '[')}) {
    SCOPED_TRACE(bad);
    const Readings readings = readings_of(good + bad);
    EXPECT_GT(readings.out_of_memory, 3U);
    EXPECT_EQ(readings.errors, 0U);
    EXPECT_EQ(readings.not_toml, 1U) << "the one reading that has all its memory";
  }
}

/// Runs `action` with each allocation failing in turn; `check` is told whether it succeeded. The
/// number of allocations that it makes.
template <class Action, class Check>
std::size_t run_short_of_memory(Shortage shortage, const Action& action, const Check& check) {
  for (std::size_t number = 1;; ++number) {
    bool succeeded = false;
    bool struck = false;
    try {
      const FailingMemory memory(number, shortage);
      action();
      struck = FailingMemory::has_struck();
      succeeded = true;
    } catch (const std::bad_alloc&) {
      struck = true;
    }
    SCOPED_TRACE("allocation " + std::to_string(number));
    check(succeeded);
    if (!struck) return number - 1;
  }
}

TEST(LackOfMemory, LeavesTheOldSettingsFileOrTheNewOneAndNothingBesides) {
  const files_test::TempFolder folder;
  const std::string path = folder.file("s.toml");
  const files_test::ScopedEnvironment place("BVCONN_USER_SETTINGS", path);
  const std::string old_text = "['Software\\Brimvale']\nport = 'a port of more than 15 letters'\n";
  const std::string new_text = "a new port of more than 15 letters";
  files_test::put_bytes(path, old_text);
  const auto settings = make_settings_files();
  for (const Shortage shortage : {Shortage::kOnce, Shortage::kOnward}) {
    const std::size_t allocations = run_short_of_memory(
        shortage,
        [&] {
          settings->Write("HKCU\\Software\\Brimvale\\port", SettingValue(new_text), "REG_SZ");
        },
        [&](bool succeeded) {
          const std::string port =
              settings->ReadString(SettingsRoot::kCurrentUser, "Software\\Brimvale", "port");
          EXPECT_EQ(port, succeeded ? new_text : "a port of more than 15 letters");
          EXPECT_FALSE(files_test::exists(path + ".new"));
          files_test::put_bytes(path, old_text);
        });
    EXPECT_GT(allocations, 10U);
  }
}

TEST(LackOfMemory, IsReportedByTheLoggerAndLeavesNoHalfALine) {
  const files_test::TempFolder folder;
  const std::string path = folder.file("a-folder/of-some-length/bvconn.log");
  const files_test::ScopedEnvironment place("BVCONN_LOG_FILE", path);
  const files_test::ScopedEnvironment mask("BVCONN_LOG_MASK", "8");
  const files_test::ScopedEnvironment bound("BVCONN_LOG_MAX_BYTES", "2000");
  const auto logger = make_file_logger();
  const std::string text = "a text of so many letters that it needs memory";
  std::size_t lines = 0;
  const std::size_t allocations = run_short_of_memory(
      Shortage::kOnce, [&] { logger->LogInfo("BVClass", "aMethod", text, 0); },
      [&](bool) {
        for (const std::string& line : files_test::lines_of(path)) {
          EXPECT_TRUE(line.ends_with(" INFO BVClass aMethod " + text)) << line;
          ++lines;
        }
      });
  EXPECT_GT(allocations, 2U);
  EXPECT_GT(lines, 0U);
}

}  // namespace
}  // namespace bvconn::test

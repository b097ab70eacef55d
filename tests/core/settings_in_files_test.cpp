#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <thread>

#include "bvconn/core/settings.h"
#include "bvconn/platform/platform.h"
#include "files/temp_folder.h"

// The switch over the settings files themselves. What a thread knows of a file that has not changed
// it does not work out again, which shows in nothing but the time that it takes.
namespace bvconn::files_test {
namespace {

class TracingSwitch : public testing::Test {
 protected:
  void put(std::string_view file, std::string_view value) const {
    put_bytes(folder_.file(file), "['Software\\Brimvale\\Torvex\\AppData']\nTraceSoapTraffic = " +
                                      std::string(value) + "\n");
  }

  /// Until the file counts as one that has not changed for long.
  static void let_it_age() { std::this_thread::sleep_for(std::chrono::milliseconds(150)); }

  std::string logged() const {
    std::ifstream stream(folder_.file("log"));
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }

  TempFolder folder_;
  ScopedEnvironment settings_{"BVCONN_USER_SETTINGS", folder_.file("one.toml")};
  ScopedEnvironment log_{"BVCONN_LOG_FILE", folder_.file("log")};
  platform::ScopedPlatform platform_{platform::system_platform()};
};

TEST_F(TracingSwitch, CountsAtOnceWhateverWasKnownOfTheFile) {
  put("one.toml", "0");
  let_it_age();
  EXPECT_FALSE(Global::TraceSoapTraffic());
  EXPECT_FALSE(Global::TraceSoapTraffic());
  put("one.toml", "\"True\"");
  EXPECT_TRUE(Global::TraceSoapTraffic());
  put("one.toml", "0");
  EXPECT_FALSE(Global::TraceSoapTraffic());
  put("one.toml", "1");
  let_it_age();
  EXPECT_TRUE(Global::TraceSoapTraffic());
  EXPECT_TRUE(Global::TraceSoapTraffic());
}

TEST_F(TracingSwitch, CountsAtOnceWhereItIsWrittenByTheLibrary) {
  put("one.toml", "0");
  let_it_age();
  EXPECT_FALSE(Global::TraceSoapTraffic());
  Global::TraceSoapTraffic(true);
  EXPECT_TRUE(Global::TraceSoapTraffic());
  let_it_age();
  EXPECT_TRUE(Global::TraceSoapTraffic());
  Global::TraceSoapTraffic(false);
  EXPECT_FALSE(Global::TraceSoapTraffic());
}

TEST_F(TracingSwitch, IsThatOfTheFileWhichTheEnvironmentNamesNow) {
  put("one.toml", "0");
  put("two.toml", "1");
  let_it_age();
  EXPECT_FALSE(Global::TraceSoapTraffic());
  EXPECT_FALSE(Global::TraceSoapTraffic());
  const ScopedEnvironment other("BVCONN_USER_SETTINGS", folder_.file("two.toml"));
  EXPECT_TRUE(Global::TraceSoapTraffic());
}

TEST_F(TracingSwitch, IsFoundBadAtEachUse) {
  put("one.toml", "\"yes\"");
  let_it_age();
  for (int uses = 0; uses < 3; ++uses) EXPECT_FALSE(Global::TraceSoapTraffic());
  const std::string lines = logged();
  std::size_t errors = 0;
  for (std::size_t at = lines.find("] ERROR Global TraceSoapTraffic()"); at != std::string::npos;
       at = lines.find("] ERROR Global TraceSoapTraffic()", at + 1)) {
    ++errors;
  }
  EXPECT_EQ(errors, 3U) << lines;
}

}  // namespace
}  // namespace bvconn::files_test

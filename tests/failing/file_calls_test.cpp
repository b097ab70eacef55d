#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "bvconn/core/logging.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/logging/session_logger.h"
#include "bvconn/platform/platform.h"
#include "bvconn/platform/settings/registry_access.h"
#include "files/temp_folder.h"
#include "support/failing_calls.h"

// Each call of the system that a file takes fails in turn: settings are read, written, logged.
namespace bvconn::test {
namespace {

using error_numbers::from_bits;
using files_test::bytes_of;
using files_test::lines_of;
using files_test::put_bytes;
using files_test::ScopedEnvironment;
using files_test::TempFolder;

constexpr std::string_view kOld = "['Software\\Brimvale']\nport = '8888'\n";
constexpr const char* kPath = "HKCU\\Software\\Brimvale\\port";

/// The calls without which a settings file cannot be replaced, whatever they fail with.
bool is_needed_to_write(std::string_view call, int code) {
  if (code == kHalf || code == EINTR) return false;
  return call == "write" || call == "rename";
}

class FileCalls : public testing::Test {
 protected:
  std::string read_port() {
    return make_settings_files()->ReadString(SettingsRoot::kCurrentUser, "Software\\Brimvale",
                                             "port");
  }

  void write_port(const std::string& text) {
    make_settings_files()->Write(kPath, SettingValue(text), "REG_SZ");
  }

  /// Every way in which the writing of a value can fail; the names of the calls that did.
  std::set<std::string> expect_old_file_or_new_one(bool crashed_before) {
    std::set<std::string> calls;
    for_each_failing_call([&](std::size_t number, std::size_t way) {
      put_bytes(settings_path, kOld);
      // As a program leaves it behind that crashes while it writes.
      if (crashed_before) put_bytes(settings_path + ".new", "half a fi");
      std::optional<Error> failed;
      bool struck_now = false;
      {
        const FailingCall failing(Calls::kFiles, number, way);
        try {
          write_port("9999");
        } catch (const Error& error) {
          failed = error;
        }
        struck_now = FailingCall::has_struck();
      }
      if (!struck_now) return false;
      SCOPED_TRACE(struck() + ", call " + std::to_string(number));
      calls.emplace(struck_call());
      expect_old_or_new(failed);
      if (!crashed_before) {
        EXPECT_FALSE(files_test::exists(settings_path + ".new"));
      }
      write_port("7777");
      EXPECT_EQ(read_port(), "7777") << "the next call";
      EXPECT_FALSE(files_test::exists(settings_path + ".new"));
      return true;
    });
    return calls;
  }

  void expect_old_or_new(const std::optional<Error>& failed) {
    if (failed) {
      EXPECT_EQ(failed->number, from_bits(0x80041002)) << failed->description;
      EXPECT_EQ(failed->source, "RegistryAccess");
      EXPECT_EQ(bytes_of(settings_path), kOld);
    } else {
      EXPECT_EQ(read_port(), "9999");
      EXPECT_FALSE(is_needed_to_write(struck_call(), struck_code()));
    }
  }

  /// Every way in which a line of a logger can fail; the names of the calls that did.
  std::set<std::string> expect_one_line_lost(
      const std::function<std::shared_ptr<SessionLogger>()>& logger) {
    logger()->LogInfo("C", "m", "the first", 0);
    std::set<std::string> calls;
    for_each_failing_call([&](std::size_t number, std::size_t way) {
      const std::size_t before = lines_of(log_path).size();
      const auto struck_logger = logger();
      bool struck_now = false;
      {
        const FailingCall failing(Calls::kFiles, number, way);
        EXPECT_NO_THROW(struck_logger->LogInfo("C", "m", "struck", 0));
        struck_now = FailingCall::has_struck();
      }
      if (!struck_now) return false;
      SCOPED_TRACE(struck() + ", call " + std::to_string(number));
      calls.emplace(struck_call());
      const std::size_t added = lines_of(log_path).size() - before;
      const bool may_be_lost = struck_call() == "open" || struck_call() == "write" ||
                               (struck_call() == "fstat" && number == 2);
      if (may_be_lost) {
        EXPECT_LE(added, 1U);
      } else {
        EXPECT_EQ(added, 1U);
      }
      struck_logger->LogInfo("C", "m", "the next", 0);
      EXPECT_TRUE(lines_of(log_path).back().ends_with(" INFO C m the next"));
      return true;
    });
    return calls;
  }

  TempFolder folder;
  std::string settings_path = folder.file("settings.toml");
  std::string log_path = folder.file("log/bvconn.log");
  ScopedEnvironment settings{"BVCONN_USER_SETTINGS", settings_path};
  ScopedEnvironment machine{"BVCONN_MACHINE_SETTINGS", folder.file("none.toml")};
  ScopedEnvironment log{"BVCONN_LOG_FILE", log_path};
  ScopedEnvironment mask{"BVCONN_LOG_MASK", "8"};
};

TEST_F(FileCalls, ThatFailWhileSettingsAreReadAreError80041002) {
  put_bytes(settings_path, kOld);
  std::set<std::string> calls;
  for_each_failing_call([&](std::size_t number, std::size_t way) {
    std::optional<Error> failed;
    std::string port;
    bool struck_now = false;
    {
      const FailingCall failing(Calls::kFiles, number, way);
      try {
        port = read_port();
      } catch (const Error& error) {
        failed = error;
      }
      struck_now = FailingCall::has_struck();
    }
    if (!struck_now) return false;
    SCOPED_TRACE(struck() + ", call " + std::to_string(number));
    calls.emplace(struck_call());
    const int code = struck_code();
    const bool is_absent = struck_call() == "open" && code == ENOENT;
    const bool goes_on =
        struck_call() == "close" || code == kHalf || (struck_call() == "read" && code == EINTR);
    if (is_absent) {
      EXPECT_FALSE(failed);
      EXPECT_EQ(port, "");
    } else if (goes_on) {
      EXPECT_FALSE(failed);
      EXPECT_EQ(port, "8888");
    } else {
      EXPECT_TRUE(failed);
      if (failed) {
        EXPECT_EQ(failed->number, from_bits(0x80041002));
        EXPECT_EQ(failed->source, "RegistryAccess");
        EXPECT_NE(failed->description.find(settings_path), std::string::npos)
            << failed->description;
      }
    }
    EXPECT_EQ(read_port(), "8888") << "the next call";
    return true;
  });
  EXPECT_EQ(calls, (std::set<std::string>{"open", "fstat", "read", "close"}));
}

TEST_F(FileCalls, ThatFailWhileSettingsAreWrittenLeaveTheOldFileOrTheNewOne) {
  const std::set<std::string> calls = expect_old_file_or_new_one(false);
  for (const char* call : {"open", "fstat", "read", "close", "flock", "unlink", "stat", "fchown",
                           "fchmod", "write", "fsync", "rename"}) {
    EXPECT_TRUE(calls.contains(call)) << call;
  }
}

TEST_F(FileCalls, ThatFailAfterACrashLeaveTheOldFileOrTheNewOneToo) {
  EXPECT_TRUE(expect_old_file_or_new_one(true).contains("unlink"));
}

TEST_F(FileCalls, ThatFailUnderTheLoggersFirstLineFailNothingAndCostOneLineAtMost) {
  const std::set<std::string> calls = expect_one_line_lost([] { return make_file_logger(); });
  for (const char* call : {"open", "fstat", "flock", "statx", "write"}) {
    EXPECT_TRUE(calls.contains(call)) << call;
  }
}

TEST_F(FileCalls, ThatFailUnderALoggerThatHasItsFileOpenFailNothingAndCostOneLineAtMost) {
  const std::shared_ptr<SessionLogger> logger = make_file_logger();
  EXPECT_EQ(expect_one_line_lost([&] { return logger; }),
            (std::set<std::string>{"statx", "write"}));
}

// A program whose server answers with faults writes as many lines as it makes calls.
TEST_F(FileCalls, OfALineInAnOpenFileAreALookAtItsPathAndAWrite) {
  const std::shared_ptr<SessionLogger> logger = make_file_logger();
  logger->LogWarning("C", "m", "the first", 0);
  const auto call = [&](std::size_t number) -> std::string {
    const FailingCall failing(Calls::kFiles, number, 0);
    logger->LogWarning("C", "m", "another", 0);
    return FailingCall::has_struck() ? std::string(struck_call()) : "none";
  };
  EXPECT_EQ(call(3), "none");
  EXPECT_EQ(call(2), "write");
  EXPECT_EQ(call(1), "statx");
}

TEST_F(FileCalls, ThatFailWhileALogIsPutAsideLoseNoLineThatWasWritten) {
  const ScopedEnvironment bound("BVCONN_LOG_MAX_BYTES", "600");
  const std::shared_ptr<SessionLogger> logger = make_file_logger();
  std::set<std::string> calls;
  for_each_failing_call([&](std::size_t number, std::size_t way) {
    std::filesystem::create_directories(folder.file("log"));
    put_bytes(log_path, std::string(590, 'x') + "\n");
    std::filesystem::remove(log_path + ".1");
    bool struck_now = false;
    {
      const FailingCall failing(Calls::kFiles, number, way);
      EXPECT_NO_THROW(logger->LogInfo("C", "m", "struck", 0));
      struck_now = FailingCall::has_struck();
    }
    if (!struck_now) return false;
    SCOPED_TRACE(struck() + ", call " + std::to_string(number));
    calls.emplace(struck_call());
    logger->LogInfo("C", "m", "the next", 0);
    const std::string kept = bytes_of(log_path + ".1") + bytes_of(log_path);
    EXPECT_NE(kept.find(std::string(590, 'x') + "\n"), std::string::npos);
    EXPECT_TRUE(kept.ends_with(" INFO C m the next\n")) << kept;
    if (struck_call() != "open" && struck_call() != "write" && struck_call() != "fstat") {
      EXPECT_NE(kept.find(" INFO C m struck\n"), std::string::npos) << kept;
    }
    return true;
  });
  for (const char* call : {"open", "fstat", "flock", "statx", "realpath", "rename", "write"}) {
    EXPECT_TRUE(calls.contains(call)) << call;
  }
}

TEST_F(FileCalls, ThatFailUnderTheDalLineAreError80041003) {
  const platform::ScopedPlatform fresh(platform::system_platform());
  std::set<std::string> calls;
  Global::DALMessageToLog("SaveProject", "the first");
  for_each_failing_call([&](std::size_t number, std::size_t way) {
    std::optional<Error> failed;
    bool struck_now = false;
    {
      const FailingCall failing(Calls::kFiles, number, way);
      try {
        EXPECT_TRUE(Global::DALMessageToLog("SaveProject", "<xml/>"));
      } catch (const Error& error) {
        failed = error;
      }
      struck_now = FailingCall::has_struck();
    }
    if (!struck_now) return false;
    SCOPED_TRACE(struck() + ", call " + std::to_string(number));
    calls.emplace(struck_call());
    if (failed) {
      EXPECT_EQ(failed->number, from_bits(0x80041003));
      EXPECT_EQ(failed->source, "SessionLogger");
    } else {
      EXPECT_TRUE(bytes_of(log_path).ends_with("SaveProject - <xml/>\r\n"));
    }
    const int code = struck_code();
    const bool is_lost = struck_call() == "write" && code != EINTR && code != kHalf;
    if (is_lost) {
      EXPECT_TRUE(failed);
    }
    EXPECT_TRUE(Global::DALMessageToLog("SaveProject", "<next/>"));
    EXPECT_TRUE(bytes_of(log_path).ends_with("SaveProject - <next/>\r\n"));
    return true;
  });
  EXPECT_TRUE(calls.contains("write"));
}

}  // namespace
}  // namespace bvconn::test

#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "bvconn/core/logging.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/logging/session_logger.h"
#include "bvconn/platform/platform.h"
#include "bvconn/platform/settings/registry_access.h"
#include "files/temp_folder.h"
#include "support/error_of.h"

// Real disks that are full, folders that cannot be written to, files that change while they are
// read.
namespace bvconn::test {
namespace {

using error_numbers::from_bits;
using files_test::bytes_of;
using files_test::lines_of;
using files_test::put_bytes;
using files_test::ScopedEnvironment;
using files_test::TempFolder;

constexpr const char* kPath = "HKCU\\Software\\Brimvale\\port";

/// A folder's files, named to the library.
struct Files {
  explicit Files(const std::string& folder)
      : settings(folder + "/settings.toml"), log(folder + "/bvconn.log") {}

  std::string settings;
  std::string log;
  ScopedEnvironment user{"BVCONN_USER_SETTINGS", settings};
  ScopedEnvironment machine{"BVCONN_MACHINE_SETTINGS", log + ".none.toml"};
  ScopedEnvironment log_file{"BVCONN_LOG_FILE", log};
  ScopedEnvironment mask{"BVCONN_LOG_MASK", "8"};
};

void write_port(const std::string& text) {
  make_settings_files()->Write(kPath, SettingValue(text), "REG_SZ");
}

std::string read_port() {
  return make_settings_files()->ReadString(SettingsRoot::kCurrentUser, "Software\\Brimvale",
                                           "port");
}

std::int32_t number_of_write(const std::string& text) {
  return error_of([&] { write_port(text); }).number;
}

/// How a child of this process ended that ran this. What needs another user, other limits or mounts
/// of its own is tried there.
enum class Child : int { kPassed = 0, kFailed = 1, kCannotTry = 2 };

Child in_child(const std::function<Child()>& attempt) {
  const pid_t child = ::fork();
  if (child == 0) {
    Child ending = Child::kFailed;
    try {
      ending = attempt();
    } catch (...) {
      ADD_FAILURE() << "something left the attempt";
    }
    if (testing::Test::HasFailure()) ending = Child::kFailed;
    ::_exit(static_cast<int>(ending));
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? static_cast<Child>(WEXITSTATUS(status)) : Child::kFailed;
}

void expect_passed(Child ending, const char* needs) {
  if (ending == Child::kCannotTry) GTEST_SKIP() << "this machine does not let a test " << needs;
  EXPECT_EQ(static_cast<int>(ending), static_cast<int>(Child::kPassed));
}

/// With no room left: settings and log fail as their contracts say, and what was there stays.
void expect_full_disk_is_told(const std::string& good_settings, const Files& files) {
  EXPECT_EQ(number_of_write(std::string(100'000, '9')), from_bits(0x80041002));
  EXPECT_EQ(bytes_of(files.settings), good_settings);
  EXPECT_FALSE(files_test::exists(files.settings + ".new"));
  EXPECT_EQ(read_port(), "8888");
  const Error line =
      error_of([] { Global::DALMessageToLog("SaveProject", std::string(100'000, 'x')); });
  EXPECT_EQ(line.number, from_bits(0x80041003));
  EXPECT_EQ(line.source, "SessionLogger");
  EXPECT_NO_THROW(make_file_logger()->LogInfo("C", "m", std::string(100'000, 'x'), 0));
}

TEST(FullDisk, LeavesTheSettingsAndFailsNoCallButTheLineForTheDal) {
  const TempFolder folder;
  const auto attempt = [&] {
    if (::unshare(CLONE_NEWNS) != 0 ||
        ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", folder.file("").c_str(), "tmpfs", 0, "size=64k") != 0) {
      return Child::kCannotTry;
    }
    const Files files(folder.file("full"));
    std::filesystem::create_directory(folder.file("full"));
    write_port("8888");
    const std::string good = bytes_of(files.settings);
    expect_full_disk_is_told(good, files);
    // Room again: all is well again.
    std::filesystem::remove(files.log);
    write_port("7777");
    EXPECT_EQ(read_port(), "7777");
    EXPECT_TRUE(Global::DALMessageToLog("SaveProject", "<next/>"));
    EXPECT_TRUE(bytes_of(files.log).ends_with("SaveProject - <next/>\r\n"));
    return Child::kPassed;
  };
  expect_passed(in_child(attempt), "mount a small disk");
}

TEST(FullDisk, IsToldInTheSameWayByALimitOfTheProcess) {
  const TempFolder folder;
  const auto attempt = [&] {
    ::signal(SIGXFSZ, SIG_IGN);
    const Files files(folder.file("limited"));
    std::filesystem::create_directory(folder.file("limited"));
    write_port("8888");
    const std::string good = bytes_of(files.settings);
    const rlimit limit{.rlim_cur = 50'000, .rlim_max = RLIM_INFINITY};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return Child::kCannotTry;
    expect_full_disk_is_told(good, files);
    return Child::kPassed;
  };
  expect_passed(in_child(attempt), "limit the size of its files");
}

TEST(ReadOnlyFolder, FailsTheWritingOfSettingsAndTheLineForTheDalAlone) {
  const TempFolder folder;
  const auto attempt = [&] {
    const std::string place = folder.file("place");
    std::filesystem::create_directory(place);
    const Files files(place);
    put_bytes(files.settings, "['Software\\Brimvale']\nport = '8888'\n");
    const std::string good = bytes_of(files.settings);
    // The administrator may write everywhere, so it has to be somebody else.
    constexpr uid_t kNobody = 65534;
    ::chmod(folder.file("").c_str(), 0755);
    ::chmod(place.c_str(), 0555);
    ::chmod(files.settings.c_str(), 0444);
    if (::geteuid() == 0 && (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)) {
      return Child::kCannotTry;
    }
    EXPECT_EQ(read_port(), "8888");
    EXPECT_EQ(number_of_write("9999"), from_bits(0x80041002));
    EXPECT_EQ(bytes_of(files.settings), good);
    const Error line = error_of([] { Global::DALMessageToLog("SaveProject", "<xml/>"); });
    EXPECT_EQ(line.number, from_bits(0x80041003));
    EXPECT_NO_THROW(make_file_logger()->LogInfo("C", "m", "a line", 0));
    EXPECT_FALSE(files_test::exists(files.log));
    return Child::kPassed;
  };
  const Child ending = in_child(attempt);
  ::chmod(folder.file("place").c_str(), 0755);
  expect_passed(ending, "become another user");
}

TEST(SettingsFile, IsReadWholeWhileItIsReplacedAgainAndAgain) {
  const TempFolder folder;
  const Files files(folder.file(""));
  // Longer than a block in which files are read, and of different lengths.
  const auto version = [](char letter, std::size_t size) {
    return "['Software\\Brimvale']\nport = '" + std::string(1, letter) + "'\nfill = '" +
           std::string(size, letter) + "'\nend = '" + std::string(1, letter) + "'\n";
  };
  put_bytes(files.settings, version('a', 40'000));
  std::atomic<bool> enough = false;
  std::atomic<int> replaced = 0;
  std::thread writer([&] {
    for (int turn = 0; !enough; ++turn) {
      const bool odd = turn % 2 != 0;
      put_bytes(files.settings + ".other", version(odd ? 'a' : 'b', odd ? 40'000 : 70'000));
      std::filesystem::rename(files.settings + ".other", files.settings);
      ++replaced;
    }
  });
  const auto settings = make_settings_files();
  const auto read = [&](const char* name) {
    return settings->ReadString(SettingsRoot::kCurrentUser, "Software\\Brimvale", name);
  };
  int reads = 0;
  while (reads < 300 || replaced < 100) {
    ++reads;
    const std::string fill = read("fill");
    const bool is_whole = fill == std::string(40'000, 'a') || fill == std::string(70'000, 'b');
    EXPECT_TRUE(is_whole) << fill.size();
    const std::string port = read("port");
    EXPECT_TRUE(port == "a" || port == "b") << port;
    if (HasFailure()) break;
  }
  enough = true;
  writer.join();
}

TEST(SettingsFile, IsWrittenByTwoThreadsWithoutLosingAValue) {
  const TempFolder folder;
  const Files files(folder.file(""));
  const auto write_all = [](const std::string& prefix) {
    const auto settings = make_settings_files();
    for (int i = 0; i < 20; ++i) {
      settings->Write("HKCU\\Software\\" + prefix + std::to_string(i), std::int64_t{i}, "");
    }
  };
  std::thread other([&] { write_all("other"); });
  write_all("own");
  other.join();
  const auto settings = make_settings_files();
  for (int i = 0; i < 20; ++i) {
    EXPECT_TRUE(settings->Exists("HKCU\\Software\\own" + std::to_string(i))) << i;
    EXPECT_TRUE(settings->Exists("HKCU\\Software\\other" + std::to_string(i))) << i;
  }
}

}  // namespace
}  // namespace bvconn::test

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "bvconn/platform/settings/file_store.h"
#include "files/settings_fixture.h"

// What settings have on a system of this kind alone: links, permissions, folders of the
// environment.
namespace bvconn::files_test {
namespace {

using SettingsFiles = SettingsFixture;
using SettingsWrite = SettingsFixture;
using detail::resolve_links;

TEST_F(SettingsFiles, WithoutVariablesTheUsersFileLiesInTheConfigurationFolder) {
  const ScopedEnvironment no_file("BVCONN_USER_SETTINGS", "");
  const ScopedEnvironment home("HOME", folder_.file("home"));
  {
    const ScopedEnvironment config("XDG_CONFIG_HOME", folder_.file("config"));
    settings()->Write(kTraceSwitch, std::string("in config"), "REG_SZ");
  }
  const ScopedEnvironment no_config("XDG_CONFIG_HOME", nullptr);
  settings()->Write(kTraceSwitch, std::string("in home"), "REG_SZ");
  EXPECT_TRUE(bytes_of(folder_.file("config/bvconn/settings.toml")).find("in config") !=
              std::string::npos);
  EXPECT_TRUE(bytes_of(folder_.file("home/.config/bvconn/settings.toml")).find("in home") !=
              std::string::npos);
}

TEST_F(SettingsWrite, MakesFileAndFoldersForTheOwnerAlone) {
  settings()->Write(kTraceSwitch, std::int64_t{0}, "");
  EXPECT_TRUE(settings()->Exists(kTraceSwitch));
  EXPECT_EQ(settings()->ReadString(kUser, kAppData, "TraceSoapTraffic"), "0");
  EXPECT_EQ(mode_of(folder_.file("user")), 0700U);
  EXPECT_EQ(mode_of(user()), 0600U);
}

TEST_F(SettingsWrite, AFolderThatCannotBeMadeIsNamed) {
  put_bytes(folder_.file("user"), "a file");
  const Error error = error_of([] { settings()->Write(kTraceSwitch, std::int64_t{0}, ""); });
  EXPECT_EQ(hex_number(error.number), "0x80041002");
  EXPECT_EQ(error.source, "RegistryAccess");
  EXPECT_EQ(error.description,
            "Cannot lock the settings file \"" + user() + ".lock\": Not a directory");
}

TEST_F(SettingsWrite, AUserWithoutAHomeCannotWrite) {
  const ScopedEnvironment file("BVCONN_USER_SETTINGS", nullptr);
  const ScopedEnvironment config("XDG_CONFIG_HOME", nullptr);
  const ScopedEnvironment home("HOME", nullptr);
  EXPECT_FALSE(settings()->Exists(kTraceSwitch));
  const Error error = error_of([] { settings()->Write(kTraceSwitch, std::int64_t{0}, ""); });
  EXPECT_EQ(hex_number(error.number), "0x80041002");
}

TEST_F(SettingsWrite, ASymbolicLinkStaysAndItsTargetIsWritten) {
  put_machine("a = 1\n");
  std::filesystem::create_directories(folder_.file("user"));
  std::filesystem::create_symlink("../machine/settings.toml", user());
  settings()->Write(R"(HKCU\k\v)", std::int64_t{5}, "");
  EXPECT_TRUE(std::filesystem::is_symlink(user()));
  EXPECT_EQ(bytes_of(machine()), "a = 1\n\n[k]\nv = 5\n");
}

TEST_F(SettingsWrite, PermissionsOfAFileThatIsThereAreKept) {
  put_machine("a = 1\n");
  std::filesystem::permissions(machine(), std::filesystem::perms(0644));
  settings()->Write(R"(HKLM\k\v)", std::int64_t{5}, "");
  EXPECT_EQ(mode_of(machine()), 0644U);
}

TEST_F(SettingsWrite, TwoProcessesThatWriteLoseNothing) {
  constexpr int kValues = 60;
  const auto write_all = [](std::string_view key) {
    for (int i = 0; i < kValues; ++i) {
      const std::string path = "HKCU\\" + std::string(key) + "\\v" + std::to_string(i);
      make_settings_files()->Write(path, std::int64_t{i}, "");
    }
  };
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    try {
      write_all("child");
    } catch (const Error&) {
      ::_exit(1);
    }
    ::_exit(0);
  }
  write_all("parent");
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  for (int i = 0; i < kValues; ++i) {
    const std::string name = "v" + std::to_string(i);
    EXPECT_EQ(settings()->ReadString(kUser, "child", name), std::to_string(i));
    EXPECT_EQ(settings()->ReadString(kUser, "parent", name), std::to_string(i));
  }
}

TEST_F(ChangedSettings, AreSeenWhenARewrittenFileIsGivenItsOldTimeAgain) {
  put_old_file("1111");
  struct stat before {};
  ASSERT_EQ(::stat(user().c_str(), &before), 0);
  overwrite(user(), settings_with("2222"));
  const struct timespec times[2] = {before.st_atim, before.st_mtim};
  ASSERT_EQ(::utimensat(AT_FDCWD, user().c_str(), times, 0), 0);
  EXPECT_EQ(port(), "2222");
}

TEST_F(ChangedSettings, AreSeenWhenALinkLeadsToAnotherFile) {
  put_bytes(folder_.file("one.toml"), settings_with("1111"));
  put_bytes(folder_.file("two.toml"), settings_with("2222"));
  std::filesystem::create_directories(folder_.file("user"));
  std::filesystem::create_symlink(folder_.file("one.toml"), user());
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  EXPECT_EQ(port(), "1111");
  std::filesystem::remove(user());
  std::filesystem::create_symlink(folder_.file("two.toml"), user());
  EXPECT_EQ(port(), "2222");
}

TEST_F(ChangedSettings, AreSeenWhenAFileBecomesUnreadable) {
  if (::geteuid() == 0) GTEST_SKIP() << "root reads everything";
  put_old_file("1111");
  ASSERT_EQ(::chmod(user().c_str(), 0), 0);
  EXPECT_THROW(port(), Error);
}

TEST_F(ChangedSettings, AreWaitedForWithoutOpeningTheFile) {
  put_old_file("1111");
  const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  ASSERT_GE(::inotify_add_watch(watch, user().c_str(), IN_OPEN), 0);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(port(), "1111");
  alignas(inotify_event) char events[1024];
  EXPECT_EQ(::read(watch, events, sizeof events), -1) << "the file was opened";
  overwrite(user(), settings_with("2222"));
  EXPECT_EQ(port(), "2222");
  EXPECT_GT(::read(watch, events, sizeof events), 0);
  ::close(watch);
}

TEST(FileLock, IsTheOwnersAlone) {
  const TempFolder folder;
  const std::string path = folder.file("settings.toml.lock");
  { const detail::FileLock held(path, std::chrono::milliseconds(0)); }
  EXPECT_EQ(mode_of(path), 0600U);
}

TEST(ResolveLinks, FollowsChainsRelativeToEachLink) {
  const TempFolder folder;
  std::filesystem::create_directories(folder.file("x"));
  std::filesystem::create_symlink("x/second", folder.file("first"));
  std::filesystem::create_symlink("../absent.toml", folder.file("x/second"));
  EXPECT_EQ(resolve_links(folder.file("first")), folder.file("x/../absent.toml"));
  EXPECT_EQ(resolve_links(folder.file("plain")), folder.file("plain"));
}

TEST(ResolveLinks, ACircleIsAnError) {
  const TempFolder folder;
  std::filesystem::create_symlink("b", folder.file("a"));
  std::filesystem::create_symlink("a", folder.file("b"));
  EXPECT_THROW(resolve_links(folder.file("a")), Error);
}

}  // namespace
}  // namespace bvconn::files_test

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "bvconn/platform/settings/file_stamp.h"
#include "bvconn/platform/settings/settings_moment.h"
#include "files/settings_fixture.h"

namespace bvconn::files_test {
namespace {

std::string settings_with(std::string_view port) {
  return "['" + std::string(kAppData) + "']\ntracePort = \"" + std::string(port) + "\"\n";
}

/// Writes over what is there, so that the file stays the same one.
void overwrite(const std::string& path, std::string_view bytes) {
  const int file = ::open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
  ASSERT_GE(file, 0);
  EXPECT_EQ(::write(file, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  ::close(file);
}

class ChangedSettings : public SettingsFixture {
 protected:
  static std::string port() { return settings()->ReadString(kUser, kAppData, "tracePort"); }

  /// A file that has not changed for so long that its stamp is trusted, and that was read since.
  void put_old_file(std::string_view known_port) {
    put_user(settings_with(known_port));
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    ASSERT_EQ(port(), known_port);
    ASSERT_EQ(port(), known_port);
  }
};

TEST_F(ChangedSettings, AreSeenWhenAnOldFileIsRewrittenInPlace) {
  put_old_file("1111");
  overwrite(user(), settings_with("2222"));
  EXPECT_EQ(port(), "2222");
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

TEST_F(ChangedSettings, AreAnotherStateThanThoseOfBefore) {
  const auto state = [] { return detail::settings_state(*settings(), kUser); };
  put_old_file("1111");
  const auto first = state();
  EXPECT_NE(first, 0U);
  EXPECT_EQ(state(), first);
  overwrite(user(), settings_with("2222"));
  EXPECT_EQ(state(), 0U);
  ASSERT_EQ(port(), "2222");
  EXPECT_EQ(state(), 0U);  // Too new to tell a further change from this one.
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  ASSERT_EQ(port(), "2222");
  EXPECT_NE(state(), 0U);
  EXPECT_NE(state(), first);
}

TEST_F(ChangedSettings, AreSeenWhenAnotherFileIsMovedIntoTheOldOnesPlace) {
  put_old_file("1111");
  put_bytes(folder_.file("new.toml"), settings_with("2222"));
  std::filesystem::last_write_time(folder_.file("new.toml"),
                                   std::filesystem::last_write_time(user()));
  std::filesystem::rename(folder_.file("new.toml"), user());
  EXPECT_EQ(port(), "2222");
}

TEST_F(ChangedSettings, AreSeenWhenTheFileIsRemovedAndMadeAgain) {
  put_old_file("1111");
  std::filesystem::remove(user());
  EXPECT_EQ(port(), "");
  put_user(settings_with("2222"));
  EXPECT_EQ(port(), "2222");
}

TEST_F(ChangedSettings, AreSeenWhenTheVariableNamesAnotherFile) {
  put_old_file("1111");
  put_bytes(folder_.file("other.toml"), settings_with("2222"));
  {
    const ScopedEnvironment other("BVCONN_USER_SETTINGS", folder_.file("other.toml"));
    EXPECT_EQ(port(), "2222");
  }
  EXPECT_EQ(port(), "1111");
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

// Within one step of the file system's clock the times are the same, and so are size and inode.
TEST_F(ChangedSettings, AreSeenHoweverFastTheyFollowOneAnother) {
  put_user(settings_with("0000"));
  for (int i = 0; i < 500; ++i) {
    const std::string next = std::to_string(1000 + i);
    overwrite(user(), settings_with(next));
    ASSERT_EQ(port(), next);
  }
}

TEST_F(ChangedSettings, AreSeenWhenAFileBecomesUnreadable) {
  if (::geteuid() == 0) GTEST_SKIP() << "root reads everything";
  put_old_file("1111");
  ASSERT_EQ(::chmod(user().c_str(), 0), 0);
  EXPECT_THROW(port(), Error);
}

TEST_F(ChangedSettings, AreSeenAfterAWriteOfThisThread) {
  put_old_file("1111");
  settings()->Write(kTraceSwitch, std::string("True"), "REG_SZ");
  EXPECT_EQ(settings()->ReadString(kUser, kAppData, "TraceSoapTraffic"), "True");
  EXPECT_EQ(port(), "1111");
}

TEST_F(ChangedSettings, AreSeenByEachThread) {
  put_old_file("1111");
  overwrite(user(), settings_with("2222"));
  std::thread([] { EXPECT_EQ(port(), "2222"); }).join();
  EXPECT_EQ(port(), "2222");
}

TEST_F(ChangedSettings, AreOfOneStateWithinAMoment) {
  put_old_file("1111");
  {
    const detail::SettingsMoment moment;
    EXPECT_EQ(port(), "1111");
    overwrite(user(), settings_with("2222"));
    EXPECT_EQ(port(), "1111");
  }
  EXPECT_EQ(port(), "2222");
}

TEST_F(ChangedSettings, OfThisThreadEndWhatAMomentSaw) {
  put_old_file("1111");
  const detail::SettingsMoment moment;
  EXPECT_FALSE(settings()->Exists(kTraceSwitch));
  settings()->Write(kTraceSwitch, std::int64_t{0}, "");
  EXPECT_TRUE(settings()->Exists(kTraceSwitch));
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

TEST(FileStamp, IsTrustedWhenItIsOlderThanAStepOfItsClock) {
  constexpr std::int64_t kSecond_ns = 1'000'000'000;
  const detail::FileStamp fine{.content_ns = 5 * kSecond_ns, .status_ns = 10 * kSecond_ns + 7};
  EXPECT_FALSE(detail::can_be_trusted(fine, 10 * kSecond_ns + 100'000'000));
  EXPECT_TRUE(detail::can_be_trusted(fine, 10 * kSecond_ns + 100'000'008));
  const detail::FileStamp coarse{.content_ns = 5 * kSecond_ns, .status_ns = 10 * kSecond_ns};
  EXPECT_FALSE(detail::can_be_trusted(coarse, 13 * kSecond_ns));
  EXPECT_TRUE(detail::can_be_trusted(coarse, 13 * kSecond_ns + 1));
  const detail::FileStamp ahead{.content_ns = 90 * kSecond_ns, .status_ns = 10 * kSecond_ns + 7};
  EXPECT_FALSE(detail::can_be_trusted(ahead, 20 * kSecond_ns)) << "from a clock that is ahead";
}

}  // namespace
}  // namespace bvconn::files_test

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "bvconn/platform/settings/file_stamp.h"
#include "bvconn/platform/settings/settings_moment.h"
#include "files/settings_fixture.h"

namespace bvconn::files_test {
namespace {

TEST_F(ChangedSettings, AreSeenWhenAnOldFileIsRewrittenInPlace) {
  put_old_file("1111");
  overwrite(user(), settings_with("2222"));
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

// Within one step of the file system's clock the times are the same, and so are size and inode.
TEST_F(ChangedSettings, AreSeenHoweverFastTheyFollowOneAnother) {
  put_user(settings_with("0000"));
  for (int i = 0; i < 500; ++i) {
    const std::string next = std::to_string(1000 + i);
    overwrite(user(), settings_with(next));
    ASSERT_EQ(port(), next);
  }
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

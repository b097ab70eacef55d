#include "files/settings_fixture.h"

namespace bvconn::files_test {
namespace {

using test::error_of;

/// Settings that are to be kept in what is no file.
class SettingsInNoFile : public SettingsFixture {
 protected:
  /// The description of the error of reading from there, which is that of an unusable file.
  static std::string refusal(const std::string& path) {
    const ScopedEnvironment place("BVCONN_USER_SETTINGS", path);
    const Error error = error_of([] { settings()->ReadString(kUser, kAppData, "port"); });
    EXPECT_EQ(hex_number(error.number), "0x80041002");
    return error.description;
  }
  static Error writing_error() {
    return error_of([] { settings()->Write(kTraceSwitch, std::int64_t{0}, ""); });
  }
};

TEST_F(SettingsInNoFile, APipeIsRefusedWithoutWaiting) {
  const std::string path = pipe_at(folder_.file("settings.toml"));
  EXPECT_EQ(refusal(path), "Cannot read the settings file \"" + path +
                               "\": It is neither a regular file nor /dev/null");
}

TEST_F(SettingsInNoFile, ADeviceIsRefused) {
  EXPECT_EQ(refusal("/dev/zero"),
            "Cannot read the settings file \"/dev/zero\": It is neither a regular file nor "
            "/dev/null");
}

TEST_F(SettingsInNoFile, ThePipeOfALockIsRefused) {
  const ScopedEnvironment place("BVCONN_USER_SETTINGS", folder_.file("s.toml"));
  const std::string path = pipe_at(folder_.file("s.toml.lock"));
  EXPECT_EQ(writing_error().description, "Cannot lock the settings file \"" + path +
                                             "\": It is neither a regular file nor /dev/null");
}

TEST_F(SettingsInNoFile, TheNullDeviceHoldsNoValuesAndIsNeverReplaced) {
  const std::string path = folder_.file("null.toml");
  const ScopedEnvironment place("BVCONN_USER_SETTINGS", path);
  std::filesystem::create_symlink("/dev/null", path);
  EXPECT_EQ(settings()->ReadString(kUser, kAppData, "port"), "");
  const Error error = writing_error();
  EXPECT_EQ(hex_number(error.number), "0x80041002");
  EXPECT_EQ(error.description,
            "Cannot write the settings file \"/dev/null\": It is no regular file");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

}  // namespace
}  // namespace bvconn::files_test

#include <atomic>
#include <chrono>
#include <thread>

#include "files/settings_fixture.h"

namespace bvconn::files_test {
namespace {

using SettingsWrite = SettingsFixture;

TEST_F(SettingsWrite, TheFormIsATableWithTheKeyAsItsName) {
  settings()->Write(R"(HKCU\Soft\App\port)", std::string("8888"), "REG_SZ");
  EXPECT_EQ(bytes_of(user()), "['Soft\\App']\nport = '8888'\n");
}

TEST_F(SettingsWrite, AWholeNumberStaysOneUnlessATextIsAskedFor) {
  settings()->Write(R"(HKCU\k\number)", std::int64_t{7}, "");
  settings()->Write(R"(HKCU\k\text)", std::int64_t{9}, "REG_SZ");
  EXPECT_EQ(bytes_of(user()), "[k]\nnumber = 7\ntext = '9'\n");
}

TEST_F(SettingsWrite, ReplacesAValueWhateverItsSpelling) {
  put_user("['Software\\Brimvale\\Torvex\\AppData']\ntracesoaptraffic = 0\n");
  settings()->Write(kTraceSwitch, std::string("True"), "REG_SZ");
  EXPECT_EQ(bytes_of(user()),
            "['Software\\Brimvale\\Torvex\\AppData']\ntracesoaptraffic = 'True'\n");
}

TEST_F(SettingsWrite, AddsToATableThatIsThereInAnotherSpelling) {
  put_user("[software.brimvale.torvex.APPDATA]\nother = 1\n");
  settings()->Write(kTraceSwitch, std::string("True"), "REG_SZ");
  EXPECT_EQ(bytes_of(user()),
            "[software.brimvale.torvex.APPDATA]\nTraceSoapTraffic = 'True'\nother = 1\n");
}

TEST_F(SettingsWrite, KeepsWhatOthersHaveWritten) {
  put_user(R"(top = 1
[other]
text = """two
lines"""
list = [1, 'a', {x = 2}]
when = 2007-01-05T10:00:00Z
float = 0.1
'quoted\key' = "\u0007 \u00e4"
[[many]]
n = 1
[[many]]
n = 2
)");
  settings()->Write(kTraceSwitch, std::string("True"), "REG_SZ");
  const std::string first = bytes_of(user());
  settings()->Write(kTraceSwitch, std::string("True"), "REG_SZ");
  EXPECT_EQ(bytes_of(user()), first);
  for (const char* kept : {"top = 1", "2007-01-05T10:00:00Z", "float = 0.1", "x = 2", "n = 2"}) {
    EXPECT_NE(first.find(kept), std::string::npos) << kept << " in\n" << first;
  }
  EXPECT_EQ(settings()->ReadString(kUser, "other", "text"), "two\nlines");
  EXPECT_EQ(settings()->ReadString(kUser, "other", "quoted\\key"), "\a \xC3\xA4");
}

TEST_F(SettingsWrite, AnyTextComesBackAsItWas) {
  const std::string text =
      "quote ' \" backslash \\ tab \t line\r\nend \x1B \xE2\x82\xAC ''' \"\"\"";
  settings()->Write(R"(HKCU\k\text)", text, "REG_SZ");
  EXPECT_EQ(settings()->ReadString(kUser, "k", "text"), text);
}

TEST_F(SettingsWrite, TheTwoRootsAreWrittenApart) {
  settings()->Write(R"(HKLM\k\v)", std::string("machine"), "");
  settings()->Write(R"(HKEY_CURRENT_USER\k\v)", std::string("user"), "");
  EXPECT_EQ(settings()->ReadString(kMachine, "k", "v"), "machine");
  EXPECT_EQ(settings()->ReadString(kUser, "k", "v"), "user");
}

TEST_F(SettingsWrite, AFileThatIsNoTomlIsLeftAsItIs) {
  put_user("not toml\n");
  const Error error = error_of([] { settings()->Write(kTraceSwitch, std::int64_t{0}, ""); });
  EXPECT_EQ(hex_number(error.number), "0x80041001");
  EXPECT_EQ(bytes_of(user()), "not toml\n");
}

TEST_F(SettingsWrite, TextThatIsNoUtf8IsRefused) {
  put_user("a = 1\n");
  const Error error =
      error_of([] { settings()->Write(kTraceSwitch, std::string("\xFF"), "REG_SZ"); });
  EXPECT_EQ(hex_number(error.number), "0x80041002");
  EXPECT_EQ(bytes_of(user()), "a = 1\n");
}

TEST_F(SettingsWrite, ATableIsNeverReplacedByAValue) {
  put_user("[k.v]\nx = 1\n");
  EXPECT_EQ(
      hex_number(error_of([] { settings()->Write(R"(HKCU\k\v)", std::int64_t{5}, ""); }).number),
      "0x80041002");
  put_user("k = 1\n");
  EXPECT_EQ(
      hex_number(error_of([] { settings()->Write(R"(HKCU\k\v)", std::int64_t{5}, ""); }).number),
      "0x80041002");
  EXPECT_EQ(bytes_of(user()), "k = 1\n");
}

TEST_F(SettingsWrite, TwoThreadsThatWriteLoseNothing) {
  constexpr int kValues = 60;
  const auto write_all = [](std::string_view key) {
    for (int i = 0; i < kValues; ++i) {
      const std::string path = "HKCU\\" + std::string(key) + "\\v" + std::to_string(i);
      make_settings_files()->Write(path, std::int64_t{i}, "");
    }
  };
  std::thread other(write_all, "other");
  write_all("first");
  other.join();
  for (int i = 0; i < kValues; ++i) {
    const std::string name = "v" + std::to_string(i);
    EXPECT_EQ(settings()->ReadString(kUser, "other", name), std::to_string(i));
    EXPECT_EQ(settings()->ReadString(kUser, "first", name), std::to_string(i));
  }
}

TEST_F(SettingsWrite, ReadersNeverSeeHalfAFile) {
  settings()->Write(R"(HKCU\k\v)", std::string(20000, 'a'), "");
  std::atomic<bool> done = false;
  std::thread writer([&done] {
    for (int i = 0; i < 50; ++i) {
      const std::string text(20000, i % 2 == 0 ? 'b' : 'a');
      EXPECT_NO_THROW(make_settings_files()->Write(R"(HKCU\k\v)", text, ""));
    }
    done = true;
  });
  do {
    EXPECT_EQ(settings()->ReadString(kUser, "k", "v").size(), 20000U);
#if defined(_WIN32)  // Nobody takes the place of a file there while it is read.
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
#endif
  } while (!done);
  writer.join();
}

}  // namespace
}  // namespace bvconn::files_test

#include "files/settings_fixture.h"

namespace bvconn::files_test {
namespace {

using SettingsFiles = SettingsFixture;

TEST_F(SettingsFiles, AnAbsentFileHoldsNoValues) {
  EXPECT_EQ(settings()->ReadString(kMachine, kAppData, "tracePort"), "");
  EXPECT_EQ(settings()->ReadNumber(kMachine, kAppData, "defaultTimeOut"), 0);
  EXPECT_FALSE(settings()->Exists(kTraceSwitch));
  EXPECT_FALSE(exists(folder_.file("user")));
}

TEST_F(SettingsFiles, ReadsTheValuesOfAKey) {
  put_machine(R"(
['Software\Brimvale\Torvex\AppData']
tracePort = "8888"
defaultTimeOut = 60000
)");
  EXPECT_EQ(settings()->ReadString(kMachine, kAppData, "tracePort"), "8888");
  EXPECT_EQ(settings()->ReadNumber(kMachine, kAppData, "defaultTimeOut"), 60000);
}

TEST_F(SettingsFiles, TheTwoRootsAreTwoFiles) {
  put_machine("['Software\\Brimvale\\Torvex\\AppData']\nwhere = 'machine'\n");
  put_user("['Software\\Brimvale\\Torvex\\AppData']\nwhere = 'user'\n");
  EXPECT_EQ(settings()->ReadString(kMachine, kAppData, "where"), "machine");
  EXPECT_EQ(settings()->ReadString(kUser, kAppData, "where"), "user");
}

TEST_F(SettingsFiles, KeysAndNamesKnowNoCase) {
  put_machine("['SOFTWARE\\brimvale\\Torvex\\APPData']\nTracePORT = '1'\n");
  EXPECT_EQ(settings()->ReadString(kMachine, kAppData, "tracePort"), "1");
  EXPECT_TRUE(settings()->Exists(R"(hklm\software\BRIMVALE\torvex\appdata\TRACEPORT)"));
}

TEST_F(SettingsFiles, AKeyMayBeSpreadOverNestedTables) {
  put_machine("[Software.Brimvale.'Torvex\\AppData']\nport = '2'\n");
  EXPECT_EQ(settings()->ReadString(kMachine, kAppData, "port"), "2");
  put_machine("[software.BRIMVALE.Torvex.appdata]\nport = '3'\n");
  EXPECT_EQ(settings()->ReadString(kMachine, kAppData, "port"), "3");
}

TEST_F(SettingsFiles, TwoSpellingsOfAKeyAreOneKey) {
  put_user(R"(
['Software\Brimvale\Torvex\AppData']
first = "1"
['Software\Brimvale\Torvex\appData']
second = "2"
)");
  EXPECT_EQ(settings()->ReadString(kUser, kAppData, "first"), "1");
  EXPECT_EQ(settings()->ReadString(kUser, kAppData, "second"), "2");
}

TEST_F(SettingsFiles, PartOfAKeysNameIsNotTheKey) {
  put_machine(
      "['Software\\Brimvale\\Torvex\\AppDataOld']\nport = '1'\n"
      "['Software\\Brimvale\\Tor']\nport = '2'\n");
  EXPECT_EQ(settings()->ReadString(kMachine, kAppData, "port"), "");
  EXPECT_FALSE(settings()->Exists(R"(HKLM\Software\Brimvale\Torvex\port)"));
}

TEST_F(SettingsFiles, ExistsKnowsBothNamesOfARoot) {
  put_user("['Software\\Brimvale\\Torvex\\AppData']\nTraceSoapTraffic = 'False'\n");
  EXPECT_TRUE(settings()->Exists(kTraceSwitch));
  EXPECT_TRUE(
      settings()->Exists(R"(HKEY_CURRENT_USER\Software\Brimvale\Torvex\AppData\TraceSoapTraffic)"));
  EXPECT_FALSE(settings()->Exists(
      R"(HKEY_LOCAL_MACHINE\Software\Brimvale\Torvex\AppData\TraceSoapTraffic)"));
  EXPECT_FALSE(settings()->Exists(R"(HKLM\Software\Brimvale\Torvex\AppData\TraceSoapTraffic)"));
  EXPECT_FALSE(settings()->Exists(R"(HKCU\Software\Brimvale\Torvex\AppData)"));
}

TEST_F(SettingsFiles, APathWithoutAKnownRootIsAnError) {
  for (const char* path : {"", "HKCU", "TraceSoapTraffic", "HKCR\\a\\b", "\\a\\b"}) {
    const Error error = error_of([&] { settings()->Exists(path); });
    EXPECT_EQ(hex_number(error.number), "0x80041002") << path;
    EXPECT_EQ(error.source, "RegistryAccess") << path;
  }
}

TEST_F(SettingsFiles, EveryPlainValueHasAText) {
  put_machine(R"(['Software\Brimvale\Torvex\AppData']
text = 'a "b"'
integer = -12
hexadecimal = 0x10
float = 1.5
yes = true
no = false
)");
  const auto text = [](std::string_view name) {
    return settings()->ReadString(kMachine, kAppData, name);
  };
  EXPECT_EQ(text("text"), "a \"b\"");
  EXPECT_EQ(text("integer"), "-12");
  EXPECT_EQ(text("hexadecimal"), "16");
  EXPECT_EQ(text("float"), "1.5");
  EXPECT_EQ(text("yes"), "True");
  EXPECT_EQ(text("no"), "False");
}

TEST_F(SettingsFiles, TextIsConvertedToANumber) {
  put_machine(
      "['Software\\Brimvale\\Torvex\\AppData']\na = ' 5e3 '\nb = 2.5\nc = -7\n"
      "d = 9223372036854775807\n");
  const auto number = [](std::string_view name) {
    return settings()->ReadNumber(kMachine, kAppData, name);
  };
  EXPECT_EQ(number("a"), 5000);
  EXPECT_EQ(number("b"), 2.5);
  EXPECT_EQ(number("c"), -7);
  EXPECT_EQ(number("d"), 9223372036854775808.0);
}

TEST_F(SettingsFiles, WhatIsNoNumberFailsWith13) {
  put_machine("['Software\\Brimvale\\Torvex\\AppData']\na = 'soon'\nb = ''\nc = true\nd = [1]\n");
  for (const char* name : {"a", "b", "c", "d"}) {
    EXPECT_EQ(error_of([&] { settings()->ReadNumber(kMachine, kAppData, name); }).number, 13)
        << name;
  }
}

TEST_F(SettingsFiles, AnArrayIsNoText) {
  put_machine("['Software\\Brimvale\\Torvex\\AppData']\nlist = ['a']\n");
  const Error error = error_of([] { settings()->ReadString(kMachine, kAppData, "list"); });
  EXPECT_EQ(error.number, 13);
  EXPECT_EQ(error.source, "BVConn");
  EXPECT_EQ(error.description, "The value \"list\" in \"" + machine() + "\" is no text");
}

TEST_F(SettingsFiles, WhatIsNoTomlFailsWithFileLineAndColumn) {
  put_machine("# settings\n[a]\nport = 88x88\n");
  const Error error = error_of([] { settings()->ReadString(kMachine, kAppData, "port"); });
  EXPECT_EQ(hex_number(error.number), "0x80041001");
  EXPECT_EQ(error.source, "RegistryAccess");
  EXPECT_TRUE(error.description.starts_with("The settings file \"" + machine() +
                                            "\" is not TOML at line 3, column 10: "))
      << error.description;
}

TEST_F(SettingsFiles, AFileThatCannotBeReadFailsWithFileAndReason) {
  std::filesystem::create_directories(machine());
  const Error error = error_of([] { settings()->ReadString(kMachine, kAppData, "port"); });
  EXPECT_EQ(hex_number(error.number), "0x80041002");
  EXPECT_EQ(error.source, "RegistryAccess");
  EXPECT_EQ(error.description,
            "Cannot read the settings file \"" + machine() + "\": Is a directory");
}

TEST_F(SettingsFiles, TheFileIsReadAtEachUse) {
  const auto access = settings();
  put_user("['Software\\Brimvale\\Torvex\\AppData']\nTraceSoapTraffic = 'False'\n");
  EXPECT_EQ(access->ReadString(kUser, kAppData, "TraceSoapTraffic"), "False");
  put_user("['Software\\Brimvale\\Torvex\\AppData']\nTraceSoapTraffic = 'True'\n");
  EXPECT_EQ(access->ReadString(kUser, kAppData, "TraceSoapTraffic"), "True");
}

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

}  // namespace
}  // namespace bvconn::files_test

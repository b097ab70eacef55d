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

/// The error of reading a value, which says where the file is at fault.
Error reading_error() {
  return error_of([] { make_settings_files()->ReadString(kMachine, kAppData, "port"); });
}

std::string dotted_key(int parts) {
  std::string key = "a";
  for (int i = 1; i < parts; ++i) key += ".a";
  return key;
}

std::string nested_arrays(int depth) {
  const auto count = static_cast<std::size_t>(depth);
  return "x = " + std::string(count, '[') + std::string(count, ']') + "\n";
}

TEST_F(SettingsFiles, MayNest100Deep) {
  for (const std::string& toml :
       {dotted_key(100) + " = 1\n", "[" + dotted_key(99) + "]\nb = 1\n", nested_arrays(99)}) {
    put_machine(toml + "[Software.Brimvale.Torvex.AppData]\nport = '1'\n");
    EXPECT_EQ(settings()->ReadString(kMachine, kAppData, "port"), "1") << toml;
  }
}

TEST_F(SettingsFiles, ADeeperFileIsNotRead) {
  for (const std::string& toml :
       {dotted_key(101) + " = 1\n", "[" + dotted_key(101) + "]\nb = 1\n", nested_arrays(100),
        "[" + dotted_key(50) + "]\n" + dotted_key(51) + " = 1\n",
        "x = {" + dotted_key(60) + " = {" + dotted_key(60) + " = 1}}\n",
        "s = \"\"\"\n[\\\"\"\"\"\"\n" + dotted_key(100'000) + " = 1\n"}) {
    put_machine(toml);
    const Error error = reading_error();
    EXPECT_EQ(hex_number(error.number), "0x80041001") << toml.substr(0, 300);
    EXPECT_TRUE(error.description.ends_with("it nests deeper than 100 levels"))
        << error.description;
  }
}

TEST_F(SettingsFiles, ATooDeepFileIsNamedWithThePlace) {
  put_machine("a = 1\n'\xC3\xA9' = " + std::string(100, '[') + "\n");
  EXPECT_EQ(reading_error().description,
            "The settings file \"" + machine() +
                "\" is not TOML at line 2, column 106: it nests deeper than 100 levels");
}

TEST_F(SettingsFiles, AHeaderThatBeginsWithNoKeyIsNamedWithThePlace) {
  for (const std::string_view header :
       {"[?]", "[[?]]", "[ \t=]", "[#]", "[\n]", "[.a]", "[\xC3\xA9]", "\xEF\xBB\xBF[?]"}) {
    put_machine(header);
    const Error error = reading_error();
    EXPECT_EQ(hex_number(error.number), "0x80041001") << header;
  }
  put_machine("a = 1\n[ ?]\n");
  EXPECT_EQ(reading_error().description,
            "The settings file \"" + machine() +
                "\" is not TOML at line 2, column 3: a table's header begins with no key");
}

TEST_F(SettingsFiles, WhatTheReaderHoldsForImpossibleIsNamedWithItsLine) {
  for (const std::string_view value : {"[}", "[1, }", "07:00:", "07:00:x", "1979-05-27T07:00:"}) {
    put_machine("a = 1\nb = " + std::string(value) + "\nc = 2\n");
    const Error error = reading_error();
    EXPECT_EQ(hex_number(error.number), "0x80041001") << value;
    EXPECT_NE(error.description.find("is not TOML at line 2, column"), std::string::npos)
        << value << ": " << error.description;
  }
}

TEST_F(SettingsFiles, ALetterBeyondAsciiOutsideTextIsNamedWithItsPlace) {
  for (const std::string_view text :
       {"\xC3\xA9 = 1\n", "a = \xC3\xA9\n", "a\xC2\xA0= 1\n", "a = [1,\n\xEF\xBA\xA6]\n",
        "a = 1\n\xEF\xBB\xBF", "a = 30\"\xC2\xBC\"\n", "a = 30'\xC2\xBC'\n"}) {
    put_machine(text);
    EXPECT_EQ(hex_number(reading_error().number), "0x80041001") << text;
  }
  put_machine("'\xC3\xA9' = '\xC3\xA9'  # \xC3\xA9\nb\xC3\xA9 = 1\n");
  EXPECT_EQ(
      reading_error().description,
      "The settings file \"" + machine() +
          "\" is not TOML at line 2, column 2: a letter beyond ASCII stands outside quotation "
          "marks");
}

// Where the reader looks for blanks in vain: the characters are chosen for its tables of them.
TEST_F(SettingsFiles, ALineOfTextMayGoOnWithAnyCharacter) {
  for (const std::string_view character :
       {"\xC3\xA9", "\xEF\xBB\xBE", "\xE2\xBC\x80", "\xE1\xA0\x8D"}) {
    put_machine("['Software\\Brimvale\\Torvex\\AppData']\nport = \"\"\"\\\n" +
                std::string(character) + "\"\"\"\n");
    EXPECT_EQ(settings()->ReadString(kMachine, kAppData, "port"), character);
  }
}

TEST_F(SettingsFiles, TextsMayBeginWhereverWordsDo) {
  put_machine("\xEF\xBB\xBF\"a\" = ['x',\"y\",''' z''',\"\"]\n'b'.\"c\"={'d'='e',\"f\" =\"g\"}\n" +
              std::string("[Software.\"Brimvale\".'Torvex\\AppData']\n\tport='1'\n"));
  EXPECT_EQ(settings()->ReadString(kMachine, kAppData, "port"), "1");
}

TEST_F(SettingsFiles, AMistakeIsDescribedInOneLineWhateverIsQuotedOfIt) {
  put_machine("a = tru\n");
  const Error error = reading_error();
  EXPECT_EQ(hex_number(error.number), "0x80041001");
  EXPECT_NE(error.description.find("'tru\\n'"), std::string::npos) << error.description;
  EXPECT_EQ(error.description.find('\n'), std::string::npos) << error.description;
}

TEST_F(SettingsFiles, AHeaderMayBeginWithAnyKey) {
  put_machine("\xEF\xBB\xBF[ 'x' ]\n[\"y\"]\n[[ _z ]]\n[-a]\n[0]\n" +
              std::string("[Software.Brimvale.Torvex.AppData]\nport = '1'\n"));
  EXPECT_EQ(settings()->ReadString(kMachine, kAppData, "port"), "1");
}

TEST_F(SettingsFiles, WhatLooksDeepButIsTextOrANumberIsRead) {
  const std::string brackets(200, '[');
  const std::string dots = dotted_key(200);
  put_machine("# " + brackets + "\na = \"" + brackets + "\\\"" + dots + "\" # " + dots + "\nb = '" +
              brackets + "'\nc = \"\"\"" + brackets + "\"\n\"\"\"\"\nd = '''\n" + brackets +
              "'''\ne = [1.5, 2.5, 07:32:00.5, {f.g = 1}]\n'" + dots +
              "' = 1\n[Software.Brimvale.Torvex.AppData]\nport = '1'\n");
  EXPECT_EQ(settings()->ReadString(kMachine, kAppData, "port"), "1");
}

TEST_F(SettingsFiles, MayBeOneMebibyteLargeAndNoLarger) {
  const std::string value = "[Software.Brimvale.Torvex.AppData]\nport = '1'\n#";
  put_machine(value + std::string((1U << 20) - value.size(), 'x'));
  EXPECT_EQ(settings()->ReadString(kMachine, kAppData, "port"), "1");
  put_machine(value + std::string((1U << 20) - value.size() + 1, 'x'));
  EXPECT_EQ(hex_number(reading_error().number), "0x80041001");
  EXPECT_EQ(reading_error().description,
            "The settings file \"" + machine() + "\" is larger than 1048576 bytes");
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

}  // namespace
}  // namespace bvconn::files_test

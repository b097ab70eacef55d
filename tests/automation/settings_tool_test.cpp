#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "automation/scripted_server.h"
#include "automation/tool_process.h"

namespace bvconn::test {
namespace {

using nlohmann::ordered_json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// `bvconn settings` over two files of the test's own, whose contents the first call is given.
class Settings {
 public:
  explicit Settings(const std::string& machine = "", const std::string& user = "") {
    if (!machine.empty()) files_.file("machine.toml", machine);
    if (!user.empty()) files_.file("user.toml", user);
  }

  Tool::Outcome run(std::vector<std::string> words) const {
    words.insert(words.begin(), "settings");
    return Tool::run_in(files_.path(), words);
  }
  std::string machine() const { return read_text(files_ / "machine.toml"); }
  std::string user() const { return read_text(files_ / "user.toml"); }
  std::string path(const std::string& name) const { return (files_ / name).string(); }

 private:
  TemporaryFolder files_;
};

constexpr const char* kBoth =
    "['Software\\Brimvale\\Torvex\\AppData']\ntracePort = \"8888\"\ndefaultTimeOut = 60000\n";

TEST(SettingsList, ShowsTheDefaultsWhereNoFileIs) {
  const Settings settings;
  const auto outcome = settings.run({"list", "--json"});
  const auto list = ordered_json::parse(outcome.out);
  ASSERT_EQ(list.size(), 3U);
  EXPECT_EQ(list[0]["name"], "tracePort");
  EXPECT_EQ(list[0]["value"], "");
  EXPECT_EQ(list[1]["name"], "defaultTimeOut");
  EXPECT_EQ(list[1]["value"], "300000");
  EXPECT_EQ(list[1]["from"], "default");
  EXPECT_EQ(list[1]["root"], "local machine");
  EXPECT_EQ(list[1]["file"], settings.path("machine.toml"));
  EXPECT_EQ(list[1]["path"], "HKLM\\Software\\Brimvale\\Torvex\\AppData\\defaultTimeOut");
  EXPECT_EQ(list[2]["name"], "TraceSoapTraffic");
  EXPECT_EQ(list[2]["value"], "False");
  EXPECT_EQ(list[2]["root"], "current user");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(settings.machine(), "") << "a look writes nothing";
}

TEST(SettingsList, ShowsWhatTheFilesHoldAsATable) {
  const Settings settings(kBoth);
  const auto outcome = settings.run({"list"});
  const auto lines = outcome.lines();
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0], "NAME              VALUE  FROM     DEFAULT  ROOT           FILE");
  EXPECT_EQ(lines[1], "tracePort         8888   file     (empty)  local machine  " +
                          settings.path("machine.toml"));
  EXPECT_EQ(lines[2], "defaultTimeOut    60000  file     300000   local machine  " +
                          settings.path("machine.toml"));
  EXPECT_EQ(lines[3], "TraceSoapTraffic  False  default  False    current user   " +
                          settings.path("user.toml"));
}

TEST(SettingsList, SaysWhatIsWrongWithAValue) {
  const Settings settings(
      "['Software\\Brimvale\\Torvex\\AppData']\ntracePort = \"http\"\ndefaultTimeOut = \"soon\"\n",
      "['Software\\Brimvale\\Torvex\\AppData']\nTraceSoapTraffic = \"yes\"\n");
  const auto outcome = settings.run({"list"});
  EXPECT_THAT(outcome.err, HasSubstr("bvconn: tracePort: no port"));
  EXPECT_THAT(outcome.err, HasSubstr("bvconn: defaultTimeOut: no 32-bit whole number"));
  EXPECT_THAT(outcome.err, HasSubstr("bvconn: TraceSoapTraffic: neither True nor False"));
}

TEST(SettingsList, NamesTheFileThatCannotBeRead) {
  const Settings settings("[broken\n");
  const auto outcome = settings.run({"list"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.out, HasSubstr("tracePort         (unreadable)"));
  EXPECT_THAT(outcome.out, HasSubstr("TraceSoapTraffic  False"));
  EXPECT_THAT(outcome.err, HasSubstr("error 0x80041001 from RegistryAccess: The settings file \"" +
                                     settings.path("machine.toml") + "\" is not TOML at line 1"));
  EXPECT_THAT(outcome.err, HasSubstr("hint: A settings file is not TOML"));
}

TEST(SettingsGet, GivesTheValueThatCounts) {
  const Settings settings("['software\\BRIMVALE\\Torvex\\AppData']\ndefaultTimeOut = 0\n");
  const auto outcome = settings.run({"get", "DEFAULTTIMEOUT"});
  EXPECT_EQ(outcome.out, "300000\n");
  EXPECT_EQ(outcome.err, "bvconn: defaultTimeOut: 0 counts as 300000\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST(SettingsGet, SuggestsTheNearestName) {
  const auto outcome = Settings().run({"get", "tracePrt"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "bvconn: settings: there is no setting tracePrt; did you mean tracePort? "
            "`bvconn settings list` shows all\n");
}

TEST(SettingsSet, IsWhatTheLibraryReadsNext) {
  const Settings settings;
  EXPECT_EQ(settings.run({"set", "tracePort", "1"}).status, 0);
  EXPECT_EQ(settings.run({"get", "tracePort"}).out, "1\n");
  ScriptedServer server;
  const auto call = Tool::run_in(std::filesystem::path(settings.path("")),
                                 {"call", "BVInvoiceConnector.GetInvoice",
                                  "aServerURL=" + server.url(), "aSessionID=S", "strInvoiceUID=U"});
  EXPECT_THAT(call.err, HasSubstr("0x80044304")) << "through a proxy that is not there";
  EXPECT_THAT(server.requests(), IsEmpty());
}

TEST(SettingsSet, WritesEachInItsOwnForm) {
  const Settings settings;
  EXPECT_EQ(settings.run({"set", "defaultTimeOut", "--", "-1"}).status, 0);
  EXPECT_EQ(settings.run({"set", "TraceSoapTraffic", "true"}).status, 0);
  EXPECT_THAT(settings.machine(), HasSubstr("defaultTimeOut = -1"));
  EXPECT_THAT(settings.user(), HasSubstr("TraceSoapTraffic = 'True'"));
  EXPECT_THAT(settings.machine(), Not(HasSubstr("TraceSoapTraffic")));
}

TEST(SettingsSet, KeepsWhatElseTheFileHoldsAndSaysWhatIsGone) {
  const Settings settings("# for the print room\n[Other]\ny = \"a#b \\\"#c\" # why\nx = [1, 2]\n" +
                          std::string(kBoth));
  const auto outcome = settings.run({"set", "tracePort", ""});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(settings.machine(), HasSubstr("[Other]\nx = [ 1, 2 ]"));
  EXPECT_THAT(settings.machine(), HasSubstr("defaultTimeOut = 60000"));
  EXPECT_THAT(settings.machine(), HasSubstr("tracePort = ''"));
  EXPECT_THAT(outcome.err, HasSubstr(settings.path("machine.toml") + " was written anew"));
  EXPECT_THAT(outcome.err, testing::EndsWith("gone:\n  # for the print room\n  # why\n"));
}

TEST(SettingsSet, RefusesAValueThatTheLibraryCouldNotUse) {
  const std::vector<std::vector<std::string>> wrong{
      {"set", "tracePort", "0"},          {"set", "tracePort", "65536"},
      {"set", "tracePort", "8e3"},        {"set", "defaultTimeOut", "soon"},
      {"set", "defaultTimeOut", "1.5"},   {"set", "defaultTimeOut", "2147483648"},
      {"set", "TraceSoapTraffic", "yes"}, {"set", "TraceSoapTraffic", ""},
      {"set", "TraceSoapTrafic", "True"}, {"set", "tracePort"},
  };
  const Settings settings;
  for (const auto& words : wrong) {
    const auto outcome = settings.run(words);
    EXPECT_EQ(outcome.status, 2) << testing::PrintToString(words);
    EXPECT_NE(outcome.err, "") << testing::PrintToString(words);
  }
  EXPECT_EQ(settings.machine() + settings.user(), "");
}

TEST(SettingsSet, LeavesAFileAloneThatIsNotToml) {
  const Settings settings("[broken\n");
  const auto outcome = settings.run({"set", "tracePort", "8888"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("0x80041001"));
  EXPECT_EQ(settings.machine(), "[broken\n");
}

}  // namespace
}  // namespace bvconn::test

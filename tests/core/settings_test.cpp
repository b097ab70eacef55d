#include "bvconn/core/settings.h"

#include <gtest/gtest.h>

#include <thread>

#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/platform/error_numbers.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using Lines = std::vector<std::string>;
using test::error_of;
using test::RecordingPlatform;

constexpr char kTracePort[] = R"(hklm\software\brimvale\torvex\appdata\traceport)";
constexpr char kDefaultTimeOut[] = R"(hklm\software\brimvale\torvex\appdata\defaulttimeout)";
constexpr char kTraceSoapTraffic[] = R"(hkcu\software\brimvale\torvex\appdata\tracesoaptraffic)";

TEST(TracePort, AnAbsentValueIsEmptyAndNotReadAgain) {
  RecordingPlatform world;
  EXPECT_EQ(Global::TracePort(), "");
  EXPECT_EQ(Global::TracePort(), "");
  EXPECT_EQ(world.record.settings,
            Lines{R"(ReadString HKLM\Software\Brimvale\Torvex\AppData\tracePort)"});
  EXPECT_EQ(world.record.log,
            (Lines{"EnterMethod Global.TracePort 2", "ExitMethod Global.TracePort 2",
                   "EnterMethod Global.TracePort 2", "ExitMethod Global.TracePort 2"}));
}

TEST(TracePort, AChangeIsSeenByANewThreadOnly) {
  RecordingPlatform world;
  world.settings[kTracePort] = std::string("8888");
  EXPECT_EQ(Global::TracePort(), "8888");
  world.settings[kTracePort] = std::string("9999");
  EXPECT_EQ(Global::TracePort(), "8888");
  std::thread([] { EXPECT_EQ(Global::TracePort(), "9999"); }).join();
}

TEST(DefaultTimeout, IsFiveMinutesWhenAbsentOrZero) {
  RecordingPlatform world;
  EXPECT_EQ(Global::DefaultTimeout(), 300000);
  EXPECT_EQ(world.record.settings,
            Lines{R"(ReadNumber HKLM\Software\Brimvale\Torvex\AppData\defaultTimeOut)"});
  EXPECT_EQ(world.record.log,
            (Lines{"EnterMethod Global.DefaultTimeout 2", "ExitMethod Global.DefaultTimeout 2"}));
  std::thread([&] {
    world.settings[kDefaultTimeOut] = std::int64_t{0};
    EXPECT_EQ(Global::DefaultTimeout(), 300000);
  }).join();
}

TEST(DefaultTimeout, AStoredValueIsTakenAndNotReadAgain) {
  RecordingPlatform world;
  world.settings[kDefaultTimeOut] = std::int64_t{60000};
  EXPECT_EQ(Global::DefaultTimeout(), 60000);
  world.settings[kDefaultTimeOut] = std::int64_t{1};
  EXPECT_EQ(Global::DefaultTimeout(), 60000);
  EXPECT_EQ(world.record.settings.size(), 1U);
}

TEST(DefaultTimeout, ANegativeValueStands) {
  RecordingPlatform world;
  world.settings[kDefaultTimeOut] = std::int64_t{-1};
  EXPECT_EQ(Global::DefaultTimeout(), -1);
}

TEST(DefaultTimeout, ANumberBeyond32BitsOverflows) {
  RecordingPlatform world;
  world.settings[kDefaultTimeOut] = std::int64_t{3000000000};
  const Error error = error_of([&] { Global::DefaultTimeout(); });
  EXPECT_EQ(error.number, 6);
  EXPECT_EQ(world.record.log.at(1).substr(0, 33), "LogError Global.DefaultTimeout 6 ");
}

TEST(Settings, UnavailableTheyReachTheCallerThroughSendXml) {
  RecordingPlatform world;
  world.settings_error = Error(error_numbers::kSettingsUnusable, "RegistryAccess", "no access");
  const Error error = error_of(
      [&] { BVGenericConnector().Send("urn:x", "m", "root", SoapNode::make("n"), "http://h/"); });
  EXPECT_EQ(error.number, error_numbers::kSettingsUnusable);
  EXPECT_EQ(error.source, "RegistryAccess");
  EXPECT_EQ(error.description, "no access");
  EXPECT_TRUE(world.sent.empty());
  const std::string tail = " 0x80041002 \"RegistryAccess\" \"no access\" 0";
  EXPECT_EQ(world.record.log,
            (Lines{"LogInfo BVGenericConnector.Send() \"Entering Method...\" 0",
                   "EnterMethod Global.sendXML 1",
                   "LogInfo Global.TraceSoapTraffic() - Property Get \"Entering Method...\" 0",
                   "LogError Global.TraceSoapTraffic() - Property Get" + tail,
                   "EnterMethod Global.TracePort 2", "LogError Global.TracePort" + tail,
                   "LogError Global.sendXML" + tail, "LogError BVGenericConnector.Send" + tail}));
}

TEST(TraceSoapTraffic, AbsentItWarnsOnceWritesTheDefaultAndIsFalse) {
  RecordingPlatform world;
  world.settings.erase(kTraceSoapTraffic);
  EXPECT_FALSE(Global::TraceSoapTraffic());
  EXPECT_FALSE(Global::TraceSoapTraffic());
  const std::string entering =
      "LogInfo Global.TraceSoapTraffic() - Property Get \"Entering Method...\" 0";
  EXPECT_EQ(world.record.log,
            (Lines{entering,
                   "LogWarning clsSessionInfo.LoadPreferences()() \"TraceSoapTraffic not found in "
                   "registry, default value set.\" 0",
                   entering, entering, entering}));
  const std::string exists = R"(Exists HKCU\Software\Brimvale\Torvex\appData\TraceSoapTraffic)";
  const std::string read = R"(ReadString HKCU\Software\Brimvale\Torvex\AppData\TraceSoapTraffic)";
  EXPECT_EQ(world.record.settings,
            (Lines{exists, R"(Write HKCU\Software\Brimvale\Torvex\appData\TraceSoapTraffic 0 "")",
                   read, exists, read}));
}

TEST(TraceSoapTraffic, IsReadAtEachUse) {
  RecordingPlatform world;
  EXPECT_FALSE(Global::TraceSoapTraffic());
  world.settings[kTraceSoapTraffic] = std::string("tRUE");
  EXPECT_TRUE(Global::TraceSoapTraffic());
  world.settings[kTraceSoapTraffic] = std::string("-1");
  EXPECT_TRUE(Global::TraceSoapTraffic());
  world.settings[kTraceSoapTraffic] = std::string("0");
  EXPECT_FALSE(Global::TraceSoapTraffic());
}

TEST(TraceSoapTraffic, HoldingAnotherWordIsFalseAndLogged) {
  RecordingPlatform world;
  world.settings[kTraceSoapTraffic] = std::string("yes");
  EXPECT_FALSE(Global::TraceSoapTraffic());
  ASSERT_EQ(world.record.log.size(), 2U);
  EXPECT_EQ(world.record.log[1].substr(0, 62),
            "LogError Global.TraceSoapTraffic() - Property Get 13 \"BVConn\" ");
}

TEST(TraceSoapTraffic, IsWrittenAsAWordWithItsType) {
  RecordingPlatform world;
  Global::TraceSoapTraffic(true);
  Global::TraceSoapTraffic(false);
  EXPECT_EQ(
      world.record.settings,
      (Lines{R"(Write HKCU\Software\Brimvale\Torvex\appData\TraceSoapTraffic "True" "REG_SZ")",
             R"(Write HKCU\Software\Brimvale\Torvex\appData\TraceSoapTraffic "False" "REG_SZ")"}));
  ASSERT_EQ(world.record.log.size(), 6U);
  EXPECT_EQ((Lines{world.record.log.begin(), world.record.log.begin() + 3}),
            (Lines{"EnterMethod clsSessionInfo.TraceSoapTraffic 4",
                   "LogInfo BVPreferences.SavePreferences() \"One or more values have been "
                   "changed... saving to registry.\" 0",
                   "ExitMethod clsSessionInfo.TraceSoapTraffic 4"}));
}

TEST(TraceSoapTraffic, AFailedWriteIsLoggedAndNotTold) {
  RecordingPlatform world;
  world.settings_error = Error(error_numbers::kSettingsUnusable, "RegistryAccess", "read-only");
  EXPECT_NO_THROW(Global::TraceSoapTraffic(true));
  EXPECT_EQ(
      world.record.log.back(),
      "LogError clsSessionInfo.TraceSoapTraffic 0x80041002 \"RegistryAccess\" \"read-only\" 0");
}

}  // namespace
}  // namespace bvconn

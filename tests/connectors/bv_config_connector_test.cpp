#include "bvconn/connectors/session/bv_config_connector.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bvconn/connectors/session/bv_export_connector.h"
#include "bvconn/platform/error_numbers.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using Lines = std::vector<std::string>;
using test::envelope_text;
using test::fault_text;
using test::RecordingPlatform;

const std::string kSetting = R"(hkcu\software\brimvale\torvex\appdata\tracesoaptraffic)";

std::string setting(const RecordingPlatform& world) {
  return std::get<std::string>(world.settings.at(kSetting));
}

bool has(const std::string& line, std::string_view part) {
  return line.find(part) != std::string::npos;
}

// What was written to the setting and when the request went out and its reply came in, in order.
Lines writes_and_traffic(const RecordingPlatform& world) {
  Lines lines;
  for (const std::string& line : world.record.all) {
    if (has(line, "Write ") && has(line, "TraceSoapTraffic \"True\"")) {
      lines.emplace_back("write True");
    } else if (has(line, "Write ") && has(line, "TraceSoapTraffic \"False\"")) {
      lines.emplace_back("write False");
    } else if (has(line, "Send \"")) {
      lines.emplace_back("send");
    } else if (has(line, "Receive ")) {
      lines.emplace_back("receive");
    } else if (has(line, "Option tracing.file")) {
      lines.emplace_back("trace");
    }
  }
  return lines;
}

std::int32_t number_of_failed_call() {
  return test::error_of([] { BVConfigConnector().GetConfiguredProduct("http://h/", "S-2"); })
      .number;
}

TEST(GetConfiguredProduct, SwitchesTracingOffForTheTimeOfTheCallAndThenWritesItBack) {
  RecordingPlatform world;
  world.settings[kSetting] = std::string("True");
  world.reply(envelope_text("r", "<a>1</a><b>2</b>"));
  EXPECT_EQ(BVConfigConnector().GetConfiguredProduct("http://h/", "S-2").Name(), "a");
  EXPECT_EQ(writes_and_traffic(world), (Lines{"write False", "send", "receive", "write True"}));
  EXPECT_EQ(setting(world), "True");
}

TEST(GetConfiguredProduct, WritesFalseBackWhereItWasFalse) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<a>1</a>"));
  BVConfigConnector().GetConfiguredProduct("http://h/", "S-2");
  EXPECT_EQ(writes_and_traffic(world), (Lines{"write False", "send", "receive", "write False"}));
  EXPECT_EQ(setting(world), "False");
}

TEST(GetConfiguredProduct, LeavesTracingOffAfterAFault) {
  RecordingPlatform world;
  world.settings[kSetting] = std::string("True");
  world.reply(fault_text("10041", "not configured"));
  EXPECT_EQ(number_of_failed_call(), error_numbers::kSoapFault);
  EXPECT_EQ(writes_and_traffic(world), (Lines{"write False", "send", "receive"}));
  EXPECT_EQ(setting(world), "False");
}

TEST(GetConfiguredProduct, LeavesTracingOffAfterAFailedSend) {
  RecordingPlatform world;
  world.settings[kSetting] = std::string("True");
  world.fail_send(Error(error_numbers::kTimeout, "HTTPTransport", "too late"));
  EXPECT_EQ(number_of_failed_call(), error_numbers::kTimeout);
  EXPECT_EQ(setting(world), "False");
}

TEST(GetConfiguredProduct, LeavesTracingOffAfterAReplyWithoutAParameter) {
  RecordingPlatform world;
  world.settings[kSetting] = std::string("True");
  world.reply(envelope_text("r", ""));
  EXPECT_EQ(number_of_failed_call(), error_numbers::kNoSuchNode);
  EXPECT_EQ(setting(world), "False");
}

TEST(GetConfiguredProduct, GivesAnAbsentSettingTheValueFalse) {
  RecordingPlatform world;
  world.settings.erase(kSetting);
  world.reply(envelope_text("r", "<a>1</a>"));
  BVConfigConnector().GetConfiguredProduct("http://h/", "S-2");
  EXPECT_EQ(setting(world), "False");
}

TEST(GetConfiguredProduct, ReplacesASettingThatIsNoBooleanByFalse) {
  RecordingPlatform world;
  world.settings[kSetting] = std::string("yes");
  world.reply(envelope_text("r", "<a>1</a>"));
  BVConfigConnector().GetConfiguredProduct("http://h/", "S-2");
  EXPECT_EQ(setting(world), "False");
}

TEST(GetConfiguredProduct, LeavesATracingFileThatTheTransportAlreadyHas) {
  RecordingPlatform world;
  world.settings[kSetting] = std::string("True");
  world.reply(envelope_text("r", "<a>1</a>"));
  world.reply(envelope_text("r", "<a>1</a>"));
  BVExportConnector().SetExportComplete("http://h/", "S-1", "O-2");
  EXPECT_EQ(writes_and_traffic(world), (Lines{"trace", "send", "receive"}));
  world.record.clear();
  BVConfigConnector().GetConfiguredProduct("http://h/", "S-2");
  EXPECT_EQ(world.record.transport.front(), "NoProxy");
  EXPECT_EQ(writes_and_traffic(world), (Lines{"write False", "send", "receive", "write True"}));
}

TEST(GetConfiguredProduct, PassesOnAFailureOfTheSettingsThatASendNeeds) {
  RecordingPlatform world;
  world.settings_error = Error(error_numbers::kSettingsUnusable, "RegistryAccess", "unreadable");
  EXPECT_EQ(number_of_failed_call(), error_numbers::kSettingsUnusable);
  EXPECT_TRUE(world.sent.empty());
}

}  // namespace
}  // namespace bvconn

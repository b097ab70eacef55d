#include "bvconn/core/session_state.h"

#include <gtest/gtest.h>

#include <thread>

#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/dal/bv_connector_object.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using test::RecordingPlatform;

TEST(SessionState, AThreadStartsWithAllFieldsZero) {
  RecordingPlatform world;
  const SessionState& state = session();
  EXPECT_FALSE(state.TracePortCache.has_value());
  EXPECT_EQ(state.DefaultTimeoutCache, 0);
  EXPECT_EQ(state.UserName, "");
  EXPECT_EQ(state.Password, "");
  EXPECT_EQ(state.DALUrl, "");
  EXPECT_EQ(state.AppVer, "");
  EXPECT_EQ(state.SalesOrg, "");
  EXPECT_EQ(state.DisabledDALServices, "");
  EXPECT_FALSE(state.UsingTorvexDAL);
  EXPECT_FALSE(state.UseDALSave);
  EXPECT_FALSE(state.AllowDisabledDALMethods);
  EXPECT_FALSE(state.isBrimvale);
  EXPECT_EQ(state.LastHeartBeat, Date{});
  EXPECT_EQ(state.AuthenticationService, nullptr);
  EXPECT_EQ(state.SalesInstrumentService, nullptr);
}

TEST(SessionState, SetUpOnOneThreadLeavesAnotherOnTheSoapRoute) {
  RecordingPlatform world;
  world.use_dal();
  world.dal_answers["HeartBeatService.sendHeartBeat"] =
      test::envelope_text("beatResponse", "<return>OK</return>");
  BVHeartBeatConnector().sendHeartBeat("http://one/", "S1");
  EXPECT_EQ(world.record.dal.size(), 1U);
  EXPECT_TRUE(world.sent.empty());

  std::thread([&] {
    EXPECT_FALSE(BVConnectorObject().UsingTorvexDAL());
    world.reply(test::envelope_text("beatResponse", "<return>OK</return>"));
    BVHeartBeatConnector().sendHeartBeat("http://two/", "S2");
  }).join();
  EXPECT_EQ(world.record.dal.size(), 1U);
  ASSERT_EQ(world.sent.size(), 1U);
  EXPECT_EQ(world.sent[0].url, "http://two/");
}

TEST(SessionState, TwoConnectorObjectsOfOneThreadShareTheirValues) {
  RecordingPlatform world;
  BVConnectorObject first;
  BVConnectorObject second;
  first.DALUrl("http://dal.example/");
  first.UseDALSave(true);
  EXPECT_EQ(second.DALUrl(), "http://dal.example/");
  EXPECT_TRUE(second.UseDALSave());
  EXPECT_FALSE(second.UsingTorvexDAL());
}

TEST(SessionState, TheTransportReadBeforeAnySendIsTheOneThatSends) {
  RecordingPlatform world;
  const auto transport = BVConnectorObject().HTTPTransportObject();
  ASSERT_NE(transport, nullptr);
  world.reply(test::envelope_text("r", "<a>1</a>"));
  BVGenericConnector().Send("urn:x", "m", "root", SoapNode::make("n"), "http://h/");
  EXPECT_EQ(world.sent.size(), 1U);
  EXPECT_EQ(world.transports_made, 1) << "the request went out by another transport";
  EXPECT_EQ(BVConnectorObject().HTTPTransportObject(), transport);
}

TEST(SessionState, TracingStaysOffWithoutAHeartBeatWhateverTheMaskSays) {
  RecordingPlatform world;
  world.log_mask = 0x7FFFFFFF;
  world.reply(test::envelope_text("r", "<a>1</a>"));
  BVGenericConnector().Send("urn:x", "m", "root", SoapNode::make("n"), "http://h/");
  for (const auto& line : world.record.transport) {
    EXPECT_EQ(line.find("Option"), std::string::npos) << line;
  }
}

TEST(SessionState, NothingIsLoggedOrSentWhenAThreadEnds) {
  RecordingPlatform world;
  std::size_t before = 0;
  std::thread([&] {
    world.reply(test::envelope_text("beatResponse", "<return>OK</return>"));
    BVHeartBeatConnector().sendHeartBeat("http://h/", "S");
    before = world.record.all.size();
  }).join();
  EXPECT_GT(before, 0U);
  EXPECT_EQ(world.record.all.size(), before);
}

}  // namespace
}  // namespace bvconn

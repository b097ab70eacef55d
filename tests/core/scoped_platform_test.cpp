#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <thread>

#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/platform.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using test::RecordingPlatform;

void send(RecordingPlatform& world, const char* url) {
  world.reply(test::envelope_text("r", "<a>1</a>"));
  BVGenericConnector().Send("urn:x", "m", "root", SoapNode::make("n"), url);
}

TEST(ScopedPlatform, SendsThroughItsOwnTransportOnAThreadThatHasSentBefore) {
  RecordingPlatform real;
  send(real, "http://real/");
  {
    RecordingPlatform test_world;
    send(test_world, "http://test/");
    ASSERT_EQ(test_world.sent.size(), 1U);
    EXPECT_EQ(test_world.sent[0].url, "http://test/");
    EXPECT_EQ(test_world.record.log.front(),
              "LogInfo BVGenericConnector.Send() \"Entering Method...\" 0");
  }
  EXPECT_EQ(real.sent.size(), 1U);
  send(real, "http://real/again");
  EXPECT_EQ(real.sent.at(1).url, "http://real/again");
}

TEST(ScopedPlatform, BeginsWithAFreshSessionAndGivesTheOneThatItFoundBackUntouched) {
  RecordingPlatform real;
  real.settings[R"(hklm\software\brimvale\torvex\appdata\defaulttimeout)"] = std::int64_t{1234};
  real.use_dal();
  send(real, "http://real/");
  BVConnectorObject object;
  object.DALUrl("http://real-dal/");
  object.UserName("somebody");
  session().isBrimvale = true;
  const SessionState* const record = &session();
  const auto transport = object.HTTPTransportObject();
  const auto search = session().SearchService;
  const std::size_t lines = real.record.all.size();
  {
    RecordingPlatform test_world;
    EXPECT_FALSE(object.UsingTorvexDAL());
    EXPECT_EQ(object.DALUrl(), "");
    EXPECT_EQ(session().UserName, "");
    EXPECT_EQ(session().DefaultTimeoutCache, 0);
    EXPECT_FALSE(session().TracePortCache.has_value());
    EXPECT_EQ(session().LastHeartBeat, Date{});
    EXPECT_EQ(session().SearchService, nullptr);
    EXPECT_NE(object.HTTPTransportObject(), transport);
    object.DALUrl("http://test-dal/");
    object.UserName("nobody");
    test_world.reply(test::envelope_text("beatResponse", "<return>OK</return>"));
    test_world.now = Date{test_world.now.milliseconds + 60'000};
    BVHeartBeatConnector().sendHeartBeat("http://test/", "S");
  }
  EXPECT_EQ(&session(), record);
  EXPECT_EQ(object.HTTPTransportObject(), transport);
  EXPECT_EQ(session().SearchService, search);
  EXPECT_EQ(object.DALUrl(), "http://real-dal/");
  EXPECT_EQ(session().UserName, "somebody");
  EXPECT_TRUE(object.UsingTorvexDAL());
  EXPECT_TRUE(session().isBrimvale);
  EXPECT_EQ(session().DefaultTimeoutCache, 1234);
  EXPECT_EQ(session().LastHeartBeat, real.now);
  EXPECT_EQ(real.record.all.size(), lines) << "nothing was asked of the found session's objects";
}

TEST(ScopedPlatform, ReleasesWhatItsSessionMade) {
  std::weak_ptr<HTTPTransport> made;
  {
    RecordingPlatform world;
    made = BVConnectorObject().HTTPTransportObject();
    EXPECT_FALSE(made.expired());
  }
  EXPECT_TRUE(made.expired());
}

TEST(ScopedPlatform, Nests) {
  RecordingPlatform first;
  BVConnectorObject().DALUrl("first");
  {
    RecordingPlatform second;
    BVConnectorObject().DALUrl("second");
    {
      RecordingPlatform third;
      EXPECT_EQ(BVConnectorObject().DALUrl(), "");
      send(third, "http://third/");
    }
    EXPECT_EQ(BVConnectorObject().DALUrl(), "second");
    send(second, "http://second/");
  }
  EXPECT_EQ(BVConnectorObject().DALUrl(), "first");
  send(first, "http://first/");
}

TEST(ScopedPlatform, LeavesTheSessionsOfOtherThreadsAlone) {
  RecordingPlatform real;
  BVConnectorObject().DALUrl("of this thread");
  std::thread([] {
    RecordingPlatform other;
    EXPECT_EQ(BVConnectorObject().DALUrl(), "");
    BVConnectorObject().DALUrl("of the other");
  }).join();
  EXPECT_EQ(BVConnectorObject().DALUrl(), "of this thread");
}

std::string words_of_a_search(ServiceObject& object) {
  try {
    object.invoke("SearchForBrands", {}, false);
  } catch (const Error& error) {
    return error.description;
  }
  return "no error was raised";
}

TEST(ScopedPlatform, HasALoginOfItsOwnToTheDataAccessLayer) {
  const platform::ScopedPlatform real(platform::system_platform());
  const auto authentication = make_http_service_object("AuthenticationService");
  const auto search = make_http_service_object("SearchService");
  // Nobody listens on these.
  const std::array found{Variant("http://127.0.0.1:1/found")};
  const std::array within{Variant("http://127.0.0.1:1/within")};
  authentication->invoke("SetServerUrl", found, false);
  {
    const platform::ScopedPlatform scope(platform::system_platform());
    EXPECT_NE(words_of_a_search(*search).find("No address"), std::string::npos);
    authentication->invoke("SetServerUrl", within, false);
    EXPECT_NE(words_of_a_search(*search).find("127.0.0.1:1/within"), std::string::npos);
  }
  EXPECT_NE(words_of_a_search(*search).find("127.0.0.1:1/found"), std::string::npos);
}

}  // namespace
}  // namespace bvconn

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error_numbers.h"
#include "failing/throwing_world.h"

// The members of BVConnectorObject that ask an application's platform or service objects for
// something, each of which throws in turn.
namespace bvconn::test {
namespace {

using Use = std::function<void(BVConnectorObject&)>;

void init(BVConnectorObject& object) {
  object.InitTorvexDAL("http://a-server/dal");
}

/// What left the member while its step with this number threw; its members that threw by now.
struct Outcome {
  bool struck = false;
  bool foreign = false;
  std::optional<Error> error;
};

class ThrowingConnectorObject : public testing::Test {
 protected:
  Outcome outcome(const Use& use, std::size_t step, Thrown thrown) {
    ThrowingWorld world("urn:A.method|");
    BVConnectorObject object;
    if (initialised) init(object);
    Outcome outcome;
    world.arm(step, thrown);
    try {
      use(object);
    } catch (const Error& error) {
      outcome.error = error;
    } catch (...) {
      outcome.foreign = true;
    }
    world.disarm();
    outcome.struck = !world.struck().empty();
    if (outcome.struck) struck.emplace(world.struck());
    // The next use, on the same session.
    EXPECT_NO_THROW(use(object));
    EXPECT_NO_THROW(init(object));
    EXPECT_EQ(object.GetDisabledDALServices(), "urn:A.method|");
    return outcome;
  }

  /// Whether it is one to raise or to keep is the member's; nothing but an Error leaves it.
  void expect_errors(const Use& use, bool raises) {
    for (std::size_t step = 1;; ++step) {
      for (const Thrown thrown : kThrown) {
        const Outcome seen = outcome(use, step, thrown);
        if (!seen.struck) {
          EXPECT_GT(step, 1U) << "it asks for nothing";
          return;
        }
        SCOPED_TRACE("step " + std::to_string(step) + ", thrown " +
                     std::to_string(static_cast<int>(thrown)));
        EXPECT_FALSE(seen.foreign) << "something but an Error left";
        EXPECT_EQ(seen.error.has_value(), raises);
        if (!seen.error) continue;
        EXPECT_EQ(seen.error->number,
                  thrown == Thrown::kError ? kThrownNumber : error_numbers::kFailed);
      }
    }
  }

  bool initialised = true;
  std::set<std::string_view> struck;
};

TEST_F(ThrowingConnectorObject, KeepsWhatInitTorvexDALMeets) {
  initialised = false;
  expect_errors(&init, false);
  for (const char* member : {"Platform.service_object", "ServiceObject.invoke"}) {
    EXPECT_TRUE(struck.contains(member)) << member;
  }
}

TEST_F(ThrowingConnectorObject, RaisesOneErrorWhereAMessageCannotBeLogged) {
  expect_errors(
      [](BVConnectorObject& object) { object.SendDALMessageToLog("aMethod", "a message"); }, true);
  EXPECT_TRUE(struck.contains("Platform.logger"));
}

TEST_F(ThrowingConnectorObject, RaisesOneErrorWhereThereIsNoTransport) {
  expect_errors([](BVConnectorObject& object) { object.HTTPTransportObject(); }, true);
  EXPECT_TRUE(struck.contains("Platform.transport"));
}

TEST_F(ThrowingConnectorObject, RaisesOneErrorWhereTheHeartBeatObjectDoesNotSayWhatItOffers) {
  expect_errors([](BVConnectorObject& object) { object.SearchService(); }, true);
  EXPECT_TRUE(struck.contains("ServiceObject.offers"));
}

}  // namespace
}  // namespace bvconn::test

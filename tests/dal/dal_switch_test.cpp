#include "bvconn/dal/dal_switch.h"

#include <gtest/gtest.h>

#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using test::RecordingPlatform;

TEST(IsDalMethodDisabled, FindsTheEntryOfServiceAndMethodWithRegardToCase) {
  RecordingPlatform world;
  session().DisabledDALServices = "urn:SearchService.find|urn:QuoteService.save|";
  EXPECT_TRUE(Global::isDALMethodDisabled("save", "urn:QuoteService"));
  EXPECT_FALSE(Global::isDALMethodDisabled("SAVE", "urn:QuoteService"));
  EXPECT_FALSE(Global::isDALMethodDisabled("save", "urn:OrderService"));
  EXPECT_TRUE(world.record.all.empty());
}

TEST(IsDalMethodDisabled, IsFalseForEverythingWhenDisabledMethodsAreAllowed) {
  RecordingPlatform world;
  session().DisabledDALServices = "urn:QuoteService.save|";
  session().AllowDisabledDALMethods = true;
  EXPECT_FALSE(Global::isDALMethodDisabled("save", "urn:QuoteService"));
}

TEST(IsDalMethodDisabled, IsFalseForEverythingWithAnEmptyList) {
  RecordingPlatform world;
  EXPECT_FALSE(Global::isDALMethodDisabled("save", "urn:QuoteService"));
  EXPECT_FALSE(Global::isDALMethodDisabled("", ""));
}

TEST(IsDalMethodDisabled, MatchesTheTailOfALongerEntry) {
  RecordingPlatform world;
  session().DisabledDALServices = "xurn:QuoteService.save|";
  EXPECT_TRUE(Global::isDALMethodDisabled("save", "urn:QuoteService"));
  EXPECT_FALSE(Global::isDALMethodDisabled("sav", "urn:QuoteService"));
}

TEST(IsDalMethodDisabled, IsWhatIsDalDisabledAnswers) {
  RecordingPlatform world;
  BVConnectorObject object;
  object.GetDisabledDALServices("urn:QuoteService.save|");
  EXPECT_TRUE(object.IsDALDisabled("save", "urn:QuoteService"));
  EXPECT_FALSE(object.IsDALDisabled("urn:QuoteService", "save"));
}

}  // namespace
}  // namespace bvconn

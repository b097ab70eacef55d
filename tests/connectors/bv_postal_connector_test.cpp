#include "bvconn/connectors/session/bv_postal_connector.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "support/recording_platform.h"

namespace bvconn {
namespace {

using test::RecordingPlatform;

TEST(PostalConnector, IsMadeAndReleasedWithoutAWord) {
  RecordingPlatform world;
  std::optional<BVPostalConnector> connector(std::in_place);
  connector.reset();
  EXPECT_EQ(world.record.all, std::vector<std::string>());
}

}  // namespace
}  // namespace bvconn

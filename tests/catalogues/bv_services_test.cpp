#include "bvconn/catalogues/bv_services.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace bvconn {
namespace {

bool is_absolute_http(const std::string& uri) {
  for (const std::string_view scheme : {"http://", "https://"}) {
    if (uri.starts_with(scheme) && uri.size() > scheme.size() && uri[scheme.size()] != '/') {
      return true;
    }
  }
  return false;
}

TEST(BVServices, HasNoWordServiceInThePostalUrn) {
  EXPECT_EQ(BVServices().PostalService(), "urn:Postal");
}

TEST(BVServices, WritesTheHeartBeatUrnWithACapitalB) {
  EXPECT_EQ(BVServices().Heartbeat(), "urn:HeartBeatService");
}

TEST(BVServices, HasAnAbsoluteConfigServiceWithoutATrailingSlash) {
  const std::string uri = BVServices().ConfigService();
  EXPECT_TRUE(is_absolute_http(uri)) << uri;
  EXPECT_FALSE(uri.ends_with('/')) << uri;
}

TEST(BVServices, HasAnAbsoluteTorvexServiceThatEndsInASlash) {
  const std::string uri = BVServices().TorvexService();
  EXPECT_TRUE(is_absolute_http(uri)) << uri;
  EXPECT_TRUE(uri.ends_with('/')) << uri;
}

TEST(BVServices, TakesBothNamespacesOfTheDeploymentFromTheBuild) {
  EXPECT_EQ(BVServices().ConfigService(), BVCONN_CONFIG_SERVICE_URI);
  EXPECT_EQ(BVServices().TorvexService(), BVCONN_TORVEX_SERVICE_URI);
}

}  // namespace
}  // namespace bvconn

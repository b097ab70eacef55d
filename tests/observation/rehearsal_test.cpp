#include "bvconn/observation/rehearsal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "bvconn/observation/world.h"
#include "bvconn/platform/platform.h"

namespace bvconn::automation {
namespace {

using testing::HasSubstr;

const ClassInfo& orders() {
  return *find_class("BVOrderConnector");
}

const Member& order_view() {
  return *orders().find("getSAPOrderView");
}

std::vector<Value> arguments() {
  return {Variant("S"), Variant("http://host.example/"), Variant("G1"), Variant(true)};
}

TEST(Rehearsal, ShowsTheRequestOfTheSoapRoute) {
  const Rehearsal rehearsal = rehearse(orders(), order_view(), arguments(), false);
  ASSERT_EQ(rehearsal.seen.posts.size(), 1U);
  EXPECT_TRUE(rehearsal.seen.dal_calls.empty());
  const Sightings::Post& post = rehearsal.seen.posts[0];
  EXPECT_EQ(post.url, "http://host.example/");
  EXPECT_EQ(post.soap_action, "urn:OrderService");
  EXPECT_THAT(post.text, HasSubstr(">G1</GID>"));
}

TEST(Rehearsal, ShowsTheCallOfTheDataAccessLayer) {
  const Rehearsal rehearsal = rehearse(orders(), order_view(), arguments(), true);
  EXPECT_TRUE(rehearsal.seen.posts.empty());
  ASSERT_EQ(rehearsal.seen.dal_calls.size(), 1U);
  EXPECT_EQ(rehearsal.seen.dal_calls[0].object, "OrderService");
  EXPECT_EQ(rehearsal.seen.dal_calls[0].operation, "getSAPOrderView");
  ASSERT_EQ(rehearsal.seen.dal_calls[0].arguments.size(), 2U);
  EXPECT_EQ(rehearsal.seen.dal_calls[0].arguments[0].string(), "G1");
}

/// Settings that say a time-out and remember whether somebody wrote.
class OwnSettings final : public RegistryAccess {
 public:
  explicit OwnSettings(bool& written) : written_(written) {}
  bool Exists(std::string_view) override { return false; }
  void Write(std::string_view, const SettingValue&, std::string_view) override { written_ = true; }
  double ReadNumber(SettingsRoot, std::string_view, std::string_view) override { return 61000; }
  std::string ReadString(SettingsRoot, std::string_view, std::string_view) override { return ""; }

 private:
  bool& written_;
};

TEST(Rehearsal, ReadsTheSettingsAndWritesNone) {
  bool written = false;
  platform::Platform platform = detail::World().platform();
  platform.settings = [&] { return std::make_unique<OwnSettings>(written); };
  const platform::ScopedPlatform scope(platform);
  const Rehearsal rehearsal = rehearse(orders(), order_view(), arguments(), false);
  ASSERT_EQ(rehearsal.seen.posts.size(), 1U);
  EXPECT_EQ(rehearsal.seen.posts[0].timeout_ms, 61000);
  EXPECT_FALSE(written);
}

TEST(Rehearsal, SaysWhyNothingIsSent) {
  const ClassInfo& info = *find_class("BVProjectConnector");
  const Rehearsal rehearsal = rehearse(
      info, *info.find("SaveProject"),
      std::vector<Value>{Variant("http://host.example/"), Variant("S"), Variant(SoapNode())},
      false);
  EXPECT_TRUE(rehearsal.seen.empty());
  EXPECT_TRUE(rehearsal.raised.has_value());
}

}  // namespace
}  // namespace bvconn::automation

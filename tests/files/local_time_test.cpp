#include "bvconn/platform/local_time.h"

#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <thread>

#include "files/temp_folder.h"

namespace bvconn::detail {
namespace {

using files_test::ScopedEnvironment;

// Seconds since 1970, by hand: 2026-03-29 01:00:00 UTC is when Central Europe puts its clocks
// ahead, 2026-10-25 01:00:00 UTC when it puts them back.
constexpr std::int64_t kSpringForward = 1'774'746'000;
constexpr std::int64_t kFallBack = 1'792'890'000;
constexpr const char* kCentralEurope = "CET-1CEST,M3.5.0,M10.5.0/3";

TEST(ZoneAt, IsThatOfTheVariable) {
  const ScopedEnvironment zone("TZ", "XST-05:30");
  EXPECT_EQ(zone_at(kSpringForward).ahead_s, 19'800);
  EXPECT_EQ(zone_at(kSpringForward).offset_s, 19'800);
}

TEST(ZoneAt, FollowsTheVariableAtOnce) {
  {
    const ScopedEnvironment zone("TZ", "XST-05:30");
    ASSERT_EQ(zone_at(kSpringForward).ahead_s, 19'800);
  }
  {
    const ScopedEnvironment zone("TZ", "YST+08");
    EXPECT_EQ(zone_at(kSpringForward).ahead_s, -28'800);
  }
  const ScopedEnvironment none("TZ", "UTC0");
  EXPECT_EQ(zone_at(kSpringForward).ahead_s, 0);
}

TEST(ZoneAt, ChangesWithTheClocksToTheSecond) {
  const ScopedEnvironment zone("TZ", kCentralEurope);
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(zone_at(kSpringForward - 1).ahead_s, 3600);
    EXPECT_EQ(zone_at(kSpringForward).ahead_s, 7200);
    EXPECT_EQ(zone_at(kFallBack - 1).ahead_s, 7200);
    EXPECT_EQ(zone_at(kFallBack).ahead_s, 3600);
  }
}

// In this zone the clocks are changed seven minutes after the hour, within a quarter.
TEST(ZoneAt, ChangesWithinAQuarterOfAnHourToo) {
  const ScopedEnvironment zone("TZ", "AAA0BBB,M3.5.0/1:07,M10.5.0/2:07");
  EXPECT_EQ(zone_at(kSpringForward + 6 * 60).ahead_s, 0);
  EXPECT_EQ(zone_at(kSpringForward + 7 * 60 - 1).ahead_s, 0);
  EXPECT_EQ(zone_at(kSpringForward + 7 * 60).ahead_s, 3600);
  EXPECT_EQ(zone_at(kSpringForward + 14 * 60).ahead_s, 3600);
}

TEST(ZoneAt, IsTheSystemsForEveryHourOfAYear) {
  for (const char* name : {"Australia/Lord_Howe", "America/St_Johns", "Asia/Kathmandu",
                           kCentralEurope, "Africa/Casablanca", "UTC0"}) {
    const ScopedEnvironment zone("TZ", name);
    ::tzset();
    for (std::int64_t at = kSpringForward; at < kSpringForward + 366 * 86'400; at += 3'599) {
      const auto moment = static_cast<std::time_t>(at);
      std::tm fields{};
      ASSERT_NE(::localtime_r(&moment, &fields), nullptr);
      ASSERT_EQ(zone_at(at).offset_s, fields.tm_gmtoff) << name << " at " << at;
      ASSERT_EQ(zone_at(at).ahead_s, fields.tm_gmtoff) << name << " at " << at;
    }
  }
  ::tzset();
}

TEST(ZoneOnDayOf, IsTheSystemsForMomentsFromAnywhereInTime) {
  constexpr std::int64_t kForty_years = 40LL * 365 * 86'400;
  for (const char* name : {"Australia/Lord_Howe", "America/New_York", "Africa/Casablanca",
                           "Pacific/Apia", kCentralEurope, "UTC0"}) {
    const ScopedEnvironment zone("TZ", name);
    ::tzset();
    // Some before 1970, out of order, so that days take each other's places.
    for (std::int64_t step = 0; step < 20'000; ++step) {
      const std::int64_t at = (step * 7'919 * 3'571) % (2 * kForty_years) - kForty_years / 4;
      const auto moment = static_cast<std::time_t>(at);
      std::tm fields{};
      ASSERT_NE(::localtime_r(&moment, &fields), nullptr);
      ASSERT_EQ(zone_on_day_of(at).offset_s, fields.tm_gmtoff) << name << " at " << at;
      ASSERT_EQ(zone_on_day_of(at).offset_s, fields.tm_gmtoff) << name << " again at " << at;
    }
  }
  ::tzset();
}

TEST(ZoneOnDayOf, ChangesWithTheClocksToTheSecond) {
  const ScopedEnvironment zone("TZ", kCentralEurope);
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(zone_on_day_of(kSpringForward - 86'400).offset_s, 3600);
    EXPECT_EQ(zone_on_day_of(kSpringForward - 1).offset_s, 3600);
    EXPECT_EQ(zone_on_day_of(kSpringForward).offset_s, 7200);
    EXPECT_EQ(zone_on_day_of(kSpringForward + 86'400).offset_s, 7200);
    EXPECT_EQ(zone_on_day_of(kFallBack - 1).offset_s, 7200);
    EXPECT_EQ(zone_on_day_of(kFallBack).offset_s, 3600);
  }
}

TEST(ZoneOnDayOf, FollowsTheVariableAtOnce) {
  {
    const ScopedEnvironment zone("TZ", "XST-05:30");
    ASSERT_EQ(zone_on_day_of(kSpringForward).offset_s, 19'800);
  }
  const ScopedEnvironment zone("TZ", "YST+08");
  EXPECT_EQ(zone_on_day_of(kSpringForward).offset_s, -28'800);
}

TEST(ZoneOnDayOf, HoldsWithAVariableThatIsTooLongToKeep) {
  const ScopedEnvironment zone("TZ", "<" + std::string(70, 'A') + ">-05:30");
  EXPECT_EQ(zone_on_day_of(kSpringForward).offset_s, zone_at(kSpringForward).offset_s);
}

TEST(ZoneAt, IsKnownToEachThreadForItself) {
  const ScopedEnvironment zone("TZ", "XST-05:30");
  ASSERT_EQ(zone_at(kSpringForward).ahead_s, 19'800);
  std::thread([] { EXPECT_EQ(zone_at(kSpringForward).ahead_s, 19'800); }).join();
}

TEST(LocalNow, StandsAheadOfUniversalTimeByItsZone) {
  const ScopedEnvironment zone("TZ", "XST-05:30");
  const LocalMoment now = local_now();
  EXPECT_EQ(now.wall_ms() - now.unix_ms, 19'800'000);
  EXPECT_NEAR(static_cast<double>(now.unix_ms), static_cast<double>(std::time(nullptr)) * 1000,
              5000);
}

}  // namespace
}  // namespace bvconn::detail

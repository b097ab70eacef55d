#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>

#include "bvconn/platform/local_time.h"

// What the system keeps of a zone, which the one who starts these tests has put it into.
namespace bvconn::detail {
namespace {

constexpr std::int64_t kHour_s = 3600;

bool is_in(const char* zone) {
  const char* const named = std::getenv("BVCONN_TEST_ZONE");
  return named != nullptr && std::string(named) == zone;
}

/// The clocks stand so many hours ahead of universal time until a moment, and so many from it on.
void expect_change(std::int64_t moment, std::int64_t before, std::int64_t after) {
  for (const auto zone_of : {&system_zone, &zone_at, &zone_on_day_of}) {
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(zone_of(moment - 86'400).ahead_s, before * kHour_s) << moment;
      EXPECT_EQ(zone_of(moment - 1).ahead_s, before * kHour_s) << moment;
      EXPECT_EQ(zone_of(moment).ahead_s, after * kHour_s) << moment;
      EXPECT_EQ(zone_of(moment).offset_s, after * kHour_s) << moment;
      EXPECT_EQ(zone_of(moment + 86'400).ahead_s, after * kHour_s) << moment;
    }
  }
}

TEST(LocalZone, OfCentralEuropeChangesWithTheClocksToTheSecond) {
  if (!is_in("Europe/Berlin")) GTEST_SKIP() << "another zone is in force";
  expect_change(1'774'746'000, 1, 2);  // 2026-03-29 01:00 UTC
  expect_change(1'792'890'000, 2, 1);  // 2026-10-25 01:00 UTC
}

// In 2007 the United States began their summer three weeks earlier than before, and ended it a week
// later.
TEST(LocalZone, GoesByTheRulesOfEachYear) {
  if (!is_in("America/New_York")) GTEST_SKIP() << "another zone is in force";
  expect_change(1'143'961'200, -5, -4);  // 2006-04-02 07:00 UTC
  expect_change(1'162'101'600, -4, -5);  // 2006-10-29 06:00 UTC
  expect_change(1'173'596'400, -5, -4);  // 2007-03-11 07:00 UTC
  expect_change(1'194'156'000, -4, -5);  // 2007-11-04 06:00 UTC
}

TEST(LocalZone, IsThatOfEachThread) {
  const std::int64_t moment = 1'774'746'000;
  const std::int64_t here = zone_at(moment).ahead_s;
  std::thread([&] { EXPECT_EQ(zone_at(moment).ahead_s, here); }).join();
}

TEST(LocalZone, OfAMomentThatTheSystemDoesNotKnowIsNone) {
  EXPECT_EQ(system_zone(-11'644'473'601).ahead_s, 0);
  EXPECT_EQ(system_zone(253'402'300'800).ahead_s, 0);
  EXPECT_EQ(system_zone(INT64_MAX).ahead_s, 0);
  EXPECT_EQ(system_zone(INT64_MIN).ahead_s, 0);
}

TEST(LocalNow, StandsAheadOfUniversalTimeByItsZone) {
  const LocalMoment now = local_now();
  const auto unix_ms = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::system_clock::now().time_since_epoch());
  EXPECT_NEAR(static_cast<double>(now.unix_ms), static_cast<double>(unix_ms.count()), 5000);
  EXPECT_EQ(now.wall_ms() - now.unix_ms, system_zone(now.unix_ms / 1000).ahead_s * 1000);
}

}  // namespace
}  // namespace bvconn::detail

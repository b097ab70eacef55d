#include "hostile/process_watch.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <condition_variable>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "files/temp_folder.h"

namespace bvconn::test {
namespace {

[[maybe_unused]] constexpr std::size_t kMiB = std::size_t{1} << 20U;

#ifndef BVCONN_SANITIZED
TEST(ProcessWatch, SeesThePeakThoughNothingOfItIsLeft) {
  for (int round = 0; round < 3; ++round) {
    const std::size_t growth = peak_growth([] { std::string(40 * kMiB, 'x').back() = 'y'; });
    EXPECT_GE(growth, 39 * kMiB);
    EXPECT_LE(growth, 42 * kMiB);
  }
}

TEST(ProcessWatch, SeesManySmallBlocksThoughSuchWereFreedBefore) {
  const auto fill = [] { std::vector<std::string>(100'000, std::string(200, 'x')).pop_back(); };
  fill();
  const std::size_t growth = peak_growth(fill);
  EXPECT_GE(growth, 20 * kMiB);
  EXPECT_LE(growth, 50 * kMiB);
}

TEST(ProcessWatch, SeesNextToNothingWhereNothingIsTaken) {
  EXPECT_LE(peak_growth([] {}), kMiB);
}
#endif

TEST(ProcessWatch, CountsDescriptorsAndThreads) {
  const Held before = held_now();
  const int copy = ::dup(0);
  std::mutex gate;
  gate.lock();
  std::thread other([&] { const std::scoped_lock lock(gate); });
  EXPECT_EQ(held_now().descriptors, before.descriptors + 1);
  EXPECT_EQ(held_now().threads, before.threads + 1);
  gate.unlock();
  other.join();
  ::close(copy);
  EXPECT_EQ(held_again(before), before);
}

TEST(ProcessWatch, AFileCanaryNoticesAReader) {
  const files_test::TempFolder folder;
  const FileCanary canary(folder.file("canary"));
  EXPECT_FALSE(canary.was_opened());
  const std::ifstream reader(folder.file("canary"));
  EXPECT_TRUE(canary.was_opened());
  EXPECT_FALSE(canary.was_opened());
}

}  // namespace
}  // namespace bvconn::test

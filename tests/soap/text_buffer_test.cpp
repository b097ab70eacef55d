#include "bvconn/platform/text_buffer.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <thread>
#include <utility>

namespace bvconn::detail {
namespace {

void grow_by(TextBuffer& text, std::string_view more) {
  if (text.size() + more.size() > text.capacity()) text.reserve(2 * (text.size() + more.size()));
  text.append(more);
}

TEST(TextBuffer, IsEmptyAtFirstAndEndsWithANul) {
  TextBuffer text;
  EXPECT_EQ(text.view(), "");
  EXPECT_EQ(*text.data(), '\0');
  EXPECT_EQ(text.take_string(), "");
}

TEST(TextBuffer, GrowsFromNothingToManyMegabytes) {
  TextBuffer text;
  std::string expected;
  for (std::size_t i = 0; expected.size() < 5'000'000; ++i) {
    const std::string piece = "piece " + std::to_string(i) + std::string(i % 7'000, '.');
    grow_by(text, piece);
    expected += piece;
    ASSERT_EQ(text.data()[text.size()], '\0');
  }
  EXPECT_TRUE(text.view() == expected);
  EXPECT_TRUE(text.take_string() == expected);
  EXPECT_EQ(text.view(), "");
}

TEST(TextBuffer, TakesAStringAndGivesItBack) {
  TextBuffer text = std::string("short");
  EXPECT_EQ(text.view(), "short");
  TextBuffer moved = std::move(text);
  EXPECT_EQ(text.view(), "");
  EXPECT_EQ(moved.view(), "short");
  grow_by(moved, ", and longer");
  EXPECT_EQ(moved.take_string(), "short, and longer");
}

TEST(TextBuffer, KeepsItsPlaceWhenItIsMoved) {
  TextBuffer text;
  grow_by(text, "<a/>");
  const char* const place = text.data();
  const TextBuffer moved = std::move(text);
  EXPECT_EQ(moved.data(), place);
  EXPECT_EQ(moved.view(), "<a/>");
}

TEST(TextBuffer, ThatFollowsALongerOneShowsNothingOfIt) {
  {
    TextBuffer first;
    grow_by(first, std::string(10'000, 'x'));
  }
  TextBuffer second;
  second.reserve(5);
  EXPECT_EQ(second.view(), "");
  EXPECT_EQ(*second.data(), '\0');
  second.append("y");
  EXPECT_EQ(second.view(), "y");
  EXPECT_EQ(second.data()[1], '\0');
}

TEST(MemoryBlock, OfAnySizeIsWritable) {
  for (const std::size_t size :
       {std::size_t{1}, std::size_t{4096}, MemoryBlock::kOfSystem - 1, MemoryBlock::kOfSystem,
        MemoryBlock::kLarge - 1, MemoryBlock::kLarge, std::size_t{1} << 20,
        (std::size_t{2} << 20) + 1, std::size_t{9'999'999}}) {
    const MemoryBlock block(size);
    ASSERT_GE(block.size(), size);
    block.data()[0] = std::byte{1};
    block.data()[size - 1] = std::byte{2};
    EXPECT_EQ(block.data()[size - 1], std::byte{2});
  }
}

TEST(MemoryBlock, KeepsWhatIsUsedOfItWhenItGrows) {
  constexpr std::array kSizes = {std::size_t{100},       MemoryBlock::kOfSystem - 1,
                                 MemoryBlock::kOfSystem, std::size_t{1} << 19,
                                 std::size_t{1} << 20,   std::size_t{5} << 20};
  for (std::size_t from = 0; from < kSizes.size(); ++from) {
    for (std::size_t to = from + 1; to < kSizes.size(); ++to) {
      MemoryBlock block(kSizes[from]);
      const std::size_t used = kSizes[from] - 7;
      for (std::size_t i = 0; i < used; ++i) block.data()[i] = static_cast<std::byte>(i * 31 / 8);
      block.grow(kSizes[to], used);
      ASSERT_GE(block.size(), kSizes[to]);
      block.data()[kSizes[to] - 1] = std::byte{1};
      std::size_t same = 0;
      while (same < used && block.data()[same] == static_cast<std::byte>(same * 31 / 8)) ++same;
      EXPECT_EQ(same, used) << kSizes[from] << " to " << kSizes[to];
    }
  }
}

TEST(MemoryBlock, OfNothingGrows) {
  MemoryBlock block;
  block.grow(10, 0);
  EXPECT_GE(block.size(), 10U);
}

TEST(MemoryBlock, StaysAsItIsWhereItCannotGrow) {
  for (const std::size_t size : {std::size_t{10}, MemoryBlock::kLarge, std::size_t{2} << 20}) {
    MemoryBlock block(size);
    const std::byte* const before = block.data();
    block.data()[9] = std::byte{42};
    EXPECT_THROW(block.grow(SIZE_MAX / 2, 10), std::bad_alloc);
    EXPECT_EQ(block.data(), before);
    EXPECT_EQ(block.data()[9], std::byte{42});
  }
}

TEST(MemoryBlock, BeyondAllMemoryIsRefused) {
  EXPECT_THROW(MemoryBlock(SIZE_MAX), std::bad_alloc);
  EXPECT_THROW(MemoryBlock(SIZE_MAX / 2), std::bad_alloc);
}

/// Each on a thread that has no spare memory yet.
void on_a_new_thread(void (*test)()) {
  std::thread(test).join();
}

TEST(SpareMemory, IsTheLargerOfTwoAndHandedOutOnce) {
  on_a_new_thread([] {
    keep_spare(Spare::kNodes, MemoryBlock(2'000));
    keep_spare(Spare::kNodes, MemoryBlock(1'000));
    const MemoryBlock spare = spare_or_new(Spare::kNodes, 1'500);
    EXPECT_EQ(spare.size(), 2'000U);
    EXPECT_EQ(spare_or_new(Spare::kNodes, 1'500).size(), 1'500U);
  });
}

TEST(SpareMemory, IsTheSystemsTooBelowTheLargeOnes) {
  on_a_new_thread([] {
    const std::byte* kept = nullptr;
    {
      MemoryBlock block(MemoryBlock::kLarge - 5'000);
      kept = block.data();
      keep_spare(Spare::kText, std::move(block));
    }
    EXPECT_EQ(spare_or_new(Spare::kText, MemoryBlock::kOfSystem).data(), kept);
  });
}

TEST(SpareMemory, ThatIsTooSmallStaysForTheNext) {
  on_a_new_thread([] {
    keep_spare(Spare::kNodes, MemoryBlock(3'000));
    EXPECT_EQ(spare_or_new(Spare::kNodes, 3'001).size(), 3'001U);
    EXPECT_EQ(spare_or_new(Spare::kNodes, 10).size(), 3'000U);
  });
}

TEST(SpareMemory, IsNeverLarge) {
  on_a_new_thread([] {
    keep_spare(Spare::kText, MemoryBlock(MemoryBlock::kLarge));
    EXPECT_EQ(spare_or_new(Spare::kText, 1).size(), 1U);
  });
}

}  // namespace
}  // namespace bvconn::detail

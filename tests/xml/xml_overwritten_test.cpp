#include "bvconn/platform/xml/xml_overwritten.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>

namespace bvconn::detail::xml {
namespace {

/// Lines and columns of a text by its definition, character by character.
Distance by_hand(std::string_view text) {
  Distance found;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool is_line_end =
        text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n'));
    if (is_line_end) {
      ++found.line_ends;
      found.columns = 0;
    } else if ((static_cast<unsigned char>(text[i]) & 0xC0u) != 0x80) {
      ++found.columns;
    }
  }
  return found;
}

void expect_distance(const Distance& found, std::uint32_t line_ends, std::uint32_t columns) {
  EXPECT_EQ(found.line_ends, line_ends);
  EXPECT_EQ(found.columns, columns);
}

TEST(Overwritten, NothingIsCountedAsItStands) {
  const std::string text = "one\ntw\xC3\xB6 and\r\nthree\rfour";
  const Overwritten overwritten(text.data());
  expect_distance(overwritten.distance(text.data(), text.data() + 3), 0, 3);
  expect_distance(overwritten.distance(text.data(), text.data() + 8), 1, 3);
  expect_distance(overwritten.distance(text.data(), text.data() + text.size()), 3, 4);
}

TEST(Overwritten, IsCountedAsItWas) {
  std::string text = "a&#10;&#10;b</x>\n <y>&amp;c";
  Overwritten overwritten(text.data());
  overwritten.note(text.data() + 1, text.data() + 12);
  text.replace(1, 11, "\n\nb\n\n\n\n\n\n\n\n");
  overwritten.note(text.data() + 21, text.data() + 27);
  text.replace(21, 6, "&c\n\n\n\n");
  expect_distance(overwritten.distance(text.data(), text.data() + 12), 0, 12);
  expect_distance(overwritten.distance(text.data(), text.data() + 17), 1, 0);
  expect_distance(overwritten.distance(text.data(), text.data() + 27), 1, 10);
}

TEST(Overwritten, GrowsWithTheRunThatItStandsIn) {
  std::string text = "x&lt;12\r\n34\r\n5.";
  Overwritten overwritten(text.data());
  // "<" comes first, then "12" moves, then each line end and what is behind it.
  overwritten.note(text.data() + 1, text.data() + 5);
  overwritten.note(text.data() + 2, text.data() + 7);
  overwritten.note(text.data() + 4, text.data() + 9);
  overwritten.note(text.data() + 5, text.data() + 11);
  overwritten.note(text.data() + 7, text.data() + 13);
  overwritten.note(text.data() + 8, text.data() + 15);
  text.replace(1, 14, "<12\n34\n5.\n\n\n\n\n");
  expect_distance(overwritten.distance(text.data(), text.data() + 15), 2, 2);
}

TEST(Overwritten, MayBeginWithTheBuffer) {
  std::string text = "&amp;&amp;";
  Overwritten overwritten(text.data());
  overwritten.note(text.data(), text.data() + 5);
  overwritten.note(text.data() + 1, text.data() + 10);
  text = "&&mp;\n\n\n\n\n";
  expect_distance(overwritten.distance(text.data(), text.data() + 10), 0, 10);
}

/// A text in which there is something of everything.
std::string some_text(std::minstd_rand& random, std::size_t size) {
  constexpr std::string_view kPieces[] = {"\n", "\r\n", "\r", "\xC3\xB6", "\xE2\x82\xAC", "a", "b"};
  std::string text;
  while (text.size() < size) {
    // Lines are long, or short.
    text += kPieces[(random() % 400 < 20 ? 0 : 3) + random() % (random() % 9 == 0 ? 3 : 4)];
  }
  return text;
}

TEST(Overwritten, OfManyStretchesEachIsCountedAsItWas) {
  std::minstd_rand random(4711);
  for (int round = 0; round < 40; ++round) {
    const std::string given = some_text(random, 50'000);
    std::string now = given;
    Overwritten overwritten(now.data());
    std::size_t end = random() % 3;
    const std::size_t longest = round % 2 == 0 ? 12 : 9'000;
    for (;;) {
      std::size_t begin = end + 1 + random() % longest;
      // What is overwritten never begins inside a line end.
      while (given[std::min(begin, given.size()) - 1] == '\r') ++begin;
      end = begin + 1 + random() % longest;
      if (end + 2 >= now.size()) break;
      // In one step, or in two that touch each other.
      const std::size_t middle = begin + random() % (end - begin);
      overwritten.note(now.data() + begin, now.data() + middle);
      overwritten.note(now.data() + middle, now.data() + end);
      std::fill(now.begin() + static_cast<std::ptrdiff_t>(begin),
                now.begin() + static_cast<std::ptrdiff_t>(end), random() % 2 == 0 ? '\n' : 'x');
    }
    const std::size_t place = now.size() - 1;
    const Distance wanted = by_hand(std::string_view(given).substr(0, place));
    const Distance found = overwritten.distance(now.data(), now.data() + place);
    EXPECT_EQ(found.line_ends, wanted.line_ends) << round;
    EXPECT_EQ(found.columns, wanted.columns) << round;
  }
}

}  // namespace
}  // namespace bvconn::detail::xml

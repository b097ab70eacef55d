#include "bvconn/component/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "component/host.h"

namespace bvconn::component {
namespace {

TEST(ComponentText, EveryLengthOfCharacterGoesBothWays) {
  const std::u16string wide = u"A\u00E9\u20AC\U0001F600";
  const std::string narrow = "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
  EXPECT_EQ(utf8_from_utf16(wide), narrow);
  EXPECT_EQ(utf16_from_utf8(narrow), wide);
}

TEST(ComponentText, TheEdgesOfEachLengthGoBothWays) {
  const std::u16string wide = u"\u007F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF";
  const std::string narrow =
      "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"
      "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
  EXPECT_EQ(utf8_from_utf16(wide), narrow);
  EXPECT_EQ(utf16_from_utf8(narrow), wide);
}

/// Text that goes both ways piece by piece, in pieces of any length of ASCII and others.
TEST(ComponentText, AMixtureIsItsPiecesInARow) {
  struct Piece {
    std::string_view utf8;
    std::u16string_view utf16;
  };
  constexpr Piece kPieces[] = {{"a", u"a"},
                               {"\x7F", u"\u007F"},
                               {"Bolts and nuts", u"Bolts and nuts"},
                               {"\xC2\x80", u"\u0080"},
                               {"\xC3\xA9", u"\u00E9"},
                               {"\xE2\x82\xAC", u"\u20AC"},
                               {"\xF0\x9F\x98\x80", u"\U0001F600"}};
  std::mt19937 random(1);
  for (int i = 0; i < 20'000; ++i) {
    std::string utf8;
    std::u16string utf16;
    for (std::size_t left = random() % 6; left > 0; --left) {
      const Piece& piece = kPieces[random() % std::size(kPieces)];
      utf8 += piece.utf8;
      utf16 += piece.utf16;
    }
    ASSERT_EQ(utf16_from_utf8(utf8), utf16);
    ASSERT_EQ(utf8_from_utf16(utf16), utf8);
    const StringPointer copy = string_from_utf8(utf8);
    ASSERT_EQ(std::u16string(copy, string_length(copy)), utf16);
    ASSERT_EQ(copy[utf16.size()], 0);
    free_string(copy);
    // What is broken off is replaced, whatever stands before it.
    ASSERT_EQ(utf16_from_utf8(utf8 + "\xE2\x82"), utf16 + u"\uFFFD");
    ASSERT_EQ(utf8_from_utf16(utf16 + u'\xD800'), std::nullopt);
    ASSERT_EQ(utf8_from_utf16(utf16 + u'\xDC00'), std::nullopt);
  }
}

TEST(ComponentText, AZeroIsACharacterLikeAnyOther) {
  EXPECT_EQ(utf8_from_utf16(std::u16string_view(u"a\0b", 3)), std::string("a\0b", 3));
  EXPECT_EQ(utf16_from_utf8(std::string_view("a\0b", 3)), std::u16string(u"a\0b", 3));
}

TEST(ComponentText, LoneSurrogatesAreNoText) {
  const char16_t high_at_end[] = {u'a', 0xD83D};
  const char16_t high_before_letter[] = {0xD83D, u'a'};
  const char16_t low_alone[] = {u'a', 0xDE00, u'b'};
  const char16_t high_high_low[] = {0xD83D, 0xD83D, 0xDE00};
  EXPECT_EQ(utf8_from_utf16({high_at_end, 2}), std::nullopt);
  EXPECT_EQ(utf8_from_utf16({high_before_letter, 2}), std::nullopt);
  EXPECT_EQ(utf8_from_utf16({low_alone, 3}), std::nullopt);
  EXPECT_EQ(utf8_from_utf16({high_high_low, 3}), std::nullopt);
}

TEST(ComponentText, BytesThatAreNoUtf8BecomeReplacementCharacters) {
  EXPECT_EQ(utf16_from_utf8("a\xFFz"), u"a\uFFFDz");
  // Cut characters count once, however much of them is there.
  EXPECT_EQ(utf16_from_utf8("a\xE2\x82z"), u"a\uFFFDz");
  EXPECT_EQ(utf16_from_utf8("a\xF0\x9F\x98"), u"a\uFFFD");
  // An overlong form, a surrogate, and what lies beyond the last character: no byte of them begins
  // a character.
  EXPECT_EQ(utf16_from_utf8("\xC0\xAF"), u"\uFFFD\uFFFD");
  EXPECT_EQ(utf16_from_utf8("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(utf16_from_utf8("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(ComponentText, AnAllocatedTextHasItsByteCountBeforeItAndAZeroAfterIt) {
  StringPointer text = alloc_string(u"Torvex", 6);
  ASSERT_NE(text, nullptr);
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, reinterpret_cast<const char*>(text) - 4, 4);
  EXPECT_EQ(bytes, 12u);
  EXPECT_EQ(text[6], u'\0');
  EXPECT_EQ(string_bytes(text), 12u);
  EXPECT_EQ(string_length(text), 6u);
  free_string(text);
}

TEST(ComponentText, AllocatingWithoutATextGivesZeros) {
  StringPointer text = alloc_string(nullptr, 3);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(std::u16string(text, 4), std::u16string(4, u'\0'));
  EXPECT_EQ(string_length(text), 3u);
  free_string(text);
}

TEST(ComponentText, ATextWhoseLengthDoesNotFitIsNotMade) {
  EXPECT_EQ(alloc_string(nullptr, 0x8000'0000u), nullptr);
  EXPECT_EQ(alloc_string(nullptr, SIZE_MAX), nullptr);
}

TEST(ComponentText, NullIsTheEmptyText) {
  EXPECT_EQ(text_of(nullptr), "");
  EXPECT_EQ(string_bytes(nullptr), 0u);
  EXPECT_EQ(string_length(nullptr), 0u);
  free_string(nullptr);
}

TEST(ComponentText, AHostsTextIsReadByItsLengthNotToAZero) {
  test::HostString text(std::u16string_view(u"a\0b", 3));
  EXPECT_EQ(text_of(text.get()), std::string("a\0b", 3));
}

TEST(ComponentText, AnOddNumberOfBytesIsNoText) {
  test::HostString text(u"ab", 3);
  EXPECT_EQ(text_of(text.get()), std::nullopt);
}

}  // namespace
}  // namespace bvconn::component

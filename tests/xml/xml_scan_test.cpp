// The scanning by many bytes at once against what it stands for, byte by byte: at every distance
// from the end of the text, with every byte that could stop it in every place.
#include "bvconn/platform/xml/xml_scan.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "bvconn/platform/xml/xml_characters.h"

namespace bvconn::detail::xml {
namespace {

constexpr std::size_t kSizes = 70;  // more than four vectors

/// Calls `check` with texts of every length up to `kSizes`, in which one byte is any other one.
template <class Check>
void for_each_text(Check check) {
  for (std::size_t size = 0; size < kSizes; ++size) {
    for (std::size_t place = 0; place <= size; ++place) {
      std::string text(size, 'x');
      for (int byte = 1; byte < 256; ++byte) {
        if (place < size) text[place] = static_cast<char>(byte);
        check(text);
        if (place == size) break;
      }
    }
  }
}

std::size_t first_in(const std::string& text, std::string_view stops) {
  std::size_t i = 0;
  while (i < text.size() && stops.find(text[i]) == std::string_view::npos) ++i;
  return i;
}

TEST(XmlScan, SkipsTextUpToTheFirstByteThatMatters) {
  for_each_text([](std::string text) {
    char* const at = skip_text(text.data(), text.data() + text.size());
    ASSERT_EQ(at - text.data(), static_cast<std::ptrdiff_t>(first_in(text, "<&\r"))) << text;
  });
}

TEST(XmlScan, HaltsAtBracketsOnlyWhereTheyEndASection) {
  for (std::size_t size = 0; size < kSizes; ++size) {
    for (const std::string_view end : {"]]>", "]>", "]]", "]]]>", "]x]>"}) {
      std::string text = std::string(size, 'x') + std::string(end) + std::string(20, 'y');
      const std::size_t found = text.find("]]>");
      char* const at = skip_text(text.data(), text.data() + text.size());
      ASSERT_EQ(at - text.data(),
                static_cast<std::ptrdiff_t>(found == std::string::npos ? text.size() : found))
          << text;
    }
  }
}

TEST(XmlScan, SkipsValuesUpToTheFirstByteThatMatters) {
  for_each_text([](std::string text) {
    for (const char byte : text) {  // no document holds the other ones below the blank
      if (byte > 0 && byte < ' ' && !is(byte, kIsSpace)) return;
    }
    char* const at = skip_value(text.data(), text.data() + text.size());
    ASSERT_EQ(at - text.data(), static_cast<std::ptrdiff_t>(first_in(text, "<&\"'\t\r\n"))) << text;
  });
}

TEST(XmlScan, ComparesEveryByte) {
  for_each_text([](const std::string& text) {
    const std::string plain(text.size(), 'x');
    const std::string copy = text;
    ASSERT_EQ(same_text(text, plain), text == plain) << text;
    ASSERT_TRUE(same_text(text, copy)) << text;
  });
  EXPECT_FALSE(same_text("abc", "ab"));
  EXPECT_TRUE(same_text({}, ""));
}

TEST(XmlScan, TellsShortTextsApartByTheirWords) {
  const auto word = [](std::string_view text) { return word_of(text.data(), text.size()); };
  for (std::size_t size = 1; size <= 8; ++size) {
    for (std::size_t place = 0; place < size; ++place) {
      std::string text(size, 'x');
      text[place] = 'y';
      EXPECT_NE(word(text), word(std::string(size, 'x'))) << text;
    }
  }
  EXPECT_EQ(word("12345678"), word("123456789"));
}

// U+0080, U+20AC, U+1F600 and what is next to them, cut or out of order; and U+FFFE, a surrogate.
TEST(XmlScan, FindsWhatNoDocumentMayHoldWhereverItStands) {
  constexpr std::string_view kGood[] = {"\t", "\xC2\x80", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"};
  constexpr std::string_view kBad[] = {
      "\x01",      "\x1F", "\x80",     "\xC2", "\xC2x",        "\xC1\x80",     "\xE2\x82",
      "\xE2\x82x", "\xFF", "\xF0\x9F", "\xDF", "\xEF\xBF\xBE", "\xED\xA0\x80", "\xF5\x80\x80\x80"};
  for (std::size_t before = 0; before < kSizes; ++before) {
    for (std::size_t after = 0; after < kSizes; after += 7) {
      const auto around = [&](std::string_view middle) {
        return std::string(before, 'x') + std::string(middle) + std::string(after, 'x');
      };
      for (const auto good : kGood) {
        ASSERT_EQ(find_unreadable(around(good)), std::string_view::npos) << around(good);
        ASSERT_EQ(find_unreadable(around(good) + '\x02'), before + good.size() + after);
      }
      for (const auto bad : kBad) {
        ASSERT_EQ(find_unreadable(around(bad)), before) << around(bad);
      }
    }
  }
}

}  // namespace
}  // namespace bvconn::detail::xml

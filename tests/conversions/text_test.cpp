#include "bvconn/platform/conversions/text.h"

#include <gtest/gtest.h>

#include "bvconn/platform/conversions/conversions.h"

namespace bvconn {
namespace {

using conversions::equal_ignoring_case;
using conversions::trim_blanks;
using conversions::upper_case;

TEST(TrimBlanks, TakesSpacesOnly) {
  EXPECT_EQ(trim_blanks("  a b  "), "a b");
  EXPECT_EQ(trim_blanks("   "), "");
  EXPECT_EQ(trim_blanks(""), "");
  EXPECT_EQ(trim_blanks("\ta\n "), "\ta\n");
}

TEST(UpperCase, ChangesAsciiLettersOnly) {
  EXPECT_EQ(upper_case("aZ-9\xC3\xA4"), "AZ-9\xC3\xA4");
}

TEST(EqualIgnoringCase, ComparesAsciiLettersWithoutCase) {
  EXPECT_TRUE(equal_ignoring_case("AppData", "appDATA"));
  EXPECT_FALSE(equal_ignoring_case("AppData", "AppDat"));
  EXPECT_FALSE(equal_ignoring_case("[", "{"));
  EXPECT_TRUE(equal_ignoring_case("", ""));
}

TEST(Utf8, TellsWellFormedText) {
  EXPECT_TRUE(detail::is_utf8("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF"));
  EXPECT_TRUE(detail::is_utf8(""));
  for (const char* text :
       {"\x80", "\xC3", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xE2\x82",
        "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "\xE2\x82(",
        "a\xC3"
        "b"}) {
    EXPECT_FALSE(detail::is_utf8(text)) << testing::PrintToString(text);
  }
}

TEST(AppendEscaped, LeavesOneLineOfText) {
  std::string out = "> ";
  detail::append_escaped(out, std::string_view("a\r\n\tb\\c\x1B\x7F\0\xFF\xC3\xA4", 13));
  EXPECT_EQ(out, "> a\\r\\n\\tb\\c\\x1B\\x7F\\x00\\xFF\xC3\xA4");
}

TEST(AppendEscaped, EscapesTheLineBreaksOfUnicode) {
  std::string out;
  detail::append_escaped(out,
                         "1\xC2\x85"
                         "2\xE2\x80\xA8"
                         "3\xE2\x80\xA9");
  EXPECT_EQ(out, "1\\xC2\\x852\\xE2\\x80\\xA83\\xE2\\x80\\xA9");
}

TEST(Shown, CutsLongTextBetweenCharacters) {
  EXPECT_EQ(detail::shown("short"), "\"short\"");
  EXPECT_EQ(detail::shown(std::string(60, 'x')), "\"" + std::string(60, 'x') + "\"");
  EXPECT_EQ(detail::shown(std::string(61, 'x')), "\"" + std::string(60, 'x') + "…\"");
  EXPECT_EQ(detail::shown(std::string(59, 'x') + "€€"), "\"" + std::string(59, 'x') + "…\"");
  EXPECT_EQ(detail::shown(std::string(70, '\xBF')).substr(0, 9), "\"\\xBF\\xBF");
}

}  // namespace
}  // namespace bvconn

#include "bvconn/platform/xml/xml_encoding.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "xml/outline.h"

namespace {

using bvconn::detail::xml::Problem;
using bvconn::detail::xml::ReadError;
using bvconn::detail::xml::to_utf8;
using namespace std::string_literals;

// ASCII text in two-byte units.
std::string little(std::string_view text) {
  std::string units;
  for (const char c : text) units += {c, '\0'};
  return units;
}
std::string big(std::string_view text) {
  std::string units;
  for (const char c : text) units += {'\0', c};
  return units;
}

std::string refusal(std::string bytes, std::string_view override_encoding = "") {
  try {
    return "was read: " + to_utf8(std::move(bytes), override_encoding);
  } catch (const ReadError& error) {
    EXPECT_EQ(error.problem, Problem::not_well_formed);
    return error.message;
  }
}

TEST(XmlEncoding, HandsUtf8BackAsItCame) {
  std::string document = "<a>caf\xC3\xA9 and more than a short string can hold</a>";
  const char* const where = document.data();
  const std::string result = to_utf8(std::move(document), "");
  EXPECT_EQ(result.data(), where);
  EXPECT_EQ(result, "<a>caf\xC3\xA9 and more than a short string can hold</a>");
  EXPECT_EQ(to_utf8("", ""), "");
}

TEST(XmlEncoding, DoesNotCheckUtf8) {
  EXPECT_EQ(to_utf8("<a>\xFF</a>", ""), "<a>\xFF</a>");
}

TEST(XmlEncoding, LeavesTheMarkToTheReader) {
  EXPECT_EQ(outline(to_utf8("\xEF\xBB\xBF<a>\xC3\xA9</a>", "")), "a (\"\xC3\xA9\")");
  EXPECT_EQ(outline(to_utf8("\xFF\xFE" + little("<a/>"), "")), "a ()");
  EXPECT_EQ(outline(to_utf8("\xFE\xFF" + big("<a/>"), "")), "a ()");
}

TEST(XmlEncoding, FollowsTheDeclaration) {
  EXPECT_EQ(to_utf8("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9\x80\xFF</a>", ""),
            "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xC3\xA9\xC2\x80\xC3\xBF</a>");
  EXPECT_EQ(to_utf8("<?xml version = \"1.0\"\r\n\tencoding =\n\"iso-8859-1\" ?><a>\xE9</a>", ""),
            "<?xml version = \"1.0\"\r\n\tencoding =\n\"iso-8859-1\" ?><a>\xC3\xA9</a>");
  EXPECT_EQ(to_utf8("<?xml version='1.0' encoding='utf-8'?><a>\xC3\xA9</a>", ""),
            "<?xml version='1.0' encoding='utf-8'?><a>\xC3\xA9</a>");
}

TEST(XmlEncoding, TakesNothingElseForADeclaration) {
  for (const std::string document : {
           "<!-- <?xml version='1.0' encoding='ISO-8859-1'?> --><a>\xC3\xA9</a>",
           "<?xmls version='1.0' encoding='ISO-8859-1'?><a>\xC3\xA9</a>",
           "<a encoding='ISO-8859-1'>\xC3\xA9</a>",
           " <?xml version='1.0' encoding='ISO-8859-1'?><a>\xC3\xA9</a>",
           "<?xml encoding='ISO-8859-1'?><a>\xC3\xA9</a>",
           "<?xml version='1.0'encoding='ISO-8859-1'?><a>\xC3\xA9</a>",
           "<?xml version='1.0' encoding='ISO-8859-1?><a>\xC3\xA9</a>",
           "<?xml version='1.0' encoding=ISO-8859-1?><a>\xC3\xA9</a>",
           "<?xml version='1.0' encoding 'ISO-8859-1'?><a>\xC3\xA9</a>",
           "<?xml version='1.0' standalone='no' encoding='ISO-8859-1'?><a>\xC3\xA9</a>",
           "<?xml version='1.0'?><a encoding='ISO-8859-1'>\xC3\xA9</a>",
           "<?xml version='1.0'",
           "<?xml",
       }) {
    EXPECT_EQ(to_utf8(document, ""), document);
  }
}

TEST(XmlEncoding, Latin9DiffersFromLatin1InEightPlaces) {
  EXPECT_EQ(to_utf8("\xA4\xA6\xA8\xB4\xB8\xBC\xBD\xBE", "ISO-8859-15"),
            "\xE2\x82\xAC\xC5\xA0\xC5\xA1\xC5\xBD\xC5\xBE\xC5\x92\xC5\x93\xC5\xB8");
  EXPECT_EQ(to_utf8("\xA4\xA6\xA8\xB4\xB8\xBC\xBD\xBE", "ISO-8859-1"),
            "\xC2\xA4\xC2\xA6\xC2\xA8\xC2\xB4\xC2\xB8\xC2\xBC\xC2\xBD\xC2\xBE");
  EXPECT_EQ(to_utf8("\xE9\xA5", "ISO-8859-15"), "\xC3\xA9\xC2\xA5");
}

TEST(XmlEncoding, Windows1252HasCharactersWhereLatin1HasControls) {
  EXPECT_EQ(to_utf8("\x80\x82\x8A\x91\x99\x9F\xA0\xFF", "windows-1252"),
            "\xE2\x82\xAC\xE2\x80\x9A\xC5\xA0\xE2\x80\x98\xE2\x84\xA2\xC5\xB8\xC2\xA0\xC3\xBF");
}

TEST(XmlEncoding, RefusesBytesThatWindows1252DoesNotHave) {
  EXPECT_EQ(refusal("<a>\r\n\x80\x81</a>", "windows-1252"),
            "line 2, column 2: the byte 0x81 stands for nothing in the encoding windows-1252");
  for (const char byte : {'\x8D', '\x8F', '\x90', '\x9D'}) {
    EXPECT_NE(refusal({byte}, "windows-1252").find("stands for nothing"), std::string::npos);
  }
}

TEST(XmlEncoding, RefusesAllButAsciiInAscii) {
  EXPECT_EQ(to_utf8("<a>\x7F</a>", "US-ASCII"), "<a>\x7F</a>");
  EXPECT_EQ(refusal("<?xml version='1.0' encoding='us-ascii'?>\n<a>caf\xE9</a>"),
            "line 2, column 7: the byte 0xE9 stands for nothing in the encoding us-ascii");
}

TEST(XmlEncoding, KnowsEncodingsByTheirUsualNames) {
  for (const std::string_view name : {"iso-8859-1", "ISO_8859-1", "Latin1", "ISO8859-1", "l1"}) {
    EXPECT_EQ(to_utf8("\xA4", name), "\xC2\xA4") << name;
  }
  for (const std::string_view name : {"ISO-8859-15", "iso8859-15", "Latin-9", "LATIN9"}) {
    EXPECT_EQ(to_utf8("\xA4", name), "\xE2\x82\xAC") << name;
  }
  for (const std::string_view name : {"windows-1252", "Windows-1252", "CP1252"}) {
    EXPECT_EQ(to_utf8("\x80", name), "\xE2\x82\xAC") << name;
  }
  for (const std::string_view name : {"US-ASCII", "ascii", "ANSI_X3.4-1968"}) {
    EXPECT_EQ(to_utf8("x", name), "x") << name;
    EXPECT_NE(refusal("\x80", name).find("stands for nothing"), std::string::npos) << name;
  }
  for (const std::string_view name : {"UTF-8", "utf-8", "Utf8"}) {
    EXPECT_EQ(to_utf8("\xC3\xA9", name), "\xC3\xA9") << name;
  }
  for (const std::string_view name : {"UTF-16LE", "utf-16le"}) {
    EXPECT_EQ(to_utf8("\xE9\0"s, name), "\xC3\xA9") << name;
  }
}

TEST(XmlEncoding, NamesTheEncodingThatIsNotKnown) {
  EXPECT_EQ(refusal("<?xml version='1.0' encoding='Shift_JIS'?><a/>"),
            "line 1, column 31: the encoding 'Shift_JIS' is not known");
  EXPECT_EQ(refusal("<a/>", "EBCDIC-CP-BE"),
            "line 1, column 1: the encoding 'EBCDIC-CP-BE' is not known");
  EXPECT_EQ(refusal("<a/>", " UTF-8"), "line 1, column 1: the encoding ' UTF-8' is not known");
}

TEST(XmlEncoding, TheOverrideReplacesWhatTheDocumentSays) {
  const std::string latin = "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xC3\xA9</a>";
  EXPECT_EQ(outline(to_utf8(latin, "")), "a (\"\xC3\x83\xC2\xA9\")");
  EXPECT_EQ(outline(to_utf8(latin, "UTF-8")), "a (\"\xC3\xA9\")");
  EXPECT_EQ(outline(to_utf8("<?xml version='1.0' encoding='x-nonsense'?><a/>", "UTF-8")), "a ()");
  EXPECT_EQ(outline(to_utf8("<a>\xA4</a>", "iso-8859-15")), "a (\"\xE2\x82\xAC\")");
}

TEST(XmlEncoding, ReadsUtf16WithAMarkInBothOrders) {
  EXPECT_EQ(to_utf8("\xFF\xFE" + little("<a>") + "\xE9\0\xAC\x20"s + little("</a>"), ""),
            "\xEF\xBB\xBF<a>\xC3\xA9\xE2\x82\xAC</a>");
  EXPECT_EQ(to_utf8("\xFE\xFF" + big("<a>") + "\0\xE9\x20\xAC"s + big("</a>"), ""),
            "\xEF\xBB\xBF<a>\xC3\xA9\xE2\x82\xAC</a>");
}

TEST(XmlEncoding, OnlyOneMarkIsSkipped) {
  const std::string twice = "\xFE\xFF\xFE\xFF" + big("<a/>");
  EXPECT_THROW(outline(to_utf8(twice, "")), ReadError);
}

TEST(XmlEncoding, ReadsSurrogatePairs) {
  EXPECT_EQ(to_utf8("\x3D\xD8\x00\xDE"s, "UTF-16LE"), "\xF0\x9F\x98\x80");
  EXPECT_EQ(to_utf8("\xDB\xFF\xDF\xFF"s, "UTF-16BE"), "\xF4\x8F\xBF\xBF");
}

TEST(XmlEncoding, KnowsUtf16WithoutAMarkByItsZeroBytes) {
  EXPECT_EQ(outline(to_utf8(little("<a>x</a>"), "")), "a (\"x\")");
  EXPECT_EQ(outline(to_utf8(big("<a>x</a>"), "")), "a (\"x\")");
  EXPECT_EQ(outline(to_utf8(little("<?xml version='1.0' encoding='UTF-16'?><a/>"), "")), "a ()");
}

TEST(XmlEncoding, AMarkCountsMoreThanTheDeclaration) {
  const std::string_view document = "<?xml version='1.0' encoding='ISO-8859-1'?><a>";
  EXPECT_EQ(outline(to_utf8("\xEF\xBB\xBF" + std::string(document) + "\xC3\xA9</a>", "")),
            "a (\"\xC3\xA9\")");
  EXPECT_EQ(outline(to_utf8("\xFF\xFE" + little(document) + "\xAC\x20" + little("</a>"), "")),
            "a (\"\xE2\x82\xAC\")");
}

TEST(XmlEncoding, TheOverrideUtf16TakesTheOrderFromTheBytes) {
  EXPECT_EQ(to_utf8("\xFF\xFE" + little("<a/>"), "UTF-16"), "\xEF\xBB\xBF<a/>");
  EXPECT_EQ(to_utf8("\xFE\xFF" + big("<a/>"), "UTF-16"), "\xEF\xBB\xBF<a/>");
  EXPECT_EQ(to_utf8(little("<a/>"), "UTF-16"), "<a/>");
  EXPECT_EQ(to_utf8(big("<a/>"), "UTF-16"), "<a/>");
  EXPECT_EQ(to_utf8(big(" <a/>"), "UTF-16"), " <a/>");
}

TEST(XmlEncoding, RefusesADeclarationOfUtf16InSingleBytes) {
  EXPECT_EQ(refusal("<?xml version='1.0' encoding='UTF-16'?><a/>"),
            "line 1, column 31: the document declares the encoding 'UTF-16', but its characters "
            "are single bytes");
}

TEST(XmlEncoding, RefusesHalvesOfSurrogatePairs) {
  EXPECT_EQ(refusal("\xFF\xFE" + little("<a>\r\nx") + "\x3D\xD8"s + little("</a>")),
            "line 2, column 2: half of a surrogate pair stands alone in UTF-16");
  EXPECT_EQ(refusal("\xFE\xFF" + big("<a>") + "\xDE\x00\xD8\x3D"s + big("</a>")),
            "line 1, column 4: half of a surrogate pair stands alone in UTF-16");
  EXPECT_EQ(refusal("\xFF\xFE" + little("<a>") + "\x3D\xD8"s),
            "line 1, column 4: half of a surrogate pair stands alone in UTF-16");
}

TEST(XmlEncoding, RefusesAnOddNumberOfBytesInUtf16) {
  EXPECT_EQ(refusal("\xFF\xFE" + little("<a/>") + "\n"),
            "line 1, column 5: the document ends inside a character of UTF-16");
}

TEST(XmlEncoding, TellsPlacesInUtf16InCharactersAndBytes) {
  try {
    to_utf8("\xFE\xFF" + big("<a>\n") + "\xD8\x3D\xDE\x00\x00\xE9\xD8\x3D"s + big("</a>"), "");
    FAIL();
  } catch (const ReadError& error) {
    EXPECT_EQ(error.position.line, 2U);
    EXPECT_EQ(error.position.column, 3U);
    EXPECT_EQ(error.position.offset, 16U);
  }
}

}  // namespace

// Documents that are made to keep a reader busy. Each is a few megabytes; a reader whose effort
// grows with the square of something in it would take minutes, one that does not a few hundredths
// of a second. So the bound can be wide enough for a slow machine with sanitizers.
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/xml/xml_encoding.h"
#include "bvconn/platform/xml/xml_reader.h"

namespace {

using bvconn::detail::xml::Attribute;
using bvconn::detail::xml::Limits;
using bvconn::detail::xml::Name;
using bvconn::detail::xml::ReadError;
using bvconn::detail::xml::ReadyTags;
using bvconn::detail::xml::Scope;
using bvconn::detail::xml::to_utf8;

constexpr std::chrono::seconds kBound{20};
constexpr Limits kNoLimits{.depth = 1'000'000'000, .attributes = 1'000'000'000};

struct Counter {
  void start_element(const Name&, std::span<const Attribute> attributes, const Scope&) {
    ++elements;
    attribute_count += attributes.size();
  }
  void text(std::string_view text) { text_size += text.size(); }
  void end_element(const Scope&) {}

  std::size_t elements = 0;
  std::size_t attribute_count = 0;
  std::size_t text_size = 0;
};

class XmlEffort : public testing::Test {
 protected:
  void TearDown() override { EXPECT_LT(std::chrono::steady_clock::now() - begin_, kBound); }
  static Counter read(std::string document) {
    Counter counter;
    bvconn::detail::xml::parse(document, kNoLimits, counter);
    return counter;
  }
  static std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) result += text;
    return result;
  }
  static std::string number(std::size_t i) { return std::to_string(i); }

 private:
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

TEST_F(XmlEffort, ManyAttributesOfOneElement) {
  std::string document = "<a";
  for (std::size_t i = 0; i < 200'000; ++i) document += " a" + number(i) + "=''";
  EXPECT_EQ(read(document + "/>").attribute_count, 200'000U);
  EXPECT_THROW(read(document + " a77=''/>"), ReadError);
}

TEST_F(XmlEffort, ManyPrefixesOnOneElement) {
  std::string document = "<a";
  for (std::size_t i = 0; i < 100'000; ++i) document += " xmlns:p" + number(i) + "='u'";
  document += ">";
  for (std::size_t i = 0; i < 100'000; ++i) document += "<p" + number(i) + ":b/>";
  EXPECT_EQ(read(document + "</a>").elements, 100'001U);
}

TEST_F(XmlEffort, APrefixDeclaredAtEachLevel) {
  std::string document;
  for (std::size_t i = 0; i < 100'000; ++i)
    document += "<p" + number(i) + ":a xmlns:p" + number(i) + "='u'>";
  for (std::size_t i = 0; i < 100'000; ++i) document += "<p0:b/>";
  for (std::size_t i = 100'000; i > 0; --i) document += "</p" + number(i - 1) + ":a>";
  EXPECT_EQ(read(std::move(document)).elements, 200'000U);
}

TEST_F(XmlEffort, TheSamePrefixDeclaredAtEachLevel) {
  const std::size_t depth = 200'000;
  EXPECT_EQ(read(repeated("<p:a xmlns:p='u'>", depth) + repeated("</p:a>", depth)).elements, depth);
}

TEST_F(XmlEffort, TwoVeryLongNamespacesOnEachElement) {
  const std::string uri(1'000'000, 'u');
  const std::string document = "<r xmlns:p='" + uri + "1' xmlns:q='" + uri + "2'>" +
                               repeated("<a p:b='' q:b=''/>", 100'000) + "</r>";
  EXPECT_EQ(read(document).elements, 100'001U);
}

TEST_F(XmlEffort, VeryLongNamesOfManyAttributes) {
  std::string document = "<a";
  const std::string common(1'000, 'n');
  for (std::size_t i = 0; i < 3'000; ++i) document += " " + common + number(i) + "=''";
  EXPECT_EQ(read(document + "/>").attribute_count, 3'000U);
}

TEST_F(XmlEffort, DeepNesting) {
  const std::size_t depth = 1'000'000;
  EXPECT_EQ(read(repeated("<a>", depth) + repeated("</a>", depth)).elements, depth);
  EXPECT_THROW(read(repeated("<a>", depth)), ReadError);
}

// Start tags that the reader could remember, if it had room for them or found them again.
TEST_F(XmlEffort, StartTagsThatAreAllDifferent) {
  std::string document = "<r>";
  for (std::size_t i = 0; i < 200'000; ++i) document += "<a" + number(i) + " b=''/>";
  EXPECT_EQ(read(document + "</r>").elements, 200'001U);
}

TEST_F(XmlEffort, StartTagsThatComeBackWhenTheyAreForgotten) {
  std::string document = "<r>";
  for (std::size_t i = 0; i < 200'000; ++i) document += "<a" + number(i % 1'000) + " b=''/>";
  EXPECT_EQ(read(document + "</r>").elements, 200'001U);
}

TEST_F(XmlEffort, StartTagsThatAllWantTheSamePlace) {
  std::vector<std::string> tags;
  for (std::size_t i = 0; tags.size() < 200; ++i) {
    const std::string tag = "<a" + number(i) + ">";
    if (ReadyTags::place_of(tag.data(), tag.size()) == 7) tags.push_back(tag);
  }
  std::string document = "<r>";
  for (std::size_t i = 0; i < 200'000; ++i) {
    const std::string& tag = tags[i % tags.size()];
    document += tag;
    document += "</" + tag.substr(1);
  }
  EXPECT_EQ(read(document + "</r>").elements, 200'001U);
}

TEST_F(XmlEffort, StartTagsThatDifferAtTheirEnds) {
  const std::string beginning = "<a b='" + std::string(480, 'x');
  std::string document = "<r>";
  for (std::size_t i = 0; i < 10'000; ++i) document += beginning + number(i) + "'/>";
  EXPECT_EQ(read(document + "</r>").elements, 10'001U);
}

TEST_F(XmlEffort, LongTextsBehindStartTagsThatAreKnown) {
  const std::string text(10'000, 'x');
  EXPECT_EQ(read("<r>" + repeated("<a>" + text + "&amp;</a>", 300) + "</r>").elements, 301U);
  EXPECT_EQ(read("<r>" + repeated("<a>" + text, 300) + repeated("</a>", 300) + "</r>").elements,
            301U);
}

TEST_F(XmlEffort, OneRunOfManyPieces) {
  const std::size_t count = 300'000;
  EXPECT_EQ(read("<a>" + repeated("&lt;x", count) + "</a>").text_size, 2 * count);
  EXPECT_EQ(read("<a>" + repeated("<![CDATA[y]]>", count) + "</a>").text_size, count);
  EXPECT_EQ(read("<a>z" + repeated("<!-- -->\r\n<?t?>", count) + "</a>").text_size, count + 1);
  EXPECT_EQ(read("<a b='" + repeated("&#10;\r\n", count) + "'/>").attribute_count, 1U);
}

TEST_F(XmlEffort, ManyValuesWithReferencesBeforeAnError) {
  std::string document = "<a";
  for (std::size_t i = 0; i < 100'000; ++i) document += " a" + number(i) + "='&lt;\n'";
  EXPECT_THROW(read(document + " p:b=''/>"), ReadError);
  EXPECT_THROW(read(repeated("<a b='&lt;\n'>&gt;\n", 100'000) + "</b>"), ReadError);
}

TEST_F(XmlEffort, AlmostTheEndOfASection) {
  const std::string brackets(3'000'000, ']');
  EXPECT_EQ(read("<a>" + brackets + "</a>").text_size, brackets.size());
  EXPECT_EQ(read("<a><![CDATA[" + brackets + "]]></a>").text_size, brackets.size());
  EXPECT_THROW(read("<a><![CDATA[" + brackets), ReadError);
  EXPECT_EQ(read("<a><!--" + repeated("- ", 1'000'000) + "--></a>").elements, 1U);
  EXPECT_EQ(read("<a><?t " + repeated("?", 1'000'000) + "?></a>").elements, 1U);
}

TEST_F(XmlEffort, NamesBeyondAscii) {
  const std::string name = repeated("\xC3\xA9", 1'000'000);
  EXPECT_EQ(read("<" + name + "></" + name + ">").elements, 1U);
  EXPECT_THROW(read("<a>&" + name + ";</a>"), ReadError);
}

TEST_F(XmlEffort, VeryLongReferences) {
  EXPECT_EQ(read("<a>&#" + std::string(3'000'000, '0') + "65;</a>").text_size, 1U);
  EXPECT_THROW(read("<a>&#" + std::string(3'000'000, '9') + ";</a>"), ReadError);
}

TEST_F(XmlEffort, LongDocumentsInOtherEncodings) {
  const std::string latin =
      "<?xml version='1.0' encoding='ISO-8859-1'?><a>" + std::string(3'000'000, '\xE9') + "</a>";
  EXPECT_EQ(read(to_utf8(latin, "")).text_size, 6'000'000U);
  std::string units = "\xFE\xFF";
  for (const char c : std::string_view("<a>")) units += {'\0', c};
  units += repeated("\x20\xAC", 1'000'000);
  EXPECT_THROW(to_utf8(units + "\xDC" + "x", ""), ReadError);
  EXPECT_EQ(to_utf8(units, "").size(), 3'000'006U);
}

}  // namespace

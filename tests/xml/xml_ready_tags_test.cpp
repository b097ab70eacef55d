// Start tags that come again: what the reader remembers of them must not be heard from outside, but
// through their numbers.
#include <gtest/gtest.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "bvconn/platform/xml/xml_reader.h"

namespace {

using bvconn::detail::xml::Attribute;
using bvconn::detail::xml::Limits;
using bvconn::detail::xml::Name;
using bvconn::detail::xml::parse;
using bvconn::detail::xml::ReadError;
using bvconn::detail::xml::Scope;
using bvconn::detail::xml::Tag;

/// Writes down each element that it is told of: the number of its tag, or "-", a "!" where the
/// number is known, and the text of a whole element.
struct Numbers {
  void start_element(const Name& name, std::span<const Attribute>, const Scope&, Tag tag) {
    tell(tag);
    line += std::string(name.local) + ' ';
  }
  bool whole_element(Tag tag, std::string_view text) {
    if (!takes_whole) return false;
    tell(tag);
    line += "[" + std::string(text) + "] ";
    return true;
  }
  void text(std::string_view text) { line += "(" + std::string(text) + ") "; }
  void end_element(const Scope&) { line += "/ "; }

  void tell(Tag tag) {
    line += tag.number == Tag::kNoNumber ? "-" : std::to_string(tag.number);
    line += tag.is_known ? "!" : "";
  }
  bool takes_whole = true;
  std::string line;
};

std::string numbers(std::string document, bool takes_whole = true, std::size_t unremembered = 0) {
  Numbers sink{.takes_whole = takes_whole, .line = {}};
  parse(document, {.unremembered = unremembered}, sink);
  return sink.line;
}

TEST(XmlReadyTags, CountFromZeroAndComeAgain) {
  EXPECT_EQ(numbers("<r><a>1</a><b/><a>2</a><b/><a></a></r>"),
            "0r 1a (1) / 2b / 1![2] 2![] 1![] / ");
}

TEST(XmlReadyTags, AreNotRememberedBeforeSoMany) {
  EXPECT_EQ(numbers("<r><a/><a/><a/><a/></r>", true, 3), "-r -a / -a / 0a / 0![] / ");
}

TEST(XmlReadyTags, AreToldInPartsToWhoDoesNotTakeAWholeElement) {
  EXPECT_EQ(numbers("<r><a>1</a><a>2</a><a/><a/></r>", false),
            "0r 1a (1) / 1!a (2) / 2a / 2!a / / ");
}

TEST(XmlReadyTags, MeanAnotherWhereABlankDiffers) {
  EXPECT_EQ(numbers("<r><a b='1'/><a  b='1'/><a b=\"1\"/><a b='1'/></r>"),
            "0r 1a / 2a / 3a / 1![] / ");
}

TEST(XmlReadyTags, AreWholeOnlyWithNothingButText) {
  EXPECT_EQ(numbers("<r><a/><b>1</b><b><a/></b><b>1<a/></b><b>x&lt;</b><b>2</b></r>"),
            "0r 1a / 2b (1) / 2!b 1![] / 2!b (1) 1![] / 2!b (x<) / 2![2] / ");
  EXPECT_EQ(numbers("<r><b>1</b><b>2</b ><b><![CDATA[3]]></b><b><!----></b></r>"),
            "0r 1b (1) / 1!b (2) / 1!b (3) / 1!b / / ");
}

TEST(XmlReadyTags, AreOthersInOtherNamespaces) {
  EXPECT_EQ(numbers("<r xmlns:p='u'><p:a/><b xmlns:p='v'><p:a/><p:a/></b><p:a/></r>"),
            "0r 1a / 2b 3a / 3![] / 1![] / ");
}

TEST(XmlReadyTags, AreTheSameWhereTheSameDeclarationsComeAgain) {
  EXPECT_EQ(numbers("<r><b xmlns='u'><a/></b><b xmlns='u'><a/></b><a/></r>"),
            "0r 1b 2a / / 1!b 2![] / 3a / / ");
  EXPECT_EQ(numbers("<r><b xmlns='u'/><b xmlns='u'/></r>"), "0r 1b / 1!b / / ");
}

TEST(XmlReadyTags, AreNotRememberedWithReferencesInTheirValues) {
  EXPECT_EQ(numbers("<r><a b='&lt;'/><a b='&lt;'/><a b='x\ty'/></r>"), "0r -a / -a / -a / / ");
}

TEST(XmlReadyTags, AreNotRememberedWhenTheyAreLong) {
  const std::string tag = "<a b='" + std::string(505, 'x') + "'/>";
  EXPECT_EQ(numbers("<r>" + tag + tag + "</r>"), "0r -a / -a / / ");
}

TEST(XmlReadyTags, GiveTheirNumbersAwayWhenThereAreMany) {
  std::string document = "<r>";
  for (int i = 0; i < 255; ++i) document += "<a" + std::to_string(i) + "/>";
  const std::string line = numbers(document + "<b/><b/><a0/></r>");
  EXPECT_EQ(line.substr(line.find("255a254")), "255a254 / 0b / 0![] 1a0 / / ");
}

TEST(XmlReadyTags, AreLookedForAgainAfterManyThatWereDifferent) {
  std::string document = "<r>";
  for (int i = 0; i < 3'000; ++i) document += "<a" + std::to_string(i) + "/>";
  EXPECT_NE(numbers(document + "</r>").find("-a2000 /"), std::string::npos);
  for (int i = 0; i < 3'000; ++i) document += "<b/>";
  EXPECT_TRUE(numbers(document + "</r>").ends_with("![] / "));
}

TEST(XmlReadyTags, CountTowardsTheDepth) {
  const Limits limits{.depth = 2, .unremembered = 0};
  const auto read = [&limits](std::string document) {
    Numbers sink;
    parse(document, limits, sink);
    return sink.line;
  };
  EXPECT_EQ(read("<a><b/><b/></a>"), "0a 1b / 1![] / ");
  EXPECT_THROW(read("<a><b/><b><b/></b></a>"), ReadError);
  EXPECT_THROW(read("<a><a><a>"), ReadError);
}

}  // namespace

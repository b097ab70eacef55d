#include "bvconn/platform/xml/xml_reader.h"

#include <gtest/gtest.h>

#include <string>

#include "xml/outline.h"

namespace {

using bvconn::detail::xml::Limits;
using bvconn::detail::xml::parse;
using bvconn::detail::xml::Problem;
using bvconn::detail::xml::ReadError;

TEST(XmlReader, GivesElementsInTheirNesting) {
  EXPECT_EQ(outline("<a/>"), "a ()");
  EXPECT_EQ(outline("<a></a>"), "a ()");
  EXPECT_EQ(outline("<a ></a\n>"), "a ()");
  EXPECT_EQ(outline("<a><b><c/></b><d/></a>"), "a (b (c ()) d ())");
  EXPECT_EQ(outline("<a><ab/></a>"), "a (ab ())");
  EXPECT_EQ(outline("<_-.1 />"), "_-.1 ()");
}

TEST(XmlReader, GivesAttributesInTheirOrder) {
  EXPECT_EQ(outline("<a b='1' c=\"2\"/>"), "a @b=[1] @c=[2] ()");
  EXPECT_EQ(outline("<a\n\tb = '1'\r\nc\t=\n\"\" />"), "a @b=[1] @c=[] ()");
  EXPECT_EQ(outline("<a b='\"' c=\"'\" d='>' e='/>'/>"), "a @b=[\"] @c=['] @d=[>] @e=[/>] ()");
  EXPECT_EQ(outline("<a b='1'></a>"), "a @b=[1] ()");
}

TEST(XmlReader, KeepsWhiteSpaceInText) {
  EXPECT_EQ(outline("<a> x <b/>\n</a>"), "a (\" x \" b () \"\n\")");
}

TEST(XmlReader, ResolvesTheFiveEntitiesAndCharacterReferences) {
  EXPECT_EQ(outline("<a>&lt;&gt;&amp;&quot;&apos;</a>"), "a (\"<>&\"'\")");
  EXPECT_EQ(outline("<a b='&lt;&gt;&amp;&quot;&apos;'/>"), "a @b=[<>&\"'] ()");
  EXPECT_EQ(outline("<a>&#65;&#x41;&#x00042;&#0000000000000067;</a>"), "a (\"AABC\")");
  EXPECT_EQ(outline("<a>&#xe9;&#x20AC;&#x1F600;&#x10FFFF;</a>"),
            "a (\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF\")");
  EXPECT_EQ(outline("<a>&#x7F;&#x80;&#xD7FF;&#xE000;&#xFFFD;</a>"),
            "a (\"\x7F\xC2\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD\")");
}

TEST(XmlReader, ResolvesReferencesOnlyOnce) {
  EXPECT_EQ(outline("<a b='&amp;lt;'>&amp;amp;&#38;lt;</a>"), "a @b=[&lt;] (\"&amp;&lt;\")");
}

TEST(XmlReader, JoinsTheCharacterDataBetweenTwoTags) {
  EXPECT_EQ(outline("<a>1&amp;2<![CDATA[3]]>4<!-- no -->5<?no no?>6</a>"), "a (\"1&23456\")");
  EXPECT_EQ(outline("<a><![CDATA[1]]><!-- no -->2</a>"), "a (\"12\")");
  EXPECT_EQ(outline("<a><!-- no -->1<!-- no --></a>"), "a (\"1\")");
}

TEST(XmlReader, PartsCharacterDataAtCommentsThatAreWanted) {
  EXPECT_EQ(outline<FullOutline>("<a>1<!-- c -->2<?t d ?>3<![CDATA[4]]></a>"),
            "a (\"1\" #[ c ] \"2\" ?t[d ] \"34\")");
  EXPECT_EQ(outline<FullOutline>("<!--1--><?t?><a/><?u  d?><!--2-->"), "#[1] ?t[] a () ?u[d] #[2]");
}

TEST(XmlReader, AllowsHyphensInCommentsUnlessTwoStandTogether) {
  EXPECT_EQ(outline<FullOutline>("<a><!--->--><!-- - -x- --></a>"), "a (#[->] #[ - -x- ])");
}

TEST(XmlReader, GivesNoEmptyText) {
  EXPECT_EQ(outline("<a><![CDATA[]]></a>"), "a ()");
  EXPECT_EQ(outline("<a><!----></a>"), "a ()");
  EXPECT_EQ(outline("<a><![CDATA[]]><b/><?x?></a>"), "a (b ())");
}

TEST(XmlReader, LeavesTheContentOfCdataSectionsAlone) {
  EXPECT_EQ(outline("<a><![CDATA[<b>&amp;]] ]>--]]></a>"), "a (\"<b>&amp;]] ]>--\")");
  EXPECT_EQ(outline("<a><![CDATA[]]]></a>"), "a (\"]\")");
  EXPECT_EQ(outline("<a><![CDATA[]]]]><![CDATA[>]]></a>"), "a (\"]]>\")");
  EXPECT_EQ(outline("<a>x<![CDATA[<![CDATA[]]></a>"), "a (\"x<![CDATA[\")");
}

TEST(XmlReader, AllowsBracketsInText) {
  EXPECT_EQ(outline("<a>]] > ]&gt; ]]&gt; >></a>"), "a (\"]] > ]> ]]> >>\")");
  EXPECT_EQ(outline("<a b=']]>'/>"), "a @b=[]]>] ()");
}

TEST(XmlReader, MakesEveryLineEndOneLineFeed) {
  EXPECT_EQ(outline("<a>1\r\n2\r3\n4\r\r\n5\n\r6</a>"), "a (\"1\n2\n3\n4\n\n5\n\n6\")");
  EXPECT_EQ(outline("<a><![CDATA[\r\n1\r]]>\r\n</a>"), "a (\"\n1\n\n\")");
  EXPECT_EQ(outline<FullOutline>("<a><!--1\r\n2\r--><?t 1\r\n\r2?></a>"),
            "a (#[1\n2\n] ?t[1\n\n2])");
  EXPECT_EQ(outline("<a>\r\n</a>"), "a (\"\n\")");
}

TEST(XmlReader, KeepsACarriageReturnThatIsWrittenAsAReference) {
  EXPECT_EQ(outline("<a b='&#13;&#10;&#9;'>1&#13;&#xA;2&#xD;\r\n</a>"),
            "a @b=[\r\n\t] (\"1\r\n2\r\n\")");
}

TEST(XmlReader, MakesWhiteSpaceInValuesSpaces) {
  EXPECT_EQ(outline("<a b='1\t2\n3\r4\r\n5 6\"7'/>"), "a @b=[1 2 3 4 5 6\"7] ()");
  EXPECT_EQ(outline("<a b='\n' c='\r\n\r\n'/>"), "a @b=[ ] @c=[  ] ()");
}

TEST(XmlReader, AllowsMiscellanyAroundTheRoot) {
  EXPECT_EQ(outline("<?xml version='1.0'?>\n<!-- 1 --><?t?>\r\n<a/>\n<!-- 2 -->\t<?t?>\n"), "a ()");
  EXPECT_EQ(outline("\n <a/> "), "a ()");
}

TEST(XmlReader, ReadsEveryXmlDeclaration) {
  EXPECT_EQ(outline("<?xml version=\"1.0\"?><a/>"), "a ()");
  EXPECT_EQ(outline("<?xml\tversion = '1.1'\r\nencoding='x-Y_1.z' standalone\n=\n'no' ?><a/>"),
            "a ()");
  EXPECT_EQ(outline("<?xml version='1.0' standalone='yes'?><a/>"), "a ()");
  EXPECT_EQ(outline("<?xml version='1.10'?><a/>"), "a ()");
}

TEST(XmlReader, SkipsAByteOrderMark) {
  EXPECT_EQ(outline("\xEF\xBB\xBF<a/>"), "a ()");
  EXPECT_EQ(outline("\xEF\xBB\xBF<?xml version='1.0'?><a/>"), "a ()");
}

TEST(XmlReader, TakesInstructionsWhoseNamesOnlyBeginWithXml) {
  EXPECT_EQ(outline<FullOutline>("<?xml-stylesheet href='x'?><a/>"),
            "?xml-stylesheet[href='x'] a ()");
  EXPECT_EQ(outline<FullOutline>("<a><?xmls?><?t 1?\?></a>"), "a (?xmls[] ?t[1?])");
}

TEST(XmlReader, KnowsTheNameCharactersOfTheFifthEdition) {
  EXPECT_EQ(outline("<\xC3\xA9l\xC3\xA9ment/>"), "\xC3\xA9l\xC3\xA9ment ()");
  EXPECT_EQ(outline("<a\xC2\xB7\xCC\x80\xE2\x80\xBF/>"), "a\xC2\xB7\xCC\x80\xE2\x80\xBF ()");
  EXPECT_EQ(outline("<\xE4\xB8\xAD \xD0\xB6='1'/>"), "\xE4\xB8\xAD @\xD0\xB6=[1] ()");
  EXPECT_EQ(outline("<\xF0\x90\x80\x80/>"), "\xF0\x90\x80\x80 ()");  // U+10000
  EXPECT_EQ(outline("<\xF3\xAF\xBF\xBF/>"), "\xF3\xAF\xBF\xBF ()");  // U+EFFFF
  EXPECT_EQ(outline("<\xE2\x80\x8C/>"), "\xE2\x80\x8C ()");          // U+200C
}

TEST(XmlReader, BindsPrefixesToNamespaces) {
  EXPECT_EQ(outline("<p:a xmlns:p='u'/>"), "p:a{u} @xmlns:p=[u] ()");
  EXPECT_EQ(outline("<a xmlns='u'><b/></a>"), "a{u} @xmlns=[u] (b{u} ())");
  EXPECT_EQ(outline("<a p:b='1' xmlns:p='u' b='2'/>"), "a @p:b{u}=[1] @xmlns:p=[u] @b=[2] ()");
  EXPECT_EQ(outline("<a xmlns='u' b='1'/>"), "a{u} @xmlns=[u] @b=[1] ()");
}

TEST(XmlReader, BindsPrefixesAnewInInnerElements) {
  EXPECT_EQ(outline("<p:a xmlns:p='u'><p:b xmlns:p='v'><p:c/></p:b><p:d/></p:a>"),
            "p:a{u} @xmlns:p=[u] (p:b{v} @xmlns:p=[v] (p:c{v} ()) p:d{u} ())");
  EXPECT_EQ(outline("<a xmlns='u'><b xmlns=''><c/></b><d xmlns='v'/><e/></a>"),
            "a{u} @xmlns=[u] (b @xmlns=[] (c ()) d{v} @xmlns=[v] () e{u} ())");
}

TEST(XmlReader, ReadsNamespacesWithReferencesAndSpaces) {
  EXPECT_EQ(outline("<p:a xmlns:p='u&#x3A;1&amp;2\t3'/>"), "p:a{u:1&2 3} @xmlns:p=[u:1&2 3] ()");
}

TEST(XmlReader, KnowsThePrefixXmlWithoutADeclaration) {
  EXPECT_EQ(outline("<a xml:lang='en'/>"),
            "a @xml:lang{http://www.w3.org/XML/1998/namespace}=[en] ()");
  EXPECT_EQ(outline("<xml:a xmlns:xml='http://www.w3.org/XML/1998/namespace'/>"),
            "xml:a{http://www.w3.org/XML/1998/namespace} "
            "@xmlns:xml=[http://www.w3.org/XML/1998/namespace] ()");
}

TEST(XmlReader, AllowsNamesThatBeginWithXml) {
  EXPECT_EQ(outline("<xmlA xmlB='1' xmlnsC='2' xmlns:xmlp='u' xmlp:b='3'/>"),
            "xmlA @xmlB=[1] @xmlnsC=[2] @xmlns:xmlp=[u] @xmlp:b{u}=[3] ()");
}

TEST(XmlReader, AllowsTheSameLocalNameInDifferentNamespaces) {
  EXPECT_EQ(outline("<a xmlns:p='u' xmlns:q='v' p:b='1' q:b='2' b='3'/>"),
            "a @xmlns:p=[u] @xmlns:q=[v] @p:b{u}=[1] @q:b{v}=[2] @b=[3] ()");
}

TEST(XmlReader, ReadsFromABufferThatIsExactlyFull) {
  std::string document = "<a b='1'>text</a>";
  document.shrink_to_fit();
  EXPECT_EQ(outline(std::move(document)), "a @b=[1] (\"text\")");
}

class LimitsTest : public testing::Test {
 protected:
  static std::string nested(std::size_t depth) {
    std::string document;
    for (std::size_t i = 0; i < depth; ++i) document += "<a>";
    for (std::size_t i = 0; i < depth; ++i) document += "</a>";
    return document;
  }
  static std::string with_attributes(std::size_t count) {
    std::string document = "<a";
    for (std::size_t i = 0; i < count; ++i) document += " a" + std::to_string(i) + "=''";
    return document + "/>";
  }
  static void read(std::string document, const Limits& limits = {}) {
    Outline sink;
    parse(document, limits, sink);
  }
};

TEST_F(LimitsTest, TenThousandElementsMayBeOpen) {
  EXPECT_NO_THROW(read(nested(10'000)));
  try {
    read(nested(10'001));
    FAIL() << "read 10001 levels";
  } catch (const ReadError& error) {
    EXPECT_EQ(error.problem, Problem::limit);
    EXPECT_EQ(error.message, "line 1, column 30001: more than 10000 elements are open here");
  }
}

TEST_F(LimitsTest, AnElementMayHaveTenThousandAttributes) {
  EXPECT_NO_THROW(read(with_attributes(10'000)));
  try {
    read(with_attributes(10'001));
    FAIL() << "read 10001 attributes";
  } catch (const ReadError& error) {
    EXPECT_EQ(error.problem, Problem::limit);
    EXPECT_NE(error.message.find("the element <a> has more than 10000 attributes"),
              std::string::npos)
        << error.message;
  }
}

TEST_F(LimitsTest, CanBeChanged) {
  EXPECT_NO_THROW(read(nested(3), {.depth = 3, .attributes = 2}));
  EXPECT_THROW(read(nested(4), {.depth = 3, .attributes = 2}), ReadError);
  EXPECT_NO_THROW(read(with_attributes(2), {.depth = 3, .attributes = 2}));
  EXPECT_THROW(read(with_attributes(3), {.depth = 3, .attributes = 2}), ReadError);
  EXPECT_NO_THROW(read(nested(20'000), {.depth = 20'000}));
  EXPECT_NO_THROW(read(with_attributes(20'000), {.attributes = 20'000}));
}

TEST_F(LimitsTest, CountNamespaceDeclarationsAsAttributes) {
  EXPECT_THROW(read("<a xmlns='u' xmlns:p='v' b='1'/>", {.attributes = 2}), ReadError);
}

TEST_F(LimitsTest, CountWhatIsOpenAtOneTime) {
  EXPECT_NO_THROW(read("<a><b/><b/><b/><b/></a>", {.depth = 2}));
  EXPECT_THROW(read("<a><b><c/></b></a>", {.depth = 2}), ReadError);
}

}  // namespace

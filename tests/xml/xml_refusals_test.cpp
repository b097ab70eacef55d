#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/xml/xml_reader.h"
#include "xml/outline.h"

namespace {

using bvconn::detail::xml::Problem;
using bvconn::detail::xml::ReadError;
using namespace std::string_view_literals;

/// A document that is broken, where it is, and a part of what is said about it.
struct Broken {
  std::string_view document;
  std::size_t line;
  std::size_t column;
  std::string_view says;
};

void expect_refused(const std::vector<Broken>& documents) {
  for (const Broken& broken : documents) {
    SCOPED_TRACE(std::string(broken.document));
    try {
      ADD_FAILURE() << "was read as " << outline(std::string(broken.document));
    } catch (const ReadError& error) {
      EXPECT_EQ(error.problem, Problem::not_well_formed);
      EXPECT_EQ(error.position.line, broken.line) << error.message;
      EXPECT_EQ(error.position.column, broken.column) << error.message;
      EXPECT_NE(error.message.find(broken.says), std::string::npos) << error.message;
    }
  }
}

TEST(XmlRefusals, NameThePlaceInFront) {
  try {
    outline("<a>\n<b>\n  text é &amp; </a>");
    FAIL();
  } catch (const ReadError& error) {
    EXPECT_STREQ(error.what(), "line 3, column 16: the end tag </a> does not match <b>");
    EXPECT_EQ(error.position.offset, 24U);  // é takes two bytes
  }
}

TEST(XmlRefusals, OfDocumentsWithoutARoot) {
  expect_refused({
      {"", 1, 1, "the document is empty"},
      {"\xEF\xBB\xBF", 1, 1, "the document is empty"},
      {" \n ", 2, 2, "no root element"},
      {"<?xml version='1.0'?>", 1, 22, "no root element"},
      {"<!-- a -->", 1, 11, "no root element"},
      {"text", 1, 1, "found 't' outside the root element"},
      {"&lt;", 1, 1, "found '&' outside the root element"},
      {"</a>", 1, 1, "no element is open"},
  });
}

TEST(XmlRefusals, OfWhatFollowsTheRoot) {
  expect_refused({
      {"<a/><b/>", 1, 5, "after the end of the root element"},
      {"<a></a></a>", 1, 8, "after the end of the root element"},
      {"<a/>x", 1, 5, "found 'x' outside the root element"},
      {"<a/>&#32;", 1, 5, "outside the root element"},
      {"<a/><![CDATA[x]]>", 1, 5, "a CDATA section may stand in an element only"},
      {"<a/>\xEF\xBB\xBF", 1, 5, "U+FEFF outside the root element"},
  });
}

TEST(XmlRefusals, OfTagsThatDoNotMatch) {
  expect_refused({
      {"<a></b>", 1, 4, "the end tag </b> does not match <a>"},
      {"<a><b></a></b>", 1, 7, "the end tag </a> does not match <b>"},
      {"<a></A>", 1, 4, "the end tag </A> does not match <a>"},
      {"<a></ab>", 1, 4, "the end tag </ab> does not match <a>"},
      {"<ab></a>", 1, 5, "the end tag </a> does not match <ab>"},
      {"<p:a xmlns:p='u'></a>", 1, 18, "the end tag </a> does not match <p:a>"},
      {"<p:a xmlns:p='u' xmlns:q='u'></q:a>", 1, 30, "the end tag </q:a> does not match <p:a>"},
      {"<a></\xC3\xA9>", 1, 4, "does not match"},
  });
}

TEST(XmlRefusals, OfMalformedTags) {
  expect_refused({
      {"<a", 1, 3, "the document ends"},
      {"<a>", 1, 4, "the document ends inside the element <a>"},
      {"<a>x<b/>", 1, 9, "the document ends inside the element <a>"},
      {"<", 1, 2, "the document ends instead of a name"},
      {"< a/>", 1, 2, "found white space instead of a name"},
      {"<a/ >", 1, 4, "found white space instead of '>'"},
      {"<a/", 1, 4, "the document ends instead of '>'"},
      {"<1a/>", 1, 2, "found '1' instead of a name"},
      {"<-a/>", 1, 2, "found '-' instead of a name"},
      {"<a><>x</></a>", 1, 5, "found '>' instead of a name"},
      {"<a></ a>", 1, 6, "found white space instead of a name"},
      {"<a></>", 1, 6, "found '>' instead of a name"},
      {"<a></a b='1'>", 1, 8, "found 'b' instead of '>'"},
      {"<a></a/>", 1, 7, "found '/' instead of '>'"},
      {"<a></a", 1, 7, "the document ends instead of '>'"},
      {"<a></", 1, 6, "the document ends"},
      {"<a<b/>", 1, 3, "found '<' instead of white space, '/>' or '>'"},
      {"<a\xC3\x97/>", 1, 3, "the character U+00D7 instead of"},
      {"<\xC2\xB7/>", 1, 2, "the character U+00B7 instead of a name"},
      {"<\xCC\x80/>", 1, 2, "the character U+0300 instead of a name"},
      {"<a\xCD\xBE/>", 1, 3, "the character U+037E instead of"},
      {"<\xF3\xB0\x80\x80/>", 1, 2, "the character U+F0000 instead of a name"},
  });
}

TEST(XmlRefusals, OfMalformedAttributes) {
  expect_refused({
      {"<a b/>", 1, 5, "found '/' instead of '='"},
      {"<a b>", 1, 5, "found '>' instead of '='"},
      {"<a b=/>", 1, 6, "found '/' instead of a quotation mark"},
      {"<a b=1/>", 1, 6, "found '1' instead of a quotation mark"},
      {"<a b='1/>", 1, 10, "the document ends inside the value"},
      {"<a b='1\"/>", 1, 11, "the document ends inside the value"},
      {"<a b='1'c='2'/>", 1, 9, "found 'c' instead of white space"},
      {"<a b='<'/>", 1, 7, "'<' may not stand in the value"},
      {"<a b='&amp;<'/>", 1, 12, "'<' may not stand in the value"},
      {"<a b=`1`/>", 1, 6, "found '`' instead of a quotation mark"},
      {"<a ='1'/>", 1, 4, "found '=' instead of a name"},
      {"<a 'b'/>", 1, 4, "found an apostrophe instead of a name"},
      {"<a b='1' / >", 1, 11, "instead of '>'"},
      {"<a b='&'/>", 1, 8, "an apostrophe instead of a name"},
  });
}

// So many attributes are sorted: by names of namespaces too, here of all lengths.
TEST(XmlRefusals, OfAnAttributeThatIsThereTwiceAmongManyOfItsName) {
  constexpr std::size_t kCount = 41;
  for (std::size_t step = 1; step < kCount; ++step) {
    std::string document = "<a";
    for (std::size_t i = 0; i < kCount; ++i) {
      // A prime number, so that each length comes once, in another order for each step.
      const std::string uri(1 + i * step % kCount, 'u');
      const std::string prefix = "p" + std::to_string(i);
      document += " xmlns:" + prefix + "='" + uri + "' " + prefix + ":b='1'";
    }
    EXPECT_NO_THROW(outline(document + "/>")) << step;
    document += " xmlns:again='" + std::string(1 + 20 * step % kCount, 'u') + "' again:b='2'/>";
    EXPECT_THROW(outline(document), ReadError) << step;
  }
}

TEST(XmlRefusals, OfAttributesThatAreThereTwice) {
  expect_refused({
      {"<a b='1' b='2'/>", 1, 10, "the attribute 'b' is there twice"},
      {"<a xmlns:p='u' p:b='1' p:b='2'/>", 1, 24, "the attribute 'p:b' is there twice"},
      {"<a xmlns:p='u' xmlns:q='u' p:b='1' q:b='2'/>", 1, 36, "'p:b' and 'q:b' are the same name"},
      {"<a xmlns='u' xmlns='u'/>", 1, 14, "the attribute 'xmlns' is there twice"},
      {"<a xmlns:p='u' xmlns:p='v'/>", 1, 16, "the attribute 'xmlns:p' is there twice"},
      {"<a a0='' a1='' a2='' a3='' a4='' a5='' a6='' a7='' a8='' a9='' b0='' b1='' b2='' a3=''/>",
       1, 82, "the attribute 'a3' is there twice"},
      {"<a b='&#10;\t1' c='&amp;'\nb='2'/>", 2, 1, "the attribute 'b' is there twice"},
  });
}

TEST(XmlRefusals, OfMalformedReferences) {
  expect_refused({
      {"<a>&</a>", 1, 5, "found '<' instead of a name"},
      {"<a>& </a>", 1, 5, "found white space instead of a name"},
      {"<a>&lt</a>", 1, 7, "found '<' instead of ';'"},
      {"<a>&lt ;</a>", 1, 7, "found white space instead of ';'"},
      {"<a>&;</a>", 1, 5, "found ';' instead of a name"},
      {"<a>&nbsp;</a>", 1, 4, "the entity 'nbsp' is not declared"},
      {"<a>&LT;</a>", 1, 4, "the entity 'LT' is not declared"},
      {"<a>&ampx;</a>", 1, 4, "the entity 'ampx' is not declared"},
      {"<a>&a:b;</a>", 1, 6, "found ':' instead of ';'"},
      {"<a>&#;</a>", 1, 6, "found ';' instead of a digit"},
      {"<a>&#x;</a>", 1, 7, "found ';' instead of a digit"},
      {"<a>&#X41;</a>", 1, 6, "found 'X' instead of a digit"},
      {"<a>&#4A;</a>", 1, 7, "found 'A' instead of a digit or ';'"},
      {"<a>&#xG;</a>", 1, 7, "found 'G' instead of a digit"},
      {"<a>&#65</a>", 1, 8, "found '<' instead of a digit or ';'"},
      {"<a>&#-1;</a>", 1, 6, "found '-' instead of a digit"},
      {"<a b='&nbsp;'/>", 1, 7, "the entity 'nbsp' is not declared"},
  });
}

TEST(XmlRefusals, OfReferencesToWhatIsNoCharacter) {
  expect_refused({
      {"<a>&#0;</a>", 1, 4, "the reference &#0; is not to a character"},
      {"<a>&#x1F;</a>", 1, 4, "the reference &#x1F;"},
      {"<a>&#xB;</a>", 1, 4, "the reference &#xB;"},
      {"<a>&#xD800;</a>", 1, 4, "the reference &#xD800;"},
      {"<a>&#xDFFF;</a>", 1, 4, "the reference &#xDFFF;"},
      {"<a>&#xFFFE;</a>", 1, 4, "the reference &#xFFFE;"},
      {"<a>&#xFFFF;</a>", 1, 4, "the reference &#xFFFF;"},
      {"<a>&#x110000;</a>", 1, 4, "the reference &#x110000;"},
      {"<a>&#4294967361;</a>", 1, 4, "the reference &#4294967361;"},        // 2^32 + 65
      {"<a>&#18446744073709551681;</a>", 1, 4, "&#18446744073709551681;"},  // 2^64 + 65
      {"<a b='1&#8;'/>", 1, 8, "the reference &#8;"},
  });
}

TEST(XmlRefusals, OfCharactersThatNoDocumentHolds) {
  expect_refused({
      {"<a>\0</a>"sv, 1, 4, "a document may not hold the character U+0000"},
      {"<a>\x01</a>", 1, 4, "the character U+0001"},
      {"<a>\x0B</a>", 1, 4, "the character U+000B"},
      {"<a>\x1F</a>", 1, 4, "the character U+001F"},
      {"<a>\xEF\xBF\xBE</a>", 1, 4, "the character U+FFFE"},
      {"<a>\xEF\xBF\xBF</a>", 1, 4, "the character U+FFFF"},
      {"<a b='\x02'/>", 1, 7, "the character U+0002"},
      {"<a\x03/>", 1, 3, "the character U+0003"},
      {"<!--\x04--><a/>", 1, 5, "the character U+0004"},
      {"<a><![CDATA[\x05]]></a>", 1, 13, "the character U+0005"},
      {"<?t \x06?><a/>", 1, 5, "the character U+0006"},
      {"<a/>\0"sv, 1, 5, "the character U+0000"},
      {"\0<a/>"sv, 1, 1, "the character U+0000"},
  });
}

TEST(XmlRefusals, OfBytesThatAreNotUtf8) {
  expect_refused({
      {"<a>\x80</a>", 1, 4, "the byte 0x80 is not UTF-8 here"},
      {"<a>\xC3</a>", 1, 4, "the byte 0xC3"},
      {"<a>\xC3\xA9\xA9</a>", 1, 5, "the byte 0xA9"},
      {"<a>\xC0\x80</a>", 1, 4, "the byte 0xC0"},          // overlong U+0000
      {"<a>\xC1\xA1</a>", 1, 4, "the byte 0xC1"},          // overlong 'a'
      {"<a>\xE0\x82\xA2</a>", 1, 4, "the byte 0xE0"},      // overlong U+00A2
      {"<a>\xF0\x82\x82\xAC</a>", 1, 4, "the byte 0xF0"},  // overlong U+20AC
      {"<a>\xED\xA0\x80</a>", 1, 4, "the byte 0xED"},      // U+D800
      {"<a>\xED\xBF\xBF</a>", 1, 4, "the byte 0xED"},      // U+DFFF
      {"<a>\xF4\x90\x80\x80</a>", 1, 4, "the byte 0xF4"},  // U+110000
      {"<a>\xF5\x80\x80\x80</a>", 1, 4, "the byte 0xF5"},
      {"<a>\xFF</a>", 1, 4, "the byte 0xFF"},
      {"<a>caf\xE9</a>", 1, 7, "the byte 0xE9"},  // Latin-1
      {"<a>\xE2\x82", 1, 4, "the byte 0xE2"},
      {"<caf\xE9/>", 1, 5, "the byte 0xE9"},
  });
}

TEST(XmlRefusals, TellTheFirstOfTwoErrors) {
  expect_refused({
      {"<a></b>\x01", 1, 4, "does not match"},
      {"<a>\x01</b>", 1, 4, "U+0001"},
      {"<a b='1' b='2'/>\xFF", 1, 10, "there twice"},
  });
}

TEST(XmlRefusals, OfTheEndOfASectionInText) {
  expect_refused({
      {"<a>]]></a>", 1, 4, "']]>' may not stand in text"},
      {"<a>x]]]></a>", 1, 6, "']]>' may not stand in text"},
      {"<a>&amp;]]></a>", 1, 9, "']]>' may not stand in text"},
      {"<a><![CDATA[]]>]]></a>", 1, 16, "']]>' may not stand in text"},
  });
}

TEST(XmlRefusals, OfMalformedSections) {
  expect_refused({
      {"<a><![CDATA[x</a>", 1, 4, "the CDATA section that begins here has no end"},
      {"<a><![CDATA[x]]</a>", 1, 4, "the CDATA section that begins here has no end"},
      {"<a><![CDATA[x]]", 1, 4, "has no end"},
      {"<a><![cdata[x]]></a>", 1, 4, "begins neither a comment nor a CDATA section"},
      {"<a><![CDATA [x]]></a>", 1, 4, "begins neither"},
      {"<a><! [CDATA[x]]></a>", 1, 4, "begins neither"},
      {"<a><![CD", 1, 9, "the document ends inside markup"},
      {"<![CDATA[x]]>", 1, 1, "a CDATA section may stand in an element only"},
  });
}

TEST(XmlRefusals, OfMalformedComments) {
  expect_refused({
      {"<a><!-- x -- y --></a>", 1, 11, "'--' may not stand in a comment"},
      {"<a><!-- x ---></a>", 1, 11, "'--' may not stand in a comment"},
      {"<a><!-- x </a>", 1, 4, "the comment that begins here has no end"},
      {"<!-- x", 1, 1, "the comment that begins here has no end"},
      {"<a><!-- x --", 1, 13, "'--' may not stand in a comment"},
      {"<a><!--></a>", 1, 4, "has no end"},
      {"<a><!- x --></a>", 1, 4, "begins neither"},
      {"<a <!-- x -->/>", 1, 4, "found '<' instead of a name"},
  });
}

TEST(XmlRefusals, OfMalformedInstructions) {
  expect_refused({
      {"<a><?t x</a>", 1, 13, "inside the processing instruction 't'"},
      {"<a><?t", 1, 7, "the document ends"},
      {"<a><? t?></a>", 1, 6, "found white space instead of a name"},
      {"<a><?\?></a>", 1, 6, "found '?' instead of a name"},
      {"<a><?1?></a>", 1, 6, "found '1' instead of a name"},
      {"<a><?t>x?></a>", 1, 7, "instead of white space or '?>'"},
      {"<a><?t?x?></a>", 1, 7, "instead of white space or '?>'"},
      {"<a><?p:t?></a>", 1, 7, "may not hold a colon"},
      {"<a><?XML?></a>", 1, 4, "may not be called 'XML'"},
      {"<a><?xMl x?></a>", 1, 4, "may not be called 'xMl'"},
      {"<a><?xml version='1.0'?></a>", 1, 4, "at the very beginning only"},
      {" <?xml version='1.0'?><a/>", 1, 2, "at the very beginning only"},
      {"<!-- --><?xml version='1.0'?><a/>", 1, 9, "at the very beginning only"},
      {"<?xml version='1.0'?><?xml version='1.0'?><a/>", 1, 22, "at the very beginning only"},
      {"<a/><?xml version='1.0'?>", 1, 5, "at the very beginning only"},
  });
}

TEST(XmlRefusals, OfMalformedXmlDeclarations) {
  expect_refused({
      {"<?xml?><a/>", 1, 6, "instead of version="},
      {"<?xml ?><a/>", 1, 7, "instead of version="},
      {"<?xml encoding='UTF-8'?><a/>", 1, 7, "instead of version="},
      {"<?xml version='2.0'?><a/>", 1, 16, "version '2.0' of XML is not known"},
      {"<?xml version='1'?><a/>", 1, 16, "version '1' of XML"},
      {"<?xml version='1.'?><a/>", 1, 16, "version '1.' of XML"},
      {"<?xml version='1.0a'?><a/>", 1, 16, "version '1.0a' of XML"},
      {"<?xml version=''?><a/>", 1, 16, "version '' of XML"},
      {"<?xml version='1.0\"?><a/>", 1, 22, "instead of the end of the value"},
      {"<?xml version=1.0?><a/>", 1, 15, "instead of a quotation mark"},
      {"<?xml version?><a/>", 1, 14, "instead of '='"},
      {"<?xml version='1.0'encoding='UTF-8'?><a/>", 1, 20, "instead of '?>'"},
      {"<?xml version='1.0' encoding=''?><a/>", 1, 31, "'' is not the name of an encoding"},
      {"<?xml version='1.0' encoding='8bit'?><a/>", 1, 31, "'8bit' is not the name"},
      {"<?xml version='1.0' encoding='UTF 8'?><a/>", 1, 31, "'UTF 8' is not the name"},
      {"<?xml version='1.0' standalone='YES'?><a/>", 1, 33, "not 'YES'"},
      {"<?xml version='1.0' standalone='no' encoding='UTF-8'?><a/>", 1, 37, "instead of '?>'"},
      {"<?xml encoding='UTF-8' version='1.0'?><a/>", 1, 7, "instead of version="},
      {"<?xml version='1.0' x='y'?><a/>", 1, 21, "instead of '?>'"},
      {"<?xml version='1.0'><a/>", 1, 20, "instead of '?>'"},
      {"<?xml version='1.0' ? ><a/>", 1, 21, "instead of '?>'"},
      {"<?xml Version='1.0'?><a/>", 1, 7, "instead of version="},
      {"<?XML version='1.0'?><a/>", 1, 1, "may not be called 'XML'"},
  });
}

TEST(XmlRefusals, OfDocumentTypes) {
  expect_refused({
      {"<!DOCTYPE a><a/>", 1, 1, "a document type declaration is not accepted"},
      {"<?xml version='1.0'?>\n<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;</a>", 2, 1,
       "a document type declaration is not accepted"},
      {"<a><!DOCTYPE a></a>", 1, 4, "a document type declaration is not accepted"},
      {"<a/><!DOCTYPE a>", 1, 5, "a document type declaration is not accepted"},
      {"<!ELEMENT a ANY><a/>", 1, 1, "found '<!'"},
  });
}

TEST(XmlRefusals, OfBadUseOfNamespaces) {
  expect_refused({
      {"<p:a/>", 1, 2, "the prefix 'p' is not declared"},
      {"<a p:b='1'/>", 1, 4, "the prefix 'p' is not declared"},
      {"<a><b xmlns:p='u'/><p:c/></a>", 1, 21, "the prefix 'p' is not declared"},
      {"<a xmlns:p=''/>", 1, 4, "the prefix 'p' may not be bound to an empty namespace"},
      {"<a xmlns:p='u'><b xmlns:p=''/></a>", 1, 19, "may not be bound to an empty namespace"},
      {"<a xmlns:xmlns='u'/>", 1, 4, "the prefix 'xmlns' may not be declared"},
      {"<a xmlns:xmlns='http://www.w3.org/2000/xmlns/'/>", 1, 4, "'xmlns' may not be declared"},
      {"<a xmlns:xml='u'/>", 1, 4, "the prefix 'xml' may not be bound"},
      {"<a xmlns:p='http://www.w3.org/XML/1998/namespace'/>", 1, 4, "of the prefix 'xml'"},
      {"<a xmlns='http://www.w3.org/XML/1998/namespace'/>", 1, 4, "of the prefix 'xml'"},
      {"<a xmlns:p='http://www.w3.org/2000/xmlns/'/>", 1, 4, "namespace declarations"},
      {"<a xmlns='http://www.w3.org/2000/xmlns/'/>", 1, 4, "namespace declarations"},
      {"<xmlns:a/>", 1, 2, "the prefix 'xmlns' is not declared"},
      {"<a:b:c xmlns:a='u'/>", 1, 5, "a name may not hold two colons"},
      {"<:a/>", 1, 2, "found ':' instead of a name"},
      {"<a: xmlns:a='u'/>", 1, 4, "found white space instead of a name"},
      {"<a xmlns:='u'/>", 1, 10, "found '=' instead of a name"},
      {"<a :b='1'/>", 1, 4, "found ':' instead of a name"},
      {"<a xmlns:p='u' p:1='2'/>", 1, 18, "found '1' instead of a name"},
      {"<a xmlns:p:q='u'/>", 1, 11, "a name may not hold two colons"},
  });
}

TEST(XmlRefusals, CountLinesAsTheDocumentHadThem) {
  expect_refused({
      {"<a>\r\n\r\n</b>", 3, 1, "does not match"},
      {"<a>\r\r</b>", 3, 1, "does not match"},
      {"<a>\n\r</b>", 3, 1, "does not match"},
      {"<a>1\r\n2<![CDATA[\r\n]]>&#10;&#13;3\r</b>", 4, 1, "does not match"},
      {"<a b='\n\r\n&#10;'\nc='\r'><!--\r\n--></b>", 6, 4, "does not match"},
      {"<a\nb='1'\n\n  b='2'/>", 4, 3, "there twice"},
      {"<a b='&#10;' c='\n' p:d='1' e='\n'/>", 2, 3, "the prefix 'p' is not declared"},
  });
}

TEST(XmlRefusals, CountColumnsInCharacters) {
  expect_refused({
      {"<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</b>", 1, 7, "does not match"},
      {"<a>&#xE9;&amp;<!-- - --></b>", 1, 25, "does not match"},
      {"\xEF\xBB\xBF<a></b>", 1, 4, "does not match"},
      {"<a b='&lt;&gt;' c='&amp;'></b>", 1, 27, "does not match"},
  });
}

TEST(XmlRefusals, QuoteOnlyTheBeginningOfALongName) {
  const std::string name(100'000, 'n');
  try {
    outline("<" + name + "></a>");
    FAIL();
  } catch (const ReadError& error) {
    EXPECT_EQ(error.message, "line 1, column 100003: the end tag </a> does not match <" +
                                 std::string(60, 'n') + "...>");
  }
}

TEST(XmlRefusals, OfADocumentCutAtAnyByte) {
  const std::string whole =
      "\xEF\xBB\xBF<?xml version='1.0' encoding=\"UTF-8\" standalone='yes'?>\r\n<!-- c -->"
      "<?t d?><p:a xmlns:p='u' p:b=\"1&amp;\t2\" c='&#x20AC;'>t\xE2\x82\xAC&lt;<![CDATA[<]]>"
      "<!-- e -->\r\n<?u?><f/></p:a>";
  ASSERT_EQ(outline(whole),
            "p:a{u} @xmlns:p=[u] @p:b{u}=[1& 2] @c=[\xE2\x82\xAC] (\"t\xE2\x82\xAC<<\n\" f ())");
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_THROW(outline(whole.substr(0, size)), ReadError) << "cut after " << size << " bytes";
  }
}

}  // namespace

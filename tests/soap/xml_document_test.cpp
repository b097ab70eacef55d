#include "bvconn/platform/soap/xml_document.h"

#include "soap/soap_test.h"

namespace bvconn {
namespace {

using soap_test::names_of;
using test::error_of;

TEST(XMLDocument, IsEmptyUntilItIsLoaded) {
  const XMLDocument document;
  EXPECT_TRUE(document.empty());
  EXPECT_EQ(document.xml(), "");
  EXPECT_FALSE(document.documentElement());
}

TEST(XMLDocument, KeepsAttributesPrefixesAndEverythingElseOfItsText) {
  const std::string text =
      "<?xml version='1.0'?>\n<!-- c -->\n<x:a xmlns:x=\"urn:x\" b='1 &amp; 2'>\r\n<x:c/></x:a>";
  XMLDocument document;
  EXPECT_TRUE(document.load(text));
  EXPECT_FALSE(document.empty());
  EXPECT_EQ(document.xml(), text);
  EXPECT_EQ(document.documentElement().Namespace(), "urn:x");
  EXPECT_EQ(names_of(document.documentElement().Nodes()), "c");
}

TEST(XMLDocument, LoadsAFaultLikeAnyDocument) {
  XMLDocument document;
  EXPECT_TRUE(document.load(soap_test::reply_text("<soapenv:Fault/>")));
  EXPECT_EQ(document.documentElement().Name(), "Envelope");
}

TEST(XMLDocument, IsEmptyAfterALoadOfWhatIsNotWellFormed) {
  XMLDocument document;
  ASSERT_TRUE(document.load("<a/>"));
  for (const char* text : {"<a>", "", "text", "<a/><b/>", "<!DOCTYPE a><a/>", "<a>\x01</a>"}) {
    EXPECT_FALSE(document.load(text)) << text;
    EXPECT_TRUE(document.empty());
    EXPECT_EQ(document.xml(), "");
    EXPECT_FALSE(document.documentElement());
  }
}

TEST(XMLDocument, GivesItsTextInUtf8AndSaysSo) {
  XMLDocument document;
  ASSERT_TRUE(document.load("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xE4</a>"));
  EXPECT_EQ(document.xml(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>\xC3\xA4</a>");
  EXPECT_EQ(document.documentElement().Value(), Variant("\xC3\xA4"));
}

TEST(XMLDocument, GivesItsTextWithoutAByteOrderMark) {
  XMLDocument document;
  ASSERT_TRUE(document.load("\xEF\xBB\xBF<a/>"));
  EXPECT_EQ(document.xml(), "<a/>");
  ASSERT_TRUE(document.load(std::string("\xFF\xFE<\0a\0/\0>\0", 10)));
  EXPECT_EQ(document.xml(), "<a/>");
}

TEST(XMLDocument, MovesWithItsContent) {
  XMLDocument first;
  ASSERT_TRUE(first.load("<a>1</a>"));
  const XMLDocument second = std::move(first);
  EXPECT_EQ(second.xml(), "<a>1</a>");
  EXPECT_EQ(second.documentElement().Value(), Variant("1"));
}

TEST(NodeFromXml, GivesTheDocumentElement) {
  const SoapNode node = node_from_xml("<Project><Name>N</Name></Project>");
  EXPECT_EQ(node.Name(), "Project");
  EXPECT_EQ(node.Nodes().ItemByName("Name").Value(), Variant("N"));
}

TEST(NodeFromXml, RefusesWhatIsNotWellFormed) {
  const Error error = error_of([] { node_from_xml("<a>"); });
  EXPECT_EQ(hex_number(error.number), "0x80044202");
  EXPECT_EQ(hex_number(error_of([] { node_from_xml(""); }).number), "0x80044202");
}

TEST(NodeFromXml, DescribesInOneLineOfTextWhateverTheTextHolds) {
  const Error error = error_of([] { node_from_xml("<?xml version='1.0' encoding='\xFF'?><a/>"); });
  EXPECT_EQ(
      error.description,
      "The text is not well-formed XML: line 1, column 31: the encoding '\\xFF' is not known");
}

TEST(NodeToXml, WritesTheNodeAsItWouldStandInARequest) {
  for (const char* text : {"<Project><Name>N</Name></Project>", "<a/>", "<a>&lt;&amp;&gt;\"</a>",
                           "<n:a xmlns:n=\"urn:a\"><n:b/><c/></n:a>"}) {
    EXPECT_EQ(node_to_xml(node_from_xml(text)), text);
  }
}

TEST(NodeToXml, DeclaresThePrefixesThatItUses) {
  SoapNode node = SoapNode::make("a");
  node.Value(StringArray{"x"});
  const std::string text = node_to_xml(node);
  EXPECT_EQ(text,
            "<a xmlns:SOAP-ENC=\"http://schemas.xmlsoap.org/soap/encoding/\""
            " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
            " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" xsi:type=\"SOAP-ENC:Array\""
            " SOAP-ENC:arrayType=\"xsd:string[1]\"><item>x</item></a>");
  EXPECT_EQ(node_from_xml(text).Value(), Variant(StringArray{"x"}));
}

TEST(NodeToXml, KeepsTypesAndValuesOnTheWayThereAndBack) {
  SoapNode node = SoapNode::make("r");
  node.Nodes().Create("b", true);
  node.Nodes().Create("i", std::int32_t{-7});
  node.Nodes().Create("d", 0.25);
  node.Nodes().Create("t", from_civil({.year = 2007, .month = 1, .day = 5, .hour = 10}));
  node.Nodes().Create("s", " <a> & \"b\"\r\n\t");
  node.Nodes().Create("l", VariantArray({Variant(std::int32_t{1}), Variant(true)}));
  node.Nodes().Create("nil", Variant());
  const SoapNode back = node_from_xml(node_to_xml(node));
  EXPECT_EQ(names_of(back.Nodes()), "b i d t s l nil");
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(back.Nodes().Item(i).Value(), node.Nodes().Item(i).Value()) << i;
  }
  EXPECT_TRUE(back.Nodes().Item(6).nil());
  EXPECT_EQ(node_to_xml(back), node_to_xml(node));
}

TEST(NodeToXml, FailsForATreeDeeperThan10000Elements) {
  SoapNode root = SoapNode::make("n");
  SoapNode last = root;
  for (int i = 1; i < 10'000; ++i) {
    SoapNode next = SoapNode::make("n");
    last.Nodes().Append(next);
    last = next;
  }
  EXPECT_TRUE(node_from_xml(node_to_xml(root)));
  last.Nodes().Append(SoapNode::make("n"));
  EXPECT_EQ(hex_number(error_of([&] { node_to_xml(root); }).number), "0x80044206");
}

TEST(NodeToXml, FailsWith91ForAnEmptyReference) {
  EXPECT_EQ(error_of([] { node_to_xml(SoapNode()); }).number, 91);
}

TEST(NodeToXml, FailsForTextThatXmlCannotCarry) {
  SoapNode node = SoapNode::make("a");
  node.Value("\x01");
  const Error error = error_of([&] { node_to_xml(node); });
  EXPECT_EQ(hex_number(error.number), "0x80044205");
  EXPECT_EQ(error.source, "SoapNodes");
}

TEST(XMLDocument, MovesOverAnotherWithAllThatItHolds) {
  XMLDocument from;
  ASSERT_TRUE(from.load("<a x='1'><b/></a>"));
  XMLDocument to;
  ASSERT_TRUE(to.load("<other/>"));
  to = std::move(from);
  EXPECT_EQ(to.documentElement().Name(), "a");
  EXPECT_NE(to.xml().find("x="), std::string::npos) << to.xml();
}

}  // namespace
}  // namespace bvconn

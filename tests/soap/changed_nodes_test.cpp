#include "soap/soap_test.h"

namespace bvconn {
namespace {

using soap_test::first_parameter;
using soap_test::names_of;
using soap_test::parameters_text;
using soap_test::parsed;

/// Reply nodes as they go out again in a request.
std::string sent_again(const SoapNode& node) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parameters().Append(node);
  return parameters_text(envelope);
}

TEST(ReadNode, KeepsItsTypeOrNoneWhenItGoesOutAgain) {
  EXPECT_EQ(sent_again(
                first_parameter("<P xmlns:t='urn:t' xsi:type='t:Project'><Name>N</Name>"
                                "<Size xsi:type='xsd:int'>5</Size><Gone xsi:nil='1'/><None/></P>")),
            "<P xmlns:t=\"urn:t\" xsi:type=\"t:Project\"><Name>N</Name>"
            "<Size xsi:type=\"xsd:int\">5</Size><Gone xsi:nil=\"true\"/><None/></P>");
}

TEST(ReadNode, RenamedKeepsAllElse) {
  SoapNode node = first_parameter("<x:P xmlns:x='urn:x' xsi:type='xsd:int'>5</x:P>");
  node.Name("Q");
  EXPECT_EQ(node.Name(), "Q");
  EXPECT_EQ(node.Namespace(), "urn:x");
  EXPECT_EQ(node.Type(), "int");
  EXPECT_EQ(node.Value(), Variant(5));
  node.Namespace("");
  EXPECT_EQ(sent_again(node), "<Q xsi:type=\"xsd:int\">5</Q>");
}

TEST(ReadNode, RenamedIsSeenThroughEveryHandle) {
  const SoapEnvelope reply = parsed("<r><a><b/></a></r>");
  reply.Parameters().Item(0).Nodes().Item(0).Name("c");
  EXPECT_EQ(names_of(reply.Parameters().Item(0).Nodes()), "c");
  EXPECT_EQ(sent_again(reply.Parameters().Item(0)), "<a><c/></a>");
}

TEST(ReadNode, AValueSetOnItDerivesTheTypeAnew) {
  SoapNode node = first_parameter("<a xsi:type='xsd:int'>5</a>");
  node.Value(true);
  EXPECT_EQ(node.Type(), "boolean");
  EXPECT_EQ(sent_again(node), "<a xsi:type=\"xsd:boolean\">true</a>");
  node.Value(Variant());
  EXPECT_EQ(sent_again(node), "<a xsi:nil=\"true\"/>");
}

TEST(ReadNode, AppendedToTakesTheNewChildAtTheEnd) {
  const SoapNode node = first_parameter("<a><b>1</b><c>2</c></a>");
  node.Nodes().Create("d", 3);
  EXPECT_EQ(sent_again(node), "<a><b>1</b><c>2</c><d xsi:type=\"xsd:int\">3</d></a>");
}

TEST(ReadNode, AppendedToLosesASimpleValueAndItsType) {
  const SoapNode node = first_parameter("<a xsi:type='xsd:string'>text</a>");
  node.Nodes().Append(node_from_xml("<b/>"));
  EXPECT_EQ(sent_again(node), "<a><b/></a>");
}

TEST(ReadNode, NilAppendedToIsNilNoLonger) {
  const SoapNode node = first_parameter("<a xsi:nil='true'/>");
  node.Nodes().Append(node_from_xml("<b/>"));
  EXPECT_FALSE(node.nil());
  EXPECT_EQ(sent_again(node), "<a><b/></a>");
}

TEST(ReadNode, AnArrayAppendedToHasOneItemMore) {
  const SoapNode node =
      first_parameter("<l xsi:type='soapenc:Array' soapenc:arrayType='xsd:string[1]'><i>a</i></l>");
  node.Nodes().Create("i", "b");
  EXPECT_EQ(node.Value(), Variant(StringArray{"a", "b"}));
  EXPECT_EQ(sent_again(node),
            "<l xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:string[2]\">"
            "<i>a</i><i>b</i></l>");
}

TEST(ReadNode, OfOneReplyInAnotherStaysAliveWithIt) {
  SoapNode target = first_parameter("<target/>");
  {
    const SoapNode other = first_parameter("<other><deep>text</deep></other>");
    target.Nodes().Append(other.Nodes().Item(0));
  }
  EXPECT_EQ(sent_again(target), "<target><deep>text</deep></target>");
}

TEST(ReadNode, AMadeNodeBelowItStaysAliveWithIt) {
  SoapNode deep;
  {
    const SoapNode reply = first_parameter("<a><b/></a>");
    SoapNode made = SoapNode::make("made");
    made.Nodes().Create("inner", "1");
    reply.Nodes().Item(0).Nodes().Append(made);
    made.Nodes().Create("later", "2");
    deep = reply.Nodes().Item(0).Nodes().Item(0);
  }
  EXPECT_EQ(names_of(deep.Nodes()), "inner later");
}

TEST(ReadNode, ReplacedWhileItsOldContentIsInUse) {
  SoapNode node = first_parameter("<a><b>1</b></a>");
  const SoapNode child = node.Nodes().Item(0);
  node.Value(child);
  EXPECT_EQ(node.Value(), Variant(child));
  EXPECT_EQ(sent_again(node), "<a>1</a>");
}

// The following make links that would keep each other alive for ever if each of them counted; the
// leak checker of the sanitizer build and memory_test.cpp watch that none does.

TEST(ReadNode, AppendedWithinItsOwnReplyIsFreedWithIt) {
  const SoapNode node = first_parameter("<a><b>1</b><c/></a>");
  node.Nodes().Item(1).Nodes().Append(node.Nodes().Item(0));
  EXPECT_EQ(sent_again(node), "<a><b>1</b><c><b>1</b></c></a>");
}

TEST(ReadNode, WrappedAndPutBackIntoItsOwnReplyIsFreedWithIt) {
  const SoapNode node = first_parameter("<a><b>1</b></a>");
  const SoapNode list = SoapNode::make("list");
  const SoapNode entry = list.Nodes().Create("entry", node.Nodes().Item(0));
  node.Nodes().Append(list);
  list.Nodes().Append(node.Nodes().Item(0));
  EXPECT_EQ(sent_again(node), "<a><b>1</b><list><entry>1</entry><b>1</b></list></a>");
  EXPECT_EQ(entry.Name(), "entry");
}

TEST(ReadNode, AnArrayOfItsOwnNodesAsValueIsFreedWithIt) {
  SoapNode node = first_parameter("<l soapenc:arrayType='xsd:anyType[1]'><i><a>1</a></i></l>");
  node.Value(node.Value());
  EXPECT_EQ(sent_again(node),
            "<l xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:anyType[1]\">"
            "<item><a>1</a></item></l>");
}

}  // namespace
}  // namespace bvconn

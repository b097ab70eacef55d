#include <chrono>

#include "soap/soap_test.h"

namespace bvconn {
namespace {

using soap_test::names_of;
using soap_test::parsed;
using soap_test::reply_text;
using test::error_of;

void expect_limit(std::string_view body) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const Error error = error_of([&] { envelope.Parse(reply_text(body), ""); });
  EXPECT_EQ(hex_number(error.number), "0x80044206") << body;
  EXPECT_EQ(error.source, "SoapEnvelope");
}

TEST(References, AreFollowedUnderTheNameOfTheElementThatRefers) {
  const SoapEnvelope reply = parsed(
      "<r><return href='#id0'/></r>"
      "<multiRef id='id0' xsi:type='ns:Order' xmlns:ns='urn:n'><a>1</a></multiRef>");
  const SoapNode node = reply.Parameters().Item(0);
  EXPECT_EQ(node.Name(), "return");
  EXPECT_EQ(node.Type(), "Order");
  EXPECT_EQ(names_of(node.Nodes()), "a");
  EXPECT_EQ(to_node(node.Value()).Name(), "return");
}

TEST(References, GiveSimpleValuesByTheTypeOfTheTarget) {
  const SoapEnvelope reply = parsed(
      "<r><a href='#1'/><b href='#2'/><c href='#3'/><d href='#4'/></r>"
      "<m id='1' xsi:type='xsd:int'>5</m><m id='2'>six</m><m id='3' xsi:nil='true'/>"
      "<m id='4' soapenc:arrayType='xsd:string[1]'><i>x</i></m>");
  EXPECT_EQ(reply.Parameters().Item(0).Value(), Variant(5));
  EXPECT_EQ(reply.Parameters().Item(1).Value(), Variant("six"));
  EXPECT_TRUE(reply.Parameters().Item(2).nil());
  EXPECT_EQ(reply.Parameters().Item(3).Value(), Variant(StringArray{"x"}));
}

TEST(References, InAnArrayTakeTheTypeOfItsItems) {
  const SoapEnvelope reply =
      parsed("<r><l soapenc:arrayType='xsd:int[2]'><i href='#1'/><i>2</i></l></r><m id='1'>1</m>");
  EXPECT_EQ(reply.Parameters().Item(0).Value(), Variant(VariantArray(std::vector<Variant>{1, 2})));
}

TEST(References, ShareTheirTarget) {
  const SoapEnvelope reply =
      parsed("<r><a href='#x'/><b href='#x'/></r><multiRef id='x'><v>1</v></multiRef>");
  const SoapNode a = reply.Parameters().Item(0);
  const SoapNode b = reply.Parameters().Item(1);
  EXPECT_EQ(a.Nodes().Item(0), b.Nodes().Item(0));
  a.Nodes().Create("w", "2");
  EXPECT_EQ(names_of(b.Nodes()), "v w");
}

TEST(References, ReachWhatStandsBelowAnElementThatIsNil) {
  const SoapEnvelope reply = parsed(
      "<r><gone xsi:nil='1'><m id='1'><v id='2'>x</v></m></gone><a href='#1'/><b href='#2'/></r>");
  EXPECT_TRUE(reply.Parameters().Item(0).nil());
  EXPECT_EQ(reply.Parameters().Item(0).Nodes().Count(), 0U);
  EXPECT_EQ(names_of(reply.Parameters().Item(1).Nodes()), "v");
  EXPECT_EQ(reply.Parameters().Item(2).Value(), Variant("x"));
}

TEST(References, BetweenElementsAtEveryDepthFindTheirTargets) {
  const SoapEnvelope reply = parsed(
      "<r id='r0'><a id='a0'><b id='b0'><c href='#d0'/><d id='d0'>D</d></b><e href='#b0'/></a>"
      "<f href='#a0'/><g id='g0'><h href='#d0'/></g></r><m id='m0'/>");
  const SoapNodes nodes = reply.Parameters();
  EXPECT_EQ(nodes.Item(0).Nodes().Item(0).Nodes().Item(0).Value(), Variant("D"));
  EXPECT_EQ(names_of(nodes.Item(0).Nodes().Item(1).Nodes()), "c d");
  EXPECT_EQ(nodes.Item(1).Nodes().Item(0), nodes.Item(0).Nodes().Item(0));
  EXPECT_EQ(nodes.Item(2).Nodes().Item(0).Value(), Variant("D"));
}

TEST(References, MayStandAnywhereAndReferAnywhere) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parse(
      "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'>"
      "<e:Header><h href='#deep'/></e:Header>"
      "<e:Body><r><a><b id='deep'>x</b></a><c href='#deep'/></r></e:Body></e:Envelope>",
      "");
  EXPECT_EQ(envelope.Headers().Item(0).Value(), Variant("x"));
  EXPECT_EQ(envelope.Parameters().Item(1).Value(), Variant("x"));
}

TEST(References, MayReferToReferences) {
  const SoapEnvelope reply =
      parsed("<r><a href='#1'/></r><m id='1' href='#2'/><m id='2' href='#3'/><m id='3'>end</m>");
  EXPECT_EQ(reply.Parameters().Item(0).Value(), Variant("end"));
}

TEST(References, MayBeTheMethodElementItself) {
  const SoapEnvelope reply = parsed("<r href='#1'/><m id='1'><a>1</a></m>");
  EXPECT_EQ(reply.MethodName(), "r");
  EXPECT_EQ(names_of(reply.Parameters()), "a");
}

TEST(References, WithoutTargetAreErrors) {
  expect_limit("<r><a href='#nowhere'/></r>");
  expect_limit("<r><a href='#'/></r>");
  expect_limit("<r><a href='#ID'/></r><m id='id'/>");
}

TEST(References, ToAnIdThatTwoElementsHaveAreErrors) {
  expect_limit("<r><a href='#1'/></r><m id='1'>x</m><m id='1'>y</m>");
  EXPECT_EQ(parsed("<r><a id='1'/><b id='1'/></r>").Parameters().Count(), 2U)
      << "an id that nothing refers to does not matter";
}

TEST(References, ThatGoInACircleAreErrors) {
  expect_limit("<r><a id='1' href='#1'/></r>");
  expect_limit("<r><a href='#1'/></r><m id='1' href='#2'/><m id='2' href='#1'/>");
  expect_limit("<r id='r'><a href='#r'/></r>");
  expect_limit("<r><a href='#1'/></r><m id='1'><b href='#2'/></m><m id='2'><c href='#1'/></m>");
  expect_limit("<r/><m id='1'><b href='#1'/></m>");
}

TEST(References, AreEmptyElementsOnly) {
  const SoapEnvelope reply =
      parsed("<r><a href='#top'>text</a><b href='page.html'/><c href='#x'><d/></c></r>");
  EXPECT_EQ(reply.Parameters().Item(0).Value(), Variant("text"));
  EXPECT_EQ(reply.Parameters().Item(1).Value(), Variant(""));
  EXPECT_EQ(names_of(reply.Parameters().Item(2).Nodes()), "d");
}

TEST(References, MeanNothingInAPlainDocument) {
  EXPECT_EQ(node_from_xml("<a href='#1'/>").Value(), Variant(""));
}

TEST(References, AreWrittenOutInFull) {
  const SoapEnvelope reply = parsed(
      "<r><a href='#x'/><b href='#x'/></r><multiRef id='x'><v xsi:type='xsd:int'>1</v></multiRef>");
  EXPECT_EQ(node_to_xml(reply.Parameters().Item(1)),
            "<b xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
            " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><v xsi:type=\"xsd:int\">1</v></b>");
}

TEST(References, AValueSetOnOneDoesNotReachTheTarget) {
  const SoapEnvelope reply = parsed("<r><a href='#x'/><b href='#x'/></r><m id='x'>1</m>");
  reply.Parameters().Item(0).Value("2");
  EXPECT_EQ(reply.Parameters().Item(0).Value(), Variant("2"));
  EXPECT_EQ(reply.Parameters().Item(1).Value(), Variant("1"));
}

/// Elements of which each refers twice to the next: 2 to the power of `levels` leaves.
std::string doubling(int levels, std::string_view attributes = "") {
  std::string body = "<r><a href='#0'/></r>";
  for (int i = 0; i < levels; ++i) {
    const std::string next = std::to_string(i + 1);
    body += "<m id='" + std::to_string(i) + "'" + std::string(attributes) + "><b href='#" + next +
            "'/><c href='#" + next + "'/></m>";
  }
  return body + "<m id='" + std::to_string(levels) + "'>leaf</m>";
}

TEST(References, AChainThatDoublesAtEachStepDoesNotGrow) {
  const auto start = std::chrono::steady_clock::now();
  const SoapEnvelope reply = parsed(doubling(60));
  SoapNode node = reply.Parameters().Item(0);
  for (int i = 0; i < 60; ++i) node = node.Nodes().Item(static_cast<std::size_t>(i % 2));
  EXPECT_EQ(node.Value(), Variant("leaf"));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(References, AChainThatDoublesIsNotWrittenOut) {
  const SoapEnvelope reply = parsed(doubling(30));
  const Error error = error_of([&] { reply.Serialize(); });
  EXPECT_EQ(hex_number(error.number), "0x80044206");
  EXPECT_TRUE(error.description.starts_with("Written out, shared nodes make more than"));
}

TEST(References, AnArrayThatDoublesHasNoValue) {
  const SoapEnvelope reply = parsed(doubling(60, " soapenc:arrayType='xsd:anyType[2]'"));
  const SoapNode node = reply.Parameters().Item(0);
  EXPECT_EQ(hex_number(error_of([&] { node.Value(); }).number), "0x80044206");
}

}  // namespace
}  // namespace bvconn

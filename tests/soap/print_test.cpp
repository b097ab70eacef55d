#include "bvconn/platform/soap/print.h"

#include <algorithm>
#include <iostream>
#include <sstream>

#include "soap/soap_test.h"

namespace bvconn {
namespace {

using test::error_of;

std::string printed(const SoapNode& node) {
  std::ostringstream out;
  print(node, out);
  return out.str();
}

/// A chain of nodes: the given number of elements, each in the one before it.
SoapNode chain(int elements) {
  SoapNode root = SoapNode::make("n");
  SoapNode last = root;
  for (int i = 1; i < elements; ++i) {
    SoapNode next = SoapNode::make("n");
    last.Nodes().Append(next);
    last = next;
  }
  return root;
}

TEST(Print, GivesEachNodeALineIndentedByItsLevel) {
  const SoapNode node = soap_test::first_parameter(
      "<return><Number>4711</Number><Lines><Line><Qty>2</Qty></Line><Line/></Lines>"
      "<Total xsi:type='xsd:double'>2.50</Total></return>");
  EXPECT_EQ(printed(node),
            "return\n"
            "  Number = 4711\n"
            "  Lines\n"
            "    Line\n"
            "      Qty = 2\n"
            "    Line = \n"
            "  Total = 2.5\n");
}

TEST(Print, ShowsValuesAsTheyStandInARequest) {
  SoapNode root = SoapNode::make("r");
  root.Nodes().Create("b", true);
  root.Nodes().Create("i", std::int32_t{-7});
  root.Nodes().Create("d", 2.0);
  root.Nodes().Create("t", from_civil({.year = 2007, .month = 1, .day = 5, .hour = 10}));
  root.Nodes().Create("x", Bytes{std::byte{0xFF}});
  root.Nodes().Create("q", QualifiedName{"urn:q", "Server"});
  root.Nodes().Create("nil", Variant());
  EXPECT_EQ(printed(root),
            "r\n  b = true\n  i = -7\n  d = 2\n  t = 2007-01-05T10:00:00\n  x = /w==\n"
            "  q = Server\n  nil is nil\n");
}

// The items of an array are children too, each an element "item".
TEST(Print, NamesTheNodesOfAnArray) {
  SoapNode root = SoapNode::make("r");
  root.Nodes().Create("items", VariantArray({SoapNode::make("First"), SoapNode(), "text"}));
  EXPECT_EQ(printed(root),
            "r\n  items = [First,nil,\"text\"]\n    item\n    item is nil\n    item = text\n");
}

TEST(Print, LeavesMarkupAsTheTextThatItIs) {
  SoapNode node = SoapNode::make("a");
  node.Value("<b>&amp;\"'</b>");
  EXPECT_EQ(printed(node), "a = <b>&amp;\"'</b>\n");
}

TEST(Print, PutsTextInQuotesInWhichControlsAreEscaped) {
  SoapNode node = SoapNode::make("a");
  node.Value("one\n\"two\"\t\\\x1B[31m\x7F\xC2\x85");
  EXPECT_EQ(printed(node), "a = \"one\\n\\\"two\\\"\\t\\\\\\x1B[31m\\x7F\\xC2\\x85\"\n");
}

TEST(Print, ShowsAnArrayInOneLineAndThenItsItems) {
  const SoapNode node =
      soap_test::first_parameter("<l soapenc:arrayType='xsd:int[2]'><i>7</i><i>8</i></l>");
  EXPECT_EQ(printed(node), "l = [7,8]\n  i = 7\n  i = 8\n");
  SoapNode mixed = SoapNode::make("m");
  mixed.Value(VariantArray({Variant("a,\"b\""), Variant(true), Variant(),
                            Variant(VariantArray({Variant(std::int16_t{1})}))}));
  EXPECT_TRUE(printed(mixed).starts_with("m = [\"a,\\\"b\\\"\",true,nil,[1]]\n")) << printed(mixed);
}

TEST(Print, ShowsWhatCannotBeReadWithItsReason) {
  const SoapNode node = soap_test::first_parameter("<r><A xsi:type='xsd:int'>x</A><B>2</B></r>");
  EXPECT_EQ(printed(node),
            "r\n"
            "  A = x (unreadable: Type mismatch: the text \"x\" of the node \"A\" is not of its "
            "type int)\n"
            "  B = 2\n");
}

TEST(Print, ShowsTheContentOfAWrappedNode) {
  SoapNode outer = SoapNode::make("outer");
  outer.Value(node_from_xml("<inner><f>1</f></inner>"));
  EXPECT_EQ(printed(outer), "outer\n  f = 1\n");
}

TEST(Print, TakesATreeAsDeepAsARequestMayBeAndWritesNothingOfADeeperOne) {
  const std::string text = printed(chain(10'000));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 10'000);
  std::ostringstream out;
  const Error error = error_of([&] { print(chain(10'001), out); });
  EXPECT_EQ(hex_number(error.number), "0x80044206");
  EXPECT_EQ(out.str(), "");
}

TEST(Print, FailsForANodeThatContainsItself) {
  SoapNode node = SoapNode::make("a");
  SoapNode child = SoapNode::make("b");
  node.Nodes().Append(child);
  child.Nodes().Append(node);
  std::ostringstream out;
  EXPECT_EQ(hex_number(error_of([&] { print(node, out); }).number), "0x80044206");
  EXPECT_EQ(out.str(), "");
  child.Value("");  // opens the circle, so that it is freed
}

TEST(Print, FailsWith91ForAnEmptyReference) {
  EXPECT_EQ(error_of([] { print(SoapNode(), std::cout); }).number, 91);
}

TEST(Print, GoesToStandardOutputWhereNothingElseIsSaid) {
  testing::internal::CaptureStdout();
  print(node_from_xml("<a>1</a>"));
  std::cout.flush();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "a = 1\n");
}

}  // namespace
}  // namespace bvconn

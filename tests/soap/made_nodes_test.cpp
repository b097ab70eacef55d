#include <vector>

#include "soap/soap_test.h"

namespace bvconn {
namespace {

using soap_test::names_of;
using soap_test::written;
using test::error_of;

TEST(SoapNode, CopiesShareOneNode) {
  SoapNode node = SoapNode::make("before");
  const SoapNode copy = node;
  node.Name("after");
  EXPECT_EQ(copy.Name(), "after");
  EXPECT_EQ(copy, node);
  EXPECT_NE(SoapNode::make("after"), node);
}

TEST(SoapNode, MadeWithoutNameIsEmpty) {
  const SoapNode node = SoapNode::make();
  EXPECT_EQ(node.Name(), "");
  EXPECT_EQ(node.Namespace(), "");
  EXPECT_EQ(node.Type(), "");
  EXPECT_TRUE(node.Value().empty());
  EXPECT_EQ(node.Nodes().Count(), 0U);
  EXPECT_FALSE(node.nil());
}

TEST(SoapNode, AnyUseOfAnEmptyReferenceFailsWith91) {
  SoapNode none;
  EXPECT_FALSE(none);
  const Error error = error_of([&] { none.Name(); });
  EXPECT_EQ(error.number, 91);
  EXPECT_EQ(error.source, "BVConn");
  EXPECT_EQ(error_of([&] { none.Name("n"); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Namespace(); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Namespace("u"); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Type(); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Value(); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Value("v"); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Value(StringArray{"v"}); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Value(SoapNode::make("v")); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Nodes(); }).number, 91);
  EXPECT_EQ(error_of([&] { none.nil(); }).number, 91);
}

TEST(SoapNodes, AnyUseOfAnEmptyListReferenceFailsWith91) {
  SoapNodes none;
  EXPECT_EQ(error_of([&] { none.Count(); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Item(0); }).number, 91);
  EXPECT_EQ(error_of([&] { none.ItemByName("n"); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Create("n", "v"); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Append(SoapNode::make("n")); }).number, 91);
  EXPECT_EQ(error_of([&] { none.begin(); }).number, 91);
}

TEST(SoapNodes, AppendOfAnEmptyReferenceFailsWith91AndAddsNothing) {
  SoapNode node = SoapNode::make("n");
  EXPECT_EQ(error_of([&] { node.Nodes().Append(SoapNode()); }).number, 91);
  EXPECT_EQ(node.Nodes().Count(), 0U);
}

TEST(SoapNodes, AppendKeepsTheVeryNode) {
  const SoapNode parent = SoapNode::make("parent");
  SoapNode child = SoapNode::make("child");
  parent.Nodes().Append(child);
  child.Name("renamed");
  EXPECT_EQ(parent.Nodes().Item(0), child);
  EXPECT_EQ(parent.Nodes().ItemByName("renamed"), child);
}

TEST(SoapNodes, CreateAppendsAndReturnsTheNewNode) {
  const SoapNode parent = SoapNode::make("parent");
  const SoapNode first = parent.Nodes().Create("first", "1", "urn:f");
  const SoapNode second = parent.Nodes().Create("second", 2);
  EXPECT_EQ(parent.Nodes().Count(), 2U);
  EXPECT_EQ(parent.Nodes().Item(0), first);
  EXPECT_EQ(parent.Nodes().Item(1), second);
  EXPECT_EQ(first.Namespace(), "urn:f");
  EXPECT_EQ(second.Namespace(), "");
}

TEST(SoapNodes, RangesGoThroughTheChildrenInOrder) {
  const SoapNode parent = SoapNode::make("parent");
  EXPECT_EQ(names_of(parent.Nodes()), "");
  for (const char* name : {"a", "b", "c"}) parent.Nodes().Create(name, "");
  EXPECT_EQ(names_of(parent.Nodes()), "a b c");
}

TEST(SoapNodes, ALookUpBeyondTheEndSaysWhatThereIs) {
  const SoapNode parent = SoapNode::make("parent");
  const Error empty = error_of([&] { parent.Nodes().Item(0); });
  EXPECT_EQ(hex_number(empty.number), "0x80044204");
  EXPECT_EQ(empty.source, "SoapNodes");
  EXPECT_EQ(empty.description, "There is no node at index 0; there are no nodes");
  parent.Nodes().Create("a", "1");
  parent.Nodes().Create("b", "2");
  const Error error = error_of([&] { parent.Nodes().Item(2); });
  EXPECT_EQ(hex_number(error.number), "0x80044204");
  EXPECT_EQ(error.description, "There is no node at index 2; there are 2: a, b");
}

TEST(SoapNodes, ALookUpByNameThatFindsNothingSaysWhatThereIs) {
  const SoapNode parent = SoapNode::make("parent");
  parent.Nodes().Create("faultstring", "x");
  const Error error = error_of([&] { parent.Nodes().ItemByName("faultcode"); });
  EXPECT_EQ(hex_number(error.number), "0x80044204");
  EXPECT_EQ(error.source, "SoapNodes");
  EXPECT_EQ(error.description,
            "There is no node named \"faultcode\"; there is 1 node: faultstring");
}

TEST(SoapNodes, ItemByNameTakesTheFirstOfSeveral) {
  const SoapNode parent = SoapNode::make("parent");
  const SoapNode first = parent.Nodes().Create("x", "1");
  parent.Nodes().Create("x", "2");
  EXPECT_EQ(parent.Nodes().ItemByName("x"), first);
}

TEST(SoapNodes, ItemByNameMindsTheNamespaceOnlyWhenOneIsGiven) {
  const SoapNode parent = SoapNode::make("parent");
  const SoapNode plain = parent.Nodes().Create("x", "1");
  const SoapNode spaced = parent.Nodes().Create("x", "2", "urn:u");
  EXPECT_EQ(parent.Nodes().ItemByName("x", ""), plain);
  EXPECT_EQ(parent.Nodes().ItemByName("x", "urn:u"), spaced);
  EXPECT_EQ(hex_number(error_of([&] { parent.Nodes().ItemByName("x", "urn:v"); }).number),
            "0x80044204");
}

TEST(SoapNodes, ItemByNameIsExactInCase) {
  const SoapNode parent = SoapNode::make("parent");
  parent.Nodes().Create("Name", "1");
  EXPECT_EQ(hex_number(error_of([&] { parent.Nodes().ItemByName("name"); }).number), "0x80044204");
}

TEST(SoapNodeValue, ComesBackAsItWasGiven) {
  SoapNode node = SoapNode::make("n");
  const std::vector<Variant> values{true,
                                    std::int16_t{1},
                                    2,
                                    std::int64_t{3},
                                    4.5,
                                    "five",
                                    Date{6},
                                    Bytes{std::byte{7}},
                                    QualifiedName{"urn:8", "eight"},
                                    StringArray{"nine", "ten"},
                                    StringArray(),
                                    StringArray(std::vector<std::string>{}),
                                    SoapNode::make("eleven")};
  for (const Variant& value : values) {
    node.Value(value);
    EXPECT_EQ(node.Value(), value) << type_name(value.type());
  }
}

TEST(SoapNodeValue, OfANodeWithChildrenIsANodeWithTheSameNameAndNodes) {
  const SoapNode node = SoapNode::make("order");
  node.Nodes().Create("a", "1");
  const SoapNode value = to_node(node.Value());
  EXPECT_EQ(value.Name(), "order");
  EXPECT_EQ(value.Nodes().Count(), 1U);
  EXPECT_EQ(value.Nodes().Item(0), node.Nodes().Item(0));
}

TEST(SoapNodeValue, SetToItselfChangesNothing) {
  SoapNode node = SoapNode::make("order");
  node.Nodes().Create("a", "1");
  node.Value(node.Value());
  EXPECT_EQ(names_of(node.Nodes()), "a");
}

TEST(SoapNodeValue, EmptyMissingAndAnEmptyReferenceAreNil) {
  for (const Variant& value : {Variant(), Variant(Variant::Missing{}), Variant(SoapNode())}) {
    SoapNode node = SoapNode::make("n");
    node.Value(value);
    EXPECT_TRUE(node.nil());
    EXPECT_TRUE(node.Value().empty());
    EXPECT_EQ(node.Nodes().Count(), 0U);
  }
}

TEST(SoapNodeValue, ASimpleValueReplacesTheChildren) {
  SoapNode node = SoapNode::make("n");
  node.Nodes().Create("child", "1");
  node.Value("text");
  EXPECT_EQ(node.Nodes().Count(), 0U);
  EXPECT_EQ(node.Value(), Variant("text"));
}

TEST(SoapNodeValue, AChildReplacesTheSimpleValueAndItsType) {
  SoapNode node = SoapNode::make("n");
  node.Value("text");
  EXPECT_EQ(node.Type(), "string");
  node.Nodes().Create("child", 1);
  EXPECT_EQ(node.Type(), "");
  EXPECT_EQ(node_to_xml(node),
            "<n xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
            " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\">"
            "<child xsi:type=\"xsd:int\">1</child></n>");
}

TEST(SoapNodeValue, AWrappedNodeSharesItsChildren) {
  const SoapNode inner = SoapNode::make("inner");
  const SoapNode outer = SoapNode::make("list").Nodes().Create("outer", inner);
  inner.Nodes().Create("a", "1");
  EXPECT_EQ(outer.Name(), "outer");
  EXPECT_EQ(to_node(outer.Value()), inner);
  EXPECT_EQ(names_of(outer.Nodes()), "a");
}

TEST(SoapNodeValue, TwoNodesCannotWrapEachOther) {
  SoapNode a = SoapNode::make("a");
  SoapNode b = SoapNode::make("b");
  a.Value(b);
  const Error error = error_of([&] { b.Value(a); });
  EXPECT_EQ(hex_number(error.number), "0x80044206");
  EXPECT_EQ(error.source, "SoapNodes");
  EXPECT_TRUE(b.Value().empty());
}

TEST(SoapNodeType, FollowsFromTheValue) {
  SoapNode node = SoapNode::make("n");
  const std::vector<std::pair<Variant, std::string>> types{{Variant(true), "boolean"},
                                                           {Variant(std::int16_t{1}), "short"},
                                                           {Variant(2), "int"},
                                                           {Variant(std::int64_t{3}), "long"},
                                                           {Variant(4.5), "double"},
                                                           {Variant("five"), "string"},
                                                           {Variant(Date{6}), "dateTime"},
                                                           {Variant(Bytes{}), "base64Binary"},
                                                           {Variant(StringArray()), "Array"},
                                                           {Variant(), ""}};
  for (const auto& [value, type] : types) {
    node.Value(value);
    EXPECT_EQ(node.Type(), type);
  }
}

TEST(SoapNodeType, GivenToCreateReplacesTheDerivedOne) {
  const SoapNode parent = SoapNode::make("parent");
  SoapNode node = parent.Nodes().Create("n", "7", "", "positiveInteger", "urn:types");
  EXPECT_EQ(node.Type(), "positiveInteger");
  node.Value("8");
  EXPECT_EQ(node.Type(), "string") << "setting Value derives the type anew";
}

TEST(SoapNodes, AreWalkedByEitherFormOfTheIncrement) {
  const SoapNode node = SoapNode::make("n");
  node.Nodes().Create("a", "1");
  node.Nodes().Create("b", "2");
  const SoapNodes nodes = node.Nodes();
  auto at = nodes.begin();
  EXPECT_EQ((*at++).Name(), "a");
  EXPECT_EQ((*at).Name(), "b");
  EXPECT_EQ(++at, nodes.end());
}

}  // namespace
}  // namespace bvconn

#include <chrono>

#include "soap/soap_test.h"

namespace bvconn {
namespace {

using soap_test::parsed;
using soap_test::reply_text;
using test::error_of;

std::string nested(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<a>";
  text += "x";
  for (int i = 0; i < depth; ++i) text += "</a>";
  return text;
}

TEST(LargeTrees, TenThousandLevelsAreReadWrittenAndFreed) {
  // Envelope and Body are two of them.
  const SoapEnvelope reply = parsed(nested(9'998));
  SoapNode node = reply.Parameters().Item(0);
  int depth = 1;
  for (; node.Nodes().Count() > 0; ++depth) node = node.Nodes().Item(0);
  EXPECT_EQ(depth, 9'997);
  EXPECT_EQ(node.Value(), Variant("x"));
  const std::string text = reply.Serialize();
  reply.Parse(text, "");
  EXPECT_EQ(reply.Serialize(), text);
}

TEST(LargeTrees, OneLevelMoreIsALimitPassed) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const Error error = error_of([&] { envelope.Parse(reply_text(nested(9'999)), ""); });
  EXPECT_EQ(hex_number(error.number), "0x80044206");
  EXPECT_EQ(error.source, "SoapEnvelope");
}

TEST(LargeTrees, AMadeTreeOfMoreLevelsIsNotWritten) {
  const SoapNode root = SoapNode::make("a");
  SoapNode node = root;
  for (int depth = 1; depth < 10'000; ++depth) node = node.Nodes().Create("a", "");
  const SoapNode again = node_from_xml(node_to_xml(root));
  EXPECT_EQ(again.Nodes().Count(), 1U) << "ten thousand levels are";
  node.Nodes().Create("a", "");
  EXPECT_EQ(hex_number(error_of([&] { node_to_xml(root); }).number), "0x80044206");
}

TEST(LargeTrees, AMadeTreeOfAMillionLevelsIsFreedWithoutRecursion) {
  SoapNode node = SoapNode::make("bottom");
  for (int depth = 0; depth < 1'000'000; ++depth) {
    const SoapNode parent = SoapNode::make("a");
    parent.Nodes().Append(node);
    node = parent;
  }
  EXPECT_EQ(node.Nodes().Count(), 1U);
  node = SoapNode();
}

TEST(LargeTrees, NodesThatWrapEachOtherAMillionTimesAreFreedWithoutRecursion) {
  SoapNode node = SoapNode::make("bottom");
  node.Value("x");
  const SoapNode list = SoapNode::make("list");
  for (int depth = 0; depth < 1'000'000; ++depth) {
    SoapNode outer = SoapNode::make("a");
    outer.Value(node);
    node = outer;
  }
  EXPECT_EQ(node_to_xml(node).find("x</a>"), node_to_xml(node).size() - 5);
}

TEST(LargeTrees, AMillionSiblingsAreReadAndWalkedByIndex) {
  constexpr std::size_t kCount = 1'000'000;
  std::string text = "<r><list>";
  for (std::size_t i = 0; i < kCount; ++i) text += "<i/>";
  text += "</list></r>";
  const SoapEnvelope reply = parsed(text);
  const SoapNodes nodes = reply.Parameters().Item(0).Nodes();
  ASSERT_EQ(nodes.Count(), kCount);
  const auto start = std::chrono::steady_clock::now();
  std::size_t found = 0;
  for (std::size_t i = 0; i < nodes.Count(); ++i) found += nodes.Item(i).nil() ? 0 : 1;
  EXPECT_EQ(found, kCount);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST(LargeTrees, NamesThatNeverComeAgainAreAllRead) {
  constexpr std::size_t kCount = 20'000;
  const auto name = [](std::size_t i) { return "n" + std::to_string(i); };
  std::string text = "<r>";
  for (int round = 0; round < 2; ++round) {
    for (std::size_t i = 0; i < kCount; ++i) {
      text += "<" + name(i) + " xmlns='urn:" + std::to_string(i % 3) +
              "' xsi:type='xsd:" + (i % 2 == 0 ? "int" : "string") + "'>7</" + name(i) + ">";
    }
  }
  const SoapEnvelope reply = parsed(text + "</r>");
  ASSERT_EQ(reply.Parameters().Count(), 2 * kCount);
  std::size_t at = 0;
  for (const SoapNode& node : reply.Parameters()) {
    const std::size_t i = at++ % kCount;
    ASSERT_EQ(node.Name(), name(i));
    ASSERT_EQ(node.Namespace(), "urn:" + std::to_string(i % 3));
    ASSERT_EQ(node.Value(), i % 2 == 0 ? Variant(7) : Variant("7"));
  }
}

TEST(LargeTrees, AHundredThousandAppendsAreQuick) {
  const SoapNode node = SoapNode::make("list");
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 100'000; ++i) node.Nodes().Create("item", i);
  EXPECT_EQ(node.Nodes().Item(99'999).Value(), Variant(99'999));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

}  // namespace
}  // namespace bvconn

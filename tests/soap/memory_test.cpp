#include <gtest/gtest.h>

#include <string>

#include "bvconn/platform/error.h"
#include "soap/soap_test.h"
#include "support/watched_memory.h"

namespace bvconn {
namespace {

using soap_test::parsed;
using soap_test::reply_text;
using test::MemoryCount;

/// A reply of four nodes for each item: 100,000 of them, and a few.
std::string large_reply() {
  std::string body = "<r><list>";
  for (int i = 0; i < 25'000; ++i) {
    body += "<item><name xsi:type='xsd:string'>Lamp &amp; shade " + std::to_string(i) +
            "</name><price xsi:type='xsd:double'>12.50</price><count>7</count></item>";
  }
  return reply_text(body + "</list></r>");
}

TEST(Memory, AReplyIsAHandfulOfAllocationsWhateverItsSize) {
  std::string text = large_reply();
  const SoapEnvelope envelope = SoapEnvelope::make();
  const MemoryCount count;
  envelope.Parse(std::move(text), "");
  EXPECT_LT(count.made(), 100U);
  EXPECT_LT(count.kept(), 30U);
}

TEST(Memory, ANodeOfAReplyTakesLessThan100Bytes) {
  std::string text = large_reply();
  const SoapEnvelope envelope = SoapEnvelope::make();
  const MemoryCount count;
  envelope.Parse(std::move(text), "");
  // The text itself was there before. What is left of the last block counts too.
  EXPECT_LT(count.bytes_kept(), 100'000U * 100U);
}

TEST(Memory, WalkingAReplyAllocatesNothing) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parse(large_reply(), "");
  const MemoryCount count;
  std::size_t nodes = 0;
  for (const SoapNode& item : envelope.Parameters().Item(0).Nodes()) {
    nodes += item.Nodes().Count();
  }
  EXPECT_EQ(nodes, 75'000U);
  EXPECT_EQ(count.made(), 0U);
}

TEST(Memory, AReplyGoesAsAWholeWithItsLastHandle) {
  const MemoryCount count;
  {
    SoapNode node;
    {
      const SoapEnvelope envelope = SoapEnvelope::make();
      envelope.Parse(large_reply(), "");
      node = envelope.Parameters().Item(0).Nodes().Item(24'999).Nodes().Item(1);
    }
    EXPECT_GT(count.kept(), 0U);
    EXPECT_EQ(node.Value(), Variant(12.5));
  }
  EXPECT_EQ(count.kept(), 0U);
}

TEST(Memory, AFailedParseLeavesNothingBehind) {
  std::string text = large_reply();
  text.resize(text.size() - 20);
  const SoapEnvelope envelope = SoapEnvelope::make();
  const MemoryCount count;
  EXPECT_THROW(envelope.Parse(text, ""), Error);
  EXPECT_THROW(envelope.Parse(reply_text("<r><a href='#1'/></r>"), ""), Error);
  EXPECT_EQ(count.kept(), 0U);
}

TEST(Memory, AChainThatDoublesTakesNoMoreThanItsElements) {
  std::string body = "<r><a href='#0'/></r>";
  for (int i = 0; i < 30; ++i) {
    const std::string next = std::to_string(i + 1);
    body +=
        "<m id='" + std::to_string(i) + "'><b href='#" + next + "'/><c href='#" + next + "'/></m>";
  }
  std::string text = reply_text(body + "<m id='30'>leaf</m>");
  const SoapEnvelope envelope = SoapEnvelope::make();
  const MemoryCount count;
  envelope.Parse(std::move(text), "");
  EXPECT_LT(count.bytes_kept(), 32U * 1024U);
}

TEST(Memory, AClaimedSizeAllocatesNothing) {
  std::string text = reply_text(
      "<r><l xsi:type='soapenc:Array' soapenc:arrayType='xsd:string[2147483647]'"
      " soapenc:offset='[2147483000]'><i soapenc:position='[2147483646]'>a</i></l></r>");
  const SoapEnvelope envelope = SoapEnvelope::make();
  const MemoryCount count;
  envelope.Parse(std::move(text), "");
  EXPECT_EQ(envelope.Parameters().Item(0).Value().array().size(), 1U);
  EXPECT_LT(count.bytes_kept(), 16U * 1024U);
}

TEST(Memory, ARequestGoesWithItsEnvelopeAndItsNodes) {
  const MemoryCount count;
  {
    const SoapEnvelope envelope = SoapEnvelope::make();
    envelope.SetMethod("a-method-with-a-long-name", "urn:and-a-namespace-of-some-length");
    envelope.Headers().Create("userID", "a session of more than fifteen letters");
    const SoapNode node = envelope.Parameters().Create("p", StringArray{"x", "y"});
    envelope.Parameters().Create("q", node);
    envelope.Parameters().Append(node);
    EXPECT_GT(envelope.Serialize().size(), 0U);
  }
  EXPECT_EQ(count.kept(), 0U);
}

TEST(Memory, LinksBetweenAReplyAndMadeNodesKeepNothingAlive) {
  const MemoryCount count;
  {
    const SoapEnvelope reply = parsed("<r><a><b>1</b></a><c/></r>");
    const SoapNode a = reply.Parameters().Item(0);
    const SoapNode made = SoapNode::make("made");
    made.Nodes().Append(a.Nodes().Item(0));  // made -> reply
    a.Nodes().Append(made);                  // reply -> made
    made.Nodes().Append(a.Nodes().Item(0));  // and made, now part of the reply, -> reply
    made.Nodes().Create("inner", a.Nodes().Item(0)).Nodes().Count();
    reply.Parameters().Item(1).Nodes().Append(a);  // reply -> the same reply
    EXPECT_EQ(made.Nodes().Count(), 3U);
  }
  EXPECT_EQ(count.kept(), 0U);
}

TEST(Memory, AMadeNodeSharedByTwoRepliesOutlivesTheFirst) {
  const MemoryCount count;
  {
    const SoapNode made = SoapNode::make("made");
    made.Nodes().Create("inner", "1");
    SoapNode second = parsed("<r><second/></r>").Parameters().Item(0);
    {
      const SoapNode first = parsed("<r><first/></r>").Parameters().Item(0);
      first.Nodes().Append(made);
      second.Nodes().Append(made);
    }
    EXPECT_EQ(second.Nodes().Item(0).Nodes().Item(0).Value(), Variant("1"));
    second.Value("gone");
    EXPECT_EQ(made.Nodes().Count(), 1U);
  }
  EXPECT_EQ(count.kept(), 0U);
}

}  // namespace
}  // namespace bvconn

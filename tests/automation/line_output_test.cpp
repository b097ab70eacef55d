#include "line_output.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "batch.h"
#include "json_text.h"
#include "support/recording_platform.h"

namespace bvconn::test {
namespace {

/// What came out of a line, part by part.
class Parts final : public tool::LineOutput {
 public:
  explicit Parts(std::vector<std::string>& parts) : parts_(parts) {}
  void part(std::string_view text) override { parts_.emplace_back(text); }
  void end(std::string_view text) override { parts_.push_back(std::string(text) + "\n"); }

 private:
  std::vector<std::string>& parts_;
};

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text += part;
  return text;
}

TEST(JsonLine, AShortLineComesInOnePiece) {
  std::vector<std::string> parts;
  Parts output(parts);
  tool::JsonLine line(output);
  line.raw("{\"a\":").string("b").raw('}');
  EXPECT_FALSE(line.has_left());
  line.end_line();
  EXPECT_EQ(parts, std::vector<std::string>{"{\"a\":\"b\"}\n"});
}

TEST(JsonLine, ALongLineComesInPartsOfABoundedSize) {
  std::vector<std::string> parts;
  Parts output(parts);
  tool::JsonLine line(output);
  std::string expected;
  for (int i = 0; i < 100'000; ++i) {
    line.string("text").raw(',');
    expected += "\"text\",";
  }
  EXPECT_TRUE(line.has_left());
  line.string(std::string(300'000, 'x'));
  line.end_line();
  EXPECT_FALSE(line.has_left());
  for (const std::string& part : parts) EXPECT_LE(part.size(), 65537U);
  EXPECT_EQ(joined(parts), expected + '"' + std::string(300'000, 'x') + "\"\n");
}

TEST(JsonLine, WhatHasNotLeftCanBeTakenBack) {
  std::vector<std::string> parts;
  Parts output(parts);
  tool::JsonLine line(output);
  line.raw("one");
  line.clear();
  line.raw("two");
  line.end_line();
  EXPECT_EQ(joined(parts), "two\n");
}

TEST(WholeLines, GivesEachLineInOnePiece) {
  std::vector<std::string> lines;
  tool::WholeLines output([&](std::string_view line) { lines.emplace_back(line); });
  output.part("a");
  output.part("b");
  output.end("c");
  output.end("d");
  EXPECT_EQ(lines, (std::vector<std::string>{"abc", "d"}));
}

constexpr std::string_view kCall =
    R"({"id":1,"call":"BVInvoiceConnector.GetInvoice","args":{"aServerURL":"u","aSessionID":"S",)"
    R"("strInvoiceUID":"U"}})";

/// A reply whose answer is longer than what stands in memory at once.
std::string long_reply() {
  std::string rows;
  for (int i = 0; i < 5000; ++i) rows += "<Row><Name>Bolt " + std::to_string(i) + "</Name></Row>";
  return envelope_text("getInvoiceResponse", "<return>" + rows + "</return>");
}

TEST(BatchOutput, ALongAnswerIsTheSameInParts) {
  RecordingPlatform platform;
  platform.reply(long_reply());
  std::string whole;
  tool::Batch([&](std::string_view line) { whole = line; }).run(kCall);
  platform.reply(long_reply());
  std::vector<std::string> parts;
  tool::Batch(std::make_unique<Parts>(parts)).run(kCall);
  EXPECT_GT(parts.size(), 3U);
  EXPECT_EQ(joined(parts), whole + "\n");
  EXPECT_TRUE(whole.starts_with(R"({"id":1,"result":{"node":{"name":"return","value":null,)"));
  EXPECT_TRUE(whole.ends_with(R"({"name":"Name","value":"Bolt 4999","nodes":[]}]}]}}})"));
}

/// Output whose second part cannot be written.
class BrokenOutput final : public tool::LineOutput {
 public:
  explicit BrokenOutput(std::string& text) : text_(text) {}
  void part(std::string_view text) override {
    if (!text_.empty()) throw std::runtime_error("no room");
    text_ += text;
  }
  void end(std::string_view text) override { text_ += std::string(text) + "\n"; }

 private:
  std::string& text_;
};

TEST(BatchOutput, AnAnswerThatFailsHalfwayIsFollowedByNoOther) {
  RecordingPlatform platform;
  platform.reply(long_reply());
  std::string text;
  tool::Batch batch(std::make_unique<BrokenOutput>(text));
  EXPECT_THROW(batch.run(kCall), std::runtime_error);
  EXPECT_TRUE(text.starts_with(R"({"id":1,"result":)"));
  EXPECT_EQ(text.find("error"), std::string::npos);
  EXPECT_FALSE(text.ends_with('\n'));
}

}  // namespace
}  // namespace bvconn::test

#include "sandbox/wire/wire_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "laws.h"

namespace bvconn::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

WireCase with_reply(const std::string& raw) {
  WireStep step;
  step.member = "C.one";
  step.raw = raw;
  return {.claim = "a", .steps = {step}};
}

std::string reply_read_again(const std::string& raw) {
  const WireFile file = read_wire_file(wire::wire_case_text(with_reply(raw)));
  EXPECT_THAT(file.problems, IsEmpty());
  return file.cases.at(0).steps.at(0).raw.value_or("(none)");
}

TEST(WireWriter, WritesTheKeysOfACallInTheOrderOfTheReadme) {
  WireStep step;
  step.given = {"UsingTorvexDAL", "mask 4"};
  step.member = "C.one";
  step.arguments = "{\"a\":1}";
  step.url = "http://server/soap";
  step.user_id = "S-1";
  step.request = "<m:one/>";
  step.status = "500";
  step.raw = "<a/>";
  EXPECT_EQ(wire::wire_case_text({.claim = "a claim", .steps = {step}}),
            "claim: a claim\n"
            "given:\n"
            "  UsingTorvexDAL\n"
            "  mask 4\n"
            "call: C.one {\"a\":1}\n"
            "send: http://server/soap\n"
            "userID: S-1\n"
            "request: <m:one/>\n"
            "status: 500\n"
            "raw: <a/>\n");
}

TEST(WireWriter, PutsALineOfATextOnALineOfItsOwn) {
  EXPECT_THAT(wire::wire_case_text(with_reply("<a>\r\n  <b/> \n</a>")),
              HasSubstr("raw:\n"
                        "  <a>{return}{line}\n"
                        "  {blank} <b/> {line}\n"
                        "  </a>\n"));
}

TEST(WireWriter, BreaksLongLinesInFrontOfTags) {
  const std::string row = "<row>" + std::string(70, 'x') + "</row>";
  EXPECT_THAT(wire::wire_case_text(with_reply(row + row)),
              HasSubstr("raw:\n  " + row + "\n  " + row + "\n"));
}

TEST(WireWriter, WhatItWritesIsReadAgainToTheLastByte) {
  std::string all_bytes;
  for (int byte = 0; byte < 256; ++byte) all_bytes.push_back(static_cast<char>(byte));
  for (const std::string& text :
       {std::string(), std::string("\n"), std::string(" "), std::string("  two  \n\n"),
        std::string("{line} {brace} {byte 0A} {byte} {words} {{line}"), std::string("# none\n#"),
        std::string("Grün 5\u00A0€"), std::string("\xC3"), std::string("\tkey: value"), all_bytes,
        all_bytes + all_bytes}) {
    EXPECT_EQ(reply_read_again(text), text);
  }
}

TEST(WireWriter, WritesTextsOfPeopleAsTheyAre) {
  EXPECT_THAT(wire::wire_case_text(with_reply("Grün {soap}")), HasSubstr("raw: Grün {soap}\n"));
  EXPECT_THAT(wire::wire_case_text(with_reply("\xC3")), HasSubstr("raw: {byte C3}\n"));
  EXPECT_THAT(wire::wire_case_text(with_reply("a")), Not(HasSubstr("{")));
}

}  // namespace
}  // namespace bvconn::test

#include "hostile/hostile_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "hostile/hostile_bytes.h"

namespace bvconn::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(HostileFile, CasesTakeWhatStandsAheadOfTheFirstClaim) {
  const HostileFile file = read_hostile_file(
      "# a comment\n"
      "routes: soap dal\n"
      "memory: 3\n"
      "\n"
      "claim: one\n"
      "reply: <a>\n"
      "    </a>\n"
      "value: 1\n"
      "claim: two\n"
      "memory: 5\n"
      "then: close\n"
      "raises: 0x80044307\n");
  EXPECT_THAT(file.problems, ElementsAre());
  ASSERT_EQ(file.cases.size(), 2U);
  EXPECT_EQ(file.cases[0].claim, "one");
  EXPECT_EQ(file.cases[0].memory_mib, 3U);
  EXPECT_EQ(file.cases[0].steps.at(0).text, "<a></a>");
  EXPECT_EQ(file.cases[0].expected.at("dal").value, "1");
  EXPECT_EQ(file.cases[1].memory_mib, 5U);
  EXPECT_THAT(file.cases[1].routes, ElementsAre("soap", "dal"));
  EXPECT_EQ(file.cases[1].expected.at("soap").raises, -2147204345);
}

TEST(HostileFile, AnExpectationMayBeOfOneRoute) {
  const HostileFile file = read_hostile_file(
      "claim: one\nroutes: soap dal\nhttp: 404 No\nreply: <a/>\nvalue:\ndal value: x\n");
  EXPECT_THAT(file.problems, ElementsAre());
  EXPECT_EQ(file.cases.at(0).steps.at(0).framing.status, "404 No");
  EXPECT_EQ(file.cases.at(0).expected.at("soap").value, "");
  EXPECT_EQ(file.cases.at(0).expected.at("dal").value, "x");
}

TEST(HostileFile, WhatIsNotUnderstoodIsAProblemWithItsLine) {
  EXPECT_THAT(read_hostile_file("").problems, ElementsAre(HasSubstr("no case")));
  EXPECT_THAT(read_hostile_file("claim: a\nreply: x\nvalue: y\nodd: z\n").problems,
              ElementsAre("line 4: nothing is known of \"odd: z\""));
  EXPECT_THAT(read_hostile_file("claim: a\nreply: x\nwithin: soon\nvalue: y\n").problems,
              ElementsAre(HasSubstr("line 3: a number is expected")));
  EXPECT_THAT(read_hostile_file("claim: a\nvalue: y\n").problems,
              ElementsAre(HasSubstr("does nothing")));
  EXPECT_THAT(read_hostile_file("claim: a\nreply: x\n").problems,
              ElementsAre(HasSubstr("tells no outcome")));
  EXPECT_THAT(read_hostile_file("claim: a\nreply: x\nvalue: y\nraises: 13\n").problems,
              ElementsAre(HasSubstr("or two")));
  EXPECT_THAT(read_hostile_file("claim: a\nreply: x\nvalue: y\ndal value: y\n").problems,
              ElementsAre(HasSubstr("line 4")))
      << "it does not go by this route";
}

TEST(HostileBytes, AreEscapesHolesAndRepetitions) {
  const Holes holes{{"host", "h:1"}};
  EXPECT_EQ(expanded("a\\r\\n\\t\\s\\\\\\{\\}\\xfF", holes), "a\r\n\t \\{}\xFF");
  EXPECT_EQ(expanded("\\0", holes), std::string(1, '\0'));
  EXPECT_EQ(expanded("<{host}>", holes), "<h:1>");
  EXPECT_EQ(expanded("{3*a{2*b}}", holes), "abbabbabb");
  EXPECT_EQ(expanded("{3@ a@='~'}", holes), " a0='1' a1='2' a2='3'");
  EXPECT_THROW(expanded("{odd}", holes), std::runtime_error);
  EXPECT_THROW(expanded("{3*a", holes), std::runtime_error);
  EXPECT_THROW(expanded("\\q", holes), std::runtime_error);
  EXPECT_THROW(expanded("\\x4", holes), std::runtime_error);
}

// The bytes that the server sends for the one step of a case.
std::string sent(const std::string& lines) {
  const HostileFile file = read_hostile_file("claim: a\n" + lines + "value: x\n");
  EXPECT_THAT(file.problems, ElementsAre());
  return answer_of(file.cases.at(0), HostileStep::Moment::kAsked, {}).at(0).bytes;
}

TEST(HostileBytes, AReplyHasItsHeadersAndTheRightLength) {
  EXPECT_EQ(sent("raw: <a/>\n"),
            "HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Length: 4\r\n\r\n"
            "<a/>");
  EXPECT_EQ(sent("http: 404 No\ntype: none\nhead: A: b\nlength: 9\nraw: <a/>\n"),
            "HTTP/1.1 404 No\r\nA: b\r\nContent-Length: 9\r\n\r\n<a/>");
  EXPECT_EQ(sent("length: none\ntype: none\nraw: <a/>\n"), "HTTP/1.1 200 OK\r\n\r\n<a/>");
  EXPECT_EQ(sent("type: none\nas: cut by 1\nraw: <a/>\n"),
            "HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\n<a/");
  EXPECT_EQ(sent("type: none\nas: chunks of 3\nraw: <a/>\n"),
            "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\n<a/\r\n1\r\n>\r\n0\r\n\r\n");
  EXPECT_EQ(sent("send: as it stands\n"), "as it stands");
}

TEST(HostileBytes, MayHaveTwoBytesForEachLetter) {
  using namespace std::string_literals;
  EXPECT_TRUE(sent("as: UTF-16LE with mark\nraw: <a\n").ends_with("\r\n\r\n\xFF\xFE<\0a\0"s));
  EXPECT_TRUE(sent("as: UTF-16BE\nraw: <a\n").ends_with("\r\n\r\n\0<\0a"s));
}

}  // namespace
}  // namespace bvconn::test

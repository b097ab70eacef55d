#include "laws.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace bvconn::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr std::string_view kSoap =
    "claim: it works\n"
    "call: BVC.Get {\"aServerURL\":\"http://s\",\"aSessionID\":\"S-1\",\"GID\":\"G-2\","
    "\"Only\":true,\"Doc\":{\"xml\":\"<a>G-2</a>\"}}\n"
    "send: http://s\n"
    "action: urn:Service\n"
    "userID: S-1\n"
    "request: <m:get xmlns:m=\"urn:Service\"><GID xsi:type=\"xsd:string\">G-2</GID>"
    "<Only xsi:type=\"xsd:boolean\">true</Only></m:get>\n"
    "transport:\n"
    "  NoProxy\n"
    "  Send \"http://s\"\n"
    "  Receive \"UTF-8\"\n"
    "reply: <return>R-3</return>\n"
    "answer: {\"result\":\"R-3\",\"args\":{\"Doc\":{\"node\":{}}}}\n"
    "log:\n"
    "  EnterMethod BVC.get() 1\n"
    "  @sendXML get\n"
    "  ExitMethod BVC.get() 1\n"
    "after: LastHeartBeat\n";

constexpr std::string_view kDal =
    "claim: it works\n"
    "given: UsingTorvexDAL\n"
    "call: BVC.Get {\"GID\":\"G-2\"}\n"
    "dal: GetService.Get(\"G-2\")\n"
    "transport: none\n"
    "reply: <return>R-3</return>\n"
    "answer: {\"result\":{\"node\":{\"name\":\"return\",\"value\":\"R-3\",\"nodes\":[]}}}\n"
    "log:\n"
    "  LogInfo BVC.Get() \"Entering Method...\" 0\n"
    "  LogInfo BVC.Get() \"Exiting Method...\" 0\n";

WireFile file(std::string_view head, std::string_view cases) {
  const WireFile read = read_wire_file(std::string(head).append(cases));
  EXPECT_THAT(read.problems, IsEmpty());
  return read;
}

std::vector<std::string> claims(const LawCases& lawful) {
  std::vector<std::string> all;
  for (const WireCase& wire_case : lawful.cases) all.push_back(wire_case.claim);
  return all;
}

// The one step of the case whose claim has these words.
WireStep step(const LawCases& lawful, std::string_view words) {
  EXPECT_THAT(lawful.problems, IsEmpty());
  for (const WireCase& wire_case : lawful.cases) {
    if (wire_case.claim.find(words) != std::string::npos) return wire_case.steps.at(0);
  }
  ADD_FAILURE() << "no law of " << words;
  return {};
}

TEST(Laws, ALostConnectionEndsTheLogAndTheTransportsLines) {
  const WireFile soap = file("tail: plain BVC.get\n", kSoap);
  const WireStep lost = step(law_cases(soap, nullptr), "lost connection");
  EXPECT_EQ(lost.reply, std::nullopt);
  EXPECT_EQ(lost.broken, "0x80044307 HTTPTransport lost on the way");
  EXPECT_THAT(lost.transport, ElementsAre("NoProxy", "Send \"http://s\""));
  EXPECT_EQ(lost.answer,
            "{\"error\":{\"number\":-2147204345,\"hex\":\"0x80044307\","
            "\"source\":\"HTTPTransport\",\"description\":\"lost on the way\",\"helpFile\":\"\","
            "\"helpContext\":0},\"args\":{\"Doc\":{\"node\":{}}}}");
  EXPECT_THAT(lost.log,
              ElementsAre("EnterMethod BVC.get() 1", "@sendXML get",
                          "LogError BVC.get 0x80044307 \"HTTPTransport\" \"lost on the way\" 0"));
  EXPECT_THAT(lost.after, ElementsAre("not LastHeartBeat"));
}

TEST(Laws, OnlyTheTailsThatLogWriteALineAndOnlySomeKeepTheHelp) {
  const auto outcome = [](std::string_view tail) {
    const WireFile dal = file("tail: " + std::string(tail) + "\n", kDal);
    return step(law_cases(dal, nullptr), "error of a service object");
  };
  const std::string enter = "LogInfo BVC.Get() \"Entering Method...\" 0";
  const std::string line = "LogError BVC.Get 0x80044301 \"GetService\" \"nobody there\" 0";
  EXPECT_THAT(outcome("plain BVC.Get").log, ElementsAre(enter, line));
  EXPECT_THAT(outcome("fault code BVC.Get").log, ElementsAre(enter, line));
  EXPECT_THAT(outcome("swallow BVC.Get").log, ElementsAre(enter, line));
  EXPECT_EQ(outcome("swallow BVC.Get").answer, "{\"result\":null}");
  EXPECT_THAT(outcome("overview BVC.Get(1, 2)").log,
              ElementsAre(enter, "LogError BVC.Get(1, 2) 0x80044301 \"GetService\" \"\" 0"));
  const std::string error =
      "{\"error\":{\"number\":-2147204351,\"hex\":\"0x80044301\",\"source\":\"GetService\","
      "\"description\":\"nobody there\",";
  for (const char* tail : {"bare", "none", "rfq"}) {
    EXPECT_THAT(outcome(tail).log, ElementsAre(enter)) << tail;
    EXPECT_EQ(outcome(tail).answer, error + "\"helpFile\":\"help.chm\",\"helpContext\":12}}");
  }
  for (const char* tail : {"unlogged", "fault string"}) {
    EXPECT_THAT(outcome(tail).log, ElementsAre(enter)) << tail;
    EXPECT_EQ(outcome(tail).answer, error + "\"helpFile\":\"\",\"helpContext\":0}}") << tail;
  }
}

TEST(Laws, AFaultInAnAnswerHasTheServersWordsInTwoTailsAlone) {
  const auto outcome = [](std::string_view tail) {
    const WireFile dal = file("tail: " + std::string(tail) + "\n", kDal);
    return step(law_cases(dal, nullptr), "a fault ends").answer.value_or("");
  };
  EXPECT_THAT(outcome("plain BVC.Get"), HasSubstr("\"The reply is a SOAP fault\""));
  EXPECT_THAT(outcome("bare"), HasSubstr("\"The reply is a SOAP fault\""));
  EXPECT_THAT(outcome("fault string"), HasSubstr("\"the server's words\""));
  EXPECT_THAT(outcome("rfq"), HasSubstr("\"number\":-2147210403,\"hex\":\"0x80042B5D\",\"source\":"
                                        "\"SoapEnvelope\",\"description\":\"the server's words\""));
}

TEST(Laws, AFaultOverHttpHasTheServersWordsWhereAFunctionSends) {
  const WireFile soap = file("tail: bare\n", kSoap);
  EXPECT_THAT(step(law_cases(soap, nullptr), "a fault ends").answer.value_or(""),
              HasSubstr("\"the server's words\""));
  WireFile own = soap;
  own.cases[0].steps[0].log = {"@inline"};
  EXPECT_THAT(step(law_cases(own, nullptr), "a fault ends").answer.value_or(""),
              HasSubstr("\"The reply is a SOAP fault\""));
}

TEST(Laws, EmptyTextsAreThoseOfTheArgumentsButNotTheAddress) {
  const WireFile soap = file("tail: plain BVC.get\n", kSoap);
  const WireStep empty = step(law_cases(soap, nullptr), "empty texts");
  EXPECT_EQ(empty.arguments,
            "{\"aServerURL\":\"http://s\",\"aSessionID\":\"\",\"GID\":\"\",\"Only\":true,"
            "\"Doc\":{\"xml\":\"<a>G-2</a>\"}}");
  EXPECT_EQ(empty.user_id, "");
  EXPECT_EQ(empty.request,
            "<m:get xmlns:m=\"urn:Service\"><GID xsi:type=\"xsd:string\"/>"
            "<Only xsi:type=\"xsd:boolean\">true</Only></m:get>");
}

TEST(Laws, WhatTheEndOfTheObjectWritesStaysLast) {
  WireFile dal = file("tail: plain BVC.Get\n", kDal);
  dal.cases[0].steps[0].log.emplace_back("LogInfo BVC.Class_Terminate() \"Entering Method...\" 0");
  EXPECT_THAT(step(law_cases(dal, nullptr), "without service objects").log,
              ElementsAre("LogInfo BVC.Get() \"Entering Method...\" 0",
                          "LogError BVC.Get 91 \"BVConn\" \"{words}\" 0",
                          "LogInfo BVC.Class_Terminate() \"Entering Method...\" 0"));
}

TEST(Laws, TheOtherRouteIsTheFirstCaseOfItsFile) {
  const WireFile soap = file("tail: plain BVC.get\n", kSoap);
  const WireFile dal = file("tail: plain BVC.Get\ndisabled by: urn:Service.get\n", kDal);
  const LawCases lawful = law_cases(dal, &soap);
  const WireStep off = step(lawful, "without the switch");
  EXPECT_THAT(off.given, ElementsAre("UsingTorvexDAL", "not UsingTorvexDAL"));
  EXPECT_EQ(off.url, "http://s");
  EXPECT_THAT(off.dal, IsEmpty());
  EXPECT_THAT(step(lawful, "a disabled method").given,
              ElementsAre("UsingTorvexDAL", "disabled urn:OtherService.other|urn:Service.get|"));
}

TEST(Laws, EntriesThatAreNearlyItsOwnLeaveTheRouteOpen) {
  const WireFile soap = file("tail: plain BVC.get\n", kSoap);
  const WireFile dal = file("tail: plain BVC.Get\ndisabled by: urn:Service.get\n", kDal);
  const WireStep open = step(law_cases(dal, &soap), "only like its own");
  EXPECT_THAT(open.given,
              ElementsAre("UsingTorvexDAL",
                          "disabled urn:Service.GET|urn:Service.gets|urn:OtherService.get|"
                          "urn:Service.get"));
  EXPECT_THAT(open.dal, ElementsAre("GetService.Get(\"G-2\")"));
}

TEST(Laws, AnOperationWithoutTheOtherRouteStaysOnSoap) {
  const WireFile soap = file("tail: plain BVC.get\n", kSoap);
  const LawCases alone = law_cases(soap, nullptr);
  EXPECT_THAT(step(alone, "stays on SOAP").given, ElementsAre("UsingTorvexDAL", "UseDALSave"));
  const WireFile dal = file("tail: plain BVC.Get\n", kDal);
  EXPECT_EQ(law_cases(soap, &dal).cases.size(), alone.cases.size() - 1);
}

TEST(Laws, OnlyATextHasALawOfItsEmptiness) {
  const WireFile soap = file("tail: plain BVC.get\nreturns: text\n", kSoap);
  const WireStep empty = step(law_cases(soap, nullptr), "empty first parameter");
  EXPECT_EQ(empty.answer, "{\"result\":\"\",\"args\":{\"Doc\":{\"node\":{}}}}");
  const WireFile dal = file("tail: plain BVC.Get\n", kDal);
  EXPECT_THAT(claims(law_cases(dal, nullptr)), Not(Contains(HasSubstr("empty first parameter"))));
}

TEST(Laws, AnExceptionNamesALawThatWouldHoldAndAReason) {
  const WireFile soap = file("tail: plain BVC.get\nnot: fault: it has none\n", kSoap);
  EXPECT_THAT(claims(law_cases(soap, nullptr)), Not(Contains(HasSubstr("a fault ends"))));
  const auto problems = [](std::string_view head) {
    const WireFile read = file(head, kSoap);
    return law_cases(read, nullptr).problems;
  };
  EXPECT_THAT(problems("tail: bare\nnot: falt: it has none\n"),
              ElementsAre(HasSubstr("is no law and a reason")));
  EXPECT_THAT(problems("tail: bare\nnot: fault\n"),
              ElementsAre(HasSubstr("is no law and a reason")));
  EXPECT_THAT(problems("tail: bare\nnot: disabled: it has one route\n"),
              ElementsAre(HasSubstr("keeps no law away")));
}

TEST(Laws, OnlyARouteBesideAnotherCanBeDisabled) {
  const WireFile soap = file("tail: bare\ndisabled by: urn:Service.get\n", kSoap);
  EXPECT_THAT(law_cases(soap, nullptr).problems, ElementsAre(HasSubstr("no other route")));
  const WireFile dal = file("tail: bare\n", kDal);
  EXPECT_THAT(law_cases(dal, &soap).problems, ElementsAre(HasSubstr("is not stated")));
}

TEST(Laws, ATailThatLogsHasANameAndTheOthersHaveNone) {
  for (const char* tail : {"plain", "plain get", "bare BVC.get", "fault BVC.get", ""}) {
    const WireFile soap = file("tail: " + std::string(tail) + "\n", kSoap);
    EXPECT_THAT(law_cases(soap, nullptr).problems, ElementsAre(HasSubstr("tail: "))) << tail;
  }
}

}  // namespace
}  // namespace bvconn::test

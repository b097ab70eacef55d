#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "automation/scripted_server.h"
#include "automation/tool_process.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

Tool::Outcome get_invoice(const std::string& url, std::vector<std::string> more = {}) {
  std::vector<std::string> arguments{"call", "BVInvoiceConnector.GetInvoice", "aServerURL=" + url,
                                     "aSessionID=S", "strInvoiceUID=U1"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return Tool::run(arguments);
}

TEST(Call, PrintsTheNodeAsATree) {
  ScriptedServer server;
  server.reply(
      reply_envelope("<return><InvoiceNumber>4711</InvoiceNumber><Lines><Line>a</Line>"
                     "</Lines></return>"));
  const Tool::Outcome outcome = get_invoice(server.url());
  EXPECT_EQ(outcome.out,
            "return\n"
            "  InvoiceNumber = 4711\n"
            "  Lines\n"
            "    Line = a\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST(Call, PrintsTheBatchFormWithJson) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>4711</return>"));
  const Tool::Outcome outcome = get_invoice(server.url(), {"--json"});
  EXPECT_EQ(outcome.out,
            "{\"id\":null,\"result\":{\"node\":{\"name\":\"return\",\"value\":\"4711\","
            "\"nodes\":[]}}}\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST(Call, AFailedCallSaysNumberSourceDescriptionAndAHint) {
  ScriptedServer server;
  server.reply(fault_envelope("4711", "No such invoice"));
  const Tool::Outcome outcome = get_invoice(server.url());
  EXPECT_EQ(outcome.status, 4);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "bvconn: BVInvoiceConnector.GetInvoice failed: error 0x80044201 (-2147204607) from "
            "SoapEnvelope: No such invoice\n"
            "bvconn: hint: The server read the request and refused it. Its words are in the "
            "description, or where an operation hides them in the record of the exchange: correct "
            "what they name.\n");
}

TEST(Call, AFailedCallPrintsItsErrorWithJson) {
  ScriptedServer server;
  server.reply(fault_envelope("4711", "No such invoice"));
  const Tool::Outcome outcome = get_invoice(server.url(), {"--json"});
  EXPECT_EQ(outcome.status, 4);
  EXPECT_EQ(outcome.out,
            "{\"id\":null,\"error\":{\"number\":-2147204607,\"hex\":\"0x80044201\","
            "\"source\":\"SoapEnvelope\",\"description\":\"No such invoice\",\"helpFile\":\"\","
            "\"helpContext\":0}}\n");
}

TEST(Call, ValuesAreReadByTheirType) {
  ScriptedServer server;
  server.reply(reply_envelope("<return/>"));
  const TemporaryFolder folder;
  const std::string file = folder.file("node.xml", "<in><a>from a file</a></in>");
  const Tool::Outcome outcome =
      Tool::run({"call", "BVGenericConnector.Send", "aService=urn:Postal", "aMethod=getCountries",
                 "aRootNodeName=root", "aSoapNode=@" + file, "aServerURL=" + server.url(),
                 "aTimeout=5000", "aSessionID=a=b"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  ASSERT_EQ(server.requests().size(), 1U);
  EXPECT_THAT(server.requests()[0].body, HasSubstr(">from a file</a>"));
  EXPECT_THAT(server.requests()[0].body, HasSubstr(">a=b</userID>"));
}

TEST(Call, ValuesComeAsJsonFromStandardInputAndWithAnAtSign) {
  ScriptedServer server;
  server.reply(reply_envelope("<return/>"));
  const Tool::Outcome outcome =
      Tool::run({"call", "BVGenericConnector.Send", "aService=urn:Postal", "aMethod=getCountries",
                 "aRootNodeName=root", "aSoapNode=@-", "aServerURL:=\"" + server.url() + "\"",
                 "aSessionID=@@S"},
                "<in><a>from input</a></in>");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  ASSERT_EQ(server.requests().size(), 1U);
  EXPECT_THAT(server.requests()[0].body, HasSubstr(">from input</a>"));
  EXPECT_THAT(server.requests()[0].body, HasSubstr(">@S</userID>"));
}

TEST(Call, ABooleanResultIsPrinted) {
  const Tool::Outcome outcome = Tool::run(
      {"call", "BVConnectorObject.IsDALDisabled", "evalMethod=save", "evalService=urn:Postal"});
  EXPECT_EQ(outcome.out, "false\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST(Call, NothingPrintsNothing) {
  const Tool::Outcome outcome = Tool::run({"call", "BVHeartBeatConnector.UpdateHeartBeatTime"});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST(Call, AnEventIsTold) {
  const std::vector<std::string> arguments{"call", "BVHeartBeatConnector.sendHeartBeat",
                                           "aServerURL=" + dead_url(), "aSessionID=S",
                                           "isBrimvale=true"};
  EXPECT_THAT(Tool::run(arguments).err,
              HasSubstr("bvconn: event BVHeartBeatConnector.HeartBeatError\n"));
  std::vector<std::string> with_json = arguments;
  with_json.push_back("--json");
  EXPECT_EQ(Tool::run(with_json).out,
            "{\"event\":\"BVHeartBeatConnector.HeartBeatError\",\"id\":null}\n"
            "{\"id\":null,\"result\":null}\n");
}

TEST(Call, WhatIsNotUnderstoodEndsWithStatus2) {
  const std::vector<std::vector<std::string>> calls{
      {"call"},
      {"call", "GetInvoice"},
      {"call", "BVNoConnector.GetInvoice"},
      {"call", "BVInvoiceConnector.NoOperation"},
      {"call", "BVMethods.Beat"},
      {"call", "BVInvoiceConnector.GetInvoice"},
      {"call", "BVHeartBeatConnector.UpdateHeartBeatTime", "x=1"},
      {"call", "BVHeartBeatConnector.UpdateHeartBeatTime", "novalue"},
      {"call", "BVHeartBeatConnector.UpdateHeartBeatTime", "--mask", "many"},
      {"call", "BVHeartBeatConnector.UpdateHeartBeatTime", "--trace", "/no/such/folder/trace"},
      {"call", "BVHeartBeatConnector.UpdateHeartBeatTime", "--no-such-option"},
      {"call", "BVHeartBeatConnector.sendHeartBeat", "aServerURL=u", "aSessionID=S",
       "isBrimvale=maybe"},
      {"call", "BVHeartBeatConnector.sendHeartBeat", "aServerURL=@/no/such/file", "aSessionID=S"},
      {"call", "BVHeartBeatConnector.sendHeartBeat", "aServerURL=u", "aServerURL=v",
       "aSessionID=S"},
      {},
      {"nocommand"},
  };
  for (const auto& arguments : calls) {
    const Tool::Outcome outcome = Tool::run(arguments);
    EXPECT_EQ(outcome.status, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.out, "") << testing::PrintToString(arguments);
    EXPECT_NE(outcome.err, "") << testing::PrintToString(arguments);
  }
}

TEST(Call, AMissingArgumentIsNamed) {
  EXPECT_EQ(
      Tool::run({"call", "BVInvoiceConnector.GetInvoice", "aServerURL=u", "aSessionID=S"}).err,
      "bvconn: BVInvoiceConnector.GetInvoice: argument strInvoiceUID is required\n");
}

TEST(CommandLine, TellsItsVersion) {
  const Tool::Outcome outcome = Tool::run({"--version"});
  EXPECT_EQ(outcome.out, "bvconn " BVCONN_TOOL_VERSION "\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST(CommandLine, HelpShowsCommandsAndExamples) {
  const Tool::Outcome outcome = Tool::run({"--help"});
  EXPECT_EQ(outcome.status, 0);
  for (const char* text : {"list", "call", "batch", "Examples", "bvconn call "}) {
    EXPECT_THAT(outcome.out, HasSubstr(text));
  }
  EXPECT_EQ(Tool::run({"call", "--help"}).status, 0);
}

}  // namespace
}  // namespace bvconn::test

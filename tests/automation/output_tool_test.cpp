#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "automation/scripted_server.h"
#include "automation/shell.h"
#include "automation/tool_process.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;

std::string typed_envelope(const std::string& inner) {
  return "<E:Envelope xmlns:E=\"http://schemas.xmlsoap.org/soap/envelope/\" "
         "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
         "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><E:Body><r>" +
         inner + "</r></E:Body></E:Envelope>";
}

const std::string kGood = "<return><Number>4711</Number></return>";
/// One field whose text is not of its type, and one that is as it should be.
const std::string kBad =
    "<return><Count xsi:type=\"xsd:int\">many</Count><Number>4711</Number></return>";

Tool::Outcome printed(const std::string& form, const std::string& reply) {
  ScriptedServer server;
  server.reply(reply);
  return Shell().run(
      "bvconn call BVInvoiceConnector.GetInvoice strInvoiceUID=U1 --session S "
      "--server " +
      server.url() + " --output " + form);
}

TEST(Output, AsATreeIsForPeople) {
  EXPECT_EQ(printed("tree", reply_envelope(kGood)).out, "return\n  Number = 4711\n");
}

TEST(Output, AsATreeHasDatesAsPeopleReadThem) {
  EXPECT_EQ(printed("tree", typed_envelope(
                                "<return xsi:type=\"xsd:dateTime\">2024-04-04T00:00:00</return>"))
                .out,
            "return = 2024-04-04T00:00:00\n");
}

TEST(Output, AsJsonIsTheFormOfABatch) {
  EXPECT_EQ(printed("json", reply_envelope("<return>4711</return>")).out,
            "{\"id\":null,\"result\":{\"node\":{\"name\":\"return\",\"value\":\"4711\","
            "\"nodes\":[]}}}\n");
}

TEST(Output, AsXmlIsTheNode) {
  EXPECT_EQ(printed("xml", reply_envelope(kGood)).out, kGood + "\n");
}

TEST(Output, RawIsTheReplyByteForByte) {
  const std::string reply = " " + reply_envelope(kGood) + "\n\n";
  const auto outcome = printed("raw", reply);
  EXPECT_EQ(outcome.out, reply);
  EXPECT_EQ(outcome.status, 0);
}

TEST(Output, RawIsWholeWhateverTheRecordKeeps) {
  const std::string reply = reply_envelope("<return>" + std::string(200000, 'x') + "</return>");
  EXPECT_EQ(printed("raw", reply).out, reply);
}

TEST(Output, RawShowsWhatCameInsteadOfAnAnswer) {
  const std::string fault = fault_envelope("4711", "no");
  const auto outcome = printed("raw", fault);
  EXPECT_EQ(outcome.out, fault);
  EXPECT_EQ(outcome.status, 4);
  ScriptedServer server;
  server.reply_with("HTTP/1.1 404 Not Found\r\nContent-Type: text/plain\r\n", "no such page");
  EXPECT_EQ(Shell()
                .run("bvconn call BVInvoiceConnector.GetInvoice strInvoiceUID=U1 --session S "
                     "--output raw --server " +
                     server.url())
                .out,
            "no such page");
}

TEST(Output, RawSaysThatItHasTheBeginningOfALargePage) {
  ScriptedServer server;
  server.reply_with("HTTP/1.1 404 Not Found\r\nContent-Type: text/plain\r\n",
                    std::string(100'000, 'x'));
  const auto outcome = Shell().run(
      "bvconn call BVInvoiceConnector.GetInvoice strInvoiceUID=U1 --session S --output raw "
      "--server " +
      server.url());
  EXPECT_EQ(outcome.out, std::string(65'536, 'x'));
  EXPECT_THAT(outcome.err,
              HasSubstr("bvconn: the page is longer: these are its first 65536 bytes\n"));
}

TEST(Output, RawOfTheLayerIsTheServiceObjectsText) {
  ScriptedServer server;
  server.reply("token");
  server.reply("");
  server.reply(reply_envelope(kGood));
  EXPECT_EQ(Shell()
                .run("bvconn call BVOrderConnector.getSAPOrderView aServerURL=u aSessionID=S "
                     "aOrderGID=G aIncludePrice=true --output raw --dal " +
                     server.url())
                .out,
            reply_envelope(kGood));
}

TEST(Output, OfAnotherNameIsNotUnderstood) {
  const auto outcome = printed("jsn", reply_envelope(kGood));
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err,
            "bvconn: --output: tree, json, xml or raw is expected, not jsn; did you mean json?\n");
}

TEST(Output, JsonIsAskedForOnce) {
  EXPECT_EQ(Shell().run("bvconn call BVMethods.Beat --json --output tree").status, 2);
}

TEST(Unreadable, IsSaidInATreeAndTheRestIsPrinted) {
  const auto outcome = printed("tree", typed_envelope(kBad));
  EXPECT_THAT(outcome.out, HasSubstr("  Count = many (unreadable: "));
  EXPECT_THAT(outcome.out, HasSubstr("  Number = 4711\n"));
  EXPECT_EQ(outcome.status, 0);
}

TEST(Unreadable, IsSaidInJsonAndTheRestIsPrinted) {
  const auto outcome = printed("json", typed_envelope(kBad));
  const auto nodes = nlohmann::json::parse(outcome.out)["result"]["node"]["nodes"];
  EXPECT_EQ(nodes[0]["value"], "many");
  EXPECT_TRUE(nodes[0].contains("unreadable"));
  EXPECT_EQ(nodes[1]["value"], "4711");
  EXPECT_EQ(outcome.status, 0);
}

TEST(Unreadable, StandsInXmlAsItCame) {
  const auto outcome = printed("xml", typed_envelope(kBad));
  EXPECT_THAT(outcome.out, HasSubstr(">many</Count><Number>4711</Number></return>"));
  EXPECT_THAT(outcome.err, HasSubstr("bvconn: unreadable: Count = many ("));
  EXPECT_EQ(outcome.status, 0);
}

TEST(Unreadable, StandsInTheRawReplyAsItCame) {
  const auto outcome = printed("raw", typed_envelope(kBad));
  EXPECT_EQ(outcome.out, typed_envelope(kBad));
  EXPECT_THAT(outcome.err, HasSubstr("bvconn: unreadable: Count = many ("));
  EXPECT_EQ(outcome.status, 0);
}

TEST(OutputThatCannotBeWritten, IsSaidInALine) {
  for (const std::string command :
       {"list", "describe BVInvoiceConnector.GetInvoice", "completion bash", "--help"}) {
    const auto outcome = Shell().run("bvconn " + command + " > /dev/full");
    EXPECT_EQ(outcome.status, 1) << command;
    EXPECT_EQ(outcome.err, "bvconn: the output cannot be written: No space left on device\n")
        << command;
  }
}

TEST(OutputThatCannotBeWritten, IsAClosedPipeToo) {
  const auto outcome = Shell().run("bvconn list --json | true; echo \"${PIPESTATUS[0]}\"");
  EXPECT_EQ(outcome.out, "1\n");
  EXPECT_EQ(outcome.err, "bvconn: the output cannot be written: Broken pipe\n");
}

TEST(OutputThatCannotBeWritten, EndsABatch) {
  const auto outcome =
      Shell().run("yes '{\"get\":\"BVMethods.Beat\"}' 2>&- | bvconn batch > /dev/full");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "bvconn: the output cannot be written: No space left on device\n");
}

TEST(OutputThatCannotBeWritten, IsSaidOfAnAnswerThatComesInParts) {
  std::string rows;
  for (int i = 0; i < 5000; ++i) rows += "<Row><Name>Bolt " + std::to_string(i) + "</Name></Row>";
  const std::string call = "bvconn call --json BVInvoiceConnector.GetInvoice strInvoiceUID=U1";
  for (const auto& [place, reason] : {std::pair(" > /dev/full", "No space left on device"),
                                      std::pair(" | head -c 70000 > /dev/null", "Broken pipe")}) {
    ScriptedServer server;
    server.reply(reply_envelope("<return>" + rows + "</return>"));
    const auto outcome = Shell().run(call + " --session S --server " + server.url() + place +
                                     "; echo \"${PIPESTATUS[0]}\"");
    EXPECT_EQ(outcome.out, "1\n");
    EXPECT_EQ(outcome.err, std::string("bvconn: the output cannot be written: ") + reason + "\n");
  }
}

TEST(OutputThatCannotBeWritten, NeverGoesIntoTheConnectionWhereItIsClosed) {
  for (const std::string closed : {">&-", "2>&- >&-"}) {
    ScriptedServer server;
    server.reply(reply_envelope(kGood));
    const auto outcome = Shell().run(
        "bvconn call BVInvoiceConnector.GetInvoice strInvoiceUID=U1 --session S --server " +
        server.url() + " " + closed);
    EXPECT_EQ(outcome.status, 1) << closed;
    EXPECT_EQ(server.requests().size(), 1U) << closed;
  }
  EXPECT_EQ(Shell().run("bvconn call BVMethods.Beat >&-").status, 2);
  EXPECT_EQ(Shell().run("bvconn list >&-").err,
            "bvconn: the output cannot be written: Bad file descriptor\n");
}

TEST(CommandLineSlips, SayWhatIsMissing) {
  const std::string more = "Run with --help for more information.\n";
  EXPECT_EQ(Shell().run("bvconn").err, "bvconn: A subcommand is required\n" + more);
  EXPECT_EQ(Shell().run("bvconn call").err, "bvconn: call: OPERATION is required\n" + more);
  EXPECT_EQ(Shell().run("bvconn settings get").err,
            "bvconn: settings get: NAME is required\n" + more);
}

TEST(CommandLineSlips, SuggestTheNearestSubcommand) {
  const auto outcome = Shell().run("bvconn descrbe BVInvoiceConnector");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err,
            "bvconn: there is no subcommand descrbe; did you mean describe?\n"
            "Run with --help for more information.\n");
}

TEST(CommandLineSlips, SuggestTheNearestOption) {
  const auto outcome = Shell().run("bvconn call BVMethods.Beat --sesion=S");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err,
            "bvconn: call: there is no option --sesion; did you mean --session?\n"
            "Run with --help for more information.\n");
}

}  // namespace
}  // namespace bvconn::test

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "automation/scripted_server.h"
#include "automation/tool_process.h"

namespace bvconn::test {
namespace {

using nlohmann::ordered_json;
using testing::ElementsAre;
using testing::HasSubstr;

using Lines = std::vector<std::string>;

std::string get_invoice(const std::string& url, const std::string& id = "1") {
  return R"({"id":)" + id + R"(,"call":"BVInvoiceConnector.GetInvoice","args":{"aServerURL":")" +
         url + R"(","aSessionID":"S","strInvoiceUID":"U1"}})";
}

std::string generic_send(const std::string& target, const std::string& url,
                         const std::string& id = "3") {
  return R"({"id":)" + id + R"(,"call":")" + target +
         R"(","args":{"aService":"urn:Postal","aMethod":"getCountries","aRootNodeName":"root",)"
         R"("aSoapNode":{"xml":"<in><a>1</a></in>"},"aServerURL":")" +
         url + R"("}})";
}

/// The one answer to one request, which was understood.
std::string answer(const std::string& request) {
  const Tool::Outcome outcome = Tool::batch({request});
  EXPECT_EQ(outcome.status, 0) << outcome.out << outcome.err;
  EXPECT_EQ(outcome.lines().size(), 1U) << outcome.out;
  return outcome.lines().empty() ? "" : outcome.lines().front();
}

/// The usage text that one request is answered with, and with status 2.
std::string usage(const std::string& request) {
  const Tool::Outcome outcome = Tool::batch({request});
  EXPECT_EQ(outcome.status, 2) << request;
  if (outcome.lines().size() != 1) return outcome.out;
  const auto json = ordered_json::parse(outcome.lines().front());
  return json.contains("usage") && json.size() == 2 ? json["usage"].get<std::string>()
                                                    : outcome.lines().front();
}

TEST(Batch, ACallAnswersWithTheNode) {
  ScriptedServer server;
  server.reply(reply_envelope("<return><InvoiceNumber>4711</InvoiceNumber></return>"));
  EXPECT_EQ(answer(get_invoice(server.url())),
            R"({"id":1,"result":{"node":{"name":"return","value":null,"nodes":[)"
            R"({"name":"InvoiceNumber","value":"4711","nodes":[]}]}}})");
  ASSERT_EQ(server.requests().size(), 1U);
  EXPECT_THAT(server.requests()[0].body, HasSubstr(">U1</param>"));
  EXPECT_THAT(server.requests()[0].body, HasSubstr(">S</userID>"));
}

TEST(Batch, AFaultIsAnAnswer) {
  ScriptedServer server;
  server.reply(fault_envelope("4711", "No such invoice"));
  EXPECT_EQ(answer(get_invoice(server.url())),
            R"({"id":1,"error":{"number":-2147204607,"hex":"0x80044201","source":"SoapEnvelope",)"
            R"("description":"No such invoice","helpFile":"","helpContext":0}})");
}

/// A line with an `id` that makes it nest this deep.
std::string nested_line(std::size_t depth) {
  return R"({"id":)" + std::string(depth - 1, '[') + std::string(depth - 1, ']') +
         R"(,"get":"BVMethods.Beat"})";
}

TEST(Batch, ALineMayNest500Deep) {
  EXPECT_THAT(answer(nested_line(500)), HasSubstr(R"("result":"beat")"));
  EXPECT_THAT(answer(R"({"id":")" + std::string(501, '[') + R"(","get":"BVMethods.Beat"})"),
              HasSubstr(R"("result":"beat")"))
      << "brackets in a text nest nothing";
}

TEST(Batch, ADeeperLineIsNotUnderstoodAndTheNextOneIsAnswered) {
  for (const std::size_t depth : {std::size_t{501}, std::size_t{80000}}) {
    const Tool::Outcome outcome =
        Tool::batch({nested_line(depth), R"({"id":2,"get":"BVMethods.Beat"})"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.lines(),
                ElementsAre(R"({"id":null,"usage":"the JSON nests deeper than 500"})",
                            R"({"id":2,"result":"beat"})"));
  }
}

TEST(Batch, AFolderAsInputIsNotUnderstood) {
  const TemporaryFolder folder;
  const std::string errors = folder / "errors";
  const std::string command =
      "'" BVCONN_TOOL "' batch < '" + folder.path().string() + "' 2> '" + errors + "'";
  const int ended = std::system(command.c_str());
  ASSERT_TRUE(WIFEXITED(ended));
  EXPECT_EQ(WEXITSTATUS(ended), 2);
  EXPECT_EQ(read_text(errors), "bvconn: standard input is a folder\n");
}

constexpr const char* kBadLeaf =
    R"(<n xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\")"
    R"( xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><a xsi:type=\"xsd:int\">x</a></n>)";

/// A call with a node argument that does not fit its type.
ordered_json answer_with_bad_argument(const std::string& url) {
  return ordered_json::parse(
      answer(R"({"id":1,"call":"BVGenericConnector.Send","args":{"aService":"urn:P","aMethod":"m",)"
             R"("aRootNodeName":"root","aSoapNode":{"xml":")" +
             std::string(kBadLeaf) + R"("},"aServerURL":")" + url + R"("}})"));
}

TEST(Batch, AnArgumentThatDoesNotFitItsTypeCostsNoAnswer) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>done</return>"));
  server.reply(fault_envelope("4711", "No"));
  struct Case {
    std::string url, member, shown;
  };
  for (const Case& each : {Case{server.url(), "result", "done"}, Case{server.url(), "error", "No"},
                           Case{dead_url(), "error", "0x80044301"}}) {
    const auto json = answer_with_bad_argument(each.url);
    EXPECT_THAT(json.value(each.member, ordered_json()).dump(), HasSubstr(each.shown));
    const auto& leaf = json["args"]["aSoapNode"]["node"]["nodes"][0];
    EXPECT_EQ(leaf["value"], "x");
    EXPECT_TRUE(leaf.contains("unreadable"));
  }
}

TEST(Batch, AMappedFaultHasItsOwnNumberAndSource) {
  ScriptedServer server;
  server.reply(fault_envelope("10041", "Not allowed"));
  EXPECT_EQ(answer(get_invoice(server.url())),
            R"({"id":1,"error":{"number":-2147211463,"hex":"0x80042739",)"
            R"("source":"BVInvoiceConnector","description":"","helpFile":"","helpContext":0}})");
}

TEST(Batch, AServerThatIsNotThereIsAnAnswer) {
  const auto json = ordered_json::parse(answer(get_invoice(dead_url())));
  EXPECT_EQ(json["error"]["hex"], "0x80044301");
  EXPECT_EQ(json["error"]["source"], "HTTPTransport");
}

TEST(Batch, AnObjectLivesUntilItIsReleased) {
  ScriptedServer server;
  server.reply(fault_envelope("Server", "Broken"));
  const Tool::Outcome outcome = Tool::batch({
      R"({"id":2,"new":"BVGenericConnector","as":"g"})",
      R"({"id":"before","get":"g.SoapEnvelope"})",
      generic_send("g.Send", server.url()),
      R"({"id":4,"get":"g.SoapEnvelope"})",
      R"({"id":7,"release":"g"})",
      R"({"id":8,"get":"g.SoapEnvelope"})",
  });
  const Lines lines = outcome.lines();
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(lines[0], R"({"id":2,"result":null})");
  EXPECT_EQ(lines[1], R"({"id":"before","result":null})");
  EXPECT_EQ(lines[2],
            R"({"id":3,"error":{"number":-2147204607,"hex":"0x80044201","source":"SoapEnvelope",)"
            R"("description":"Broken","helpFile":"","helpContext":0},)"
            R"("args":{"aSoapNode":{"node":{"name":"in","value":null,"nodes":[)"
            R"({"name":"a","value":"1","nodes":[]}]}}}})");
  const auto envelope = ordered_json::parse(lines[3])["result"]["envelope"];
  EXPECT_EQ(envelope["method"], "Fault");
  EXPECT_EQ(envelope["headers"], ordered_json::array());
  EXPECT_EQ(envelope["parameters"][0]["name"], "faultcode");
  EXPECT_EQ(envelope["parameters"][0]["value"], "Server");
  EXPECT_EQ(envelope["parameters"][1]["name"], "faultstring");
  EXPECT_EQ(envelope["parameters"][1]["value"], "Broken");
  EXPECT_EQ(lines[4], R"({"id":7,"result":null})");
  EXPECT_EQ(lines[5], R"({"id":8,"usage":"g.SoapEnvelope: there is no object or class g"})");
  EXPECT_EQ(outcome.status, 2);
}

TEST(Batch, ANodeArgumentComesBackInTheAnswer) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>text</return>"));
  EXPECT_EQ(answer(generic_send("BVGenericConnector.Send", server.url())),
            R"({"id":3,"result":{"node":{"name":"return","value":"text","nodes":[]}},)"
            R"("args":{"aSoapNode":{"node":{"name":"in","value":null,"nodes":[)"
            R"({"name":"a","value":"1","nodes":[]}]}}}})");
}

TEST(Batch, OmittedOptionalArgumentsAreLeftOutOfTheCall) {
  ScriptedServer server;
  server.reply(reply_envelope("<return/>"));
  server.reply(reply_envelope("<return/>"));
  std::string with_session = generic_send("BVGenericConnector.Send", server.url());
  with_session.replace(with_session.find(R"("aService":)"), 0,
                       R"("aSessionID":"","aTimeout":9000,)");
  const Tool::Outcome outcome =
      Tool::batch({generic_send("BVGenericConnector.Send", server.url()), with_session});
  EXPECT_EQ(outcome.status, 0);
  ASSERT_EQ(server.requests().size(), 2U);
  EXPECT_EQ(server.requests()[0].body.find("userID"), std::string::npos);
  EXPECT_NE(server.requests()[1].body.find("userID"), std::string::npos);
}

TEST(Batch, AnEmptyReferenceGoesAsNil) {
  ScriptedServer server;
  server.reply(reply_envelope("<return/>"));
  std::string request = generic_send("BVGenericConnector.Send", server.url());
  const std::string node = R"({"xml":"<in><a>1</a></in>"})";
  request.replace(request.find(node), node.size(), "null");
  EXPECT_THAT(answer(request), HasSubstr(R"("args":{"aSoapNode":null})"));
  EXPECT_THAT(server.requests().at(0).body, HasSubstr(R"(xsi:nil="true")"));
}

/// The body of the one request that a call with these arguments sends, which is answered with an
/// empty node.
std::string body_of(const std::string& operation, const std::string& arguments) {
  ScriptedServer server;
  server.reply(reply_envelope("<return/>"));
  const Tool::Outcome outcome =
      Tool::batch({R"({"id":1,"call":")" + operation + R"(","args":{"aServerURL":")" +
                   server.url() + R"(","aSessionID":"S",)" + arguments + "}}"});
  EXPECT_EQ(outcome.status, 0) << outcome.out;
  const auto requests = server.requests();
  EXPECT_EQ(requests.size(), 1U) << outcome.out;
  return requests.empty() ? "" : requests.front().body;
}

TEST(Batch, A16BitIntegerReachesTheWireAsOne) {
  EXPECT_THAT(body_of("BVInvoiceConnector.GetCommissionRange", R"("aListCount":32767)"),
              HasSubstr(R"(<param xsi:type="xsd:short">32767</param>)"));
}

TEST(Batch, AVariantReachesTheWireWithItsType) {
  const auto body = [](const std::string& variant) {
    return body_of("BVInvoiceConnector.AutoReconcileMultiple",
                   R"("aAgentID":"A","strUIDs":)" + variant);
  };
  EXPECT_THAT(body("\"t\""), HasSubstr(R"(<param xsi:type="xsd:string">t</param>)"));
  EXPECT_THAT(body("7"), HasSubstr(R"(<param xsi:type="xsd:int">7</param>)"));
  EXPECT_THAT(body("2.5"), HasSubstr(R"(<param xsi:type="xsd:double">2.5</param>)"));
  EXPECT_THAT(body("true"), HasSubstr(R"(<param xsi:type="xsd:boolean">true</param>)"));
  EXPECT_THAT(body(R"({"date":"2007-01-05T00:00:00"})"),
              HasSubstr(R"(<param xsi:type="xsd:dateTime">2007-01-05T00:00:00</param>)"));
  EXPECT_THAT(body(R"(["x","y"])"), HasSubstr(R"(SOAP-ENC:arrayType="xsd:string[2]")"));
  EXPECT_THAT(body("null"), HasSubstr(R"(<param xsi:nil="true")"));
  EXPECT_THAT(body(R"({"xml":"<in><a>1</a></in>"})"), HasSubstr("<a>1</a>"));
}

TEST(Batch, AnOptionalVariantIsMissingWhenLeftOut) {
  const auto count = [](const std::string& body) {
    std::size_t found = 0;
    for (std::size_t at = 0; (at = body.find("<param", at)) != std::string::npos; ++at) ++found;
    return found;
  };
  const std::string operation = "BVInvoiceConnector.GetNewReconicle";
  EXPECT_EQ(count(body_of(operation, R"("aAgentID":"A")")), 1U);
  EXPECT_EQ(count(body_of(operation, R"("aAgentID":"A","strUIDs":{"missing":true})")), 1U);
  EXPECT_EQ(count(body_of(operation, R"("aAgentID":"A","strUIDs":"U")")), 2U);
}

TEST(Batch, FieldsOfAnAggregateAreArguments) {
  const std::string body =
      body_of("BVInvoiceConnector.InvoiceSearch", R"("strPONumber":"PO9","strInvoiceNumber":"I4")");
  const std::size_t invoice = body.find(">I4</param>");
  const std::size_t order = body.find(">PO9</param>");
  ASSERT_NE(invoice, std::string::npos);
  ASSERT_NE(order, std::string::npos);
  EXPECT_LT(invoice, order);
}

TEST(Batch, ADocumentComesBackFilled) {
  const auto pilfer = [](const std::string& document, bool answered) {
    ScriptedServer server;
    if (answered)
      server.reply(reply_envelope("<return><n:Doc xmlns:n=\"urn:n\" a=\"1\"/></return>"));
    return ordered_json::parse(
        answer(R"({"id":1,"call":"BVSalesInstrumentConnector.pilferSalesInstrument","args":{)"
               R"("SIGID":"G","SIType":"Project","aServerURL":")" +
               server.url() + R"(","aSessionID":"S","doc":)" + document + "}}"));
  };
  const auto filled = pilfer(R"({"document":true})", true);
  EXPECT_TRUE(filled["result"].is_null());
  EXPECT_THAT(filled["document"].get<std::string>(),
              HasSubstr(R"(<n:Doc xmlns:n="urn:n" a="1"/>)"));
  const auto failed = pilfer(R"({"document":true})", false);
  EXPECT_TRUE(failed.contains("error"));
  EXPECT_EQ(failed["document"], "");
}

TEST(Batch, ANodeArgumentComesBackAsTheOperationLeftIt) {
  ScriptedServer server;
  server.reply(reply_envelope("<return/>"));
  const auto json = ordered_json::parse(
      answer(R"({"id":1,"call":"BVSalesInstrumentConnector.UpdateCommSalesPeople","args":{)"
             R"("aGID":"G","aNode":{"xml":"<before><a>1</a></before>"},"aServerURL":")" +
             server.url() + R"(","aSessionID":"S"}})"));
  EXPECT_EQ(json["args"]["aNode"]["node"]["name"], "CommissionableSalesPeople");
  EXPECT_EQ(json["args"]["aNode"]["node"]["nodes"][0]["name"], "a");
}

TEST(Batch, PropertiesAreReadAndWrittenInOneSession) {
  EXPECT_THAT(Tool::batch({
                              R"({"id":5,"get":"BVConnectorObject.UsingTorvexDAL"})",
                              R"({"id":6,"set":"BVConnectorObject.UsingTorvexDAL","value":true})",
                              R"({"id":7,"get":"BVConnectorObject.UsingTorvexDAL"})",
                              R"({"id":8,"set":"BVConnectorObject.DALUrl","value":"http://dal/"})",
                              R"({"id":9,"get":"BVConnectorObject.DALUrl"})",
                              R"({"id":10,"set":"BVConnectorObject.Password","value":"p"})",
                          })
                  .lines(),
              ElementsAre(R"({"id":5,"result":false})", R"({"id":6,"result":null})",
                          R"({"id":7,"result":true})", R"({"id":8,"result":null})",
                          R"({"id":9,"result":"http://dal/"})", R"({"id":10,"result":null})"));
}

TEST(Batch, CatalogueRowsAreProperties) {
  EXPECT_THAT(
      Tool::batch({R"({"id":8,"get":"BVMethods.CheckTypeAheadFile"})",
                   R"({"id":9,"get":"BVServices.PostalService"})"})
          .lines(),
      ElementsAre(
          R"({"id":8,"result":"checkTypeAheadFileIfItDoesNotExistThenKickOffPrimeTypeAhead"})",
          R"({"id":9,"result":"urn:Postal"})"));
}

TEST(Batch, APropertyWithArgumentsIsCalled) {
  EXPECT_THAT(
      Tool::batch(
          {
              R"({"id":1,"set":"BVConnectorObject.GetDisabledDALServices","value":"urn:QuoteService.save|"})",
              R"({"id":2,"call":"BVConnectorObject.IsDALDisabled","args":{"evalMethod":"save","evalService":"urn:QuoteService"}})",
              R"({"id":3,"call":"BVConnectorObject.IsDALDisabled","args":{"evalService":"urn:QuoteService","evalMethod":"SAVE"}})",
          })
          .lines(),
      ElementsAre(R"({"id":1,"result":null})", R"({"id":2,"result":true})",
                  R"({"id":3,"result":false})"));
  EXPECT_THAT(usage(R"({"id":1,"get":"BVConnectorObject.IsDALDisabled"})"), HasSubstr("use call"));
}

TEST(Batch, TransportAndServiceObjectsReadAsObjects) {
  const Lines lines =
      Tool::batch(
          {
              R"({"id":1,"get":"BVConnectorObject.HTTPTransportObject"})",
              R"({"id":2,"get":"BVConnectorObject.QuoteService"})",
              R"({"id":3,"call":"BVConnectorObject.InitTorvexDAL","args":{"dal_server_url":")" +
                  dead_url() + R"("}})",
              R"({"id":4,"get":"BVConnectorObject.QuoteService"})",
          })
          .lines();
  EXPECT_THAT(lines, ElementsAre(R"({"id":1,"result":{"object":"HTTPTransport"}})",
                                 R"({"id":2,"result":null})", R"({"id":3,"result":null})",
                                 R"({"id":4,"result":{"object":"QuoteService"}})"));
}

TEST(Batch, TheHeartBeatEventComesBeforeTheAnswerOfItsCall) {
  EXPECT_THAT(
      Tool::batch(
          {R"({"id":12,"call":"BVHeartBeatConnector.sendHeartBeat","args":{"aServerURL":")" +
           dead_url() + R"(","aSessionID":"S"}})"})
          .lines(),
      ElementsAre(R"({"event":"BVHeartBeatConnector.HeartBeatError","id":12})",
                  R"({"id":12,"result":null})"));
}

TEST(Batch, AnObjectsEventNamesItsClass) {
  EXPECT_THAT(Tool::batch({R"({"id":1,"new":"BVHeartBeatConnector","as":"hb"})",
                           R"({"id":2,"call":"hb.UpdateHeartBeatTime"})",
                           R"({"id":3,"call":"hb.sendHeartBeat","args":{"aServerURL":")" +
                               dead_url() + R"(","aSessionID":"S","isBrimvale":true}})"})
                  .lines(),
              ElementsAre(R"({"id":1,"result":null})", R"({"id":2,"result":null})",
                          R"({"id":3,"result":null})"));
}

TEST(Batch, IdsOfAnyKindComeBackUnchanged) {
  const std::string get = R"(,"get":"BVMethods.Beat"})";
  for (const std::string id :
       {"1", "\"a b\"", "null", "true", "-1.50", "12345678901234567890123456789", "1E2", "[1,2]",
        R"({"a":{"b":"}"}})", "\"\\u00e9\""}) {
    EXPECT_EQ(answer(R"({"id":)" + id + get), R"({"id":)" + id + R"(,"result":"beat"})");
  }
  EXPECT_EQ(answer(R"({"get":"BVMethods.Beat"})"), R"({"id":null,"result":"beat"})");
  EXPECT_EQ(answer(R"({"get":"BVMethods.Beat","id":4})"), R"({"id":4,"result":"beat"})");
}

TEST(Batch, EachAnswerIsThereBeforeTheNextRequest) {
  Tool tool({"batch"});
  tool.send("{\"id\":1,\"get\":\"BVMethods.Beat\"}\n");
  EXPECT_EQ(tool.read_line(), R"({"id":1,"result":"beat"})");
  tool.send("{\"id\":2,\"get\":\"BVMethods.Find\"}\n");
  EXPECT_EQ(tool.read_line(), R"({"id":2,"result":"find"})");
  EXPECT_EQ(tool.finish().status, 0);
}

TEST(Batch, TheLastLineNeedsNoLineEndAndBlankLinesAreNoRequests) {
  const Tool::Outcome outcome = Tool::run({"batch"},
                                          "\n  \r\n{\"id\":1,\"get\":\"BVMethods.Beat\"}\r\n\n"
                                          "{\"id\":2,\"get\":\"BVMethods.Find\"}");
  EXPECT_THAT(outcome.lines(),
              ElementsAre(R"({"id":1,"result":"beat"})", R"({"id":2,"result":"find"})"));
  EXPECT_EQ(outcome.status, 0);
}

TEST(Batch, NoInputIsDone) {
  const Tool::Outcome outcome = Tool::run({"batch"});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST(Batch, WhatFollowsALineThatWasNotUnderstoodIsAnswered) {
  const Tool::Outcome outcome =
      Tool::batch({R"({"id":1,"get":)", R"({"id":2,"get":"BVMethods.Beat"})"});
  ASSERT_EQ(outcome.lines().size(), 2U);
  EXPECT_THAT(outcome.lines()[0], testing::StartsWith(R"({"id":null,"usage":"not JSON: )"));
  EXPECT_EQ(outcome.lines()[1], R"({"id":2,"result":"beat"})");
  EXPECT_EQ(outcome.status, 2);
}

TEST(Batch, ARequiredArgumentThatIsNotThereIsAUsageAnswer) {
  ScriptedServer server;
  const Tool::Outcome outcome =
      Tool::batch({R"({"id":5,"call":"BVInvoiceConnector.GetInvoice","args":{"aServerURL":")" +
                   server.url() + R"(","aSessionID":"S"}})"});
  EXPECT_THAT(
      outcome.lines(),
      ElementsAre(
          R"({"id":5,"usage":"BVInvoiceConnector.GetInvoice: argument strInvoiceUID is required"})"));
  EXPECT_EQ(outcome.status, 2);
  EXPECT_TRUE(server.requests().empty());
}

TEST(Batch, ANameThatDoesNotExistIsAUsageAnswer) {
  EXPECT_EQ(usage(R"({"id":1,"call":"BVInvoiceConnector.GetInvoice","args":{"aServerURL":"u",)"
                  R"("aSessionID":"S","strInvoiceUID":"U","aserverurl":"v"}})"),
            "BVInvoiceConnector.GetInvoice: there is no argument aserverurl; "
            "did you mean aServerURL?");
  EXPECT_EQ(usage(R"({"id":1,"call":"BVInvoiceConnector.getInvoice"})"),
            "BVInvoiceConnector.getInvoice: BVInvoiceConnector has no such member; "
            "did you mean GetInvoice?");
  EXPECT_EQ(usage(R"({"id":1,"call":"BVNoConnector.Send"})"),
            "BVNoConnector.Send: there is no object or class BVNoConnector");
  EXPECT_EQ(usage(R"({"id":1,"get":"BVMethods.beat"})"),
            "BVMethods.beat: BVMethods has no such member; did you mean Beat?");
  EXPECT_EQ(usage(R"({"id":1,"call":"Send"})"), "Send: OBJECT.MEMBER is expected");
  EXPECT_EQ(usage(R"({"id":1,"new":"BVNoConnector","as":"g"})"),
            "BVNoConnector: there is no such class");
  EXPECT_EQ(usage(R"({"id":1,"release":"g"})"), "g: there is no such object");
}

TEST(Batch, AnArgumentOfAnotherTypeIsAUsageAnswer) {
  const auto send_with = [](const std::string& node, const std::string& timeout) {
    return R"({"id":1,"call":"BVGenericConnector.Send","args":{"aService":"s","aMethod":"m",)"
           R"("aRootNodeName":"r","aServerURL":"http://127.0.0.1:9/","aSoapNode":)" +
           node + R"(,"aTimeout":)" + timeout + "}}";
  };
  const std::string range =
      "BVGenericConnector.Send: argument aTimeout: a whole number from -2147483648 to 2147483647 "
      "is expected";
  EXPECT_EQ(usage(send_with("null", "2147483648")), range);
  EXPECT_EQ(usage(send_with("null", "1.5")), range);
  EXPECT_EQ(usage(send_with("null", "\"5\"")), range);
  EXPECT_EQ(usage(send_with("null", "99999999999999999999999")), range);
  EXPECT_THAT(usage(send_with("null", "1e999")), HasSubstr("not JSON"));
  EXPECT_THAT(usage(send_with(R"({"xml":"<a>"})", "1")),
              HasSubstr("BVGenericConnector.Send: argument aSoapNode: XML is expected"));
  EXPECT_EQ(usage(send_with("\"<a/>\"", "1")),
            R"(BVGenericConnector.Send: argument aSoapNode: {"xml":"…"} or null is expected)");
}

TEST(Batch, ALineThatIsNoRequestIsAUsageAnswer) {
  EXPECT_EQ(usage("[]"), "a JSON object is expected");
  EXPECT_EQ(usage("17"), "a JSON object is expected");
  EXPECT_EQ(usage(R"({"id":1})"), "call, new, get, set or release is required");
  EXPECT_EQ(usage(R"({"id":1,"get":"BVMethods.Beat","set":"x.y"})"), "a line holds one request");
  EXPECT_EQ(usage(R"({"id":1,"get":"BVMethods.Beat","args":{}})"), "get does not take args");
  EXPECT_EQ(usage(R"({"id":1,"get":5})"), "get: a string is expected");
  EXPECT_EQ(usage(R"({"id":1,"new":"BVGenericConnector"})"), "as is required");
  EXPECT_EQ(usage(R"({"id":1,"set":"BVConnectorObject.DALUrl"})"),
            "BVConnectorObject.DALUrl: value is required");
  EXPECT_EQ(usage(R"({"id":1,"call":"BVHeartBeatConnector.UpdateHeartBeatTime","args":[]})"),
            "BVHeartBeatConnector.UpdateHeartBeatTime: args: an object is expected");
  EXPECT_THAT(usage(R"({"id":1,"id":2,"get":"BVMethods.Beat"})"), HasSubstr("stands twice"));
}

TEST(Batch, AUsageAnswerKeepsTheId) {
  EXPECT_THAT(Tool::batch({R"({"id":"x","get":"No.Thing"})"}).lines(),
              ElementsAre(R"({"id":"x","usage":"No.Thing: there is no object or class No"})"));
}

TEST(Batch, BytesThatAreNotUtf8AreNotUnderstood) {
  EXPECT_THAT(usage("{\"id\":1,\"get\":\"BVMethods.B\xFF\"}"), HasSubstr("not JSON"));
}

TEST(Batch, AMemberIsUsedAsWhatItIs) {
  EXPECT_THAT(usage(R"({"id":1,"get":"BVConnectorObject.Password"})"), HasSubstr("cannot be read"));
  EXPECT_THAT(usage(R"({"id":1,"set":"BVMethods.Beat","value":"x"})"),
              HasSubstr("cannot be written"));
  EXPECT_THAT(usage(R"({"id":1,"set":"BVConnectorObject.UseDALSave","value":"yes"})"),
              HasSubstr("true or false is expected"));
  EXPECT_THAT(usage(R"({"id":1,"call":"BVMethods.Beat"})"), HasSubstr("is not called"));
  EXPECT_THAT(usage(R"({"id":1,"get":"BVConnectorObject.UseTorvexDAL"})"), HasSubstr("use call"));
  EXPECT_THAT(usage(R"({"id":1,"get":"BVHeartBeatConnector.HeartBeatError"})"), HasSubstr("event"));
  EXPECT_THAT(usage(R"({"id":1,"call":"BVHeartBeatConnector.HeartBeatError"})"),
              HasSubstr("event"));
  EXPECT_THAT(usage(R"({"id":1,"get":"BVGenericConnector.SoapEnvelope"})"), HasSubstr("new"));
}

TEST(Batch, ANameIsGivenToOneObjectAtATime) {
  const std::string make = R"({"id":1,"new":"BVGenericConnector","as":"g"})";
  const Tool::Outcome outcome =
      Tool::batch({make, make, R"({"id":2,"release":"g"})", make,
                   R"({"id":3,"new":"BVGenericConnector","as":"BVMethods"})"});
  ASSERT_EQ(outcome.lines().size(), 5U);
  EXPECT_EQ(outcome.lines()[1],
            R"({"id":1,"usage":"g: there is an object with this name already"})");
  EXPECT_EQ(outcome.lines()[3], R"({"id":1,"result":null})");
  EXPECT_EQ(outcome.lines()[4], R"({"id":3,"usage":"BVMethods: the name of a class"})");
  EXPECT_EQ(outcome.status, 2);
}

TEST(Batch, ADeepReplyIsAnswered) {
  ScriptedServer server;
  std::string inner;
  for (int i = 0; i < 5000; ++i) inner += "<n>";
  for (int i = 0; i < 5000; ++i) inner += "</n>";
  server.reply(reply_envelope(inner));
  const std::string text = answer(get_invoice(server.url()));
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(R"({"name":"n")", at)) != std::string::npos; ++at) {
    ++count;
  }
  EXPECT_EQ(count, 5000U);
}

TEST(Batch, ValuesHaveTheTypesOfTheReply) {
  ScriptedServer server;
  server.reply(
      R"(<E:Envelope xmlns:E="http://schemas.xmlsoap.org/soap/envelope/" )"
      R"(xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" )"
      R"(xmlns:xsd="http://www.w3.org/2001/XMLSchema"><E:Body><r><return>)"
      R"(<i xsi:type="xsd:int">5</i><b xsi:type="xsd:boolean">true</b>)"
      R"(<d xsi:type="xsd:double">2.5</d><t xsi:type="xsd:dateTime">2007-01-05T00:00:00</t>)"
      R"(<n xsi:nil="true"/><q xmlns="urn:q">x</q></return></r></E:Body></E:Envelope>)");
  EXPECT_EQ(answer(get_invoice(server.url())),
            R"({"id":1,"result":{"node":{"name":"return","value":null,"nodes":[)"
            R"({"name":"i","value":5,"nodes":[]},{"name":"b","value":true,"nodes":[]},)"
            R"({"name":"d","value":2.5,"nodes":[]},)"
            R"({"name":"t","value":{"date":"2007-01-05T00:00:00"},"nodes":[]},)"
            R"({"name":"n","value":null,"nodes":[],"nil":true},)"
            R"({"name":"q","value":"x","nodes":[],"namespace":"urn:q"}]}}})");
}

TEST(Batch, AMaskThatIsNoNumberIsNotUnderstood) {
  const Tool::Outcome outcome =
      Tool::batch({R"({"id":1,"get":"BVMethods.Beat"})"}, {"--mask", "x"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
}

TEST(Batch, TheMaskIsTheLoggers) {
  Tool tool({"batch", "--mask", "0x9"});
  tool.send(
      "{\"id\":1,\"call\":\"BVHeartBeatConnector.sendHeartBeat\",\"args\":{\"aServerURL\":\"" +
      dead_url() + "\",\"aSessionID\":\"S\"}}\n");
  EXPECT_EQ(tool.finish().status, 0);
  EXPECT_THAT(read_text(tool.folder / "bvconn/bvconn.log"),
              HasSubstr("BVHeartBeatConnector sendHeartBeat() Entering Method..."));
}

}  // namespace
}  // namespace bvconn::test

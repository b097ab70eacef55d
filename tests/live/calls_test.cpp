#include <gtest/gtest.h>

#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/variant.h"
#include "own_files.h"
#include "support/error_of.h"
#include "support/misbehaving_server.h"

namespace bvconn {
namespace {

namespace numbers = error_numbers;
using test::error_of;
using test::MisbehavingServer;
using test::OwnFiles;
namespace answers = test::answers;

std::string envelope(const std::string& body) {
  return "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body>" + body +
         "</e:Body></e:Envelope>";
}

const std::string kInvoice = envelope("<r><return>R</return></r>");

Error error_of_send(const std::string& url) {
  return error_of(
      [&] { BVGenericConnector().Send("urn:T", "m", "Root", SoapNode::make("n"), url, 5000); });
}

// Whatever happened, the next call on this thread and transport works.
void expect_next_call_works(MisbehavingServer& server) {
  server.answer(answers::reply(kInvoice));
  EXPECT_EQ(BVInvoiceConnector().GetInvoice(server.url("/soap"), "S", "U").Value(), Variant("R"));
}

TEST(LiveCall, AnInvoiceComesBackOverARealConnection) {
  OwnFiles files;
  MisbehavingServer server;
  server.answer(answers::reply(kInvoice));
  const SoapNode invoice = BVInvoiceConnector().GetInvoice(server.url("/soap"), "S-1", "U-2");
  EXPECT_EQ(invoice.Value(), Variant("R"));
  const std::string request = server.last_request().bytes;
  EXPECT_NE(request.find("POST /soap HTTP/1.1\r\n"), std::string::npos) << request;
  EXPECT_NE(request.find("\r\nSOAPAction: \"urn:InvoiceService\"\r\n"), std::string::npos);
  EXPECT_NE(request.find("\r\nContent-Type: text/xml; charset=utf-8\r\n"), std::string::npos);
  EXPECT_NE(request.find("<param xsi:type=\"xsd:string\">U-2</param>"), std::string::npos);
}

TEST(LiveCall, AFaultWithStatus500GivesTheServersText) {
  OwnFiles files;
  MisbehavingServer server;
  server.answer(answers::fault("server's words"));
  const Error error = error_of_send(server.url());
  EXPECT_EQ(error.number, numbers::kSoapFault);
  EXPECT_EQ(error.description, "server's words");
  expect_next_call_works(server);
}

TEST(LiveCall, ATrickyTextComesToTheServerAsItWas) {
  OwnFiles files;
  MisbehavingServer server;
  server.answer(answers::reply(kInvoice));
  const std::string text = "a&b <c> \"d\" 'e' ]]> \r\n\t \xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";
  BVInvoiceConnector().GetInvoice(server.url(), "S", text);
  const SoapEnvelope seen = SoapEnvelope::make();
  seen.Parse(server.last_request().body, "");
  EXPECT_EQ(seen.Parameters().Item(0).Value(), Variant(text));
}

TEST(LiveCall, ATextThatXmlCannotCarryFailsBeforeAnythingIsSent) {
  OwnFiles files;
  MisbehavingServer server;
  const Error error = error_of(
      [&] { BVInvoiceConnector().GetInvoice(server.url(), "S", std::string_view("a\0b", 3)); });
  EXPECT_EQ(error.number, numbers::kUnwritableText);
  EXPECT_TRUE(server.requests().empty());
  expect_next_call_works(server);
}

TEST(LiveCall, AMalformedUrlIsRefusedAndNamed) {
  OwnFiles files;
  for (const char* url : {"", "no url", "ftp://host/", "http://", "http://ho st/"}) {
    const Error error = error_of_send(url);
    EXPECT_EQ(error.number, numbers::kBadUrlOrHeader) << url;
    EXPECT_EQ(error.source, "HTTPTransport");
  }
}

TEST(LiveCall, ADeadServerIsNamedWithoutThePassword) {
  OwnFiles files;
  std::string url;
  {
    MisbehavingServer server;
    url = "http://user:secret@" + server.host() + "/soap";
  }
  const Error error = error_of_send(url);
  EXPECT_EQ(error.number, numbers::kCannotConnect);
  EXPECT_NE(error.description.find("/soap"), std::string::npos) << error.description;
  EXPECT_EQ(error.description.find("secret"), std::string::npos) << error.description;
}

TEST(LiveCall, SettingsThatAreNotTomlReachTheCallerWithTheirPlace) {
  OwnFiles files;
  files.write("machine.toml", "['Software\\Brimvale\\Torvex\\AppData']\ntracePort = = 1\n");
  MisbehavingServer server;
  const Error error = error_of_send(server.url());
  EXPECT_EQ(error.number, numbers::kSettingsNotToml);
  EXPECT_NE(error.description.find("machine.toml"), std::string::npos) << error.description;
  EXPECT_TRUE(server.requests().empty());
}

TEST(LiveCall, ALogFileWhoseFolderCannotBeMadeFailsNoCall) {
  OwnFiles files;
  files.write("file", "not a folder");
  ::setenv("BVCONN_LOG_FILE", files.path("file/sub/bvconn.log").c_str(), 1);
  ::setenv("BVCONN_LOG_MASK", "0x7F", 1);
  MisbehavingServer server;
  server.answer(answers::reply(kInvoice));
  EXPECT_EQ(BVInvoiceConnector().GetInvoice(server.url(), "S", "U").Value(), Variant("R"));
  ::unsetenv("BVCONN_LOG_MASK");
}

TEST(LiveCall, TheDefaultForTracingIsWrittenToTheUsersSettings) {
  OwnFiles files;
  MisbehavingServer server;
  server.answer(answers::reply(kInvoice));
  BVInvoiceConnector().GetInvoice(server.url(), "S", "U");
  EXPECT_NE(files.contents("user.toml").find("TraceSoapTraffic"), std::string::npos);
  EXPECT_NE(files.contents("bvconn.log").find("TraceSoapTraffic not found in registry"),
            std::string::npos)
      << "warnings are always written";
}

TEST(LiveCall, TracedTrafficGoesToTheTracingFile) {
  OwnFiles files;
  files.write("user.toml",
              "['Software\\Brimvale\\Torvex\\AppData']\nTraceSoapTraffic = \"True\"\n");
  MisbehavingServer server;
  server.answer(answers::reply(kInvoice));
  BVInvoiceConnector().GetInvoice(server.url("/soap"), "S", "U");
  const std::string traffic = files.contents("traffic.log");
  EXPECT_NE(traffic.find("POST /soap HTTP/1.1"), std::string::npos) << traffic;
  EXPECT_NE(traffic.find("<return>R</return>"), std::string::npos) << traffic;
}

TEST(LiveCall, ADeadDataAccessLayerLeavesTheSoapRoute) {
  OwnFiles files;
  std::string dead;
  {
    MisbehavingServer server;
    dead = server.url("/dal");
  }
  BVConnectorObject object;
  EXPECT_NO_THROW(object.InitTorvexDAL(dead));
  EXPECT_FALSE(object.UsingTorvexDAL());
  MisbehavingServer server;
  expect_next_call_works(server);
}

TEST(LiveCall, ThePasswordOfALoginIsInNoLog) {
  OwnFiles files;
  ::setenv("BVCONN_LOG_MASK", "0x7F", 1);
  session() = SessionState();
  MisbehavingServer server;
  BVConnectorObject object;
  object.UserName("user");
  object.Password("s3cr3t-word");
  object.InitTorvexDAL(server.url("/dal"));
  server.answer(answers::reply(kInvoice));
  BVInvoiceConnector().GetInvoice(server.url(), "S", "U");
  ::unsetenv("BVCONN_LOG_MASK");
  EXPECT_FALSE(files.contents("bvconn.log").empty());
  EXPECT_EQ(files.contents("bvconn.log").find("s3cr3t-word"), std::string::npos);
}

}  // namespace
}  // namespace bvconn

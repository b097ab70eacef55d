#include "exchange_view.h"

#include <gtest/gtest.h>

#include <string>

#include "bvconn/platform/conversions/date.h"

namespace bvconn::test {
namespace {

using tool::exchange_view;
using tool::indented_text;

TEST(IndentedText, GivesEachElementALine) {
  EXPECT_EQ(
      indented_text("<?xml version=\"1.0\"?>\n<a x=\"1\"><b>text</b><c></c><d/><e><f>g</f></e>"
                    "<!-- h --></a>",
                    2),
      "  <?xml version=\"1.0\"?>\n"
      "  <a x=\"1\">\n"
      "    <b>text</b>\n"
      "    <c></c>\n"
      "    <d/>\n"
      "    <e>\n"
      "      <f>g</f>\n"
      "    </e>\n"
      "    <!-- h -->\n"
      "  </a>\n");
}

TEST(IndentedText, TakesXmlThatIsCutAnywhere) {
  EXPECT_EQ(indented_text("<a><b>te", 0), "<a>\n  <b>\n    te\n");
  EXPECT_EQ(indented_text("<a><b x=\"", 0), "<a>\n  <b x=\"\n");
  EXPECT_EQ(indented_text("</a></a><b/>", 0), "</a>\n</a>\n<b/>\n");
}

TEST(IndentedText, OfDeepXmlStaysOfItsSize) {
  std::string deep;
  for (int i = 0; i < 20000; ++i) deep.append("<a>");
  EXPECT_LT(indented_text(deep, 4).size(), 20000U * 100);
}

TEST(IndentedText, LaysOutJson) {
  EXPECT_EQ(indented_text(R"({"a":[1,"b"]})", 2),
            "  {\n"
            "    \"a\": [\n"
            "      1,\n"
            "      \"b\"\n"
            "    ]\n"
            "  }\n");
}

TEST(IndentedText, OfAnythingElseIsItsLines) {
  EXPECT_EQ(indented_text("HTTP/1.1 200 OK\r\nServer: x\r\n\r\n", 1),
            " HTTP/1.1 200 OK\n Server: x\n");
  EXPECT_EQ(indented_text("a\n\nb", 2), "  a\n\n  b\n");
  EXPECT_EQ(indented_text("{no json", 0), "{no json\n");
  EXPECT_EQ(indented_text("", 4), "");
  const std::string deep(60000, '[');
  EXPECT_EQ(indented_text(deep, 0), deep + "\n");
}

TEST(IndentedText, LetsNoControlCharacterThrough) {
  EXPECT_EQ(indented_text("a\x1B[2Jb", 0), "a\\x1B[2Jb\n");
  EXPECT_EQ(indented_text("<a>\x1B[2J</a>", 0), "<a>\\x1B[2J</a>\n");
  EXPECT_EQ(indented_text("<a>\xFF</a>", 0), "<a>\\xFF</a>\n");
}

Exchange soap_exchange() {
  Exchange exchange;
  exchange.number = 3;
  exchange.at = from_civil({.year = 2007, .month = 1, .day = 5, .hour = 10});
  exchange.cls = "BVInvoiceConnector";
  exchange.operation = "GetInvoice";
  exchange.url = "http://server/soap";
  exchange.soap_action = "urn:InvoiceService";
  exchange.request.assign("<a><b>1</b></a>");
  exchange.http_status = 500;
  exchange.reply_headers.assign("HTTP/1.1 500 Bad\r\n");
  exchange.reply.assign("oops");
  exchange.times = {.name_us = 5, .wait_us = 12345, .total_us = 13000};
  exchange.bytes_sent = 15;
  exchange.bytes_received = 4;
  exchange.outcome = Outcome::kAnswered;
  exchange.error = ExchangeError{-2147204347, "HTTPTransport", "500 Bad"};
  exchange.raised = -2147204347;
  return exchange;
}

TEST(ExchangeView, ShowsWhatWasSentAndWhatCameBack) {
  EXPECT_EQ(exchange_view(soap_exchange()),
            "exchange 3: BVInvoiceConnector.GetInvoice by SOAP at 2007-01-05T10:00:00\n"
            "  to          http://server/soap\n"
            "  SOAPAction  \"urn:InvoiceService\"\n"
            "  outcome     answered\n"
            "  error       0x80044305 from HTTPTransport: 500 Bad\n"
            "  HTTP        500\n"
            "  times (ms)  name 0.005, wait 12.345, all 13.000\n"
            "  bytes       15 sent, 4 received\n"
            "  request (15 bytes)\n"
            "    <a>\n"
            "      <b>1</b>\n"
            "    </a>\n"
            "  reply headers (18 bytes)\n"
            "    HTTP/1.1 500 Bad\n"
            "  reply (4 bytes)\n"
            "    oops\n");
}

TEST(ExchangeView, OfTheDataAccessLayerShowsArgumentsAndResult) {
  Exchange exchange = soap_exchange();
  exchange.route = ExchangeRoute::kDal;
  exchange.soap_action.reset();
  exchange.request.clear();
  exchange.object = "SearchService";
  exchange.object_operation = "SearchForBrands";
  exchange.arguments.resize(2);
  exchange.arguments[0].type = "string";
  exchange.arguments[0].text.assign("G1");
  exchange.arguments[1].type = "empty";
  exchange.result.assign("<r/>");
  exchange.reply.clear();
  exchange.reply_headers.clear();
  exchange.times = {};
  exchange.bytes_sent = exchange.bytes_received = 0;
  exchange.http_status = 0;
  exchange.raised.reset();
  EXPECT_EQ(exchange_view(exchange),
            "exchange 3: BVInvoiceConnector.GetInvoice by the data access layer at "
            "2007-01-05T10:00:00\n"
            "  to          http://server/soap\n"
            "  calls       SearchService.SearchForBrands\n"
            "  outcome     answered\n"
            "  error       0x80044305 from HTTPTransport: 500 Bad\n"
            "  raised      nothing; the call returned\n"
            "  argument 1, string (2 bytes)\n"
            "    G1\n"
            "  argument 2, empty, empty\n"
            "  result (4 bytes)\n"
            "    <r/>\n");
}

TEST(ExchangeView, NamesTheNumberThatTheCallerWasGivenInstead) {
  Exchange exchange = soap_exchange();
  exchange.raised = -2147211463;
  EXPECT_NE(exchange_view(exchange).find("  raised      0x80042739\n"), std::string::npos);
}

TEST(ExchangeView, TellsHowMuchOfATextWasKept) {
  Exchange exchange;
  exchange.request.assign(std::string(70000, 'x'));
  EXPECT_NE(
      exchange_view(exchange).find("  request (70000 bytes, of which the first 65536)\n    xxx"),
      std::string::npos);
}

}  // namespace
}  // namespace bvconn::test

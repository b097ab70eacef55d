#include "bvconn/platform/exchange/exchange_json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "bvconn/platform/error_numbers.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;

Exchange specimen() {
  Exchange exchange;
  exchange.number = 3;
  exchange.at = from_civil({.year = 2007,
                            .month = 1,
                            .day = 5,
                            .hour = 10,
                            .minute = 11,
                            .second = 12,
                            .millisecond = 250});
  exchange.cls = "BVInvoiceConnector";
  exchange.operation = "GetInvoice";
  exchange.url = "http://h/";
  exchange.http_status = 500;
  exchange.reply_headers.assign("HTTP/1.1 500\r\n");
  exchange.reply.assign("<fault/>");
  exchange.times = {.name_us = 1,
                    .connect_us = 2,
                    .tls_us = 3,
                    .send_us = 4,
                    .wait_us = 5,
                    .receive_us = 6,
                    .total_us = 21};
  exchange.bytes_sent = 7;
  exchange.bytes_received = 8;
  exchange.outcome = Outcome::kAnswered;
  return exchange;
}

const std::string kReply =
    R"("httpStatus":500,"replyHeaders":"HTTP/1.1 500\r\n","replyHeadersSize":14,)"
    R"("reply":"<fault/>","replySize":8,"microseconds":{"name":1,"connect":2,"tls":3,"send":4,)"
    R"("wait":5,"receive":6,"total":21},"bytesSent":7,"bytesReceived":8,"outcome":"answered",)";

TEST(ExchangeJson, ShowsARequestBySoap) {
  Exchange exchange = specimen();
  exchange.soap_action = "urn:InvoiceService";
  exchange.request.assign("<e>\"ä\"</e>");
  exchange.error = ExchangeError{.number = error_numbers::kSoapFault,
                                 .source = "SoapEnvelope",
                                 .description = "no such invoice"};
  exchange.raised = error_numbers::kInvoiceFault;
  EXPECT_EQ(exchange_json(exchange),
            R"({"number":3,"at":"2007-01-05T10:11:12.250","class":"BVInvoiceConnector",)"
            R"("operation":"GetInvoice","route":"soap","url":"http://h/",)"
            R"("soapAction":"urn:InvoiceService","request":"<e>\"ä\"</e>","requestSize":11,)" +
                kReply +
                R"("error":{"number":-2147204607,"hex":"0x80044201","source":"SoapEnvelope",)"
                R"("description":"no such invoice"},)"
                R"("raised":{"number":-2147211463,"hex":"0x80042739"}})");
}

TEST(ExchangeJson, ShowsACallOfAServiceObject) {
  Exchange exchange = specimen();
  exchange.route = ExchangeRoute::kDal;
  exchange.object = "SearchService";
  exchange.object_operation = "SearchForCustomer";
  exchange.arguments.resize(2);
  exchange.arguments[0].type = "string";
  exchange.arguments[0].text.assign("G1");
  exchange.arguments[1].type = "boolean";
  exchange.arguments[1].text.assign("True");
  exchange.result.assign("<r/>");
  EXPECT_EQ(exchange_json(exchange),
            R"({"number":3,"at":"2007-01-05T10:11:12.250","class":"BVInvoiceConnector",)"
            R"("operation":"GetInvoice","route":"dal","url":"http://h/",)"
            R"("object":"SearchService","objectOperation":"SearchForCustomer",)"
            R"("arguments":[{"type":"string","text":"G1","textSize":2},)"
            R"({"type":"boolean","text":"True","textSize":4}],"result":"<r/>","resultSize":4,)" +
                kReply + R"("error":null,"raised":null})");
}

TEST(ExchangeJson, TellsARequestWithoutSoapActionFromAnEmptyOne) {
  Exchange exchange = specimen();
  EXPECT_THAT(exchange_json(exchange), HasSubstr(R"("soapAction":null,)"));
  exchange.soap_action = "";
  EXPECT_THAT(exchange_json(exchange), HasSubstr(R"("soapAction":"",)"));
}

TEST(ExchangeJson, CountsAllOfATextOfWhichTheBeginningIsKept) {
  Exchange exchange = specimen();
  exchange.reply.assign(std::string(70'000, 'x'));
  const std::string json = exchange_json(exchange);
  EXPECT_THAT(json, HasSubstr("\"" + std::string(65'536, 'x') + R"(","replySize":70000,)"));
}

TEST(ExchangeJson, ReplacesWhatIsNoUtf8AndStaysOneLine) {
  Exchange exchange = specimen();
  exchange.reply.assign("a\xFF\n\x01");
  EXPECT_THAT(exchange_json(exchange), HasSubstr("\"reply\":\"a\xEF\xBF\xBD\\n\\u0001\""));
}

}  // namespace
}  // namespace bvconn::test

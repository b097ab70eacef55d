#include <gtest/gtest.h>

#include "sandbox/http/message.h"

namespace bvconn::sandbox {
namespace {

TEST(HttpMessage, HeadersAreFoundInAnyCase) {
  const Request request{.method = "POST",
                        .target = "/soap",
                        .headers = {{.name = "SOAPaction", .value = "\"urn:Postal\""}},
                        .body = {}};
  EXPECT_EQ(request.header("SOAPAction"), "\"urn:Postal\"");
  EXPECT_EQ(request.header("Content-Type"), std::nullopt);
}

TEST(HttpMessage, AQueryIsNoPartOfThePath) {
  const Request request{.method = "POST", .target = "/soap?wsdl", .headers = {}, .body = {}};
  EXPECT_EQ(request.path(), "/soap");
}

TEST(HttpMessage, MediaTypesAreComparedWithoutCaseAndParameters) {
  EXPECT_EQ(media_type(" Text/XML ; charset=utf-8"), "text/xml");
  EXPECT_EQ(media_type(""), "");
}

TEST(HttpMessage, TheCharsetIsFoundAmongOtherParameters) {
  EXPECT_EQ(charset("text/xml; action=x; Charset=\"ISO-8859-1\""), "ISO-8859-1");
  EXPECT_EQ(charset("text/xml;charset=utf-8"), "utf-8");
  EXPECT_EQ(charset("text/xml; action=charset"), "");
  EXPECT_EQ(charset("text/xml"), "");
}

TEST(HttpMessage, AReplyIsWrittenWithItsLength) {
  const Reply reply{
      .status = 404, .headers = {{.name = "Allow", .value = "POST"}}, .body = "nothing"};
  EXPECT_EQ(to_bytes(reply, true, true),
            "HTTP/1.1 404 Not Found\r\nServer: bvsandbox\r\nAllow: POST\r\nContent-Length: 7\r\n"
            "Connection: keep-alive\r\n\r\nnothing");
}

TEST(HttpMessage, TheAnswerToHeadHasTheLengthButNoBody) {
  const Reply reply{.status = 200, .headers = {}, .body = "seven77"};
  EXPECT_EQ(to_bytes(reply, false, false),
            "HTTP/1.1 200 OK\r\nServer: bvsandbox\r\nContent-Length: 7\r\nConnection: close\r\n"
            "\r\n");
}

}  // namespace
}  // namespace bvconn::sandbox

#include "http/transport_fixture.h"

namespace bvconn::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

using Reply = TransportTest;

TEST_F(Reply, IsHandedOutByteForByte) {
  const std::string body("<a>\xC3\xA4\0\r\n \xFF</a>", 13);
  server.answer(answers::reply(body));
  EXPECT_EQ(call(), body);
}

TEST_F(Reply, IsHandedOutOnce) {
  EXPECT_EQ(call(), "<ok/>");
  const Error error = error_of([&] { transport->Receive("UTF-8"); });
  EXPECT_EQ(hex_number(error.number), "0x80044306");
  EXPECT_THAT(error.description, HasSubstr("received already"));
}

TEST_F(Reply, IsNotThereBeforeTheFirstRequest) {
  const Error error = error_of([&] { transport->Receive("UTF-8"); });
  EXPECT_EQ(hex_number(error.number), "0x80044306");
  EXPECT_EQ(error.source, "HTTPTransport");
  EXPECT_THAT(error.description, HasSubstr("nothing was sent"));
}

TEST_F(Reply, InChunksIsPutTogether) {
  server.answer(answers::chunked("<a>one two three</a>", 3));
  EXPECT_EQ(call(), "<a>one two three</a>");
  EXPECT_EQ(call(), "<ok/>");
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(Reply, MayEndWithItsConnection) {
  server.answer(answers::close_delimited("<a>to the end</a>"));
  EXPECT_EQ(call(), "<a>to the end</a>");
  expect_next_call_works();
}

TEST_F(Reply, OfHttp10IsTaken) {
  server.answer(answers::http10("<a>old</a>"));
  EXPECT_EQ(call(), "<a>old</a>");
  expect_next_call_works();
}

TEST_F(Reply, MayComeAfterInterimReplies) {
  server.answer(answers::continue_first(
      answers::continue_first(answers::reply("<a>final</a>", "200 OK", "text/xml"))));
  EXPECT_EQ(call(), "<a>final</a>");
  EXPECT_EQ(call(), "<ok/>");
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(Reply, WithoutABodyIsNoBytes) {
  server.answer(answers::reply(""));
  EXPECT_EQ(call(), "");
  server.answer(answers::reply("", "204 No Content", ""));
  EXPECT_EQ(call(), "");
  server.answer(
      answers::raw("HTTP/1.1 500 No\r\nContent-Type: text/xml\r\nContent-Length: 0\r\n\r\n"));
  EXPECT_EQ(call(), "");
  expect_next_call_works();
}

TEST_F(Reply, ThatDribblesInArrivesWhole) {
  server.answer(answers::dribble("<slow/>", std::chrono::milliseconds(1)));
  EXPECT_EQ(call(), "<slow/>");
}

TEST_F(Reply, OfManyMegabytesArrivesWhole) {
  const std::string body = "<a>" + std::string(9'000'000, 'x') + "</a>";
  server.answer(answers::reply(body));
  EXPECT_TRUE(call() == body);
}

// Status and content type.

TEST_F(Reply, ThatIsXmlIsHandedOutWithAnyStatus) {
  server.answer(answers::fault("No such invoice"));
  EXPECT_THAT(call(), HasSubstr("<faultstring>No such invoice</faultstring>"));
  for (const char* status :
       {"300 Multiple Choices", "400 Bad Request", "404 Not Found", "503 Busy"}) {
    server.answer(answers::reply("<page/>", status));
    EXPECT_EQ(call(), "<page/>") << status;
  }
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(Reply, IsXmlByEveryTypeOfXml) {
  for (const char* type : {"text/xml", "TEXT/XML ; charset=\"utf-8\"", "application/xml",
                           "application/soap+xml; action=\"a\"", "Image/SVG+XML"}) {
    server.answer(answers::reply("<page/>", "500 Error", type));
    EXPECT_EQ(call(), "<page/>") << type;
  }
}

TEST_F(Reply, IsNotXmlByATypeThatOnlyResemblesIt) {
  for (const char* type : {"text/html", "text/xmlish", "application/xhtml", "xml", "+xml", "",
                           "text/plain; of=text/xml", "application/xml-dtd"}) {
    server.answer(answers::reply("<page/>", "500 Error", type));
    EXPECT_EQ(error_of([&] { call(); }).number, error_numbers::kHttpStatus) << type;
  }
}

TEST_F(Reply, OfAnyTypeIsHandedOutBelowStatus300) {
  server.answer(answers::reply("<html>", "200 OK", "text/html"));
  EXPECT_EQ(call(), "<html>");
  server.answer(answers::reply("plain", "299 Odd", ""));
  EXPECT_EQ(call(), "plain");
}

TEST_F(Reply, WithAPageForAnErrorFailsInReceiveWithStatusReasonAndItsBeginning) {
  server.answer(answers::reply(
      "<html>\r\n\t<h1>No  page</h1>\x01\xFF\xC3\xA4" + std::string(5000, 'z') + "the end",
      "404 Not Found", "text/html; charset=utf-8"));
  const Error error = expect_receive_fails(error_numbers::kHttpStatus);
  EXPECT_THAT(error.description,
              AllOf(HasSubstr("404 Not Found"),
                    HasSubstr("<html> <h1>No page</h1>\\x01\\xFF\xC3\xA4zzz"), EndsWith("...")));
  EXPECT_THAT(error.description, Not(HasSubstr("the end")));
  EXPECT_LT(error.description.size(), 600U);
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(Reply, WithAnErrorStatusAndNoBodyFailsWithTheStatus) {
  server.answer(answers::reply("", "503 Service Unavailable", ""));
  EXPECT_THAT(expect_receive_fails(error_numbers::kHttpStatus).description,
              EndsWith("503 Service Unavailable"));
}

TEST_F(Reply, WithAnErrorStatusRaisesItsErrorAgainWhenAskedAgain) {
  server.answer(answers::reply("gone", "410 Gone", "text/plain"));
  transport->Send(secret_url(), "<a/>");
  const Error first = error_of([&] { transport->Receive("UTF-8"); });
  const Error second = error_of([&] { transport->Receive("UTF-8"); });
  expect_described(first, error_numbers::kHttpStatus);
  EXPECT_EQ(first.description, second.description);
}

TEST_F(Reply, ThatNamesAnotherLocationIsNotFollowed) {
  MisbehavingServer other;
  server.answer(answers::redirect("http://joe:word@" + other.host() + "/elsewhere"));
  EXPECT_THAT(expect_receive_fails(error_numbers::kHttpStatus).description,
              AllOf(HasSubstr("302 Found"), HasSubstr("http://" + other.host() + "/elsewhere")));
  EXPECT_EQ(other.connections(), 0);
}

TEST_F(Reply, ThatIsARedirectIsRefusedWithItsLocationThoughItIsXml) {
  for (const char* status : {"301 Moved Permanently", "302 Found", "303 See Other",
                             "307 Temporary Redirect", "308 Permanent Redirect"}) {
    server.answer(answers::reply("<moved/>", status, "text/xml", {{"Location", "/elsewhere"}}));
    EXPECT_THAT(expect_receive_fails(error_numbers::kHttpStatus).description,
                AllOf(HasSubstr(status), HasSubstr("/elsewhere, which is not followed: <moved/>")));
  }
  server.answer(answers::reply("<as before/>", "304 Not Modified", "text/xml"));
  EXPECT_EQ(call(), "");
}

// What a transport says of its last reply.

TEST_F(Reply, IsSummedUpWithItsUrlAndStatusUntilTheNextSend) {
  EXPECT_EQ(transport->LastReply(), "");
  server.answer(answers::reply("<a/>", "500 Internal Server Error"));
  transport->Send(secret_url(), "<a/>");
  const std::string summary = "the server answered to http://" + server.host() +
                              "/soap?q=1 with the status 500 Internal Server Error";
  EXPECT_EQ(transport->LastReply(), summary);
  EXPECT_EQ(transport->Receive("UTF-8"), "<a/>");
  EXPECT_EQ(transport->LastReply(), summary);
  error_of([&] { transport->Send("ftp://nowhere", "<a/>"); });
  EXPECT_EQ(transport->LastReply(), "");
}

TEST_F(Reply, IsSummedUpThoughItIsRefused) {
  server.answer(answers::reply("no", "403 ", "text/plain"));
  expect_receive_fails(error_numbers::kHttpStatus);
  server.answer(answers::reply("no", "403 ", "text/plain"));
  transport->Send(server.url(), "<a/>");
  EXPECT_EQ(transport->LastReply(),
            "the server answered to " + server.url() + " with the status 403");
}

TEST_F(Reply, WithAnEndlessErrorPageIsNotReadToItsEnd) {
  server.answer(answers::raw("HTTP/1.1 502 Bad Gateway\r\nContent-Type: text/html\r\n\r\n<p>") +
                Answer{{.kind = Step::Kind::kRepeat, .bytes = std::string(1000, 'e')}});
  EXPECT_LT(seconds_of([&] {
              EXPECT_THAT(expect_receive_fails(error_numbers::kHttpStatus).description,
                          HasSubstr("502 Bad Gateway: <p>eee"));
            }),
            5.0);
}

TEST_F(Reply, WithACutErrorPageFailsWithItsStatus) {
  server.answer(answers::then_close(answers::raw(
      "HTTP/1.1 500 Broken\r\nContent-Type: text/html\r\nContent-Length: 900\r\n\r\n<p>why")));
  EXPECT_THAT(expect_receive_fails(error_numbers::kHttpStatus).description,
              HasSubstr("500 Broken: <p>why"));
}

}  // namespace
}  // namespace bvconn::test

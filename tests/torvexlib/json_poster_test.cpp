#include "bvconn/platform/torvexlib/json_poster.h"

#include <gtest/gtest.h>

#include "bvconn/platform/error.h"
#include "bvconn/platform/thread_record.h"
#include "bvconn/platform/tls_files.h"
#include "support/error_of.h"
#include "support/misbehaving_server.h"
#include "support/tls_server.h"

namespace bvconn::test {
namespace {

using answers::raw;
using answers::reply;
using answers::then_close;
using detail::JsonPoster;
using detail::JsonReply;

Error error_of_post(JsonPoster& poster, const std::string& url) {
  return error_of([&] { poster.post("QuoteService", url, "", "{}"); });
}

TEST(JsonPoster, GivesBodyTokenAndARefusalThatNamesStatusReasonAndLocation) {
  MisbehavingServer server;
  server.answer(reply("short", "418 I am a teapot", "text/plain",
                      {{"Location", "/there"}, {"SESSION-TOKEN", " t "}}));
  JsonPoster poster;
  const JsonReply reply = poster.post("QuoteService", server.url("/x"), "", "{}");
  EXPECT_EQ(reply.session_token, "t");
  EXPECT_EQ(reply.body, "short");
  ASSERT_TRUE(reply.refusal.has_value());
  EXPECT_EQ(hex_number(reply.refusal->number), "0x80044305");
  EXPECT_EQ(reply.refusal->source, "QuoteService");
  EXPECT_EQ(reply.refusal->description,
            "The server answered to " + server.url("/x") +
                " with the status 418 I am a teapot and names another location, /there, which is "
                "not followed: short");
}

TEST(JsonPoster, HeadersOfAnInterimReplyDoNotCount) {
  MisbehavingServer server;
  server.answer(raw("HTTP/1.1 103 Early Hints\r\nSession-Token: early\r\n\r\n") +
                reply("ok", "200 Fine"));
  JsonPoster poster;
  const JsonReply reply = poster.post("QuoteService", server.url(), "", "{}");
  EXPECT_FALSE(reply.refusal.has_value());
  EXPECT_EQ(reply.session_token, "");
  EXPECT_EQ(reply.body, "ok");
}

TEST(JsonPoster, AChunkedReplyIsPutTogetherAndItsTrailersDoNotCount) {
  MisbehavingServer server;
  server.answer(
      raw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n"
          "Session-Token: trailer\r\n\r\n"));
  JsonPoster poster;
  const JsonReply reply = poster.post("QuoteService", server.url(), "", "{}");
  EXPECT_EQ(reply.body, "abcde");
  EXPECT_EQ(reply.session_token, "");
}

TEST(JsonPoster, AReplyThatWasCutIsALostConnection) {
  for (const Answer& answer : {answers::cut_body("<whole/>", 5), answers::cut_chunk(),
                               answers::cut_headers(), answers::close_before_status()}) {
    MisbehavingServer server;
    server.answer(answer);
    JsonPoster poster;
    const Error error = error_of_post(poster, server.url());
    EXPECT_EQ(hex_number(error.number), "0x80044307") << error.description;
    EXPECT_EQ(error.source, "QuoteService");
    EXPECT_EQ(server.requests().size(), 1U);
  }
}

TEST(JsonPoster, ATlsStreamThatWasCutIsALostConnectionWhereOnlyItsEndToldTheEnd) {
  const TlsIdentity identity;
  MisbehavingServer server(tls_streams(identity));
  server.answer({answers::close_delimited("to the end"),
                 raw("HTTP/1.1 200 OK\r\n\r\npart") + Answer{{.kind = Step::Kind::kCut}}});
  const detail::ThreadScope fresh;
  use_tls_files({.ca_file = identity.certificate_file()});
  JsonPoster poster;
  const std::string url = server.url("/", "https");
  EXPECT_EQ(poster.post("QuoteService", url, "", "{}").body, "to the end");
  const Error error = error_of_post(poster, url);
  EXPECT_EQ(hex_number(error.number), "0x80044307") << error.description;
  EXPECT_EQ(error.source, "QuoteService");
}

TEST(JsonPoster, TrustsNobodyWhomTheSystemDoesNotKnow) {
  const TlsIdentity identity;
  const MisbehavingServer server(tls_streams(identity));
  JsonPoster poster;
  EXPECT_EQ(hex_number(error_of_post(poster, server.url("/", "https")).number), "0x80044303");
  EXPECT_TRUE(server.requests().empty());
}

TEST(JsonPoster, AStatusSaysMoreThanItsPageThatWasCut) {
  MisbehavingServer server;
  server.answer(then_close(raw("HTTP/1.1 502 Bad Gateway\r\nContent-Length: 99\r\n\r\n<html>")));
  JsonPoster poster;
  const JsonReply reply = poster.post("QuoteService", server.url(), "", "{}");
  ASSERT_TRUE(reply.refusal.has_value());
  EXPECT_NE(reply.refusal->description.find("502 Bad Gateway: <html>"), std::string::npos)
      << reply.refusal->description;
  EXPECT_EQ(reply.body, "<html>");
}

TEST(JsonPoster, AKeptConnectionThatWasClosedIsReplaced) {
  MisbehavingServer server;
  server.answer({then_close(reply("first")), reply("second")});
  JsonPoster poster;
  EXPECT_EQ(poster.post("QuoteService", server.url(), "", "{}").body, "first");
  ASSERT_TRUE(server.wait_for_closed(1));
  EXPECT_EQ(poster.post("QuoteService", server.url(), "", "{}").body, "second");
  EXPECT_EQ(server.connections(), 2);
}

TEST(JsonPoster, WhatIsNoHttpIsABadReply) {
  MisbehavingServer server;
  server.answer(answers::garbage());
  JsonPoster poster;
  EXPECT_EQ(hex_number(error_of_post(poster, server.url()).number), "0x80044306");
}

TEST(JsonPoster, AReplyBeyondTheLimitIsRefused) {
  MisbehavingServer server;
  server.answer({reply(std::string(1000, 'x')), reply(std::string(1001, 'y')),
                 answers::close_delimited(std::string(1001, 'z')), answers::endless_body()});
  JsonPoster poster({.time_out = std::chrono::seconds(20), .reply_bytes = 1000});
  EXPECT_EQ(poster.post("QuoteService", server.url(), "", "{}").body.size(), 1000U);
  for (int i = 0; i < 3; ++i) {
    const Error error = error_of_post(poster, server.url());
    EXPECT_EQ(hex_number(error.number), "0x80044306");
    EXPECT_NE(error.description.find("1000 bytes"), std::string::npos) << error.description;
  }
}

TEST(JsonPoster, OfALongErrorPageOnlyTheBeginningIsRead) {
  MisbehavingServer server;
  server.answer(reply(std::string(3 << 20, 'x'), "500 Oops"));
  JsonPoster poster;
  const JsonReply reply = poster.post("QuoteService", server.url(), "", "{}");
  ASSERT_TRUE(reply.refusal.has_value());
  EXPECT_EQ(hex_number(reply.refusal->number), "0x80044305");
  EXPECT_LE(reply.body.size(), std::size_t{1} << 20);
  EXPECT_GT(reply.body.size(), 1000U);
}

TEST(JsonPoster, HeadersWithoutEndAreRefused) {
  for (const Answer& answer : {answers::endless_headers(), answers::endless_header_line()}) {
    MisbehavingServer server;
    server.answer(answer);
    JsonPoster poster;
    EXPECT_EQ(hex_number(error_of_post(poster, server.url()).number), "0x80044306");
  }
}

TEST(JsonPoster, AnEncodingThatWasNotAskedForIsRefused) {
  MisbehavingServer server;
  server.answer(reply("packed", "200 OK", "text/xml", {{"Content-Encoding", "br"}}));
  JsonPoster poster;
  EXPECT_EQ(hex_number(error_of_post(poster, server.url()).number), "0x80044306");
  EXPECT_EQ(server.last_request().bytes.find("Accept-Encoding"), std::string::npos);
}

TEST(JsonPoster, TheTimeOutCoversTheWholeExchange) {
  MisbehavingServer server;
  server.answer({answers::never(), answers::dribble("<ok/>", std::chrono::milliseconds(50)),
                 raw("HTTP/1.1 500 Oops\r\nContent-Length: 9\r\n\r\n") + answers::never()});
  JsonPoster poster({.time_out = std::chrono::milliseconds(200), .reply_bytes = 1000});
  for (int i = 0; i < 3; ++i) {
    const auto begin = std::chrono::steady_clock::now();
    const Error error = error_of_post(poster, server.url());
    EXPECT_EQ(hex_number(error.number), "0x80044302") << error.description;
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(190));
  }
}

TEST(JsonPoster, TheDescriptionNamesTheUrlWithoutItsPassword) {
  MisbehavingServer server;
  server.answer(answers::close_before_status());
  JsonPoster poster;
  const Error error = error_of_post(poster, "http://user:secret@" + server.host() + "/x");
  EXPECT_NE(error.description.find(server.url("/x")), std::string::npos) << error.description;
  EXPECT_EQ(error.description.find("secret"), std::string::npos) << error.description;
}

}  // namespace
}  // namespace bvconn::test

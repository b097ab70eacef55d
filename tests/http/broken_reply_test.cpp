#include <ostream>

#include "http/transport_fixture.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;

using BrokenReply = TransportTest;

constexpr std::string_view kXmlHead = "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n";

Answer xml(std::string_view rest) {
  return answers::raw(std::string(kXmlHead) + std::string(rest));
}

// Cut: what arrived may parse, and is refused all the same.

TEST_F(BrokenReply, ShorterThanItsLengthIsLost) {
  server.answer(answers::cut_body("<a/>and the rest", 4));
  EXPECT_THAT(expect_receive_fails(error_numbers::kConnectionLost).description, HasSubstr("lost"));
}

TEST_F(BrokenReply, WithALengthThatIsTooLargeIsLostWhenTheServerCloses) {
  server.answer(answers::then_close(answers::wrong_length("<a/>", 5)));
  expect_receive_fails(error_numbers::kConnectionLost);
}

TEST_F(BrokenReply, WithALengthThatIsTooSmallEndsThereAndItsRestIsNoReply) {
  server.answer(answers::wrong_length("<a/><rest/>", 4));
  EXPECT_EQ(call(), "<a/>");
  expect_next_call_works();
  EXPECT_EQ(server.connections(), 2);
}

TEST_F(BrokenReply, CutInsideAChunkIsLost) {
  server.answer(answers::cut_chunk());
  expect_receive_fails(error_numbers::kConnectionLost);
}

TEST_F(BrokenReply, CutBetweenChunksIsLost) {
  server.answer(answers::then_close(xml("Transfer-Encoding: chunked\r\n\r\n5\r\n<ok/>\r\n")));
  expect_receive_fails(error_numbers::kConnectionLost);
}

TEST_F(BrokenReply, CutAfterTheLastChunkSizeIsLost) {
  server.answer(answers::then_close(xml("Transfer-Encoding: chunked\r\n\r\n5\r\n<ok/>\r\n0\r\n")));
  expect_receive_fails(error_numbers::kConnectionLost);
}

TEST_F(BrokenReply, CutInsideItsHeadersIsLost) {
  server.answer(answers::cut_headers());
  EXPECT_THAT(expect_receive_fails(error_numbers::kConnectionLost).description,
              HasSubstr("headers"));
}

TEST_F(BrokenReply, CutAfterItsStatusLineIsLost) {
  server.answer(answers::then_close(answers::raw("HTTP/1.1 200 OK\r\n")));
  expect_receive_fails(error_numbers::kConnectionLost);
}

TEST_F(BrokenReply, ResetInsideItsBodyIsLost) {
  server.answer(xml("Content-Length: 900\r\n\r\n<ok/>") +
                Answer{{.kind = Step::Kind::kWait, .pause = std::chrono::milliseconds(50)},
                       {.kind = Step::Kind::kReset}});
  expect_receive_fails(error_numbers::kConnectionLost);
}

// Not HTTP, or more of it than is taken.

TEST_F(BrokenReply, ThatIsNotHttpIsMalformed) {
  server.answer(answers::garbage());
  expect_receive_fails(error_numbers::kBadReply);
  server.answer(answers::then_close(answers::raw("SSH-2.0-server\r\n")));
  expect_receive_fails(error_numbers::kBadReply);
}

struct Malformed {
  const char* name;
  std::string bytes;
};
void PrintTo(const Malformed& reply, std::ostream* out) {
  *out << reply.name;
}

class MalformedReply : public TransportTest, public testing::WithParamInterface<Malformed> {};

TEST_P(MalformedReply, FailsInReceive) {
  server.answer(answers::then_close(answers::raw(GetParam().bytes)));
  expect_receive_fails(error_numbers::kBadReply);
}

const std::string kHead(kXmlHead);

INSTANTIATE_TEST_SUITE_P(
    Replies, MalformedReply,
    testing::Values(
        Malformed{"StatusOfLetters", "HTTP/1.1 abc OK\r\n\r\n<ok/>"},
        Malformed{"StatusTooSmall", "HTTP/1.1 099 Odd\r\nContent-Length: 0\r\n\r\n"},
        Malformed{"UnknownVersion", "HTTP/7.1 200 OK\r\nContent-Length: 0\r\n\r\n"},
        Malformed{"LengthOfLetters", kHead + "Content-Length: five\r\n\r\n<ok/>"},
        Malformed{"NegativeLength", kHead + "Content-Length: -5\r\n\r\n<ok/>"},
        Malformed{"TwoLengths", kHead + "Content-Length: 4\r\nContent-Length: 5\r\n\r\n<ok/>"},
        Malformed{"ChunkSizeOfLetters",
                  kHead + "Transfer-Encoding: chunked\r\n\r\nzz\r\n<ok/>\r\n0\r\n\r\n"},
        Malformed{"ChunkSizeTooLarge", kHead + "Transfer-Encoding: chunked\r\n\r\n" +
                                           "fffffffffffffffff\r\n<ok/>\r\n0\r\n\r\n"},
        Malformed{"ChunkWithoutItsEnd",
                  kHead + "Transfer-Encoding: chunked\r\n\r\n5\r\n<ok/>xx0\r\n\r\n"},
        Malformed{"UnknownTransferEncoding", kHead + "Transfer-Encoding: odd\r\n\r\n<ok/>"},
        Malformed{"UnknownContentEncoding",
                  kHead + "Content-Encoding: br\r\nContent-Length: 5\r\n\r\n<ok/>"},
        Malformed{"HeaderWithoutColon", kHead + "no colon\r\nContent-Length: 5\r\n\r\n<ok/>"},
        Malformed{"NulInHeader",
                  kHead + "X: a" + std::string(1, '\0') + "\r\nContent-Length: 5\r\n\r\n<ok/>"}),
    [](const auto& reply) { return reply.param.name; });

TEST_F(BrokenReply, WithEndlessHeadersIsGivenUp) {
  server.answer(answers::endless_headers());
  EXPECT_LT(seconds_of([&] { expect_receive_fails(error_numbers::kBadReply); }), 5.0);
}

TEST_F(BrokenReply, WithAnEndlessHeaderLineIsGivenUp) {
  server.answer(answers::endless_header_line());
  EXPECT_LT(seconds_of([&] { expect_receive_fails(error_numbers::kBadReply); }), 5.0);
}

TEST_F(BrokenReply, WithEndlessInterimRepliesIsGivenUp) {
  server.answer({{.kind = Step::Kind::kRepeat, .bytes = "HTTP/1.1 102 Processing\r\n\r\n"}});
  EXPECT_LT(seconds_of([&] { expect_receive_fails(error_numbers::kBadReply); }), 5.0);
}

TEST_F(BrokenReply, WithEndlessTrailersIsGivenUp) {
  server.answer(xml("Transfer-Encoding: chunked\r\n\r\n5\r\n<ok/>\r\n0\r\n") +
                Answer{{.kind = Step::Kind::kRepeat, .bytes = "X-Filler: 0\r\n"}});
  EXPECT_LT(seconds_of([&] { expect_receive_fails(error_numbers::kBadReply); }), 5.0);
}

TEST_F(BrokenReply, WithAnEndlessBodyIsGivenUpAtTheLimit) {
  transport->Option("http.max_reply_bytes", "100000");
  server.answer(answers::endless_body());
  EXPECT_THAT(expect_receive_fails(error_numbers::kBadReply).description, HasSubstr("100000"));
}

TEST_F(BrokenReply, IsTooLargeFromTheFirstByteBeyondTheLimit) {
  transport->Option("http.max_reply_bytes", "8");
  server.answer({answers::reply("12345678"), answers::reply("123456789")});
  EXPECT_EQ(call(), "12345678");
  expect_receive_fails(error_numbers::kBadReply);
}

TEST_F(BrokenReply, InChunksIsTooLargeAsWell) {
  transport->Option("http.max_reply_bytes", "8");
  server.answer({answers::chunked("12345678", 3), answers::chunked("123456789", 3)});
  EXPECT_EQ(call(), "12345678");
  expect_receive_fails(error_numbers::kBadReply);
}

TEST_F(BrokenReply, ThatClaimsAnEnormousLengthReservesNoMemoryForIt) {
  server.answer(answers::then_close(answers::wrong_length("<ok/>", 1'000'000'000'000'000)));
  expect_receive_fails(error_numbers::kConnectionLost);
}

// Two for one: what nobody asked for is not the reply to the next request.

TEST_F(BrokenReply, FollowedByAnotherAtOnceLeavesNothingBehind) {
  server.answer(answers::raw(answers::reply("<first/>").front().bytes +
                             answers::reply("<stray/>").front().bytes));
  EXPECT_EQ(call(), "<first/>");
  expect_next_call_works();
}

TEST_F(BrokenReply, FollowedByAnotherLaterLeavesNothingBehind) {
  server.answer(answers::reply("<first/>") +
                Answer{{.kind = Step::Kind::kWait, .pause = std::chrono::milliseconds(30)}} +
                answers::reply("<stray/>"));
  EXPECT_EQ(call(), "<first/>");
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  expect_next_call_works();
  EXPECT_EQ(server.connections(), 2);
}

}  // namespace
}  // namespace bvconn::test

#include "http/gzip_text.h"
#include "http/transport_fixture.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;

class Gzip : public TransportTest {
 protected:
  static Answer packed(std::string_view bytes, std::string_view encoding = "gzip") {
    return answers::reply(bytes, "200 OK", answers::kXml,
                          {{"Content-Encoding", std::string(encoding)}});
  }

  // More than the blocks in which it is unpacked, and not all the same.
  static std::string long_text() {
    std::string text;
    for (int line = 0; text.size() < 200'000; ++line) {
      text += "<line>" + std::to_string(line * 7919 % 10007) + "</line>";
    }
    return text;
  }
};

TEST_F(Gzip, IsUnpacked) {
  server.answer({packed(gzip("<small/>")), packed(gzip(long_text()), "x-gzip")});
  EXPECT_EQ(call(), "<small/>");
  EXPECT_TRUE(call() == long_text());
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(Gzip, IsUnpackedInWhateverPiecesItComes) {
  server.answer(answers::chunked(gzip("<in pieces/>"), 1, {{"Content-Encoding", "GZIP"}}));
  EXPECT_EQ(call(), "<in pieces/>");
}

TEST_F(Gzip, IsUnpackedWhereItsSizeIsThatOfTheBlocks) {
  const std::string text(std::size_t{64} * 1024, 'b');
  server.answer(packed(gzip(text)));
  EXPECT_TRUE(call() == text);
}

TEST_F(Gzip, MayConsistOfSeveralStreams) {
  server.answer(packed(gzip("<one/>") + gzip("<two/>")));
  EXPECT_EQ(call(), "<one/><two/>");
}

TEST_F(Gzip, OfNothingIsNoBytes) {
  server.answer({packed(gzip("")), packed("")});
  EXPECT_EQ(call(), "");
  EXPECT_EQ(call(), "");
}

TEST_F(Gzip, CutAnywhereIsLostThoughItsLengthIsRight) {
  const std::string whole = gzip("<a>whole</a>");
  for (std::size_t size = 1; size < whole.size(); ++size) {
    server.answer(packed(whole.substr(0, size)));
    EXPECT_NO_THROW(transport->Send(secret_url(), "<a/>"));
    expect_described(error_of([&] { transport->Receive("UTF-8"); }),
                     error_numbers::kConnectionLost);
  }
  expect_next_call_works();
}

TEST_F(Gzip, CutInItsSecondStreamIsLost) {
  server.answer(packed(gzip("<one/>") + gzip("<two/>").substr(0, 15)));
  expect_receive_fails(error_numbers::kConnectionLost);
}

TEST_F(Gzip, WithAWrongCheckSumIsMalformed) {
  std::string bytes = gzip("<a>whole</a>");
  bytes[bytes.size() - 6] = static_cast<char>(bytes[bytes.size() - 6] ^ 1);
  server.answer(packed(bytes));
  expect_receive_fails(error_numbers::kBadReply);
}

TEST_F(Gzip, ThatIsNoneIsMalformed) {
  server.answer(packed("<plain/>"));
  EXPECT_THAT(expect_receive_fails(error_numbers::kBadReply).description, HasSubstr("gzip"));
}

TEST_F(Gzip, FollowedByOtherBytesIsMalformed) {
  server.answer(packed(gzip("<a/>") + "junk"));
  expect_receive_fails(error_numbers::kBadReply);
}

TEST_F(Gzip, CountsAgainstTheLimitAsItUnpacks) {
  transport->Option("http.max_reply_bytes", "1000000");
  const std::string bomb = gzip(std::string(50'000'000, '\0'));
  ASSERT_LT(bomb.size(), 100'000U);
  server.answer({packed(gzip(std::string(1'000'000, '0'))), packed(bomb)});
  EXPECT_EQ(call().size(), 1'000'000U);
  EXPECT_THAT(expect_receive_fails(error_numbers::kBadReply).description, HasSubstr("1000000"));
}

TEST_F(Gzip, OfAnErrorPageIsShownUnpacked) {
  server.answer(answers::reply(gzip("<p>Gateway down"), "502 Bad Gateway", "text/html",
                               {{"Content-Encoding", "gzip"}}));
  EXPECT_THAT(expect_receive_fails(error_numbers::kHttpStatus).description,
              HasSubstr("<p>Gateway down"));
}

}  // namespace
}  // namespace bvconn::test

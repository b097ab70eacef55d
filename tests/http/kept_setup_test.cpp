#include <algorithm>
#include <fstream>
#include <iterator>

#include "http/transport_fixture.h"
#include "support/tls_server.h"

// A transport stays set up between its calls. Whatever is set otherwise shows in the next call, and
// once it is set back, in the one after, on one connection wherever that leads to the same place.
namespace bvconn::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string text_of(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

class KeptSetup : public TransportTest {
 protected:
  /// The request of one call, as it arrived.
  std::string sent(std::string_view text = "<a/>") {
    call(text);
    return server.last_request().bytes;
  }

  static Answer late() {
    return Answer{{.kind = Step::Kind::kWait, .pause = std::chrono::milliseconds(300)}} +
           answers::reply("<late/>");
  }
};

TEST_F(KeptSetup, ShowsAnotherSoapAction) {
  for (const char* action :
       {"urn:One", "urn:Two", "urn:One", "urn:One", "urn:Six", "", "urn:One"}) {
    transport->SOAPAction(action);
    EXPECT_THAT(sent(), HasSubstr("\r\nSOAPAction: \"" + std::string(action) + "\"\r\n"));
  }
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(KeptSetup, ShowsAFirstSoapActionAfterCallsWithoutOne) {
  EXPECT_THAT(sent(), Not(HasSubstr("SOAPAction")));
  transport->SOAPAction("urn:One");
  EXPECT_THAT(sent(), HasSubstr("SOAPAction: \"urn:One\"\r\n"));
}

TEST_F(KeptSetup, HasTheSoapActionOfBeforeWhereAnotherWasRefused) {
  transport->SOAPAction("urn:One");
  sent();
  EXPECT_THROW(transport->SOAPAction("urn:Two\r\nX: y"), Error);
  EXPECT_THAT(sent(), HasSubstr("SOAPAction: \"urn:One\"\r\n"));
}

TEST_F(KeptSetup, ShowsAnotherPath) {
  for (const char* path : {"/one", "/two?x=1", "/one", "/one/../one", "/one"}) {
    transport->Send(server.url(path), "<a/>");
    EXPECT_THAT(server.last_request().bytes, StartsWith("POST " + std::string(path) + " HTTP/1.1"));
  }
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(KeptSetup, GoesWhereEachSpellingOfAUrlLeads) {
  const std::string port = std::to_string(server.port());
  const auto head_of = [&](const std::string& url) {
    transport->Send(url, "<a/>");
    const std::string bytes = server.last_request().bytes;
    return bytes.substr(0, bytes.find("\r\nAccept"));
  };
  const auto head = [&](std::string_view target) {
    return "POST " + std::string(target) + " HTTP/1.1\r\nHost: 127.0.0.1:" + port;
  };
  EXPECT_EQ(head_of("http://127.0.0.1:" + port), head("/"));
  EXPECT_EQ(head_of("http://127.0.0.1:" + port + "?x=1"), head("/?x=1"));
  EXPECT_EQ(head_of("HTTP://127.0.0.1:" + port + "/a/../b#c"), head("/a/../b"));
  EXPECT_EQ(head_of("http://127.0.0.1:0" + port + "//d//%7e;e"), head("//d//%7e;e"));
  EXPECT_EQ(head_of("http://127.1:" + port + "/x"), head("/x"));
  EXPECT_EQ(head_of("http://127.0.0.1:" + port), head("/"));
}

TEST_F(KeptSetup, KnowsItsUrlStillWhereTheConnectionHasToBeMadeAnew) {
  server.answer(answers::then_close(answers::reply("<ok/>")));
  transport->Send(server.url("/one"), "<a/>");
  ASSERT_TRUE(server.wait_for_closed(1));
  EXPECT_THROW(transport->Send(server.url(" two"), "<a/>"), Error);
  transport->Send(server.url("/one"), "<a/>");
  EXPECT_THAT(server.last_request().bytes, StartsWith("POST /one HTTP/1.1"));
  EXPECT_EQ(server.connections(), 2);
}

TEST_F(KeptSetup, RefusesABadUrlAndGoesOnWithTheGoodOne) {
  sent();
  EXPECT_EQ(error_of([&] { transport->Send(server.url() + " x", "<a/>"); }).number,
            error_numbers::kBadUrlOrHeader);
  EXPECT_THAT(sent("<b/>"), testing::EndsWith("\r\n\r\n<b/>"));
}

TEST_F(KeptSetup, ShowsAnotherUserAndForgetsThem) {
  const auto sent_as = [&](std::string_view user) {
    transport->Send("http://" + std::string(user) + server.host() + "/", "<a/>");
    return server.last_request().bytes;
  };
  EXPECT_THAT(sent_as("joe:one@"), HasSubstr("Authorization: Basic am9lOm9uZQ==\r\n"));
  EXPECT_THAT(sent_as("joe:two@"), HasSubstr("Authorization: Basic am9lOnR3bw==\r\n"));
  EXPECT_THAT(sent_as(""), Not(HasSubstr("Authorization")));
  EXPECT_THAT(sent_as("joe:one@"), HasSubstr("Authorization: Basic am9lOm9uZQ==\r\n"));
}

TEST_F(KeptSetup, SendsEachBodyWithItsOwnLength) {
  for (const std::size_t size : {4U, 100'000U, 0U, 7U}) {
    const std::string text(size, 'x');
    EXPECT_THAT(sent(text), HasSubstr("\r\nContent-Length: " + std::to_string(size) + "\r\n"));
    EXPECT_EQ(server.last_request().body, text);
  }
}

TEST_F(KeptSetup, TakesAShorterTimeoutAndGivesItBack) {
  server.answer({answers::reply("<ok/>"), late(), answers::reply("<ok/>"), late(), late()});
  call();
  EXPECT_EQ(call(), "<late/>");
  transport->Timeout(100);
  EXPECT_EQ(call(), "<ok/>");
  EXPECT_EQ(error_of([&] { call(); }).number, error_numbers::kTimeout);
  transport->Timeout(10000);
  EXPECT_EQ(call(), "<late/>");
}

TEST_F(KeptSetup, TakesALongerTimeoutOnTheSameConnection) {
  server.answer({answers::reply("<ok/>"), late()});
  transport->Timeout(100);
  EXPECT_EQ(call(), "<ok/>");
  transport->Timeout(0);
  EXPECT_EQ(call(), "<late/>");
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(KeptSetup, TakesAnotherLimitForReplies) {
  server.otherwise(answers::reply("<a>0123456789</a>"));
  EXPECT_EQ(call(), "<a>0123456789</a>");
  transport->Option("http.max_reply_bytes", "10");
  EXPECT_EQ(error_of([&] { call(); }).number, error_numbers::kBadReply);
  transport->Option("http.max_reply_bytes", "1000");
  EXPECT_EQ(call(), "<a>0123456789</a>");
}

TEST_F(KeptSetup, GoesByAProxyAndStraightAgain) {
  MisbehavingServer proxy;
  proxy.otherwise(answers::reply("<by proxy/>"));
  EXPECT_EQ(call(), "<ok/>");
  transport->setProxy("127.0.0.1", std::to_string(proxy.port()));
  EXPECT_EQ(call(), "<by proxy/>");
  EXPECT_EQ(call(), "<by proxy/>");
  transport->NoProxy();
  EXPECT_EQ(call(), "<ok/>");
}

TEST_F(KeptSetup, FailsByABadProxyAndGoesStraightAgain) {
  call();
  transport->setProxy("no host", "80");
  EXPECT_EQ(error_of([&] { call(); }).number, error_numbers::kProxy);
  transport->NoProxy();
  EXPECT_EQ(call(), "<ok/>");
}

TEST_F(KeptSetup, TracesFromTheCallOnForWhichAFileWasNamed) {
  const TemporaryFolder folder;
  call("<first/>");
  transport->Option("tracing.file", folder / "one");
  call("<second/>");
  transport->Option("tracing.file", folder / "two");
  call("<third/>");
  transport->Option("tracing.file", "");
  call("<fourth/>");
  transport->Option("tracing.file", folder / "one");
  call("<fifth/>");
  EXPECT_THAT(text_of(folder / "one"), Not(HasSubstr("<first/>")));
  EXPECT_THAT(text_of(folder / "one"), HasSubstr("<second/>"));
  EXPECT_THAT(text_of(folder / "one"), Not(HasSubstr("<third/>")));
  EXPECT_THAT(text_of(folder / "one"), Not(HasSubstr("<fourth/>")));
  EXPECT_THAT(text_of(folder / "one"), HasSubstr("<fifth/>"));
  EXPECT_THAT(text_of(folder / "two"), HasSubstr("<third/>"));
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(KeptSetup, TellsOfEachReplyByItsOwnUrlAndStatus) {
  server.answer({answers::reply("<a/>", "200 Fine"), answers::reply("<a/>", "500 Not Fine")});
  transport->Send(server.url("/one"), "<a/>");
  EXPECT_EQ(transport->LastReply(),
            "the server answered to " + server.url("/one") + " with the status 200 Fine");
  transport->Send(server.url("/two"), "<a/>");
  EXPECT_EQ(transport->LastReply(),
            "the server answered to " + server.url("/two") + " with the status 500 Not Fine");
  EXPECT_THROW(transport->Send("nowhere", "<a/>"), Error);
  EXPECT_EQ(transport->LastReply(), "");
}

TEST(KeptTlsSetup, TrustsAnotherAuthorityAndTheFirstOneAgain) {
  const TlsIdentity identity;
  const TlsIdentity other;
  MisbehavingServer server(tls_streams(identity));
  const auto transport = make_http_transport();
  const auto call = [&] {
    transport->Send(server.url("/", "https"), "<a/>");
    return transport->Receive("UTF-8");
  };
  transport->Option("tls.ca_file", identity.certificate_file());
  EXPECT_EQ(call(), "<ok/>");
  transport->Option("tls.ca_file", other.certificate_file());
  EXPECT_EQ(error_of([&] { call(); }).number, error_numbers::kTls);
  transport->Option("tls.ca_file", identity.certificate_file());
  EXPECT_EQ(call(), "<ok/>");
  EXPECT_EQ(call(), "<ok/>");
  EXPECT_EQ(server.requests().size(), 3U);
}

TEST(KeptTlsSetup, GoesFromPlainToTlsAndBack) {
  const TlsIdentity identity;
  MisbehavingServer plain;
  MisbehavingServer secure(tls_streams(identity));
  secure.otherwise(answers::reply("<secret/>"));
  const auto transport = make_http_transport();
  transport->Option("tls.ca_file", identity.certificate_file());
  for (int i = 0; i < 2; ++i) {
    transport->Send(plain.url(), "<a/>");
    EXPECT_EQ(transport->Receive("UTF-8"), "<ok/>");
    transport->Send(secure.url("/", "https"), "<a/>");
    EXPECT_EQ(transport->Receive("UTF-8"), "<secret/>");
  }
}

}  // namespace
}  // namespace bvconn::test

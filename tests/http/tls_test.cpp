#include <sys/socket.h>

#include <array>

#include "hostile/process_watch.h"
#include "http/transport_fixture.h"
#include "support/tls_server.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;
using testing::Not;

/// Until the client's end of the socket is closed, whatever it says before.
const Answer kSlowGoodbye{{.kind = Step::Kind::kWait, .pause = std::chrono::seconds(20)}};

class Tls : public testing::Test {
 protected:
  Tls() {
    transport->Timeout(10000);
    transport->Option("tls.ca_file", identity.certificate_file());
  }

  std::string call(const MisbehavingServer& server) {
    transport->Send(server.url("/", "https"), "<question/>");
    return transport->Receive("UTF-8");
  }

  void expect_no_trust(const MisbehavingServer& server) {
    const std::string url = "https://joe:word@" + server.host() + "/";
    const Error error = error_of([&] { transport->Send(url, "<a/>"); });
    EXPECT_EQ(hex_number(error.number), "0x80044303") << error.description;
    EXPECT_EQ(error.source, "HTTPTransport");
    EXPECT_THAT(error.description, HasSubstr("https://" + server.host() + "/"));
    EXPECT_THAT(error.description, Not(HasSubstr("word")));
    EXPECT_TRUE(server.requests().empty());
  }

  TlsIdentity identity;
  std::shared_ptr<HTTPTransport> transport = make_http_transport();
};

TEST_F(Tls, WorksWithTheAuthorityThatWasNamed) {
  MisbehavingServer server(tls_streams(identity));
  server.answer(answers::chunked("<secret/>", 4));
  EXPECT_EQ(call(server), "<secret/>");
  EXPECT_EQ(call(server), "<ok/>");
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(Tls, FailsInSendWhereNobodyVouchesForTheServer) {
  const MisbehavingServer server(tls_streams(identity));
  transport = make_http_transport();
  expect_no_trust(server);
  transport->Option("tls.ca_file", identity.certificate_file());
  EXPECT_EQ(call(server), "<ok/>");
}

TEST_F(Tls, FailsInSendWhereAnotherAuthorityVouches) {
  const TlsIdentity other;
  const MisbehavingServer server(tls_streams(other));
  expect_no_trust(server);
}

TEST_F(Tls, FailsInSendWhereTheCertificateIsForAnotherHost) {
  const MisbehavingServer server(tls_streams(identity));
  const std::string url = "https://127.0.0.2:" + std::to_string(server.port()) + "/";
  EXPECT_NE(error_of([&] { transport->Send(url, "<a/>"); }).number, 0);
  EXPECT_TRUE(server.requests().empty());
}

TEST_F(Tls, FailsInSendWhereTheServerSpeaksNoTls) {
  const MisbehavingServer server([](int socket) {
    std::array<char, 1024> hello;
    constexpr std::string_view kRefusal = "HTTP/1.1 400 Bad Request\r\n\r\n";
    ::recv(socket, hello.data(), hello.size(), 0);
    ::send(socket, kRefusal.data(), kRefusal.size(), MSG_NOSIGNAL);
    return nullptr;
  });
  expect_no_trust(server);
}

TEST_F(Tls, FailsInSendWhereTheServerKnowsOldVersionsOnly) {
  const MisbehavingServer server(tls_streams(identity, {.old_protocol_only = true}));
  expect_no_trust(server);
}

TEST_F(Tls, FailsInSendWithoutTheAuthoritysFile) {
  const MisbehavingServer server(tls_streams(identity));
  transport->Option("tls.ca_file", identity.certificate_file() + ".missing");
  expect_no_trust(server);
}

TEST_F(Tls, ShowsTheClientsCertificateWhereOneWasNamed) {
  const MisbehavingServer server(tls_streams(identity, {.asks_for_client_certificate = true}));
  expect_no_trust(server);
  transport->Option("tls.client_cert", identity.certificate_file());
  transport->Option("tls.client_key", identity.key_file());
  EXPECT_EQ(call(server), "<ok/>");
  transport->Option("tls.client_key", identity.key_file() + ".missing");
  const Error error = error_of([&] { transport->Send(server.url("/", "https"), "<a/>"); });
  EXPECT_EQ(hex_number(error.number), "0x80044303") << error.description;
}

TEST_F(Tls, EndedInOrderMayEndTheBody) {
  MisbehavingServer server(tls_streams(identity));
  server.answer(answers::close_delimited("<to the end/>"));
  EXPECT_EQ(call(server), "<to the end/>");
  EXPECT_EQ(call(server), "<ok/>");
}

TEST_F(Tls, CutWithoutItsClosingIsLostWhereOnlyThatToldTheEnd) {
  MisbehavingServer server(tls_streams(identity));
  server.answer(answers::raw("HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n\r\n<part/>") +
                Answer{{.kind = Step::Kind::kCut}});
  transport->Send(server.url("/", "HTTPS"), "<a/>");
  const Error error = error_of([&] { transport->Receive("UTF-8"); });
  EXPECT_EQ(hex_number(error.number), "0x80044307") << error.description;
  EXPECT_EQ(call(server), "<ok/>");
}

TEST_F(Tls, CutWithoutItsClosingIsGoodWhereTheLengthToldTheEnd) {
  MisbehavingServer server(tls_streams(identity));
  server.answer(answers::reply("<whole/>") + Answer{{.kind = Step::Kind::kCut}});
  EXPECT_EQ(call(server), "<whole/>");
  ASSERT_TRUE(server.wait_for_closed(1));
  EXPECT_EQ(call(server), "<ok/>");
}

TEST_F(Tls, CutBeforeTheStatusLineFailsInSendAndIsNotTriedAgain) {
  MisbehavingServer server(tls_streams(identity));
  server.answer({answers::reply("<one/>"), Answer{{.kind = Step::Kind::kCut}},
                 Answer{{.kind = Step::Kind::kClose}}});
  EXPECT_EQ(call(server), "<one/>");
  for (std::size_t requests = 2; requests <= 3; ++requests) {
    const Error error = error_of([&] { transport->Send(server.url("/", "https"), "<a/>"); });
    EXPECT_EQ(hex_number(error.number), "0x80044307") << error.description;
    EXPECT_EQ(server.requests().size(), requests);
  }
  EXPECT_EQ(call(server), "<ok/>");
}

// What is left of a connection that ended, where the server takes its time to say goodbye too.

TEST_F(Tls, HoldsNoSocketWhereTheServerEndsTheConnectionWithItsReply) {
  MisbehavingServer server(tls_streams(identity));
  const Answer last = answers::reply("<last/>", "200 OK", answers::kXml, {{"Connection", "close"}});
  server.answer({last, last + kSlowGoodbye});
  EXPECT_EQ(call(server), "<last/>");
  ASSERT_TRUE(server.wait_for_closed(1));
  const Held before = held_now();
  EXPECT_EQ(call(server), "<last/>");
  EXPECT_EQ(held_again(before).descriptors, before.descriptors);
}

TEST_F(Tls, HoldsNoSocketOfTheServerBefore) {
  MisbehavingServer server(tls_streams(identity));
  server.answer(answers::reply("<one/>") + kSlowGoodbye);
  const MisbehavingServer other;
  transport->Send(other.url(), "<a/>");
  const Held before = held_now();
  EXPECT_EQ(call(server), "<one/>");
  transport->Send(other.url(), "<a/>");
  EXPECT_EQ(held_again(before).descriptors, before.descriptors);
}

}  // namespace
}  // namespace bvconn::test

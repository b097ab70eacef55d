// TLS files of the environment and of the program, on both routes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/thread_record.h"
#include "bvconn/platform/tls_files.h"
#include "files/temp_folder.h"
#include "own_files.h"
#include "support/error_of.h"
#include "support/misbehaving_server.h"
#include "support/tls_server.h"

namespace bvconn::test {
namespace {

using files_test::ScopedEnvironment;
using testing::HasSubstr;

enum class Route { kSoap, kDal };
void PrintTo(Route route, std::ostream* out) {
  *out << (route == Route::kSoap ? "soap" : "dal");
}

/// One call by each route to a server of TLS.
class TlsFilesOf : public testing::TestWithParam<Route> {
 protected:
  // The search has both routes. The service objects are made without a login, which would swallow
  // the errors that the tests are about.
  std::string call(const MisbehavingServer& server) {
    const std::string url = server.url("/", "https");
    BVConnectorObject object;
    if (GetParam() == Route::kDal && !object.UsingTorvexDAL()) {
      object.InitTorvexDAL("http://127.0.0.1:1/");
      object.UseTorvexDAL();
    }
    if (GetParam() == Route::kDal) {
      object.AuthenticationService()->invoke("SetServerUrl", std::vector{Variant(url)}, false);
    }
    return to_text(BVSearchConnector().SearchForBrands("S", url).Value());
  }
  // No request arrived, and the description has these words. With TLS 1.3 a client may have begun
  // to send before it hears that it is turned away.
  void expect_refused(const MisbehavingServer& server, const std::string& words,
                      Outcome outcome = Outcome::kNotSent) {
    const std::size_t before = server.requests().size();
    const Error error = error_of([&] { call(server); });
    EXPECT_EQ(hex_number(error.number), "0x80044303") << error.description;
    EXPECT_EQ(error.outcome, outcome);
    EXPECT_EQ(error.source, GetParam() == Route::kSoap ? "HTTPTransport" : "SearchService");
    EXPECT_THAT(error.description, HasSubstr(words));
    EXPECT_EQ(server.requests().size(), before);
  }
  static void serve(MisbehavingServer& server, int calls) {
    for (int i = 0; i < calls; ++i) {
      server.answer(answers::reply(
          "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body>"
          "<r><return>R</return></r></e:Body></e:Envelope>"));
    }
  }

  const detail::ThreadScope fresh;
  OwnFiles files;
  TlsIdentity identity;
};

TEST_P(TlsFilesOf, TheEnvironmentsAuthorityIsTrusted) {
  const ScopedEnvironment ca("BVCONN_CA_FILE", identity.certificate_file());
  MisbehavingServer server(tls_streams(identity));
  serve(server, 2);
  EXPECT_EQ(call(server), "R");
  EXPECT_EQ(call(server), "R");
  EXPECT_EQ(server.connections(), 1) << "the connection is kept";
}

TEST_P(TlsFilesOf, WithoutOneNobodyVouchesForTheServer) {
  const MisbehavingServer server(tls_streams(identity));
  expect_refused(server, server.url("/", "https"));
}

TEST_P(TlsFilesOf, AnotherAuthorityDoesNotVouchForTheServer) {
  const TlsIdentity other;
  const ScopedEnvironment ca("BVCONN_CA_FILE", other.certificate_file());
  const MisbehavingServer server(tls_streams(identity));
  expect_refused(server, server.url("/", "https"));
}

TEST_P(TlsFilesOf, TheEnvironmentsCertificateIsShownWhereOneIsDemanded) {
  const ScopedEnvironment ca("BVCONN_CA_FILE", identity.certificate_file());
  MisbehavingServer server(tls_streams(identity, {.asks_for_client_certificate = true}));
  serve(server, 1);
  {
    const detail::ThreadScope without_certificate;
    expect_refused(server, "certificate required", Outcome::kUnknown);
  }
  const ScopedEnvironment certificate("BVCONN_CLIENT_CERT", identity.certificate_file());
  const ScopedEnvironment key("BVCONN_CLIENT_KEY", identity.key_file());
  EXPECT_EQ(call(server), "R");
}

TEST_P(TlsFilesOf, WithoutAKeyFileTheKeyLiesWithTheCertificate) {
  const std::string both = files.path("both.pem").string();
  files_test::put_bytes(both, files_test::bytes_of(identity.certificate_file()) +
                                  files_test::bytes_of(identity.key_file()));
  MisbehavingServer server(tls_streams(identity, {.asks_for_client_certificate = true}));
  serve(server, 1);
  use_tls_files({.ca_file = identity.certificate_file(), .client_cert = both});
  EXPECT_EQ(call(server), "R");
}

TEST_P(TlsFilesOf, TheProgramsFilesReplaceAllOfTheEnvironments) {
  const ScopedEnvironment ca("BVCONN_CA_FILE", identity.certificate_file());
  const ScopedEnvironment certificate("BVCONN_CLIENT_CERT", identity.certificate_file());
  const ScopedEnvironment key("BVCONN_CLIENT_KEY", identity.key_file());
  MisbehavingServer server(tls_streams(identity, {.asks_for_client_certificate = true}));
  serve(server, 2);
  EXPECT_EQ(call(server), "R");
  use_tls_files({.ca_file = identity.certificate_file()});
  expect_refused(server, "certificate required", Outcome::kUnknown);
  use_tls_files({});
  expect_refused(server, "certificate");
  use_tls_files({.ca_file = identity.certificate_file(),
                 .client_cert = identity.certificate_file(),
                 .client_key = identity.key_file()});
  EXPECT_EQ(call(server), "R");
}

TEST_P(TlsFilesOf, AFileThatIsMissingIsNamedAndNothingIsSent) {
  MisbehavingServer server(tls_streams(identity));
  serve(server, 1);
  const TlsFiles good{.ca_file = identity.certificate_file()};
  TlsFiles bad = good;
  bad.ca_file = "/missing/ca.pem";
  use_tls_files(bad);
  expect_refused(server, "\"/missing/ca.pem\", cannot be read: No such file or directory");
  bad = good;
  bad.client_cert = "/missing/client.pem";
  use_tls_files(bad);
  expect_refused(server, "\"/missing/client.pem\", cannot be read: No such file or directory");
  bad.client_cert = identity.certificate_file();
  bad.client_key = files.path("").string();
  use_tls_files(bad);
  expect_refused(server, "cannot be read: Is a directory");
  EXPECT_EQ(server.connections(), 0);
  use_tls_files(good);
  EXPECT_EQ(call(server), "R");
}

TEST_P(TlsFilesOf, AFileThatIsNoCertificateIsNamed) {
  const std::string no_pem = files.path("no.pem").string();
  files_test::put_bytes(no_pem, "hello\n");
  const MisbehavingServer server(tls_streams(identity));
  use_tls_files({.ca_file = no_pem});
  expect_refused(server, no_pem);
  use_tls_files({.ca_file = identity.certificate_file(), .client_cert = no_pem});
  expect_refused(server, no_pem);
  use_tls_files({.ca_file = identity.certificate_file(),
                 .client_cert = identity.certificate_file(),
                 .client_key = no_pem});
  expect_refused(server, no_pem);
}

INSTANTIATE_TEST_SUITE_P(BothRoutes, TlsFilesOf, testing::Values(Route::kSoap, Route::kDal),
                         testing::PrintToStringParamName());

class TlsFilesOfThread : public testing::Test {
 protected:
  const detail::ThreadScope fresh;
  OwnFiles files;
  TlsIdentity identity;
};

TEST_F(TlsFilesOfThread, AnOptionOfTheTransportStandsAboveThem) {
  MisbehavingServer server(tls_streams(identity));
  use_tls_files({.ca_file = "/missing/ca.pem"});
  const auto transport = BVConnectorObject().HTTPTransportObject();
  transport->Option("tls.ca_file", identity.certificate_file());
  transport->Send(server.url("/", "https"), "<a/>");
  EXPECT_EQ(transport->Receive("UTF-8"), "<ok/>");
}

TEST_F(TlsFilesOfThread, AKeyOfAnotherPlaceDoesNotCountForAnOptionsCertificate) {
  MisbehavingServer server(tls_streams(identity, {.asks_for_client_certificate = true}));
  const TlsIdentity other;
  use_tls_files({.ca_file = identity.certificate_file(),
                 .client_cert = other.certificate_file(),
                 .client_key = other.key_file()});
  const auto transport = make_http_transport();
  const std::string both = files.path("both.pem").string();
  files_test::put_bytes(both, files_test::bytes_of(identity.certificate_file()) +
                                  files_test::bytes_of(identity.key_file()));
  transport->Option("tls.client_cert", both);
  transport->Send(server.url("/", "https"), "<a/>");
  EXPECT_EQ(transport->Receive("UTF-8"), "<ok/>");
}

TEST_F(TlsFilesOfThread, APlainConnectionAsksForNoFile) {
  MisbehavingServer server;
  use_tls_files({.ca_file = "/missing/ca.pem"});
  const auto transport = make_http_transport();
  transport->Send(server.url(), "<a/>");
  EXPECT_EQ(transport->Receive("UTF-8"), "<ok/>");
}

TEST_F(TlsFilesOfThread, AnotherThreadHasItsOwn) {
  use_tls_files({.ca_file = "/mine.pem"});
  TlsFiles there{.ca_file = "unset"};
  std::thread([&] { there = tls_files(); }).join();
  EXPECT_EQ(there, TlsFiles{});
  EXPECT_EQ(tls_files().ca_file, "/mine.pem");
}

TEST_F(TlsFilesOfThread, TheEnvironmentIsLookedAtOnce) {
  {
    const ScopedEnvironment ca("BVCONN_CA_FILE", "/first.pem");
    EXPECT_EQ(tls_files().ca_file, "/first.pem");
  }
  EXPECT_EQ(tls_files().ca_file, "/first.pem");
  const detail::ThreadScope fresh_session;
  EXPECT_EQ(tls_files().ca_file, "");
}

}  // namespace
}  // namespace bvconn::test

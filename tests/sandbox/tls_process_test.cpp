// The real sandbox by TLS: the library, commands, and clients that do not keep to it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <openssl/ssl.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/observation/world.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/platform.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/timeout_scope.h"
#include "bvconn/platform/tls_files.h"
#include "sandbox/calls/own_address.h"
#include "sandbox/command_run.h"
#include "sandbox/http/address.h"
#include "sandbox/http/client.h"
#include "sandbox/own_folder.h"
#include "sandbox/sandbox_process.h"
#include "sandbox/tls/certificates.h"
#include "support/error_of.h"
#include "support/tls_server.h"

namespace bvconn::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::StartsWith;

/// Real connections for the calling thread, and an authority that it trusts.
class Trusting {
 public:
  explicit Trusting(const std::string& authority_file) : scope_(real_connections()) {
    use_tls_files({.ca_file = authority_file});
  }
  ~Trusting() { use_tls_files({}); }
  Trusting(const Trusting&) = delete;
  Trusting& operator=(const Trusting&) = delete;

 private:
  static platform::Platform real_connections() {
    auto world = automation::detail::World().platform();
    world.transport = make_http_transport;
    world.service_object = make_http_service_object;
    return world;
  }

  platform::ScopedPlatform scope_;
};

std::string https_url(const SandboxProcess& sandbox, const std::string& host = "127.0.0.1") {
  return "https://" + host + ":" + std::to_string(sandbox.port());
}

std::string number_of_invoice(const std::string& url) {
  const SoapNode invoice = BVInvoiceConnector().GetInvoice(url + "/soap", "S1", "INV-1003");
  return to_text(invoice.Nodes().ItemByName("InvoiceNumber").Value());
}

std::string failure(const std::string& url) {
  return hex_number(error_of([&] { number_of_invoice(url); }).number);
}

/// How the other side ends a connection by TLS: "goodbye", "reset", or "cut" for an end without the
/// words that TLS has for it.
std::string ending_of(std::uint16_t port, std::string_view request) {
  const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const timeval patience{.tv_sec = 20, .tv_usec = 0};
  ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  const std::unique_ptr<SSL_CTX, void (*)(SSL_CTX*)> context(SSL_CTX_new(TLS_client_method()),
                                                             SSL_CTX_free);
  const std::unique_ptr<SSL, void (*)(SSL*)> tls(SSL_new(context.get()), SSL_free);
  SSL_set_fd(tls.get(), socket);
  std::string ending = "none";
  if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
      SSL_connect(tls.get()) == 1 &&
      SSL_write(tls.get(), request.data(), static_cast<int>(request.size())) > 0) {
    std::array<char, 4096> bytes{};
    int count = 1;
    while (count > 0) {
      errno = 0;
      count = SSL_read(tls.get(), bytes.data(), static_cast<int>(bytes.size()));
    }
    const bool is_goodbye = SSL_get_error(tls.get(), count) == SSL_ERROR_ZERO_RETURN;
    ending = is_goodbye ? "goodbye" : errno == ECONNRESET ? "reset" : "cut";
  }
  ::close(socket);
  return ending;
}

/// One sandbox for the tests that leave it as it was.
class SandboxTls : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder = std::make_unique<OwnFolder>();
    sandbox = std::make_unique<SandboxProcess>(
        std::vector<std::string>{"--tls", "--tls-folder", folder->path("tls"), "--tls-name",
                                 "sandbox.example", "--request-deadline-ms", "1000"});
  }
  static void TearDownTestSuite() {
    sandbox.reset();
    folder.reset();
  }

  static std::string authority() { return folder->path("tls/authority.pem"); }
  static std::string url() { return https_url(*sandbox); }
  static CommandRun ask(std::vector<std::string> words) {
    words.insert(words.begin() + 1, {"--url", url(), "--tls-authority", authority()});
    return run_sandbox(words);
  }

  static std::unique_ptr<OwnFolder> folder;
  static std::unique_ptr<SandboxProcess> sandbox;
};

std::unique_ptr<OwnFolder> SandboxTls::folder;
std::unique_ptr<SandboxProcess> SandboxTls::sandbox;

TEST_F(SandboxTls, SaysWhereItsAuthorityLies) {
  const auto line = nlohmann::json::parse(sandbox->ready_line());
  EXPECT_EQ(line["authority"], authority());
  EXPECT_EQ(line["soap"], url() + "/soap");
  EXPECT_EQ(line["dal"], url() + "/dal");
}

TEST_F(SandboxTls, AnswersTheLibraryThatTrustsTheAuthority) {
  const Trusting trusting(authority());
  EXPECT_EQ(number_of_invoice(url()), "700103");
  EXPECT_EQ(number_of_invoice(https_url(*sandbox, "localhost")), "700103");
  BVConnectorObject object;
  object.UserName("anna");
  object.Password("secret");
  object.InitTorvexDAL(url() + "/dal");
}

TEST_F(SandboxTls, IsNotTrustedByTheLibraryWithoutIt) {
  {
    const Trusting trusting("");
    EXPECT_EQ(failure(url()), hex_number(error_numbers::kTls));
  }
  const TlsIdentity other;
  const Trusting trusting(other.certificate_file());
  EXPECT_EQ(failure(url()), hex_number(error_numbers::kTls));
}

TEST_F(SandboxTls, AnswersCommands) {
  EXPECT_EQ(ask({"disabled"}).status, 0);
  const TlsIdentity other;
  const CommandRun misled =
      run_sandbox({"disabled", "--url", url(), "--tls-authority", other.certificate_file()});
  EXPECT_EQ(misled.status, 1);
  EXPECT_THAT(misled.err, StartsWith("bvsandbox: no sandbox answers at " + url() + ": "));
  EXPECT_THAT(misled.err, HasSubstr("; --tls-authority names the file that its start line tells"));
}

TEST_F(SandboxTls, TellsAPlainClientSo) {
  const RawReply reply = exchange(sandbox->port(), http_request("GET", "/admin/faults", "", ""));
  EXPECT_EQ(reply.status, 400);
  EXPECT_EQ(reply.body, "This port speaks TLS: the address begins with https://.\n");
  EXPECT_EQ(reply.header("Connection"), "close");
}

TEST_F(SandboxTls, EndsAHandshakeThatStallsWithoutHoldingUpOthers) {
  std::vector<std::unique_ptr<RawClient>> stalled;
  for (int i = 0; i < 20; ++i) {
    stalled.push_back(std::make_unique<RawClient>(sandbox->port()));
    // Half of them say nothing, the others begin a handshake.
    const std::string begin = i % 2 == 0 ? std::string("\x16\x03\x01\x02\x00\x01", 6) : "";
    ASSERT_TRUE(stalled.back()->send(begin));
  }
  const Trusting trusting(authority());
  EXPECT_EQ(number_of_invoice(url()), "700103");
  for (auto& each : stalled) EXPECT_TRUE(each->ends(10s));
}

TEST_F(SandboxTls, EndsAHandshakeThatIsNone) {
  RawClient client(sandbox->port());
  ASSERT_TRUE(client.send("\x16 this is no handshake, and never will be one"));
  EXPECT_TRUE(client.ends(10s));
}

TEST_F(SandboxTls, MisbehavesAsWithoutIt) {
  const Trusting trusting(authority());
  const TimeoutScope limit(std::chrono::seconds(20));
  const std::pair<std::vector<std::string>, std::int32_t> kinds[] = {
      {{"status", "--status", "503"}, error_numbers::kHttpStatus},
      {{"close"}, error_numbers::kConnectionLost},
      {{"close-in-body"}, error_numbers::kConnectionLost},
      {{"reset"}, error_numbers::kConnectionLost},
      {{"reset", "--after-bytes", "30"}, error_numbers::kConnectionLost},
      {{"wrong-length"}, error_numbers::kConnectionLost},
      {{"bad-chunk"}, error_numbers::kBadReply},
      {{"cut-xml"}, error_numbers::kNotWellFormed},
  };
  for (const auto& [kind, number] : kinds) {
    std::vector<std::string> words{"faults", "add"};
    words.insert(words.end(), kind.begin(), kind.end());
    words.insert(words.end(), {"--count", "1"});
    const CommandRun run = ask(words);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(failure(url()), hex_number(number)) << kind.front();
  }
  ASSERT_EQ(
      ask({"faults", "add", "drip", "--bytes", "64", "--every-ms", "1", "--count", "1"}).status, 0);
  EXPECT_EQ(number_of_invoice(url()), "700103");
  ASSERT_EQ(ask({"faults", "add", "big-body", "--bytes", "3000000", "--count", "1"}).status, 0);
  EXPECT_EQ(number_of_invoice(url()), "700103");
}

TEST_F(SandboxTls, SaysGoodbyeUnlessItIsToReset) {
  const std::string request = http_request(
      "POST", "/soap",
      "Content-Type: text/xml; charset=utf-8\r\nSOAPAction: \"urn:InvoiceService\"\r\n",
      envelope_text("urn:InvoiceService", "getInvoice",
                    R"(<param xsi:type="xsd:string">INV-1001</param>)"));
  const std::pair<const char*, const char*> endings[] = {
      {"close", "goodbye"}, {"close-in-body", "goodbye"}, {"reset", "reset"}};
  for (const auto& [kind, ending] : endings) {
    ASSERT_EQ(ask({"faults", "add", kind, "--count", "1"}).status, 0);
    EXPECT_EQ(ending_of(sandbox->port(), request), ending) << kind;
  }
}

TEST_F(SandboxTls, KeepsItsKeyForItsOwnerAlone) {
  using std::filesystem::perms;
  const auto mode = std::filesystem::status(folder->path("tls/authority-key.pem")).permissions();
  EXPECT_EQ(mode, perms::owner_read | perms::owner_write);
  EXPECT_THAT(folder->read("tls/authority-key.pem"), HasSubstr("PRIVATE KEY"));
  EXPECT_THAT(folder->read("tls/authority.pem"), testing::Not(HasSubstr("PRIVATE KEY")));
}

TEST(SandboxAuthority, StaysForTheNextSandboxAndForOneBeside) {
  const OwnFolder folder;
  const std::vector<std::string> words{"--tls-folder", folder.path()};
  SandboxProcess first(words);
  const std::string authority = folder.read("authority.pem");
  const SandboxProcess second(words);
  ASSERT_EQ(first.end_by(SIGTERM), 0);
  EXPECT_EQ(folder.read("authority.pem"), authority);
  const Trusting trusting(folder.path("authority.pem"));
  EXPECT_EQ(number_of_invoice(https_url(second)), "700103");
}

TEST(SandboxAuthority, IsMadeAnewWhereItHasRunOut) {
  const OwnFolder folder;
  const TlsIdentity expired({.expired = true});
  folder.write("authority.pem", "");
  std::filesystem::copy_file(expired.certificate_file(), folder.path("old.pem"));
  std::filesystem::copy_file(expired.key_file(), folder.path("old-key.pem"));
  const std::string old = folder.read("old.pem");
  folder.write("authority.pem", old);
  folder.write("authority-key.pem", folder.read("old-key.pem") + old);
  const SandboxProcess sandbox({"--tls-folder", folder.path()});
  EXPECT_NE(folder.read("authority.pem"), old);
  const Trusting trusting(folder.path("authority.pem"));
  EXPECT_EQ(number_of_invoice(https_url(sandbox)), "700103");
}

TEST(SandboxAuthority, IsRefusedWhereOthersMayReadItsKey) {
  const OwnFolder folder;
  const std::string key = folder.write("authority-key.pem", "x");
  std::filesystem::permissions(key, std::filesystem::perms::all);
  const CommandRun run = run_sandbox({"--tls-folder", folder.path()});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "bvsandbox: '" + key +
                         "' cannot be used: others than its owner may open it; 'chmod 600' ends "
                         "that\n");
}

TEST(SandboxAuthority, IsFoundByCommandsOfTheSameUser) {
  const OwnFolder home;
  ::setenv("XDG_STATE_HOME", home.path().c_str(), 1);
  const SandboxProcess sandbox({"--tls"});
  const CommandRun run = run_sandbox({"disabled", "--url", https_url(sandbox)});
  ::unsetenv("XDG_STATE_HOME");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(home.read("bvsandbox/tls/authority.pem"), HasSubstr("CERTIFICATE"));
}

TEST(SandboxAuthority, NeedsAFolderWhereThereIsNoHome) {
  const std::string home = std::getenv("HOME") == nullptr ? "" : std::getenv("HOME");
  ::unsetenv("HOME");
  ::setenv("XDG_STATE_HOME", "", 1);
  const CommandRun run = run_sandbox({"--tls"});
  ::setenv("HOME", home.c_str(), 1);
  ::unsetenv("XDG_STATE_HOME");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err,
            "bvsandbox: there is no home folder to keep an authority in, name one with "
            "--tls-folder\n");
}

TEST(SandboxCertificate, CanBeTheUsersOwn) {
  const TlsIdentity own;
  const SandboxProcess sandbox(
      {"--tls-certificate", own.certificate_file(), "--tls-key", own.key_file()});
  EXPECT_THAT(sandbox.ready_line(), testing::Not(HasSubstr("authority")));
  const Trusting trusting(own.certificate_file());
  EXPECT_EQ(number_of_invoice(https_url(sandbox)), "700103");
}

/// What a call that the sandbox makes of itself ends with: the invoice's number, or the error's.
std::string own_call(const std::string& url, const std::string& authority) {
  sandbox::Client client(url, {.authority_file = authority});
  const auto reply =
      client.send("POST", "/admin/calls",
                  R"({"operation": "BVInvoiceConnector.GetInvoice",)"
                  R"( "arguments": {"aSessionID": "S", "strInvoiceUID": "INV-1003"}})");
  const auto answer = nlohmann::json::parse(reply.body);
  if (answer.contains("error")) return answer["error"]["description"];
  const std::string xml = answer["result"]["xml"];
  return xml.find(">700103<") == std::string::npos ? xml : "700103";
}

TEST(SandboxCertificate, OfTheUsersOwnIsTrustedByItsOwnCalls) {
  const TlsIdentity own;
  const SandboxProcess sandbox(
      {"--tls-certificate", own.certificate_file(), "--tls-key", own.key_file()});
  EXPECT_EQ(own_call(https_url(sandbox), own.certificate_file()), "700103");
}

TEST(SandboxCertificate, OfAnotherAuthorityIsAskedByItsOwnCallsByANameThatItStandsFor) {
  const OwnFolder folder;
  const auto authority = sandbox::make_authority(std::chrono::hours(1));
  const auto server = sandbox::make_server(authority, {"localhost"}, std::chrono::hours(1));
  folder.write("authority.pem", authority.certificate);
  const SandboxProcess sandbox({"--tls-certificate", folder.write("own.pem", server.certificate),
                                "--tls-key", folder.write("own-key.pem", server.key)});
  EXPECT_EQ(own_call(https_url(sandbox, "localhost"), folder.path("authority.pem")), "700103");
}

TEST(SandboxCertificate, IsAskedForByANameThatLeadsHereAlone) {
  struct Case {
    const char* names;
    const char* listening;
    const char* host;
  };
  for (const Case& each : {
           Case{"DNS:localhost,IP:127.0.0.1", "127.0.0.1", "127.0.0.1"},
           Case{"DNS:*.localhost,DNS:localhost", "127.0.0.1", "localhost"},
           Case{"IP:127.0.0.3", "0.0.0.0", "127.0.0.3"},
           Case{"IP:::1", "::1", "[::1]"},
           // These lead elsewhere, so the address stays, and the call says that it is not trusted.
           Case{"DNS:localhost", "127.0.0.2", "127.0.0.2"},
           Case{"IP:192.0.2.1", "0.0.0.0", "127.0.0.1"},
           Case{"DNS:*.localhost", "127.0.0.1", "127.0.0.1"},
       }) {
    const TlsIdentity own({.names = each.names});
    const std::string url = "https://" + sandbox::address_in_url(each.listening) + ":8443";
    const auto address = sandbox::own_address_by(own.certificate_file(), url, each.listening);
    EXPECT_EQ(address.url, "https://" + std::string(each.host) + ":8443") << each.names;
    EXPECT_EQ(address.ca_file, own.certificate_file());
  }
}

TEST(SandboxCertificate, IsNotTakenForAnotherName) {
  const TlsIdentity own({.names = "DNS:other.example"});
  const SandboxProcess sandbox(
      {"--tls-certificate", own.certificate_file(), "--tls-key", own.key_file()});
  const Trusting trusting(own.certificate_file());
  EXPECT_EQ(failure(https_url(sandbox)), hex_number(error_numbers::kTls));
  const CommandRun run = run_sandbox({"disabled", "--url", https_url(sandbox, "localhost"),
                                      "--tls-authority", own.certificate_file()});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("no sandbox answers at https://localhost"));
}

TEST(SandboxCertificate, IsRefusedInOneLineWhereItCannotBeUsed) {
  const TlsIdentity own;
  const TlsIdentity other;
  const CommandRun strange =
      run_sandbox({"--tls-certificate", own.certificate_file(), "--tls-key", other.key_file()});
  EXPECT_EQ(strange.status, 1);
  EXPECT_THAT(strange.err,
              testing::MatchesRegex("bvsandbox: the certificate and its key cannot be used: .*\n"));
  const CommandRun missing =
      run_sandbox({"--tls-certificate", "/missing.pem", "--tls-key", other.key_file()});
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.err, "bvsandbox: '/missing.pem' cannot be used: No such file or directory\n");
}

TEST(SandboxTlsOptions, AreRefusedInOneLineWhereTheyCannotWork) {
  const std::pair<std::vector<std::string>, const char*> refusals[] = {
      {{"--tls-certificate", "a.pem"}, "--tls-certificate and --tls-key go together"},
      {{"--tls-key", "a.pem"}, "--tls-certificate and --tls-key go together"},
      {{"--tls-certificate", "a.pem", "--tls-key", "b.pem", "--tls-name", "x"},
       "--tls-folder and --tls-name are for a certificate that is made, not for one of your own"},
      {{"--tls-name", "a,DNS:b"}, "--tls-name: 'a,DNS:b' is no name of a server"},
  };
  for (const auto& [words, line] : refusals) {
    const CommandRun run = run_sandbox(words);
    EXPECT_EQ(run.status, 2) << words.front();
    EXPECT_EQ(run.err, "bvsandbox: " + std::string(line) + "\n");
  }
}

TEST(SandboxByTls, AnswersWhatHasArrivedBeforeItEnds) {
  const OwnFolder folder;
  SandboxProcess sandbox({"--tls-folder", folder.path()});
  const std::string url = https_url(sandbox);
  const std::string authority = folder.path("authority.pem");
  ASSERT_EQ(run_sandbox({"faults", "--url", url, "--tls-authority", authority, "add", "delay",
                         "--delay-ms", "1500"})
                .status,
            0);
  auto answer = std::async(std::launch::async, [&] {
    const Trusting trusting(authority);
    return number_of_invoice(url);
  });
  // As soon as the fault has hit, the request is there.
  const auto deadline = std::chrono::steady_clock::now() + 20s;
  const auto has_hit = [&] {
    const CommandRun run =
        run_sandbox({"faults", "--url", url, "--tls-authority", authority, "list"});
    return run.out.find("\"hit\":1") != std::string::npos ||
           run.out.find("\"hit\": 1") != std::string::npos;
  };
  while (!has_hit() && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(10ms);
  }
  EXPECT_EQ(sandbox.end_by(SIGTERM), 0);
  EXPECT_EQ(answer.get(), "700103");
}

}  // namespace
}  // namespace bvconn::test

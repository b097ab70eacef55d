// What a server shows by TLS while it runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include "sandbox/http/client.h"
#include "sandbox/http/server.h"
#include "sandbox/own_files.h"
#include "sandbox/tls/certificates.h"
#include "support/tls_server.h"

namespace bvconn::sandbox {
namespace {

using std::chrono::system_clock;
using test::TlsIdentity;

constexpr std::size_t kLargest = 100'000;

/// To be changed before the first connection.
TlsIdentity& first() {
  static TlsIdentity identity;
  return identity;
}

class TlsServer {
 public:
  explicit TlsServer(TlsSource source)
      : server_({.tls = std::move(source)}, Limits{},
                [](const Request&) { return text_reply(200, "here"); }),
        thread_([this] { server_.run(); }) {}
  ~TlsServer() {
    server_.stop();
    thread_.join();
  }
  TlsServer(const TlsServer&) = delete;
  TlsServer& operator=(const TlsServer&) = delete;

  /// Whether whoever trusts this identity alone is answered.
  bool is_trusted_by(const TlsIdentity& identity) const {
    try {
      Client client(server_.url(), {.authority_file = identity.certificate_file()});
      return client.send("GET", "/").body == "here";
    } catch (const NoAnswer&) {
      return false;
    }
  }

 private:
  Server server_;
  std::thread thread_;
};

::bvconn::sandbox::TlsIdentity shown(const TlsIdentity& identity, system_clock::time_point until) {
  return {.certificates = text_of_file(identity.certificate_file(), kLargest),
          .key = text_of_file(identity.key_file(), kLargest),
          .renew_at = until};
}

TEST(TlsServer, ShowsAnotherCertificateWhenItsTimeHasCome) {
  const TlsIdentity second;
  const auto source = [&, is_first = true]() mutable {
    const bool was_first = std::exchange(is_first, false);
    const auto now = system_clock::now();
    return was_first ? shown(first(), now) : shown(second, now + std::chrono::hours(1));
  };
  const TlsServer server(source);
  EXPECT_TRUE(server.is_trusted_by(second));
  EXPECT_FALSE(server.is_trusted_by(first()));
}

TEST(TlsServer, ShowsTheOldCertificateWhereThereIsNoNewOne) {
  const auto source = [is_first = true]() mutable {
    if (!std::exchange(is_first, false)) throw std::runtime_error("it is gone");
    return shown(first(), system_clock::now());
  };
  const TlsServer server(source);
  EXPECT_TRUE(server.is_trusted_by(first()));
  EXPECT_TRUE(server.is_trusted_by(first()));
}

TEST(Certificates, EndWithTheAuthorityAtTheLatest) {
  const CertifiedKey authority = make_authority(std::chrono::hours(48));
  const Validity valid =
      validity_of(make_server(authority, {"localhost", "::1"}, std::chrono::hours(1000)));
  EXPECT_EQ(valid.end, validity_of(authority).end);
  EXPECT_LT(valid.begin, system_clock::now());
  EXPECT_LT(valid.end, system_clock::now() + std::chrono::hours(49));
}

TEST(Certificates, AreNotTakenWithTheKeyOfAnother) {
  const CertifiedKey one = make_authority(std::chrono::hours(1));
  const CertifiedKey other = make_authority(std::chrono::hours(1));
  EXPECT_THROW(validity_of({.certificate = one.certificate, .key = other.key}), std::runtime_error);
}

TEST(Certificates, TakeNamesAndAddressesOfServers) {
  for (const char* name : {"localhost", "sandbox.example", "*.example", "10.0.0.7", "::1"}) {
    EXPECT_TRUE(is_server_name(name)) << name;
  }
  for (const char* name : {"", "*.", "a b", "a,IP:10.0.0.7", "DNS:a", "https://a", "a/b"}) {
    EXPECT_FALSE(is_server_name(name)) << name;
  }
}

}  // namespace
}  // namespace bvconn::sandbox

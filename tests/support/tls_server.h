#pragma once

#include <memory>
#include <string>

#include "support/misbehaving_server.h"

namespace bvconn::test {

/// What a certificate says of the server.
struct TlsNames {
  std::string names = "DNS:localhost,IP:127.0.0.1";
  bool expired = false;
};

/// A key and a certificate that it signed itself, as PEM files in a folder of their own that goes
/// with this object.
class TlsIdentity {
 public:
  explicit TlsIdentity(const TlsNames& names = {});
  ~TlsIdentity();
  TlsIdentity(const TlsIdentity&) = delete;
  TlsIdentity& operator=(const TlsIdentity&) = delete;

  std::string certificate_file() const { return folder_ + "/certificate.pem"; }
  std::string key_file() const { return folder_ + "/key.pem"; }

 private:
  std::string folder_;
};

struct TlsOptions {
  bool asks_for_client_certificate = false;  ///< and takes only the server's own
  bool old_protocol_only = false;            ///< TLS 1.1 at most
};

/// Makes the server's streams TLS streams. The identity must outlive the server.
MisbehavingServer::StreamMaker tls_streams(const TlsIdentity& identity, TlsOptions options = {});

}  // namespace bvconn::test

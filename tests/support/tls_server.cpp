#include "support/tls_server.h"

#include <openssl/ec.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <sys/socket.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace bvconn::test {
namespace {

template <typename Object, void (*Free)(Object*)>
struct Freer {
  void operator()(Object* object) const { Free(object); }
};
template <typename Object, void (*Free)(Object*)>
using Owned = std::unique_ptr<Object, Freer<Object, Free>>;

void check(bool good, const char* what) {
  if (!good) {
    throw std::runtime_error(std::string("TLS test server: ") + what);
  }
}

std::FILE* open_for_writing(const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "w");
  check(file != nullptr, "cannot write a PEM file");
  return file;
}

void add_extension(X509* certificate, int kind, const char* value) {
  const Owned<X509_EXTENSION, X509_EXTENSION_free> extension(
      X509V3_EXT_conf_nid(nullptr, nullptr, kind, value));
  check(X509_add_ext(certificate, extension.get(), -1) == 1, "extension");
}

// Whether neither of the two numbers of a signature begins with a zero byte. Of one in 128 one
// does, and there are clients that take it for another signature then: the Windows of wine among
// them.
bool is_of_whole_numbers(const X509& certificate) {
  constexpr int kBytes = 32;
  const ASN1_BIT_STRING* bits = nullptr;
  X509_get0_signature(&bits, nullptr, &certificate);
  const unsigned char* data = ASN1_STRING_get0_data(bits);
  const Owned<ECDSA_SIG, ECDSA_SIG_free> signature(
      d2i_ECDSA_SIG(nullptr, &data, ASN1_STRING_length(bits)));
  check(signature != nullptr, "signature");
  return BN_num_bytes(ECDSA_SIG_get0_r(signature.get())) == kBytes &&
         BN_num_bytes(ECDSA_SIG_get0_s(signature.get())) == kBytes;
}

void write_identity(const TlsNames& names, const std::string& certificate_file,
                    const std::string& key_file) {
  const Owned<EVP_PKEY, EVP_PKEY_free> key(EVP_EC_gen("P-256"));
  const Owned<X509, X509_free> certificate(X509_new());
  check(key != nullptr && certificate != nullptr, "key");
  X509_set_version(certificate.get(), 2);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 7);
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600L * 2);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), names.expired ? -3600L : 24L * 3600);
  X509_set_pubkey(certificate.get(), key.get());
  X509_NAME* name = X509_get_subject_name(certificate.get());
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                             reinterpret_cast<const unsigned char*>("localhost"), -1, -1, 0);
  X509_set_issuer_name(certificate.get(), name);
  add_extension(certificate.get(), NID_subject_alt_name, names.names.c_str());
  add_extension(certificate.get(), NID_basic_constraints, "critical,CA:TRUE");
  do {
    check(X509_sign(certificate.get(), key.get(), EVP_sha256()) != 0, "signature");
  } while (!is_of_whole_numbers(*certificate));

  std::FILE* file = open_for_writing(certificate_file);
  check(PEM_write_X509(file, certificate.get()) == 1, "certificate file");
  std::fclose(file);
  file = open_for_writing(key_file);
  check(PEM_write_PrivateKey(file, key.get(), nullptr, nullptr, 0, nullptr, nullptr) == 1,
        "key file");
  std::fclose(file);
}

// Lets the client read why it was turned away: closing with bytes unread would take that from it.
void linger(int socket) {
  ::shutdown(socket, SHUT_WR);
  std::array<char, 1024> ignored;
  while (::recv(socket, ignored.data(), ignored.size(), 0) > 0) {
  }
}

class TlsStream final : public ServerStream {
 public:
  TlsStream(SSL_CTX* context, int socket) : ssl_(SSL_new(context)) {
    SSL_set_fd(ssl_.get(), socket);
  }

  bool accept() { return SSL_accept(ssl_.get()) == 1; }

  ssize_t read(char* data, std::size_t size) override {
    std::size_t count = 0;
    return SSL_read_ex(ssl_.get(), data, size, &count) == 1 ? static_cast<ssize_t>(count) : -1;
  }

  bool write(std::string_view bytes) override {
    std::size_t count = 0;
    return bytes.empty() || SSL_write_ex(ssl_.get(), bytes.data(), bytes.size(), &count) == 1;
  }

  void say_goodbye() override { SSL_shutdown(ssl_.get()); }

 private:
  Owned<SSL, SSL_free> ssl_;
};

}  // namespace

TlsIdentity::TlsIdentity(const TlsNames& names) {
  std::string pattern = (std::filesystem::temp_directory_path() / "bvconn-tls-XXXXXX").string();
  check(mkdtemp(pattern.data()) != nullptr, "cannot make a folder");
  folder_ = pattern;
  write_identity(names, certificate_file(), key_file());
}

TlsIdentity::~TlsIdentity() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

MisbehavingServer::StreamMaker tls_streams(const TlsIdentity& identity, TlsOptions options) {
  const std::shared_ptr<SSL_CTX> context(SSL_CTX_new(TLS_server_method()), &SSL_CTX_free);
  check(SSL_CTX_use_certificate_file(context.get(), identity.certificate_file().c_str(),
                                     SSL_FILETYPE_PEM) == 1,
        "certificate");
  check(SSL_CTX_use_PrivateKey_file(context.get(), identity.key_file().c_str(), SSL_FILETYPE_PEM) ==
            1,
        "private key");
  SSL_CTX_set_session_cache_mode(context.get(), SSL_SESS_CACHE_OFF);
  if (options.asks_for_client_certificate) {
    SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER | SSL_VERIFY_FAIL_IF_NO_PEER_CERT, nullptr);
    check(SSL_CTX_load_verify_file(context.get(), identity.certificate_file().c_str()) == 1,
          "trusted certificate");
  }
  if (options.old_protocol_only) {
    SSL_CTX_set_security_level(context.get(), 0);
    SSL_CTX_set_min_proto_version(context.get(), TLS1_VERSION);
    SSL_CTX_set_max_proto_version(context.get(), TLS1_1_VERSION);
  }
  return [context](int socket) -> std::unique_ptr<ServerStream> {
    auto stream = std::make_unique<TlsStream>(context.get(), socket);
    if (!stream->accept()) {
      linger(socket);
      return nullptr;
    }
    return stream;
  };
}

}  // namespace bvconn::test

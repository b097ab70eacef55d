#include "sandbox/tls/certificates.h"

#include <arpa/inet.h>
#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <ctime>
#include <memory>
#include <stdexcept>

namespace bvconn::sandbox {
namespace {

/// Clocks differ.
constexpr std::chrono::hours kHeadStart{1};

template <auto kFree>
struct Free {
  template <class Object>
  void operator()(Object* object) const {
    kFree(object);
  }
};
using Key = std::unique_ptr<EVP_PKEY, Free<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Free<X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Free<X509_EXTENSION_free>>;
using Memory = std::unique_ptr<BIO, Free<BIO_free_all>>;

void require(bool is_done, const char* what) {
  if (is_done) return;
  // Only the last call's errors are told, and none stays behind for the next connection.
  std::array<char, 256> reason{};
  ERR_error_string_n(ERR_get_error(), reason.data(), reason.size());
  ERR_clear_error();
  throw std::runtime_error(std::string("cannot ") + what + ": " + reason.data());
}

Key new_key() {
  Key key(EVP_EC_gen("P-256"));
  require(key != nullptr, "make a key");
  return key;
}

Memory reader_of(const std::string& text) {
  Memory memory(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
  require(memory != nullptr, "read a text");
  return memory;
}

/// In place of asking at the terminal for the words that open a key.
int no_words(char* /*buffer*/, int /*size*/, int /*is_writing*/, void* /*data*/) {
  return 0;
}

Key key_in(const std::string& text) {
  Key key(PEM_read_bio_PrivateKey(reader_of(text).get(), nullptr, no_words, nullptr));
  require(key != nullptr, "read the key");
  return key;
}

Certificate certificate_in(const std::string& text) {
  Certificate found(PEM_read_bio_X509(reader_of(text).get(), nullptr, no_words, nullptr));
  require(found != nullptr, "read the certificate");
  return found;
}

template <class Write>
std::string written(Write write) {
  const Memory memory(BIO_new(BIO_s_mem()));
  require(memory != nullptr && write(memory.get()) == 1, "write a text");
  char* data = nullptr;
  const long size = BIO_get_mem_data(memory.get(), &data);
  return {data, static_cast<std::size_t>(size)};
}

CertifiedKey texts_of(X509* certificate, EVP_PKEY* key) {
  return {.certificate = written([&](BIO* to) { return PEM_write_bio_X509(to, certificate); }),
          .key = written([&](BIO* to) {
            return PEM_write_bio_PrivateKey(to, key, nullptr, nullptr, 0, nullptr, nullptr);
          })};
}

void extend(X509* certificate, X509* issuer, int kind, const std::string& value) {
  X509V3_CTX context;
  X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
  const Extension extension(X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str()));
  require(extension != nullptr && X509_add_ext(certificate, extension.get(), -1) == 1,
          "say what a certificate is for");
}

/// A number that no other certificate has.
std::uint64_t new_number() {
  std::uint64_t number = 0;
  require(RAND_bytes(reinterpret_cast<unsigned char*>(&number), sizeof number) == 1,
          "get a random number");
  return number >> 1U;
}

void set_time(ASN1_TIME* place, TimePoint when) {
  require(ASN1_TIME_set(place, std::chrono::system_clock::to_time_t(when)) != nullptr,
          "set a certificate's time");
}

Certificate new_certificate(const std::string& name, EVP_PKEY* key, const Validity& valid) {
  Certificate made(X509_new());
  require(made != nullptr && X509_set_version(made.get(), X509_VERSION_3) == 1 &&
              ASN1_INTEGER_set_uint64(X509_get_serialNumber(made.get()), new_number()) == 1 &&
              X509_set_pubkey(made.get(), key) == 1,
          "make a certificate");
  set_time(X509_getm_notBefore(made.get()), valid.begin);
  set_time(X509_getm_notAfter(made.get()), valid.end);
  const auto* const text = reinterpret_cast<const unsigned char*>(name.c_str());
  require(X509_NAME_add_entry_by_txt(X509_get_subject_name(made.get()), "CN", MBSTRING_UTF8, text,
                                     -1, -1, 0) == 1,
          "name a certificate");
  return made;
}

void sign(X509* certificate, X509* issuer, EVP_PKEY* key) {
  require(X509_set_issuer_name(certificate, X509_get_subject_name(issuer)) == 1 &&
              X509_sign(certificate, key, EVP_sha256()) > 0,
          "sign a certificate");
}

bool is_address(const std::string& text) {
  std::array<unsigned char, sizeof(in6_addr)> bytes{};
  return ::inet_pton(AF_INET, text.c_str(), bytes.data()) == 1 ||
         ::inet_pton(AF_INET6, text.c_str(), bytes.data()) == 1;
}

std::string listed(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& each : names) {
    text.append(text.empty() ? "" : ",").append(is_address(each) ? "IP:" : "DNS:").append(each);
  }
  return text;
}

TimePoint time_in(const ASN1_TIME* time) {
  std::tm parts{};
  require(ASN1_TIME_to_tm(time, &parts) == 1, "read a certificate's time");
  return std::chrono::system_clock::from_time_t(::timegm(&parts));
}

Validity validity_in(const X509* certificate) {
  return {.begin = time_in(X509_get0_notBefore(certificate)),
          .end = time_in(X509_get0_notAfter(certificate))};
}

/// A host's name or address; "" for what is neither.
std::string name_in(const GENERAL_NAME& name) {
  if (name.type != GEN_DNS && name.type != GEN_IPADD) return {};
  const ASN1_STRING* const value = name.type == GEN_DNS ? name.d.dNSName : name.d.iPAddress;
  const unsigned char* const bytes = ASN1_STRING_get0_data(value);
  const auto size = static_cast<std::size_t>(ASN1_STRING_length(value));
  if (name.type == GEN_DNS) return {bytes, bytes + size};
  std::array<char, INET6_ADDRSTRLEN> text{};
  const int family = size == sizeof(in_addr) ? AF_INET : AF_INET6;
  const bool is_address = size == sizeof(in_addr) || size == sizeof(in6_addr);
  if (!is_address || ::inet_ntop(family, bytes, text.data(), text.size()) == nullptr) return {};
  return text.data();
}

}  // namespace

CertifiedKey make_authority(std::chrono::hours lifetime) {
  const Key key = new_key();
  const TimePoint now = std::chrono::system_clock::now();
  // A name of its own, so that an older authority is not taken for this one.
  const Certificate made =
      new_certificate("bvsandbox authority " + std::to_string(new_number()), key.get(),
                      {.begin = now - kHeadStart, .end = now + lifetime});
  extend(made.get(), made.get(), NID_basic_constraints, "critical,CA:TRUE,pathlen:0");
  extend(made.get(), made.get(), NID_key_usage, "critical,keyCertSign,cRLSign");
  extend(made.get(), made.get(), NID_subject_key_identifier, "hash");
  sign(made.get(), made.get(), key.get());
  return texts_of(made.get(), key.get());
}

CertifiedKey make_server(const CertifiedKey& authority, const std::vector<std::string>& names,
                         std::chrono::hours lifetime) {
  const Certificate issuer = certificate_in(authority.certificate);
  const Key issuer_key = key_in(authority.key);
  const Key key = new_key();
  const TimePoint now = std::chrono::system_clock::now();
  const Certificate made = new_certificate(
      "bvsandbox", key.get(),
      {.begin = now - kHeadStart, .end = std::min(now + lifetime, validity_in(issuer.get()).end)});
  extend(made.get(), issuer.get(), NID_basic_constraints, "critical,CA:FALSE");
  extend(made.get(), issuer.get(), NID_key_usage, "critical,digitalSignature");
  extend(made.get(), issuer.get(), NID_ext_key_usage, "serverAuth");
  extend(made.get(), issuer.get(), NID_subject_alt_name, listed(names));
  extend(made.get(), issuer.get(), NID_authority_key_identifier, "keyid");
  sign(made.get(), issuer.get(), issuer_key.get());
  return texts_of(made.get(), key.get());
}

Validity validity_of(const CertifiedKey& certified) {
  const Certificate certificate = certificate_in(certified.certificate);
  const Key key = key_in(certified.key);
  require(X509_check_private_key(certificate.get(), key.get()) == 1,
          "use a key that is not the certificate's");
  return validity_in(certificate.get());
}

std::vector<std::string> server_names_in(const std::string& certificates) {
  const Certificate certificate = certificate_in(certificates);
  const std::unique_ptr<GENERAL_NAMES, Free<GENERAL_NAMES_free>> all(static_cast<GENERAL_NAMES*>(
      X509_get_ext_d2i(certificate.get(), NID_subject_alt_name, nullptr, nullptr)));
  std::vector<std::string> names;
  for (int i = 0; i < sk_GENERAL_NAME_num(all.get()); ++i) {
    const std::string name = name_in(*sk_GENERAL_NAME_value(all.get(), i));
    if (!name.empty()) names.push_back(name);
  }
  return names;
}

bool is_server_name(const std::string& name) {
  constexpr std::string_view kLetters =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._";
  constexpr std::size_t kLongest = 253;
  if (is_address(name)) return true;
  const std::string_view plain = std::string_view(name).substr(name.starts_with("*.") ? 2 : 0);
  return !plain.empty() && plain.size() <= kLongest &&
         plain.find_first_not_of(kLetters) == std::string_view::npos;
}

}  // namespace bvconn::sandbox

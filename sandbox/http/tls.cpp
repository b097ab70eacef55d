#include "sandbox/http/tls.h"

#include <openssl/ssl.h>

#include <boost/asio/buffer.hpp>
#include <boost/system/system_error.hpp>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

namespace bvconn::sandbox {
namespace asio = boost::asio;
namespace ssl = boost::asio::ssl;

namespace {

/// The pause after a renewal that failed; until then the old identity is shown.
constexpr std::chrono::minutes kRetryPause{10};

std::shared_ptr<ssl::context> context_of(const TlsIdentity& identity) {
  auto context = std::make_shared<ssl::context>(ssl::context::tls_server);
  try {
    context->set_options(ssl::context::no_compression);
    // In place of asking at the terminal for the words that open a key.
    context->set_password_callback([](std::size_t, ssl::context::password_purpose) { return ""; });
    context->use_certificate_chain(asio::buffer(identity.certificates));
    context->use_private_key(asio::buffer(identity.key), ssl::context::pem);
  } catch (const boost::system::system_error& error) {
    throw std::runtime_error("the certificate and its key cannot be used: " +
                             error.code().message());
  }
  SSL_CTX* const native = context->native_handle();
  SSL_CTX_set_min_proto_version(native, TLS1_2_VERSION);
  // Nothing is kept between connections, and little within one that rests.
  SSL_CTX_set_session_cache_mode(native, SSL_SESS_CACHE_OFF);
  SSL_CTX_set_options(native, SSL_OP_NO_TICKET | SSL_OP_NO_RENEGOTIATION);
  SSL_CTX_set_num_tickets(native, 0);
  SSL_CTX_set_mode(native, SSL_MODE_RELEASE_BUFFERS);
  return context;
}

}  // namespace

Tls::Tls(TlsSource source) : source_(std::move(source)) {
  renew();
}

std::shared_ptr<ssl::context> Tls::context() {
  if (std::chrono::system_clock::now() < renew_at_) return context_;
  try {
    renew();
  } catch (const std::exception&) {
    renew_at_ = std::chrono::system_clock::now() + kRetryPause;
  }
  return context_;
}

void Tls::renew() {
  const TlsIdentity identity = source_();
  context_ = context_of(identity);
  renew_at_ = identity.renew_at;
}

}  // namespace bvconn::sandbox

#pragma once

#include <boost/asio/ssl/context.hpp>
#include <memory>

#include "sandbox/http/server.h"

namespace bvconn::sandbox {

/// What a server shows to those that connect, changed in time for one that is valid.
class Tls {
 public:
  /// Throws std::runtime_error where the first identity cannot be used.
  explicit Tls(TlsSource source);

  /// For the next connection; it has to stay as long as that.
  std::shared_ptr<boost::asio::ssl::context> context();

 private:
  void renew();

  TlsSource source_;
  std::shared_ptr<boost::asio::ssl::context> context_;
  std::chrono::system_clock::time_point renew_at_;
};

}  // namespace bvconn::sandbox

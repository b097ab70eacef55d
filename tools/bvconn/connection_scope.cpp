#include "connection_scope.h"

#include <utility>

namespace bvconn::tool {

ConnectionScope::ConnectionScope(const Connection& connection) {
  if (const auto limit = connection.time_limit()) limit_.emplace(*limit);
  TlsFiles files = before_;
  if (connection.ca_file.given()) files.ca_file = connection.ca_file.text;
  if (connection.client_cert.given()) {
    // A key belongs to its certificate: another one's does not come along.
    files.client_cert = connection.client_cert.text;
    files.client_key.clear();
  }
  if (connection.client_key.given()) files.client_key = connection.client_key.text;
  if (files != before_) use_tls_files(std::move(files));
}

ConnectionScope::~ConnectionScope() {
  if (tls_files() != before_) use_tls_files(before_);
}

}  // namespace bvconn::tool

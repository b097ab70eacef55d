#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace bvconn::sandbox {

using TimePoint = std::chrono::system_clock::time_point;

/// A certificate and the key that belongs to it, both in the form PEM.
struct CertifiedKey {
  std::string certificate;
  std::string key;
};

struct Validity {
  TimePoint begin;
  TimePoint end;
};

/// A new authority, valid from now on. All here throw std::runtime_error where OpenSSL cannot do
/// it.
CertifiedKey make_authority(std::chrono::hours lifetime);

/// A new certificate for a server with these names, addresses among them, which the authority
/// vouches for.
CertifiedKey make_server(const CertifiedKey& authority, const std::vector<std::string>& names,
                         std::chrono::hours lifetime);

/// When the first certificate of a text is valid, and that the key is its own.
Validity validity_of(const CertifiedKey& certified);

/// The names of servers, addresses among them, for which the first certificate of a text stands.
std::vector<std::string> server_names_in(const std::string& certificates);

/// Whether a certificate can stand for this name of a server.
bool is_server_name(const std::string& name);

}  // namespace bvconn::sandbox

#pragma once

#include <string>
#include <vector>

#include "sandbox/http/server.h"

namespace bvconn::sandbox {

/// How a server comes to what it shows by TLS.
struct TlsOptions {
  bool is_on = false;
  /// Of the authority of its own; "" for `default_tls_folder`.
  std::string folder;
  /// Of the server, besides 127.0.0.1, ::1, localhost and the address that it listens on.
  std::vector<std::string> names;
  /// The user's own files in the place of all that.
  std::string certificate_file, key_file;
};

struct TlsSetup {
  TlsSource source{};
  /// For clients to trust; "" where the certificate is the user's own.
  std::string authority_file{};
};

/// An authority that is made once and kept in a folder vouches for a certificate that is made for
/// this process alone, and anew before it ends. The user's own files are read anew now and then.
/// Throws std::runtime_error, in one clear line.
TlsSetup tls_setup(const TlsOptions& options, const std::string& listening_address);

/// Below the folder in which this user's programs keep what they write; "" without a home.
std::string default_tls_folder();
/// Where an authority in this folder is to be found.
std::string authority_file_in(const std::string& folder);

}  // namespace bvconn::sandbox

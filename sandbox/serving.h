#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "sandbox/http/server.h"
#include "sandbox/tls/tls_source.h"

namespace CLI {
class App;
}

namespace bvconn::sandbox {

/// Where a server of this program is to be had, until when, and what it tells: the same for all
/// that it serves.
struct ServingOptions {
  /// Numeric, once it is taken.
  std::string address = "127.0.0.1";
  std::uint16_t port = 0;
  TlsOptions tls;
  bool until_eof = false;
  bool verbose = false;
  /// Whether a browser finds a page there.
  bool has_page = false;
};

/// Adds the options to a command line; `listen_help` says what --listen is for.
void add_serving_options(CLI::App& app, ServingOptions& options, const std::string& listen_help);

/// Takes what was read into them: the address in its usual form, and TLS where any of its options
/// is there. Throws std::invalid_argument for what cannot work.
void take_serving_options(ServingOptions& options);

/// A server that has begun to listen.
struct Reached {
  std::string url;             ///< as a program of this machine comes to it, without a path
  std::string authority_file;  ///< that clients have to trust; "" where there is none
};

/// Serves until a signal ends it, or the end of standard input where the options say so, and tells
/// on standard output when it is ready; `begin` is called before that. `end` is called when nobody
/// is answered any more, before what handlers still do is waited for. The process takes as many
/// descriptors as it may have.
void serve(const ServingOptions& options, const Limits& limits, const Server::Handler& handler,
           const std::function<void(const Reached&)>& begin = {},
           const std::function<void()>& end = {});

}  // namespace bvconn::sandbox

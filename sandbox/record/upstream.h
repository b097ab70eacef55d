#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/tls_files.h"
#include "sandbox/http/message.h"

namespace bvconn::sandbox {

/// The addresses of the server whose exchanges are recorded.
struct UpstreamAddresses {
  std::string soap;
  std::string dal;  ///< without a slash at its end
};

/// Of a URL without a path: what lies at /soap and /dal below it. Another one is the SOAP address
/// itself, and the data access layer is its neighbour `dal`; `dal` says where it is if that is
/// elsewhere. Throws std::invalid_argument for what is no URL of http or https.
UpstreamAddresses upstream_addresses(std::string_view url, std::string_view dal);

/// Passes requests on to the server, from any thread.
class Upstream {
 public:
  /// Where a reply may be larger, or take longer, there is none.
  static constexpr std::size_t kMostReplyBytes = std::size_t{64} << 20;
  static constexpr std::chrono::seconds kPatience{300};

  /// With these files for https, as with the library.
  explicit Upstream(TlsFiles files);
  ~Upstream();

  /// The server's reply. Throws bvconn::Error where there is none, or not all of it.
  Reply send(const std::string& url, const Request& request);

 private:
  class Line;

  std::unique_ptr<Line> take_line();

  const TlsFiles files_;
  std::mutex mutex_;
  std::vector<std::unique_ptr<Line>> lines_;  ///< that nobody uses at the moment
};

}  // namespace bvconn::sandbox

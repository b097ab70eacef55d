#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "hostile/hostile_bytes.h"
#include "hostile/hostile_file.h"
#include "support/misbehaving_server.h"
#include "support/tls_server.h"

namespace bvconn::test {

/// What a good call comes back with.
inline constexpr std::string_view kGoodValue = "good";

/// The answer to every request that nothing hostile was scripted for; on both routes.
Answer good_answer();

/// The server of a case: good until it is armed, hostile once, then good again, where its
/// certificate allows.
class HostileServer {
 public:
  explicit HostileServer(const HostileCase& hostile);

  /// From now on so many requests are answered well, the next one as the case tells.
  void arm(const HostileCase& hostile, const Holes& holes, int good_ones);
  /// Whether the last step of the case ends the connection, or waits for the client to do so.
  bool ends_connection() const { return ends_connection_; }
  /// Whether a good call can be made to it: it is taking connections, and may be trusted.
  bool get_well();

  /// Where it is reached, with a user and a password that nothing may show.
  std::string url(std::string_view path) const;
  /// The file of the authority to be trusted; "" for the system's.
  std::string authority() const;

  MisbehavingServer& sockets() { return *sockets_; }
  const MisbehavingServer& sockets() const { return *sockets_; }

 private:
  /// The steps of the moments ahead of a request; of the first connection only.
  struct Ahead {
    std::atomic<bool> armed{false};
    bool is_tunnel = false;
    Answer accepted;
    Answer tunnel;
  };

  static MisbehavingServer::StreamMaker streams(const std::shared_ptr<Ahead>& ahead,
                                                MisbehavingServer::StreamMaker within);
  MisbehavingServer::StreamMaker inner_streams();

  std::string kind_;
  std::string through_;
  bool ends_connection_ = false;
  std::shared_ptr<Ahead> ahead_ = std::make_shared<Ahead>();
  std::unique_ptr<TlsIdentity> identity_;
  std::unique_ptr<TlsIdentity> other_;
  std::unique_ptr<MisbehavingServer> sockets_;
};

}  // namespace bvconn::test

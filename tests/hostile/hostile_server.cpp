#include "hostile/hostile_server.h"

#include <sys/socket.h>

#include <stdexcept>
#include <utility>

namespace bvconn::test {
namespace {

using Moment = HostileStep::Moment;

constexpr std::string_view kTunnelMade = "HTTP/1.1 200 Connection established\r\n\r\n";

bool is_secure(std::string_view kind) {
  return kind == "tls" || kind.starts_with("tls ");
}

MisbehavingServer::Until until_of(std::string_view kind) {
  if (kind == "none") return MisbehavingServer::Until::kStarted;
  if (kind == "full") return MisbehavingServer::Until::kFull;
  return MisbehavingServer::Until::kNoMatter;
}

// Reads the request for a tunnel, and not a byte of what is said inside the tunnel.
bool read_head(int socket) {
  std::string head;
  while (!head.ends_with("\r\n\r\n")) {
    char byte = 0;
    if (::recv(socket, &byte, 1, 0) != 1) return false;
    head.push_back(byte);
  }
  return true;
}

}  // namespace

Answer good_answer() {
  return answers::reply(response_around("<return>" + std::string(kGoodValue) + "</return>"),
                        "200 OK", answers::kXml, {{"Session-Token", "T-1"}});
}

HostileServer::HostileServer(const HostileCase& hostile)
    : kind_(hostile.server), through_(hostile.through) {
  if (is_secure(kind_)) {
    TlsNames names;
    names.expired = kind_ == "tls expired";
    if (kind_ == "tls other name") names.names = "DNS:elsewhere.example";
    identity_ = std::make_unique<TlsIdentity>(names);
    other_ = std::make_unique<TlsIdentity>();
  }
  ahead_->is_tunnel = through_ == "proxy" && is_secure(kind_);
  const auto until = through_ == "no proxy" ? MisbehavingServer::Until::kStarted : until_of(kind_);
  sockets_ = std::make_unique<MisbehavingServer>(streams(ahead_, inner_streams()), until);
  sockets_->otherwise(good_answer());
}

MisbehavingServer::StreamMaker HostileServer::inner_streams() {
  if (!is_secure(kind_)) return plain_streams();
  return tls_streams(*identity_, {.asks_for_client_certificate = kind_ == "tls demanding",
                                  .old_protocol_only = kind_ == "tls old"});
}

MisbehavingServer::StreamMaker HostileServer::streams(const std::shared_ptr<Ahead>& ahead,
                                                      MisbehavingServer::StreamMaker within) {
  return [ahead, within = std::move(within)](int socket) -> std::unique_ptr<ServerStream> {
    const std::unique_ptr<ServerStream> plain = plain_streams()(socket);
    const bool hostile = ahead->armed.exchange(false);
    if (hostile && !play(ahead->accepted, socket, *plain)) return nullptr;
    if (ahead->is_tunnel) {
      if (!read_head(socket)) return nullptr;
      const Answer good = answers::raw(kTunnelMade);
      const bool has_own = hostile && !ahead->tunnel.empty();
      if (!play(has_own ? ahead->tunnel : good, socket, *plain)) return nullptr;
    }
    return within(socket);
  };
}

void HostileServer::arm(const HostileCase& hostile, const Holes& holes, int good_ones) {
  ahead_->accepted = answer_of(hostile, Moment::kAccepted, holes);
  ahead_->tunnel = answer_of(hostile, Moment::kTunnel, holes);
  Answer asked = answer_of(hostile, Moment::kAsked, holes);
  if (!asked.empty()) {
    for (int i = 0; i < good_ones; ++i) sockets_->answer(good_answer());
    sockets_->answer(std::move(asked));
  }
  if (!hostile.steps.empty()) {
    const HostileStep& last = hostile.steps.back();
    ends_connection_ = last.kind == HostileStep::Kind::kRepeat ||
                       (last.kind == HostileStep::Kind::kThen && !last.text.starts_with("wait"));
  }
  ahead_->armed = !ahead_->accepted.empty() || !ahead_->tunnel.empty();
}

bool HostileServer::get_well() {
  if (kind_ == "none" || kind_ == "full" || through_ == "no proxy") sockets_->start();
  return !kind_.starts_with("tls ");
}

std::string HostileServer::url(std::string_view path) const {
  std::string url = is_secure(kind_) ? "https" : "http";
  url.append("://joe:pass%20word@");
  url.append(through_.empty() ? sockets_->host() : "localhost:1");
  return url.append(path);
}

std::string HostileServer::authority() const {
  if (!is_secure(kind_) || kind_ == "tls unknown") return "";
  return kind_ == "tls other authority" ? other_->certificate_file()
                                        : identity_->certificate_file();
}

}  // namespace bvconn::test

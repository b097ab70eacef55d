#pragma once

#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/error.h"
#include "bvconn/platform/http/http_client.h"
#include "bvconn/platform/http/http_transport.h"
#include "bvconn/platform/text_buffer.h"

namespace bvconn::detail {

/// The transport over the system's sockets: what SOAP needs of HTTP, on a client of its own.
class SocketTransport final : public HTTPTransport {
 public:
  SocketTransport();

  void Option(std::string_view key, std::string_view value) override;
  void setProxy(std::string_view host, std::string_view port) override;
  void NoProxy() override;
  void SOAPAction(std::string_view value) override;
  void Timeout(std::int32_t milliseconds) override;
  void Send(std::string_view url, std::string_view text) override;
  std::string Receive(std::string_view encoding) override;
  /// As `Receive`, without a copy of the body.
  TextBuffer receive_buffer();
  std::string LastReply() const override;
  const WireFacts* LastWire() const override { return &client_.facts(); }

 private:
  TlsFiles tls() const;

  HttpClient client_;
  // Set as options; what is not set is the thread's.
  std::optional<std::string> ca_file_;
  std::optional<std::string> client_cert_;
  std::optional<std::string> client_key_;
  std::string tracing_file_;
  std::uint64_t reply_size_max_ = std::uint64_t{1} << 30;
  std::chrono::milliseconds connect_time_out_{(std::numeric_limits<std::int32_t>::max)()};
  std::chrono::milliseconds time_out_{0};
  std::optional<HttpProxy> proxy_;
  std::vector<std::string> headers_;  ///< of the next request

  // What the last Send brought: the body of the reply, or why Receive has none to give.
  std::optional<TextBuffer> body_;
  std::optional<Error> no_body_;  ///< nothing where `without_body_` says it
  std::string_view without_body_ = "nothing was sent";
  // What it said of itself, for `LastReply`.
  std::string last_url_;
  std::string last_reason_;
  int last_status_ = 0;  ///< 0: no reply came
};

}  // namespace bvconn::detail

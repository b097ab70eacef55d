#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "bvconn/platform/exchange/wire_facts.h"
#include "bvconn/platform/export.h"

namespace bvconn {

/// One HTTP conversation with the server: what a request sets on it stays set until the next one
/// overwrites it. A transport is used on one thread only.
///
/// A request goes out once: where the connection is lost, closed or reset after it began to go out,
/// that is error 0x80044307, and the server may have acted on it.
///
/// Errors are `Error`s with the source "HTTPTransport" and the numbers 0x80044301 to 0x80044309.
class BVCONN_EXPORT HTTPTransport {
 public:
  virtual ~HTTPTransport();

  /// Sets an option. Keys: `tracing.file` (raw traffic is appended to this file), `tls.ca_file`,
  /// `tls.client_cert`, `tls.client_key`, `http.max_reply_bytes` (counted after decompression;
  /// default 1 GiB), `http.connect_timeout_ms`. An unknown key is error 0x80044309.
  ///
  /// A TLS file that is set here stands above that of `use_tls_files` and the environment; "" is
  /// none at all. Of client certificate and key, setting one sets both.
  virtual void Option(std::string_view key, std::string_view value) = 0;
  /// Sends through an HTTP proxy from now on. What is wrong with it shows in `Send` (0x80044304).
  virtual void setProxy(std::string_view host, std::string_view port) = 0;
  /// Connects straight to the server from now on; proxies of the environment never count.
  virtual void NoProxy() = 0;
  /// The SOAPAction header of the next sends, written in quotes. Until it is set for the first time
  /// the header is left out. A control character in it is error 0x80044308, and the value that was
  /// set before stays.
  virtual void SOAPAction(std::string_view value) = 0;
  /// Milliseconds for a whole exchange, connecting included; negative or 0 for no limit.
  virtual void Timeout(std::int32_t milliseconds) = 0;
  /// Posts `text` to `url` and runs the exchange. Fails when no reply could be had: bad URL,
  /// cannot resolve or connect, proxy, TLS, time-out, connection lost before the status line.
  virtual void Send(std::string_view url, std::string_view text) = 0;
  /// The body of the reply to the last `Send`, as bytes, handed out once. Fails with whatever is
  /// wrong with that reply: status, size, cut short, malformed; and with 0x80044306 when there is
  /// none: nothing was sent, the last `Send` failed, or it was received already. `encoding` is
  /// "UTF-8"; the bytes are not changed.
  virtual std::string Receive(std::string_view encoding) = 0;
  /// What the server answered to the last `Send`, for people: "the server answered to URL with the
  /// status 500 Internal Server Error", without user and password. Errors over the text of a reply
  /// add it to their descriptions. "" where no reply came; a transport of one's own need not say.
  virtual std::string LastReply() const;
  /// What else the last `Send` showed, for the record of exchanges; it stands until the next one. A
  /// transport of one's own need not say: null.
  virtual const WireFacts* LastWire() const;
};

/// The transport over the system's sockets.
BVCONN_EXPORT std::shared_ptr<HTTPTransport> make_http_transport();

}  // namespace bvconn

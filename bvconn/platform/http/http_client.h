#pragma once

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "bvconn/platform/exchange/wire_facts.h"
#include "bvconn/platform/http/http_handle.h"
#include "bvconn/platform/http/http_reply.h"
#include "bvconn/platform/http/http_request.h"

namespace bvconn::detail {

/// The one owner of a libcurl handle, which keeps at most one connection alive between exchanges.
///
/// No request goes out twice, kept connection or new: once it began to go out, the server may have
/// acted on it, whatever became of the connection then. A kept connection is looked at before it is
/// used, and let go of where it was closed or is about to be, where it leads elsewhere, and where
/// it was trusted under other TLS files.
///
/// A connection is always let go of together with the handle: libcurl alone would hold the socket
/// of a secure one until the server has said goodbye too, and sees to that in its next run only.
class HttpClient {
 public:
  /// Runs one exchange. Fails where no reply came about: a bad URL, nothing to connect to, a proxy
  /// that leads nowhere, a TLS file that cannot be read, TLS, a time-out, a connection that was
  /// lost before the status line. The error says whether the request had begun to go out.
  /// @return The reply as far as it came; what is wrong with it is its own `error`.
  HttpReply post(const HttpRequest& request, const ReplyRules& rules);

  /// What the last exchange showed on the wire; cleared when the next one begins.
  const WireFacts& facts() const { return facts_; }
  void clear_facts() { facts_.clear(); }

  /// Lets go of the kept connection, so that the next request makes a new one.
  void disconnect() { handle_.reset(); }

 private:
  HttpReply run(const HttpRequest& request, const ReplyRules& rules);
  CURLcode perform(const HttpRequest& request, ParsedUrl url, HttpExchange& exchange);
  std::unique_ptr<HttpHandle> take_handle(const HttpRequest& request);

  std::unique_ptr<HttpHandle> handle_;
  std::chrono::steady_clock::time_point last_use_;
  WireFacts facts_;
};

}  // namespace bvconn::detail

#pragma once

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/http/http_exchange.h"
#include "bvconn/platform/http/http_request.h"
#include "bvconn/platform/http/parsed_url.h"
#include "bvconn/platform/tls_files.h"

namespace bvconn::detail {

/// A libcurl handle that stays set up between requests: a request sets what it has otherwise than
/// the one before. What is the same for all requests of a connection, its proxy and its TLS among
/// it, is set once; a handle whose connection leads elsewhere is not to be used.
///
/// Where an option cannot be set the handle is set up by halves, and has to go.
class HttpHandle {
 public:
  /// A handle with all that does not depend on what is sent, for connections like the one that this
  /// request needs. `proxy` is its URL, or "".
  HttpHandle(const HttpRequest& request, const std::string& proxy);
  HttpHandle(const HttpHandle&) = delete;
  HttpHandle& operator=(const HttpHandle&) = delete;

  /// Whether a connection of this handle leads where the request has to go, and is trusted as it
  /// asks for.
  bool leads_for(const HttpRequest& request) const;
  /// Whether this URL was sent to before, so that it is known to be good.
  bool knows(std::string_view url) const { return url == url_; }
  /// The socket of its connection; CURL_SOCKET_BAD where there is none.
  curl_socket_t active_socket() const;

  /// The URL of its next requests, which is that of this one, and taken apart.
  void go_to(const HttpRequest& request, ParsedUrl url);
  /// Runs an exchange with the URL of the last `go_to`; the handle has it until `let_go`.
  CURLcode run(const HttpRequest& request, HttpExchange& exchange);
  /// Leaves nothing in the handle that points to an exchange or its request; false where libcurl
  /// would not let go.
  bool let_go();

 private:
  struct Cleanup {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  };
  struct FreeList {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };
  using HeaderList = std::unique_ptr<curl_slist, FreeList>;

  void set_up(const HttpRequest& request, const std::string& proxy);
  void set_up_tls(const HttpRequest& request);
  void set_changes(const HttpRequest& request);
  void set_headers(const HttpRequest& request);

  // Before the handle, which uses them until it is gone.
  RunningExchange running_;
  HeaderList header_list_;
  ParsedUrl parsed_url_;
  std::unique_ptr<CURL, Cleanup> handle_;

  std::string origin_;
  std::optional<HttpProxy> proxy_;
  TlsFiles tls_;
  // As they are set.
  std::string url_;
  std::vector<std::string> headers_;
  std::optional<std::chrono::milliseconds> time_out_;
  std::optional<std::chrono::milliseconds> connect_time_out_;
  std::optional<bool> is_watched_;
};

}  // namespace bvconn::detail

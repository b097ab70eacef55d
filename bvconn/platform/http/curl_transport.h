#pragma once

#include <curl/curl.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/error.h"
#include "bvconn/platform/http/http_transport.h"

namespace bvconn::detail {

/// The transport over libcurl: one handle, which keeps at most one connection alive between calls.
///
/// Nothing is ever sent twice, with one exception. A server may close a kept connection just while
/// the next request is on its way. Where the system tells of a reset, the server did not take the
/// request in, and it goes out again on a new connection. Where the server closed in order and
/// without a word, it may have acted on the request: that is error 0x80044307.
class CurlTransport final : public HTTPTransport {
 public:
  CurlTransport();
  ~CurlTransport() override;

  void Option(std::string_view key, std::string_view value) override;
  void setProxy(std::string_view host, std::string_view port) override;
  void NoProxy() override;
  void SOAPAction(std::string_view value) override;
  void Timeout(std::int32_t milliseconds) override;
  void Send(std::string_view url, std::string_view text) override;
  std::string Receive(std::string_view encoding) override;

 private:
  struct HandleDeleter {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  };
  struct ListDeleter {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };
  using HeaderList = std::unique_ptr<curl_slist, ListDeleter>;
  struct Exchange;

  static int on_close(void* self, curl_socket_t socket);
  void set_tls_file(std::string& setting, std::string file);
  void take_clean_handle();
  HeaderList request_headers() const;
  std::string proxy_url(std::string_view shown_url) const;
  void prepare(Exchange& exchange, const std::string& url, std::string_view text,
               curl_slist* headers);
  void prepare_limits();
  void prepare_tls();
  void prepare_callbacks(Exchange& exchange);
  bool was_cut_by_tls(const Exchange& exchange, CURLcode code) const;
  void conclude(Exchange& exchange, CURLcode code);
  Error judge(const Exchange& exchange, CURLcode code) const;
  template <typename Value>
  void set(CURLoption option, Value value);

  // Written when libcurl closes a connection, so that it has to outlive the handle.
  bool saw_reset_ = false;
  std::unique_ptr<CURL, HandleDeleter> handle_;

  std::string tracing_file_;
  std::string ca_file_;
  std::string client_cert_;
  std::string client_key_;
  std::uint64_t reply_size_max_ = std::uint64_t{1} << 30;
  std::int32_t connect_timeout_ms_ = std::numeric_limits<std::int32_t>::max();
  std::int32_t timeout_ms_ = -1;
  bool uses_proxy_ = false;
  std::string proxy_host_;
  std::string proxy_port_;
  std::optional<std::string> soap_action_;

  // What the last Send brought: the body of the reply, or why Receive has none to give.
  std::optional<std::string> body_;
  Error no_body_;
};

}  // namespace bvconn::detail

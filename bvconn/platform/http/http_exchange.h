#pragma once

#include <curl/curl.h>

#include <array>
#include <cstddef>
#include <string>

#include "bvconn/platform/error.h"
#include "bvconn/platform/http/http_reply.h"
#include "bvconn/platform/http/http_request.h"
#include "bvconn/platform/http/traffic_file.h"
#include "bvconn/platform/http/wire_meter.h"

namespace bvconn::detail {

/// One exchange while libcurl runs it: what its callbacks work on, and what came of it. It has to
/// outlive the run, and so has the request.
class HttpExchange {
 public:
  HttpExchange(const HttpRequest& request, const ReplyRules& rules, WireFacts& facts);
  HttpExchange(const HttpExchange&) = delete;
  HttpExchange& operator=(const HttpExchange&) = delete;

  /// Makes the handle's next run this exchange.
  void attach_to(CURL* handle);

  /// Leaves nothing in the handle that points to an exchange or its request; false where libcurl
  /// would not let go.
  static bool detach_from(CURL* handle);

  /// Reads what the handle knows of the run, as long as it does.
  void measure(CURL* handle) { meter_.read(handle); }

  /// What came of the run, which ended with this code. Fails where no reply came about.
  HttpReply finish(CURLcode code);

 private:
  static std::size_t on_header(char* data, std::size_t size, std::size_t count, void* self);
  static std::size_t on_body(char* data, std::size_t size, std::size_t count, void* self);
  static int on_traffic(CURL* handle, curl_infotype type, char* data, std::size_t size, void* self);
  static int on_new_socket(void* self, curl_socket_t socket, curlsocktype purpose);
  static int on_progress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent);
  static int on_request(void* self, char* server, char* local, int server_port, int local_port);

  template <typename Take>
  std::size_t guarded(std::size_t size, Take take) noexcept;
  bool take_tunnel_header(std::string_view line);
  bool lacks_end_of_tls() const;
  std::int32_t trouble_number(CURLcode code, std::string_view detail) const;
  Error trouble(CURLcode code) const;
  Error failure(std::int32_t number, std::string_view detail) const;

  const HttpRequest& request_;
  std::string shown_url_;
  bool secure_;
  HttpReply reply_;
  TrafficFile traffic_;
  WireFacts& facts_;
  WireMeter meter_;
  std::array<char, CURL_ERROR_SIZE> error_text_{};
  bool request_went_out_ = false;
  std::string tunnel_status_;   ///< what a proxy answered when it was asked for a tunnel
  std::string tunnel_trouble_;  ///< why there is none; "" where nothing speaks against it
  std::size_t tunnel_head_size_ = 0;
  bool tls_ended_ = false;
  bool out_of_memory_ = false;
};

}  // namespace bvconn::detail

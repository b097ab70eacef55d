#pragma once

#include <curl/curl.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

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

  /// Reads what the handle knows of the run, as long as it does.
  void measure(CURL* handle) { meter_.read(handle); }

  /// What came of the run, which ended with this code. Fails where no reply came about.
  HttpReply finish(CURLcode code);

 private:
  friend class RunningExchange;
  static HttpExchange& of(void* running);
  static std::size_t on_header(char* data, std::size_t size, std::size_t count, void* running);
  static std::size_t on_body(char* data, std::size_t size, std::size_t count, void* running);
  static int on_traffic(CURL* handle, curl_infotype type, char* data, std::size_t size,
                        void* running);
  static int on_new_socket(void* running, curl_socket_t socket, curlsocktype purpose);
  static int on_progress(void* running, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent);
  static int on_request(void* running, char* server, char* local, int server_port, int local_port);

  template <typename Take>
  std::size_t guarded(std::size_t size, Take take) noexcept;
  void trace(TrafficFile::Direction direction, std::string_view bytes);
  bool take_tunnel_header(std::string_view line);
  bool lacks_end_of_tls() const;
  std::int32_t trouble_number(CURLcode code, std::string_view detail) const;
  Error trouble(CURLcode code) const;
  Error failure(std::int32_t number, std::string_view detail) const;

  const HttpRequest& request_;
  bool secure_;
  HttpReply reply_;
  std::optional<TrafficFile> traffic_;
  WireFacts& facts_;
  WireMeter meter_;
  std::string error_text_;  ///< what libcurl has to say of a run that failed
  bool request_went_out_ = false;
  std::string tunnel_status_;   ///< what a proxy answered when it was asked for a tunnel
  std::string tunnel_trouble_;  ///< why there is none; "" where nothing speaks against it
  std::size_t tunnel_head_size_ = 0;
  bool tls_ended_ = false;
  bool out_of_memory_ = false;
};

/// What a handle's callbacks find the exchange by that it runs, so that they are set once.
class RunningExchange {
 public:
  RunningExchange() = default;
  RunningExchange(const RunningExchange&) = delete;
  RunningExchange& operator=(const RunningExchange&) = delete;

  /// Makes the handle report to this object, which it has to be outlived by.
  void watch(CURL* handle, std::string_view source);
  void begin(HttpExchange& exchange) { exchange_ = &exchange; }
  /// Hands the exchange what libcurl has to say besides, when its run has failed.
  void note_error();
  void end() { exchange_ = nullptr; }

 private:
  friend class HttpExchange;

  HttpExchange* exchange_ = nullptr;
  std::array<char, CURL_ERROR_SIZE> error_text_{};
};

}  // namespace bvconn::detail

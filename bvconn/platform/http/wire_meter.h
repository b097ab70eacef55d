#pragma once

#include <curl/curl.h>

#include <chrono>
#include <cstdint>
#include <string_view>

#include "bvconn/platform/exchange/wire_facts.h"

namespace bvconn::detail {

/// Notes what one run of libcurl shows of an exchange: whether the request began to go out, the
/// headers of the reply, times and counts.
class WireMeter {
 public:
  /// Writes into `facts`, which the caller has cleared.
  WireMeter(WireFacts& facts, std::uint64_t request_size)
      : facts_(facts), request_size_(request_size) {}

  void request_begins();
  /// So much of the request's body has gone out by now.
  void request_goes_on(std::uint64_t sent);
  void take_header(std::string_view line);
  /// To be called when the run has ended and the handle still knows it.
  void read(CURL* handle);

 private:
  using Clock = std::chrono::steady_clock;

  WireFacts& facts_;
  std::uint64_t request_size_;
  Clock::time_point begun_at_;
  std::int64_t send_us_ = 0;
  bool sent_ = false;
};

}  // namespace bvconn::detail

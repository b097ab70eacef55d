#include "bvconn/platform/http/wire_meter.h"

#include <algorithm>
#include <utility>

namespace bvconn::detail {
namespace {

std::int64_t number_of(CURL* handle, CURLINFO key) {
  curl_off_t number = 0;
  curl_easy_getinfo(handle, key, &number);
  return number;
}

long small_number_of(CURL* handle, CURLINFO key) {
  long number = 0;
  curl_easy_getinfo(handle, key, &number);
  return number;
}

/// Cuts the time of a run into its steps. A step that the run did not get through has all that was
/// left, and those after it have nothing.
class Steps {
 public:
  explicit Steps(std::int64_t total_us) : total_us_(total_us) {}

  /// The time from the end of the last step to `end_us`; 0 stands for an end that never came.
  std::int64_t until(std::int64_t end_us) {
    if (ended_) return 0;
    ended_ = end_us == 0;
    const std::int64_t end =
        ended_ ? total_us_ : std::clamp(end_us, last_us_, std::max(last_us_, total_us_));
    return end - std::exchange(last_us_, end);
  }

 private:
  std::int64_t total_us_;
  std::int64_t last_us_ = 0;
  bool ended_ = false;
};

bool is_secure(CURL* handle) {
  const char* scheme = nullptr;
  curl_easy_getinfo(handle, CURLINFO_SCHEME, &scheme);
  return scheme != nullptr && (*scheme == 'h' || *scheme == 'H') &&
         std::string_view(scheme).size() == 5;
}

}  // namespace

void WireMeter::request_begins() {
  facts_.went_out = true;
  begun_at_ = Clock::now();
}

void WireMeter::request_goes_on(std::uint64_t sent) {
  if (sent_ || !facts_.went_out || sent < request_size_) return;
  sent_ = true;
  send_us_ =
      std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begun_at_).count();
}

void WireMeter::take_header(std::string_view line) {
  facts_.reply_headers.append(line);
}

void WireMeter::read(CURL* handle) {
  // Some versions of libcurl tell what a reply calls its status even where it refuses the reply.
  const long status = small_number_of(handle, CURLINFO_RESPONSE_CODE);
  facts_.http_status = status < 100 ? 0 : static_cast<std::int32_t>(status);
  facts_.bytes_sent = static_cast<std::uint64_t>(number_of(handle, CURLINFO_SIZE_UPLOAD_T));
  facts_.bytes_received = static_cast<std::uint64_t>(number_of(handle, CURLINFO_SIZE_DOWNLOAD_T));
  const std::int64_t total = number_of(handle, CURLINFO_TOTAL_TIME_T);
  const std::int64_t ready = number_of(handle, CURLINFO_PRETRANSFER_TIME_T);
  Steps steps(total);
  ExchangeTimes& times = facts_.times;
  times.total_us = total;
  if (facts_.went_out && small_number_of(handle, CURLINFO_NUM_CONNECTS) == 0) {
    steps.until(ready);  // A kept connection: there was nothing to resolve or to connect.
  } else {
    times.name_us = steps.until(number_of(handle, CURLINFO_NAMELOOKUP_TIME_T));
    times.connect_us = steps.until(number_of(handle, CURLINFO_CONNECT_TIME_T));
    if (is_secure(handle)) {
      times.tls_us = steps.until(number_of(handle, CURLINFO_APPCONNECT_TIME_T));
    }
  }
  if (!facts_.went_out) return;
  const std::int64_t answered = number_of(handle, CURLINFO_STARTTRANSFER_TIME_T);
  // That all is sent may be noted late, on a busy machine even after the answer.
  const std::int64_t noted = ready + send_us_;
  const std::int64_t sent = answered > 0 ? std::min(noted, answered) : noted;
  times.send_us = steps.until(sent_ ? sent : 0);
  times.wait_us = steps.until(answered);
  times.receive_us = steps.until(total);
}

}  // namespace bvconn::detail

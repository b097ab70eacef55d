#include "bvconn/platform/http/traffic_file.h"

#include <chrono>
#include <cstdint>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/date.h"
#include "bvconn/platform/logging/append_file.h"

namespace bvconn::detail {
namespace {

constexpr std::size_t kPendingMax = std::size_t{4} << 20;

std::string utc_text() {
  using namespace std::chrono;
  const auto since_1970 = duration_cast<milliseconds>(system_clock::now().time_since_epoch());
  Date date = from_civil({.year = 1970, .month = 1, .day = 1});
  date.milliseconds += since_1970.count();
  return conversions::iso_date_text(date) + "Z";
}

}  // namespace

TrafficFile::TrafficFile(std::string path, std::string_view shown_url) : path_(std::move(path)) {
  if (!path_.empty()) {
    pending_ = "=== " + utc_text() + " ";
    pending_.append(shown_url).append("\n");
  }
}

TrafficFile::~TrafficFile() {
  if (!pending_.empty() && last_ != '\n') {
    pending_.push_back('\n');
  }
  flush();
}

void TrafficFile::add(Direction direction, std::string_view bytes) {
  if (path_.empty() || bytes.empty()) {
    return;
  }
  if (direction != std::exchange(direction_, direction) && last_ != '\n') {
    pending_.push_back('\n');
  }
  pending_.append(bytes);
  last_ = bytes.back();
  if (pending_.size() > kPendingMax) {
    flush();
  }
}

void TrafficFile::flush() noexcept {
  if (pending_.empty()) {
    return;
  }
  // A few operations trace into the log file, which may be put aside at any time.
  try_append_to_file(path_, pending_);
  pending_.clear();
}

}  // namespace bvconn::detail

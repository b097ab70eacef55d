#pragma once

#include <string>
#include <string_view>

namespace bvconn::detail {

/// The record of one exchange in the tracing file. It is collected and appended in one write, so
/// that the exchanges of several threads and processes stand one after another; only a very large
/// one goes out in several pieces. File and folders are made for their owner alone. A file that
/// cannot be written costs the record, not the call.
class TrafficFile {
 public:
  enum class Direction { kOut, kIn };

  /// A record for the exchange with `shown_url`; with an empty path nothing is recorded.
  TrafficFile(std::string path, std::string_view shown_url);
  ~TrafficFile();
  TrafficFile(const TrafficFile&) = delete;
  TrafficFile& operator=(const TrafficFile&) = delete;

  /// Bytes as they crossed the wire. The reply begins on a line of its own.
  void add(Direction direction, std::string_view bytes);

 private:
  void flush() noexcept;

  std::string path_;
  std::string pending_;
  Direction direction_ = Direction::kOut;
  char last_ = '\n';
};

}  // namespace bvconn::detail

#pragma once

#include <zlib.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace bvconn::detail {

/// Unpacks a gzip stream as its pieces arrive. libcurl could do it, but takes a stream that was cut
/// for a complete one.
class GzipReader {
 public:
  enum class Outcome { kGood, kTooLarge, kMalformed };

  GzipReader();
  ~GzipReader();
  GzipReader(const GzipReader&) = delete;
  GzipReader& operator=(const GzipReader&) = delete;

  /// Appends what the piece unpacks to, and stops soon after `out` has passed `size_max`. After
  /// another outcome than kGood the reader is not to be used again.
  Outcome read(std::string_view piece, std::string& out, std::uint64_t size_max);

  /// Whether the stream may end here: nothing came at all, or its last check sum did and was right.
  bool complete() const { return at_start_ || at_end_; }

 private:
  z_stream stream_{};
  bool at_start_ = true;
  bool at_end_ = false;
};

}  // namespace bvconn::detail

#pragma once

#include <zlib.h>

#include <functional>
#include <string_view>

namespace bvconn::detail {

/// Unpacks a gzip stream as its pieces arrive. libcurl could do it, but takes a stream that was cut
/// for a complete one.
class GzipReader {
 public:
  enum class Outcome { kGood, kRefused, kMalformed };
  /// Takes what was unpacked, in small pieces; false when it wants no more.
  using Take = std::function<bool(std::string_view)>;

  GzipReader();
  ~GzipReader();
  GzipReader(const GzipReader&) = delete;
  GzipReader& operator=(const GzipReader&) = delete;

  /// Hands on what the piece unpacks to, until that is refused. After another outcome than kGood
  /// the reader is not to be used again.
  Outcome read(std::string_view piece, const Take& take);

  /// Whether the stream may end here: nothing came at all, or its last check sum did and was right.
  bool complete() const { return at_start_ || at_end_; }

 private:
  z_stream stream_{};
  bool at_start_ = true;
  bool at_end_ = false;
};

}  // namespace bvconn::detail

#pragma once

#include <zlib.h>

#include <stdexcept>
#include <string>
#include <string_view>

namespace bvconn::test {

/// The text as one gzip stream.
inline std::string gzip(std::string_view text) {
  z_stream stream{};
  if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, MAX_WBITS + 16, 9,
                   Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::runtime_error("zlib cannot be set up");
  }
  std::string packed(deflateBound(&stream, static_cast<uLong>(text.size())), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  const int code = deflate(&stream, Z_FINISH);
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  if (code != Z_STREAM_END) {
    throw std::runtime_error("zlib cannot pack the text");
  }
  return packed;
}

}  // namespace bvconn::test

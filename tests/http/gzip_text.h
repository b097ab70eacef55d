#pragma once

#include <zlib.h>

#include <stdexcept>
#include <string>
#include <string_view>

namespace bvconn::test {

/// The text so many times as one gzip stream, without ever holding it whole.
inline std::string gzip_of_repeated(std::string_view text, int times) {
  z_stream stream{};
  if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, MAX_WBITS + 16, 9,
                   Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::runtime_error("zlib cannot be set up");
  }
  std::string packed;
  int code = Z_OK;
  for (int round = 0; round < times && code == Z_OK; ++round) {
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    packed.resize(stream.total_out + deflateBound(&stream, static_cast<uLong>(text.size())));
    stream.next_out = reinterpret_cast<Bytef*>(packed.data() + stream.total_out);
    stream.avail_out = static_cast<uInt>(packed.size() - stream.total_out);
    code = deflate(&stream, round + 1 < times ? Z_NO_FLUSH : Z_FINISH);
  }
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  if (code != Z_STREAM_END) {
    throw std::runtime_error("zlib cannot pack the text");
  }
  return packed;
}

/// The text as one gzip stream.
inline std::string gzip(std::string_view text) {
  return gzip_of_repeated(text, 1);
}

}  // namespace bvconn::test

#include "sandbox/faults/compress.h"

#include <zlib.h>

#include <stdexcept>

namespace bvconn::sandbox {

std::string gzip_of(std::string_view bytes) {
  constexpr int kGzipWindow = 15 + 16;  // 16 asks for the frame of gzip
  constexpr int kMemoryLevel = 8;
  z_stream stream{};
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipWindow, kMemoryLevel,
                   Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::runtime_error("zlib cannot be used");
  }
  std::string packed(deflateBound(&stream, static_cast<uLong>(bytes.size())), '\0');
  // zlib takes what it only reads without const.
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  const int outcome = deflate(&stream, Z_FINISH);
  packed.resize(packed.size() - stream.avail_out);
  deflateEnd(&stream);
  if (outcome != Z_STREAM_END) throw std::runtime_error("zlib cannot pack the answer");
  return packed;
}

}  // namespace bvconn::sandbox

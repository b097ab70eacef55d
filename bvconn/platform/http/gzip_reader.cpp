#include "bvconn/platform/http/gzip_reader.h"

#include <array>
#include <cstddef>
#include <new>

namespace bvconn::detail {
namespace {

// The largest window, and gzip framing only.
constexpr int kWindowBits = MAX_WBITS + 16;
constexpr std::size_t kBlockSize = std::size_t{32} << 10;

}  // namespace

GzipReader::GzipReader() {
  if (inflateInit2(&stream_, kWindowBits) != Z_OK) {
    throw std::bad_alloc();
  }
}

GzipReader::~GzipReader() {
  inflateEnd(&stream_);
}

GzipReader::Outcome GzipReader::read(std::string_view piece, const Take& take) {
  std::array<Bytef, kBlockSize> block;
  // zlib reads through a pointer that is not const, but does not write there.
  stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece.data()));
  stream_.avail_in = static_cast<uInt>(piece.size());
  bool more = !piece.empty();
  while (more) {
    // Several streams may follow each other and count as one.
    if (at_end_ && inflateReset(&stream_) != Z_OK) {
      return Outcome::kMalformed;
    }
    stream_.next_out = block.data();
    stream_.avail_out = static_cast<uInt>(block.size());
    const int code = inflate(&stream_, Z_NO_FLUSH);
    if (code != Z_OK && code != Z_STREAM_END && code != Z_BUF_ERROR) {
      return Outcome::kMalformed;
    }
    at_start_ = false;
    at_end_ = code == Z_STREAM_END;
    if (!take({reinterpret_cast<const char*>(block.data()), block.size() - stream_.avail_out})) {
      return Outcome::kRefused;
    }
    // A full block may hide output that waits inside zlib, even where all input was taken.
    more = stream_.avail_in > 0 || (stream_.avail_out == 0 && !at_end_);
  }
  return Outcome::kGood;
}

}  // namespace bvconn::detail

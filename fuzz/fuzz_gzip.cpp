// Unpacks the input as a gzip stream, in pieces as the network may bring them, and packs it. How a
// stream is cut into pieces must make no difference, and one that was cut short must be known for
// it.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "bvconn/platform/http/gzip_reader.h"
#include "fuzzing.h"
#include "http/gzip_text.h"

namespace {

using bvconn::detail::GzipReader;
using bvconn::fuzz::Choices;
using bvconn::fuzz::require;
using Outcome = GzipReader::Outcome;

// A stream may unpack to a thousand times its size; the reader stops when it is told to.
constexpr std::size_t kUnpackedMax = std::size_t{1} << 18;
constexpr std::size_t kBlockMax = std::size_t{32} << 10;

struct Unpacked {
  Outcome outcome = Outcome::kGood;
  bool complete = false;
  std::string text;

  friend bool operator==(const Unpacked&, const Unpacked&) = default;
};

/// In pieces of these sizes, over and over; all at once where there are none.
Unpacked unpack(std::string_view packed, std::string_view sizes) {
  GzipReader reader;
  Unpacked unpacked;
  const auto take = [&](std::string_view piece) {
    require(piece.size() <= kBlockMax, "a piece that is larger than a block");
    unpacked.text.append(piece);
    return unpacked.text.size() <= kUnpackedMax;
  };
  for (std::size_t round = 0; !packed.empty() && unpacked.outcome == Outcome::kGood; ++round) {
    std::size_t size = packed.size();
    if (!sizes.empty()) size = 1 + static_cast<std::uint8_t>(sizes[round % sizes.size()]);
    const std::string_view piece = packed.substr(0, size);
    packed.remove_prefix(piece.size());
    unpacked.outcome = reader.read(piece, take);
  }
  unpacked.complete = unpacked.outcome == Outcome::kGood && reader.complete();
  return unpacked;
}

void unpack_both_ways(std::string_view packed, std::string_view sizes) {
  const Unpacked whole = unpack(packed, {});
  const Unpacked pieces = unpack(packed, sizes);
  // Of a stream that is too large and malformed, the size of the pieces says which shows first.
  const bool is_good = whole.outcome == Outcome::kGood;
  require(is_good == (pieces.outcome == Outcome::kGood), "pieces make another outcome");
  if (!is_good) return;
  require(whole == pieces, "pieces make another text", whole.text);
}

void pack_and_unpack(std::string_view text, std::string_view sizes, std::size_t cut) {
  const std::string packed = bvconn::test::gzip(text);
  const Unpacked whole = unpack(packed, sizes);
  require(whole.complete && whole.text == text, "what was packed unpacks to something else", text);
  // The first byte's absence is that of the whole stream, which is an empty reply.
  const Unpacked part =
      unpack(std::string_view(packed).substr(0, 1 + cut % (packed.size() - 1)), sizes);
  require(!part.complete, "a stream that was cut passes for a whole one", text);
  require(text.starts_with(part.text), "a stream that was cut gives another text", text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Choices choices(data, size);
  const bool is_packed = choices.flag();
  const auto cut = static_cast<std::size_t>(choices.number(2));
  const std::string_view sizes = choices.text(8);
  if (is_packed) {
    unpack_both_ways(choices.rest(), sizes);
  } else {
    pack_and_unpack(choices.rest(), sizes, cut);
  }
  return 0;
}

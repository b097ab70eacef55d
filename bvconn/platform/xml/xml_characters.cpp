#include "bvconn/platform/xml/xml_characters.h"

#include <algorithm>
#include <span>

#include "bvconn/platform/xml/xml_vector.h"

namespace bvconn::detail::xml {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// NameStartChar of the fifth edition above ASCII.
constexpr Range kNameBeginnings[] = {
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
    {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
    {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};
// What NameChar adds to it above ASCII.
constexpr Range kNameContinuations[] = {{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

bool is_in(std::span<const Range> ranges, char32_t c) noexcept {
  return std::any_of(ranges.begin(), ranges.end(),
                     [c](const Range& range) { return c >= range.first && c <= range.last; });
}

constexpr unsigned byte_at(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

// The smallest character that needs so many bytes: a smaller one is written overlong.
constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};

constexpr std::size_t length_from_lead(unsigned lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

#if defined(BVCONN_XML_VECTORS)

constexpr std::size_t kBlock = kVectorBytes;

// Whether a block holds nothing but printable ASCII and white space.
bool is_plain(const char* block) noexcept {
  const Vector bytes = load(block);
  const Vector spaces =
      either(equals(bytes, '\t'), either(equals(bytes, '\n'), equals(bytes, '\r')));
  return first_of(first_without_second(below_or_beyond_ascii(bytes, ' '), spaces)) == kVectorBytes;
}

// Past as many blocks of printable ASCII as there are, four at a time: replies are made of them.
std::size_t skip_printable(std::string_view text, std::size_t at) noexcept {
  const auto strange = [](const char* block) { return below_or_beyond_ascii(load(block), ' '); };
  for (; text.size() - at >= 4 * kBlock; at += 4 * kBlock) {
    const char* const block = text.data() + at;
    const Vector found = either(either(strange(block), strange(block + kBlock)),
                                either(strange(block + 2 * kBlock), strange(block + 3 * kBlock)));
    if (first_of(found) != kVectorBytes) break;
  }
  return at;
}

#else

constexpr std::size_t kBlock = 8;

bool is_plain(const char* block) noexcept {
  return std::all_of(block, block + kBlock, [](char byte) {
    return is_ascii(byte) && is_character(static_cast<unsigned char>(byte));
  });
}
std::size_t skip_printable(std::string_view, std::size_t at) noexcept {
  return at;
}

#endif

// The length of a character of two bytes, which needs no more than a look at both; or 0.
std::size_t length_of_pair(std::string_view text, std::size_t at) noexcept {
  const bool is_pair = text.size() - at >= 2 && byte_at(text, at) >= 0xC2 &&
                       byte_at(text, at) < 0xE0 && (byte_at(text, at + 1) & 0xC0u) == 0x80;
  return is_pair ? 2 : 0;
}

}  // namespace

bool begins_name(char32_t c) noexcept {
  return c < 0x80 ? is(static_cast<char>(c), kBeginsName) : is_in(kNameBeginnings, c);
}

bool in_name(char32_t c) noexcept {
  if (c < 0x80) return is(static_cast<char>(c), kInName);
  return is_in(kNameBeginnings, c) || is_in(kNameContinuations, c);
}

Decoded decode(std::string_view bytes) noexcept {
  const unsigned lead = byte_at(bytes, 0);
  const std::size_t length = length_from_lead(lead);
  if (length == 0 || length > bytes.size()) return {};
  if (length == 1) return {.character = lead, .length = 1};
  char32_t c = lead & (0xFFu >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte_at(bytes, i) & 0xC0u) != 0x80) return {};
    c = (c << 6) | (byte_at(bytes, i) & 0x3Fu);
  }
  if (c < kSmallest[length] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) return {};
  return {.character = c, .length = length};
}

char* encode(char32_t c, char* to) noexcept {
  const auto put = [&to](char32_t byte) { *to++ = static_cast<char>(byte); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | (c >> 6));
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | (c >> 12));
    put(0x80 | ((c >> 6) & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | (c >> 18));
    put(0x80 | ((c >> 12) & 0x3F));
    put(0x80 | ((c >> 6) & 0x3F));
    put(0x80 | (c & 0x3F));
  }
  return to;
}

std::size_t find_unreadable(std::string_view text) noexcept {
  std::size_t at = 0;
  while (at < text.size()) {
    at = skip_printable(text, at);
    if (text.size() - at >= kBlock && is_plain(text.data() + at)) {
      at += kBlock;
      continue;
    }
    const std::size_t stop = std::min(text.size(), at + kBlock);
    while (at < stop) {
      const char byte = text[at];
      if (is_ascii(byte)) {
        if (!is_character(static_cast<unsigned char>(byte))) return at;
        ++at;
        continue;
      }
      std::size_t length = length_of_pair(text, at);
      if (length == 0) {
        const Decoded found = decode(text.substr(at, 4));
        if (found.length == 0 || !is_character(found.character)) return at;
        length = found.length;
      }
      at += length;
    }
  }
  return std::string_view::npos;
}

}  // namespace bvconn::detail::xml

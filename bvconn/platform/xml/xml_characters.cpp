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

// Past bytes that are printable ASCII or white space, as long as there are as many as are looked at
// together.
#if defined(BVCONN_XML_VECTORS)

std::size_t skip_plain(std::string_view text, std::size_t at) noexcept {
  constexpr std::size_t kBlock = kVectorBytes;
  const auto strange = [&text](std::size_t place) {
    return below_or_beyond_ascii(load(text.data() + place), ' ');
  };
  while (text.size() - at >= kBlock) {
    const Vector bytes = load(text.data() + at);
    const Vector spaces =
        either(equals(bytes, '\t'), either(equals(bytes, '\n'), equals(bytes, '\r')));
    const auto first =
        static_cast<std::size_t>(first_of(first_without_second(strange(at), spaces)));
    at += first;
    if (first != kBlock) return at;
    // Replies are mostly made of printable ASCII.
    for (; text.size() - at >= 4 * kBlock; at += 4 * kBlock) {
      const Vector found = either(either(strange(at), strange(at + kBlock)),
                                  either(strange(at + 2 * kBlock), strange(at + 3 * kBlock)));
      if (first_of(found) != kVectorBytes) break;
    }
  }
  return at;
}

#else

std::size_t skip_plain(std::string_view text, std::size_t at) noexcept {
  while (at < text.size() && is_ascii(text[at]) && is_character(byte_at(text, at))) ++at;
  return at;
}

#endif

// The length of the character at `at`; 0 when it is none, or none that a document may hold.
std::size_t length_of_character(std::string_view text, std::size_t at) noexcept {
  const unsigned lead = byte_at(text, at);
  if (lead < 0x80) return is_character(lead) ? 1 : 0;
  // Of two bytes all are allowed.
  if (lead >= 0xC2 && lead < 0xE0 && text.size() - at >= 2) {
    return (byte_at(text, at + 1) & 0xC0u) == 0x80 ? 2 : 0;
  }
  const Decoded found = decode(text.substr(at, 4));
  return is_character(found.character) ? found.length : 0;
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
  for (std::size_t at = skip_plain(text, 0); at < text.size(); at = skip_plain(text, at)) {
    const std::size_t length = length_of_character(text, at);
    if (length == 0) return at;
    at += length;
  }
  return std::string_view::npos;
}

}  // namespace bvconn::detail::xml

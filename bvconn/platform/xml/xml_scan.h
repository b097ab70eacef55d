#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "bvconn/platform/xml/xml_characters.h"
#include "bvconn/platform/xml/xml_vector.h"

/// Scanning for the reader's own sources. The text is valid UTF-8 and ends with a NUL at `end`,
/// which no document contains: whatever stops at an unexpected byte stops there at the latest.
namespace bvconn::detail::xml {

inline bool starts_with(const char* at, std::string_view text) {
  for (const char c : text) {
    if (*at++ != c) return false;
  }
  return true;
}

inline char* skip_space(char* at) {
  while (is(*at, kIsSpace)) ++at;
  return at;
}

inline std::string_view slice(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

/// Up to eight bytes as one number, which together with the size tells them apart from any others;
/// of more bytes the first eight.
inline std::uint64_t word_of(const char* text, std::size_t size) {
  const auto byte = [text](std::size_t i) {
    return static_cast<std::uint64_t>(static_cast<unsigned char>(text[i]));
  };
  const auto half = [text](std::size_t i) {
    std::uint32_t number;
    std::memcpy(&number, text + i, sizeof number);
    return std::uint64_t{number};
  };
  if (size >= 8) return half(0) | half(4) << 32;
  if (size >= 4) return half(0) | half(size - 4) << 32;
  if (size == 0) return 0;
  return byte(0) | byte(size / 2) << 8 | byte(size - 1) << 16;
}

/// Whether two stretches of this size hold the same. Names are short: a call of `memcmp` would cost
/// more than most of these comparisons do.
inline bool same_bytes(const char* a, const char* b, std::size_t size) {
  std::size_t at = 0;
  if (size < 8) {
    if (size >= 4) return word_of(a, size) == word_of(b, size);
    while (at < size && a[at] == b[at]) ++at;
    return at == size;
  }
#if defined(BVCONN_XML_VECTORS)
  for (; size - at > kVectorBytes; at += kVectorBytes) {
    if (first_not_of(equals(load(a + at), load(b + at))) != kVectorBytes) return false;
  }
#endif
  for (; size - at > 8; at += 8) {
    if (word_of(a + at, 8) != word_of(b + at, 8)) return false;
  }
  return word_of(a + size - 8, 8) == word_of(b + size - 8, 8);  // some of them a second time
}
inline bool same_text(std::string_view a, std::string_view b) {
  return a.size() == b.size() && same_bytes(a.data(), b.data(), a.size());
}

/// The next byte of the class `stops`. `find` says the same of sixteen bytes: where among them the
/// first such byte is.
template <class Find>
char* scan(char* at, [[maybe_unused]] const char* end, int stops,
           [[maybe_unused]] const Find& find) {
#if defined(BVCONN_XML_VECTORS)
  for (; end - at >= kVectorBytes; at += kVectorBytes) {
    if (const int first = find(at); first != kVectorBytes) return at + first;
  }
#endif
  while (!is(*at, stops)) ++at;
  return at;
}

#if defined(BVCONN_XML_VECTORS)
inline int find_text_stop(const char* at) {
  const Vector bytes = load(at);
  return first_of(either(either(equals(bytes, '<'), equals(bytes, '&')),
                         either(equals(bytes, '\r'), equals(bytes, ']'))));
}
inline int find_value_stop(const char* at) {
  const Vector bytes = load(at);
  const Vector quotes = either(equals(bytes, '"'), equals(bytes, '\''));
  const Vector marks = either(equals(bytes, '<'), equals(bytes, '&'));
  return first_of(either(between(bytes, '\0', '\x1F'), either(quotes, marks)));
}
#else
inline constexpr int find_text_stop = 0;
inline constexpr int find_value_stop = 0;
#endif

/// The next byte that character data must halt at.
inline char* skip_text(char* at, const char* end) {
  for (;;) {
    at = scan(at, end, kStopsText, find_text_stop);
    if (*at != ']' || (at[1] == ']' && at[2] == '>')) return at;
    ++at;
  }
}

/// The next byte that an attribute's value must halt at.
inline char* skip_value(char* at, const char* end) {
  return scan(at, end, kStopsValue, find_value_stop);
}

/// The end of a name that goes on at `at` with a character beyond ASCII, perhaps.
char* skip_name_beyond_ascii(char* at);
/// The end of the name that began before `at`.
inline char* skip_name(char* at) {
  while (is(*at, kInName)) ++at;
  return is_ascii(*at) ? at : skip_name_beyond_ascii(at);
}

/// A piece of the document as a message quotes it: cut when it is long.
std::string quoted(std::string_view text);
/// A number in capital hexadecimal digits, with zeros in front up to `least_digits`.
std::string hexadecimal(char32_t number, int least_digits);
/// A character as a message shows it.
std::string described(const char* at);

}  // namespace bvconn::detail::xml

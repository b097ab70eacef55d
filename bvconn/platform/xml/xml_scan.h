#pragma once

#include <cstring>
#include <string>
#include <string_view>

#include "bvconn/platform/xml/xml_characters.h"

/// Scanning for the reader's own sources. The text is valid UTF-8 and ends with a NUL, which no
/// document contains: whatever stops at an unexpected byte stops there at the latest.
namespace bvconn::detail::xml {

inline bool starts_with(const char* at, std::string_view text) {
  return std::strncmp(at, text.data(), text.size()) == 0;
}

inline char* skip_space(char* at) {
  while (is(*at, kIsSpace)) ++at;
  return at;
}

/// The next byte that character data must halt at.
inline char* skip_text(char* at) {
  for (;;) {
    while (!is(*at, kStopsText)) ++at;
    if (*at != ']' || (at[1] == ']' && at[2] == '>')) return at;
    ++at;
  }
}

/// The end of a name that goes on at `at` with a character beyond ASCII, perhaps.
char* skip_name_beyond_ascii(char* at);
/// The end of the name that began before `at`.
inline char* skip_name(char* at) {
  while (is(*at, kInName)) ++at;
  return is_ascii(*at) ? at : skip_name_beyond_ascii(at);
}

inline std::string_view slice(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

/// A piece of the document as a message quotes it: cut when it is long.
std::string quoted(std::string_view text);
/// A number in capital hexadecimal digits, with zeros in front up to `least_digits`.
std::string hexadecimal(char32_t number, int least_digits);
/// A character as a message shows it.
std::string described(const char* at);

}  // namespace bvconn::detail::xml

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// The character classes of XML 1.0 (fifth edition), over UTF-8.
namespace bvconn::detail::xml {

/// What a byte can be. Bytes of 0x80 and above are in none of these classes: what they begin is
/// decided by `decode`.
enum ByteClass : std::uint8_t {
  kBeginsName = 1,  // without the colon, which only parts prefix and local name
  kInName = 2,
  kIsSpace = 4,
  kStopsText = 8,    // scanning of character data halts here
  kStopsValue = 16,  // scanning of an attribute's value halts here
};

constexpr std::array<std::uint8_t, 256> make_byte_classes() {
  std::array<std::uint8_t, 256> classes{};
  const auto add = [&classes](std::string_view bytes, int set) {
    for (const char byte : bytes) {
      auto& entry = classes[static_cast<unsigned char>(byte)];
      entry = static_cast<std::uint8_t>(entry | set);
    }
  };
  add("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_", kBeginsName | kInName);
  add("0123456789-.", kInName);
  add(" \t\r\n", kIsSpace);
  add(std::string_view("<&\r]\0", 5), kStopsText);
  add(std::string_view("<&\r\n\t\"'\0", 8), kStopsValue);
  return classes;
}
inline constexpr std::array<std::uint8_t, 256> kByteClasses = make_byte_classes();

constexpr bool is(char byte, int classes) noexcept {
  return (kByteClasses[static_cast<unsigned char>(byte)] & classes) != 0;
}
constexpr bool is_ascii(char byte) noexcept {
  return static_cast<unsigned char>(byte) < 0x80;
}

/// Whether a document may hold the character at all, written out or as a reference.
constexpr bool is_character(char32_t c) noexcept {
  return c >= 0x20 ? c < 0xD800 || (c > 0xDFFF && c != 0xFFFE && c != 0xFFFF && c <= 0x10FFFF)
                   : c == '\t' || c == '\n' || c == '\r';
}
/// Whether a name without a colon may begin with the character, or contain it.
bool begins_name(char32_t c) noexcept;
bool in_name(char32_t c) noexcept;

/// A character and the number of bytes that it takes; no bytes for what is not UTF-8.
struct Decoded {
  char32_t character = 0;
  std::size_t length = 0;
};
/// The character at the beginning of `bytes`, which must not be empty.
Decoded decode(std::string_view bytes) noexcept;
/// The character at `at`, in text that is known to be UTF-8.
inline Decoded decode_valid(const char* at) noexcept {
  const auto lead = static_cast<unsigned char>(*at);
  return decode({at, lead < 0x80 ? 1u : lead < 0xE0 ? 2u : lead < 0xF0 ? 3u : 4u});
}
/// Writes a character as UTF-8 and returns the end of what was written, four bytes at most.
char* encode(char32_t c, char* to) noexcept;

/// The offset of the first byte that is not part of a character that XML allows, in valid UTF-8;
/// `npos` when there is none.
std::size_t find_unreadable(std::string_view text) noexcept;

}  // namespace bvconn::detail::xml

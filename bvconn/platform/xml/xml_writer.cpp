#include "bvconn/platform/xml/xml_writer.h"

#include <array>
#include <cstdint>

#include "bvconn/platform/xml/xml_characters.h"

namespace bvconn::detail::xml {

namespace {

enum Care : std::uint8_t {
  kInText = 1,       // to be escaped in character data
  kInAttribute = 2,  // to be escaped in an attribute's value
  kToCheck = 4,      // a control character, or a part of a longer one
};

constexpr std::array<std::uint8_t, 256> make_cares() {
  std::array<std::uint8_t, 256> cares{};
  for (std::size_t c = 0; c < 0x20; ++c) cares[c] = kToCheck;
  for (std::size_t c = 0x80; c < 0x100; ++c) cares[c] = kToCheck;
  // A reader would turn CR into a line feed, and in attributes all white space into blanks.
  cares['\t'] = cares['\n'] = kInAttribute;
  cares['\r'] = cares['<'] = cares['&'] = cares['>'] = kInText | kInAttribute;
  cares['"'] = kInAttribute;
  return cares;
}
constexpr auto kCares = make_cares();

std::string_view escape(char c) noexcept {
  switch (c) {
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '&':
      return "&amp;";
    case '"':
      return "&quot;";
    case '\t':
      return "&#9;";
    case '\n':
      return "&#10;";
    default:
      return "&#13;";
  }
}

std::size_t append_escaped(std::string& out, std::string_view text, std::uint8_t place) {
  const std::uint8_t wanted = static_cast<std::uint8_t>(place | kToCheck);
  std::size_t written = 0;
  for (std::size_t i = 0; i < text.size();) {
    const std::uint8_t care = kCares[static_cast<unsigned char>(text[i])];
    if ((care & wanted) == 0) {
      ++i;
    } else if ((care & kToCheck) != 0) {
      const Decoded decoded = decode(text.substr(i));
      if (decoded.length == 0 || !is_character(decoded.character)) return i;
      i += decoded.length;
    } else {
      out.append(text, written, i - written);
      out += escape(text[i]);
      written = ++i;
    }
  }
  out.append(text, written);
  return std::string_view::npos;
}

}  // namespace

std::size_t append_text(std::string& out, std::string_view text) {
  return append_escaped(out, text, kInText);
}
std::size_t append_attribute(std::string& out, std::string_view text) {
  return append_escaped(out, text, kInAttribute);
}

bool is_local_name(std::string_view name) noexcept {
  std::size_t plain = 0;
  while (plain < name.size() && is(name[plain], plain == 0 ? kBeginsName : kInName)) ++plain;
  for (std::size_t i = plain; i < name.size();) {
    const Decoded decoded = decode(name.substr(i));
    const bool fits = i == 0 ? begins_name(decoded.character) : in_name(decoded.character);
    if (decoded.length == 0 || !fits) return false;
    i += decoded.length;
  }
  return !name.empty();
}

std::string unwritable_character(std::string_view text, std::size_t offset) {
  const Decoded decoded = decode(text.substr(offset));
  if (decoded.length == 0) return "bytes that are not UTF-8";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string name = "U+";
  for (int shift = 12; shift >= 0; shift -= 4) name += kDigits[decoded.character >> shift & 15U];
  return name;
}

}  // namespace bvconn::detail::xml

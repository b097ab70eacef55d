#include "bvconn/platform/conversions/text.h"

#include <cstdint>
#include <cstring>

namespace bvconn::detail {
namespace {

/// Beyond this a text in a description helps nobody.
constexpr std::size_t kShownBytes = 60;

unsigned char byte_at(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

void append_hex_escape(std::string& out, unsigned char byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  out.append("\\x");
  out.push_back(kDigits[byte >> 4U]);
  out.push_back(kDigits[byte & 0xFU]);
}

void append_escaped_ascii(std::string& out, unsigned char byte) {
  switch (byte) {
    case '\n':
      out.append("\\n");
      break;
    case '\r':
      out.append("\\r");
      break;
    case '\t':
      out.append("\\t");
      break;
    default:
      append_hex_escape(out, byte);
  }
}

/// The C1 controls and the two separators of Unicode end a line for some readers.
bool breaks_lines(std::string_view character) {
  if (character.size() == 2) {
    return byte_at(character, 0) == 0xC2 && byte_at(character, 1) < 0xA0;
  }
  return character == "\xE2\x80\xA8" || character == "\xE2\x80\xA9";
}

/// Whether all bytes of a word are plain ones; says no rather than look twice.
bool all_plain(std::uint64_t word) {
  constexpr std::uint64_t kOnes = 0x0101010101010101U;
  return ((word | (word - kOnes * 0x20) | (word + kOnes)) & (kOnes * 0x80)) == 0;
}

bool plain(unsigned char byte) {
  return byte >= 0x20 && byte < 0x7F;
}

/// How many bytes at the beginning are written as they are.
std::size_t plain_run(std::string_view text) {
  std::size_t run = 0;
  for (std::uint64_t word = 0; text.size() - run >= sizeof(word); run += sizeof(word)) {
    std::memcpy(&word, text.data() + run, sizeof(word));
    if (!all_plain(word)) break;
  }
  while (run < text.size() && plain(byte_at(text, run))) ++run;
  return run;
}

}  // namespace

std::size_t utf8_length(std::string_view text) {
  if (text.empty()) {
    return 0;
  }
  const unsigned char lead = byte_at(text, 0);
  if (lead < 0x80) {
    return 1;
  }
  if (lead < 0xC2 || lead > 0xF4) {
    return 0;
  }
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (text.size() < length) {
    return 0;
  }
  // The first continuation byte rules out overlong forms, surrogates and what lies beyond U+10FFFF.
  const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (byte_at(text, 1) < low || byte_at(text, 1) > high) {
    return 0;
  }
  for (std::size_t i = 2; i < length; ++i) {
    if ((byte_at(text, i) & 0xC0U) != 0x80U) {
      return 0;
    }
  }
  return length;
}

bool is_utf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = utf8_length(text);
    if (length == 0) {
      return false;
    }
    text.remove_prefix(length);
  }
  return true;
}

void append_escaped(std::string& out, std::string_view text) {
  while (!text.empty()) {
    const std::size_t run = plain_run(text);
    out.append(text.substr(0, run));
    text.remove_prefix(run);
    if (text.empty()) {
      return;
    }
    const std::size_t length = utf8_length(text);
    const std::string_view character = text.substr(0, length == 0 ? 1 : length);
    if (length == 1) {
      append_escaped_ascii(out, byte_at(character, 0));
    } else if (length == 0 || breaks_lines(character)) {
      for (const char byte : character) {
        append_hex_escape(out, static_cast<unsigned char>(byte));
      }
    } else {
      out.append(character);
    }
    text.remove_prefix(character.size());
  }
}

std::string shown(std::string_view text) {
  std::string_view head = text.substr(0, kShownBytes);
  const bool cut = head.size() < text.size();
  // A cut must not split a character.
  for (int i = 0; cut && i < 3 && (byte_at(text, head.size()) & 0xC0U) == 0x80U; ++i) {
    head.remove_suffix(1);
  }
  std::string out = "\"";
  append_escaped(out, head);
  out.append(cut ? "…\"" : "\"");
  return out;
}

}  // namespace bvconn::detail

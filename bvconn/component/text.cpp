#include "bvconn/component/text.h"

#include <algorithm>
#include <new>
#include <type_traits>

namespace bvconn::component {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool is_high_surrogate(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool is_low_surrogate(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

void append_utf8(std::string& out, char32_t character) {
  const auto tail = [character](unsigned shift) {
    return static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
  };
  if (character < 0x80) {
    out.push_back(static_cast<char>(character));
  } else if (character < 0x800) {
    out.push_back(static_cast<char>(0xC0U | (character >> 6U)));
    out.push_back(tail(0));
  } else if (character < 0x10000) {
    out.push_back(static_cast<char>(0xE0U | (character >> 12U)));
    out.push_back(tail(6));
    out.push_back(tail(0));
  } else {
    out.push_back(static_cast<char>(0xF0U | (character >> 18U)));
    out.push_back(tail(12));
    out.push_back(tail(6));
    out.push_back(tail(0));
  }
}

void append_utf16(std::u16string& out, char32_t character) {
  if (character < 0x10000) {
    out.push_back(static_cast<char16_t>(character));
    return;
  }
  const char32_t above = character - 0x10000;
  out.push_back(static_cast<char16_t>(0xD800U + (above >> 10U)));
  out.push_back(static_cast<char16_t>(0xDC00U + (above & 0x3FFU)));
}

// Characters at the beginning that are the same in both forms, which most texts consist of.
template <typename Unit>
std::size_t ascii_units(std::basic_string_view<Unit> text) {
  const auto end = std::ranges::find_if(
      text, [](Unit unit) { return static_cast<std::make_unsigned_t<Unit>>(unit) >= 0x80; });
  return static_cast<std::size_t>(end - text.begin());
}

// Appends such characters as they stand, all that follow each other from `at` on. False where there
// is none.
template <typename To, typename From>
bool append_ascii(std::basic_string<To>& out, std::basic_string_view<From> text, std::size_t& at) {
  const std::size_t count = ascii_units(text.substr(at));
  if (count == 0) return false;
  const std::size_t before = out.size();
  out.resize(before + count);
  std::transform(text.data() + at, text.data() + at + count, out.data() + before,
                 [](From unit) { return static_cast<To>(unit); });
  at += count;
  return true;
}

// What the first byte of a character says of the rest.
struct Lead {
  std::size_t tails = 0;
  char32_t bits = 0;
  // The range of the second byte, which rules out overlong forms, surrogates, and what lies beyond
  // the last character.
  unsigned char lowest = 0x80;
  unsigned char highest = 0xBF;
};

std::optional<Lead> lead_of(unsigned char byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return Lead{.tails = 1, .bits = byte & 0x1FU};
  if (byte >= 0xE0 && byte <= 0xEF) {
    Lead lead{.tails = 2, .bits = byte & 0x0FU};
    if (byte == 0xE0) lead.lowest = 0xA0;
    if (byte == 0xED) lead.highest = 0x9F;
    return lead;
  }
  if (byte >= 0xF0 && byte <= 0xF4) {
    Lead lead{.tails = 3, .bits = byte & 0x07U};
    if (byte == 0xF0) lead.lowest = 0x90;
    if (byte == 0xF4) lead.highest = 0x8F;
    return lead;
  }
  return std::nullopt;
}

char32_t next_character(std::string_view text, std::size_t& at) {
  const auto first = static_cast<unsigned char>(text[at++]);
  if (first < 0x80) return first;
  const auto lead = lead_of(first);
  if (!lead) return kReplacement;
  char32_t character = lead->bits;
  for (std::size_t tail = 0; tail < lead->tails; ++tail) {
    if (at == text.size()) return kReplacement;
    const auto byte = static_cast<unsigned char>(text[at]);
    const unsigned char lowest = tail == 0 ? lead->lowest : 0x80;
    const unsigned char highest = tail == 0 ? lead->highest : 0xBF;
    if (byte < lowest || byte > highest) return kReplacement;
    character = (character << 6U) | (byte & 0x3FU);
    ++at;
  }
  return character;
}

}  // namespace

std::optional<std::string> utf8_from_utf16(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    if (append_ascii(out, text, at)) continue;
    char32_t character = text[at++];
    if (is_low_surrogate(character)) return std::nullopt;
    if (is_high_surrogate(character)) {
      if (at == text.size() || !is_low_surrogate(text[at])) return std::nullopt;
      character = 0x10000 + ((character - 0xD800) << 10U) + (char32_t{text[at++]} - 0xDC00);
    }
    append_utf8(out, character);
  }
  return out;
}

std::u16string utf16_from_utf8(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    if (!append_ascii(out, text, at)) append_utf16(out, next_character(text, at));
  }
  return out;
}

std::optional<std::string> text_of(const char16_t* text) {
  if (text == nullptr) return std::string();
  if (string_bytes(text) % sizeof(char16_t) != 0) return std::nullopt;
  return utf8_from_utf16({text, string_length(text)});
}

StringPointer string_from_utf8(std::string_view text) {
  const auto made = [](StringPointer copy) {
    if (copy == nullptr) throw std::bad_alloc();
    return copy;
  };
  if (ascii_units(text) == text.size()) {
    StringPointer copy = made(alloc_string(nullptr, text.size()));
    std::ranges::copy(text, copy);
    return copy;
  }
  const std::u16string wide = utf16_from_utf8(text);
  return made(alloc_string(wide.data(), wide.size()));
}

}  // namespace bvconn::component

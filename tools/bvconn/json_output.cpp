#include "json_output.h"

#include <algorithm>
#include <array>
#include <charconv>

#include <nlohmann/json.hpp>

namespace bvconn::tool {
namespace {

/// How a byte of text is written.
enum class Form : unsigned char { kPlain, kLetter, kCode, kLead };

constexpr std::array<Form, 256> make_forms() {
  std::array<Form, 256> forms{};
  for (std::size_t byte = 0; byte < forms.size(); ++byte) {
    forms[byte] = byte < 0x20 ? Form::kCode : byte < 0x80 ? Form::kPlain : Form::kLead;
  }
  for (const char c : {'\b', '\t', '\n', '\f', '\r', '"', '\\'}) {
    forms[static_cast<unsigned char>(c)] = Form::kLetter;
  }
  return forms;
}

constexpr std::array<Form, 256> kForms = make_forms();

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

unsigned char byte_at(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

char letter_of(char c) {
  switch (c) {
    case '\b':
      return 'b';
    case '\t':
      return 't';
    case '\n':
      return 'n';
    case '\f':
      return 'f';
    case '\r':
      return 'r';
    default:
      return c;
  }
}

/// A character of UTF-8 at the beginning of a text.
struct Character {
  std::size_t size = 1;  ///< of one that is ill-formed: the bytes that could begin another
  bool whole = false;
};

Character character_of(std::string_view text) {
  const unsigned char lead = byte_at(text, 0);
  if (lead < 0xC2 || lead > 0xF4) return {};
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  // The second byte rules out overlong forms, surrogates, and what lies beyond the last character.
  unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  Character character;
  while (character.size < length && character.size < text.size() &&
         byte_at(text, character.size) >= low && byte_at(text, character.size) <= high) {
    ++character.size;
    low = 0x80;
    high = 0xBF;
  }
  character.whole = character.size == length;
  return character;
}

/// Whether one of eight bytes is a control, a quote, a backslash, or none of ASCII. It may say so
/// of eight that hold none of these, and never the other way round.
bool may_need_a_look(std::uint64_t bytes) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  constexpr std::uint64_t kTops = 0x8080808080808080;
  const std::uint64_t quote = bytes ^ (kOnes * '"');
  const std::uint64_t backslash = bytes ^ (kOnes * '\\');
  // A byte that is less than another one borrows from its top bit.
  return (((bytes - kOnes * 0x20) | (quote - kOnes) | (backslash - kOnes) | bytes) & kTops) != 0;
}

/// Bytes at the beginning of a text that are written as they are.
std::size_t plain_bytes(std::string_view text) {
  std::size_t count = 0;
  // Without these eight at a time, each byte is looked at by itself.
  for (std::uint64_t eight = 0; count + sizeof eight <= text.size(); count += sizeof eight) {
    std::memcpy(&eight, text.data() + count, sizeof eight);
    if (may_need_a_look(eight)) break;
  }
  while (count < text.size()) {
    const Form form = kForms[byte_at(text, count)];
    if (form == Form::kPlain) {
      ++count;
    } else if (form == Form::kLead) {
      const Character character = character_of(text.substr(count));
      if (!character.whole) break;
      count += character.size;
    } else {
      break;
    }
  }
  return count;
}

}  // namespace

JsonOutput& JsonOutput::string(std::string_view text) {
  raw('"');
  for (;;) {
    const std::size_t plain = plain_bytes(text);
    raw(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) break;
    std::size_t taken = 1;
    switch (kForms[byte_at(text, 0)]) {
      case Form::kLetter:
        raw('\\').raw(letter_of(text.front()));
        break;
      case Form::kCode:
        raw("\\u00").raw(byte_at(text, 0) < 0x10 ? '0' : '1');
        raw("0123456789abcdef"[byte_at(text, 0) & 0xFU]);
        break;
      default:
        raw(kReplacement);
        taken = character_of(text).size;
    }
    text.remove_prefix(taken);
  }
  return raw('"');
}

JsonOutput& JsonOutput::integer(std::int64_t value) {
  std::array<char, 24> digits;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return raw({digits.data(), static_cast<std::size_t>(result.ptr - digits.data())});
}

JsonOutput& JsonOutput::number(double value) {
  // The digits are the JSON library's own: there are numbers for which the standard library finds
  // others that read back as well.
  std::array<char, 64> digits;
  const char* const end =
      nlohmann::detail::to_chars(digits.data(), digits.data() + digits.size(), value);
  return raw({digits.data(), static_cast<std::size_t>(end - digits.data())});
}

void JsonOutput::raw_over_the_end(std::string_view json) {
  while (!json.empty()) {
    if (room() == 0) make_room();
    const std::size_t part = std::min(room(), json.size());
    std::memcpy(at_, json.data(), part);
    at_ += part;
    json.remove_prefix(part);
  }
}

void JsonString::make_room() {
  constexpr std::size_t kFirst = 120;
  const std::size_t written = text_.size();
  text_.resize(std::max(kFirst, 2 * written));
  set_window(text_.data() + written, text_.data() + text_.size());
}

std::string JsonString::take() {
  if (at() != nullptr) text_.resize(static_cast<std::size_t>(at() - text_.data()));
  set_window(nullptr, nullptr);
  return std::move(text_);
}

}  // namespace bvconn::tool

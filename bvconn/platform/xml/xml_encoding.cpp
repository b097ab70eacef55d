#include "bvconn/platform/xml/xml_encoding.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "bvconn/platform/xml/xml_scan.h"

namespace bvconn::detail::xml {
namespace {

enum class Encoding { utf_8, utf_16, utf_16le, utf_16be, latin_1, latin_9, windows_1252, ascii };

struct EncodingName {
  std::string_view name;  // in small letters
  Encoding encoding;
};

constexpr EncodingName kEncodingNames[] = {
    {"utf-8", Encoding::utf_8},
    {"utf8", Encoding::utf_8},
    {"utf-16", Encoding::utf_16},
    {"utf16", Encoding::utf_16},
    {"utf-16le", Encoding::utf_16le},
    {"utf-16be", Encoding::utf_16be},
    {"iso-8859-1", Encoding::latin_1},
    {"iso_8859-1", Encoding::latin_1},
    {"iso8859-1", Encoding::latin_1},
    {"iso_8859-1:1987", Encoding::latin_1},
    {"iso-ir-100", Encoding::latin_1},
    {"latin1", Encoding::latin_1},
    {"latin-1", Encoding::latin_1},
    {"l1", Encoding::latin_1},
    {"ibm819", Encoding::latin_1},
    {"cp819", Encoding::latin_1},
    {"iso-8859-15", Encoding::latin_9},
    {"iso_8859-15", Encoding::latin_9},
    {"iso8859-15", Encoding::latin_9},
    {"latin-9", Encoding::latin_9},
    {"latin9", Encoding::latin_9},
    {"windows-1252", Encoding::windows_1252},
    {"cp1252", Encoding::windows_1252},
    {"cp-1252", Encoding::windows_1252},
    {"us-ascii", Encoding::ascii},
    {"ascii", Encoding::ascii},
    {"us", Encoding::ascii},
    {"ansi_x3.4-1968", Encoding::ascii},
    {"ansi_x3.4-1986", Encoding::ascii},
    {"iso646-us", Encoding::ascii},
    {"iso-ir-6", Encoding::ascii},
    {"ibm367", Encoding::ascii},
    {"cp367", Encoding::ascii},
};

constexpr std::string_view kByteOrderMark8 = "\xEF\xBB\xBF";
constexpr std::string_view kByteOrderMarkLe = "\xFF\xFE";
constexpr std::string_view kByteOrderMarkBe = "\xFE\xFF";

// What the bytes 0x80 to 0x9F are in windows-1252; 0 for the five that are nothing.
constexpr std::array<char16_t, 32> kWindowsExtras = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

std::string_view name_of(Encoding encoding) {
  for (const EncodingName& entry : kEncodingNames) {
    if (entry.encoding == encoding) return entry.name;
  }
  return {};
}

std::optional<Encoding> encoding_named(std::string_view name) {
  const auto is_name = [name](const EncodingName& entry) {
    return std::equal(name.begin(), name.end(), entry.name.begin(), entry.name.end(),
                      [](char a, char b) {
                        return (a >= 'A' && a <= 'Z' ? static_cast<char>(a | 0x20) : a) == b;
                      });
  };
  const auto* const found =
      std::find_if(std::begin(kEncodingNames), std::end(kEncodingNames), is_name);
  if (found == std::end(kEncodingNames)) return std::nullopt;
  return found->encoding;
}

[[noreturn]] void fail_unknown(std::string_view name, const Position& where) {
  throw ReadError(Problem::not_well_formed, where,
                  "the encoding '" + std::string(name.substr(0, 60)) + "' is not known");
}

// The place in text of one byte for each character.
Position position_in(std::string_view bytes, std::size_t offset) {
  Position place{.line = 1, .column = 1, .offset = offset};
  for (std::size_t i = 0; i < offset; ++i) {
    const bool ends_line = bytes[i] == '\n' || (bytes[i] == '\r' && bytes.substr(i + 1, 1) != "\n");
    if (ends_line) ++place.line;
    place.column = ends_line ? 1 : place.column + 1;
  }
  return place;
}

// The encoding that the bytes of a document show by themselves.
std::optional<Encoding> encoding_shown(std::string_view bytes) {
  using std::string_view_literals::operator""sv;
  if (bytes.starts_with(kByteOrderMark8)) return Encoding::utf_8;
  if (bytes.starts_with(kByteOrderMarkLe) || bytes.starts_with("<\0"sv)) return Encoding::utf_16le;
  if (bytes.starts_with(kByteOrderMarkBe) || bytes.starts_with("\0<"sv)) return Encoding::utf_16be;
  return std::nullopt;
}

// Takes `word = "value"`, with white space in front, off the beginning of a text.
std::optional<std::string_view> take_declared(std::string_view& text, std::string_view word) {
  std::string_view rest = text;
  const auto skip_space = [&rest] {
    std::size_t size = 0;
    while (size < rest.size() && is(rest[size], kIsSpace)) ++size;
    rest.remove_prefix(size);
    return size > 0;
  };
  if (!skip_space() || !rest.starts_with(word)) return std::nullopt;
  rest.remove_prefix(word.size());
  skip_space();
  if (!rest.starts_with('=')) return std::nullopt;
  rest.remove_prefix(1);
  skip_space();
  if (!rest.starts_with('"') && !rest.starts_with('\'')) return std::nullopt;
  std::size_t end = 1;
  while (end < rest.size() && rest[end] != '<' && rest[end] != rest.front()) ++end;
  if (end == rest.size() || rest[end] == '<') return std::nullopt;
  text = rest.substr(end + 1);
  return rest.substr(1, end - 1);
}

// The encoding that the XML declaration names, as a slice of it; empty when it names none. Only a
// declaration that is sound up to there counts: the reader tells what is wrong with another one.
std::string_view encoding_declared(std::string_view bytes) {
  constexpr std::string_view kBegin = "<?xml";
  if (!bytes.starts_with(kBegin)) return {};
  bytes.remove_prefix(kBegin.size());
  if (!take_declared(bytes, "version")) return {};
  return take_declared(bytes, "encoding").value_or(std::string_view());
}

Encoding encoding_of(std::string_view bytes) {
  if (usual_declaration(bytes) != 0) return Encoding::utf_8;
  if (const auto shown = encoding_shown(bytes)) return *shown;
  const std::string_view declared = encoding_declared(bytes);
  if (declared.empty()) return Encoding::utf_8;
  const auto where = [&] {
    return position_in(bytes, static_cast<std::size_t>(declared.data() - bytes.data()));
  };
  const auto encoding = encoding_named(declared);
  if (!encoding) fail_unknown(declared, where());
  if (encoding == Encoding::utf_16 || encoding == Encoding::utf_16le ||
      encoding == Encoding::utf_16be) {
    throw ReadError(Problem::not_well_formed, where(),
                    "the document declares the encoding '" + std::string(declared) +
                        "', but its characters are single bytes");
  }
  return *encoding;
}

Encoding encoding_given(std::string_view name) {
  const auto encoding = encoding_named(name);
  if (!encoding) fail_unknown(name, {});
  return *encoding;
}

char32_t character_of(unsigned char byte, Encoding encoding) {
  if (encoding == Encoding::ascii) return 0;
  if (encoding == Encoding::windows_1252 && byte < 0xA0) return kWindowsExtras[byte - 0x80u];
  if (encoding != Encoding::latin_9) return byte;
  switch (byte) {
    case 0xA4:
      return 0x20AC;
    case 0xA6:
      return 0x0160;
    case 0xA8:
      return 0x0161;
    case 0xB4:
      return 0x017D;
    case 0xB8:
      return 0x017E;
    case 0xBC:
      return 0x0152;
    case 0xBD:
      return 0x0153;
    case 0xBE:
      return 0x0178;
    default:
      return byte;
  }
}

std::optional<std::string> from_single_bytes(std::string_view bytes, Encoding encoding) {
  const auto beyond_ascii = static_cast<std::size_t>(
      std::count_if(bytes.begin(), bytes.end(), [](char byte) { return !is_ascii(byte); }));
  if (beyond_ascii == 0) return std::nullopt;
  std::string text(bytes.size() + 2 * beyond_ascii, '\0');
  char* out = text.data();
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    const char32_t c = byte < 0x80 ? byte : character_of(byte, encoding);
    if (byte >= 0x80 && c == 0) {
      throw ReadError(Problem::not_well_formed, position_in(bytes, i),
                      "the byte 0x" + hexadecimal(byte, 2) +
                          " stands for nothing in the encoding " + std::string(name_of(encoding)));
    }
    out = encode(c, out);
  }
  text.resize(static_cast<std::size_t>(out - text.data()));
  return text;
}

// Text in two-byte units, from its beginning to some place in it.
class Utf16Text {
 public:
  Utf16Text(std::string_view bytes, bool is_big_endian)
      : bytes_(bytes), high_(is_big_endian ? 0 : 1) {}

  bool at_end() const { return offset_ + 1 >= bytes_.size(); }
  bool has_half_unit() const { return offset_ + 1 == bytes_.size(); }
  std::size_t offset() const { return offset_; }

  // The next character; half of a surrogate pair comes out as it stands.
  char32_t next() {
    const char32_t first = unit(offset_);
    offset_ += 2;
    if (first < 0xD800 || first > 0xDBFF || at_end()) return first;
    const char32_t second = unit(offset_);
    if (second < 0xDC00 || second > 0xDFFF) return first;
    offset_ += 2;
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
  }

 private:
  char32_t unit(std::size_t offset) const {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes_[i]); };
    return static_cast<char32_t>((byte(offset + high_) << 8) | byte(offset + 1 - high_));
  }

  std::string_view bytes_;
  std::size_t high_;
  std::size_t offset_ = 0;
};

Position position_in(Utf16Text text, std::size_t offset) {
  Position place{.line = 1, .column = 1, .offset = offset};
  char32_t before = 0;
  bool first = true;
  while (text.offset() < offset && !text.at_end()) {
    const char32_t c = text.next();
    const bool is_mark = first && c == 0xFEFF;
    first = false;
    if (c == '\n' && before == '\r') {
      before = c;
      continue;
    }
    before = c;
    const bool ends_line = c == '\n' || c == '\r';
    if (ends_line) ++place.line;
    place.column = ends_line ? 1 : place.column + (is_mark ? 0u : 1u);
  }
  return place;
}

std::string from_utf_16(std::string_view bytes, bool is_big_endian) {
  const Utf16Text beginning(bytes, is_big_endian);
  Utf16Text text = beginning;
  // Three bytes for a unit, four for a pair of them, are the most that UTF-8 needs.
  std::string result(bytes.size() / 2 * 3, '\0');
  char* out = result.data();
  while (!text.at_end()) {
    const std::size_t offset = text.offset();
    const char32_t c = text.next();
    if (c >= 0xD800 && c <= 0xDFFF) {
      throw ReadError(Problem::not_well_formed, position_in(beginning, offset),
                      "half of a surrogate pair stands alone in UTF-16");
    }
    out = encode(c, out);
  }
  if (text.has_half_unit()) {
    throw ReadError(Problem::not_well_formed, position_in(beginning, text.offset()),
                    "the document ends inside a character of UTF-16");
  }
  result.resize(static_cast<std::size_t>(out - result.data()));
  return result;
}

}  // namespace

std::size_t usual_declaration(std::string_view document) noexcept {
  constexpr std::string_view kBeginning = R"(<?xml version="1.0" encoding=")";
  constexpr std::string_view kRest = R"(UTF-8"?>)";
  constexpr std::string_view kRestInSmall = R"(utf-8"?>)";
  constexpr std::size_t kSize = kBeginning.size() + kRest.size();
  if (document.size() < kSize || !same_text(document.substr(0, kBeginning.size()), kBeginning)) {
    return 0;
  }
  const std::string_view rest = document.substr(kBeginning.size(), kRest.size());
  return rest == kRest || rest == kRestInSmall ? kSize : 0;
}

std::optional<std::string> converted_to_utf8(std::string_view bytes,
                                             std::string_view override_encoding) {
  const Encoding encoding =
      override_encoding.empty() ? encoding_of(bytes) : encoding_given(override_encoding);
  switch (encoding) {
    case Encoding::utf_8:
      return std::nullopt;
    case Encoding::utf_16:
      // The name says nothing of the order of bytes; where the bytes do not either, it is that of
      // the network.
      return from_utf_16(bytes, encoding_shown(bytes) != Encoding::utf_16le);
    case Encoding::utf_16le:
      return from_utf_16(bytes, false);
    case Encoding::utf_16be:
      return from_utf_16(bytes, true);
    case Encoding::latin_1:
    case Encoding::latin_9:
    case Encoding::windows_1252:
    case Encoding::ascii:
      return from_single_bytes(bytes, encoding);
  }
  return std::nullopt;
}

std::string to_utf8(std::string bytes, std::string_view override_encoding) {
  if (auto text = converted_to_utf8(bytes, override_encoding)) return *std::move(text);
  return bytes;
}

}  // namespace bvconn::detail::xml

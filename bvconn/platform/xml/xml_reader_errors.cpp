#include <algorithm>

#include "bvconn/platform/xml/xml_reader.h"
#include "bvconn/platform/xml/xml_scan.h"

// What is seldom needed: mostly, what is wrong with a document, and where.
namespace bvconn::detail::xml {
namespace {

// The longest piece of a document that a message quotes.
constexpr std::size_t kQuotedBytes = 60;

std::string qualified(std::string_view prefix, std::string_view local) {
  return prefix.empty() ? quoted(local) : quoted(std::string(prefix) + ":" + std::string(local));
}

}  // namespace

char* skip_name_beyond_ascii(char* at) {
  do {
    const Decoded next = decode_valid(at);
    if (!in_name(next.character)) return at;
    at += next.length;
    while (is(*at, kInName)) ++at;
  } while (!is_ascii(*at));
  return at;
}

std::string hexadecimal(char32_t number, int least_digits) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string digits;
  for (int place = 5; place >= 0; --place) {
    const std::size_t digit = (number >> (4 * place)) & 0xFu;
    if (digit != 0 || !digits.empty() || place < least_digits) digits += kDigits[digit];
  }
  return digits;
}

std::string quoted(std::string_view text) {
  if (text.size() <= kQuotedBytes) return std::string(text);
  std::size_t end = kQuotedBytes;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0u) == 0x80) --end;
  return std::string(text.substr(0, end)) + "...";
}

std::string described(const char* at) {
  if (*at == '\'') return "an apostrophe";
  if (*at > ' ' && *at < '\x7F') return std::string("'") + *at + '\'';
  if (is(*at, kIsSpace)) return "white space";
  return "the character U+" + hexadecimal(decode_valid(at).character, 4);
}

Position Reader::position(const char* at) const {
  const Distance before = overwritten_.distance(document_, at);
  return {.line = std::size_t{1} + before.line_ends,
          .column = std::size_t{1} + before.columns,
          .offset = static_cast<std::size_t>(at - begin_)};
}

void Reader::fail(const char* at, std::string_view what) const {
  if (at == end_ && is_cut_) fail_unreadable();
  throw ReadError(Problem::not_well_formed, position(at), std::string(what));
}

// Tells which character it is that no document may hold, or that the bytes are no character.
void Reader::fail_unreadable() const {
  *end_ = unreadable_;
  const Decoded found = decode(slice(end_, buffer_end_));
  if (found.length == 0) {
    const auto byte = static_cast<unsigned char>(unreadable_);
    throw ReadError(Problem::not_well_formed, position(end_),
                    "the byte 0x" + hexadecimal(byte, 2) + " is not UTF-8 here");
  }
  throw ReadError(Problem::not_well_formed, position(end_),
                  "a document may not hold the character U+" + hexadecimal(found.character, 4));
}

void Reader::fail_unexpected(const char* at, std::string_view wanted) const {
  const std::string found = at == end_ ? "the document ends" : "found " + described(at);
  fail(at, found + " instead of " + std::string(wanted));
}

void Reader::fail_depth(const char* at) const {
  throw ReadError(Problem::limit, position(at),
                  "more than " + std::to_string(limits_.depth) + " elements are open here");
}

void Reader::fail_attributes(const char* at) const {
  throw ReadError(Problem::limit, position(at),
                  "the element <" + quoted(open_.back().qualified_name) + "> has more than " +
                      std::to_string(limits_.attributes) + " attributes");
}

void Reader::fail_undeclared(std::string_view prefix) const {
  fail(prefix.data(), "the prefix '" + quoted(prefix) + "' is not declared");
}

// For markup that begins with "<!" and is neither comment nor, in an element, a CDATA section.
void Reader::fail_markup(const char* at) const {
  if (starts_with(at, "<!DOCTYPE")) fail(at, "a document type declaration is not accepted");
  if (starts_with(at, "<![CDATA[")) fail(at, "a CDATA section may stand in an element only");
  const auto rest = static_cast<std::size_t>(end_ - at);
  for (const std::string_view begun : {"<!DOCTYPE", "<![CDATA[", "<!--"}) {
    if (rest < begun.size() && starts_with(at, begun.substr(0, rest))) {
      fail(end_, "the document ends inside markup");
    }
  }
  fail(at, "found '<!' that begins neither a comment nor a CDATA section");
}

void Reader::fail_end_tag(char* at) {
  char* const name = at + 2;
  char* end = skip_name(ncname(name));
  if (*end == ':') end = skip_name(ncname(end + 1));
  if (end == end_) fail(end, "the document ends inside an end tag");
  fail(at, "the end tag </" + quoted(slice(name, end)) + "> does not match <" +
               quoted(open_.back().qualified_name) + ">");
}

void Reader::fail_duplicate(const Attribute& a, const Attribute& b) const {
  const std::string first = qualified(a.prefix, a.local);
  const std::string second = qualified(b.prefix, b.local);
  const char* const at = b.prefix.empty() ? b.local.data() : b.prefix.data();
  if (first == second) fail(at, "the attribute '" + second + "' is there twice");
  fail(at, "the attributes '" + first + "' and '" + second + "' are the same name");
}

}  // namespace bvconn::detail::xml

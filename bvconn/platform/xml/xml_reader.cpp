#include "bvconn/platform/xml/xml_reader.h"

#include <algorithm>
#include <cstring>

#include "bvconn/platform/xml/xml_encoding.h"
#include "bvconn/platform/xml/xml_scan.h"

namespace bvconn::detail::xml {
namespace {

constexpr std::string_view kCdataBegin = "<![CDATA[";
constexpr std::string_view kCommentBegin = "<!--";
constexpr std::string_view kDeclarationBegin = "<?xml";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool is_version(std::string_view text) {
  return text.size() > 2 && text.starts_with("1.") &&
         std::all_of(text.begin() + 2, text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool is_encoding_name(std::string_view text) {
  return !text.empty() && is(text.front(), kBeginsName) && text.front() != '_' &&
         std::all_of(text.begin(), text.end(), [](char c) { return is(c, kInName); });
}

}  // namespace

Reader::Reader(std::span<char> buffer, const Limits& limits, Wanted wanted)
    : begin_(buffer.data()),
      at_(begin_),
      end_(begin_ + buffer.size()),
      buffer_end_(end_),
      limits_(limits),
      wanted_(wanted),
      ready_(limits.unremembered),
      overwritten_(begin_) {
  const std::size_t unreadable = find_unreadable({buffer.data(), buffer.size()});
  if (unreadable == std::string_view::npos) return;
  // Reading goes on up to there, so that an earlier error is the one that is reported.
  end_ = begin_ + unreadable;
  unreadable_ = *end_;
  is_cut_ = true;
  *end_ = '\0';
}

Token Reader::next() {
  if (!began_) begin_document();
  if (last_ == Token::end_element) leave_element();
  if (is_empty_element_) {
    is_empty_element_ = false;
    return last_ = Token::end_element;
  }
  return last_ = open_.empty() ? outside_root() : content();
}

void Reader::begin_document() {
  began_ = true;
  if (starts_with(at_, kByteOrderMark)) at_ += kByteOrderMark.size();
  document_ = at_;
  if (at_ == end_ && !is_cut_) fail(at_, "the document is empty");
  if (const std::size_t usual = usual_declaration(slice(at_, end_)); usual != 0) {
    at_ += usual;
    return;
  }
  if (!starts_with(at_, kDeclarationBegin)) return;
  char* after = at_ + kDeclarationBegin.size();
  if (is(*after, kIsSpace) || *after == '?' || after == end_) at_ = xml_declaration(after);
}

// Reads on behind "<?xml". The words of the declaration must come in their order.
char* Reader::xml_declaration(char* at) {
  std::string_view value;
  if (!declares(at, "version", value)) fail_unexpected(skip_space(at), "version=");
  if (!is_version(value)) {
    fail(value.data(), "version '" + quoted(value) + "' of XML is not known");
  }
  if (declares(at, "encoding", value) && !is_encoding_name(value)) {
    fail(value.data(), "'" + quoted(value) + "' is not the name of an encoding");
  }
  if (declares(at, "standalone", value) && value != "yes" && value != "no") {
    fail(value.data(), "standalone must be 'yes' or 'no', not '" + quoted(value) + "'");
  }
  at = skip_space(at);
  if (!starts_with(at, "?>")) fail_unexpected(at, "'?>' at the end of the XML declaration");
  return at + 2;
}

// Whether the XML declaration goes on with the word; then `at` moves behind its value.
bool Reader::declares(char*& at, std::string_view word, std::string_view& value) {
  char* next = skip_space(at);
  if (next == at || !starts_with(next, word)) return false;
  next = skip_space(next + word.size());
  if (*next != '=') fail_unexpected(next, "'=' in the XML declaration");
  next = skip_space(next + 1);
  const char quote = *next;
  if (quote != '"' && quote != '\'') fail_unexpected(next, "a quotation mark before the value");
  char* const begin = ++next;
  while (*next != quote && *next != '<' && *next != '\0') ++next;
  if (*next != quote) fail_unexpected(next, "the end of the value in the XML declaration");
  value = slice(begin, next);
  at = next + 1;
  return true;
}

Token Reader::outside_root() {
  for (;;) {
    at_ = skip_space(at_);
    if (at_ == end_) {
      if (!has_root_ || is_cut_) fail(at_, "the document has no root element");
      return Token::end_of_document;
    }
    if (*at_ != '<') fail(at_, "found " + described(at_) + " outside the root element");
    if (starts_with(at_, kCommentBegin)) {
      const Token token = comment(at_);
      if (wanted_.comments) return token;
    } else if (at_[1] == '?') {
      const Token token = instruction(at_);
      if (wanted_.instructions) return token;
    } else if (at_[1] == '!') {
      fail_markup(at_);
    } else if (has_root_) {
      fail(at_, "found markup after the end of the root element");
    } else if (at_[1] == '/') {
      fail(at_, "found an end tag, but no element is open");
    } else {
      has_root_ = true;
      return start_tag(at_);
    }
  }
}

Token Reader::content() {
  char* at = *at_ == '<' ? at_ : skip_text(at_, end_);
  if (*at != '<' || at[1] == '!' || at[1] == '?') {
    return mixed_content({.begin = at_, .out = at}, at);
  }
  if (at != at_) return text_until({.begin = at_, .out = at}, at);
  return at[1] == '/' ? end_tag(at) : start_tag(at);
}

Token Reader::text_until(Run run, char* at) {
  text_ = slice(run.begin, run.out);
  at_ = at;
  return Token::text;
}

// Puts together character data that is not one untouched slice. `at` is where `skip_text` halted;
// up to there everything is in the run.
Token Reader::mixed_content(Run run, char* at) {
  for (;;) {
    if (*at == '&') {
      at = reference(at, run.out);
    } else if (*at == '\r') {
      at += at[1] == '\n' ? 2 : 1;
      will_overwrite(run.out, at);
      *run.out++ = '\n';
    } else if (*at == ']') {
      fail(at, "']]>' may not stand in text");
    } else if (at == end_) {
      fail(at,
           "the document ends inside the element <" + quoted(open_.back().qualified_name) + ">");
    } else if (starts_with(at, kCdataBegin)) {
      at = cdata_section(at, run);
    } else if (at[1] == '?' || starts_with(at, kCommentBegin)) {
      const bool is_comment = at[1] == '!';
      const bool is_wanted = is_comment ? wanted_.comments : wanted_.instructions;
      if (is_wanted && run.out != run.begin) return text_until(run, at);
      const Token token = is_comment ? comment(at) : instruction(at);
      if (is_wanted) return token;
      at = at_;
    } else if (at[1] == '!') {
      fail_markup(at);
    } else {
      if (run.out != run.begin) return text_until(run, at);
      return at[1] == '/' ? end_tag(at) : start_tag(at);
    }
    char* piece = at;
    at = skip_text(at, end_);
    keep(run, piece, at);
  }
}

// Adds a piece to a run. The first piece stays where it is, and the run begins there.
void Reader::keep(Run& run, char* piece, char* piece_end) {
  const auto size = static_cast<std::size_t>(piece_end - piece);
  if (run.out == run.begin) {
    run.begin = piece;
  } else if (run.out != piece) {
    will_overwrite(run.out, piece_end);
    std::memmove(run.out, piece, size);
    piece = run.out;
  }
  run.out = piece + size;
}

char* Reader::cdata_section(char* at, Run& run) {
  char* const begin = at + kCdataBegin.size();
  char* end = begin;
  while (!(*end == ']' && end[1] == ']' && end[2] == '>')) {
    end = static_cast<char*>(std::memchr(end + 1, ']', static_cast<std::size_t>(end_ - end)));
    if (end == nullptr) {
      fail(is_cut_ ? end_ : at, "the CDATA section that begins here has no end");
    }
  }
  char* piece = begin;
  while (char* stop =
             static_cast<char*>(std::memchr(piece, '\r', static_cast<std::size_t>(end - piece)))) {
    keep(run, piece, stop);
    piece = stop + (stop[1] == '\n' ? 2 : 1);
    will_overwrite(run.out, piece);
    *run.out++ = '\n';
  }
  keep(run, piece, end);
  return end + 3;
}

Token Reader::comment(char* at) {
  char* const begin = at + kCommentBegin.size();
  char* const after = comment_end(at);
  char* end = after - 3;
  if (wanted_.comments) end = normalise_line_ends(begin, end);
  text_ = slice(begin, end);
  at_ = after;
  return Token::comment;
}

// The place after "-->".
char* Reader::comment_end(char* at) {
  char* dash = at + kCommentBegin.size();
  for (;;) {
    dash = static_cast<char*>(std::memchr(dash, '-', static_cast<std::size_t>(end_ - dash)));
    if (dash == nullptr) fail(is_cut_ ? end_ : at, "the comment that begins here has no end");
    if (dash[1] == '-') break;
    ++dash;
  }
  if (dash[2] != '>') {
    fail(dash + 2 == end_ ? end_ : dash, "'--' may not stand in a comment");
  }
  return dash + 3;
}

Token Reader::instruction(char* at) {
  char* const begin = at + 2;
  char* data = ncname(begin);
  target_ = slice(begin, data);
  if (target_.size() == 3 && (begin[0] | 0x20) == 'x' && (begin[1] | 0x20) == 'm' &&
      (begin[2] | 0x20) == 'l') {
    fail(at, target_ == "xml"
                 ? "an XML declaration may stand at the very beginning only"
                 : "a processing instruction may not be called '" + std::string(target_) + "'");
  }
  if (*data == ':') fail(data, "the name of a processing instruction may not hold a colon");
  if (!is(*data, kIsSpace) && !starts_with(data, "?>")) {
    fail_unexpected(data, "white space or '?>' after the name of a processing instruction");
  }
  data = skip_space(data);
  char* const after = instruction_end(data);
  char* end = after - 2;
  if (wanted_.instructions) end = normalise_line_ends(data, end);
  text_ = slice(data, end);
  at_ = after;
  return Token::instruction;
}

// The place after "?>".
char* Reader::instruction_end(char* at) {
  for (char* mark = at;; ++mark) {
    mark = static_cast<char*>(std::memchr(mark, '?', static_cast<std::size_t>(end_ - mark)));
    if (mark == nullptr) {
      fail(end_, "the document ends inside the processing instruction '" + quoted(target_) + "'");
    }
    if (mark[1] == '>') return mark + 2;
  }
}

char* Reader::normalise_line_ends(char* begin, char* end) {
  char* out = static_cast<char*>(std::memchr(begin, '\r', static_cast<std::size_t>(end - begin)));
  if (out == nullptr) return end;
  will_overwrite(out, end);
  for (char* at = out; at != end; ++at) {
    if (*at != '\r') {
      *out++ = *at;
    } else if (at[1] != '\n') {
      *out++ = '\n';
    }
  }
  return out;
}

// What a reference stands for is never longer than the reference itself.
char* Reader::reference(char* at, char*& out) {
  struct Entity {
    std::string_view name;
    char stands_for;
  };
  static constexpr Entity kEntities[] = {
      {"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&quot;", '"'}, {"&apos;", '\''}};
  if (at[1] == '#') return character_reference(at, out);
  for (const Entity& entity : kEntities) {
    if (starts_with(at, entity.name)) {
      will_overwrite(out, at + entity.name.size());
      *out++ = entity.stands_for;
      return at + entity.name.size();
    }
  }
  char* const name = at + 1;
  char* const after = skip_name(ncname(name));
  if (*after != ';') fail_unexpected(after, "';' after the name of an entity");
  fail(at, "the entity '" + quoted(slice(name, after)) + "' is not declared");
}

char* Reader::character_reference(char* at, char*& out) {
  const bool is_hexadecimal = at[2] == 'x';
  const char32_t base = is_hexadecimal ? 16 : 10;
  char* const digits = at + (is_hexadecimal ? 3 : 2);
  char32_t c = 0;
  char* next = digits;
  for (;; ++next) {
    char32_t digit = base;
    if (*next >= '0' && *next <= '9') digit = static_cast<char32_t>(*next - '0');
    if (*next >= 'a' && *next <= 'f') digit = static_cast<char32_t>(*next - 'a' + 10);
    if (*next >= 'A' && *next <= 'F') digit = static_cast<char32_t>(*next - 'A' + 10);
    if (digit >= base) break;
    c = std::min<char32_t>(c * base + digit, 0x110000);
  }
  if (next == digits) fail_unexpected(next, "a digit in the character reference");
  if (*next != ';') fail_unexpected(next, "a digit or ';' in the character reference");
  ++next;
  if (!is_character(c)) {
    fail(at, "the reference " + quoted(slice(at, next)) +
                 " is not to a character that a document may hold");
  }
  will_overwrite(out, next);
  out = encode(c, out);
  return next;
}

}  // namespace bvconn::detail::xml

#include <algorithm>
#include <cstring>

#include "bvconn/platform/xml/xml_reader.h"
#include "bvconn/platform/xml/xml_scan.h"

// Start tags and end tags: names, attributes, namespaces.
namespace bvconn::detail::xml {
namespace {

// Up to this number of attributes each is compared with each, which is quicker than sorting.
constexpr std::size_t kComparedInTurn = 12;

std::string_view declared_prefix(const Attribute& declaration) {
  return declaration.prefix.empty() ? std::string_view() : declaration.local;
}

}  // namespace

Token Reader::end_tag(char* at) {
  char* name = at + 2;
  const std::string_view expected = open_.back().qualified_name;
  if (static_cast<std::size_t>(end_ - name) < expected.size() ||
      !same_bytes(name, expected.data(), expected.size())) {
    fail_end_tag(at);
  }
  char* after = name + expected.size();
  if (*after != '>') {
    if (is(*after, kInName) || !is_ascii(*after) || *after == ':') fail_end_tag(at);
    after = skip_space(after);
    if (*after != '>') fail_unexpected(after, "'>' at the end of the end tag");
  }
  at_ = after + 1;
  return Token::end_element;
}

Token Reader::start_tag(char* at) {
  const ReadyTag* const ready = ready_.find(at, end_, scope_.state());
  const bool is_ready = ready != nullptr && open_.size() < limits_.depth;
  return is_ready ? ready_element(*ready, at) : new_start_tag(at);
}

Token Reader::new_start_tag(char* at) {
  tag_ = {};
  attributes_.clear();
  has_prefixed_attributes_ = has_declarations_ = has_overwritten_values_ = false;
  char* after = qualified_name(at + 1, name_.prefix, name_.local);
  const std::string_view written = slice(at + 1, after);
  if (open_.size() >= limits_.depth) fail_depth(at);
  open_.push({.qualified_name = written, .scope_mark = scope_.mark()});
  at_ = *after == '>' ? after + 1 : attributes_of_tag(after);
  const std::uint32_t scope_before = scope_.state();
  resolve_names();
  if (!has_overwritten_values_) remember(at, written, scope_before);
  return Token::start_element;
}

// Gives the tag that was just read a number. Its attributes lie in the buffer as they were.
void Reader::remember(const char* begin, std::string_view name, std::uint32_t scope_before) {
  const ReadyTag tag{.begin = begin,
                     .size = static_cast<std::uint32_t>(at_ - begin),
                     .name_size = static_cast<std::uint32_t>(name.size()),
                     .scope_before = scope_before,
                     .scope_inside = scope_.state(),
                     .is_empty = is_empty_element_,
                     .declares = has_declarations_,
                     .name = name_};
  tag_.number = ready_.remember(tag, attributes_.items());
}

// An element whose start tag is known: all of it when it holds nothing but text.
Token Reader::ready_element(const ReadyTag& tag, char* at) {
  tag_ = {.number = tag.number, .is_known = true};
  char* const begin = at + tag.size;
  if (!tag.declares) {
    char* const end = tag.is_empty || *begin == '<' ? begin : skip_text(begin, end_);
    if (tag.is_empty || is_end_tag_of(tag, end)) {
      text_ = slice(begin, end);
      at_ = tag.is_empty ? end : end + tag.name_size + 3;
      return Token::whole_element;
    }
  }
  open_.push({.qualified_name = tag.written(), .scope_mark = scope_.mark()});
  if (tag.declares) {
    declare_namespaces(ready_.attributes(tag));
    scope_.is_as_in(tag.scope_inside);
  }
  is_empty_element_ = tag.is_empty;
  at_ = begin;
  return Token::start_element;
}

// Whether the end tag stands there, written without a space.
bool Reader::is_end_tag_of(const ReadyTag& tag, const char* at) const {
  const std::size_t size = tag.name_size;
  return static_cast<std::size_t>(end_ - at) >= size + 3 && at[0] == '<' && at[1] == '/' &&
         at[size + 2] == '>' && same_bytes(at + 2, tag.written().data(), size);
}

void Reader::leave_element() {
  scope_.forget_after(open_.back().scope_mark);
  open_.pop();
}

char* Reader::ncname(char* at) {
  return is(*at, kBeginsName) ? skip_name(at + 1) : ncname_beyond_ascii(at);
}

char* Reader::ncname_beyond_ascii(char* at) {
  if (is_ascii(*at)) fail_unexpected(at, "a name");
  const Decoded first = decode_valid(at);
  if (!begins_name(first.character)) fail_unexpected(at, "a name");
  return skip_name(at + first.length);
}

char* Reader::qualified_name(char* at, std::string_view& prefix, std::string_view& local) {
  char* end = ncname(at);
  if (*end != ':') {
    prefix = {};
    local = slice(at, end);
    return end;
  }
  prefix = slice(at, end);
  char* const begin = end + 1;
  end = ncname(begin);
  local = slice(begin, end);
  if (*end == ':') fail(end, "a name may not hold two colons");
  return end;
}

char* Reader::attributes_of_tag(char* at) {
  for (;;) {
    char* next = skip_space(at);
    if (*next == '>') return next + 1;
    if (*next == '/') {
      if (next[1] != '>') fail_unexpected(next + 1, "'>' after the '/' of a tag");
      is_empty_element_ = true;
      return next + 2;
    }
    if (next == at) fail_unexpected(at, "white space, '/>' or '>' in the start tag");
    if (attributes_.size() >= limits_.attributes) fail_attributes(next);
    at = attribute(next);
  }
}

char* Reader::attribute(char* at) {
  Attribute& added = attributes_.push();
  at = skip_space(qualified_name(at, added.prefix, added.local));
  if (*at != '=') fail_unexpected(at, "'=' after the name of an attribute");
  at = value(skip_space(at + 1), added.value);
  if (added.prefix.empty() ? added.local == "xmlns" : added.prefix == "xmlns") {
    added.is_namespace_declaration = true;
    has_declarations_ = true;
    added.uri = kXmlnsUri;
  } else if (!added.prefix.empty()) {
    has_prefixed_attributes_ = true;
  }
  return at;
}

char* Reader::value(char* at, std::string_view& value) {
  const char quote = *at;
  if (quote != '"' && quote != '\'') fail_unexpected(at, "a quotation mark before the value");
  char* const begin = ++at;
  for (;;) {
    at = skip_value(at, end_);
    if (*at == quote) break;
    if (*at != '"' && *at != '\'') return normalised_value(begin, at, quote, value);
    ++at;
  }
  value = slice(begin, at);
  return at + 1;
}

// A value in which something is to be replaced, first at `at`.
char* Reader::normalised_value(char* begin, char* at, char quote, std::string_view& value) {
  has_overwritten_values_ = true;
  char* out = at;
  while (*at != quote) {
    if (*at == '&') {
      at = reference(at, out);
    } else if (*at == '<') {
      fail(at, "'<' may not stand in the value of an attribute");
    } else if (at == end_) {
      fail(at, "the document ends inside the value of an attribute");
    } else if (is(*at, kIsSpace)) {
      at += at[0] == '\r' && at[1] == '\n' ? 2 : 1;
      will_overwrite(out, at);
      *out++ = ' ';
    } else {
      ++at;  // the other quotation mark
      will_overwrite(out, at);
      *out++ = at[-1];
    }
    char* const piece = at;
    at = skip_value(at, end_);
    will_overwrite(out, at);
    std::memmove(out, piece, static_cast<std::size_t>(at - piece));
    out += at - piece;
  }
  value = slice(begin, out);
  return at + 1;
}

void Reader::check_declaration(const Attribute& declaration) const {
  const std::string_view prefix = declared_prefix(declaration);
  const std::string_view uri = declaration.value;
  const char* const at =
      declaration.prefix.empty() ? declaration.local.data() : declaration.prefix.data();
  if (prefix == "xmlns") fail(at, "the prefix 'xmlns' may not be declared");
  if ((prefix == "xml") != (uri == kXmlUri)) {
    fail(at, prefix == "xml"
                 ? "the prefix 'xml' may not be bound to another namespace"
                 : "the namespace of the prefix 'xml' may not be bound to another name");
  }
  if (uri == kXmlnsUri) fail(at, "the namespace of namespace declarations may not be bound");
  if (uri.empty() && !prefix.empty()) {
    fail(at, "the prefix '" + quoted(prefix) + "' may not be bound to an empty namespace");
  }
}

void Reader::declare_namespaces(std::span<const Attribute> attributes) {
  for (const Attribute& attribute : attributes) {
    if (!attribute.is_namespace_declaration) continue;
    scope_.declare(declared_prefix(attribute), attribute.value);
  }
}

void Reader::resolve_names() {
  if (has_declarations_) {
    for (const Attribute& attribute : attributes_) {
      if (attribute.is_namespace_declaration) check_declaration(attribute);
    }
    declare_namespaces(attributes_.items());
  }
  const auto uri_of = [this](std::string_view prefix) {
    const auto uri = scope_.lookup(prefix);
    if (!uri) fail_undeclared(prefix);
    return *uri;
  };
  name_.uri = name_.prefix.empty() ? scope_.default_namespace() : uri_of(name_.prefix);
  if (has_prefixed_attributes_) {
    for (Attribute& attribute : attributes_) {
      if (!attribute.prefix.empty() && !attribute.is_namespace_declaration) {
        attribute.uri = uri_of(attribute.prefix);
      }
    }
  }
  if (attributes_.size() > 1) check_duplicates();
}

// Attributes that are written with the same name have the same namespace too, so it is enough to
// compare what the names mean.
void Reader::check_duplicates() {
  if (attributes_.size() > kComparedInTurn) return check_many_duplicates();
  for (std::size_t i = 1; i < attributes_.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      const Attribute& a = attributes_[j];
      const Attribute& b = attributes_[i];
      if (same_text(a.local, b.local) && compare_uris(a.uri, b.uri) == 0) fail_duplicate(a, b);
    }
  }
}

void Reader::check_many_duplicates() {
  std::vector<const Attribute*> sorted(attributes_.size());
  std::transform(attributes_.begin(), attributes_.end(), sorted.begin(),
                 [](const Attribute& attribute) { return &attribute; });
  std::sort(sorted.begin(), sorted.end(), [](const Attribute* a, const Attribute* b) {
    if (const int order = a->local.compare(b->local); order != 0) return order < 0;
    if (const int order = compare_uris(a->uri, b->uri); order != 0) return order < 0;
    return a < b;
  });
  const auto found =
      std::adjacent_find(sorted.begin(), sorted.end(), [](const Attribute* a, const Attribute* b) {
        return a->local == b->local && compare_uris(a->uri, b->uri) == 0;
      });
  if (found != sorted.end()) fail_duplicate(*found[0], *found[1]);
}

}  // namespace bvconn::detail::xml

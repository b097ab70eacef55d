#pragma once

#include <iconv.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// Random numbers that are the same on every platform, unlike those of the library's distributions.
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : engine_(seed) {}
  std::size_t below(std::size_t count) { return engine_() % count; }
  bool one_in(std::size_t count) { return below(count) == 0; }
  template <class Items>
  auto pick(const Items& items) {
    return items[below(std::size(items))];
  }

 private:
  std::mt19937 engine_;
};

/// Writes documents that are well-formed by construction, and use whatever XML allows: several
/// spellings of the same, namespaces declared, hidden and undeclared, sections, references.
class DocumentGenerator {
 public:
  struct Content {
    bool latin_1_only = false;  ///< no character beyond U+00FF is written out
  };

  DocumentGenerator(std::uint32_t seed, Content content) : dice_(seed), content_(content) {}

  /// `encoding` is what the XML declaration names; without one there may be no declaration at all.
  std::string document(std::string_view encoding = "") {
    text_.clear();
    scopes_ = {{}};
    if (!encoding.empty() || dice_.one_in(2)) declaration(encoding);
    misc();
    element(0);
    misc();
    return text_;
  }

 private:
  using Prefixes = std::vector<std::string>;

  void declaration(std::string_view encoding) {
    text_ += "<?xml" + space() + "version" + equals() + in_quotes(dice_.one_in(5) ? "1.1" : "1.0");
    if (!encoding.empty()) text_ += space() + "encoding" + equals() + in_quotes(encoding);
    if (dice_.one_in(3)) text_ += space() + "standalone" + equals() + in_quotes("yes");
    text_ += optional_space() + "?>";
  }
  void misc() {
    while (dice_.one_in(3)) {
      const auto kind = dice_.below(3);
      kind == 0 ? comment() : kind == 1 ? instruction() : void(text_ += space());
    }
  }

  void element(std::size_t depth) {
    scopes_.push_back(scopes_.back());
    std::string declarations = declare_namespaces();
    const std::string name = prefixed_name();
    text_ += "<" + name;
    attributes(declarations);
    text_ += optional_space();
    if (dice_.one_in(4)) {
      text_ += "/>";
    } else {
      text_ += ">";
      for (std::size_t parts = dice_.below(5); parts > 0; --parts) part(depth);
      text_ += "</" + name + optional_space() + ">";
    }
    scopes_.pop_back();
  }

  // Declares up to two prefixes, perhaps ones that are in force, and perhaps the default namespace.
  std::string declare_namespaces() {
    std::string declarations;
    if (dice_.one_in(5)) {
      declarations += space() + "xmlns" + equals() + (dice_.one_in(3) ? "''" : quoted_uri());
    }
    const std::size_t first = dice_.below(kPrefixCount);
    for (std::size_t i = 0, count = dice_.one_in(2) ? dice_.below(3) : 0; i < count; ++i) {
      const std::string prefix(kPrefixes[(first + i) % kPrefixCount]);
      declarations += space() + "xmlns:" + prefix + equals() + quoted_uri();
      scopes_.back().push_back(prefix);
    }
    return declarations;
  }

  void attributes(const std::string& declarations) {
    if (dice_.one_in(2)) text_ += declarations;
    const std::size_t first = dice_.below(kNameCount);
    for (std::size_t i = 0, count = dice_.below(4); i < count; ++i) {
      const std::string name(kNames[(first + i) % kNameCount]);
      text_ += space() + (dice_.one_in(6) ? "xml:" + name : prefix_in_force() + name) + equals();
      value();
    }
    if (text_.find(declarations, text_.rfind('<')) == std::string::npos) text_ += declarations;
  }

  void part(std::size_t depth) {
    switch (dice_.below(8)) {
      case 0:
        return comment();
      case 1:
        return instruction();
      case 2:
        return section();
      case 3:
        return reference();
      case 4:
      case 5:
        return depth < 6 ? element(depth + 1) : section();
      default:
        return characters("\"'>]] ", 1 + dice_.below(30));
    }
  }

  void value() {
    const char quote = dice_.one_in(2) ? '"' : '\'';
    text_ += quote;
    for (std::size_t parts = dice_.below(4); parts > 0; --parts) {
      dice_.one_in(3) ? reference() : characters(quote == '"' ? "'>" : "\">", dice_.below(10));
    }
    text_ += quote;
  }
  void comment() {
    text_ += "<!--";
    characters("<>&'\"]", dice_.below(12));
    text_ += "-->";
  }
  void instruction() {
    text_ += "<?";
    text_ += dice_.pick(kNames);
    if (dice_.one_in(2)) {
      text_ += space();
      characters("<>&'\"-", dice_.below(12));
    }
    text_ += "?>";
  }
  void section() {
    text_ += "<![CDATA[";
    characters("<&'\"-", dice_.below(20));
    text_ += "]]>";
  }
  void reference() {
    static constexpr std::string_view kReferences[] = {
        "&lt;",     "&gt;",   "&amp;",  "&quot;",   "&apos;",     "&#65;",     "&#x9;",
        "&#10;",    "&#xD;",  "&#xE9;", "&#x20AC;", "&#x1F600;",  "&#xFFFD;",  "&#00032;",
        "&#xd7ff;", "&#127;", "&#x85;", "&#xE000;", "&#1114111;", "&#x00000a;"};
    text_ += dice_.pick(kReferences);
  }

  // Characters, among them some of `extra`; never the end of a section or of a comment.
  void characters(std::string_view extra, std::size_t count) {
    static constexpr std::string_view kPlain[] = {"a",        "b",    "Z",  "0",  " ",
                                                  "\n",       "\r\n", "\r", "\t", "some words",
                                                  "12345.67", "=",    ";",  "/",  "#"};
    static constexpr std::string_view kLatin[] = {"\xC3\xA9", "\xC2\xA0", "\xC3\xBF", "\xC2\xB7"};
    static constexpr std::string_view kFar[] = {"\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xE4\xB8\xAD",
                                                "\xEF\xBF\xBD", "\xCD\xBE",         "\xEF\xBB\xBF"};
    for (; count > 0; --count) {
      const auto kind = dice_.below(12);
      if (kind == 0) text_ += dice_.pick(kLatin);
      if (kind == 1) text_ += content_.latin_1_only ? "x" : dice_.pick(kFar);
      if (kind == 2 || kind == 3) text_ += extra[dice_.below(extra.size())];
      if (kind > 3) text_ += dice_.pick(kPlain);
      const bool ends_section = text_.size() >= 3 && text_.substr(text_.size() - 3) == "]]>";
      if (ends_section) text_.insert(text_.size() - 1, " ");
    }
  }

  std::string prefixed_name() { return prefix_in_force() + std::string(dice_.pick(kNames)); }
  std::string prefix_in_force() {
    const Prefixes& prefixes = scopes_.back();
    return prefixes.empty() || dice_.one_in(2) ? "" : dice_.pick(prefixes) + ":";
  }
  std::string quoted_uri() {
    return in_quotes("urn:" + std::to_string(dice_.below(1'000'000)) +
                     (dice_.one_in(9) ? "&amp;" : ""));
  }
  std::string in_quotes(std::string_view text) {
    const std::string quote = dice_.one_in(2) ? "\"" : "'";
    return quote + std::string(text) + quote;
  }
  std::string space() {
    static constexpr std::string_view kSpaces[] = {" ", " ", " ", "\n", "\t", "\r\n", "\r", "  \n"};
    return std::string(dice_.pick(kSpaces));
  }
  std::string optional_space() { return dice_.one_in(5) ? space() : ""; }
  std::string equals() { return optional_space() + "=" + optional_space(); }

  static constexpr std::string_view kPrefixes[] = {"p", "q", "ns1", "SOAP-ENV", "x.y", "\xC3\xA0"};
  static constexpr std::size_t kPrefixCount = std::size(kPrefixes);
  static constexpr std::string_view kNames[] = {
      "a", "item", "Order-Line", "_1", "b.c", "type", "\xC3\xA9t\xC3\xA9", "x", "Envelope"};
  static constexpr std::size_t kNameCount = std::size(kNames);

  Dice dice_;
  Content content_;
  std::string text_;
  std::vector<Prefixes> scopes_;
};

/// UTF-8 in another encoding, by the C library.
inline std::string encoded(std::string text, const char* encoding) {
  const iconv_t converter = iconv_open(encoding, "UTF-8");
  if (reinterpret_cast<std::intptr_t>(converter) == -1) throw std::runtime_error(encoding);
  std::string result(text.size() * 4 + 8, '\0');
  char* from = text.data();
  char* to = result.data();
  std::size_t from_size = text.size();
  std::size_t to_size = result.size();
  const bool converted = iconv(converter, &from, &from_size, &to, &to_size) == 0;
  iconv_close(converter);
  if (!converted) throw std::runtime_error("cannot be written in " + std::string(encoding));
  result.resize(result.size() - to_size);
  return result;
}

/// Damages a document at a few places: bytes changed, taken out, doubled, or replaced by a piece of
/// the same document or by a word that means something in XML.
class Damage {
 public:
  explicit Damage(std::uint32_t seed) : dice_(seed) {}

  std::string done_to(std::string document) {
    for (std::size_t count = 1 + dice_.below(3); count > 0 && !document.empty(); --count) {
      const std::size_t at = dice_.below(document.size());
      const std::size_t size = 1 + dice_.below(1 + dice_.below(20));
      switch (dice_.below(7)) {
        case 0:
          document[at] = static_cast<char>(dice_.below(256));
          break;
        case 1:
          document[at] = static_cast<char>(document[at] ^ (1 << dice_.below(8)));
          break;
        case 2:
          document.erase(at, size);
          break;
        case 3:
          document.insert(at, document.substr(at, size));
          break;
        case 4:
          document.insert(at, document.substr(dice_.below(document.size()), size));
          break;
        case 5:
          document.replace(at, dice_.below(4), dice_.pick(kWords));
          break;
        default:
          document.resize(dice_.one_in(4) ? at : document.size());
          document.insert(std::min(at, document.size()), dice_.pick(kWords));
      }
    }
    return document;
  }

 private:
  static constexpr std::string_view kWords[] = {"<",
                                                ">",
                                                "&",
                                                "]]>",
                                                "--",
                                                "-->",
                                                "<!--",
                                                "<![CDATA[",
                                                "?>",
                                                "<?",
                                                "/>",
                                                "</",
                                                "<a>",
                                                "</a>",
                                                "'",
                                                "\"",
                                                "=",
                                                ":",
                                                "\r",
                                                "\n",
                                                "\x01",
                                                "\xC0",
                                                "\xEF\xBF\xBF",
                                                "\xED\xA0\x80",
                                                "&#0;",
                                                "&#x110000;",
                                                "&x;",
                                                "a='1'",
                                                " a=\"&#9;\" ",
                                                "xmlns=''",
                                                " xmlns:p=''",
                                                " xmlns:xml='u'",
                                                "xmlns:",
                                                "xml:",
                                                "p:",
                                                "<?xml version='1.0'?>",
                                                "<!DOCTYPE a>",
                                                "encoding='UTF-8'",
                                                "standalone='maybe'",
                                                ";",
                                                "]"};
  Dice dice_;
};

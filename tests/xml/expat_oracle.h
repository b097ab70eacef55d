#pragma once

#include <expat.h>
#include <iconv.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/xml/xml_encoding.h"
#include "bvconn/platform/xml/xml_reader.h"

/// Reads documents with our reader and with expat, as two witnesses who do not know each other, and
/// compares what they say: the same verdict, and the same tree. Shared by tests and fuzzer.
namespace xml_oracle {

namespace xml = bvconn::detail::xml;

/// What a document holds, one line for each thing, every text with its length in front. So two
/// trees are the same exactly when their dumps are.
class Dump {
 public:
  explicit Dump(bool tells_comments) : tells_comments_(tells_comments) {}

  void text(std::string_view text) { pending_text_ += text; }
  void declaration(std::string_view prefix, std::string_view uri) {
    line("namespace", {prefix, uri});
  }
  void start(std::string_view uri, std::string_view local, std::string_view prefix) {
    line("element", {uri, local, prefix});
  }
  void attribute(std::string_view uri, std::string_view local, std::string_view prefix,
                 std::string_view value) {
    line("attribute", {uri, local, prefix, value});
  }
  void end() { line("end", {}); }
  void comment(std::string_view text) {
    if (tells_comments_) line("comment", {text});
  }
  void instruction(std::string_view target, std::string_view data) {
    if (tells_comments_) line("instruction", {target, data});
  }
  const std::string& finished() {
    flush();
    return dump_;
  }

 private:
  void flush() {
    if (pending_text_.empty()) return;
    const std::string run = std::move(pending_text_);
    pending_text_.clear();
    write("text", {run});
  }
  void line(std::string_view kind, std::initializer_list<std::string_view> parts) {
    flush();
    write(kind, parts);
  }
  void write(std::string_view kind, std::initializer_list<std::string_view> parts) {
    dump_ += kind;
    for (const std::string_view part : parts) {
      dump_ += ' ';
      dump_ += std::to_string(part.size());
      dump_ += ':';
      dump_ += part;
    }
    dump_ += '\n';
  }

  bool tells_comments_;
  std::string pending_text_;
  std::string dump_;
};

// ---------------------------------------------------------------------------------- our reader

struct Ours {
  bool accepted = false;
  std::string dump;
  std::optional<xml::ReadError> error;
  /// The first promise of the reader that was broken: slices outside the buffer, two texts in a
  /// row, an empty text, a change to a slice that had been given out.
  std::string broken_promise;
  /// Whether some name has a character beyond Latin-1.
  bool has_far_names = false;
};

/// Takes down what the reader tells, and checks that it keeps its promises.
class Witness {
 public:
  Witness(const std::string& buffer, bool tells_comments)
      : buffer_(buffer), dump_(tells_comments) {}

  void start_element(const xml::Name& name, std::span<const xml::Attribute> attributes,
                     const xml::Scope& scope) {
    after_text_ = false;
    for (const auto& attribute : attributes) {
      take(attribute.value);
      take_name(attribute.prefix);
      take_name(attribute.local);
      if (!attribute.is_namespace_declaration) continue;
      const std::string_view prefix = attribute.prefix.empty() ? "" : attribute.local;
      dump_.declaration(prefix, attribute.value);
      if (scope.lookup(prefix) != attribute.value) promise("a declaration is in scope at once");
    }
    take_name(name.prefix);
    take_name(name.local);
    if (scope.lookup(name.prefix) != name.uri) promise("the scope agrees with the name");
    dump_.start(name.uri, name.local, name.prefix);
    for (const auto& attribute : attributes) {
      if (attribute.is_namespace_declaration) continue;
      dump_.attribute(attribute.uri, attribute.local, attribute.prefix, attribute.value);
    }
    open_.push_back({name.prefix, name.uri});
  }
  void text(std::string_view text) {
    if (text.empty()) promise("no text is empty");
    if (after_text_) promise("a run of text comes in one piece");
    after_text_ = true;
    take(text);
    dump_.text(text);
  }
  void end_element(const xml::Scope& scope) {
    after_text_ = false;
    if (open_.empty()) return promise("ends match starts");
    if (scope.lookup(open_.back().prefix) != open_.back().uri) promise("the scope is kept");
    open_.pop_back();
    dump_.end();
  }
  std::string finished() {
    for (const auto& [given, copy] : slices_) {
      if (given != copy) promise("a slice keeps its text");
    }
    return dump_.finished();
  }
  const std::string& broken_promise() const { return broken_; }
  bool has_far_names() const { return has_far_names_; }

 protected:
  void take(std::string_view slice) {
    const std::less_equal<const char*> not_after;
    const char* const begin = buffer_.data();
    if (!slice.empty() && !(not_after(begin, slice.data()) &&
                            not_after(slice.data() + slice.size(), begin + buffer_.size()))) {
      promise("slices lie in the buffer");
    }
    slices_.emplace_back(slice, slice);
  }
  // 0xC3 begins the letters U+00C0 to U+00FF, 0xC2 the rest of Latin-1.
  void take_name(std::string_view name) {
    take(name);
    for (const char byte : name) {
      if (static_cast<unsigned char>(byte) > 0xC3) has_far_names_ = true;
    }
  }
  void promise(std::string_view what) {
    if (broken_.empty()) broken_ = what;
  }

  const std::string& buffer_;
  Dump dump_;
  bool after_text_ = false;

 private:
  struct Open {
    std::string_view prefix;
    std::string_view uri;
  };
  std::vector<Open> open_;
  std::vector<std::pair<std::string_view, std::string>> slices_;
  std::string broken_;
  bool has_far_names_ = false;
};

class CommentWitness : public Witness {
 public:
  explicit CommentWitness(const std::string& buffer) : Witness(buffer, true) {}
  void comment(std::string_view text) {
    after_text_ = false;
    take(text);
    dump_.comment(text);
  }
  void instruction(std::string_view target, std::string_view data) {
    after_text_ = false;
    take_name(target);
    take(data);
    dump_.instruction(target, data);
  }
};

class PlainWitness : public Witness {
 public:
  explicit PlainWitness(const std::string& buffer) : Witness(buffer, false) {}
};

template <class WitnessType>
Ours read_utf8(std::string buffer, const xml::Limits& limits = {}) {
  Ours ours;
  WitnessType witness(buffer);
  try {
    xml::parse(buffer, limits, witness);
    ours.accepted = true;
  } catch (const xml::ReadError& error) {
    ours.error = error;
  }
  ours.dump = witness.finished();
  ours.broken_promise = witness.broken_promise();
  ours.has_far_names = witness.has_far_names();
  return ours;
}

/// Reads bytes in whatever encoding they are.
template <class WitnessType>
Ours read_bytes(const std::string& bytes) {
  std::string text;
  try {
    text = xml::to_utf8(bytes, "");
  } catch (const xml::ReadError& error) {
    Ours ours;
    ours.error = error;
    return ours;
  }
  return read_utf8<WitnessType>(std::move(text));
}

// --------------------------------------------------------------------------------------- expat

struct Theirs {
  bool accepted = false;
  std::string dump;
  std::string message;
  bool has_doctype = false;
  std::optional<std::string> version;
  std::optional<std::string> encoding;
};

namespace detail {

// No document can hold it, so it cannot be part of a namespace.
inline constexpr char kSeparator = '\x01';

struct ExpatWitness {
  explicit ExpatWitness(bool tells_comments) : dump(tells_comments) {}
  Dump dump;
  Theirs theirs;
};

struct Triplet {
  std::string_view uri, local, prefix;
};

inline Triplet split(std::string_view name) {
  const std::size_t first = name.find(kSeparator);
  if (first == std::string_view::npos) return {"", name, ""};
  const std::size_t second = name.find(kSeparator, first + 1);
  if (second == std::string_view::npos) return {name.substr(0, first), name.substr(first + 1), ""};
  return {name.substr(0, first), name.substr(first + 1, second - first - 1),
          name.substr(second + 1)};
}

inline ExpatWitness& of(void* data) {
  return *static_cast<ExpatWitness*>(data);
}
inline std::string_view or_empty(const XML_Char* text) {
  return text ? text : "";
}

inline void XMLCALL on_start(void* data, const XML_Char* name, const XML_Char** attributes) {
  const Triplet element = split(name);
  of(data).dump.start(element.uri, element.local, element.prefix);
  for (; *attributes; attributes += 2) {
    const Triplet attribute = split(attributes[0]);
    of(data).dump.attribute(attribute.uri, attribute.local, attribute.prefix, attributes[1]);
  }
}
inline void XMLCALL on_end(void* data, const XML_Char*) {
  of(data).dump.end();
}
inline void XMLCALL on_text(void* data, const XML_Char* text, int size) {
  of(data).dump.text({text, static_cast<std::size_t>(size)});
}
inline void XMLCALL on_comment(void* data, const XML_Char* text) {
  of(data).dump.comment(text);
}
inline void XMLCALL on_instruction(void* data, const XML_Char* target, const XML_Char* text) {
  of(data).dump.instruction(target, text);
}
inline void XMLCALL on_namespace(void* data, const XML_Char* prefix, const XML_Char* uri) {
  of(data).dump.declaration(or_empty(prefix), or_empty(uri));
}
inline void XMLCALL on_doctype(void* data, const XML_Char*, const XML_Char*, const XML_Char*, int) {
  of(data).theirs.has_doctype = true;
}
inline void XMLCALL on_declaration(void* data, const XML_Char* version, const XML_Char* encoding,
                                   int) {
  if (version) of(data).theirs.version = version;
  if (encoding) of(data).theirs.encoding = encoding;
}

// expat knows only a few encodings; the C library tells it the others of one byte.
inline int XMLCALL on_unknown_encoding(void*, const XML_Char* name, XML_Encoding* info) {
  const iconv_t converter = iconv_open("UTF-32LE", name);
  if (reinterpret_cast<std::intptr_t>(converter) == -1) return XML_STATUS_ERROR;
  for (int i = 0; i < 256; ++i) {
    char in = static_cast<char>(i);
    unsigned char out[4] = {};
    char* from = &in;
    char* to = reinterpret_cast<char*>(out);
    std::size_t in_size = 1;
    std::size_t out_size = sizeof out;
    const bool converted = iconv(converter, &from, &in_size, &to, &out_size) == 0 && out_size == 0;
    info->map[i] = converted ? out[0] | out[1] << 8 | out[2] << 16 : -1;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
  }
  iconv_close(converter);
  info->data = nullptr;
  info->convert = nullptr;
  info->release = nullptr;
  return XML_STATUS_OK;
}

}  // namespace detail

/// `encoding` as null leaves the choice to the document.
inline Theirs read_with_expat(std::string_view bytes, const char* encoding, bool tells_comments) {
  using Parser = std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)>;
  const Parser parser(XML_ParserCreateNS(encoding, detail::kSeparator), &XML_ParserFree);
  detail::ExpatWitness witness(tells_comments);
  XML_SetReturnNSTriplet(parser.get(), 1);
  XML_SetUserData(parser.get(), &witness);
  XML_SetElementHandler(parser.get(), detail::on_start, detail::on_end);
  XML_SetCharacterDataHandler(parser.get(), detail::on_text);
  XML_SetCommentHandler(parser.get(), detail::on_comment);
  XML_SetProcessingInstructionHandler(parser.get(), detail::on_instruction);
  XML_SetStartNamespaceDeclHandler(parser.get(), detail::on_namespace);
  XML_SetStartDoctypeDeclHandler(parser.get(), detail::on_doctype);
  XML_SetXmlDeclHandler(parser.get(), detail::on_declaration);
  XML_SetUnknownEncodingHandler(parser.get(), detail::on_unknown_encoding, nullptr);
  const auto status =
      XML_Parse(parser.get(), bytes.data(), static_cast<int>(bytes.size()), XML_TRUE);
  Theirs& theirs = witness.theirs;
  theirs.accepted = status == XML_STATUS_OK;
  if (!theirs.accepted) theirs.message = XML_ErrorString(XML_GetErrorCode(parser.get()));
  theirs.dump = witness.dump.finished();
  return theirs;
}

// ---------------------------------------------------------------------------------- comparison

/// Whether our reader is right to differ from expat about a document, and why. Nothing but these:
///
/// 1. A document type declaration, which expat reads and we refuse on purpose.
/// 2. A version that is not 1.x: older releases of expat take any word for one.
/// 3. Names with characters beyond Latin-1: expat has the tables of the fourth edition, which know
///    fewer of them. (It cannot err on the other side: the fifth edition allows all of the fourth.)
/// 4. A limit of ours was passed.
inline bool may_differ(const Ours& ours, const Theirs& theirs) {
  if (!ours.accepted && ours.error->problem == xml::Problem::limit) return true;
  if (!ours.accepted && theirs.has_doctype) return true;
  if (!ours.accepted && theirs.version && theirs.version->substr(0, 2) != "1.") return true;
  if (!ours.accepted && theirs.version &&
      (theirs.version->size() < 3 ||
       theirs.version->find_first_not_of("0123456789", 2) != std::string::npos)) {
    return true;
  }
  return ours.accepted && !theirs.accepted && ours.has_far_names;
}

/// The same for bytes whose encoding each reader finds out for itself. Moreover:
///
/// 5. The bytes show by themselves that they are UTF-8 or UTF-16 while the declaration names
/// another
///    encoding: expat takes the declaration's word where it can and gives up otherwise; for us what
///    the bytes show counts.
/// 6. expat, asked through the C library, knows encodings that we do not.
/// 7. Where the bytes are not UTF-8, expat takes the ordinal signs and the micro sign for letters
/// of
///    names. No edition allows them there, and expat itself refuses them in UTF-8.
inline bool may_differ_in_encoding(std::string_view bytes, const Ours& ours, const Theirs& theirs) {
  const auto begins = [&bytes](std::string_view with) {
    return bytes.substr(0, with.size()) == with;
  };
  const bool shows = begins("\xEF\xBB\xBF") || begins("\xFF\xFE") || begins("\xFE\xFF") ||
                     begins({"<\0", 2}) || begins({"\0<", 2});
  if (shows && theirs.encoding) return true;
  if (ours.accepted) return false;
  const std::string& message = ours.error->message;
  const auto names = [&message](std::string_view words) {
    return message.find(words) != std::string::npos;
  };
  return names("is not known") || names("the character U+00AA") || names("the character U+00B5") ||
         names("the character U+00BA");
}

/// Line and column of an offset, counted in the document as it was given.
inline xml::Position place_of(std::string_view document, std::size_t offset) {
  xml::Position place{.line = 1, .column = 1, .offset = offset};
  const std::size_t begin = document.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0;
  for (std::size_t i = begin; i < offset; ++i) {
    const bool is_line_end =
        document[i] == '\n' || (document[i] == '\r' && document.substr(i + 1, 1) != "\n");
    const bool continues = (static_cast<unsigned char>(document[i]) & 0xC0u) == 0x80;
    if (is_line_end) {
      ++place.line;
      place.column = 1;
    } else if (!continues) {
      ++place.column;
    }
  }
  return place;
}

inline std::string difference(const Ours& ours, const Theirs& theirs) {
  if (!ours.broken_promise.empty()) return "broken promise: " + ours.broken_promise;
  if (ours.accepted != theirs.accepted) {
    return ours.accepted ? "only expat refuses: " + theirs.message
                         : "only we refuse: " + ours.error->message;
  }
  if (ours.accepted && ours.dump != theirs.dump) {
    return "trees differ; ours:\n" + ours.dump + "expat's:\n" + theirs.dump;
  }
  return {};
}

/// Our reader, which remembers start tags from the first on; nothing that it says may depend on
/// that.
template <class WitnessType>
Ours read_twice(const std::string& text) {
  Ours ours = read_utf8<WitnessType>(text, {.unremembered = 0});
  const Ours plain = read_utf8<WitnessType>(text, {.unremembered = SIZE_MAX});
  const auto message = [](const Ours& read) { return read.error ? read.error->message : ""; };
  if (ours.broken_promise.empty() && (ours.dump != plain.dump || message(ours) != message(plain))) {
    ours.broken_promise = "what is remembered makes no difference: " + message(ours) + "\n" +
                          ours.dump + "and without it: " + message(plain) + "\n" + plain.dump;
  }
  return ours;
}

/// What our reader and expat say differently about a document in UTF-8; "" when they agree.
inline std::string compare_utf8(const std::string& text) {
  bool has_far_names = false;
  for (const bool tells_comments : {true, false}) {
    Ours ours = tells_comments ? read_twice<CommentWitness>(text) : read_twice<PlainWitness>(text);
    // The names of instructions are seen by the first witness alone.
    has_far_names = ours.has_far_names = ours.has_far_names || has_far_names;
    if (!ours.accepted) {
      const xml::Position told = ours.error->position;
      const xml::Position right = place_of(text, told.offset);
      if (told.offset > text.size() || told.line != right.line || told.column != right.column) {
        return "wrong place, should be line " + std::to_string(right.line) + ", column " +
               std::to_string(right.column) + ": " + ours.error->message;
      }
    }
    const Theirs theirs = read_with_expat(text, "UTF-8", tells_comments);
    const std::string found = difference(ours, theirs);
    if (!found.empty() && (!ours.broken_promise.empty() || !may_differ(ours, theirs))) return found;
  }
  return {};
}

/// The same for bytes in an encoding that each has to find out.
inline std::string compare_bytes(const std::string& bytes) {
  const Ours ours = read_bytes<CommentWitness>(bytes);
  const Theirs theirs = read_with_expat(bytes, nullptr, true);
  const std::string found = difference(ours, theirs);
  const bool allowed = may_differ(ours, theirs) || may_differ_in_encoding(bytes, ours, theirs);
  return !allowed || !ours.broken_promise.empty() ? found : std::string();
}

}  // namespace xml_oracle

#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/soap/xml_error.h"
#include "bvconn/platform/soap/xml_scope.h"

namespace bvconn::detail::xml {

/// The name of an element. `uri` is "" for a name in no namespace.
struct Name {
  std::string_view prefix;
  std::string_view local;
  std::string_view uri;
};

/// An attribute. A namespace declaration is one too, with `kXmlnsUri`: `xmlns:p="u"` has the prefix
/// "xmlns" and the local name "p", `xmlns="u"` no prefix and the local name "xmlns".
struct Attribute {
  std::string_view prefix;
  std::string_view local;
  std::string_view uri;
  std::string_view value;
  bool is_namespace_declaration = false;
};

struct Limits {
  std::size_t depth = 10'000;       ///< elements open at one time
  std::size_t attributes = 10'000;  ///< attributes of one element, namespace declarations included
};

/// What the reader came upon.
enum class Token { start_element, end_element, text, comment, instruction, end_of_document };

/// Reads a document in UTF-8, in one pass and in place: whatever it gives out is a slice of the
/// buffer (or a constant), and stays valid as long as the buffer stays where it is. References and
/// line ends are resolved by overwriting the buffer, so afterwards it is no longer the document.
///
/// The rules are those of XML 1.0 (fifth edition) and Namespaces in XML 1.0, without exception but
/// for two: a document type declaration is an error, and any version 1.x is read as 1.0. A
/// byte-order mark in front is skipped. The encoding that the XML declaration names is checked as a
/// word only: see xml_encoding.h.
class Reader {
 public:
  struct Wanted {
    bool comments = false;
    bool instructions = false;
  };

  /// The buffer must neither move nor change, but through the reader, as long as slices are used.
  Reader(std::string& buffer, const Limits& limits, Wanted wanted);

  /// Goes on to the next thing. Throws `ReadError`; then the reader is of no further use.
  Token next();

  // What `next` came upon; valid until it is called again (the slices: as long as the buffer).
  const Name& name() const noexcept { return name_; }                             // start_element
  std::span<const Attribute> attributes() const noexcept { return attributes_; }  // start_element
  const Scope& scope() const noexcept { return scope_; }    // start_element, end_element
  std::string_view text() const noexcept { return text_; }  // text, comment, data of instruction
  std::string_view target() const noexcept { return target_; }  // instruction

 private:
  struct OpenElement {
    std::string_view qualified_name;
    std::size_t scope_mark;
  };
};

/// Reads a document from its first to its last byte and tells `sink` what it holds:
///
///     void start_element(const Name&, std::span<const Attribute>, const Scope&);
///     void text(std::string_view);
///     void end_element(const Scope&);
///     void comment(std::string_view);                        // may be left out
///     void instruction(std::string_view target, std::string_view data);  // may be left out
///
/// `text` is called once for each maximal run of character data, never with an empty one:
/// references, CDATA sections, and comments and instructions for which the sink has no function do
/// not part a run. `Scope` is that of the element, its own declarations included, at its start as
/// at its end. Names, values and texts stay valid with the buffer, the references to `Name`,
/// `Attribute` and `Scope` during the call only. Mind that a short `std::string` moves its text
/// when it is moved: put the buffer where it will stay, then parse.
///
/// Throws `ReadError`, and lets pass what the sink throws.
template <class Sink>
void parse(std::string& buffer, const Limits& limits, Sink& sink) {
  constexpr bool kTellsComments = requires(std::string_view text) {
    sink.comment(text);
  };
  constexpr bool kTellsInstructions = requires(std::string_view text) {
    sink.instruction(text, text);
  };
  Reader reader(buffer, limits, {.comments = kTellsComments, .instructions = kTellsInstructions});
  for (;;) {
    switch (reader.next()) {
      case Token::start_element:
        sink.start_element(reader.name(), reader.attributes(), reader.scope());
        break;
      case Token::end_element:
        sink.end_element(reader.scope());
        break;
      case Token::text:
        sink.text(reader.text());
        break;
      case Token::comment:
        if constexpr (kTellsComments) sink.comment(reader.text());
        break;
      case Token::instruction:
        if constexpr (kTellsInstructions) sink.instruction(reader.target(), reader.text());
        break;
      case Token::end_of_document:
        return;
    }
  }
}

}  // namespace bvconn::detail::xml

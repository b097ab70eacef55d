#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "bvconn/platform/xml/xml_error.h"
#include "bvconn/platform/xml/xml_overwritten.h"
#include "bvconn/platform/xml/xml_ready_tags.h"
#include "bvconn/platform/xml/xml_scope.h"
#include "bvconn/platform/xml/xml_stack.h"
#include "bvconn/platform/xml/xml_tag.h"

namespace bvconn::detail::xml {

struct Limits {
  std::size_t depth = 10'000;       ///< elements open at one time
  std::size_t attributes = 10'000;  ///< attributes of one element, namespace declarations included
  /// Start tags that are read before the reader remembers any (see xml_ready_tags.h). Makes no
  /// difference but to speed.
  std::size_t unremembered = 24;
};

/// What the reader came upon.
enum class Token {
  start_element,
  end_element,
  whole_element,  ///< an element that holds nothing, or one text
  text,
  comment,
  instruction,
  end_of_document
};

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
  /// It has less than 4 GiB, and a NUL stands behind it.
  Reader(std::span<char> buffer, const Limits& limits, Wanted wanted);

  /// Goes on to the next thing. Throws `ReadError`; then the reader is of no further use.
  Token next();

  // What `next` came upon; valid until it is called again (the slices: as long as the buffer).
  Tag tag() const noexcept { return tag_; }  // start_element, whole_element
  const Name& name() const noexcept {        // the same
    return tag_.is_known ? ready_[tag_.number].name : name_;
  }
  std::span<const Attribute> attributes() const noexcept {  // the same
    return tag_.is_known ? ready_.attributes(ready_[tag_.number]) : attributes_.items();
  }
  const Scope& scope() const noexcept { return scope_; }  // the same, and end_element
  /// text, comment, data of an instruction; of a whole element what it holds, "" for nothing
  std::string_view text() const noexcept { return text_; }
  std::string_view target() const noexcept { return target_; }  // instruction

 private:
  struct OpenElement {
    std::string_view qualified_name;
    std::size_t scope_mark;
  };
  /// Character data while its pieces are put together; [begin, out) is what is kept so far.
  struct Run {
    char* begin;
    char* out;
  };

  void begin_document();
  char* xml_declaration(char* at);
  bool declares(char*& at, std::string_view word, std::string_view& value);
  Token outside_root();
  Token content();
  Token mixed_content(Run run, char* at);
  Token text_until(Run run, char* at);
  Token start_tag(char* at);
  Token new_start_tag(char* at);
  Token ready_element(const ReadyTag& tag, char* at);
  bool is_end_tag_of(const ReadyTag& tag, const char* at) const;
  void remember(const char* begin, std::string_view name, std::uint32_t scope_before);
  Token end_tag(char* at);
  Token comment(char* at);
  Token instruction(char* at);

  char* qualified_name(char* at, std::string_view& prefix, std::string_view& local);
  char* ncname(char* at);
  char* ncname_beyond_ascii(char* at);
  char* attributes_of_tag(char* at);
  char* attribute(char* at);
  char* value(char* at, std::string_view& value);
  char* normalised_value(char* begin, char* at, char quote, std::string_view& value);
  char* reference(char* at, char*& out);
  char* character_reference(char* at, char*& out);
  char* cdata_section(char* at, Run& run);
  char* comment_end(char* at);
  char* instruction_end(char* at);
  void keep(Run& run, char* piece, char* piece_end);
  char* normalise_line_ends(char* begin, char* end);

  void check_declaration(const Attribute& declaration) const;
  void declare_namespaces(std::span<const Attribute> attributes);
  void resolve_names();
  void check_duplicates();
  void check_many_duplicates();
  void open_element(char* begin);
  void leave_element();

  void will_overwrite(const char* from, const char* to) { overwritten_.note(from, to); }
  Position position(const char* at) const;
  [[noreturn]] void fail(const char* at, std::string_view what) const;
  [[noreturn]] void fail_unreadable() const;
  [[noreturn]] void fail_unexpected(const char* at, std::string_view wanted) const;
  [[noreturn]] void fail_depth(const char* at) const;
  [[noreturn]] void fail_attributes(const char* at) const;
  [[noreturn]] void fail_undeclared(std::string_view prefix) const;
  [[noreturn]] void fail_markup(const char* at) const;
  [[noreturn]] void fail_end_tag(char* at);
  [[noreturn]] void fail_duplicate(const Attribute& a, const Attribute& b) const;

  char* begin_;
  const char* document_ = nullptr;  ///< where lines count from: behind a byte-order mark
  char* at_;
  /// The end of the buffer, or the first byte that no document can hold; a NUL stands here.
  char* end_;
  char* buffer_end_;
  char unreadable_ = '\0';
  bool is_cut_ = false;
  bool began_ = false;
  bool has_root_ = false;
  bool is_empty_element_ = false;
  Token last_ = Token::end_of_document;
  Limits limits_;
  Wanted wanted_;

  Tag tag_;
  Name name_;
  Stack<Attribute, 8> attributes_;
  std::string_view text_;
  std::string_view target_;
  Scope scope_;
  Stack<OpenElement, 16> open_;
  ReadyTags ready_;
  Overwritten overwritten_;
  // Of the start tag that is read: what its attributes are.
  bool has_prefixed_attributes_ = false;
  bool has_declarations_ = false;
  bool has_overwritten_values_ = false;
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
/// A sink that remembers what a start tag meant to it has these instead of the first:
///
///     void start_element(const Name&, std::span<const Attribute>, const Scope&, Tag);
///     bool whole_element(Tag, std::string_view text);
///
/// `whole_element` stands for the start, the text unless it is "", and the end of an element. When
/// it is false, they are told in turn.
///
/// Throws `ReadError`, and lets pass what the sink throws.
template <class Sink>
void parse(std::span<char> buffer, const Limits& limits, Sink& sink) {
  constexpr bool kTellsComments = requires(std::string_view text) {
    sink.comment(text);
  };
  constexpr bool kTellsInstructions = requires(std::string_view text) {
    sink.instruction(text, text);
  };
  constexpr bool kKnowsTags = requires(Tag tag, std::string_view text) {
    sink.whole_element(tag, text);
  };
  Reader reader(buffer, limits, {.comments = kTellsComments, .instructions = kTellsInstructions});
  const auto start_element = [&] {
    if constexpr (kKnowsTags) {
      sink.start_element(reader.name(), reader.attributes(), reader.scope(), reader.tag());
    } else {
      sink.start_element(reader.name(), reader.attributes(), reader.scope());
    }
  };
  for (;;) {
    switch (reader.next()) {
      case Token::start_element:
        start_element();
        break;
      case Token::end_element:
        sink.end_element(reader.scope());
        break;
      case Token::whole_element:
        if constexpr (kKnowsTags) {
          if (sink.whole_element(reader.tag(), reader.text())) break;
        }
        start_element();
        if (!reader.text().empty()) sink.text(reader.text());
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

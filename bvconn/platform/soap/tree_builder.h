#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "bvconn/platform/soap/node_data.h"
#include "bvconn/platform/soap/node_shapes.h"
#include "bvconn/platform/xml/xml_reader.h"
#include "bvconn/platform/xml/xml_stack.h"

namespace bvconn::detail {

/// Makes the nodes of a tree out of what the reader finds in its buffer.
///
/// Each element becomes one node. While the element is open its node is in a `Frame`; at its end it
/// goes on to a stack, where it waits for the end of the element around it. Then all children of
/// that are moved side by side into the tree's blocks, where they stay.
class TreeBuilder {
 public:
  enum class Form {
    kDocument,  ///< plain XML
    kEnvelope,  ///< `id`, `href` and `faultcode` have their meaning
  };

  TreeBuilder(Tree& tree, Form form);

  // What the reader calls.
  void start_element(const xml::Name& name, std::span<const xml::Attribute> attributes,
                     const xml::Scope& scope, xml::Tag tag);
  bool whole_element(xml::Tag tag, std::string_view text);
  void text(std::string_view text);
  void end_element(const xml::Scope& scope);

  NodeData* root() const { return root_; }
  /// The encodingStyle that holds for the Body's first element.
  std::string_view encoding_style() const { return encoding_style_; }
  /// Links each `href` to its target. Fails with 0x80044206 for one without a target and for nodes
  /// that contain themselves.
  void resolve_references();

 private:
  /// An element that is open.
  struct Frame {
    NodeData node;
    std::uint32_t first_child = 0;  ///< on the stack of waiting nodes
    std::uint32_t first_note = 0;   ///< on the stack of notes about its children
    ItemSlices items;               ///< of an array, with `[]` behind the name for arrays of arrays
    Slice href;
    bool is_reference = false;
    bool is_qualified_name = false;
    bool is_nil = false;
    bool is_noted = false;          ///< the start tag said something of more than its node
    bool depends_on_array = false;  ///< the type is what the array around says, if there is one
  };
  /// What a start tag made of a node, for the next element that begins with the same one. Whoever
  /// leaves this out in thought loses nothing: `read_start` makes the same again.
  struct ReadyNode {
    NodeData node;
    bool is_ready = false;
    bool is_qualified_name = false;
    bool is_nil = false;
    bool depends_on_array = false;
    bool is_simple = false;  ///< with a text for content it is complete
  };
  struct Identified {
    std::string_view id;
    NodeData* node;
  };
  /// What is to be known of a node as soon as it is where it stays.
  struct Note {
    enum class Kind : std::uint8_t { kId, kReference };
    std::string_view id;
    std::uint32_t place;  ///< of the node, on the stack of waiting nodes
    Kind kind;
  };

  Slice slice(std::string_view part) const;
  Frame read_start(const xml::Name& name, std::span<const xml::Attribute> attributes,
                   const xml::Scope& scope);
  const ReadyNode* ready_node(xml::Tag tag) const;
  void remember(xml::Tag tag, const Frame& frame, const xml::Name& name);
  bool is_in_typed_array() const { return !open_.empty() && open_.back().items.type.size != 0; }
  void note(Note::Kind kind, std::string_view id, std::size_t place);
  void read_attribute(Frame& frame, Shape& shape, const xml::Attribute& attribute,
                      const xml::Scope& scope);
  void read_plain_attribute(Frame& frame, std::string_view local, std::string_view value);
  void read_type(Frame& frame, Shape& shape, std::string_view value, const xml::Scope& scope);
  void read_array_type(Frame& frame, std::string_view value, const xml::Scope& scope);
  void take_implied_type(Frame& frame, Shape& shape, const xml::Name& name);
  void note_encoding_style(std::string_view style);
  void make_qualified(NodeData& node, const xml::Scope& scope);
  bool is_fault_code() const;
  void fill(Frame& frame, const xml::Scope& scope);
  void place_children(Frame& frame);
  NodeData* place_waiting(std::byte* memory, std::size_t first_place, std::size_t first_note);
  void sort_identified();
  NodeData* target_of(std::string_view id, std::size_t& next) const;
  void check_cycles() const;

  Tree& tree_;
  const char* buffer_;
  std::size_t buffer_size_;
  Form form_;
  Shapes shapes_;
  NodeData* root_ = nullptr;
  xml::Stack<Frame, 10> open_;
  xml::Stack<NodeData, 32> waiting_;
  std::vector<ReadyNode> ready_;  ///< by the number of their start tag
  xml::Stack<Note, 8> notes_;
  xml::Stack<Identified, 8> identified_;
  xml::Stack<Identified, 8> references_;
  std::string_view encoding_style_;
};

}  // namespace bvconn::detail

#include "bvconn/platform/soap/tree_builder.h"

#include <functional>
#include <memory>
#include <new>

#include "bvconn/platform/soap/soap_uris.h"

namespace bvconn::detail {

namespace {

bool is_blank(std::string_view text) {
  return trim_xml_space(text).empty();
}

/// Fits: nodes take more than one byte of a buffer of less than 4 GiB.
template <class Stack>
std::uint32_t height(const Stack& stack) {
  return static_cast<std::uint32_t>(stack.size());
}

/// A name in the text of an attribute or an element; without a declared prefix it is in none.
struct ResolvedName {
  std::string_view local;
  std::string_view uri;
};
ResolvedName resolve(std::string_view text, const xml::Scope& scope) {
  const auto [prefix, local] = split_name(trim_xml_space(text));
  return {local, scope.lookup(prefix).value_or(std::string_view())};
}

}  // namespace

TreeBuilder::TreeBuilder(Tree& tree, Form form)
    : tree_(tree),
      buffer_(tree.buffer.data()),
      buffer_size_(tree.buffer.size()),
      form_(form),
      shapes_(tree) {}

Slice TreeBuilder::slice(std::string_view part) const {
  if (part.empty()) return {};
  const std::less<const char*> before;
  if (before(part.data(), buffer_) || !before(part.data(), buffer_ + buffer_size_)) {
    return kXmlUriSlice;  // the one text that the reader gives out and no document contains
  }
  return {static_cast<std::uint32_t>(part.data() - buffer_),
          static_cast<std::uint32_t>(part.size())};
}

void TreeBuilder::note(Note::Kind kind, std::string_view id, std::size_t place) {
  notes_.push({.id = id, .place = static_cast<std::uint32_t>(place), .kind = kind});
}

TreeBuilder::Frame TreeBuilder::read_start(const xml::Name& name,
                                           std::span<const xml::Attribute> attributes,
                                           const xml::Scope& scope) {
  Shape shape;
  shape.name = slice(name.local);
  shape.name_space = slice(name.uri);
  Frame frame;
  frame.node.content = Content::kText;
  frame.first_child = height(waiting_);
  for (const xml::Attribute& attribute : attributes) {
    read_attribute(frame, shape, attribute, scope);
  }
  take_implied_type(frame, shape, name);
  frame.node.shape = shapes_.find(shape);
  return frame;
}

void TreeBuilder::start_element(const xml::Name& name, std::span<const xml::Attribute> attributes,
                                const xml::Scope& scope, xml::Tag tag) {
  if (const ReadyNode* ready = ready_node(tag)) {
    Frame& frame = open_.push();
    frame.node = ready->node;
    frame.first_child = height(waiting_);
    frame.first_note = height(notes_);
    frame.is_qualified_name = ready->is_qualified_name;
    frame.is_nil = ready->is_nil;
    return;
  }
  Frame frame = read_start(name, attributes, scope);
  if (tag.number != xml::Tag::kNoNumber) remember(tag, frame, name);
  frame.first_note = height(notes_);
  open_.push(frame);
}

bool TreeBuilder::whole_element(xml::Tag tag, std::string_view text) {
  const ReadyNode* ready = ready_node(tag);
  if (ready == nullptr || !ready->is_simple || open_.empty()) return false;
  NodeData& node = waiting_.push(ready->node);
  if (ready->is_nil) {
    node.content = Content::kNil;
  } else {
    node.text = slice(text);
  }
  return true;
}

const TreeBuilder::ReadyNode* TreeBuilder::ready_node(xml::Tag tag) const {
  if (!tag.is_known) return nullptr;
  const ReadyNode& ready = ready_[tag.number];
  const bool holds = ready.is_ready && !(ready.depends_on_array && is_in_typed_array());
  return holds ? &ready : nullptr;
}

/// A new tag's number may have stood for another one before.
void TreeBuilder::remember(xml::Tag tag, const Frame& frame, const xml::Name& name) {
  const bool is_ready = !frame.is_noted && frame.items.type.size == 0 && !frame.is_reference &&
                        !(frame.depends_on_array && is_in_typed_array());
  if (tag.is_known && !is_ready) return;
  if (tag.number >= ready_.size()) ready_.resize(tag.number + 1);
  ready_[tag.number] = {.node = frame.node,
                        .is_ready = is_ready,
                        .is_qualified_name = frame.is_qualified_name,
                        .is_nil = frame.is_nil,
                        .depends_on_array = frame.depends_on_array,
                        .is_simple = !frame.is_qualified_name && !frame.node.has(kArray) &&
                                     name.local != "faultcode"};
}

void TreeBuilder::text(std::string_view text) {
  // Text beside child elements does not count.
  Frame& frame = open_.back();
  if (waiting_.size() == frame.first_child) frame.node.text = slice(text);
}

void TreeBuilder::end_element(const xml::Scope& scope) {
  Frame& frame = open_.back();
  fill(frame, scope);
  waiting_.push(frame.node);
  open_.pop();
  if (open_.empty()) {
    auto* memory = static_cast<std::byte*>(tree_.blocks.take(sizeof(NodeData)));
    root_ = place_waiting(memory, 0, 0);
  }
}

void TreeBuilder::read_attribute(Frame& frame, Shape& shape, const xml::Attribute& attribute,
                                 const xml::Scope& scope) {
  const auto [prefix, local, uri, value, is_declaration] = attribute;
  if (is_declaration) return;
  if (uri.empty()) {
    if (form_ == Form::kEnvelope) read_plain_attribute(frame, local, value);
  } else if (is_xsi(uri)) {
    if (local == "type") {
      read_type(frame, shape, value, scope);
    } else if (local == "nil" || local == "null") {
      const auto word = trim_xml_space(value);
      frame.is_nil = word == "true" || word == "1";
    }
  } else if (uri == kEncodingUri) {
    if (local == "arrayType") read_array_type(frame, value, scope);
    if (local == "root" && trim_xml_space(value) == "0") {
      frame.is_noted = true;
      if (open_.size() == 2) frame.node.set(kNoRoot);
    }
  } else if (uri == kEnvelopeUri && local == "encodingStyle") {
    frame.is_noted = true;
    note_encoding_style(value);
  }
}

void TreeBuilder::read_plain_attribute(Frame& frame, std::string_view local,
                                       std::string_view value) {
  if (local == "id") {
    frame.is_noted = true;
    note(Note::Kind::kId, value, frame.first_child);
  }
  if (local == "href" && value.starts_with('#')) {
    frame.is_reference = true;
    frame.href = slice(value.substr(1));
  }
}

void TreeBuilder::note_encoding_style(std::string_view style) {
  const bool in_body = open_.size() == 2 && name_of(open_[1].node) == "Body" &&
                       waiting_.size() == open_[1].first_child;
  if (open_.size() < 2 || in_body) encoding_style_ = style;
}

void TreeBuilder::read_type(Frame& frame, Shape& shape, std::string_view value,
                            const xml::Scope& scope) {
  const auto [local, uri] = resolve(value, scope);
  shape.type = slice(local);
  shape.type_space = slice(uri);
  if (local == "Array" && uri == kEncodingUri) frame.node.set(kArray);
  frame.is_qualified_name = local == "QName" && is_xsd(uri);
}

void TreeBuilder::read_array_type(Frame& frame, std::string_view value, const xml::Scope& scope) {
  value = trim_xml_space(value);
  const auto [local, uri] = resolve(value.substr(0, value.rfind('[')), scope);
  frame.node.set(kArray);
  frame.items = {.type = slice(local), .type_space = slice(uri)};
}

/// What the name of the element, or the array around, says of the type where the element itself
/// says nothing.
void TreeBuilder::take_implied_type(Frame& frame, Shape& shape, const xml::Name& name) {
  NodeData& node = frame.node;
  const bool has_type = shape.type.size != 0 || node.has(kArray);
  TypeName type;
  if (name.uri == kEncodingUri || is_xsd(name.uri)) {
    type = {name.local, name.uri};
    if (name.local == "Array" && name.uri == kEncodingUri) return node.set(kArray);
  } else if (!has_type) {
    frame.depends_on_array = true;
    if (is_in_typed_array()) {
      const ItemSlices& items = open_.back().items;
      type = {view(tree_, items.type), view(tree_, items.type_space)};
    }
  }
  if (has_type || type.name.empty()) return;
  if (type.name.ends_with(']')) {
    node.set(kArray);
    frame.items = {.type = slice(type.name.substr(0, type.name.rfind('['))),
                   .type_space = slice(type.uri)};
  } else if (type.name != "anyType" && type.name != "ur-type") {
    shape.type = slice(type.name);
    shape.type_space = slice(type.uri);
    node.set(kTypeImplied);
    frame.is_qualified_name = type.name == "QName" && is_xsd(type.uri);
  }
}

bool TreeBuilder::is_fault_code() const {
  if (form_ != Form::kEnvelope || open_.size() != 4) return false;
  const NodeData& fault = open_[2].node;
  return name_of(open_[3].node) == "faultcode" && name_of(fault) == "Fault" &&
         namespace_of(fault) == kEnvelopeUri;
}

/// Puts the waiting children of an element below its node, and what an array says of them before
/// the first.
void TreeBuilder::place_children(Frame& frame) {
  NodeData& node = frame.node;
  const std::size_t count = waiting_.size() - frame.first_child;
  const bool typed = node.has(kArray) && frame.items.type.size != 0;
  const std::size_t ahead = typed ? sizeof(ItemSlices) : 0;
  node.children = nullptr;
  node.count = static_cast<std::uint32_t>(count);
  node.content = Content::kChildren;
  if (ahead + count == 0) return;
  auto* memory = static_cast<std::byte*>(tree_.blocks.take(ahead + count * sizeof(NodeData)));
  if (typed) {
    ::new (memory) ItemSlices(frame.items);
    node.set(kTypedItems);
  }
  node.children = place_waiting(memory + ahead, frame.first_child, frame.first_note);
}

/// Moves the nodes that wait from a place on to where they stay, and settles the notes about them.
NodeData* TreeBuilder::place_waiting(std::byte* memory, std::size_t first_place,
                                     std::size_t first_note) {
  auto* nodes = reinterpret_cast<NodeData*>(memory);
  std::uninitialized_copy(waiting_.begin() + first_place, waiting_.end(), nodes);
  waiting_.shrink(first_place);
  for (std::size_t i = first_note; i < notes_.size(); ++i) {
    const Note& note = notes_[i];
    NodeData* node = nodes + (note.place - first_place);
    if (note.kind == Note::Kind::kId) identified_.push({note.id, node});
    if (note.kind == Note::Kind::kReference) references_.push({note.id, node});
  }
  notes_.shrink(first_note);
  return nodes;
}

void TreeBuilder::fill(Frame& frame, const xml::Scope& scope) {
  NodeData& node = frame.node;
  const bool has_children = waiting_.size() > frame.first_child;
  if (has_children) place_children(frame);
  if (frame.is_nil) {
    // What was below it is still there for whoever refers to it.
    node.text = {};
    node.count = 0;
    node.content = Content::kNil;
    node.clear(kArray);
    node.clear(kTypedItems);
    return;
  }
  if (has_children) return;
  const bool is_text = !frame.is_reference && !node.has(kArray);
  const bool blank = !is_text && is_blank(text_of(node));
  if (frame.is_reference && blank) {
    node.clear(kArray);
    note(Note::Kind::kReference, view(tree_, frame.href), frame.first_child);
    if (is_fault_code()) node.set(kQualified);
  } else if (node.has(kArray) && blank) {
    place_children(frame);
  } else {
    node.clear(kArray);
    if (frame.is_qualified_name || is_fault_code()) make_qualified(node, scope);
  }
}

void TreeBuilder::make_qualified(NodeData& node, const xml::Scope& scope) {
  const auto [local, uri] = resolve(text_of(node), scope);
  Shape shape = *node.shape;
  shape.type_space = slice(uri);
  node.shape = shapes_.find(shape);
  // A blank behind the colon is none of the name's: it would be lost where the name is written
  // alone.
  node.text = slice(trim_xml_space(local));
  node.set(kQualified);
}

}  // namespace bvconn::detail

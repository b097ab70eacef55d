#include "bvconn/platform/soap/node_data.h"

#include <memory>
#include <utility>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_uris.h"
#include "bvconn/platform/xml/xml_scope.h"

namespace bvconn::detail {

namespace {

/// A slice of the buffer of a node that is part of a tree, or an empty one.
std::string_view view(const NodeData& node, Slice slice) noexcept {
  return slice.size == 0 ? std::string_view() : view(*node.tree(), slice);
}

/// A node's name or type, from where it counts.
std::string_view text_in(const NodeData& node, std::string Own::*own_text, Slice Shape::*slice) {
  const Own* own = node.own();
  return own != nullptr ? std::string_view(own->*own_text) : view(node, node.shape->*slice);
}

/// Takes the content away; what it linked to is released when the result goes.
std::vector<NodeRef> take_content(NodeData& node) {
  auto links = take_links(node);
  node.content = Content::kNothing;
  node.count = 0;
  node.text = Slice{};
  node.clear(kArray);
  node.clear(kUnallocated);
  node.clear(kReference);
  node.clear(kQualified);
  node.clear(kTypedItems);
  if (Own* own = node.own()) {
    own->value = Variant();
    own->children.clear();
  }
  return links;
}

/// Whether a node stands on the way from another one to its content.
bool is_on_the_way(NodeData& node, const NodeData& from) {
  // A node that only its maker knows stands on no way; so a long chain is made in linear time.
  if (node.tree() == nullptr && static_cast<MadeNode&>(node).references == 1) return false;
  const NodeData* next = &from;
  while (next != &node && next->content == Content::kLink) next = next->link;
  return next == &node;
}

void set_link(NodeData& node, NodeData& target) {
  if (&target == &node) return;  // it has its own content already
  if (is_on_the_way(node, target)) {
    throw Error(error_numbers::kSoapLimit, "SoapNodes", "A node cannot hold itself as its value");
  }
  own_of(node);
  hold_link(node, target);
  const auto old = take_content(node);
  node.content = Content::kLink;
  node.link = &target;
  clear_type(node);
}

void set_array(NodeData& node, const VariantArray& array) {
  std::vector<NodeRef> items;
  items.reserve(array.size());
  for (const Variant& value : array.items()) {
    items.push_back(make_node("item"));
    set_value(*items.back(), value);
  }
  Own& own = own_of(node);
  own.children.reserve(items.size());
  const auto old = take_content(node);
  node.content = Content::kOwnChildren;
  node.set(kArray);
  if (!array.allocated()) node.set(kUnallocated);
  set_type(node, "Array", kEncodingUri, kTypeDerived);
  for (const NodeRef& item : items) {
    hold_link(node, *item);
    own.children.push_back(item.get());
  }
}

std::string_view derived_type(Variant::Type type) {
  switch (type) {
    case Variant::Type::kBoolean:
      return "boolean";
    case Variant::Type::kInt16:
      return "short";
    case Variant::Type::kInt32:
      return "int";
    case Variant::Type::kInt64:
      return "long";
    case Variant::Type::kDouble:
      return "double";
    case Variant::Type::kDate:
      return "dateTime";
    case Variant::Type::kBytes:
      return "base64Binary";
    case Variant::Type::kQualifiedName:
      return "QName";
    default:
      return "string";
  }
}

/// Turns the list of children into one that can grow. A simple value gives way, and with it a type
/// that spoke of it. Of an array that was read the old list stays where it lies: what it says of
/// the items lies there too.
std::vector<NodeData*>& growing_children(NodeData& node) {
  Own& own = own_of(node);
  if (node.content == Content::kOwnChildren) return own.children;
  if (node.content == Content::kChildren) {
    std::vector<NodeData*> children(node.count);
    for (std::size_t i = 0; i < node.count; ++i) children[i] = node.children + i;
    own.children = std::move(children);
  } else {
    const auto old = take_content(node);
    if (!node.has(kTypeExplicit)) clear_type(node);
  }
  node.content = Content::kOwnChildren;
  return own.children;
}

}  // namespace

std::string_view view(const Tree& tree, Slice slice) noexcept {
  if (slice.size == 0) return {};
  if (slice.offset == kXmlUriSlice.offset) return xml::kXmlUri;
  return {tree.buffer.data() + slice.offset, slice.size};
}

std::string_view name_of(const NodeData& node) noexcept {
  return text_in(node, &Own::name, &Shape::name);
}
std::string_view namespace_of(const NodeData& node) noexcept {
  return text_in(node, &Own::name_space, &Shape::name_space);
}
std::string_view text_of(const NodeData& node) noexcept {
  return view(node, node.text);
}
std::string_view own_type_of(const NodeData& node) noexcept {
  return text_in(node, &Own::type, &Shape::type);
}
std::string_view own_type_space_of(const NodeData& node) noexcept {
  if (node.has(kQualified)) return own_type_of(node).empty() ? std::string_view() : kXsdUri;
  return text_in(node, &Own::type_space, &Shape::type_space);
}
std::string_view qualified_space_of(const NodeData& node) noexcept {
  if (!node.has(kQualified)) return {};
  return text_in(node, &Own::type_space, &Shape::type_space);
}

TypeName declared_items_of(const NodeData& array) noexcept {
  if (!array.has(kTypedItems)) return {};
  const auto& items = reinterpret_cast<const ItemSlices*>(array.children)[-1];
  return {view(array, items.type), view(array, items.type_space)};
}

const NodeData& content_of(const NodeData& node) noexcept {
  const NodeData* holder = &node;
  while (holder->content == Content::kLink) holder = holder->link;
  return *holder;
}
NodeData& content_of(NodeData& node) noexcept {
  NodeData* holder = &node;
  while (holder->content == Content::kLink) holder = holder->link;
  return *holder;
}

const NodeData& typed_node_of(const NodeData& node, bool implied) noexcept {
  const NodeData* typed = &node;
  while (own_type_of(*typed).empty() || (typed->has(kTypeImplied) && !implied)) {
    if (typed->content != Content::kLink) break;
    typed = typed->link;
  }
  return *typed;
}

Children children_of(const NodeData& node) noexcept {
  const NodeData& holder = content_of(node);
  if (holder.content == Content::kChildren) return {holder.children, holder.count};
  if (holder.content == Content::kOwnChildren) return Children(holder.own()->children);
  return {};
}

NodeRef make_node(std::string_view name, std::string_view name_space) {
  auto node = std::make_unique<MadeNode>();
  node->shape = &node->storage;
  node->set(kMade);
  node->storage.name = name;
  node->storage.name_space = name_space;
  return NodeRef(node.release());
}

Own& own_of(NodeData& node) {
  if (Own* own = node.own()) return *own;
  auto own = std::make_unique<Own>();
  own->tree = node.tree();
  own->name = view(node, node.shape->name);
  own->name_space = view(node, node.shape->name_space);
  own->type = view(node, node.shape->type);
  own->type_space = view(node, node.shape->type_space);
  own->next = std::exchange(own->tree->owned, &node);
  node.shape = own.release();
  return *node.own();
}

void set_type(NodeData& node, std::string_view type, std::string_view type_space, NodeFlag origin) {
  Own& own = own_of(node);
  clear_type(node);
  own.type = type;
  own.type_space = type_space;
  node.set(origin);
}

void clear_type(NodeData& node) noexcept {
  if (Own* own = node.own()) {
    own->type.clear();
    own->type_space.clear();
  }
  node.clear(kTypeDerived);
  node.clear(kTypeImplied);
  node.clear(kTypeExplicit);
}

void set_value(NodeData& node, const Variant& value) {
  if (value.is(Variant::Type::kNode) && value.node()) {
    return set_link(node, *SoapAccess::data(value.node()));
  }
  if (value.is(Variant::Type::kArray)) return set_array(node, value.array());
  Own& own = own_of(node);
  const bool nothing = value.empty() || value.missing() || value.is(Variant::Type::kNode);
  Variant held = nothing ? Variant() : value;  // before the old value goes: it may be part of it
  const auto old = take_content(node);
  clear_type(node);
  if (nothing) {
    node.content = Content::kNil;
    return;
  }
  node.content = Content::kOwnValue;
  own.value = std::move(held);
  set_type(node, derived_type(own.value.type()), kXsdUri, kTypeDerived);
}

void append(NodeData& node, NodeData& child) {
  NodeData& holder = content_of(node);
  const NodeRef keep(&child);  // the list that gives way may be what holds it
  auto& children = growing_children(holder);
  if (children.size() == children.capacity()) children.reserve(2 * children.size() + 4);
  hold_link(holder, child);
  children.push_back(&child);
}

}  // namespace bvconn::detail

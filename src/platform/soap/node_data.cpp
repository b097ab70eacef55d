#include "bvconn/platform/soap/node_data.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_uris.h"
#include "bvconn/platform/soap/xml_scope.h"

namespace bvconn::detail {

namespace {

/// What the last handle has left and what still waits to be deleted. Deleting a node releases the
/// nodes that it holds; those are put here instead of being deleted at once, so that the depth of a
/// tree costs no stack. Without a destructor, since handles may outlive it on an ending thread.
struct Condemned {
  MadeNode* nodes = nullptr;
  Tree* trees = nullptr;
  bool deleting = false;
};
constinit thread_local Condemned condemned;

MadeNode& made(NodeData& node) noexcept {
  return static_cast<MadeNode&>(node);
}

/// Whether a link keeps its target alive: not inside one tree, which keeps all its nodes alive.
bool counts(const NodeData& from, const NodeData& to) noexcept {
  return from.tree == nullptr || from.tree != to.tree;
}

template <class Visit>
void for_each_link(NodeData& node, Visit visit) {
  if (node.content == Content::kLink) visit(*node.link);
  if (node.content != Content::kOwnChildren) return;
  for (NodeData* child : node.own->children) visit(*child);
}

void drop_links(NodeData& node) noexcept {
  for_each_link(node, [&node](NodeData& target) {
    if (counts(node, target)) release(&target);
  });
}

void delete_tree(Tree* tree) noexcept {
  // First all links, then all nodes: a link may lead to another node of this tree.
  for (NodeData* node = tree->owned; node != nullptr; node = node->own->next) drop_links(*node);
  while (tree->owned != nullptr) {
    NodeData* node = std::exchange(tree->owned, tree->owned->own->next);
    if (node->has(kMade)) {
      delete &made(*node);
    } else {
      delete node->own;
    }
  }
  delete tree;
}

void delete_condemned() noexcept {
  if (condemned.deleting) return;
  condemned.deleting = true;
  while (condemned.nodes != nullptr || condemned.trees != nullptr) {
    if (MadeNode* node = condemned.nodes) {
      condemned.nodes = static_cast<MadeNode*>(node->storage.next);
      drop_links(*node);
      delete node;
    } else {
      delete_tree(std::exchange(condemned.trees, condemned.trees->next));
    }
  }
  condemned.deleting = false;
}

std::string_view view(const NodeData& node, Slice slice) noexcept {
  if (slice.size == 0) return {};
  if (slice.offset == kXmlUriSlice.offset) return xml::kXmlUri;
  return std::string_view(node.tree->buffer).substr(slice.offset, slice.size);
}

/// Makes a node that counted by itself a part of a tree.
void join(Tree& tree, NodeData& node) noexcept {
  tree.references += made(node).references;
  node.tree = &tree;
  node.own->next = std::exchange(tree.owned, &node);
}

/// Makes a node and all made nodes below it part of a tree.
void adopt(Tree& tree, NodeData& root) {
  std::vector<NodeData*> waiting{&root};
  join(tree, root);
  while (!waiting.empty()) {
    NodeData& node = *waiting.back();
    waiting.pop_back();
    for_each_link(node, [&](NodeData& target) {
      if (target.tree == nullptr) {
        waiting.push_back(&target);
        join(tree, target);
      }
      if (target.tree == &tree) --tree.references;
    });
  }
}

void hold_link(NodeData& from, NodeData& to) {
  if (from.tree != nullptr && to.tree == nullptr) adopt(*from.tree, to);
  if (counts(from, to)) retain(&to);
}

/// Takes the content away; what it linked to is released when the result goes.
std::vector<NodeRef> take_content(NodeData& node) {
  std::vector<NodeRef> links;
  for_each_link(node, [&](NodeData& target) {
    if (!counts(node, target)) return;
    links.emplace_back(&target);
    release(&target);
  });
  node.content = Content::kNothing;
  node.count = 0;
  node.text = Slice{};
  node.clear(kArray);
  node.clear(kUnallocated);
  node.clear(kReference);
  node.clear(kQualified);
  if (node.own != nullptr) {
    node.own->value = Variant();
    node.own->children.clear();
  }
  return links;
}

/// Whether a node stands on the way from another one to its content.
bool is_on_the_way(NodeData& node, const NodeData& from) {
  // A node that only its maker knows stands on no way; so a long chain is made in linear time.
  if (node.tree == nullptr && made(node).references == 1) return false;
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
  own_of(node).children.reserve(items.size());
  const auto old = take_content(node);
  node.content = Content::kOwnChildren;
  node.set(kArray);
  if (!array.allocated()) node.set(kUnallocated);
  set_type(node, "Array", kEncodingUri, kTypeDerived);
  for (const NodeRef& item : items) {
    hold_link(node, *item);
    node.own->children.push_back(item.get());
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
/// that spoke of it.
std::vector<NodeData*>& growing_children(NodeData& node) {
  Own& own = own_of(node);
  if (node.content == Content::kOwnChildren) return own.children;
  if (node.content == Content::kChildren) {
    own.children.assign(node.children, node.children + node.count);
  } else {
    const auto old = take_content(node);
    if (!node.has(kTypeExplicit)) clear_type(node);
  }
  node.content = Content::kOwnChildren;
  return own.children;
}

}  // namespace

void retain(NodeData* data) noexcept {
  if (data->tree != nullptr) {
    ++data->tree->references;
  } else {
    ++made(*data).references;
  }
}

void release(NodeData* data) noexcept {
  if (Tree* tree = data->tree) {
    if (--tree->references != 0) return;
    tree->next = std::exchange(condemned.trees, tree);
  } else {
    MadeNode& node = made(*data);
    if (--node.references != 0) return;
    node.storage.next = std::exchange(condemned.nodes, &node);
  }
  delete_condemned();
}

void NodeRef::hold() noexcept {
  if (data_ != nullptr) retain(data_);
}

void NodeRef::drop() noexcept {
  if (data_ != nullptr) release(data_);
}

NodeData& NodeRef::operator*() const {
  if (data_ == nullptr) {
    throw Error(error_numbers::kObjectNotSet, "BVConn", "Object not set: an empty node reference");
  }
  return *data_;
}

Blocks::~Blocks() {
  while (blocks_ != nullptr) {
    ::operator delete(std::exchange(blocks_, blocks_->next));
  }
}

void* Blocks::take(std::size_t bytes) {
  if (bytes > left_) grow(bytes);
  left_ -= bytes;
  return std::exchange(free_, free_ + bytes);
}

void Blocks::grow(std::size_t bytes) {
  constexpr std::size_t kLargest = std::size_t{16} << 20;
  const std::size_t size = std::max(bytes, next_size_);
  next_size_ = std::min(kLargest, next_size_ * 2);
  void* memory = ::operator new(sizeof(Block) + size);
  blocks_ = ::new (memory) Block{blocks_};
  free_ = static_cast<std::byte*>(memory) + sizeof(Block);
  left_ = size;
}

std::string_view name_of(const NodeData& node) noexcept {
  return node.own != nullptr ? std::string_view(node.own->name) : view(node, node.name);
}
std::string_view namespace_of(const NodeData& node) noexcept {
  return node.own != nullptr ? std::string_view(node.own->name_space) : view(node, node.name_space);
}
std::string_view text_of(const NodeData& node) noexcept {
  return view(node, node.text);
}
std::string_view own_type_of(const NodeData& node) noexcept {
  return node.own != nullptr ? std::string_view(node.own->type) : view(node, node.type);
}
std::string_view own_type_space_of(const NodeData& node) noexcept {
  if (node.has(kQualified)) return own_type_of(node).empty() ? std::string_view() : kXsdUri;
  return node.own != nullptr ? std::string_view(node.own->type_space) : view(node, node.type_space);
}
std::string_view qualified_space_of(const NodeData& node) noexcept {
  if (!node.has(kQualified)) return {};
  return node.own != nullptr ? std::string_view(node.own->type_space) : view(node, node.type_space);
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

std::span<NodeData* const> children_of(const NodeData& node) noexcept {
  const NodeData& holder = content_of(node);
  if (holder.content == Content::kChildren) return {holder.children, holder.count};
  if (holder.content == Content::kOwnChildren) return holder.own->children;
  return {};
}

NodeRef make_node(std::string_view name, std::string_view name_space) {
  auto node = std::make_unique<MadeNode>();
  node->own = &node->storage;
  node->set(kMade);
  node->storage.name = name;
  node->storage.name_space = name_space;
  return NodeRef(node.release());
}

Own& own_of(NodeData& node) {
  if (node.own == nullptr) {
    auto own = std::make_unique<Own>();
    own->name = view(node, node.name);
    own->name_space = view(node, node.name_space);
    own->type = view(node, node.type);
    own->type_space = view(node, node.type_space);
    own->next = std::exchange(node.tree->owned, &node);
    node.own = own.release();
  }
  return *node.own;
}

void set_type(NodeData& node, std::string_view type, std::string_view type_space, NodeFlag origin) {
  Own& own = own_of(node);
  clear_type(node);
  own.type = type;
  own.type_space = type_space;
  node.set(origin);
}

void clear_type(NodeData& node) noexcept {
  node.type = Slice{};
  node.type_space = Slice{};
  if (node.own != nullptr) {
    node.own->type.clear();
    node.own->type_space.clear();
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
  own_of(node);
  const bool nothing = value.empty() || value.missing() || value.is(Variant::Type::kNode);
  Variant held = nothing ? Variant() : value;  // before the old value goes: it may be part of it
  const auto old = take_content(node);
  clear_type(node);
  if (nothing) {
    node.content = Content::kNil;
    return;
  }
  node.content = Content::kOwnValue;
  node.own->value = std::move(held);
  set_type(node, derived_type(node.own->value.type()), kXsdUri, kTypeDerived);
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

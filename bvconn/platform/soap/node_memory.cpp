#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/node_data.h"

namespace bvconn::detail {

namespace {

// Of the blocks of a tree.
constexpr std::size_t kSmallest = std::size_t{1} << 10;
constexpr std::size_t kLargest = std::size_t{2} << 20;

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
  return from.tree() == nullptr || from.tree() != to.tree();
}

template <class Visit>
void for_each_link(NodeData& node, Visit visit) {
  if (node.content == Content::kLink) visit(*node.link);
  if (node.content != Content::kOwnChildren) return;
  for (NodeData* child : node.own()->children) visit(*child);
}

void drop_links(NodeData& node) noexcept {
  for_each_link(node, [&node](NodeData& target) {
    if (counts(node, target)) release(&target);
  });
}

void delete_tree(Tree* tree) noexcept {
  // First all links, then all nodes: a link may lead to another node of this tree.
  for (NodeData* node = tree->owned; node != nullptr; node = node->own()->next) drop_links(*node);
  while (tree->owned != nullptr) {
    NodeData* node = std::exchange(tree->owned, tree->owned->own()->next);
    if (node->has(kMade)) {
      delete &made(*node);
    } else {
      delete node->own();
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

/// Makes a node that counted by itself a part of a tree.
void join(Tree& tree, NodeData& node) noexcept {
  tree.references += made(node).references;
  Own& own = made(node).storage;
  own.tree = &tree;
  own.next = std::exchange(tree.owned, &node);
}

/// Makes a node and all made nodes below it part of a tree.
void adopt(Tree& tree, NodeData& root) {
  std::vector<NodeData*> waiting{&root};
  join(tree, root);
  while (!waiting.empty()) {
    NodeData& node = *waiting.back();
    waiting.pop_back();
    for_each_link(node, [&](NodeData& target) {
      if (target.tree() == nullptr) {
        waiting.push_back(&target);
        join(tree, target);
      }
      if (target.tree() == &tree) --tree.references;
    });
  }
}

}  // namespace

void hold_link(NodeData& from, NodeData& to) {
  if (from.tree() != nullptr && to.tree() == nullptr) adopt(*from.tree(), to);
  if (counts(from, to)) retain(&to);
}

std::vector<NodeRef> take_links(NodeData& node) {
  std::vector<NodeRef> links;
  for_each_link(node, [&](NodeData& target) {
    if (!counts(node, target)) return;
    links.emplace_back(&target);
    release(&target);
  });
  return links;
}

void retain(NodeData* data) noexcept {
  if (Tree* tree = data->tree()) {
    ++tree->references;
  } else {
    ++made(*data).references;
  }
}

void release(NodeData* data) noexcept {
  if (Tree* tree = data->tree()) {
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
  while (last_.data() != nullptr) {
    Head* const head = std::launder(reinterpret_cast<Head*>(last_.data()));
    MemoryBlock before = std::move(head->before);
    std::destroy_at(head);
    keep_spare(Spare::kNodes, std::exchange(last_, std::move(before)));
  }
}

void Blocks::expect(std::size_t bytes) noexcept {
  next_size_ = std::clamp(bytes, kSmallest, kLargest);
}

void* Blocks::take_from_new_block(std::size_t bytes) {
  // A long list gets a block of its own where one is going on that has room for more nodes.
  const bool alone = last_.data() != nullptr && bytes >= next_size_ / 2;
  std::byte* const free = free_;
  const std::size_t left = left_;
  add_block(alone ? bytes + sizeof(Head) : std::max(bytes + sizeof(Head), next_size_));
  void* const taken = std::exchange(free_, free_ + bytes);
  left_ -= bytes;
  if (left_ < left) {
    free_ = free;
    left_ = left;
  }
  return taken;
}

void Blocks::add_block(std::size_t bytes) {
  MemoryBlock block = spare_or_new(Spare::kNodes, bytes);
  ::new (block.data()) Head{std::move(last_)};
  last_ = std::move(block);
  free_ = last_.data() + sizeof(Head);
  left_ = last_.size() - sizeof(Head);
  next_size_ = std::min(kLargest, 2 * next_size_);
}

}  // namespace bvconn::detail

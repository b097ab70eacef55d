#pragma once

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "bvconn/platform/export.h"

namespace bvconn {

class SoapNode;
class SoapNodes;
class Variant;

namespace detail {
struct NodeData;
void retain(NodeData* data) noexcept;
void release(NodeData* data) noexcept;

/// A counted reference to a node, or to none.
class BVCONN_EXPORT NodeRef {
 public:
  NodeRef() = default;
  explicit NodeRef(NodeData* data) noexcept : data_(data) { hold(); }
  NodeRef(const NodeRef& other) noexcept : data_(other.data_) { hold(); }
  NodeRef(NodeRef&& other) noexcept : data_(other.data_) { other.data_ = nullptr; }
  NodeRef& operator=(NodeRef other) noexcept {
    std::swap(data_, other.data_);
    return *this;
  }
  ~NodeRef() { drop(); }

  NodeData* get() const noexcept { return data_; }
  /// The node; fails with 91 when there is none.
  NodeData& operator*() const;

 private:
  void hold() noexcept;
  void drop() noexcept;

  NodeData* data_ = nullptr;
};
}  // namespace detail

/// A node of a request or a reply: a name, and a value or children.
///
/// A handle: copies share one node. A default-made handle is an *empty reference*; any use of it
/// but a test or a copy fails with `Error` 91. Every node, read or made, can be changed.
///
/// A node of a reply keeps the whole reply alive, with all that was put below its nodes. Handles
/// are counted without locks: a tree, and a reply with all its nodes, belongs to one thread at a
/// time, and may be handed on as a whole.
class BVCONN_EXPORT SoapNode {
 public:
  SoapNode() = default;
  /// A new node without value and children: on the wire an empty element, not nil.
  static SoapNode make(std::string_view name = "");

  /// False for an empty reference.
  explicit operator bool() const noexcept { return data_.get() != nullptr; }
  /// Whether two handles refer to the same node.
  friend bool operator==(const SoapNode& a, const SoapNode& b) noexcept {
    return a.data_.get() == b.data_.get();
  }

  /// The local name.
  std::string Name() const;
  void Name(std::string_view name);
  std::string Namespace() const;
  void Namespace(std::string_view name_space);
  /// The `xsi:type` that the node was read or made with, without its prefix; "" where there is
  /// none.
  std::string Type() const;

  /// The simple value by the node's type, a string where it has none; an array where the node is
  /// marked as one; Empty for a node that is nil; a node that this one wraps. For a node with
  /// children, a node of the same name with the same `Nodes`.
  ///
  /// A text that is not of the type that the reply claims fails with 13; arrays in arrays beyond
  /// 256, or with more than a million items together, with 0x80044206.
  Variant Value() const;
  /// Replaces the value; the type is derived anew from it. A node as value makes this one *wrap*
  /// it: on the wire the element has this node's name and that node's content. Fails with
  /// 0x80044206 for a node that wraps this one.
  void Value(const Variant& value);
  /// The children; for an array its items, for a node that wraps another one those of that. The
  /// result refers to this node; it does not copy.
  SoapNodes Nodes() const;
  /// Whether the node says that it has no value (`xsi:nil`, or Empty, Missing, an empty reference).
  bool nil() const;

 private:
  friend class SoapNodes;
  friend struct SoapAccess;
  explicit SoapNode(detail::NodeRef data) noexcept : data_(std::move(data)) {}

  detail::NodeRef data_;
};

/// The ordered children of a node, or the headers or parameters of an envelope. A handle: copies
/// share one list.
class BVCONN_EXPORT SoapNodes {
 public:
  class BVCONN_EXPORT iterator {
   public:
    using value_type = SoapNode;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::input_iterator_tag;
    using reference = SoapNode;
    using pointer = void;

    iterator() = default;
    SoapNode operator*() const;
    iterator& operator++();
    iterator operator++(int);
    friend bool operator==(const iterator& a, const iterator& b) noexcept {
      return a.index_ == b.index_;
    }

   private:
    friend class SoapNodes;
    iterator(const detail::NodeRef& owner, std::size_t index) : owner_(owner), index_(index) {}
    detail::NodeRef owner_;
    std::size_t index_ = 0;
  };

  SoapNodes() = default;

  /// Makes a new child and appends it. Without a type the `xsi:type` follows from the value; with
  /// one, `type` is written as given, in `typeNamespace` when that is not empty.
  SoapNode Create(std::string_view name, const Variant& value, std::string_view name_space = "",
                  std::string_view type = "", std::string_view typeNamespace = "");
  /// Appends the very node, not a copy; a simple value gives way. Fails with 91 for an empty
  /// reference. A made node that comes to contain itself is not freed before the circle is opened.
  void Append(const SoapNode& node);
  /// The child at an index from 0; fails with 0x80044204 where there is none.
  SoapNode Item(std::size_t index) const;
  /// The first child with this local name; with a namespace that is not empty, in that namespace.
  /// Fails with 0x80044204 when there is none.
  SoapNode ItemByName(std::string_view name, std::string_view name_space = "") const;
  std::size_t Count() const;

  iterator begin() const;
  iterator end() const;

 private:
  friend class SoapNode;
  friend struct SoapAccess;
  explicit SoapNodes(detail::NodeRef owner) noexcept : owner_(std::move(owner)) {}

  detail::NodeRef owner_;
};

}  // namespace bvconn

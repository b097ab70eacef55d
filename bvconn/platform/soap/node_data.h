#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/text_buffer.h"
#include "bvconn/platform/thread_memory.h"

/// How nodes lie in memory.
///
/// The nodes of a reply lie in the blocks of one `Tree`, children side by side, and their names and
/// texts are slices of the reply's buffer. What many of them have in common, name and type, is
/// written down once for all, as a `Shape`. They have no count of their own: every handle to any of
/// them counts on the tree, and the tree goes as a whole. A *made* node is counted by itself and
/// keeps what it holds in `Own`, a shape for it alone; a node of a reply gets an `Own` when it is
/// first changed.
///
/// A link from a node to a node is counted like a handle, except inside one tree, where it would
/// keep the tree alive for ever. For the same reason a made node that is put below a node of a tree
/// becomes part of that tree (`adopt`).
namespace bvconn::detail {

struct Tree;

/// A part of the tree's buffer.
struct Slice {
  std::uint32_t offset = 0;
  std::uint32_t size = 0;
};
/// The slice that stands for the namespace of the prefix `xml`, which no document declares.
inline constexpr Slice kXmlUriSlice{UINT32_MAX, 1};

/// Where a node's content is.
enum class Content : std::uint8_t {
  kNothing,      ///< made without a value: an empty element
  kNil,          ///< no value, and the element says so
  kText,         ///< `text`, a slice of the buffer
  kChildren,     ///< `children` and `count`, side by side in the tree's blocks
  kLink,         ///< that of another node, `link`: wrapped, or the target of an `href`
  kOwnValue,     ///< `own()->value`, neither array nor node
  kOwnChildren,  ///< `own()->children`
};

/// What a read array says of the type of its items.
struct ItemSlices {
  Slice type;
  Slice type_space;
};

enum NodeFlag : std::uint16_t {
  kMade = 1,           ///< allocated by itself, a `MadeNode`
  kArray = 2,          ///< the children are the items of an array
  kUnallocated = 4,    ///< an array that was never allocated
  kReference = 8,      ///< a link that came as `href`, so the name of the target does not matter
  kTypeDerived = 16,   ///< the type follows from the value
  kTypeImplied = 32,   ///< the type is what the array around says of its items
  kTypeExplicit = 64,  ///< the type was given to `Create`
  kQualified = 128,    ///< the text is a qualified name's local part, `type_space` its namespace
  kTypedItems = 256,   ///< before the first of `children` lies the `ItemSlices` of a read array
  kNoRoot = 512,       ///< a child of the Body that says of itself that it is only referred to
};

inline constexpr std::uint8_t kTypeNotLookedUp = UINT8_MAX;

/// What nodes that were read alike have in common. It never changes, but for what is found out
/// late.
struct Shape {
  Tree* tree = nullptr;  ///< null for a made node that counts by itself
  Slice name;
  Slice name_space;
  Slice type;
  Slice type_space;
  bool is_own = false;  ///< whether this is an `Own`; then its texts count, and not the slices
  std::uint8_t type_index = kTypeNotLookedUp;  ///< of `type`, once a text has been read by it
};

/// What a node holds outside a reply's buffer, and its shape from then on.
struct Own : Shape {
  Own() { is_own = true; }

  std::string name;
  std::string name_space;
  std::string type;
  std::string type_space;
  Variant value;
  std::vector<NodeData*> children;
  NodeData* next = nullptr;  ///< in the list of a tree's owned nodes, or of nodes to be deleted
};

struct NodeData {
  Shape* shape = nullptr;
  union {
    Slice text{};
    NodeData* children;
    NodeData* link;
  };
  std::uint32_t count = 0;
  std::uint16_t flags = 0;
  Content content = Content::kNothing;
  std::uint8_t mark = 0;  ///< for walks that must know where they have been

  /// Null for a made node that counts by itself.
  Tree* tree() const noexcept { return shape->tree; }
  /// Null for a node of a reply as it was read.
  Own* own() const noexcept { return shape->is_own ? static_cast<Own*>(shape) : nullptr; }

  bool has(NodeFlag flag) const noexcept { return (flags & flag) != 0; }
  void set(NodeFlag flag) noexcept { flags = static_cast<std::uint16_t>(flags | flag); }
  void clear(NodeFlag flag) noexcept { flags = static_cast<std::uint16_t>(flags & ~flag); }
};
static_assert(sizeof(ItemSlices) % alignof(NodeData) == 0);
static_assert(sizeof(void*) != 8 || sizeof(NodeData) == 24);
static_assert(sizeof(void*) != 8 || sizeof(Shape) == 48);

/// The children of a node, in order: nodes side by side, or a list of them.
class Children {
 public:
  class Iterator {
   public:
    Iterator(const Children& all, std::size_t index) noexcept : all_(&all), index_(index) {}
    NodeData* operator*() const noexcept { return (*all_)[index_]; }
    Iterator& operator++() noexcept {
      ++index_;
      return *this;
    }
    bool operator!=(const Iterator& other) const noexcept { return index_ != other.index_; }

   private:
    const Children* all_;
    std::size_t index_;
  };

  Children() = default;
  Children(NodeData* nodes, std::size_t count) noexcept : nodes_(nodes), count_(count) {}
  explicit Children(const std::vector<NodeData*>& list) noexcept
      : list_(list.data()), count_(list.size()) {}

  std::size_t size() const noexcept { return count_; }
  bool empty() const noexcept { return count_ == 0; }
  NodeData* operator[](std::size_t index) const noexcept {
    return nodes_ != nullptr ? nodes_ + index : list_[index];
  }
  NodeData* front() const noexcept { return (*this)[0]; }
  Iterator begin() const noexcept { return {*this, 0}; }
  Iterator end() const noexcept { return {*this, count_}; }

 private:
  NodeData* nodes_ = nullptr;
  NodeData* const* list_ = nullptr;
  std::size_t count_ = 0;
};

struct MadeNode : NodeData {
  Own storage;
  std::size_t references = 0;
};

/// Memory that is handed out piece by piece and freed at once.
class Blocks {
 public:
  Blocks() = default;
  Blocks(const Blocks&) = delete;
  Blocks& operator=(const Blocks&) = delete;
  ~Blocks();

  /// About so much will be taken: only the size of the first block follows from it.
  void expect(std::size_t bytes) noexcept;
  /// Memory for pointers and structures of them.
  void* take(std::size_t bytes) {
    if (bytes > left_) return take_from_new_block(bytes);
    left_ -= bytes;
    return std::exchange(free_, free_ + bytes);
  }

 private:
  /// What lies at the beginning of each block.
  struct Head {
    MemoryBlock before;
  };
  void* take_from_new_block(std::size_t bytes);
  void add_block(std::size_t bytes);

  MemoryBlock last_;
  std::byte* free_ = nullptr;
  std::size_t left_ = 0;
  std::size_t next_size_ = 4096;
};

/// A reply: its buffer and its nodes.
struct Tree {
  std::size_t references = 0;
  TextBuffer buffer;
  Blocks blocks;
  NodeData* owned = nullptr;  ///< nodes that have an `Own`, by `own()->next`
  Tree* next = nullptr;       ///< in the list of trees to be deleted
};

/// Counts a new link where it counts; the caller writes it down.
void hold_link(NodeData& from, NodeData& to);
/// The counts of a node's links, which the caller then takes away.
std::vector<NodeRef> take_links(NodeData& node);

/// The text of a slice of this tree.
std::string_view view(const Tree& tree, Slice slice) noexcept;
std::string_view name_of(const NodeData& node) noexcept;
std::string_view namespace_of(const NodeData& node) noexcept;
std::string_view text_of(const NodeData& node) noexcept;
/// The node's own type and its namespace; "" where it has none.
std::string_view own_type_of(const NodeData& node) noexcept;
std::string_view own_type_space_of(const NodeData& node) noexcept;
/// The namespace of the qualified name that is a read node's text.
std::string_view qualified_space_of(const NodeData& node) noexcept;

/// A type by its name and its namespace.
struct TypeName {
  std::string_view name;
  std::string_view uri;
};
/// What an array that was read says of the type of its items; "" where it said nothing, and for an
/// array that was made.
TypeName declared_items_of(const NodeData& array) noexcept;

/// The node that holds this one's content: itself, or the end of its links.
const NodeData& content_of(const NodeData& node) noexcept;
NodeData& content_of(NodeData& node) noexcept;
/// The first node along the links that has a type (its own, or with `implied` an implied one).
const NodeData& typed_node_of(const NodeData& node, bool implied) noexcept;
Children children_of(const NodeData& node) noexcept;

/// The type by which a node reads its text; `holder` is the node's `content_of`, with a text.
std::uint8_t text_type_of(const NodeData& node, const NodeData& holder) noexcept;

NodeRef make_node(std::string_view name, std::string_view name_space = {});
/// The node's own storage, made when there is none yet.
Own& own_of(NodeData& node);
void set_type(NodeData& node, std::string_view type, std::string_view type_space, NodeFlag origin);
void clear_type(NodeData& node) noexcept;

/// Replaces the content by a value, and derives the type.
void set_value(NodeData& node, const Variant& value);
void append(NodeData& node, NodeData& child);
Variant value_of(const NodeRef& node);

}  // namespace bvconn::detail

namespace bvconn {

/// The way from handles to nodes and back, for this room alone.
struct SoapAccess {
  static SoapNode node(detail::NodeRef data) { return SoapNode(std::move(data)); }
  static SoapNodes nodes(detail::NodeRef owner) { return SoapNodes(std::move(owner)); }
  static const detail::NodeRef& data(const SoapNode& node) { return node.data_; }
  static const detail::NodeRef& owner(const SoapNodes& nodes) { return nodes.owner_; }
};

}  // namespace bvconn

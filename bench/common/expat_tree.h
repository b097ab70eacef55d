#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

struct XML_ParserStruct;

namespace bench {

/// A frugal tree of what expat hands out, which knows namespaces: nodes in one block, texts in
/// another, each name and each attribute kept once.
class ExpatTree {
 public:
  static constexpr std::uint32_t kNone = ~std::uint32_t{0};

  ExpatTree() = default;
  ~ExpatTree();
  ExpatTree(const ExpatTree&) = delete;
  ExpatTree& operator=(const ExpatTree&) = delete;

  struct Node {
    std::string_view name;
    std::uint32_t text_begin = 0;
    std::uint32_t text_size = 0;
    std::uint32_t first_child = kNone;
    std::uint32_t next = kNone;
    std::uint32_t attributes_begin = 0;
    std::uint32_t attributes = 0;
  };
  struct Attribute {
    std::string_view name;
    std::string_view value;
  };

  /// Reads a document in as many pieces as it comes in, then an empty one that ends it; fails with
  /// a std::runtime_error.
  void read(std::string_view piece);
  /// Forgets what was read; the room for it stays.
  void clear();

  const Node& root() const { return nodes_.front(); }
  /// The child at an index from 0, and the one of a name; it has to be there.
  const Node& child(const Node& node, std::uint32_t index) const;
  const Node& child(const Node& node, std::string_view name) const;
  std::string_view text(const Node& node) const;
  const Node* first(const Node& node) const { return at(node.first_child); }
  const Node* next(const Node& node) const { return at(node.next); }

 private:
  struct Open {
    std::uint32_t node;
    std::uint32_t last_child = kNone;
  };
  struct Events;
  const Node* at(std::uint32_t index) const { return index == kNone ? nullptr : &nodes_[index]; }
  std::string_view kept(const char* text);

  std::vector<Node> nodes_;
  std::vector<Attribute> attributes_;
  std::string text_;
  std::unordered_set<std::string> names_;
  std::vector<Open> open_;
  XML_ParserStruct* parser_ = nullptr;
};

}  // namespace bench

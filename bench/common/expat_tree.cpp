#include "common/expat_tree.h"

#include <expat.h>

#include <stdexcept>

namespace bench {

struct ExpatTree::Events {
  static void start(void* data, const XML_Char* name, const XML_Char** attributes) {
    ExpatTree& tree = *static_cast<ExpatTree*>(data);
    const auto index = static_cast<std::uint32_t>(tree.nodes_.size());
    Node& node = tree.nodes_.emplace_back();
    node.name = tree.kept(name);
    node.attributes_begin = static_cast<std::uint32_t>(tree.attributes_.size());
    for (; *attributes != nullptr; attributes += 2, ++node.attributes) {
      tree.attributes_.push_back({tree.kept(attributes[0]), tree.kept(attributes[1])});
    }
    if (!tree.open_.empty()) {
      Open& parent = tree.open_.back();
      (parent.last_child == kNone ? tree.nodes_[parent.node].first_child
                                  : tree.nodes_[parent.last_child].next) = index;
      parent.last_child = index;
    }
    tree.open_.push_back({.node = index});
  }

  static void end(void* data, const XML_Char*) { static_cast<ExpatTree*>(data)->open_.pop_back(); }

  /// Text around children is not kept together: nothing here asks for it.
  static void text(void* data, const XML_Char* bytes, int size) {
    ExpatTree& tree = *static_cast<ExpatTree*>(data);
    Node& node = tree.nodes_[tree.open_.back().node];
    if (node.text_size == 0) node.text_begin = static_cast<std::uint32_t>(tree.text_.size());
    node.text_size += static_cast<std::uint32_t>(size);
    tree.text_.append(bytes, static_cast<std::size_t>(size));
  }
};

ExpatTree::~ExpatTree() {
  if (parser_ != nullptr) ::XML_ParserFree(parser_);
}

void ExpatTree::clear() {
  nodes_.clear();
  attributes_.clear();
  text_.clear();
  open_.clear();
  if (parser_ == nullptr) parser_ = ::XML_ParserCreateNS(nullptr, '|');
  ::XML_ParserReset(parser_, nullptr);
  ::XML_SetUserData(parser_, this);
  ::XML_SetElementHandler(parser_, Events::start, Events::end);
  ::XML_SetCharacterDataHandler(parser_, Events::text);
}

void ExpatTree::read(std::string_view piece) {
  if (parser_ == nullptr) clear();
  const int is_last = piece.empty() ? XML_TRUE : XML_FALSE;
  if (::XML_Parse(parser_, piece.data(), static_cast<int>(piece.size()), is_last) !=
      XML_STATUS_OK) {
    throw std::runtime_error("expat cannot read the document");
  }
}

std::string_view ExpatTree::kept(const char* text) {
  return *names_.emplace(text).first;
}

const ExpatTree::Node& ExpatTree::child(const Node& node, std::uint32_t index) const {
  const Node* found = first(node);
  for (; found != nullptr && index != 0; --index) found = next(*found);
  if (found == nullptr) throw std::runtime_error("no such child");
  return *found;
}

const ExpatTree::Node& ExpatTree::child(const Node& node, std::string_view name) const {
  for (const Node* each = first(node); each != nullptr; each = next(*each)) {
    if (each->name == name) return *each;
  }
  throw std::runtime_error("no " + std::string(name));
}

std::string_view ExpatTree::text(const Node& node) const {
  return std::string_view(text_).substr(node.text_begin, node.text_size);
}

}  // namespace bench

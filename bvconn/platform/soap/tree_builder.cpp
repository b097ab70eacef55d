#include "bvconn/platform/soap/tree_builder.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <new>
#include <string>
#include <utility>

#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_uris.h"

namespace bvconn::detail {

namespace {

bool is_blank(std::string_view text) {
  return trim_xml_space(text).empty();
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

[[noreturn]] void bad_reference(const std::string& description) {
  throw Error(error_numbers::kSoapLimit, "SoapEnvelope", description);
}

}  // namespace

TreeBuilder::TreeBuilder(Tree& tree, Form form)
    : tree_(tree), buffer_(tree.buffer.data()), buffer_size_(tree.buffer.size()), form_(form) {}

Slice TreeBuilder::slice(std::string_view part) const {
  if (part.empty()) return {};
  const std::less<const char*> before;
  if (before(part.data(), buffer_) || !before(part.data(), buffer_ + buffer_size_)) {
    return kXmlUriSlice;  // the one text that the reader gives out and no document contains
  }
  return {static_cast<std::uint32_t>(part.data() - buffer_),
          static_cast<std::uint32_t>(part.size())};
}

NodeData* TreeBuilder::new_node() {
  auto* node = ::new (tree_.blocks.take(sizeof(NodeData))) NodeData;
  node->tree = &tree_;
  node->content = Content::kText;
  return node;
}

void TreeBuilder::start_element(const xml::Name& name, std::span<const xml::Attribute> attributes,
                                const xml::Scope& scope) {
  NodeData* node = new_node();
  node->name = slice(name.local);
  node->name_space = slice(name.uri);
  Frame frame;
  frame.node = node;
  for (const xml::Attribute& attribute : attributes) read_attribute(frame, attribute, scope);
  take_implied_type(frame, name);
  if (open_.empty()) {
    root_ = node;
  } else {
    waiting_.push_back(node);
  }
  frame.first_child = waiting_.size();
  open_.push_back(frame);
}

void TreeBuilder::text(std::string_view text) {
  // Text beside child elements does not count.
  const Frame& frame = open_.back();
  if (waiting_.size() == frame.first_child) frame.node->text = slice(text);
}

void TreeBuilder::end_element(const xml::Scope& scope) {
  fill(open_.back(), scope);
  open_.pop_back();
}

void TreeBuilder::read_attribute(Frame& frame, const xml::Attribute& attribute,
                                 const xml::Scope& scope) {
  const auto [prefix, local, uri, value, is_declaration] = attribute;
  if (is_declaration) return;
  if (is_xsi(uri)) {
    if (local == "type") {
      read_type(frame, value, scope);
    } else if (local == "nil" || local == "null") {
      const auto word = trim_xml_space(value);
      frame.is_nil = word == "true" || word == "1";
    }
  } else if (uri == kEncodingUri) {
    if (local == "arrayType") read_array_type(frame, value, scope);
    if (local == "root" && trim_xml_space(value) == "0" && open_.size() == 2) {
      no_roots_.push_back(frame.node);
    }
  } else if (form_ == Form::kEnvelope && uri.empty()) {
    if (local == "id") identified_.push_back({value, frame.node});
    if (local == "href" && value.starts_with('#')) frame.href = value.substr(1);
  } else if (uri == kEnvelopeUri && local == "encodingStyle") {
    note_encoding_style(value);
  }
}

void TreeBuilder::note_encoding_style(std::string_view style) {
  const bool in_body = open_.size() == 2 && name_of(*open_[1].node) == "Body" &&
                       waiting_.size() == open_[1].first_child;
  if (open_.size() < 2 || in_body) encoding_style_ = style;
}

void TreeBuilder::read_type(Frame& frame, std::string_view value, const xml::Scope& scope) {
  const auto [local, uri] = resolve(value, scope);
  frame.node->type = slice(local);
  frame.node->type_space = slice(uri);
  if (uri == kEncodingUri && local == "Array") frame.node->set(kArray);
  frame.is_qualified_name = local == "QName" && is_xsd(uri);
}

void TreeBuilder::read_array_type(Frame& frame, std::string_view value, const xml::Scope& scope) {
  value = trim_xml_space(value);
  const auto [local, uri] = resolve(value.substr(0, value.rfind('[')), scope);
  frame.node->set(kArray);
  frame.items = {local, uri};
}

/// What the name of the element, or the array around, says of the type where the element itself
/// says nothing.
void TreeBuilder::take_implied_type(Frame& frame, const xml::Name& name) {
  NodeData& node = *frame.node;
  TypeName type;
  if (name.uri == kEncodingUri || is_xsd(name.uri)) {
    type = {name.local, name.uri};
    if (name.local == "Array" && name.uri == kEncodingUri) return node.set(kArray);
  } else if (!open_.empty()) {
    type = open_.back().items;
  }
  if (type.name.empty() || node.type.size != 0 || node.has(kArray)) return;
  if (type.name.ends_with(']')) {
    node.set(kArray);
    frame.items = {type.name.substr(0, type.name.rfind('[')), type.uri};
  } else if (type.name != "anyType" && type.name != "ur-type") {
    node.type = slice(type.name);
    node.type_space = slice(type.uri);
    node.set(kTypeImplied);
    frame.is_qualified_name = type.name == "QName" && is_xsd(type.uri);
  }
}

bool TreeBuilder::is_fault_code() const {
  if (form_ != Form::kEnvelope || open_.size() != 4) return false;
  const NodeData& fault = *open_[2].node;
  return name_of(*open_[3].node) == "faultcode" && name_of(fault) == "Fault" &&
         namespace_of(fault) == kEnvelopeUri;
}

bool TreeBuilder::take_children(const Frame& frame) {
  const std::size_t count = waiting_.size() - frame.first_child;
  if (count == 0) return false;
  place_children(*frame.node, frame.items, count);
  waiting_.resize(frame.first_child);
  return true;
}

/// Puts the last so many of the waiting nodes below this one, and what an array says of them before
/// the first.
void TreeBuilder::place_children(NodeData& node, const TypeName& items, std::size_t count) {
  const bool typed = node.has(kArray) && !items.name.empty();
  const std::size_t ahead = typed ? sizeof(ItemSlices) : 0;
  const std::size_t bytes = count * sizeof(NodeData*);
  node.children = nullptr;
  node.count = static_cast<std::uint32_t>(count);
  node.content = Content::kChildren;
  if (ahead + bytes == 0) return;
  auto* memory = static_cast<std::byte*>(tree_.blocks.take(ahead + bytes));
  node.children = reinterpret_cast<NodeData**>(memory + ahead);
  if (typed) {
    ::new (memory) ItemSlices{.type = slice(items.name), .type_space = slice(items.uri)};
    node.set(kTypedItems);
  }
  if (count > 0) std::memcpy(node.children, waiting_.data() + waiting_.size() - count, bytes);
}

void TreeBuilder::fill(Frame& frame, const xml::Scope& scope) {
  NodeData& node = *frame.node;
  if (frame.is_nil) {
    waiting_.resize(frame.first_child);
    node.text = {};
    node.content = Content::kNil;
    node.clear(kArray);
    return;
  }
  if (take_children(frame)) return;
  const bool blank = is_blank(text_of(node));
  if (frame.href.data() != nullptr && blank) {
    node.clear(kArray);
    references_.push_back({frame.href, &node});
    if (is_fault_code()) node.set(kQualified);
  } else if (node.has(kArray) && blank) {
    place_children(node, frame.items, 0);
  } else {
    node.clear(kArray);
    if (frame.is_qualified_name || is_fault_code()) make_qualified(node, scope);
  }
}

void TreeBuilder::make_qualified(NodeData& node, const xml::Scope& scope) {
  const auto [local, uri] = resolve(text_of(node), scope);
  node.text = slice(local);
  node.type_space = slice(uri);
  node.set(kQualified);
}

bool TreeBuilder::is_marked_no_root(const NodeData* node) const {
  return std::find(no_roots_.begin(), no_roots_.end(), node) != no_roots_.end();
}

NodeData* TreeBuilder::target_of(std::string_view id) const {
  const auto by_id = [](const Identified& a, const Identified& b) { return a.id < b.id; };
  const auto [first, last] =
      std::equal_range(identified_.begin(), identified_.end(), Identified{id, nullptr}, by_id);
  if (first == last)
    bad_reference("No element has the id " + shown(id) + " that an href refers to");
  if (last - first > 1) {
    bad_reference("More than one element has the id " + shown(id) + " that an href refers to");
  }
  return first->node;
}

void TreeBuilder::resolve_references() {
  if (references_.empty()) return;
  std::sort(identified_.begin(), identified_.end(),
            [](const Identified& a, const Identified& b) { return a.id < b.id; });
  for (const auto& [id, node] : references_) {
    node->link = target_of(id);
    node->content = Content::kLink;
    node->set(kReference);
  }
  check_cycles();
}

/// Walks all that can be reached from the root once, depth first, without recursion.
void TreeBuilder::check_cycles() const {
  enum Mark : std::uint8_t { kUnseen, kOnPath, kDone };
  struct Step {
    NodeData* node;
    std::uint32_t next;
  };
  std::vector<Step> path{{root_, 0}};
  root_->mark = kOnPath;
  while (!path.empty()) {
    auto& [node, next] = path.back();
    const bool is_link = node->content == Content::kLink;
    const std::uint32_t count = is_link ? 1 : node->content == Content::kChildren ? node->count : 0;
    if (next == count) {
      node->mark = kDone;
      path.pop_back();
      continue;
    }
    NodeData* target = is_link ? node->link : node->children[next];
    ++next;
    if (target->mark == kOnPath) {
      bad_reference("Through its references the element " + shown(name_of(*target)) +
                    " contains itself");
    }
    if (target->mark == kDone) continue;
    target->mark = kOnPath;
    path.push_back({target, 0});
  }
}

}  // namespace bvconn::detail

#include "bvconn/platform/soap/soap_node.h"

#include <utility>

#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/node_data.h"

namespace bvconn {

namespace {

/// What a list holds, for the description of a look-up that failed: "3 nodes: a, b, c".
std::string what_there_is(const detail::Children& children) {
  constexpr std::size_t kShown = 10;
  if (children.empty()) return "there are no nodes";
  std::string text = "there ";
  text += children.size() == 1 ? "is 1 node: " : "are " + std::to_string(children.size()) + ": ";
  for (std::size_t i = 0; i < children.size() && i < kShown; ++i) {
    if (i > 0) text += ", ";
    text += detail::name_of(*children[i]);
  }
  if (children.size() > kShown) text += ", …";
  return text;
}

[[noreturn]] void no_such_node(const std::string& wanted, const detail::Children& children) {
  throw Error(error_numbers::kNoSuchNode, "SoapNodes",
              "There is no node " + wanted + "; " + what_there_is(children));
}

detail::NodeRef child_at(const detail::NodeRef& owner, std::size_t index) {
  const auto children = detail::children_of(*owner);
  if (index >= children.size()) {
    no_such_node("at index " + std::to_string(index), children);
  }
  return detail::NodeRef(children[index]);
}

}  // namespace

SoapNode SoapNode::make(std::string_view name) {
  return SoapNode(detail::make_node(name));
}

std::string SoapNode::Name() const {
  return std::string(detail::name_of(*data_));
}
void SoapNode::Name(std::string_view name) {
  detail::own_of(*data_).name = std::string(name);
}
std::string SoapNode::Namespace() const {
  return std::string(detail::namespace_of(*data_));
}
void SoapNode::Namespace(std::string_view name_space) {
  detail::own_of(*data_).name_space = std::string(name_space);
}

std::string SoapNode::Type() const {
  const auto& typed = detail::typed_node_of(*data_, false);
  return typed.has(detail::kTypeImplied) ? std::string() : std::string(own_type_of(typed));
}

Variant SoapNode::Value() const {
  *data_;
  return detail::value_of(data_);
}
void SoapNode::Value(const Variant& value) {
  detail::set_value(*data_, value);
}

SoapNodes SoapNode::Nodes() const {
  *data_;
  return SoapNodes(data_);
}

bool SoapNode::nil() const {
  return content_of(*data_).content == detail::Content::kNil;
}

SoapNode SoapNodes::Create(std::string_view name, const Variant& value, std::string_view name_space,
                           std::string_view type, std::string_view typeNamespace) {
  *owner_;
  SoapNode node(detail::make_node(name, name_space));
  detail::set_value(*node.data_, value);
  if (!type.empty()) {
    detail::set_type(*node.data_, type, typeNamespace, detail::kTypeExplicit);
  }
  detail::append(*owner_, *node.data_);
  return node;
}

void SoapNodes::Append(const SoapNode& node) {
  detail::append(*owner_, *node.data_);
}

SoapNode SoapNodes::Item(std::size_t index) const {
  return SoapNode(child_at(owner_, index));
}

SoapNode SoapNodes::ItemByName(std::string_view name, std::string_view name_space) const {
  const auto children = detail::children_of(*owner_);
  for (detail::NodeData* child : children) {
    if (detail::name_of(*child) == name &&
        (name_space.empty() || detail::namespace_of(*child) == name_space)) {
      return SoapNode(detail::NodeRef(child));
    }
  }
  std::string wanted = "named " + detail::shown(name);
  if (!name_space.empty()) wanted += " in the namespace " + detail::shown(name_space);
  no_such_node(wanted, children);
}

std::size_t SoapNodes::Count() const {
  return detail::children_of(*owner_).size();
}

SoapNodes::iterator SoapNodes::begin() const {
  *owner_;
  return {owner_, 0};
}
SoapNodes::iterator SoapNodes::end() const {
  return {owner_, Count()};
}

SoapNode SoapNodes::iterator::operator*() const {
  return SoapNode(child_at(owner_, index_));
}
SoapNodes::iterator& SoapNodes::iterator::operator++() {
  ++index_;
  return *this;
}
SoapNodes::iterator SoapNodes::iterator::operator++(int) {
  iterator before = *this;
  ++*this;
  return before;
}

}  // namespace bvconn

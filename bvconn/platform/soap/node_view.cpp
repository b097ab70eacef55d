#include "bvconn/platform/soap/node_view.h"

#include "bvconn/platform/soap/node_data.h"
#include "bvconn/platform/soap/typed_text.h"

namespace bvconn::detail {

namespace {

ViewedValue text_kind(const NodeData& node, const NodeData& holder) noexcept {
  if (holder.has(kQualified) || node.has(kQualified)) return ViewedValue::kOther;
  return text_type_of(node, holder) == kStringType ? ViewedValue::kText : ViewedValue::kOther;
}

void view_value(const NodeData& node, const NodeData& holder, NodeView& view) noexcept {
  if (node.content == Content::kLink && !node.has(kReference)) {
    view.value = ViewedValue::kNode;
    view.target = node.link;
    return;
  }
  if (holder.has(kArray)) {
    view.value = ViewedValue::kArray;
    view.allocated = !holder.has(kUnallocated) || view.count > 0;
    return;
  }
  switch (holder.content) {
    case Content::kText:
      view.value = text_kind(node, holder);
      view.text = text_of(holder);
      break;
    case Content::kOwnValue:
      view.value = ViewedValue::kOther;
      break;
    case Content::kChildren:
    case Content::kOwnChildren:
      view.value = ViewedValue::kNode;
      view.target = &node;
      break;
    case Content::kNothing:
    case Content::kNil:
    case Content::kLink:
      break;
  }
}

/// Handles do not know of nodes that must not change.
SoapNode handle_of(const NodeData& node) {
  return SoapAccess::node(NodeRef(const_cast<NodeData*>(&node)));
}

}  // namespace

const NodeData* viewed_node(const SoapNode& node) {
  return &*SoapAccess::data(node);
}

const NodeData* viewed_node(const SoapNodes& nodes) {
  return &*SoapAccess::owner(nodes);
}

NodeView view_of(const NodeData& node) noexcept {
  const NodeData& holder = content_of(node);
  NodeView view;
  view.name = name_of(node);
  view.name_space = namespace_of(node);
  view.node = &node;
  view.list = &holder;
  if (holder.content != Content::kText) view.count = children_of(holder).size();
  view.nil = holder.content == Content::kNil;
  view_value(node, holder, view);
  return view;
}

const NodeData& child_at(const NodeView& view, std::size_t index) noexcept {
  return *children_of(*view.list)[index];
}

std::string_view name_at(const NodeView& view, std::size_t index) noexcept {
  return name_of(child_at(view, index));
}

std::string child_text(const NodeView& view, std::size_t index) {
  const NodeData& child = child_at(view, index);
  const NodeView shown = view_of(child);
  if (shown.value == ViewedValue::kText) return std::string(shown.text);
  return to_text(handle_of(child).Value());
}

std::optional<std::string> text_of_first(const SoapNodes& nodes, std::string_view name) {
  const NodeView all = view_of(*viewed_node(nodes));
  for (std::size_t i = 0; i < all.count; ++i) {
    if (name_at(all, i) == name) return child_text(all, i);
  }
  return std::nullopt;
}

ShownValue shown_value(const NodeData& node) {
  return shown_value(handle_of(node));
}

}  // namespace bvconn::detail

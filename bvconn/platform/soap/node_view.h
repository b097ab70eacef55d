#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/shown_value.h"
#include "bvconn/platform/soap/soap_node.h"

/// Nodes without handles, for what reads a whole answer; not a part of the interface.
///
/// A handle counts, and gives copies of names and texts. A view does neither: it holds as long as a
/// handle to the tree does and nobody changes a node of it.
namespace bvconn::detail {

/// What the value of a node is.
enum class ViewedValue : std::uint8_t {
  kNothing,  ///< nil, or nothing
  kText,     ///< the string `text`
  kArray,    ///< an array of its children's values
  kNode,     ///< the node `target`
  kOther,    ///< what `shown_value` tells
};

struct NodeView {
  std::string_view name;
  std::string_view name_space;
  std::string_view text;
  const NodeData* node = nullptr;
  const NodeData* target = nullptr;
  const NodeData* list = nullptr;  ///< whose `child_at` are the children
  std::size_t count = 0;           ///< of the children
  ViewedValue value = ViewedValue::kNothing;
  bool nil = false;
  bool allocated = true;  ///< false for an array that never was
};

/// Fails with 91 for an empty reference.
BVCONN_EXPORT const NodeData* viewed_node(const SoapNode& node);
/// The node whose children these are. Fails with 91 for an empty reference.
BVCONN_EXPORT const NodeData* viewed_node(const SoapNodes& nodes);
BVCONN_EXPORT NodeView view_of(const NodeData& node) noexcept;
/// The child at an index below the view's count.
BVCONN_EXPORT const NodeData& child_at(const NodeView& view, std::size_t index) noexcept;
/// The local name of a child.
std::string_view name_at(const NodeView& view, std::size_t index) noexcept;
/// The text of the value of a child, as `to_text` gives it.
std::string child_text(const NodeView& view, std::size_t index);
/// The same of the first child of this local name, if there is one. Fails with 91 for an empty
/// reference.
std::optional<std::string> text_of_first(const SoapNodes& nodes, std::string_view name);
/// As of a handle to the node.
BVCONN_EXPORT ShownValue shown_value(const NodeData& node);

}  // namespace bvconn::detail

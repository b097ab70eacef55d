#include "json_tree.h"

#include <cmath>
#include <string>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/typed_text.h"

namespace bvconn::tool {

using detail::NodeData;
using detail::NodeView;
using detail::ShownValue;
using detail::ViewedValue;

namespace {

constexpr std::size_t kMaxText = std::size_t{1} << 30;
/// Characters around name and value of a node.
constexpr std::size_t kNodeText = std::string_view(R"({"name":"","value":"","nodes":[]})").size();

}  // namespace

void TreeMeasure::add(const SoapNode& node) {
  count_node(*detail::viewed_node(node));
  run();
}

void TreeMeasure::add(const SoapNodes& nodes) {
  open(detail::view_of(*detail::viewed_node(nodes)), false);
  run();
}

void TreeMeasure::add(const Variant& value) {
  if (value.is(Variant::Type::kNode) && value.node()) add(value.node());
  if (!value.is(Variant::Type::kArray)) return;
  for (const Variant& item : value.array().items()) add(item);
}

void TreeMeasure::count_node(const NodeData& node) {
  const NodeView view = detail::view_of(node);
  count(nodes_, kNodeText + view.name.size() + view.name_space.size() + view.text.size());
  if (view.count == 0) return;
  open(view, false);
  if (view.value == ViewedValue::kArray) open(view, true);
}

void TreeMeasure::count_value(const NodeData& node) {
  const NodeView view = detail::view_of(node);
  count(values_, view.text.size());
  if (view.value == ViewedValue::kArray) open(view, true);
  if (view.value == ViewedValue::kNode && view.target != nullptr) count_node(*view.target);
}

void TreeMeasure::count(std::size_t& things, std::size_t text) {
  ++things;
  text_ += text;
  if (things > max_nodes_ || text_ > kMaxText) {
    throw Error(error_numbers::kSoapLimit, "bvconn", "The answer is too large to be printed");
  }
}

void TreeMeasure::open(const NodeView& view, bool values) {
  open_.push_back({.view = view, .values = values});
}

void TreeMeasure::run() {
  while (!open_.empty()) {
    Frame& top = open_.back();
    if (top.next == top.view.count) {
      open_.pop_back();
      continue;
    }
    const NodeData& child = detail::child_at(top.view, top.next++);
    if (top.values) {
      count_value(child);
    } else {
      count_node(child);
    }
  }
}

void TreeWriter::value(const Variant& value) {
  using Type = Variant::Type;
  switch (value.type()) {
    case Type::kEmpty:
      out_.raw("null");
      break;
    case Type::kMissing:
      out_.raw(tells_missing_ ? R"({"missing":true})" : "null");
      break;
    case Type::kBoolean:
      out_.raw(value.boolean() ? "true" : "false");
      break;
    case Type::kInt16:
      out_.integer(value.int16());
      break;
    case Type::kInt32:
      out_.integer(value.int32());
      break;
    case Type::kInt64:
      out_.integer(value.int64());
      break;
    case Type::kDouble:
      // JSON has no infinite numbers.
      if (std::isfinite(value.number())) {
        out_.number(value.number());
      } else {
        out_.string(conversions::double_text(value.number()));
      }
      break;
    case Type::kString:
      out_.string(value.string());
      break;
    case Type::kDate:
      out_.raw(R"({"date":)").string(conversions::iso_date_text(value.date())).raw('}');
      break;
    case Type::kBytes:
      out_.string(detail::to_base64(value.bytes()));
      break;
    case Type::kArray:
      array(value.array());
      break;
    case Type::kNode:
      reference(value.node());
      break;
    case Type::kQualifiedName:
      out_.string(value.qualified_name().local);
      break;
  }
}

void TreeWriter::list(const SoapNodes& nodes) {
  out_.raw('[');
  open_.push_back({.view = detail::view_of(*detail::viewed_node(nodes)), .stage = Stage::kList});
  run(open_.size() - 1);
}

/// An array that is no node: one that recurses as its variants do when they are copied.
void TreeWriter::array(const VariantArray& array) {
  if (!array.allocated()) {
    out_.raw("null");
    return;
  }
  out_.raw('[');
  bool is_first = true;
  for (const Variant& item : array.items()) {
    if (!is_first) out_.raw(',');
    is_first = false;
    value(item);
  }
  out_.raw(']');
}

void TreeWriter::reference(const SoapNode& node) {
  if (!node) {
    out_.raw("null");
    return;
  }
  const std::size_t before = open_.size();
  out_.raw(R"({"node":)");
  begin_node(*detail::viewed_node(node), true);
  run(before);
}

void TreeWriter::begin_node(const NodeData& node, bool in_braces) {
  Frame frame{.view = detail::view_of(node), .in_braces = in_braces};
  out_.raw(R"({"name":)").string(frame.view.name).raw(R"(,"value":)");
  switch (frame.view.value) {
    case ViewedValue::kText:
      out_.string(frame.view.text);
      return begin_children(frame, {});
    case ViewedValue::kArray:
      return begin_array(frame);
    case ViewedValue::kOther: {
      const ShownValue shown = detail::shown_value(node);
      value(shown.value);
      return begin_children(frame, shown.unreadable);
    }
    case ViewedValue::kNode:  // its content is among the children
    case ViewedValue::kNothing:
      out_.raw("null");
      return begin_children(frame, {});
  }
}

/// The items stand twice: as the values of the array, where all of them can be read, and as nodes.
void TreeWriter::begin_array(Frame& frame) {
  const ShownValue shown = detail::shown_value(*frame.view.node);
  frame.unreadable = !shown.unreadable.empty();
  if (frame.unreadable || !frame.view.allocated || frame.view.count == 0) {
    value(shown.value);
    return begin_children(frame, shown.unreadable);
  }
  out_.raw('[');
  frame.stage = Stage::kItems;
  open_.push_back(frame);
}

void TreeWriter::begin_children(Frame& frame, std::string_view unreadable) {
  // Nearly every node is a leaf of which no more is to be said.
  const bool is_plain =
      unreadable.empty() && !frame.view.nil && frame.view.name_space.empty() && !frame.in_braces;
  if (frame.view.count == 0 && is_plain) {
    out_.raw(R"(,"nodes":[]})");
    return;
  }
  out_.raw(R"(,"nodes":[)");
  if (frame.view.count == 0) return end_node(frame, unreadable);
  frame.stage = Stage::kNodes;
  frame.next = 0;
  open_.push_back(frame);
}

void TreeWriter::end_node(const Frame& frame, std::string_view unreadable) {
  out_.raw(']');
  if (frame.view.nil) out_.raw(R"(,"nil":true)");
  if (!unreadable.empty()) out_.raw(R"(,"unreadable":)").string(unreadable);
  if (!frame.view.name_space.empty()) {
    out_.raw(R"(,"namespace":)").string(frame.view.name_space);
  }
  out_.raw(frame.in_braces ? "}}" : "}");
}

/// The value of an array's item.
void TreeWriter::item(const NodeData& node) {
  const NodeView view = detail::view_of(node);
  switch (view.value) {
    case ViewedValue::kNothing:
      out_.raw("null");
      break;
    case ViewedValue::kText:
      out_.string(view.text);
      break;
    case ViewedValue::kNode:
      out_.raw(R"({"node":)");
      begin_node(*view.target, true);
      break;
    case ViewedValue::kArray:
      if (!view.allocated) {
        out_.raw("null");
      } else {
        out_.raw('[');
        open_.push_back({.view = view, .stage = Stage::kValues});
      }
      break;
    case ViewedValue::kOther:
      value(detail::shown_value(node).value);
      break;
  }
}

void TreeWriter::end(const Frame& frame) {
  if (frame.stage == Stage::kNodes) {
    end_node(frame, frame.unreadable ? detail::shown_value(*frame.view.node).unreadable : "");
    return;
  }
  out_.raw(']');
  if (frame.stage != Stage::kItems) return;
  Frame children = frame;
  begin_children(children, {});
}

void TreeWriter::run(std::size_t until) {
  while (open_.size() > until) {
    Frame& top = open_.back();
    if (top.next == top.view.count) {
      const Frame done = top;
      open_.pop_back();
      end(done);
      continue;
    }
    if (top.next > 0) out_.raw(',');
    const bool is_node = top.stage == Stage::kNodes || top.stage == Stage::kList;
    const NodeData& child = detail::child_at(top.view, top.next++);
    if (is_node) {
      begin_node(child, false);
    } else {
      item(child);
    }
  }
}

}  // namespace bvconn::tool

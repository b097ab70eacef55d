#include "node_tree.h"

#include <utility>
#include <vector>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/variant.h"
#include "json_text.h"
#include "shown_value.h"

namespace bvconn::tool {
namespace {

bool is_plain(std::string_view text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) < 0x20) return false;
  }
  return true;
}

/// A value on one line: text with line breaks in quotes, escaped.
std::string value_line(const Variant& value) {
  if (value.is(Variant::Type::kString) && is_plain(value.string())) return value.string();
  if (value.is(Variant::Type::kDate)) return conversions::iso_date_text(value.date());
  return json_value(value);
}

/// Shows each node from this one on, with its depth, to `visit(node, shown value, depth)`; a value
/// that is a node shows its children.
template <class Visit>
void walk(const SoapNode& root, const Visit& visit) {
  struct Item {
    SoapNode node;
    std::size_t depth;
  };
  std::size_t count = 0;
  std::vector<Item> work{{root, 0}};
  while (!work.empty()) {
    const Item item = std::move(work.back());
    work.pop_back();
    if (++count > kMaxNodes) {
      throw Error(error_numbers::kSoapLimit, "bvconn", "The answer is too large to be printed");
    }
    const ShownValue shown = shown_value(item.node);
    visit(item.node, shown, item.depth);
    const bool wraps = shown.value.is(Variant::Type::kNode) && shown.value.node();
    SoapNodes children = item.node.Nodes();
    if (wraps && children.Count() == 0) children = shown.value.node().Nodes();
    for (std::size_t index = children.Count(); index > 0; --index) {
      work.push_back({children.Item(index - 1), item.depth + 1});
    }
  }
}

}  // namespace

std::string node_tree(const SoapNode& root, const Terminal& terminal) {
  std::string text;
  walk(root, [&](const SoapNode& node, const ShownValue& shown, std::size_t depth) {
    text.append(2 * depth, ' ').append(terminal.blue(node.Name()));
    if (node.nil()) {
      text.append(" is nil");
    } else if (!shown.value.empty() && !shown.value.is(Variant::Type::kNode)) {
      text.append(" = ").append(value_line(shown.value));
    }
    if (!shown.unreadable.empty()) {
      text.append(terminal.red(" (unreadable: " + shown.unreadable + ")"));
    }
    text.push_back('\n');
  });
  return text;
}

std::vector<std::string> unreadable_lines(const SoapNode& root) {
  std::vector<std::string> lines;
  walk(root, [&](const SoapNode& node, const ShownValue& shown, std::size_t) {
    if (shown.unreadable.empty()) return;
    lines.push_back(node.Name() + " = " + value_line(shown.value) + " (" + shown.unreadable + ")");
  });
  return lines;
}

}  // namespace bvconn::tool

#include "node_tree.h"

#include <utility>
#include <vector>

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
  return json_value(value);
}

}  // namespace

std::string node_tree(const SoapNode& root) {
  struct Item {
    SoapNode node;
    std::size_t depth;
  };
  std::string text;
  std::size_t lines = 0;
  std::vector<Item> work{{root, 0}};
  while (!work.empty()) {
    const Item item = std::move(work.back());
    work.pop_back();
    if (++lines > kMaxNodes) {
      throw Error(error_numbers::kSoapLimit, "bvconn", "The answer is too large to be printed");
    }
    text.append(2 * item.depth, ' ').append(item.node.Name());
    const auto [value, unreadable] = shown_value(item.node);
    const bool wraps = value.is(Variant::Type::kNode) && value.node();
    if (item.node.nil()) {
      text.append(" is nil");
    } else if (!value.empty() && !value.is(Variant::Type::kNode)) {
      text.append(" = ").append(value_line(value));
    }
    if (!unreadable.empty()) text.append(" (unreadable: ").append(unreadable).append(")");
    text.push_back('\n');
    SoapNodes children = item.node.Nodes();
    if (wraps && children.Count() == 0) children = value.node().Nodes();
    for (std::size_t index = children.Count(); index > 0; --index) {
      work.push_back({children.Item(index - 1), item.depth + 1});
    }
  }
  return text;
}

}  // namespace bvconn::tool

#include "bvconn/platform/soap/node_lines.h"

#include <utility>
#include <vector>

#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/shown_value.h"
#include "bvconn/platform/soap/typed_text.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn::detail {
namespace {

/// As deep as a request may be, and so a circle does not go on for ever.
constexpr std::size_t kDeepest = 10'000;
/// A small reply that shares its parts can have an enormous tree.
constexpr std::size_t kMostNodes = 10'000'000;

[[noreturn]] void fail_limit(std::string_view description) {
  throw Error(error_numbers::kSoapLimit, "SoapNodes", description);
}

std::string quoted(std::string_view text) {
  std::string marked;
  for (const char c : text) {
    if (c == '"' || c == '\\') marked.push_back('\\');
    marked.push_back(c);
  }
  std::string line = "\"";
  append_escaped(line, marked);
  return line + '"';
}

/// Text as it is, or in quotes where it would not show itself.
std::string text_line(const std::string& text) {
  std::string escaped;
  append_escaped(escaped, text);
  return escaped == text ? text : quoted(text);
}

/// An array with all its items; arrays within arrays are bounded where they are read.
std::string array_line(const VariantArray& array) {
  std::string line = "[";
  for (const Variant& item : array.items()) {
    if (line.size() > 1) line.push_back(',');
    if (item.is(Variant::Type::kArray)) {
      line.append(array_line(item.array()));
    } else if (item.is(Variant::Type::kString)) {
      line.append(quoted(item.string()));
    } else if (item.is(Variant::Type::kNode)) {
      line.append(item.node() ? item.node().Name() : "nil");
    } else {
      line.append(item.empty() || item.missing() ? "nil" : value_text(item));
    }
  }
  return line + ']';
}

std::string value_line(const Variant& value) {
  if (value.is(Variant::Type::kArray)) return array_line(value.array());
  if (value.is(Variant::Type::kString)) return text_line(value.string());
  return text_line(value_text(value));
}

std::string what_is_said(const SoapNode& node, const Variant& value) {
  if (node.nil()) return " is nil";
  if (value.empty() || value.is(Variant::Type::kNode)) return "";
  return " = " + value_line(value);
}

}  // namespace

void each_node_line(const SoapNode& root, const std::function<void(const NodeLine&)>& visit) {
  struct Item {
    SoapNode node;
    std::size_t depth;
  };
  std::size_t count = 0;
  std::vector<Item> work{{root, 0}};
  while (!work.empty()) {
    const Item item = std::move(work.back());
    work.pop_back();
    if (++count > kMostNodes) fail_limit("The tree is too large to be printed");
    if (item.depth >= kDeepest) {
      fail_limit("The tree is deeper than " + std::to_string(kDeepest) +
                 " elements, or contains itself");
    }
    const ShownValue shown = shown_value(item.node);
    visit({.depth = item.depth,
           .name = item.node.Name(),
           .says = what_is_said(item.node, shown.value),
           .unreadable = shown.unreadable});
    const bool wraps = shown.value.is(Variant::Type::kNode) && shown.value.node();
    SoapNodes children = item.node.Nodes();
    if (wraps && children.Count() == 0) children = shown.value.node().Nodes();
    for (std::size_t index = children.Count(); index > 0; --index) {
      work.push_back({children.Item(index - 1), item.depth + 1});
    }
  }
}

std::string node_tree(const SoapNode& root, const LinePaint& paint) {
  std::string text;
  each_node_line(root, [&](const NodeLine& line) {
    text.append(2 * line.depth, ' ').append(paint.name(line.name)).append(line.says);
    if (!line.unreadable.empty()) {
      text.append(paint.reason(" (unreadable: " + line.unreadable + ")"));
    }
    text.push_back('\n');
  });
  return text;
}

}  // namespace bvconn::detail

#include "sandbox/store/documents_tree.h"

#include <cstddef>
#include <stdexcept>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"

namespace bvconn::sandbox {
namespace {

/// A few elements that refer to each other can stand for more than any memory holds.
constexpr std::size_t kMostElements = 1'000'000;

/// A node and everything below it, nearest first.
std::vector<SoapNode> whole_tree(const SoapNode& root) {
  std::vector<SoapNode> nodes{root};
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (nodes.size() > kMostElements) {
      throw std::length_error("'" + root.Name() + "' has more than " +
                              std::to_string(kMostElements) + " elements");
    }
    const SoapNode node = nodes[i];
    for (const SoapNode& each : node.Nodes()) nodes.push_back(each);
  }
  return nodes;
}

std::string simple_text(const SoapNode& node) {
  if (node.Nodes().Count() != 0 || node.nil()) return {};
  try {
    return to_text(node.Value());
  } catch (const Error&) {
    return {};
  }
}

}  // namespace

SoapNode child(const SoapNode& node, std::string_view name) {
  for (const SoapNode& each : node.Nodes()) {
    if (each.Name() == name) return each;
  }
  return {};
}

std::string child_text(const SoapNode& node, std::string_view name) {
  const SoapNode found = child(node, name);
  return found ? simple_text(found) : std::string();
}

double child_number(const SoapNode& node, std::string_view name) {
  return conversions::number_of(child_text(node, name)).value_or(0);
}

void set_child(const SoapNode& node, std::string_view name, const Variant& value) {
  SoapNode found = child(node, name);
  if (found) {
    found.Value(value);
  } else {
    node.Nodes().Create(name, value);
  }
}

SoapNode append_group(SoapNodes parent, std::string_view name) {
  SoapNode group = SoapNode::make(name);
  parent.Append(group);
  return group;
}

std::string find_text(const SoapNode& root, std::initializer_list<std::string_view> names) {
  if (!root) return {};
  const auto nodes = whole_tree(root);
  for (const std::string_view name : names) {
    for (const SoapNode& node : nodes) {
      if (node.Name() != name) continue;
      std::string text = simple_text(node);
      if (!text.empty()) return text;
    }
  }
  return {};
}

std::vector<SoapNode> holders_of(const SoapNode& root, std::string_view child_name) {
  std::vector<SoapNode> holders;
  for (const SoapNode& node : whole_tree(root)) {
    if (child(node, child_name)) holders.push_back(node);
  }
  return holders;
}

std::vector<SoapNode> lines_of(const SoapNode& document) {
  std::vector<SoapNode> lines;
  for (const SoapNode& node : whole_tree(document)) {
    if (node.Name() == "Line" || node.Name() == "LineItem") lines.push_back(node);
  }
  return lines;
}

std::string line_key(const SoapNode& line) {
  std::string key = child_text(line, "GID");
  return key.empty() ? child_text(line, "LineItemGID") : key;
}

}  // namespace bvconn::sandbox

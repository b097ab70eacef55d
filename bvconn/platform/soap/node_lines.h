#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

/// The lines in which nodes are shown to people; not a part of the interface.
namespace bvconn::detail {

/// What is said of one node.
struct NodeLine {
  std::size_t depth = 0;
  std::string name;
  std::string says;        ///< " = 4711", " is nil", or "" for a node that holds nodes
  std::string unreadable;  ///< why the value could not be read; "" where it could
};

/// Calls `visit` for a node and everything below it, in the order of the wire; a node that wraps
/// another one shows that one's content. Fails with 91, and with 0x80044206 for what `print` does
/// not write.
BVCONN_EXPORT void each_node_line(const SoapNode& root,
                                  const std::function<void(const NodeLine&)>& visit);

/// How parts of a line are set apart; by default they are not.
struct LinePaint {
  using Painter = std::function<std::string(std::string_view)>;
  Painter name = [](std::string_view text) { return std::string(text); };
  Painter reason = name;
};

/// All lines, indented, each with a line feed.
BVCONN_EXPORT std::string node_tree(const SoapNode& root, const LinePaint& paint = {});

}  // namespace bvconn::detail

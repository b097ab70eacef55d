#include "node_tree.h"

#include "bvconn/platform/soap/node_lines.h"

namespace bvconn::tool {

std::string node_tree(const SoapNode& root, const Terminal& terminal) {
  return detail::node_tree(root,
                           {.name = [&](std::string_view text) { return terminal.blue(text); },
                            .reason = [&](std::string_view text) { return terminal.red(text); }});
}

std::vector<std::string> unreadable_lines(const SoapNode& root) {
  std::vector<std::string> lines;
  detail::each_node_line(root, [&](const detail::NodeLine& line) {
    if (line.unreadable.empty()) return;
    lines.push_back(line.name + line.says + " (" + line.unreadable + ")");
  });
  return lines;
}

}  // namespace bvconn::tool

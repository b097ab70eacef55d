#include "bvconn/platform/soap/print.h"

#include <iostream>

#include "bvconn/platform/soap/node_lines.h"

namespace bvconn {

void print(const SoapNode& node, std::ostream& out) {
  out << detail::node_tree(node);
}

void print(const SoapNode& node) {
  print(node, std::cout);
}

}  // namespace bvconn

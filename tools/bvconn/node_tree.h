#pragma once

#include <string>
#include <vector>

#include "bvconn/platform/soap/soap_node.h"
#include "terminal.h"

namespace bvconn::tool {

/// A node and everything below it, one line each, indented by its depth:
///
///     return
///       InvoiceNumber = 4711
///       Comment is nil
std::string node_tree(const SoapNode& node, const Terminal& terminal = {});

/// The fields below a node, or itself, whose values cannot be read, each with its raw text and the
/// reason.
std::vector<std::string> unreadable_lines(const SoapNode& node);

}  // namespace bvconn::tool

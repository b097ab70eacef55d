#pragma once

#include <string>

#include "bvconn/platform/soap/soap_node.h"

namespace bvconn::tool {

/// A node and everything below it, one line each, indented by its depth:
///
///     return
///       InvoiceNumber = 4711
///       Comment is nil
std::string node_tree(const SoapNode& node);

}  // namespace bvconn::tool

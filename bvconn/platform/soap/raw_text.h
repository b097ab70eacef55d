#pragma once

#include <string>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// The text between a read node's tags, whatever its type says of it: what can still be shown where
/// `Value` fails. "" for a node that holds something else than text of its own.
BVCONN_EXPORT std::string raw_text(const SoapNode& node);

}  // namespace bvconn

#pragma once

#include <string>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"

/// For what shows nodes to people; not a part of the interface.
namespace bvconn::detail {

/// What can be shown of a node's value.
struct ShownValue {
  Variant value;
  std::string unreadable;  ///< why the value could not be read; "" where it could
};

/// The node's value, or its raw text where that is not of its type: a call that was made has an
/// answer, and one bad field must not cost all the others. An array that cannot be read is empty;
/// its items are nodes, and show themselves.
BVCONN_EXPORT ShownValue shown_value(const SoapNode& node);

}  // namespace bvconn::detail

#pragma once

#include <string>
#include <vector>

#include "bvconn/platform/soap/soap_node.h"

namespace bvconn::sandbox {

/// The keys in a parameter: the items of an array, or a text by itself; those that are empty are
/// left out. Nil has none.
std::vector<std::string> keys_in(const SoapNode& parameter);

}  // namespace bvconn::sandbox

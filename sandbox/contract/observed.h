#pragma once

#include <vector>

#include "bvconn/observation/observe.h"
#include "sandbox/contract/contract.h"

namespace bvconn::sandbox {

/// The contract that these observations amount to: for each service and method the union of all
/// forms that any operation sends. Methods that the caller names have no place in it.
std::vector<MethodContract> contract_of(
    const std::vector<automation::ObservedOperation>& observations);

}  // namespace bvconn::sandbox

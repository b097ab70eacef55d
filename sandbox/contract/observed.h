#pragma once

#include <string>
#include <vector>

#include "bvconn/observation/observe.h"
#include "sandbox/contract/contract.h"

namespace bvconn::sandbox {

/// "BVInvoiceConnector.GetInvoice".
std::string operation_name(const automation::ObservedOperation& operation);

/// What is in a place whose content has this origin.
OperationForm::Place place_of(const automation::Origin& origin);

/// The contract that these observations amount to: for each service and method the union of all
/// forms that any operation sends. Methods that the caller names have no place in it.
std::vector<MethodContract> contract_of(
    const std::vector<automation::ObservedOperation>& observations);

}  // namespace bvconn::sandbox

#pragma once

#include "sandbox/contract/contract.h"

namespace bvconn::sandbox {

/// The contract of all operations, as the library itself is seen to keep it.
Contract observed_contract();

}  // namespace bvconn::sandbox

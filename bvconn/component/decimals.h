#pragma once

#include <optional>

#include "bvconn/component/abi_records.h"

namespace bvconn::component {

/// The double that is nearest to a decimal number; nothing for a record with a sign or a scale that
/// none has.
std::optional<double> number_of(const DecimalRecord& decimal);

}  // namespace bvconn::component

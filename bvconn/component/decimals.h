#pragma once

#include <optional>

#include "bvconn/component/abi_records.h"

namespace bvconn::component {

/// The double that is nearest to a decimal number; nothing for a record with a sign or a scale that
/// none has.
std::optional<double> number_of(const DecimalRecord& decimal);

/// The largest whole number that every host shows in full as a double, and its negative the
/// smallest.
inline constexpr std::int64_t kWholeDoubleMax = 999'999'999'999'999;

/// A whole decimal number beyond that, of those that 64 bits hold.
std::optional<std::int64_t> large_integer_of(const DecimalRecord& decimal);
DecimalRecord decimal_of(std::int64_t number);

}  // namespace bvconn::component

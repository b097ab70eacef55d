#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/export.h"

namespace bvconn {

/// The letters to insert, remove, change or swap with the next one to make one text of the other.
/// Case does not count.
BVCONN_EXPORT std::size_t slips_between(std::string_view a, std::string_view b);

/// The names that a mistyped one most likely means, the best ones only: those that differ in the
/// case of letters alone, else those with the fewest letters to change. Empty where none is near.
BVCONN_EXPORT std::vector<std::string> nearest_names(std::string_view name,
                                                     const std::vector<std::string>& known);

/// "; did you mean GetInvoice?", or "" where no name is near.
BVCONN_EXPORT std::string did_you_mean(std::string_view name,
                                       const std::vector<std::string>& known);

}  // namespace bvconn

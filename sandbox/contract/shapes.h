#pragma once

#include <cstddef>
#include <vector>

#include "sandbox/contract/contract.h"
#include "sandbox/contract/difference.h"

/// How the parameters of a request compare with one way in which a method may be called.
namespace bvconn::sandbox {

/// Looks at every request, so it puts nothing into words.
bool fits(const RequestFacts& request, const RequestShape& shape);

/// How many parameters, from the first on, are as they should be: of several shapes the one that
/// was probably meant has the most.
std::size_t fitted_parameters(const RequestFacts& request, const RequestShape& shape);

/// Everything that differs, the first difference first; nothing for a request that fits.
std::vector<Difference> differences(const RequestFacts& request, const RequestShape& shape);

}  // namespace bvconn::sandbox

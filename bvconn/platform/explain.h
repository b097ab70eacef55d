#pragma once

#include <string>

#include "bvconn/platform/error.h"
#include "bvconn/platform/export.h"

namespace bvconn {

/// What an error means and what helps against it, in a sentence or two for people: for every number
/// of error_numbers.h, the mapped faults included, which have no description of their own. Where
/// `outcome` knows more about the request, a sentence says so. A number that is none of the
/// library's, as a service object may bring, is said to be unknown. One line, in English.
BVCONN_EXPORT std::string explain(const Error& error);

}  // namespace bvconn

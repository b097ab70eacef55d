#pragma once

#include <string>
#include <vector>

#include "bvconn/platform/soap/variant.h"
#include "sandbox/contract/dal_routes.h"

namespace bvconn::sandbox {

/// The arguments of a call of the data access layer as values, which are of the types that its
/// route wants. Throws a `DalError` for a body of another form and for arguments that do not fit.
std::vector<Variant> read_arguments(const std::string& body, const DalRoute& route);

}  // namespace bvconn::sandbox

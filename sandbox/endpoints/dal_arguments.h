#pragma once

#include <string>
#include <vector>

#include "bvconn/platform/soap/variant.h"
#include "sandbox/contract/dal_routes.h"

namespace bvconn::sandbox {

/// The arguments of a call, and in what they depart from what the route wants.
struct DalArguments {
  std::vector<Variant> values;
  std::vector<Difference> differences;
};

/// Reads the arguments of a call of the data access layer. Throws a `DalError` for a body of
/// another form.
DalArguments read_arguments(const std::string& body, const DalRoute& route);

}  // namespace bvconn::sandbox

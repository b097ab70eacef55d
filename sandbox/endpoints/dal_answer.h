#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/soap/variant.h"
#include "sandbox/contract/dal_routes.h"
#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {

/// Whether something answers the calls of a route.
bool is_served(const Operations& operations, const DalRoute& route);

/// The text of the envelope that answers a call with these arguments, which fit the route: that of
/// a fault too, which clients read as they would a reply.
std::string dal_answer(Sandbox& sandbox, const Operations& operations, const DalRoute& route,
                       const std::vector<Variant>& arguments, std::string_view user);

}  // namespace bvconn::sandbox

#pragma once

#include <string>
#include <string_view>

#include "sandbox/operations/operations.h"

/// Which printout is taken where none was chosen: the house's own whole printout, and the keys of
/// print infos that agents and users have set.
namespace bvconn::sandbox {

/// The agent to whom a user belongs: the one that his profile names.
std::string agent_of(SoapCall& call);
/// The agent's or the user's print info for a kind of printout; "" while none is set.
std::string agent_default(SoapCall& call, std::string_view kind);
std::string user_default(SoapCall& call, std::string_view kind);
/// The whole printout of the house for a kind.
SoapNode house_default(SoapCall& call, std::string_view kind);

}  // namespace bvconn::sandbox

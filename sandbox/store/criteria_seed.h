#pragma once

#include <cstdint>

#include "sandbox/store/database.h"

namespace bvconn::sandbox {

/// Gives the documents of a store what searches can ask of them besides: purchase orders, dates,
/// accounts and the like; and some quotes and orders an earlier revision. What a client has changed
/// is left as it is. The data are the same whatever the seed.
void fill_criteria(Database& database, std::uint64_t seed);

}  // namespace bvconn::sandbox

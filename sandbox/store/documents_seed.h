#pragma once

#include <cstdint>

#include "sandbox/store/database.h"

namespace bvconn::sandbox {

// How many of each kind a new store holds; their keys run on from the first key of their kind.
inline constexpr std::int64_t kSeededProjects = 30;
inline constexpr std::int64_t kSeededQuotes = 30;  ///< one for each project
inline constexpr std::int64_t kSeededOrders = 20;  ///< one for each of the first quotes
inline constexpr std::int64_t kSeededSubmittals = 20;
inline constexpr std::int64_t kSeededRmas = 10;

/// Fills a database that has customers and products with projects, quotes, orders, requests for
/// quote, acknowledgements, submittals and returns.
void fill_documents(Database& database, std::uint64_t seed);

}  // namespace bvconn::sandbox

#pragma once

#include <cstdint>

#include "sandbox/store/database.h"

namespace bvconn::sandbox {

/// The version of the tables that this program makes.
std::int64_t newest_version();

/// A database with tables of a newer version, or of another program, is an error. Nothing in it is
/// changed.
void refuse_foreign(Database& database);

/// Makes the tables of an empty database, or brings those of an older version up to the newest;
/// gives the version that was there, 0 for none. To be used within a transaction.
std::int64_t bring_up(Database& database);

/// Puts what a new store made from this seed holds into the tables that came after a version; all
/// of them have to be there. To be used within a transaction.
void fill_after(Database& database, std::int64_t version, std::uint64_t seed);

}  // namespace bvconn::sandbox

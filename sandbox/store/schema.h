#pragma once

#include "sandbox/store/database.h"

namespace bvconn::sandbox {

/// A database with the tables of another version, or of another program, is an error. Nothing in it
/// is changed.
void refuse_foreign(Database& database);

/// Makes the tables of a database that is empty.
void make_schema(Database& database);

}  // namespace bvconn::sandbox

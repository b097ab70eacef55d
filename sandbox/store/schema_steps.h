#pragma once

#include <cstdint>
#include <vector>

#include "sandbox/store/database.h"

namespace bvconn::sandbox {

/// What one version of the tables has that the one before it had not.
struct SchemaStep {
  /// Statements that make or change tables, indexes and views. They say TEXT and INTEGER alone as
  /// types, and end a table with `) STRICT, WITHOUT ROWID;`.
  const char* tables;
  /// Puts in the data that a new store holds in them; may be null. It runs when the tables of all
  /// steps are there, after the `fill` of the steps before.
  void (*fill)(Database& database, std::uint64_t seed) = nullptr;
};

/// Version 1 first. A step is final once a store may have been made by it: what is to be different
/// afterwards is a step of its own at the end.
const std::vector<SchemaStep>& schema_steps();

/// The tables of what the store is about, which a snapshot holds and a reset makes anew; one that
/// refers to another comes after it. The others say who may log in, who has, and what is kept how.
const std::vector<const char*>& data_tables();

}  // namespace bvconn::sandbox

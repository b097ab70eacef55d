#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "sandbox/store/database.h"
#include "sandbox/store/documents.h"
#include "sandbox/store/invoices.h"

namespace bvconn::sandbox {

/// What the sandbox's server knows: its documents, in SQLite.
class Store {
 public:
  /// Opens or makes the database. An empty one is filled with data made from `seed` (1 when none
  /// is given); one that holds data keeps it, and then a `seed` other than the one it was filled
  /// from is an error.
  Store(const std::string& file, std::optional<std::uint64_t> seed);

  std::optional<Invoice> invoice(std::string_view uid);
  std::optional<Invoice> invoice_by_number(std::string_view number);
  /// The documents that are kept whole. To be used within a transaction.
  Documents documents() { return Documents(database_); }
  Transaction transaction() { return Transaction(database_); }
  /// Whether this user may log in: anybody with a name and a password while the table `users` is
  /// empty, and otherwise those that stand in it.
  bool admits(std::string_view user, std::string_view password);

 private:
  Database database_;
};

}  // namespace bvconn::sandbox

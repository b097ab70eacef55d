#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/store/database.h"
#include "sandbox/store/documents.h"
#include "sandbox/store/entries.h"
#include "sandbox/store/invoices.h"
#include "sandbox/store/lists.h"
#include "sandbox/store/logins.h"
#include "sandbox/store/snapshots.h"

namespace bvconn::sandbox {

/// What the sandbox's server knows: its documents, in SQLite or PostgreSQL.
class Store {
 public:
  /// Opens or makes the database. An empty one is filled with data made from `seed` (1 when none
  /// is given); one that holds data keeps it, and then a `seed` other than the one it was filled
  /// from is an error. Waits for another process that is making it at this moment.
  Store(const std::string& where, std::optional<std::uint64_t> seed);

  std::optional<Invoice> invoice(std::string_view uid);
  std::optional<Invoice> invoice_by_number(std::string_view number);
  void close_invoice(std::string_view uid) { sandbox::close_invoice(database_, uid); }
  /// The documents that are kept whole. To be used within a transaction.
  Documents documents() { return Documents(database_); }
  /// The keys of the latest documents of a kind, the latest first.
  std::vector<std::string> latest(const DocumentKind& kind, std::int64_t count);
  Entries entries() { return Entries(database_); }
  Lists lists() { return Lists(database_); }
  std::vector<Invoice> invoices(const InvoiceCriteria& criteria) {
    return find_invoices(database_, criteria);
  }
  std::vector<std::string> pay_periods(std::string_view agent_id, std::int64_t count) {
    return sandbox::pay_periods(database_, agent_id, count);
  }
  Logins logins() { return Logins(database_); }
  Snapshots snapshots() { return Snapshots(database_); }
  /// The answer to GetDisabledServices.
  std::string disabled_services();
  void set_disabled_services(std::string_view text);
  /// Puts back what the store held when it was new.
  void reset() { snapshots().reset(seed_); }
  Transaction transaction(Turn turn = Turn::kStore) { return Transaction(database_, turn); }
  /// Whether this user may log in: anybody with a name and a password while the table `users` is
  /// empty, and otherwise those that stand in it.
  bool admits(std::string_view user, std::string_view password);
  /// Changes the password of a user who stands in that table; while it is empty there is none to
  /// change. False for a user who is missing in it.
  bool change_password(std::string_view user, std::string_view password);

 private:
  void fill(std::optional<std::uint64_t> seed);

  Database database_;
  std::uint64_t seed_ = 0;
};

}  // namespace bvconn::sandbox

#include "sandbox/store/store.h"

#include <algorithm>
#include <chrono>

#include "sandbox/store/schema.h"

namespace bvconn::sandbox {
namespace {

constexpr std::uint64_t kDefaultSeed = 1;
constexpr std::chrono::seconds kPatienceAtStart{60};

std::optional<std::string> property(Database& database, std::string_view name) {
  Statement select(database, "SELECT value FROM properties WHERE name = ?");
  if (!select.bind(name).step()) return std::nullopt;
  return select.text(0);
}

}  // namespace

Store::Store(const std::string& where, std::optional<std::uint64_t> seed) : database_(where) {
  refuse_foreign(database_);
  const auto deadline = std::chrono::steady_clock::now() + kPatienceAtStart;
  for (;;) {
    try {
      database_.connection().settle();
      fill(seed);
      return;
    } catch (const DatabaseBusy&) {
      // Whoever is first makes and fills all tables, which may take longer than a request waits.
      if (std::chrono::steady_clock::now() > deadline) throw;
    }
  }
}

void Store::fill(std::optional<std::uint64_t> seed) {
  // One transaction from the look to the last row: of two servers that start on one new file,
  // the second finds it filled.
  Transaction transaction(database_);
  const std::int64_t present_version = bring_up(database_);
  const auto present_seed = property(database_, "seed");
  if (present_seed && seed && *present_seed != std::to_string(*seed)) {
    Connection& connection = database_.connection();
    throw DatabaseError(connection.name() + " was filled from seed " + *present_seed +
                        ", not from " + std::to_string(*seed) + "; " + connection.how_to_empty() +
                        " to fill it anew");
  }
  seed_ = present_seed ? std::stoull(*present_seed) : seed.value_or(kDefaultSeed);
  fill_after(database_, present_version, seed_);
  if (!present_seed) {
    Statement(database_, "INSERT INTO properties VALUES ('seed', ?)")
        .bind(std::to_string(seed_))
        .run();
  }
  transaction.commit();
}

std::optional<Invoice> Store::invoice(std::string_view uid) {
  return find_invoice(database_, uid);
}

std::optional<Invoice> Store::invoice_by_number(std::string_view number) {
  Statement select(database_, "SELECT uid FROM invoices WHERE invoice_number = ?");
  select.bind(number);
  if (!select.step()) return std::nullopt;
  return find_invoice(database_, select.text(0));
}

bool Store::admits(std::string_view user, std::string_view password) {
  if (user.empty() || password.empty()) return false;
  Statement select(database_,
                   "SELECT NOT EXISTS (SELECT 1 FROM users) OR"
                   " EXISTS (SELECT 1 FROM users WHERE name = ? AND password = ?)");
  select.bind(user).bind(password);
  return select.step() && select.integer(0) != 0;
}

bool Store::change_password(std::string_view user, std::string_view password) {
  Statement select(database_,
                   "SELECT NOT EXISTS (SELECT 1 FROM users) OR"
                   " EXISTS (SELECT 1 FROM users WHERE name = ?)");
  if (!select.bind(user).step() || select.integer(0) == 0) return false;
  Statement(database_, "UPDATE users SET password = ? WHERE name = ?")
      .bind(password)
      .bind(user)
      .run();
  return true;
}

std::string Store::disabled_services() {
  return property(database_, "disabled services").value_or("");
}

void Store::set_disabled_services(std::string_view text) {
  Transaction transaction(database_);
  Statement(database_,
            "INSERT INTO properties VALUES ('disabled services', ?)"
            " ON CONFLICT (name) DO UPDATE SET value = excluded.value")
      .bind(text)
      .run();
  transaction.commit();
}

std::vector<std::string> Store::latest(const DocumentKind& kind, std::int64_t count) {
  Statement select(database_,
                   "SELECT gid FROM documents WHERE kind = ?"
                   " ORDER BY length(gid) DESC, gid DESC LIMIT ?");
  select.bind(kind.name).bind(std::max<std::int64_t>(count, 0));
  std::vector<std::string> found;
  while (select.step()) found.push_back(select.text(0));
  return found;
}

}  // namespace bvconn::sandbox

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "sandbox/store/schema.h"
#include "sandbox/store/store.h"

namespace bvconn::sandbox {
namespace {

/// The tables as the first of all sandboxes made them.
constexpr const char* kVersionOne = R"sql(
CREATE TABLE properties (name TEXT PRIMARY KEY, value TEXT NOT NULL) STRICT, WITHOUT ROWID;
CREATE TABLE users (name TEXT PRIMARY KEY, password TEXT NOT NULL) STRICT, WITHOUT ROWID;
CREATE TABLE customers (gid TEXT PRIMARY KEY, account_number TEXT NOT NULL UNIQUE,
  name TEXT NOT NULL, city TEXT NOT NULL, state TEXT NOT NULL, country TEXT NOT NULL,
  zip_code TEXT NOT NULL) STRICT, WITHOUT ROWID;
CREATE TABLE products (catalog_number TEXT PRIMARY KEY, description TEXT NOT NULL,
  manufacturer TEXT NOT NULL, unit TEXT NOT NULL,
  list_price_cents INTEGER NOT NULL CHECK (list_price_cents > 0)) STRICT, WITHOUT ROWID;
CREATE TABLE invoices (uid TEXT PRIMARY KEY, invoice_number TEXT NOT NULL UNIQUE,
  invoice_date TEXT NOT NULL, due_date TEXT NOT NULL,
  status TEXT NOT NULL CHECK (status IN ('OPEN', 'PAID', 'OVERDUE')),
  customer_gid TEXT NOT NULL REFERENCES customers (gid), agent_id TEXT NOT NULL,
  po_number TEXT NOT NULL, project_name TEXT NOT NULL, torvex_order_number TEXT NOT NULL,
  freight_cents INTEGER NOT NULL CHECK (freight_cents >= 0),
  tax_cents INTEGER NOT NULL CHECK (tax_cents >= 0)) STRICT, WITHOUT ROWID;
CREATE TABLE invoice_lines (
  invoice_uid TEXT NOT NULL REFERENCES invoices (uid) ON DELETE CASCADE,
  line_number INTEGER NOT NULL CHECK (line_number > 0),
  catalog_number TEXT NOT NULL REFERENCES products (catalog_number),
  quantity INTEGER NOT NULL CHECK (quantity > 0),
  unit_price_cents INTEGER NOT NULL CHECK (unit_price_cents >= 0),
  PRIMARY KEY (invoice_uid, line_number)) STRICT, WITHOUT ROWID;
CREATE INDEX invoices_by_customer ON invoices (customer_gid);
CREATE INDEX invoices_by_date ON invoices (invoice_date);

INSERT INTO properties SELECT * FROM made.properties WHERE name = 'seed';
INSERT INTO customers SELECT * FROM made.customers WHERE gid <= 'CUS-2012';
INSERT INTO products SELECT * FROM made.products WHERE catalog_number NOT LIKE '__X-%';
INSERT INTO invoices SELECT uid, invoice_number, invoice_date, due_date, status, customer_gid,
  agent_id, po_number, project_name, torvex_order_number, freight_cents, tax_cents
  FROM made.invoices;
INSERT INTO invoice_lines SELECT * FROM made.invoice_lines;
INSERT INTO users VALUES ('anna', 'secret');
UPDATE invoices SET tax_cents = 4711 WHERE uid = 'INV-1005';
PRAGMA application_id = 0x42567362;
PRAGMA user_version = 1;
)sql";

/// The rows of a table in one text, but for what a table of a later version may have besides.
std::string rows_of(Database& database, const std::string& sql, int columns) {
  Statement select(database, sql);
  std::string text;
  while (select.step()) {
    for (int column = 0; column < columns; ++column) text.append(select.text(column)).append("|");
    text.append("\n");
  }
  return text;
}

class OlderStore : public ::testing::Test {
 protected:
  OlderStore()
      : folder_(std::filesystem::temp_directory_path() /
                ("bvsandbox-versions-" + std::to_string(std::random_device{}()))) {
    std::filesystem::create_directory(folder_);
    Store store(made(), 7);
    Database database(file());
    database.run(("ATTACH '" + made() + "' AS made").c_str());
    database.run(kVersionOne);
  }
  ~OlderStore() override { std::filesystem::remove_all(folder_); }

  /// One of the newest version, and one of the first that says the same as far as it goes.
  std::string made() const { return (folder_ / "made.db").string(); }
  std::string file() const { return (folder_ / "store.db").string(); }

 private:
  std::filesystem::path folder_;
};

TEST_F(OlderStore, IsBroughtUpAndKeepsWhatItHeld) {
  Store store(file(), std::nullopt);
  Database database(file());
  EXPECT_EQ(rows_of(database, "PRAGMA user_version", 1), std::to_string(newest_version()) + "|\n");
  EXPECT_EQ(store.invoice("INV-1005")->tax_cents, 4711);
  EXPECT_TRUE(store.admits("anna", "secret"));
  EXPECT_FALSE(store.admits("bert", "secret"));
}

TEST_F(OlderStore, GetsWhatANewStoreOfItsSeedHoldsBesides) {
  { Store store(file(), std::nullopt); }
  Database older(file());
  Database newest(made());
  for (const auto& [sql, columns] : std::vector<std::pair<std::string, int>>{
           {"SELECT uid, manufacturer_order_number, partner_id, pay_period_date FROM invoices"
            " ORDER BY uid",
            4},
           {"SELECT gid, kind, number, status, revision, body FROM documents ORDER BY gid", 6},
           {"SELECT document_gid, line_gid, type, body FROM comments ORDER BY 1, 2, 3", 4},
           {"SELECT kind, next FROM counters ORDER BY kind", 2},
           {"SELECT kind, owner, uid, body FROM entries ORDER BY 1, 2, position", 4},
           {"SELECT list, body FROM list_rows ORDER BY list, position", 2},
           {"SELECT document_gid, revision, body FROM document_revisions ORDER BY 1, 2", 3},
           {"SELECT invoice_uid, line_number, catalog_number, quantity, unit_price_cents"
            " FROM invoice_lines ORDER BY 1, 2",
            5},
           {"SELECT gid, name FROM customers ORDER BY gid", 2}}) {
    const std::string rows = rows_of(older, sql, columns);
    EXPECT_NE(rows, "") << sql;
    EXPECT_EQ(rows, rows_of(newest, sql, columns)) << sql;
  }
}

TEST_F(OlderStore, AnotherSeedLeavesItAsItWas) {
  EXPECT_THROW(Store(file(), 8), DatabaseError);
  Database database(file());
  EXPECT_EQ(rows_of(database, "PRAGMA user_version", 1), "1|\n");
  EXPECT_EQ(rows_of(database, "SELECT count(*) FROM sqlite_schema WHERE name = 'documents'", 1),
            "0|\n");
}

TEST_F(OlderStore, WhatCannotBeBroughtUpStaysAsItWas) {
  // The second version's table is there already, and not from us.
  Database(file()).run("CREATE TABLE documents (gid TEXT) STRICT");
  EXPECT_THROW(Store(file(), std::nullopt), DatabaseError);
  Database database(file());
  EXPECT_EQ(rows_of(database, "PRAGMA user_version", 1), "1|\n");
  EXPECT_EQ(rows_of(database, "SELECT count(*) FROM sqlite_schema WHERE name = 'counters'", 1),
            "0|\n");
}

TEST_F(OlderStore, AllTablesAreAsInANewStore) {
  { Store store(file(), std::nullopt); }
  Database older(file());
  Database newest(made());
  // The text of a statement keeps the spaces of its author.
  const std::string sql =
      "SELECT type, name, tbl_name FROM sqlite_schema WHERE name NOT LIKE 'sqlite_%' ORDER BY 2";
  EXPECT_EQ(rows_of(older, sql, 3), rows_of(newest, sql, 3));
  older.run("UPDATE invoices SET status = 'CLOSED' WHERE uid = 'INV-1005'");
  EXPECT_THROW(older.run("UPDATE invoices SET status = 'SHUT' WHERE uid = 'INV-1005'"),
               DatabaseError);
  EXPECT_THROW(older.run("UPDATE invoice_lines SET invoice_uid = 'INV-1' WHERE line_number = 1"),
               DatabaseError);
}

}  // namespace
}  // namespace bvconn::sandbox

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sandbox/postgres_server.h"
#include "sandbox/store/schema.h"
#include "sandbox/store/store.h"

namespace bvconn::sandbox {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class PostgresStore : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!server().missing().empty()) GTEST_SKIP() << server().missing();
    where_ = server().make_database();
  }

  static test::PostgresServer& server() { return test::PostgresServer::shared(); }
  const std::string& where() const { return where_; }

 private:
  std::string where_;
};

std::string rows_of(Database& database, const std::string& sql) {
  Statement select(database, sql);
  std::string text;
  while (select.step()) {
    const auto columns = static_cast<int>(select.columns().size());
    for (int column = 0; column < columns; ++column) text.append(select.text(column)).append("|");
    text.append("\n");
  }
  return text;
}

/// What the database says against it; "" when it says nothing.
std::string error_of(const std::function<void()>& act) {
  try {
    act();
  } catch (const DatabaseError& error) {
    return error.what();
  }
  return {};
}

std::int64_t process_of(Database& database) {
  Statement select(database, "SELECT pg_backend_pid()");
  select.step();
  return select.integer(0);
}

/// As when the server loses its mind, or an administrator his patience.
void end_connection(const std::string& where, std::int64_t process) {
  Database other(where);
  Statement(other, "SELECT pg_terminate_backend(CAST(? AS INTEGER), 5000)").bind(process).run();
}

TEST_F(PostgresStore, HoldsTheSameDataAsOneInSqlite) {
  { Store store(where(), 7); }
  Database theirs(where());
  const std::string file = ::testing::TempDir() + "bvsandbox-same-data.db";
  std::remove(file.c_str());
  { Store store(file, 7); }
  Database ours(file);
  for (const char* sql :
       {"SELECT * FROM properties ORDER BY 1", "SELECT * FROM customers ORDER BY 1",
        "SELECT * FROM products ORDER BY 1", "SELECT * FROM invoices ORDER BY 1",
        "SELECT * FROM invoice_lines ORDER BY 1, 2",
        "SELECT gid, name FROM manufacturers ORDER BY 1", "SELECT * FROM counters ORDER BY 1",
        "SELECT * FROM documents ORDER BY 1", "SELECT * FROM document_lines ORDER BY 1, 2",
        "SELECT * FROM document_revisions ORDER BY 1, 2", "SELECT * FROM comments ORDER BY 1, 2, 3",
        "SELECT * FROM entries ORDER BY 1, 2, 3", "SELECT * FROM list_rows ORDER BY 1, 2"}) {
    const std::string rows = rows_of(ours, sql);
    EXPECT_NE(rows, "") << sql;
    EXPECT_EQ(rows_of(theirs, sql), rows) << sql;
  }
}

TEST_F(PostgresStore, KeepsItsDataAndItsSeed) {
  { Store store(where(), 7); }
  Database(where()).run("UPDATE invoices SET tax_cents = 4711 WHERE uid = 'INV-1005'");
  const std::string error = error_of([&] { Store store(where(), 8); });
  EXPECT_THAT(error, HasSubstr("was filled from seed 7, not from 8; drop its schema 'bvsandbox'"));
  Store store(where(), std::nullopt);
  EXPECT_EQ(store.invoice("INV-1005")->tax_cents, 4711);
}

TEST_F(PostgresStore, LeavesTheOtherTablesOfTheDatabaseAlone) {
  Database(where()).run(
      "CREATE TABLE public.documents (recipe TEXT);"
      " INSERT INTO public.documents VALUES ('soup')");
  Store store(where(), std::nullopt);
  Database database(where());
  EXPECT_EQ(rows_of(database, "SELECT * FROM public.documents"), "soup|\n");
  EXPECT_TRUE(store.documents().find("PRJ-3001"));
}

TEST_F(PostgresStore, AnotherProgramsTablesUnderItsNameAreRefused) {
  Database(where()).run("CREATE SCHEMA bvsandbox; CREATE TABLE bvsandbox.recipes (name TEXT)");
  EXPECT_EQ(error_of([&] { Store store(where(), std::nullopt); }),
            "the database belongs to another program");
}

TEST_F(PostgresStore, TablesOfANewerVersionAreRefusedAndLeftAlone) {
  { Store store(where(), std::nullopt); }
  Database database(where());
  database.connection().set_version(99);
  EXPECT_THAT(error_of([&] { Store store(where(), std::nullopt); }),
              HasSubstr("has tables of version 99, which a newer bvsandbox made"));
  EXPECT_EQ(database.connection().tables().version, 99);
}

TEST_F(PostgresStore, TablesOfAnOlderVersionAreBroughtUp) {
  {
    Database database(where());
    Transaction transaction(database);
    // As a sandbox that knew one version only would have made them.
    database.connection().make_tables(
        "CREATE TABLE properties (name TEXT PRIMARY KEY, value TEXT NOT NULL) STRICT, WITHOUT "
        "ROWID;"
        " CREATE TABLE users (name TEXT PRIMARY KEY, password TEXT NOT NULL) STRICT, WITHOUT ROWID;"
        " CREATE TABLE customers (gid TEXT PRIMARY KEY, account_number TEXT NOT NULL UNIQUE,"
        " name TEXT NOT NULL, city TEXT NOT NULL, state TEXT NOT NULL, country TEXT NOT NULL,"
        " zip_code TEXT NOT NULL) STRICT, WITHOUT ROWID;"
        " CREATE TABLE products (catalog_number TEXT PRIMARY KEY, description TEXT NOT NULL,"
        " manufacturer TEXT NOT NULL, unit TEXT NOT NULL, list_price_cents INTEGER NOT NULL)"
        " STRICT, WITHOUT ROWID;"
        " CREATE TABLE invoices (uid TEXT PRIMARY KEY, invoice_number TEXT NOT NULL UNIQUE,"
        " invoice_date TEXT NOT NULL, due_date TEXT NOT NULL, status TEXT NOT NULL,"
        " customer_gid TEXT NOT NULL REFERENCES customers (gid), agent_id TEXT NOT NULL,"
        " po_number TEXT NOT NULL, project_name TEXT NOT NULL, torvex_order_number TEXT NOT NULL,"
        " freight_cents INTEGER NOT NULL, tax_cents INTEGER NOT NULL) STRICT, WITHOUT ROWID;"
        " CREATE TABLE invoice_lines (invoice_uid TEXT NOT NULL REFERENCES invoices (uid),"
        " line_number INTEGER NOT NULL, catalog_number TEXT NOT NULL REFERENCES products,"
        " quantity INTEGER NOT NULL, unit_price_cents INTEGER NOT NULL,"
        " PRIMARY KEY (invoice_uid, line_number)) STRICT, WITHOUT ROWID;"
        " INSERT INTO properties VALUES ('seed', '7');"
        " INSERT INTO users VALUES ('anna', 'secret');"
        " INSERT INTO customers VALUES ('CUS-2001', '40010', 'A', 'B', 'C', 'D', 'E');"
        " INSERT INTO products VALUES ('BRK-100', 'Brick', 'Old Kiln Works', 'each', 89);"
        " INSERT INTO invoices SELECT 'INV-' || n, '' || n, '2024-12-05', '2025-01-04',"
        " 'OPEN', 'CUS-2001', '100', 'P', 'Q', 'T', 0, n FROM generate_series(1001, 1040) AS n");
    database.connection().set_version(1);
    transaction.commit();
  }
  Store store(where(), std::nullopt);
  const auto invoice = store.invoice("INV-1005");
  ASSERT_TRUE(invoice);
  EXPECT_EQ(invoice->tax_cents, 1005);
  EXPECT_EQ(invoice->pay_period_date, "2024-12-31");
  EXPECT_FALSE(store.admits("bert", "secret"));
  EXPECT_TRUE(store.documents().find("PRJ-3001"));
  Database database(where());
  EXPECT_EQ(database.connection().tables().version, newest_version());
}

TEST_F(PostgresStore, TextsCompareAsInSqlite) {
  Store store(where(), std::nullopt);
  InvoiceCriteria criteria;
  criteria.project_name = "CAF\xC3\xA9";
  EXPECT_FALSE(store.invoices(criteria).empty());
  // Another letter, since only those of ASCII have a case here.
  criteria.project_name = "CAF\xC3\x89";
  EXPECT_TRUE(store.invoices(criteria).empty());
}

TEST_F(PostgresStore, ATextWithANulIsRefusedAndNotCut) {
  Store store(where(), std::nullopt);
  Database(where()).run("INSERT INTO users VALUES ('anna', 'secret')");
  EXPECT_TRUE(store.admits("anna", "secret"));
  EXPECT_THROW(store.admits(std::string_view("anna\0x", 6), "secret"), DatabaseError);
  EXPECT_TRUE(store.admits("anna", "secret"));
}

TEST_F(PostgresStore, WhatIsNotCommittedIsNotKept) {
  Store store(where(), std::nullopt);
  {
    Transaction transaction = store.transaction();
    EXPECT_EQ(store.documents().fresh_gid(kRmaKind), "RMA-9011");
  }
  Transaction transaction = store.transaction();
  EXPECT_EQ(store.documents().fresh_gid(kRmaKind), "RMA-9011");
}

TEST_F(PostgresStore, APartThatWasRefusedIsNotForgottenAtTheEnd) {
  Store store(where(), std::nullopt);
  Transaction transaction = store.transaction();
  store.documents().fresh_gid(kRmaKind);
  Document orphan;
  orphan.gid = "RMA-1";
  orphan.parent = "RMA-0";
  EXPECT_THROW(store.documents().keep(kRmaKind, orphan, SoapNode::make("RMA")), DatabaseError);
  EXPECT_THAT(error_of([&] { transaction.commit(); }), HasSubstr("nothing of it is kept"));
}

TEST_F(PostgresStore, WritersWaitForEachOtherButNotForEver) {
  Store first(where(), std::nullopt);
  Store second(where(), std::nullopt);
  const Transaction holding = first.transaction();
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_THAT(error_of([&] { second.transaction(); }),
              HasSubstr("another process has held the database"));
  const auto waited = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(waited, std::chrono::seconds(4));
  EXPECT_LT(waited, std::chrono::seconds(20));
}

TEST_F(PostgresStore, AConnectionThatIsLostBetweenRequestsIsMendedUnseen) {
  Database database(where());
  const std::int64_t process = process_of(database);
  end_connection(where(), process);
  Transaction transaction(database);
  EXPECT_NE(process_of(database), process);
}

TEST_F(PostgresStore, AConnectionThatIsLostInARequestIsToldAndMendedByTheNext) {
  Store store(where(), std::nullopt);
  Database other(where());
  std::string error;
  {
    Transaction transaction = store.transaction();
    store.documents().fresh_gid(kRmaKind);
    other.run("SELECT pg_terminate_backend(pid, 5000) FROM pg_locks WHERE locktype = 'advisory'");
    error = error_of([&] { store.documents().find("PRJ-3001"); });
    // The rest of the request must not go on by a new connection, outside the transaction.
    EXPECT_NE(error_of([&] { store.documents().fresh_gid(kRmaKind); }), "");
    EXPECT_NE(error_of([&] { transaction.commit(); }), "");
  }
  EXPECT_THAT(error, HasSubstr("is lost"));
  EXPECT_THAT(error, HasSubstr("nothing of this request is kept, and the next request connects"));
  Transaction transaction = store.transaction();
  EXPECT_EQ(store.documents().fresh_gid(kRmaKind), "RMA-9011");
}

TEST_F(PostgresStore, ADatabaseThatCannotBeReachedIsToldWithoutThePassword) {
  std::string address = "postgresql://anna:pass%40word@/missing?host=";
  address += where().substr(where().find("host=") + 5);
  const std::string error = error_of([&] { Store store(address, std::nullopt); });
  EXPECT_THAT(error, HasSubstr("cannot be reached"));
  EXPECT_THAT(error, HasSubstr("postgresql://anna@/missing"));
  EXPECT_THAT(error, Not(HasSubstr("pass@word")));
  EXPECT_THAT(error, Not(HasSubstr("pass%40word")));
  EXPECT_THAT(error, Not(HasSubstr("\n")));
  // Where a mark of the address's own stands in the password, a part of it looks like another.
  for (const char* each : {"postgresql://anna:pass/x@host/db", "postgresql://anna:1/pass@host/db",
                           "postgresql://anna:x@pass@host/db"}) {
    const std::string unreadable = error_of([&] { Store store(each, std::nullopt); });
    EXPECT_THAT(unreadable, HasSubstr("expected postgresql://USER@HOST:PORT/DATABASE")) << each;
    EXPECT_THAT(unreadable, Not(HasSubstr("pass@"))) << each;
    EXPECT_THAT(unreadable, Not(HasSubstr("pass/"))) << each;
  }
}

TEST_F(PostgresStore, ADatabaseOfAnotherEncodingIsRefused) {
  const std::string latin =
      server().make_database("ENCODING 'LATIN1' LC_COLLATE 'C' LC_CTYPE 'C' TEMPLATE template0");
  EXPECT_THAT(error_of([&] { Store store(latin, std::nullopt); }),
              HasSubstr("has the encoding LATIN1, and the sandbox needs UTF8"));
}

}  // namespace
}  // namespace bvconn::sandbox

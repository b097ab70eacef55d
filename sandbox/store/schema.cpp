#include "sandbox/store/schema.h"

#include <string>

namespace bvconn::sandbox {
namespace {

// "BVsb", so that somebody else's database is not taken for one of ours.
constexpr std::int64_t kApplicationId = 0x42567362;
constexpr std::int64_t kVersion = 5;

// Dates are ISO 8601 texts, money is whole cents.
constexpr const char* kTables = R"sql(
CREATE TABLE properties (
  name TEXT PRIMARY KEY,
  value TEXT NOT NULL
) STRICT, WITHOUT ROWID;

CREATE TABLE users (
  name TEXT PRIMARY KEY,
  password TEXT NOT NULL
) STRICT, WITHOUT ROWID;

CREATE TABLE customers (
  gid TEXT PRIMARY KEY,
  account_number TEXT NOT NULL UNIQUE,
  name TEXT NOT NULL,
  city TEXT NOT NULL,
  state TEXT NOT NULL,
  country TEXT NOT NULL,
  zip_code TEXT NOT NULL
) STRICT, WITHOUT ROWID;

CREATE TABLE products (
  catalog_number TEXT PRIMARY KEY,
  description TEXT NOT NULL,
  manufacturer TEXT NOT NULL,
  unit TEXT NOT NULL,
  list_price_cents INTEGER NOT NULL CHECK (list_price_cents > 0)
) STRICT, WITHOUT ROWID;

CREATE TABLE invoices (
  uid TEXT PRIMARY KEY,
  invoice_number TEXT NOT NULL UNIQUE,
  invoice_date TEXT NOT NULL,
  due_date TEXT NOT NULL,
  status TEXT NOT NULL CHECK (status IN ('OPEN', 'PAID', 'OVERDUE', 'CLOSED')),
  customer_gid TEXT NOT NULL REFERENCES customers (gid),
  agent_id TEXT NOT NULL,
  po_number TEXT NOT NULL,
  project_name TEXT NOT NULL,
  torvex_order_number TEXT NOT NULL,
  freight_cents INTEGER NOT NULL CHECK (freight_cents >= 0),
  tax_cents INTEGER NOT NULL CHECK (tax_cents >= 0),
  manufacturer_order_number TEXT NOT NULL,
  partner_id TEXT NOT NULL,
  pay_period_date TEXT NOT NULL
) STRICT, WITHOUT ROWID;

CREATE TABLE invoice_lines (
  invoice_uid TEXT NOT NULL REFERENCES invoices (uid) ON DELETE CASCADE,
  line_number INTEGER NOT NULL CHECK (line_number > 0),
  catalog_number TEXT NOT NULL REFERENCES products (catalog_number),
  quantity INTEGER NOT NULL CHECK (quantity > 0),
  unit_price_cents INTEGER NOT NULL CHECK (unit_price_cents >= 0),
  PRIMARY KEY (invoice_uid, line_number)
) STRICT, WITHOUT ROWID;

CREATE VIEW manufacturers AS
  SELECT 'MFR-' || row_number() OVER (ORDER BY manufacturer) AS gid, manufacturer AS name
  FROM (SELECT DISTINCT manufacturer FROM products);

CREATE TABLE counters (
  kind TEXT PRIMARY KEY,
  next INTEGER NOT NULL
) STRICT, WITHOUT ROWID;

-- Whole documents as XML. The columns number, status and locked_by repeat what the body says.
CREATE TABLE documents (
  gid TEXT PRIMARY KEY,
  kind TEXT NOT NULL,
  parent TEXT REFERENCES documents (gid),
  number TEXT NOT NULL,
  status TEXT NOT NULL,
  locked_by TEXT NOT NULL,
  revision INTEGER NOT NULL CHECK (revision > 0),
  body TEXT NOT NULL,
  previous_body TEXT
) STRICT, WITHOUT ROWID;

-- The latest revisions of quotes and orders, the present one among them.
CREATE TABLE document_revisions (
  document_gid TEXT NOT NULL REFERENCES documents (gid) ON DELETE CASCADE,
  revision INTEGER NOT NULL CHECK (revision > 0),
  body TEXT NOT NULL,
  PRIMARY KEY (document_gid, revision)
) STRICT, WITHOUT ROWID;

CREATE TABLE document_lines (
  document_gid TEXT NOT NULL REFERENCES documents (gid) ON DELETE CASCADE,
  line_gid TEXT NOT NULL,
  PRIMARY KEY (document_gid, line_gid)
) STRICT, WITHOUT ROWID;

-- An empty line_gid is the header's; an empty type is that of a comment that names none.
CREATE TABLE comments (
  document_gid TEXT NOT NULL REFERENCES documents (gid) ON DELETE CASCADE,
  line_gid TEXT NOT NULL,
  type TEXT NOT NULL,
  body TEXT NOT NULL,
  PRIMARY KEY (document_gid, line_gid, type)
) STRICT, WITHOUT ROWID;

-- An empty owner is everybody.
CREATE TABLE entries (
  kind TEXT NOT NULL,
  owner TEXT NOT NULL,
  uid TEXT NOT NULL,
  position INTEGER NOT NULL,
  body TEXT NOT NULL,
  PRIMARY KEY (kind, owner, uid)
) STRICT, WITHOUT ROWID;

CREATE TABLE list_rows (
  list TEXT NOT NULL,
  position INTEGER NOT NULL,
  body TEXT NOT NULL,
  PRIMARY KEY (list, position)
) STRICT, WITHOUT ROWID;

CREATE INDEX documents_by_parent ON documents (parent, kind);
CREATE INDEX documents_by_number ON documents (kind, number);
CREATE INDEX document_lines_by_line ON document_lines (line_gid);
CREATE INDEX comments_by_line ON comments (line_gid);
CREATE INDEX invoices_by_customer ON invoices (customer_gid);
CREATE INDEX invoices_by_date ON invoices (invoice_date);
)sql";

std::int64_t number(Database& database, std::string_view sql) {
  Statement select(database, sql);
  select.step();
  return select.integer(0);
}

}  // namespace

void refuse_foreign(Database& database) {
  const std::int64_t application = number(database, "PRAGMA application_id");
  const std::int64_t version = number(database, "PRAGMA user_version");
  if (application == kApplicationId && version == kVersion) return;
  if (application == kApplicationId) {
    throw DatabaseError("the database has tables of version " + std::to_string(version) +
                        ", this sandbox knows version " + std::to_string(kVersion));
  }
  if (number(database, "SELECT count(*) FROM sqlite_schema") != 0) {
    throw DatabaseError("the database belongs to another program");
  }
}

void make_schema(Database& database) {
  if (number(database, "PRAGMA user_version") == kVersion) return;
  database.run(kTables);
  database.run(("PRAGMA application_id = " + std::to_string(kApplicationId)).c_str());
  database.run(("PRAGMA user_version = " + std::to_string(kVersion)).c_str());
}

}  // namespace bvconn::sandbox

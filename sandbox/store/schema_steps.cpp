#include "sandbox/store/schema_steps.h"

#include "sandbox/store/criteria_seed.h"
#include "sandbox/store/documents_seed.h"
#include "sandbox/store/entries.h"
#include "sandbox/store/lists.h"
#include "sandbox/store/reconciles.h"
#include "sandbox/store/seed.h"

namespace bvconn::sandbox {
namespace {

// Dates are ISO 8601 texts, money is whole cents.

constexpr const char* kInvoicesTables = R"sql(
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
  status TEXT NOT NULL CHECK (status IN ('OPEN', 'PAID', 'OVERDUE')),
  customer_gid TEXT NOT NULL REFERENCES customers (gid),
  agent_id TEXT NOT NULL,
  po_number TEXT NOT NULL,
  project_name TEXT NOT NULL,
  torvex_order_number TEXT NOT NULL,
  freight_cents INTEGER NOT NULL CHECK (freight_cents >= 0),
  tax_cents INTEGER NOT NULL CHECK (tax_cents >= 0)
) STRICT, WITHOUT ROWID;

CREATE TABLE invoice_lines (
  invoice_uid TEXT NOT NULL REFERENCES invoices (uid) ON DELETE CASCADE,
  line_number INTEGER NOT NULL CHECK (line_number > 0),
  catalog_number TEXT NOT NULL REFERENCES products (catalog_number),
  quantity INTEGER NOT NULL CHECK (quantity > 0),
  unit_price_cents INTEGER NOT NULL CHECK (unit_price_cents >= 0),
  PRIMARY KEY (invoice_uid, line_number)
) STRICT, WITHOUT ROWID;

CREATE INDEX invoices_by_customer ON invoices (customer_gid);
CREATE INDEX invoices_by_date ON invoices (invoice_date);
)sql";

constexpr const char* kDocumentsTables = R"sql(
CREATE VIEW manufacturers AS
  SELECT 'MFR-' || row_number() OVER (ORDER BY manufacturer) AS gid, manufacturer AS name
  FROM (SELECT DISTINCT manufacturer FROM products) AS made;

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

CREATE INDEX documents_by_parent ON documents (parent, kind);
CREATE INDEX documents_by_number ON documents (kind, number);
CREATE INDEX document_lines_by_line ON document_lines (line_gid);
CREATE INDEX comments_by_line ON comments (line_gid);
)sql";

constexpr const char* kEntriesTables = R"sql(
ALTER TABLE invoices ADD COLUMN manufacturer_order_number TEXT NOT NULL DEFAULT '';
ALTER TABLE invoices ADD COLUMN partner_id TEXT NOT NULL DEFAULT '';
ALTER TABLE invoices ADD COLUMN pay_period_date TEXT NOT NULL DEFAULT '';

-- An empty owner is everybody.
CREATE TABLE entries (
  kind TEXT NOT NULL,
  owner TEXT NOT NULL,
  uid TEXT NOT NULL,
  position INTEGER NOT NULL,
  body TEXT NOT NULL,
  PRIMARY KEY (kind, owner, uid)
) STRICT, WITHOUT ROWID;
)sql";

constexpr const char* kListsTables = R"sql(
CREATE TABLE list_rows (
  list TEXT NOT NULL,
  position INTEGER NOT NULL,
  body TEXT NOT NULL,
  PRIMARY KEY (list, position)
) STRICT, WITHOUT ROWID;
)sql";

// Invoices and their lines are made anew, since a condition of a column cannot be changed; under
// other names at first, so that neither loses the rows of the other when the old ones go.
constexpr const char* kRevisionsTables = R"sql(
-- The latest revisions of quotes and orders, the present one among them.
CREATE TABLE document_revisions (
  document_gid TEXT NOT NULL REFERENCES documents (gid) ON DELETE CASCADE,
  revision INTEGER NOT NULL CHECK (revision > 0),
  body TEXT NOT NULL,
  PRIMARY KEY (document_gid, revision)
) STRICT, WITHOUT ROWID;

CREATE TABLE new_invoices (
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
  manufacturer_order_number TEXT NOT NULL DEFAULT '',
  partner_id TEXT NOT NULL DEFAULT '',
  pay_period_date TEXT NOT NULL DEFAULT ''
) STRICT, WITHOUT ROWID;

CREATE TABLE new_invoice_lines (
  invoice_uid TEXT NOT NULL REFERENCES new_invoices (uid) ON DELETE CASCADE,
  line_number INTEGER NOT NULL CHECK (line_number > 0),
  catalog_number TEXT NOT NULL REFERENCES products (catalog_number),
  quantity INTEGER NOT NULL CHECK (quantity > 0),
  unit_price_cents INTEGER NOT NULL CHECK (unit_price_cents >= 0),
  PRIMARY KEY (invoice_uid, line_number)
) STRICT, WITHOUT ROWID;

INSERT INTO new_invoices SELECT uid, invoice_number, invoice_date, due_date, status, customer_gid,
  agent_id, po_number, project_name, torvex_order_number, freight_cents, tax_cents,
  manufacturer_order_number, partner_id, pay_period_date FROM invoices;
INSERT INTO new_invoice_lines SELECT invoice_uid, line_number, catalog_number, quantity,
  unit_price_cents FROM invoice_lines;
DROP TABLE invoice_lines;
DROP TABLE invoices;
ALTER TABLE new_invoices RENAME TO invoices;
ALTER TABLE new_invoice_lines RENAME TO invoice_lines;
CREATE INDEX invoices_by_customer ON invoices (customer_gid);
CREATE INDEX invoices_by_date ON invoices (invoice_date);
)sql";

constexpr const char* kCriteriaTables = "CREATE INDEX documents_by_kind ON documents (kind)";

// What processes of one database share beside the documents.
constexpr const char* kSharedTables = R"sql(
CREATE TABLE logins (
  token TEXT PRIMARY KEY,
  user_name TEXT NOT NULL,
  number INTEGER NOT NULL
) STRICT, WITHOUT ROWID;

CREATE INDEX logins_by_number ON logins (number);

-- What a snapshot holds is in tables named after its number.
CREATE TABLE snapshots (
  name TEXT PRIMARY KEY,
  number INTEGER NOT NULL UNIQUE,
  version INTEGER NOT NULL,
  made TEXT NOT NULL
) STRICT, WITHOUT ROWID;
)sql";

// The journal and the rules that processes of one database share.
constexpr const char* kTogetherTables = R"sql(
CREATE TABLE journal_entries (
  id INTEGER PRIMARY KEY,
  bytes INTEGER NOT NULL,
  entry TEXT NOT NULL
) STRICT, WITHOUT ROWID;

-- One row. The entries up to `gone_id` are gone; `most` and `most_bytes` bound the others.
CREATE TABLE journal_state (
  one INTEGER PRIMARY KEY CHECK (one = 1),
  last_id INTEGER NOT NULL,
  gone_id INTEGER NOT NULL,
  kept INTEGER NOT NULL,
  kept_bytes INTEGER NOT NULL,
  dropped INTEGER NOT NULL,
  lost INTEGER NOT NULL,
  most INTEGER NOT NULL,
  most_bytes INTEGER NOT NULL
) STRICT, WITHOUT ROWID;

INSERT INTO journal_state VALUES (1, 0, 0, 0, 0, 0, 0, 1000, 67108864);

-- How many of its entries a process has written, so that it never writes one twice.
CREATE TABLE journal_writers (
  number INTEGER PRIMARY KEY,
  written INTEGER NOT NULL
) STRICT, WITHOUT ROWID;

-- The text is JSON. What a rule counts is in seen and hit.
CREATE TABLE shared_rules (
  kind TEXT NOT NULL,
  number INTEGER NOT NULL,
  name TEXT NOT NULL,
  text TEXT NOT NULL,
  seen INTEGER NOT NULL,
  hit INTEGER NOT NULL,
  PRIMARY KEY (kind, number),
  UNIQUE (kind, name)
) STRICT, WITHOUT ROWID;

-- The version grows with each change of the rules of a kind, but for what they count.
CREATE TABLE shared_rule_kinds (
  kind TEXT PRIMARY KEY,
  version INTEGER NOT NULL,
  last_number INTEGER NOT NULL
) STRICT, WITHOUT ROWID;

INSERT INTO shared_rule_kinds VALUES ('fault', 0, 0);
INSERT INTO shared_rule_kinds VALUES ('stub', 0, 0);
)sql";

// What one request was answered, for a fault to give it to another one: base64, since it can be any
// bytes.
constexpr const char* kAnswersTables = R"sql(
CREATE TABLE kept_answers (
  route TEXT PRIMARY KEY,
  answer TEXT NOT NULL
) STRICT, WITHOUT ROWID;
)sql";

void fill_entries_of_invoices(Database& database, std::uint64_t) {
  complete_invoices(database);
  fill_reconciles(database);
  fill_entries(database);
}

// What a new store holds has its revisions already.
void fill_revisions(Database& database, std::uint64_t) {
  database.run(
      "INSERT INTO document_revisions SELECT gid, revision, body FROM documents"
      " WHERE kind IN ('quote', 'order') ON CONFLICT DO NOTHING");
}

}  // namespace

const std::vector<const char*>& data_tables() {
  static const std::vector<const char*> tables{
      "customers",      "products",           "invoices", "invoice_lines", "counters", "documents",
      "document_lines", "document_revisions", "comments", "entries",       "list_rows"};
  return tables;
}

const std::vector<SchemaStep>& schema_steps() {
  static const std::vector<SchemaStep> steps{
      {.tables = kInvoicesTables, .fill = fill_invoices},
      {.tables = kDocumentsTables, .fill = fill_documents},
      {.tables = kEntriesTables, .fill = fill_entries_of_invoices},
      {.tables = kListsTables,
       .fill = [](Database& database, std::uint64_t) { fill_lists(database); }},
      {.tables = kRevisionsTables, .fill = fill_revisions},
      {.tables = kCriteriaTables, .fill = fill_criteria},
      {.tables = kSharedTables},
      {.tables = kTogetherTables},
      {.tables = kAnswersTables},
  };
  return steps;
}

}  // namespace bvconn::sandbox

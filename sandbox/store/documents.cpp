#include "sandbox/store/documents.h"

#include <utility>

#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr std::string_view kColumns =
    "gid, kind, coalesce(parent, ''), number, status, locked_by, revision, body,"
    " coalesce(previous_body, '')";

std::string select_documents(std::string_view rest) {
  return "SELECT " + std::string(kColumns) + " FROM documents " + std::string(rest);
}

Document read(const Statement& row) {
  return {.gid = row.text(0),
          .kind = row.text(1),
          .parent = row.text(2),
          .number = row.text(3),
          .status = row.text(4),
          .locked_by = row.text(5),
          .revision = row.integer(6),
          .body = row.text(7),
          .previous_body = row.text(8)};
}

Product read_product(const Statement& row) {
  return {.catalog_number = row.text(0),
          .description = row.text(1),
          .manufacturer = row.text(2),
          .unit = row.text(3),
          .list_price_cents = row.integer(4)};
}

/// So many revisions of a document are kept.
constexpr std::int64_t kMostRevisions = 20;

constexpr std::string_view kProductColumns =
    "SELECT catalog_number, description, manufacturer, unit, list_price_cents FROM products ";

}  // namespace

SoapNode Document::tree() const {
  return node_from_xml(body);
}

std::optional<Document> Documents::find(std::string_view gid) {
  Statement select(database_, select_documents("WHERE gid = ?"));
  select.bind(gid);
  if (!select.step()) return std::nullopt;
  return read(select);
}

std::optional<Document> Documents::find_by_number(const DocumentKind& kind,
                                                  std::string_view number) {
  Statement select(database_,
                   select_documents("WHERE kind = ? AND number = ? ORDER BY gid LIMIT 1"));
  select.bind(kind.name).bind(number);
  if (!select.step()) return std::nullopt;
  return read(select);
}

std::vector<Document> Documents::children(const DocumentKind& kind, std::string_view parent) {
  Statement select(database_,
                   select_documents("WHERE parent = ? AND kind = ? ORDER BY length(gid), gid"));
  select.bind(parent).bind(kind.name);
  std::vector<Document> found;
  while (select.step()) found.push_back(read(select));
  return found;
}

std::int64_t Documents::count(const DocumentKind& kind) {
  Statement select(database_, "SELECT count(*) FROM documents WHERE kind = ?");
  select.bind(kind.name).step();
  return select.integer(0);
}

std::vector<Document> Documents::list(const DocumentKind& kind, std::string_view after,
                                      std::int64_t most) {
  Statement select(database_, select_documents("WHERE kind = ? AND gid > ? ORDER BY gid LIMIT ?"));
  select.bind(kind.name).bind(after).bind(most);
  std::vector<Document> found;
  while (select.step()) found.push_back(read(select));
  return found;
}

std::string Documents::fresh_gid(const DocumentKind& kind) {
  for (;;) {
    Statement(database_, "INSERT INTO counters VALUES (?, ?) ON CONFLICT DO NOTHING")
        .bind(kind.name)
        .bind(kind.first_key)
        .run();
    Statement next(database_, "SELECT next FROM counters WHERE kind = ?");
    next.bind(kind.name).step();
    std::string gid = std::string(kind.key_prefix) + next.text(0);
    Statement(database_, "UPDATE counters SET next = next + 1 WHERE kind = ?")
        .bind(kind.name)
        .run();
    // Clients may save documents under keys of their own choice.
    if (!find(gid)) return gid;
  }
}

void Documents::keep(const DocumentKind& kind, Document& document, const SoapNode& tree) {
  document.previous_body = document.body;
  ++document.revision;
  write(kind, document, tree);
}

void Documents::lock(const DocumentKind& kind, Document& document, std::string_view user) {
  const SoapNode tree = document.tree();
  set_child(tree, "LockedBy", user);
  write(kind, document, tree);
}

void Documents::revert(const DocumentKind& kind, Document& document) {
  if (document.previous_body.empty()) return;
  const SoapNode tree = node_from_xml(document.previous_body);
  if (child_text(tree, "LockedBy") != document.locked_by) {
    set_child(tree, "LockedBy", document.locked_by);
  }
  document.previous_body.clear();
  ++document.revision;
  write(kind, document, tree);
}

void Documents::write(const DocumentKind& kind, Document& document, const SoapNode& tree) {
  // First of all, since it refuses a document that is too large to be written.
  const std::vector<SoapNode> lines = lines_of(tree);
  document.kind = kind.name;
  document.number = child_text(tree, kind.number_field);
  if (document.number.empty()) document.number = document.gid;
  document.status = child_text(tree, "Status");
  document.locked_by = child_text(tree, "LockedBy");
  document.body = node_to_xml(tree);
  Statement insert(database_,
                   "INSERT INTO documents VALUES (?, ?, nullif(?, ''), ?, ?, ?, ?, ?, nullif(?,"
                   " '')) ON CONFLICT (gid) DO UPDATE SET parent = excluded.parent,"
                   " number = excluded.number, status = excluded.status,"
                   " locked_by = excluded.locked_by, revision = excluded.revision,"
                   " body = excluded.body, previous_body = excluded.previous_body");
  insert.bind(document.gid).bind(document.kind).bind(document.parent).bind(document.number);
  insert.bind(document.status).bind(document.locked_by).bind(document.revision);
  insert.bind(document.body).bind(document.previous_body).run();
  write_lines(document, lines);
  if (kind.keeps_revisions) write_revision(document);
}

void Documents::write_revision(const Document& document) {
  Statement(database_,
            "INSERT INTO document_revisions VALUES (?, ?, ?)"
            " ON CONFLICT (document_gid, revision) DO UPDATE SET body = excluded.body")
      .bind(document.gid)
      .bind(document.revision)
      .bind(document.body)
      .run();
  Statement(database_, "DELETE FROM document_revisions WHERE document_gid = ? AND revision <= ?")
      .bind(document.gid)
      .bind(document.revision - kMostRevisions)
      .run();
}

std::vector<Document> Documents::revisions(const Document& document) {
  Statement select(database_,
                   "SELECT revision, body FROM document_revisions WHERE document_gid = ?"
                   " ORDER BY revision DESC");
  select.bind(document.gid);
  std::vector<Document> found;
  while (select.step()) {
    Document each = document;
    each.revision = select.integer(0);
    each.body = select.text(1);
    found.push_back(std::move(each));
  }
  return found;
}

void Documents::write_lines(const Document& document, const std::vector<SoapNode>& lines) {
  Statement(database_, "DELETE FROM document_lines WHERE document_gid = ?")
      .bind(document.gid)
      .run();
  Statement insert(database_, "INSERT INTO document_lines VALUES (?, ?) ON CONFLICT DO NOTHING");
  for (const SoapNode& line : lines) {
    const std::string key = line_key(line);
    if (!key.empty()) insert.bind(document.gid).bind(key).run();
  }
}

bool Documents::has_line(std::string_view gid, std::string_view line) {
  Statement select(database_,
                   "SELECT 1 FROM document_lines WHERE document_gid = ? AND line_gid = ?");
  return select.bind(gid).bind(line).step();
}

std::optional<std::string> Documents::owner_of_line(const DocumentKind& kind,
                                                    std::string_view line) {
  Statement select(database_,
                   "SELECT gid FROM document_lines JOIN documents ON gid = document_gid"
                   " WHERE line_gid = ? AND kind = ? ORDER BY gid LIMIT 1");
  if (!select.bind(line).bind(kind.name).step()) return std::nullopt;
  return select.text(0);
}

std::optional<std::string> Documents::comment(std::string_view gid, std::string_view line,
                                              std::string_view type) {
  Statement select(database_,
                   "SELECT body FROM comments WHERE document_gid = ? AND line_gid = ?"
                   " AND type IN (?, '') ORDER BY type DESC LIMIT 1");
  if (!select.bind(gid).bind(line).bind(type).step()) return std::nullopt;
  return select.text(0);
}

void Documents::keep_comment(std::string_view gid, std::string_view line, std::string_view type,
                             std::string_view body) {
  Statement(database_,
            "INSERT INTO comments VALUES (?, ?, ?, ?)"
            " ON CONFLICT (document_gid, line_gid, type) DO UPDATE SET body = excluded.body")
      .bind(gid)
      .bind(line)
      .bind(type)
      .bind(body)
      .run();
}

std::vector<std::string> Documents::submittal_comments(const DocumentKind& parent_kind,
                                                       std::string_view line) {
  Statement select(database_,
                   "SELECT comments.body FROM comments"
                   " JOIN documents AS submittal ON submittal.gid = document_gid"
                   " JOIN documents AS owner ON owner.gid = submittal.parent"
                   " WHERE line_gid = ? AND submittal.kind = ? AND owner.kind = ?"
                   " ORDER BY length(submittal.gid), submittal.gid, type");
  select.bind(line).bind(kSubmittalKind.name).bind(parent_kind.name);
  std::vector<std::string> bodies;
  while (select.step()) bodies.push_back(select.text(0));
  return bodies;
}

std::optional<Product> Documents::product(std::string_view catalog_number) {
  Statement select(database_, std::string(kProductColumns) + "WHERE catalog_number = ?");
  if (!select.bind(catalog_number).step()) return std::nullopt;
  return read_product(select);
}

std::vector<Product> Documents::products() {
  Statement select(database_, std::string(kProductColumns) + "ORDER BY catalog_number");
  std::vector<Product> found;
  while (select.step()) found.push_back(read_product(select));
  return found;
}

std::vector<std::string> Documents::customer_gids() {
  Statement select(database_, "SELECT gid FROM customers ORDER BY gid");
  std::vector<std::string> found;
  while (select.step()) found.push_back(select.text(0));
  return found;
}

std::optional<std::string> Documents::customer_name(std::string_view gid) {
  return one_text("SELECT name FROM customers WHERE gid = ?", gid);
}

std::optional<std::string> Documents::manufacturer_name(std::string_view gid) {
  return one_text("SELECT name FROM manufacturers WHERE gid = ?", gid);
}

std::string Documents::manufacturer_gid(std::string_view name) {
  return one_text("SELECT gid FROM manufacturers WHERE name = ?", name).value_or("");
}

std::optional<std::string> Documents::one_text(std::string_view sql, std::string_view key) {
  Statement select(database_, sql);
  if (!select.bind(key).step()) return std::nullopt;
  return select.text(0);
}

}  // namespace bvconn::sandbox

#include "sandbox/store/invoices.h"

#include <utility>

namespace bvconn::sandbox {
namespace {

std::vector<InvoiceLine> lines_of(Database& database, std::string_view uid) {
  Statement select(database,
                   "SELECT line_number, catalog_number, description, manufacturer, unit, quantity,"
                   " unit_price_cents FROM invoice_lines JOIN products USING (catalog_number)"
                   " WHERE invoice_uid = ? ORDER BY line_number");
  select.bind(uid);
  std::vector<InvoiceLine> lines;
  while (select.step()) {
    lines.push_back({.line_number = select.integer(0),
                     .catalog_number = select.text(1),
                     .description = select.text(2),
                     .manufacturer = select.text(3),
                     .unit = select.text(4),
                     .quantity = select.integer(5),
                     .unit_price_cents = select.integer(6)});
  }
  return lines;
}

}  // namespace

std::optional<Invoice> find_invoice(Database& database, std::string_view uid) {
  Statement select(database,
                   "SELECT uid, invoice_number, invoice_date, due_date, status, agent_id,"
                   " po_number, project_name, torvex_order_number, freight_cents, tax_cents,"
                   " gid, account_number, name, city, state, country, zip_code"
                   " FROM invoices JOIN customers ON gid = customer_gid WHERE uid = ?");
  select.bind(uid);
  if (!select.step()) return std::nullopt;
  Invoice invoice{.uid = select.text(0),
                  .invoice_number = select.text(1),
                  .invoice_date = select.text(2),
                  .due_date = select.text(3),
                  .status = select.text(4),
                  .agent_id = select.text(5),
                  .po_number = select.text(6),
                  .project_name = select.text(7),
                  .torvex_order_number = select.text(8),
                  .freight_cents = select.integer(9),
                  .tax_cents = select.integer(10),
                  .customer = {.gid = select.text(11),
                               .account_number = select.text(12),
                               .name = select.text(13),
                               .city = select.text(14),
                               .state = select.text(15),
                               .country = select.text(16),
                               .zip_code = select.text(17)},
                  .lines = {}};
  invoice.lines = lines_of(database, uid);
  return invoice;
}

}  // namespace bvconn::sandbox

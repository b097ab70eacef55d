#include "sandbox/store/invoices.h"

#include <algorithm>
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
                   " gid, account_number, name, city, state, country, zip_code,"
                   " manufacturer_order_number, partner_id, pay_period_date"
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
                  .manufacturer_order_number = select.text(18),
                  .partner_id = select.text(19),
                  .pay_period_date = select.text(20),
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

void close_invoice(Database& database, std::string_view uid) {
  Statement(database, "UPDATE invoices SET status = ? WHERE uid = ?")
      .bind(kClosedInvoice)
      .bind(uid)
      .run();
}

std::int64_t goods_cents(const Invoice& invoice) {
  std::int64_t sum = 0;
  for (const InvoiceLine& line : invoice.lines) sum += line.quantity * line.unit_price_cents;
  return sum;
}

std::vector<Invoice> find_invoices(Database& database, const InvoiceCriteria& criteria) {
  Statement select(
      database,
      "SELECT uid FROM invoices JOIN customers ON customers.gid = customer_gid WHERE"
      " (?1 = '' OR invoice_number = ?1) AND (?2 = '' OR po_number = ?2)"
      " AND instr(lower(project_name), lower(?3)) > 0"
      " AND (?4 = '' OR EXISTS (SELECT 1 FROM invoice_lines JOIN products USING (catalog_number)"
      " JOIN manufacturers ON manufacturers.name = manufacturer WHERE invoice_uid = uid"
      " AND (manufacturers.gid = ?4 OR lower(manufacturer) = lower(?4))))"
      " AND (?5 = '' OR manufacturer_order_number = ?5) AND (?6 = '' OR status = upper(?6))"
      " AND (?7 = '' OR customer_gid = ?7) AND instr(lower(customers.name), lower(?8)) > 0"
      " AND (?9 = '' OR account_number = ?9) AND (?10 = '' OR partner_id = ?10)"
      " AND (?11 = '' OR agent_id = ?11) AND (?12 = '' OR torvex_order_number = ?12)"
      " AND (?13 = '' OR invoice_date >= ?13) AND (?14 = '' OR invoice_date <= ?14)"
      " AND (?15 = '' OR pay_period_date >= ?15) AND (?16 = '' OR pay_period_date <= ?16)"
      " ORDER BY invoice_number");
  for (const std::string* each :
       {&criteria.invoice_number, &criteria.po_number, &criteria.project_name,
        &criteria.manufacturer, &criteria.manufacturer_order_number, &criteria.status,
        &criteria.customer_gid, &criteria.sold_to_name, &criteria.account_number,
        &criteria.partner_id, &criteria.agent_id, &criteria.torvex_order_number,
        &criteria.date_from, &criteria.date_to, &criteria.pay_period_from,
        &criteria.pay_period_to}) {
    select.bind(*each);
  }
  std::vector<Invoice> found;
  while (select.step()) found.push_back(*find_invoice(database, select.text(0)));
  return found;
}

std::vector<std::string> pay_periods(Database& database, std::string_view agent_id,
                                     std::int64_t count) {
  Statement select(database,
                   "SELECT DISTINCT pay_period_date FROM invoices WHERE ?1 IN ('', agent_id)"
                   " ORDER BY pay_period_date DESC LIMIT ?2");
  select.bind(agent_id).bind(std::max<std::int64_t>(count, 0));
  std::vector<std::string> found;
  while (select.step()) found.push_back(select.text(0));
  return found;
}

}  // namespace bvconn::sandbox

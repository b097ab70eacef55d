#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/store/database.h"

namespace bvconn::sandbox {

struct Customer {
  std::string gid, account_number, name, city, state, country, zip_code;
};

struct InvoiceLine {
  std::int64_t line_number = 0;
  std::string catalog_number, description, manufacturer, unit;
  std::int64_t quantity = 0;
  std::int64_t unit_price_cents = 0;
};

struct Invoice {
  std::string uid, invoice_number;
  std::string invoice_date, due_date;  ///< "2024-01-31"
  std::string status;                  ///< OPEN, PAID, OVERDUE or CLOSED
  std::string agent_id, po_number, project_name, torvex_order_number;
  std::string manufacturer_order_number, partner_id;
  std::string pay_period_date;  ///< the last day of its month
  std::int64_t freight_cents = 0;
  std::int64_t tax_cents = 0;
  Customer customer;
  std::vector<InvoiceLine> lines;
};

std::optional<Invoice> find_invoice(Database& database, std::string_view uid);
/// The status of an invoice that has been reconciled.
inline constexpr std::string_view kClosedInvoice = "CLOSED";
/// Closes an invoice; what is none is left alone.
void close_invoice(Database& database, std::string_view uid);
/// What its lines cost together, without freight and tax.
std::int64_t goods_cents(const Invoice& invoice);

/// What invoices have to be; "" leaves a criterion open. Project and customer names may be parts of
/// names, in any case; a manufacturer is a name or a key; dates are as in `Invoice`.
struct InvoiceCriteria {
  std::string invoice_number, po_number, project_name, manufacturer, manufacturer_order_number;
  std::string status, customer_gid, sold_to_name, account_number, partner_id;
  std::string agent_id, torvex_order_number;
  std::string date_from, date_to, pay_period_from, pay_period_to;
};

/// In the order of their numbers.
std::vector<Invoice> find_invoices(Database& database, const InvoiceCriteria& criteria);
/// The latest pay periods that have invoices, of one agent or, for "", of all.
std::vector<std::string> pay_periods(Database& database, std::string_view agent_id,
                                     std::int64_t count);

}  // namespace bvconn::sandbox

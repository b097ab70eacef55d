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
  std::string status;                  ///< OPEN, PAID or OVERDUE
  std::string agent_id, po_number, project_name, torvex_order_number;
  std::int64_t freight_cents = 0;
  std::int64_t tax_cents = 0;
  Customer customer;
  std::vector<InvoiceLine> lines;
};

std::optional<Invoice> find_invoice(Database& database, std::string_view uid);

}  // namespace bvconn::sandbox

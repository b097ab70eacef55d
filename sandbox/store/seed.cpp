#include "sandbox/store/seed.h"

#include <array>
#include <charconv>
#include <string>

#include "bvconn/platform/conversions/conversions.h"
#include "sandbox/store/dice.h"

namespace bvconn::sandbox {
namespace {

struct CustomerRow {
  std::string_view name, city, state, country, zip_code;
};

constexpr std::array kCustomers{
    CustomerRow{"Alder & Sons Contracting", "Madison", "WI", "US", "53703"},
    CustomerRow{"Birchfield Builders", "Columbus", "OH", "US", "43215"},
    CustomerRow{"Canyon Supply House", "Tucson", "AZ", "US", "85701"},
    CustomerRow{"Dunmore Hardware", "Halifax", "NS", "CA", "B3H 1A1"},
    CustomerRow{"Eastgate Renovations", "Albany", "NY", "US", "12207"},
    CustomerRow{"Fairview School District", "Boise", "ID", "US", "83702"},
    CustomerRow{"Granite Bay Homes", "Sacramento", "CA", "US", "95814"},
    CustomerRow{"Hartwell Roofing", "Savannah", "GA", "US", "31401"},
    CustomerRow{"Ironbridge Development", "Pittsburgh", "PA", "US", "15222"},
    CustomerRow{"Juniper Design & Build", "Santa Fe", "NM", "US", "87501"},
    CustomerRow{"Kestrel Property Group", "Calgary", "AB", "CA", "T2P 1J9"},
    CustomerRow{"Lakeside Millwork", "Duluth", "MN", "US", "55802"},
};

struct ProductRow {
  std::string_view catalog_number, description, manufacturer, unit;
  std::int64_t list_price_cents;
};

constexpr std::array kProducts{
    ProductRow{"BRK-100", "Facing brick, red, 215 x 102 x 65 mm", "Old Kiln Works", "each", 89},
    ProductRow{"BRK-110", "Facing brick, buff, 215 x 102 x 65 mm", "Old Kiln Works", "each", 95},
    ProductRow{"CEM-25", "Portland cement, 25 kg bag", "Grey River Cement", "bag", 1'145},
    ProductRow{"DOR-36L", "Entry door, oak veneer, 36 in, left hand", "Stonecroft", "each", 41'900},
    ProductRow{"DOR-36R", "Entry door, oak veneer, 36 in, right hand", "Stonecroft", "each",
               41'900},
    ProductRow{"GUT-10W", "Rain gutter, white, 10 ft length", "Fallwater", "length", 1'875},
    ProductRow{"GUT-DS", "Downspout elbow, white", "Fallwater", "each", 425},
    ProductRow{"HNG-4B", "Butt hinge, brass, 4 in, pair", "Stonecroft", "pair", 1'295},
    ProductRow{"INS-R13", "Mineral wool batt, R-13, 15 in", "Warmfold", "pack", 6'480},
    ProductRow{"INS-R30", "Mineral wool batt, R-30, 15 in", "Warmfold", "pack", 9'250},
    ProductRow{"LUM-2408", "Stud, spruce, 2 x 4 in, 8 ft", "Northfell Timber", "each", 398},
    ProductRow{"PBD-12", "Plasterboard, 1/2 in, 4 x 8 ft", "Evenwall", "sheet", 1'420},
    ProductRow{"PNT-EW5", "Interior paint, eggshell white, 5 gal", "Evenwall", "pail", 14'350},
    ProductRow{"SCR-8250", "Deck screw, no. 8, 2 1/2 in, box of 350", "Tightgrip", "box", 2'790},
    ProductRow{"SHN-AG", "Roof shingle, architectural, slate grey", "Fallwater", "bundle", 3'695},
    ProductRow{"TIL-WH6", "Wall tile, glazed \"snow\" <matt>, 6 x 6 in", "Old Kiln Works", "box",
               3'240},
    ProductRow{"VEN-RD", "Ridge vent, 4 ft", "Fallwater", "length", 2'115},
    ProductRow{"WIN-3648", "Casement window, double glazed, 36 x 48 in", "Clearpane", "each",
               32'800},
};

constexpr std::array<std::string_view, 10> kProjects{"Maple Street Apartments",
                                                     "Riverside Clinic",
                                                     "Old Mill Conversion",
                                                     "Hilltop Library",
                                                     "Harbour Café",
                                                     "Fire Station 12",
                                                     "Linden Court",
                                                     "Quarry Road Warehouse",
                                                     "Northside Gymnasium",
                                                     "Orchard House"};
constexpr std::int64_t kDay = 86'400'000;
constexpr std::array<std::string_view, 3> kStatuses{"OPEN", "PAID", "OVERDUE"};

std::string customer_gid(std::int64_t index) {
  return numbered("CUS-", 2'001 + index);
}

// Agents have three digits at least.
std::string agent_id(std::int64_t number) {
  return conversions::format_number(static_cast<double>(number), "000");
}

void fill_customers(Database& database) {
  Statement insert(database, "INSERT INTO customers VALUES (?, ?, ?, ?, ?, ?, ?)");
  std::int64_t index = 0;
  for (const CustomerRow& row : kCustomers) {
    insert.bind(customer_gid(index)).bind(numbered("", 40'010 + 10 * index)).bind(row.name);
    insert.bind(row.city).bind(row.state).bind(row.country).bind(row.zip_code).run();
    ++index;
  }
}

void fill_products(Database& database) {
  Statement insert(database, "INSERT INTO products VALUES (?, ?, ?, ?, ?)");
  for (const ProductRow& row : kProducts) {
    insert.bind(row.catalog_number).bind(row.description).bind(row.manufacturer);
    insert.bind(row.unit).bind(row.list_price_cents).run();
  }
}

std::string day_text(Date date) {
  return conversions::iso_date_text(date).substr(0, std::string_view("2024-01-31").size());
}

void fill_lines(Database& database, std::string_view uid, Dice& dice) {
  Statement insert(database, "INSERT INTO invoice_lines VALUES (?, ?, ?, ?, ?)");
  const std::int64_t count = dice.between(1, 6);
  for (std::int64_t line = 1; line <= count; ++line) {
    const ProductRow& product = dice.one_of(kProducts);
    const std::int64_t percent = dice.between(70, 100);
    insert.bind(uid).bind(line).bind(product.catalog_number).bind(dice.between(1, 120));
    insert.bind(product.list_price_cents * percent / 100).run();
  }
}

void fill_invoice(Database& database, std::int64_t index, Dice& dice) {
  const Date first_day = from_civil({.year = 2024, .month = 1, .day = 2});
  const Date date{first_day.milliseconds + dice.between(0, 540) * kDay};
  const std::string uid = numbered("INV-", 1'001 + index);
  const auto customer = dice.between(0, static_cast<std::int64_t>(kCustomers.size()) - 1);
  Statement insert(database,
                   "INSERT INTO invoices (uid, invoice_number, invoice_date, due_date, status,"
                   " customer_gid, agent_id, po_number, project_name, torvex_order_number,"
                   " freight_cents, tax_cents) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
  insert.bind(uid).bind(numbered("", 700'101 + index)).bind(day_text(date));
  insert.bind(day_text({date.milliseconds + 30 * kDay})).bind(dice.one_of(kStatuses));
  insert.bind(customer_gid(customer)).bind(agent_id(dice.between(90, 120)));
  insert.bind(numbered("PO-", dice.between(10'000, 99'999))).bind(dice.one_of(kProjects));
  insert.bind(numbered("T", dice.between(500'000, 599'999)));
  insert.bind(dice.between(0, 250) * 100).bind(dice.between(0, 30'000)).run();
  fill_lines(database, uid, dice);
}

/// What stands behind the prefix of a key, less the first such number; 0 for a key of another form.
std::int64_t index_in(std::string_view key, std::string_view prefix, std::int64_t first) {
  std::int64_t number = first;
  if (key.starts_with(prefix)) {
    std::from_chars(key.data() + prefix.size(), key.data() + key.size(), number);
  }
  return number - first;
}

/// The last day of the month of a day such as "2024-01-31".
std::string month_end(std::string_view day) {
  CivilDate civil{.year = 2024, .month = 1, .day = 1};
  std::from_chars(day.data(), day.data() + day.size(), civil.year);
  constexpr std::size_t kMonth = 5;
  if (day.size() > kMonth) {
    std::from_chars(day.data() + kMonth, day.data() + day.size(), civil.month);
  }
  const bool december = civil.month == 12;
  civil.year += december ? 1 : 0;
  civil.month = december ? 1 : civil.month + 1;
  return day_text({from_civil(civil).milliseconds - kDay});
}

}  // namespace

void fill_invoices(Database& database, std::uint64_t seed) {
  Dice dice(seed);
  fill_customers(database);
  fill_products(database);
  for (std::int64_t index = 0; index < kSeededInvoices; ++index) {
    fill_invoice(database, index, dice);
  }
}

void complete_invoices(Database& database) {
  Statement select(database, "SELECT uid, customer_gid, invoice_date FROM invoices ORDER BY uid");
  Statement update(database,
                   "UPDATE invoices SET manufacturer_order_number = ?, partner_id = ?,"
                   " pay_period_date = ? WHERE uid = ?");
  while (select.step()) {
    const std::int64_t index = index_in(select.text(0), "INV-", 1'001);
    const std::int64_t customer = index_in(select.text(1), "CUS-", 2'001);
    update.bind(numbered("M", 80'017 + 17 * index)).bind(numbered("PTR-", 301 + customer % 5));
    update.bind(month_end(select.text(2))).bind(select.text(0)).run();
  }
}

}  // namespace bvconn::sandbox

#include "sandbox/store/criteria_seed.h"

#include <array>
#include <charconv>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/conversions/date.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/store/dice.h"
#include "sandbox/store/documents.h"
#include "sandbox/store/documents_tree.h"
#include "sandbox/store/lists.h"

namespace bvconn::sandbox {
namespace {

constexpr std::int64_t kDay = 86'400'000;
constexpr std::int64_t kFirstCustomer = 2'001;

constexpr std::array<std::string_view, 3> kSpecStatuses{"SUBMITTED", "REGISTERED", "DENIED"};
constexpr std::array<std::string_view, 3> kSources{"WEB", "EDI", "PHONE"};
constexpr std::array<std::string_view, 4> kSpecifiers{"Ashgrove Architects", "Beacon & Partners",
                                                      "Elmhurst Engineers", "Jasper Planning"};

struct Prospect {
  std::string_view name, city, state, country, zip_code;
};
constexpr std::array kProspects{
    Prospect{"Millpond Joiners", "Madison", "WI", "US", "53703"},
    Prospect{"Northgate Glazing", "Columbus", "OH", "US", "43215"},
    Prospect{"Old Quay Masonry", "Halifax", "NS", "CA", "B3H 1A1"},
    Prospect{"Peartree Interiors", "Albany", "NY", "US", "12207"},
    Prospect{"Ridgeway Homes", "Boise", "ID", "US", "83702"},
    Prospect{"Sundial Roofing", "Calgary", "AB", "CA", "T2P 1J9"},
};

template <typename Items>
std::string_view nth(const Items& items, std::int64_t index) {
  return items[static_cast<std::size_t>(index) % items.size()];
}

Date day(int month, int day_of_month, std::int64_t days_later) {
  const Date first = from_civil({.year = 2025, .month = month, .day = day_of_month});
  return {first.milliseconds + days_later * kDay};
}

/// What a document says itself stays.
void add(const SoapNode& tree, std::string_view name, const Variant& value) {
  if (!child(tree, name)) tree.Nodes().Create(name, value);
}

class Criteria {
 public:
  explicit Criteria(Database& database) : database_(database), documents_(database) {}

  void projects();
  void quotes();
  void orders();
  void rmas();
  void revise(const DocumentKind& kind, std::string_view gid);

 private:
  /// Adds to all documents of a kind that are as they were made. `index` counts from 0.
  template <typename Add>
  void each(const DocumentKind& kind, Add add_to);
  void add_customer(const SoapNode& tree, std::string_view prefix, std::int64_t index) {
    const std::string gid = numbered("CUS-", kFirstCustomer + index);
    add(tree, std::string(prefix) + "GID", gid);
    add(tree, std::string(prefix) + "Name", documents_.customer_name(gid).value_or(""));
  }
  void write(std::string_view gid, const SoapNode& tree);

  Database& database_;
  Documents documents_;
};

void Criteria::write(std::string_view gid, const SoapNode& tree) {
  const std::string body = node_to_xml(tree);
  for (const char* sql : {"UPDATE documents SET body = ? WHERE gid = ?",
                          "UPDATE document_revisions SET body = ? WHERE document_gid = ?"}) {
    Statement(database_, sql).bind(body).bind(gid).run();
  }
}

template <typename Add>
void Criteria::each(const DocumentKind& kind, Add add_to) {
  std::vector<std::pair<std::string, std::string>> found;
  {
    Statement select(
        database_, "SELECT gid, body FROM documents WHERE kind = ? AND revision = 1 ORDER BY gid");
    select.bind(kind.name);
    while (select.step()) found.emplace_back(select.text(0), select.text(1));
  }
  for (const auto& [gid, body] : found) {
    std::int64_t number = 0;
    if (!gid.starts_with(kind.key_prefix)) continue;
    const char* const digits = gid.data() + kind.key_prefix.size();
    const auto read = std::from_chars(digits, gid.data() + gid.size(), number);
    if (read.ec != std::errc() || number < kind.first_key) continue;
    const SoapNode tree = node_from_xml(body);
    add_to(tree, number - kind.first_key);
    write(gid, tree);
  }
}

void Criteria::projects() {
  each(kProjectKind, [this](const SoapNode& tree, std::int64_t i) {
    add(tree, "DodgeNumber", numbered("D", 250'001 + 37 * i));
    // Every third project is one of a national account; its codes are those of the kind NA.
    add(tree, "NationalAccount", i % 3 == 0 ? numbered("NA", 1 + i % 4 * 3) : "");
    add(tree, "AppNumber", numbered("APP-", 7'001 + i));
    add(tree, "SpecNumber", numbered("SP-", 401 + i));
    add(tree, "SpecStatus", nth(kSpecStatuses, i));
    add(tree, "SpecType", numbered("S", 1 + i % 3));
    if (i % 2 == 0) add_customer(tree, "NSCustomer", (i + 5) % 12);
  });
}

void Criteria::quotes() {
  each(kQuoteKind, [this](const SoapNode& tree, std::int64_t i) {
    add_customer(tree, "Contractor", 1 + i % 4 * 3);
    add(tree, "SpecifierGID", numbered("SPC-", 1 + i % 4));
    add(tree, "SpecifierName", nth(kSpecifiers, i));
  });
}

void Criteria::orders() {
  each(kOrderKind, [](const SoapNode& tree, std::int64_t i) {
    add(tree, "PONumber", numbered("PO-", 52'001 + i));
    add(tree, "CreateDate", day(2, 3, 9 * i));
    // The codes of national accounts of the kind CF.
    add(tree, "CFAccount", i % 4 == 0 ? numbered("NA", 3 + i % 3 * 3) : "");
    add(tree, "HFR", i % 5 == 0 ? "Y" : "N");
    add(tree, "OrderSource", nth(kSources, i));
    add(tree, "ContractorFirstPO", numbered("CPO-", 801 + i));
  });
}

void Criteria::rmas() {
  each(kRmaKind, [this](const SoapNode& tree, std::int64_t i) {
    add(tree, "CustomerRefNumber", numbered("REF-", 301 + i));
    add_customer(tree, "Distributor", i % 4 * 3);
    add(tree, "DateSubmitted", day(3, 3, 2 * i));
  });
}

/// Makes what the document says its second revision; the first had another name.
void Criteria::revise(const DocumentKind& kind, std::string_view gid) {
  auto document = documents_.find(gid);
  if (!document || document->revision != 1) return;
  const SoapNode tree = document->tree();
  const std::string name = child_text(tree, "Name");
  set_child(tree, "Name", name + ", first draft");
  write(gid, tree);
  document->body = node_to_xml(tree);
  set_child(tree, "Name", name);
  documents_.keep(kind, *document, tree);
}

void fill_prospects(Lists lists) {
  std::int64_t index = 0;
  for (const Prospect& each : kProspects) {
    const SoapNode row = SoapNode::make("Customer");
    row.Nodes().Create("GID", numbered("PRO-", 1 + index));
    row.Nodes().Create("AccountNumber", "");
    row.Nodes().Create("Name", each.name);
    row.Nodes().Create("Keyword", each.name.substr(0, each.name.find(' ')));
    row.Nodes().Create("CustomerType", "PROSPECT");
    row.Nodes().Create("AgentID", std::to_string(100 + index));
    row.Nodes().Create("City", each.city);
    row.Nodes().Create("State", each.state);
    row.Nodes().Create("Country", each.country);
    row.Nodes().Create("ZipCode", each.zip_code);
    row.Nodes().Create("Active", "Y");
    row.Nodes().Create("Brimvale", "N");
    lists.add("prospect", row);
    ++index;
  }
}

/// Every fifteenth catalogue number is sold by one agent alone, from 100 on.
void fill_agents_of_numbers(Database& database) {
  const auto rows = Lists(database).rows("catalogue number");
  Statement update(
      database, "UPDATE list_rows SET body = ? WHERE list = 'catalogue number' AND position = ?");
  for (std::size_t i = 0; i < rows.size(); i += 15) {
    add(rows[i], "AgentID", std::to_string(100 + i / 15));
    update.bind(node_to_xml(rows[i])).bind(static_cast<std::int64_t>(i)).run();
  }
}

}  // namespace

void fill_criteria(Database& database, std::uint64_t) {
  Criteria criteria(database);
  criteria.projects();
  criteria.quotes();
  criteria.orders();
  criteria.rmas();
  for (const char* gid : {"QUO-4015", "QUO-4025"}) criteria.revise(kQuoteKind, gid);
  criteria.revise(kOrderKind, "ORD-5015");
  fill_prospects(Lists(database));
  fill_agents_of_numbers(database);
}

}  // namespace bvconn::sandbox

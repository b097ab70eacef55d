#include "sandbox/store/documents_seed.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/store/dice.h"
#include "sandbox/store/documents.h"
#include "sandbox/store/documents_forms.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

struct Site {
  std::string_view name, city, state, country;
};

constexpr std::array kSites{
    Site{"Maple Street Apartments", "Madison", "WI", "US"},
    Site{"Riverside Clinic", "Columbus", "OH", "US"},
    Site{"Old Mill Conversion", "Albany", "NY", "US"},
    Site{"Hilltop Library", "Boise", "ID", "US"},
    Site{"Harbour Café", "Halifax", "NS", "CA"},
    Site{"Fire Station 12", "Tucson", "AZ", "US"},
    Site{"Linden Court", "Calgary", "AB", "CA"},
    Site{"Quarry Road Warehouse", "Pittsburgh", "PA", "US"},
    Site{"Northside Gymnasium", "Duluth", "MN", "US"},
    Site{"Orchard House", "Savannah", "GA", "US"},
};
constexpr std::array<std::string_view, 3> kPhases{"phase 1", "phase 2", "annex"};
constexpr std::array<std::string_view, 3> kProjectStatuses{"OPEN", "OPEN", "NEGOTIATING"};
constexpr std::array<std::string_view, 2> kOrderStatuses{"ENTERED", "SHIPPED"};
constexpr std::array<std::string_view, 2> kSubmittalStatuses{"DRAFT", "SUBMITTED"};
constexpr std::array<std::string_view, 4> kComments{
    "Deliver to the back gate between 7 and 9 a.m.", "Colours to be agreed with the architect.",
    "Call the site manager a day ahead.", "Part deliveries are welcome."};
constexpr std::string_view kGeneral = "GENERAL";

/// The data of a new store in the making.
class Filling {
 public:
  Filling(Database& database, std::uint64_t seed)
      : documents_(database),
        // Not the dice that made the invoices, so that either can grow without the other.
        dice_(seed ^ 0x646F6373U),
        products_(documents_.products()),
        customers_(documents_.customer_gids()) {}

  void project(std::int64_t index);
  std::string quote(const std::string& project_gid);
  void order(const std::string& quote_gid);
  void rfqs(const std::string& quote_gid);
  void submittal(std::string_view owner_gid);
  void rma();

 private:
  SoapNode tree(std::string_view gid) { return documents_.find(gid)->tree(); }

  void keep(const DocumentKind& kind, std::string_view gid, std::string_view parent,
            const SoapNode& tree) {
    Document document;
    document.gid = gid;
    document.parent = parent;
    documents_.keep(kind, document, tree);
  }

  void comment(std::string_view gid) {
    const SoapNode form = comment_form("Comments", gid, kGeneral, dice_.one_of(kComments));
    documents_.keep_comment(gid, "", kGeneral, node_to_xml(form));
  }

  Documents documents_;
  Dice dice_;
  std::vector<Product> products_;
  std::vector<std::string> customers_;
};

void Filling::project(std::int64_t index) {
  constexpr std::int64_t kDay = 86'400'000;
  const std::string gid = documents_.fresh_gid(kProjectKind);
  const SoapNode node = empty_instrument("Project", kProjectKind, gid);
  const auto site_count = static_cast<std::int64_t>(kSites.size());
  const Site& site = kSites[static_cast<std::size_t>(index % site_count)];
  const std::string_view phase = kPhases[static_cast<std::size_t>(index / site_count)];
  set_child(node, "Name", std::string(site.name) + ", " + std::string(phase));
  set_child(node, "City", site.city);
  set_child(node, "State", site.state);
  set_child(node, "Country", site.country);
  set_child(node, "Status", dice_.one_of(kProjectStatuses));
  set_child(node, "AgentID", conversions::format_text(numbered("", dice_.between(90, 120)), "000"));
  const Date first_day = from_civil({.year = 2025, .month = 1, .day = 6});
  set_child(node, "BidDate", Date{first_day.milliseconds + dice_.between(0, 360) * kDay});
  const std::string& customer = dice_.one_of(customers_);
  set_customer(node, customer, documents_.customer_name(customer).value_or(""));
  const std::int64_t lines = dice_.between(2, 5);
  for (std::int64_t line = 0; line < lines; ++line) {
    const Product& product = dice_.one_of(products_);
    const std::int64_t percent = dice_.between(70, 100);
    append_line(node, product, dice_.between(1, 120), product.list_price_cents * percent / 100);
  }
  number_lines(node, gid);
  keep(kProjectKind, gid, "", node);
  comment(gid);
}

std::string Filling::quote(const std::string& project_gid) {
  const std::string gid = documents_.fresh_gid(kQuoteKind);
  keep(kQuoteKind, gid, project_gid, quote_form(gid, tree(project_gid), project_gid));
  comment(gid);
  return gid;
}

void Filling::order(const std::string& quote_gid) {
  const std::string gid = documents_.fresh_gid(kOrderKind);
  const SoapNode node = order_form(gid, tree(quote_gid));
  set_child(node, "Status", dice_.one_of(kOrderStatuses));
  keep(kOrderKind, gid, quote_gid, node);
  comment(gid);
  const std::string acknowledgement = documents_.fresh_gid(kAcknowledgementKind);
  const SoapNode paper = SoapNode::make("Acknowledgement");
  paper.Nodes().Create("GID", acknowledgement);
  paper.Nodes().Create("OrderGID", gid);
  paper.Nodes().Create("Address", acknowledgement_address(acknowledgement));
  keep(kAcknowledgementKind, acknowledgement, gid, paper);
}

void Filling::rfqs(const std::string& quote_gid) {
  std::string asked;
  const SoapNode quote = tree(quote_gid);
  for (const SoapNode& line : lines_of(quote)) {
    const std::string name = child_text(line, "Manufacturer");
    const std::string manufacturer = documents_.manufacturer_gid(name);
    if (asked.find(manufacturer + ",") != std::string::npos) continue;
    asked += manufacturer + ",";
    const std::string gid = documents_.fresh_gid(kRfqKind);
    keep(kRfqKind, gid, quote_gid, rfq_form(gid, quote_gid, manufacturer, name));
  }
}

void Filling::submittal(std::string_view owner_gid) {
  const std::string uid = documents_.fresh_gid(kSubmittalKind);
  const auto owner = documents_.find(owner_gid);
  const SoapNode node = SoapNode::make("Submittal");
  node.Nodes().Create("UID", uid);
  node.Nodes().Create("OwnerGID", owner_gid);
  node.Nodes().Create("Title", "Submittal for " + child_text(owner->tree(), "Name"));
  node.Nodes().Create("Status", dice_.one_of(kSubmittalStatuses));
  const SoapNode criteria = append_group(node.Nodes(), "Criteria");
  criteria.Nodes().Create("IncludeDrawings", dice_.between(0, 1) == 1);
  criteria.Nodes().Create("Copies", static_cast<std::int32_t>(dice_.between(1, 6)));
  const std::string line = line_key(lines_of(owner->tree()).front());
  const std::string_view text = dice_.one_of(kComments);
  const SoapNode entry = append_group(append_group(node.Nodes(), "Lines").Nodes(), "Line");
  entry.Nodes().Create("LineItemGID", line);
  entry.Nodes().Create("Comment", text);
  keep(kSubmittalKind, uid, owner_gid, node);
  documents_.keep_comment(uid, line, "", node_to_xml(entry));
}

void Filling::rma() {
  const std::string uid = documents_.fresh_gid(kRmaKind);
  const Product& product = dice_.one_of(products_);
  const SoapNode node =
      rma_form(uid, documents_.manufacturer_gid(product.manufacturer), product.manufacturer);
  set_child(node, "Status", "SAVED");
  append_line(node, product, dice_.between(1, 10), product.list_price_cents);
  number_lines(node, uid);
  keep(kRmaKind, uid, "", node);
}

std::string key(const DocumentKind& kind, std::int64_t index) {
  return numbered(kind.key_prefix, kind.first_key + index);
}

}  // namespace

void fill_documents(Database& database, std::uint64_t seed) {
  Filling filling(database, seed);
  for (std::int64_t i = 0; i < kSeededProjects; ++i) filling.project(i);
  for (std::int64_t i = 0; i < kSeededQuotes; ++i) {
    filling.rfqs(filling.quote(key(kProjectKind, i)));
  }
  for (std::int64_t i = 0; i < kSeededOrders; ++i) filling.order(key(kQuoteKind, i));
  for (std::int64_t i = 0; i < kSeededSubmittals; ++i) {
    // The first half belongs to projects, the second to quotes.
    const bool of_project = i < kSeededSubmittals / 2;
    filling.submittal(of_project ? key(kProjectKind, i)
                                 : key(kQuoteKind, i - kSeededSubmittals / 2));
  }
  for (std::int64_t i = 0; i < kSeededRmas; ++i) filling.rma();
}

}  // namespace bvconn::sandbox

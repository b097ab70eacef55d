#include <map>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/searches.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kSearch = "urn:SearchService";
constexpr const char* kInventory = "urn:InventoryInquiryService";

Rows prices(SoapCall& call, const std::vector<Criterion>& criteria) {
  return matching(call, call.store.lists().rows("price"), criteria);
}

void search_for_price_history(SoapCall& call) {
  answer_rows(call, prices(call, {{0, "SearchType"},
                                  {1, "CatalogNumber"},
                                  {2, "AgentID", Match::kNumber},
                                  {3, "DistributorName", Match::kContains},
                                  {4, "DistributorGID"},
                                  {5, "Date", Match::kTo}}));
}

void search_for_ph(SoapCall& call) {
  answer_rows(call, prices(call, {{0, "Description", Match::kContains},
                                  {1, "AgentID", Match::kNumber},
                                  {2, "CustomerGID"},
                                  {3, "CatalogNumber", Match::kAmong}}));
}

/// A row for each catalogue number that has prices.
void search_for_ph_average(SoapCall& call) {
  std::map<std::string, std::pair<double, int>> sums;
  for (const SoapNode& row : prices(call, {{0, "Description", Match::kContains},
                                           {1, "SearchType"},
                                           {2, "AgentID", Match::kNumber},
                                           {3, "CustomerGID"},
                                           {4, "CatalogNumber", Match::kAmong}})) {
    auto& [cents, count] = sums[child_text(row, "CatalogNumber")];
    cents += child_number(row, "Cents");
    ++count;
  }
  SoapNodes answer = begin_answer(call);
  for (const auto& [number, sum] : sums) {
    SoapNodes fields = append_group(answer, "Average").Nodes();
    fields.Create("CatalogNumber", number);
    fields.Create("AverageCents", conversions::round_half_even(sum.first / sum.second, 2));
  }
}

/// The form of the request is its author's business: a catalogue number is asked for where an
/// element holds it. A request without any asks for everything.
Rows inventory(SoapCall& call) {
  std::string text;
  for (const SoapNode& each : call.parameters) {
    const Variant value = each.Value();
    text += value.is(Variant::Type::kString) ? value.string() : node_to_xml(each);
  }
  const Rows rows = call.store.lists().rows("inventory");
  Rows asked;
  for (const SoapNode& row : rows) {
    const std::string number = child_text(row, "CatalogNumber");
    if (text.find(">" + number + "<") != std::string::npos) asked.push_back(row);
  }
  return asked.empty() ? rows : asked;
}

void get_inventory(SoapCall& call) {
  answer_rows(call, inventory(call));
}

}  // namespace

void add_price_searches(Operations& operations) {
  add_method(operations, kSearch, "searchForPriceHistory", search_for_price_history);
  add_method(operations, kSearch, "searchForPH", search_for_ph);
  add_method(operations, kSearch, "searchForPHAverage", search_for_ph_average);
  add_method(operations, kInventory, "getInventoryInfo", get_inventory);
  add_method(operations, kInventory, "getTotalInventoryInfo", get_inventory);
}

}  // namespace bvconn::sandbox

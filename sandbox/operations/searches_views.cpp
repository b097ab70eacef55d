#include <cstdint>
#include <optional>

#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/searches.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kSearch = "urn:SearchService";
constexpr const char* kOrders = "urn:OrderService";
constexpr const char* kZelt = "urn:ZeltViewService";

void append_view(SoapNodes answer, const Document& order, bool with_prices) {
  const SoapNode tree = order.tree();
  SoapNodes fields = append_group(answer, "OrderView").Nodes();
  fields.Create("GID", order.gid);
  fields.Create("OrderNumber", order.number);
  fields.Create("SAPOrderNumber", child_text(tree, "SAPOrderNumber"));
  fields.Create("Status", order.status);
  SoapNodes lines = append_group(fields, "Lines").Nodes();
  for (const SoapNode& line : lines_of(tree)) {
    SoapNodes view = append_group(lines, "Line").Nodes();
    view.Create("CatalogNumber", child_text(line, "CatalogNumber"));
    view.Create("Quantity", static_cast<std::int32_t>(child_number(line, "Quantity")));
    if (with_prices) view.Create("UnitPrice", child_number(line, "UnitPrice"));
  }
}

/// The orders whose rows fit, as views.
void answer_views(SoapCall& call, const std::vector<Criterion>& criteria, bool with_prices) {
  SoapNodes answer = begin_answer(call);
  for (const SoapNode& row : matching(call, document_rows(call, kOrderKind), criteria)) {
    append_view(answer, need(call, kOrderKind, child_text(row, "GID")), with_prices);
  }
}

void search_for_sap_order_view(SoapCall& call) {
  answer_views(call, {{0, "OrderNumber"}, {1, "SAPOrderNumber"}},
               to_boolean(call.parameters.Item(2).Value()));
}

void get_torvex_view(SoapCall& call) {
  const Document order = need(call, kOrderKind, key_at(call, 0));
  append_view(begin_answer(call), order, true);
}

/// By the key of an order, or by a purchase order, an agent and a customer's account.
void find_zelt_view(SoapCall& call) {
  if (call.parameters.Count() == 1) {
    get_torvex_view(call);
    return;
  }
  Rows rows = document_rows(call, kOrderKind);
  for (const SoapNode& customer : call.store.lists().rows("customer")) {
    const std::string gid = child_text(customer, "GID");
    for (const SoapNode& row : rows) {
      if (child_text(row, "CustomerGID") != gid) continue;
      row.Nodes().Create("AccountNumber", child_text(customer, "AccountNumber"));
    }
  }
  static const std::vector<Criterion> kCriteria{
      {0, "PONumber"}, {1, "AgentID", Match::kNumber}, {2, "AccountNumber"}};
  SoapNodes answer = begin_answer(call);
  for (const SoapNode& row : matching(call, rows, kCriteria)) {
    append_view(answer, need(call, kOrderKind, child_text(row, "GID")), true);
  }
}

/// An order whose number is this.
std::optional<Document> order_at(SoapCall& call) {
  return call.store.documents().find_by_number(kOrderKind, key_at(call, 0));
}

// Of the past of an order its last revisions are known.
void search_for_header_history(SoapCall& call) {
  const auto order = order_at(call);
  SoapNodes answer = begin_answer(call);
  if (!order) return;
  for (const Document& each : call.store.documents().revisions(*order)) {
    SoapNodes fields = append_group(answer, "History").Nodes();
    fields.Create("OrderNumber", order->number);
    fields.Create("Revision", static_cast<std::int32_t>(each.revision));
    fields.Create("Status", child_text(each.tree(), "Status"));
  }
}

void search_for_line_history(SoapCall& call) {
  const auto order = order_at(call);
  SoapNodes answer = begin_answer(call);
  if (!order) return;
  for (const Document& each : call.store.documents().revisions(*order)) {
    const SoapNode tree = each.tree();
    for (const SoapNode& line : lines_of(tree)) {
      SoapNodes fields = append_group(answer, "History").Nodes();
      fields.Create("OrderNumber", order->number);
      fields.Create("Revision", static_cast<std::int32_t>(each.revision));
      fields.Create("LineItemGID", line_key(line));
      fields.Create("CatalogNumber", child_text(line, "CatalogNumber"));
      fields.Create("Quantity", static_cast<std::int32_t>(child_number(line, "Quantity")));
    }
  }
}

void catalog_numbers_of_invoice(SoapCall& call) {
  const std::string number = key_at(call, 0);
  const auto invoice = call.store.invoice_by_number(number);
  if (!invoice) refuse_key("invoice", "InvoiceNumber", number);
  SoapNodes answer = begin_answer(call);
  for (const InvoiceLine& line : invoice->lines) {
    SoapNodes fields = append_group(answer, "Line").Nodes();
    fields.Create("CatalogNumber", line.catalog_number);
    fields.Create("Description", line.description);
    fields.Create("Quantity", static_cast<std::int32_t>(line.quantity));
  }
}

}  // namespace

void add_order_views(Operations& operations) {
  add_method(operations, kSearch, "searchForSAPOrderView", search_for_sap_order_view);
  add_method(operations, kOrders, "getOrderTorvexView", get_torvex_view);
  add_method(operations, kZelt, "find", find_zelt_view);
  add_method(operations, kSearch, "searchForOrderHeaderHistory", search_for_header_history);
  add_method(operations, kSearch, "searchForOrderLineHistory", search_for_line_history);
  add_method(operations, "urn:RMAService", "getInvoiceInformation", catalog_numbers_of_invoice);
}

}  // namespace bvconn::sandbox

#include <cstdint>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/locks.h"
#include "sandbox/store/documents_forms.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kService = "urn:OrderService";
constexpr const char* kSalesPeople = "CommissionableSalesPeople";

void append_view_line(SoapNodes lines, const SoapNode& line, bool shipped, bool with_prices) {
  const auto quantity = static_cast<std::int32_t>(child_number(line, "Quantity"));
  const double price = child_number(line, "UnitPrice");
  SoapNodes fields = append_group(lines, "Line").Nodes();
  fields.Create("GID", line_key(line));
  fields.Create("CatalogNumber", child_text(line, "CatalogNumber"));
  fields.Create("Description", child_text(line, "Description"));
  fields.Create("Quantity", quantity);
  fields.Create("QuantityShipped", shipped ? quantity : 0);
  if (!with_prices) return;
  fields.Create("UnitPrice", price);
  fields.Create("Amount", conversions::round_half_even(price * quantity, 2));
}

void get_sap_order_view(SoapCall& call) {
  const Document order = need(call, kOrderKind, key_at(call, 0));
  const bool with_prices = to_boolean(call.parameters.Item(1).Value());
  const SoapNode tree = order.tree();
  SoapNodes fields = begin_answer(call);
  fields.Create("GID", order.gid);
  fields.Create("OrderNumber", order.number);
  fields.Create("SAPOrderNumber", child_text(tree, "SAPOrderNumber"));
  fields.Create("Status", order.status);
  SoapNodes lines = append_group(fields, "Lines").Nodes();
  double total = 0;
  for (const SoapNode& line : lines_of(tree)) {
    append_view_line(lines, line, order.status == "SHIPPED", with_prices);
    total += child_number(line, "Quantity") * child_number(line, "UnitPrice");
  }
  if (with_prices) fields.Create("Total", conversions::round_half_even(total, 2));
}

void get_sap_info(SoapCall& call) {
  const Document order = need(call, kOrderKind, key_at(call, 0));
  const SoapNode tree = order.tree();
  std::string customer = key_at(call, 2);
  if (customer.empty()) customer = find_text(child(tree, "Customer"), {"GID"});
  const auto name = call.store.documents().customer_name(customer);
  if (!name) refuse_key("customer", "GID", customer);
  SoapNodes fields = begin_answer(call);
  fields.Create("OrderGID", order.gid);
  fields.Create("SAPOrderNumber", child_text(tree, "SAPOrderNumber"));
  fields.Create("SAPStatus", order.status);
  fields.Create("AgentGID", key_at(call, 1));
  fields.Create("CustomerGID", customer);
  fields.Create("CustomerName", *name);
  fields.Create("CreditStatus", "GOOD");
  if (const SoapNode people = child(tree, kSalesPeople)) fields.Append(people);
}

void update_sales_people(SoapCall& call) {
  const SoapNode people = call.parameters.Item(0);
  Document order = need_unlocked(call, kOrderKind, key_at(call, 1));
  const SoapNode tree = order.tree();
  if (child(tree, kSalesPeople)) {
    set_child(tree, kSalesPeople, people);
  } else {
    tree.Nodes().Append(people);
  }
  call.store.documents().keep(kOrderKind, order, tree);
  SoapNodes fields = begin_answer(call);
  fields.Create("GID", order.gid);
  fields.Append(people);
}

void get_all_acknowledgements(SoapCall& call) {
  const Document order = need(call, kOrderKind, key_at(call, 0));
  Documents documents = call.store.documents();
  SoapNodes answer = begin_answer(call);
  for (const Document& each : documents.children(kAcknowledgementKind, order.gid)) {
    answer.Append(each.tree());
  }
}

void get_acknowledgement(SoapCall& call) {
  const Document acknowledgement = need(call, kAcknowledgementKind, key_at(call, 0));
  answer_text(call, acknowledgement_address(acknowledgement.gid));
}

/// What the client wrote is kept as the acknowledgement's content.
void new_acknowledgement(SoapCall& call) {
  const SoapNode written = call.parameters.Item(0);
  const std::string order_gid = find_text(written, {"OrderGID", "orderGID"});
  if (order_gid.empty()) refuse("The acknowledgement names no order: no OrderGID in it");
  const Document order = need(call, kOrderKind, order_gid);
  Documents documents = call.store.documents();
  Document acknowledgement;
  acknowledgement.gid = documents.fresh_gid(kAcknowledgementKind);
  acknowledgement.parent = order.gid;
  const std::string address = acknowledgement_address(acknowledgement.gid);
  const SoapNode tree = SoapNode::make("Acknowledgement");
  tree.Nodes().Create("GID", acknowledgement.gid);
  tree.Nodes().Create("OrderGID", order.gid);
  tree.Nodes().Create("Address", address);
  tree.Nodes().Create("Content", written);
  documents.keep(kAcknowledgementKind, acknowledgement, tree);
  answer_text(call, address);
}

}  // namespace

std::vector<DocumentRow> order_rows() {
  return {{kService, "getSAPOrderView", get_sap_order_view},
          {kService, "getSAPInfo", get_sap_info},
          {kService, "updateCommSalesPeople", update_sales_people},
          {kService, "getAllAcknowledgementOverview", get_all_acknowledgements},
          {kService, "getAcknowledgement", get_acknowledgement},
          {kService, "newAcknowledgement", new_acknowledgement}};
}

}  // namespace bvconn::sandbox

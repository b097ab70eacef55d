#include "sandbox/store/reconciles.h"

#include "bvconn/platform/soap/variant.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {

SoapNode reconcile_form(std::string_view gid, std::string_view agent) {
  SoapNode node = SoapNode::make("BVOrderReconcileBean");
  node.Nodes().Create("GID", gid);
  node.Nodes().Create("ReconcileNumber", gid.substr(kReconcileKind.key_prefix.size()));
  node.Nodes().Create("Status", "OPEN");
  node.Nodes().Create("AgentID", agent);
  node.Nodes().Create("PayPeriodDate", "");
  node.Nodes().Create("LockedBy", "");
  append_group(node.Nodes(), "Lines");
  return node;
}

void append_invoice_line(const SoapNode& reconcile, const Invoice& invoice) {
  SoapNode lines = child(reconcile, "Lines");
  // A client's own document need not have any.
  if (!lines) lines = append_group(reconcile.Nodes(), "Lines");
  SoapNodes fields = append_group(lines.Nodes(), "Line").Nodes();
  fields.Create("GID", invoice.uid);
  fields.Create("InvoiceNumber", invoice.invoice_number);
  fields.Create("TorvexOrderNumber", invoice.torvex_order_number);
  fields.Create("Amount", static_cast<double>(goods_cents(invoice)) / 100.0);
}

void fill_reconciles(Database& database) {
  Documents documents(database);
  for (const char* uid : {"INV-1038", "INV-1039", "INV-1040"}) {
    const auto invoice = find_invoice(database, uid);
    Document document;
    document.gid = documents.fresh_gid(kReconcileKind);
    const SoapNode tree = reconcile_form(document.gid, invoice->agent_id);
    append_invoice_line(tree, *invoice);
    documents.keep(kReconcileKind, document, tree);
  }
}

}  // namespace bvconn::sandbox

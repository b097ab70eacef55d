#include <cstdint>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/today.h"
#include "sandbox/store/documents_forms.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kService = "urn:RMAService";

// As with projects, what is new is not kept before it is saved.
void new_rma(SoapCall& call) {
  const std::string manufacturer = key_at(call, 0);
  Documents documents = call.store.documents();
  const auto name = documents.manufacturer_name(manufacturer);
  if (!name) refuse_key("manufacturer", "GID", manufacturer);
  call.results.Append(rma_form(documents.fresh_gid(kRmaKind), manufacturer, *name));
}

void get_rma(SoapCall& call) {
  call.results.Append(need(call, kRmaKind, key_at(call, 0)).tree());
}

// Clients want a node with children back, not a text.
void save_rma(SoapCall& call) {
  call.results.Append(keep_document(call, kRmaKind, document_at(call, 0)).tree());
}

void submit_rma(SoapCall& call) {
  const SoapNode tree = document_at(call, 0);
  set_child(tree, "DateSubmitted", today());
  answer_state(call, kRmaKind, keep_document(call, kRmaKind, tree, {}, "SUBMITTED"));
}

void open_rma(SoapCall& call) {
  Document rma = need(call, kRmaKind, key_at(call, 0));
  keep_status(call, kRmaKind, rma, "OPEN");
  call.results.Append(rma.tree());
}

void get_invoice_info(SoapCall& call) {
  const std::string number = key_at(call, 0);
  const auto invoice = call.store.invoice_by_number(number);
  if (!invoice) refuse_key("invoice", "InvoiceNumber", number);
  SoapNodes fields = begin_answer(call);
  fields.Create("InvoiceNumber", invoice->invoice_number);
  fields.Create("InvoiceUID", invoice->uid);
  fields.Create("InvoiceDate", conversions::text_to_date(invoice->invoice_date));
  fields.Create("CustomerGID", invoice->customer.gid);
  fields.Create("CustomerName", invoice->customer.name);
  fields.Create("PONumber", invoice->po_number);
  SoapNodes lines = append_group(fields, "Lines").Nodes();
  for (const InvoiceLine& line : invoice->lines) {
    SoapNodes each = append_group(lines, "Line").Nodes();
    each.Create("LineNumber", static_cast<std::int32_t>(line.line_number));
    each.Create("CatalogNumber", line.catalog_number);
    each.Create("Description", line.description);
    each.Create("Quantity", static_cast<std::int32_t>(line.quantity));
  }
}

}  // namespace

std::vector<DocumentRow> rma_rows() {
  return {{kService, "newRMA", new_rma},   {kService, "getRMA", get_rma},
          {kService, "saveRMA", save_rma}, {kService, "submitRMA", submit_rma},
          {kService, "openRMA", open_rma}, {kService, "getInvoiceInfo", get_invoice_info}};
}

}  // namespace bvconn::sandbox

#include <cstdint>
#include <string>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kService = "urn:InvoiceService";
/// The code with which the server says that it has no such invoice.
constexpr const char* kNoSuchInvoice = "10041";

Variant money(std::int64_t cents) {
  return static_cast<double>(cents) / 100.0;
}

Variant whole(std::int64_t number) {
  return static_cast<std::int32_t>(number);
}

/// A node without a value of its own, appended to `parent`.
SoapNode append_group(SoapNodes parent, std::string_view name) {
  SoapNode group = SoapNode::make(name);
  parent.Append(group);
  return group;
}

void append_customer(SoapNodes parent, const Customer& customer) {
  SoapNodes fields = append_group(parent, "Customer").Nodes();
  fields.Create("GID", customer.gid);
  fields.Create("AccountNumber", customer.account_number);
  fields.Create("Name", customer.name);
  fields.Create("City", customer.city);
  fields.Create("State", customer.state);
  fields.Create("Country", customer.country);
  fields.Create("ZipCode", customer.zip_code);
}

void append_line(SoapNodes parent, const InvoiceLine& line) {
  SoapNodes fields = append_group(parent, "Line").Nodes();
  fields.Create("LineNumber", whole(line.line_number));
  fields.Create("CatalogNumber", line.catalog_number);
  fields.Create("Description", line.description);
  fields.Create("Manufacturer", line.manufacturer);
  fields.Create("Unit", line.unit);
  fields.Create("Quantity", whole(line.quantity));
  fields.Create("UnitPrice", money(line.unit_price_cents));
  fields.Create("Amount", money(line.quantity * line.unit_price_cents));
}

void append_invoice(SoapNodes results, const Invoice& invoice) {
  std::int64_t subtotal = 0;
  for (const InvoiceLine& line : invoice.lines) subtotal += line.quantity * line.unit_price_cents;
  SoapNodes fields = append_group(results, "return").Nodes();
  fields.Create("InvoiceUID", invoice.uid);
  fields.Create("InvoiceNumber", invoice.invoice_number);
  fields.Create("InvoiceDate", conversions::text_to_date(invoice.invoice_date));
  fields.Create("DueDate", conversions::text_to_date(invoice.due_date));
  fields.Create("Status", invoice.status);
  fields.Create("AgentID", invoice.agent_id);
  fields.Create("PONumber", invoice.po_number);
  fields.Create("ProjectName", invoice.project_name);
  fields.Create("TorvexOrderNumber", invoice.torvex_order_number);
  append_customer(fields, invoice.customer);
  SoapNodes lines = append_group(fields, "Lines").Nodes();
  for (const InvoiceLine& line : invoice.lines) append_line(lines, line);
  fields.Create("Subtotal", money(subtotal));
  fields.Create("Freight", money(invoice.freight_cents));
  fields.Create("Tax", money(invoice.tax_cents));
  fields.Create("Total", money(subtotal + invoice.freight_cents + invoice.tax_cents));
}

void get_invoice(SoapCall& call) {
  const std::string uid = to_text(call.parameters.Item(0).Value());
  const auto invoice = call.sandbox.store.invoice(uid);
  if (!invoice) {
    throw Fault{.code = kNoSuchInvoice,
                .text = "There is no invoice with the UID '" + uid + "'",
                .detail = {{"InvoiceUID", uid}}};
  }
  append_invoice(call.results, *invoice);
}

}  // namespace

void add_invoices(Operations& operations) {
  operations.soap[{kService, "getInvoice"}] = get_invoice;
}

}  // namespace bvconn::sandbox

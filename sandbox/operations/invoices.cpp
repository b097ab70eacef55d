#include <cstdint>
#include <string>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/invoice_tree.h"
#include "sandbox/store/documents_tree.h"

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

}  // namespace

void append_invoice(SoapNodes fields, const Invoice& invoice) {
  const std::int64_t subtotal = goods_cents(invoice);
  fields.Create("InvoiceUID", invoice.uid);
  fields.Create("InvoiceNumber", invoice.invoice_number);
  fields.Create("InvoiceDate", conversions::text_to_date(invoice.invoice_date));
  fields.Create("DueDate", conversions::text_to_date(invoice.due_date));
  fields.Create("Status", invoice.status);
  fields.Create("AgentID", invoice.agent_id);
  fields.Create("PONumber", invoice.po_number);
  fields.Create("ProjectName", invoice.project_name);
  fields.Create("TorvexOrderNumber", invoice.torvex_order_number);
  fields.Create("ManufacturerOrderNumber", invoice.manufacturer_order_number);
  fields.Create("PartnerID", invoice.partner_id);
  fields.Create("PayPeriodDate", conversions::text_to_date(invoice.pay_period_date));
  append_customer(fields, invoice.customer);
  SoapNodes lines = append_group(fields, "Lines").Nodes();
  for (const InvoiceLine& line : invoice.lines) append_line(lines, line);
  fields.Create("Subtotal", money(subtotal));
  fields.Create("Freight", money(invoice.freight_cents));
  fields.Create("Tax", money(invoice.tax_cents));
  fields.Create("Total", money(subtotal + invoice.freight_cents + invoice.tax_cents));
}

namespace {

Invoice need_invoice(SoapCall& call) {
  const std::string uid = key_at(call, 0);
  auto invoice = call.store.invoice(uid);
  if (!invoice) {
    throw Fault{.code = kNoSuchInvoice,
                .text = "There is no invoice with the UID '" + uid + "'",
                .detail = {{"InvoiceUID", uid}}};
  }
  return std::move(*invoice);
}

void get_invoice(SoapCall& call) {
  const Invoice invoice = need_invoice(call);
  append_invoice(begin_answer(call), invoice);
}

void get_sap_invoice(SoapCall& call) {
  const Invoice invoice = need_invoice(call);
  const bool cleared = invoice.status == "PAID" || invoice.status == kClosedInvoice;
  SoapNodes fields = begin_answer(call);
  fields.Create("SAPInvoiceNumber", "0090" + invoice.invoice_number);
  fields.Create("SAPStatus", cleared ? "CLEARED" : "OPEN");
  append_invoice(fields, invoice);
}

std::string criterion(const SoapCall& call, std::size_t place) {
  const Variant value = call.parameters.Item(place).Value();
  return value.missing() ? std::string() : to_text(value);
}

std::string date_criterion(const SoapCall& call, std::size_t place) {
  const std::string text = criterion(call, place);
  if (text.empty()) return text;
  const auto date = conversions::date_of(text);
  if (!date) refuse("'" + text + "' is no date");
  return conversions::iso_date_text(*date).substr(0, std::string_view("2024-01-31").size());
}

InvoiceCriteria criteria_of(const SoapCall& call) {
  return {.invoice_number = criterion(call, 0),
          .po_number = criterion(call, 1),
          .project_name = criterion(call, 2),
          .manufacturer = criterion(call, 3),
          .manufacturer_order_number = criterion(call, 4),
          .status = criterion(call, 5),
          .customer_gid = criterion(call, 6),
          .sold_to_name = criterion(call, 7),
          .account_number = criterion(call, 8),
          .partner_id = criterion(call, 9),
          .agent_id = conversions::format_text(criterion(call, 10), "000"),
          .torvex_order_number = criterion(call, 11),
          .date_from = date_criterion(call, 12),
          .date_to = date_criterion(call, 13),
          .pay_period_from = date_criterion(call, 14),
          .pay_period_to = date_criterion(call, 15)};
}

void search_for_invoices(SoapCall& call) {
  const auto invoices = call.store.invoices(criteria_of(call));
  SoapNodes answer = begin_answer(call);
  for (const Invoice& each : invoices)
    append_invoice(append_group(answer, "Invoice").Nodes(), each);
}

}  // namespace

void add_invoices(Operations& operations) {
  add_method(operations, kService, "getInvoice", get_invoice);
  add_method(operations, kService, "getSAPInvoice", get_sap_invoice);
  add_method(operations, kService, "searchForInvoices", search_for_invoices);
}

}  // namespace bvconn::sandbox

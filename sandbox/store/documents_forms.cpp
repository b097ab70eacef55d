#include "sandbox/store/documents_forms.h"

#include "bvconn/platform/conversions/date.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr std::int64_t kDay = 86'400'000;
/// How long the prices of a quote hold after the bids are due.
constexpr std::int64_t kPriceDays = 90;

/// The digits of a key: "3001" of "PRJ-3001".
std::string digits_of(std::string_view gid) {
  const auto dash = gid.find('-');
  return std::string(dash == std::string_view::npos ? gid : gid.substr(dash + 1));
}

Variant money(std::int64_t cents) {
  return static_cast<double>(cents) / 100.0;
}

/// One node cannot stand in two documents.
SoapNode copy_of(const SoapNode& node) {
  return node_from_xml(node_to_xml(node));
}

Date expiration_of(const SoapNode& project) {
  const SoapNode bid = child(project, "BidDate");
  if (bid && bid.Value().is(Variant::Type::kDate)) {
    return {bid.Value().date().milliseconds + kPriceDays * kDay};
  }
  return from_civil({.year = 2027, .month = 12, .day = 31});
}

}  // namespace

SoapNode empty_instrument(std::string_view root, const DocumentKind& kind, std::string_view gid) {
  SoapNode node = SoapNode::make(root);
  node.Nodes().Create("GID", gid);
  node.Nodes().Create(kind.number_field, std::string(1, kind.key_prefix.front()) + digits_of(gid));
  node.Nodes().Create("Name", "");
  node.Nodes().Create("Status", "NEW");
  node.Nodes().Create("AgentID", "");
  node.Nodes().Create("LockedBy", "");
  append_group(node.Nodes(), "Customer");
  append_group(node.Nodes(), "Lines");
  return node;
}

void take_over(const SoapNode& from, const SoapNode& to) {
  for (const char* name : {"Name", "AgentID"}) set_child(to, name, child_text(from, name));
  if (const SoapNode customer = child(from, "Customer")) {
    for (const SoapNode& each : customer.Nodes())
      child(to, "Customer").Nodes().Append(copy_of(each));
  }
  for (const SoapNode& line : lines_of(from)) child(to, "Lines").Nodes().Append(copy_of(line));
}

void number_lines(const SoapNode& document, std::string_view gid) {
  std::int32_t number = 0;
  for (const SoapNode& line : lines_of(document)) {
    ++number;
    set_child(line, "GID", std::string(gid) + "-" + std::to_string(number));
    set_child(line, "LineNumber", number);
  }
}

void append_line(const SoapNode& document, const Product& product, std::int64_t quantity,
                 std::int64_t unit_price_cents) {
  SoapNodes fields = append_group(child(document, "Lines").Nodes(), "Line").Nodes();
  fields.Create("GID", "");
  fields.Create("LineNumber", std::int32_t{0});
  fields.Create("CatalogNumber", product.catalog_number);
  fields.Create("Description", product.description);
  fields.Create("Manufacturer", product.manufacturer);
  fields.Create("Unit", product.unit);
  fields.Create("Quantity", static_cast<std::int32_t>(quantity));
  fields.Create("UnitPrice", money(unit_price_cents));
}

void set_customer(const SoapNode& document, std::string_view gid, std::string_view name) {
  SoapNode customer = child(document, "Customer");
  if (!customer) customer = append_group(document.Nodes(), "Customer");
  set_child(customer, "GID", gid);
  set_child(customer, "Name", name);
}

SoapNode quote_form(std::string_view gid, const SoapNode& project, std::string_view project_gid) {
  SoapNode quote = empty_instrument("Quote", kQuoteKind, gid);
  quote.Nodes().Create("ProjectGID", project_gid);
  quote.Nodes().Create("PriceExpirationDate", expiration_of(project));
  take_over(project, quote);
  number_lines(quote, gid);
  return quote;
}

SoapNode order_form(std::string_view gid, const SoapNode& quote) {
  SoapNode order = empty_instrument("Order", kOrderKind, gid);
  order.Nodes().Create("QuoteGID", child_text(quote, "GID"));
  order.Nodes().Create("SAPOrderNumber", "00" + digits_of(gid));
  take_over(quote, order);
  number_lines(order, gid);
  return order;
}

SoapNode rfq_form(std::string_view gid, std::string_view quote_gid,
                  std::string_view manufacturer_gid, std::string_view manufacturer) {
  SoapNode rfq = SoapNode::make("RFQ");
  rfq.Nodes().Create("GID", gid);
  rfq.Nodes().Create("QuoteGID", quote_gid);
  rfq.Nodes().Create("ManufacturerGID", manufacturer_gid);
  rfq.Nodes().Create("ManufacturerName", manufacturer);
  rfq.Nodes().Create("MfrQuoteNumber", "");
  rfq.Nodes().Create("Status", "SENT");
  return rfq;
}

SoapNode rma_form(std::string_view uid, std::string_view manufacturer_gid,
                  std::string_view manufacturer) {
  SoapNode rma = SoapNode::make("RMARequestBean");
  rma.Nodes().Create("UID", uid);
  rma.Nodes().Create("RMANumber", "M" + digits_of(uid));
  rma.Nodes().Create("ManufacturerGID", manufacturer_gid);
  rma.Nodes().Create("ManufacturerName", manufacturer);
  rma.Nodes().Create("Status", "NEW");
  append_group(rma.Nodes(), "Lines");
  return rma;
}

std::string acknowledgement_address(std::string_view gid) {
  return "http://torvex.brimvale.example/acknowledgements/" + std::string(gid) + ".html";
}

SoapNode comment_form(std::string_view root, std::string_view gid, std::string_view type,
                      std::string_view text) {
  SoapNode comments = SoapNode::make(root);
  comments.Nodes().Create("GID", gid);
  comments.Nodes().Create("CommentType", type);
  comments.Nodes().Create("Comment", text);
  return comments;
}

}  // namespace bvconn::sandbox

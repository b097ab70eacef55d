#include <cstdint>

#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kProducts = "urn:ProductService";

/// What the sandbox takes for the cost of a product, and from which price on it wants an approval.
constexpr std::int64_t kCostPercent = 60;
constexpr std::int64_t kNationalCostPercent = 55;
constexpr std::int64_t kApprovalCents = 10'000;

void pilfer(SoapCall& call) {
  Document document = need_instrument(call, key_at(call, 0));
  const std::string previous = document.locked_by;
  call.store.documents().lock(kind_of(document), document, call.user_id);
  SoapNodes fields = begin_answer(call);
  fields.Create("GID", document.gid);
  fields.Create("LockedBy", call.user_id);
  fields.Create("PreviouslyLockedBy", previous);
}

template <const DocumentKind& kKind>
void get_column_values(SoapCall& call) {
  const Document document = need(call, kKind, key_at(call, 0));
  SoapNodes answer = begin_answer(call);
  answer.Create("GID", document.gid);
  SoapNodes columns = append_group(answer, "Columns").Nodes();
  for (const SoapNode& line : lines_of(document.tree())) {
    SoapNodes fields = append_group(columns, "Column").Nodes();
    fields.Create("LineItemGID", line_key(line));
    fields.Create("CatalogNumber", child_text(line, "CatalogNumber"));
    fields.Create("UnitPrice", child_number(line, "UnitPrice"));
  }
}

/// The products that a list of line items names, in its order.
std::vector<Product> products_in(SoapCall& call, const SoapNode& line_items) {
  std::vector<Product> products;
  for (const SoapNode& item : holders_of(line_items, "CatalogNumber")) {
    const std::string number = child_text(item, "CatalogNumber");
    auto product = call.store.documents().product(number);
    if (!product) refuse_key("product", "CatalogNumber", number);
    products.push_back(std::move(*product));
  }
  return products;
}

void get_product_approvals(SoapCall& call) {
  const std::string agent = key_at(call, 0);
  const auto products = products_in(call, call.parameters.Item(1));
  SoapNodes answer = begin_answer(call);
  answer.Create("AgentGID", agent);
  for (const Product& product : products) {
    SoapNodes fields = append_group(answer, "ProductApproval").Nodes();
    fields.Create("CatalogNumber", product.catalog_number);
    fields.Create("ApprovalRequired", product.list_price_cents >= kApprovalCents);
  }
}

void get_product_cost(SoapCall& call) {
  const std::string customer = key_at(call, 1);
  if (!customer.empty() && !call.store.documents().customer_name(customer)) {
    refuse_key("customer", "GID", customer);
  }
  const bool national = !key_at(call, 2).empty();
  const auto products = products_in(call, call.parameters.Item(3));
  SoapNodes answer = begin_answer(call);
  for (const Product& product : products) {
    const std::int64_t percent = national ? kNationalCostPercent : kCostPercent;
    SoapNodes fields = append_group(answer, "ProductCost").Nodes();
    fields.Create("CatalogNumber", product.catalog_number);
    fields.Create("Cost", static_cast<double>(product.list_price_cents * percent / 100) / 100.0);
  }
}

}  // namespace

std::vector<DocumentRow> instrument_rows() {
  return {{"urn:SalesInstrumentService", "pilferSalesInstrument", pilfer},
          {"urn:QuoteService", "getDefaultColumnValues", get_column_values<kQuoteKind>},
          {"urn:OrderService", "getDefaultColumnValues", get_column_values<kOrderKind>},
          {kProducts, "getProductApprovals", get_product_approvals},
          {kProducts, "getProductCost", get_product_cost}};
}

}  // namespace bvconn::sandbox

#include <cstdint>
#include <limits>
#include <map>

#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/routes.h"
#include "sandbox/operations/searches.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kSearch = "urn:SearchService";
constexpr const char* kRma = "urn:RMAService";

std::vector<Criterion> order_criteria(std::size_t first) {
  return {{first, "OrderNumber"},
          {first + 1, "SAPOrderNumber"},
          {first + 2, "Status"},
          {first + 3, "Name", Match::kContains},
          {first + 4, "PONumber"},
          {first + 5, "QuoteNumber"},
          {first + 6, "AgentID", Match::kNumber},
          {first + 7, "CatalogNumber"},
          {first + 8, "CustomerGID"},
          {first + 9, "CustomerName", Match::kContains},
          {first + 10, "CustomerCity", Match::kContains},
          {first + 11, "CustomerState"},
          {first + 12, "CustomerCountry"},
          {first + 13, "NationalAccount"},
          {first + 14, "CFAccount"},
          {first + 15, "ManufacturerGID"},
          {first + 16, "CreateDate", Match::kFrom},
          {first + 17, "CreateDate", Match::kTo},
          {first + 19, "HFR", Match::kOnly, "Y"},
          {first + 20, "OrderSource"},
          {first + 21, "DodgeNumber"},
          {first + 22, "ContractorFirstPO"}};
}

// A quote's customer is looked for as its distributor.
std::vector<Criterion> quote_criteria(std::size_t first) {
  return {{first, "QuoteNumber"},
          {first + 1, "Status"},
          {first + 2, "Name", Match::kContains},
          {first + 3, "City", Match::kContains},
          {first + 4, "State"},
          {first + 5, "AgentID", Match::kNumber},
          {first + 6, "CatalogNumber"},
          {first + 7, "CustomerGID"},
          {first + 8, "CustomerName", Match::kContains},
          {first + 9, "ContractorGID"},
          {first + 10, "ContractorName", Match::kContains},
          {first + 11, "SpecifierGID"},
          {first + 12, "SpecifierName", Match::kContains},
          {first + 13, "BidDate", Match::kFrom},
          {first + 14, "BidDate", Match::kTo},
          {first + 15, "NationalAccount"},
          {first + 17, "Country"},
          {first + 18, "DodgeNumber"}};
}

std::vector<Criterion> project_criteria(std::size_t first) {
  return {{first, "ProjectNumber"},
          {first + 1, "Name", Match::kContains},
          {first + 2, "City", Match::kContains},
          {first + 3, "State"},
          {first + 4, "Country"},
          {first + 5, "Status"},
          {first + 6, "AgentID", Match::kNumber},
          {first + 7, "CatalogNumber"},
          {first + 8, "CustomerGID"},
          {first + 9, "CustomerName", Match::kContains},
          {first + 10, "BidDate", Match::kFrom},
          {first + 11, "BidDate", Match::kTo},
          {first + 12, "QuoteNumber"},
          {first + 13, "AppNumber"},
          {first + 14, "SpecStatus"},
          {first + 15, "SpecNumber"},
          {first + 16, "NationalAccount"},
          {first + 17, "DodgeNumber"},
          {first + 18, "NSCustomerGID"},
          {first + 19, "NSCustomerName", Match::kContains},
          {first + 20, "SpecType"}};
}

void add_texts(const SoapNode& from, const SoapNode& row) {
  for (const SoapNode& each : from.Nodes()) {
    if (each.Nodes().Count() != 0 || each.Name() == "Lines" || each.Name() == "Customer") continue;
    if (child(row, each.Name())) continue;
    row.Nodes().Create(each.Name(), child_text(from, each.Name()));
  }
}

class DocumentRows {
 public:
  explicit DocumentRows(SoapCall& call) : documents_(call.sandbox.store.documents()) {
    for (const SoapNode& each : call.sandbox.store.lists().rows("customer")) {
      customers_.emplace(child_text(each, "GID"), each);
    }
  }

  SoapNode row_of(const Document& document, const SoapNode& tree) {
    const SoapNode row = SoapNode::make(tree.Name());
    add_texts(tree, row);
    if (const SoapNode customer = child(tree, "Customer")) {
      add_customer(find_text(customer, {"GID"}), find_text(customer, {"Name"}), row);
    }
    for (const SoapNode& line : lines_of(tree)) {
      row.Nodes().Create("CatalogNumber", child_text(line, "CatalogNumber"));
      const std::string maker = documents_.manufacturer_gid(child_text(line, "Manufacturer"));
      if (!maker.empty()) row.Nodes().Create("ManufacturerGID", maker);
    }
    add_relatives(document, row);
    return row;
  }

 private:
  void add_customer(const std::string& gid, const std::string& name, const SoapNode& row) {
    row.Nodes().Create("CustomerGID", gid);
    row.Nodes().Create("CustomerName", name);
    const auto known = customers_.find(gid);
    if (known == customers_.end()) return;
    row.Nodes().Create("CustomerCity", child_text(known->second, "City"));
    row.Nodes().Create("CustomerState", child_text(known->second, "State"));
    row.Nodes().Create("CustomerCountry", child_text(known->second, "Country"));
  }
  /// A quote is where its project is; a project is found by its quotes, an order by its own.
  void add_relatives(const Document& document, const SoapNode& row) {
    if (document.kind == kProjectKind.name) {
      for (const Document& quote : documents_.children(kQuoteKind, document.gid)) {
        row.Nodes().Create("QuoteNumber", quote.number);
      }
    }
    const auto parent = documents_.find(document.parent);
    if (!parent) return;
    if (parent->kind == kQuoteKind.name) row.Nodes().Create("QuoteNumber", parent->number);
    if (document.kind != kQuoteKind.name) return;
    const SoapNode project = parent->tree();
    for (const char* name : {"City", "State", "Country", "BidDate", "DodgeNumber"}) {
      const std::string text = child_text(project, name);
      if (!text.empty() && !child(row, name)) row.Nodes().Create(name, text);
    }
  }

  Documents documents_;
  std::map<std::string, SoapNode> customers_;
};

struct DocumentSearch {
  const char *method, *object, *operation;
  const DocumentKind* kind;
  int keys;
  std::vector<Criterion> criteria;
};

void add_search(Operations& operations, const DocumentSearch& search) {
  add_method(operations, kSearch, search.method,
             [kind = search.kind, criteria = search.criteria](SoapCall& call) {
               answer_rows(call, matching(call, document_rows(call, *kind), criteria));
             });
  add_route(operations, {search.object, search.operation, kSearch, search.method, search.keys});
}

/// No mail leaves the sandbox: it says to whom how much would go.
void add_export(Operations& operations, const DocumentSearch& search) {
  add_method(operations, kSearch, search.method,
             [kind = search.kind, criteria = search.criteria](SoapCall& call) {
               const Rows found = matching(call, document_rows(call, *kind), criteria);
               const std::string user = key_at(call, 1);
               SoapNodes fields = begin_answer(call);
               fields.Create("UserName", user);
               fields.Create("Count", static_cast<std::int32_t>(found.size()));
             });
  add_route(operations,
            {search.object, search.operation, kSearch, search.method, search.keys, true});
}

void search_rma(SoapCall& call) {
  static const std::vector<Criterion> kCriteria{
      {0, "CustomerRefNumber"}, {1, "RMANumber"}, {2, "DistributorGID"}, {3, "DateSubmitted"}};
  answer_rows(call, matching(call, document_rows(call, kRmaKind), kCriteria));
}

}  // namespace

bool is_deactivated(const SoapNode& document) {
  return child_text(document, "Active") == "False";
}

Rows document_rows(SoapCall& call, const DocumentKind& kind) {
  DocumentRows rows(call);
  const auto keys = call.sandbox.store.latest(kind, std::numeric_limits<std::int64_t>::max());
  Rows found;
  for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
    const auto document = call.sandbox.store.documents().find(*key);
    const SoapNode tree = document->tree();
    if (!is_deactivated(tree)) found.push_back(rows.row_of(*document, tree));
  }
  return found;
}

void add_document_searches(Operations& operations) {
  add_search(operations, {"searchForOrders", "SearchService", "SearchForOrders", &kOrderKind, 23,
                          order_criteria(0)});
  add_search(operations, {"searchForQuotes", "SearchService", "SearchForQuotes", &kQuoteKind, 19,
                          quote_criteria(0)});
  add_search(operations, {"searchForProjects", "ProjectService", "SearchForProjects", &kProjectKind,
                          21, project_criteria(0)});
  add_export(operations, {"exportOrders", "SearchService", "OrdersSearchEmailExport", &kOrderKind,
                          25, order_criteria(2)});
  add_export(operations, {"exportQuotes", "SearchService", "QuotesSearchEmailExport", &kQuoteKind,
                          21, quote_criteria(2)});
  add_export(operations, {"exportProjects", "SearchService", "ProjectsSearchEmailExport",
                          &kProjectKind, 23, project_criteria(2)});
  add_method(operations, kRma, "searchRMA", search_rma);
  add_route(operations, {"RMAService", "SearchForRMA", kRma, "searchRMA", kRequestText});
}

}  // namespace bvconn::sandbox

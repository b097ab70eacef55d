#include <cstdint>
#include <initializer_list>
#include <limits>
#include <map>
#include <string>

#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/searches.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

/// A criterion by the name of its argument: on the data access layer's own searches each has one.
struct NamedCriterion {
  const char* argument;
  const char* field;
  Match match = Match::kEquals;
  const char* value = "";
};
using NamedCriteria = std::vector<NamedCriterion>;

const NamedCriteria& order_criteria() {
  static const NamedCriteria rows{{"OrderNbr", "OrderNumber"},
                                  {"SAPOrderNumber", "SAPOrderNumber"},
                                  {"OrderStatus", "Status"},
                                  {"ProjName", "Name", Match::kContains},
                                  {"PONbr", "PONumber"},
                                  {"QuoteNbr", "QuoteNumber"},
                                  {"AgentID", "AgentID", Match::kNumber},
                                  {"CatalogNbr", "CatalogNumber"},
                                  {"CustGID", "CustomerGID"},
                                  {"CustName", "CustomerName", Match::kContains},
                                  {"CustCity", "CustomerCity", Match::kContains},
                                  {"CustState", "CustomerState"},
                                  {"CustCountry", "CustomerCountry"},
                                  {"NationalAccount", "NationalAccount"},
                                  {"CFAccount", "CFAccount"},
                                  {"MfgGID", "ManufacturerGID"},
                                  {"CreateDateStart", "CreateDate", Match::kFrom},
                                  {"CreateDateEnd", "CreateDate", Match::kTo},
                                  {"OnlyHFR", "HFR", Match::kOnly, "Y"},
                                  {"OrderSource", "OrderSource"},
                                  {"DodgeNumber", "DodgeNumber"},
                                  {"ContractorFirstPO", "ContractorFirstPO"}};
  return rows;
}

// A quote's customer is looked for as its distributor.
const NamedCriteria& quote_criteria() {
  static const NamedCriteria rows{{"QuoteNbr", "QuoteNumber"},
                                  {"QuoteStatus", "Status"},
                                  {"ProjName", "Name", Match::kContains},
                                  {"ProjCity", "City", Match::kContains},
                                  {"ProjState", "State"},
                                  {"AgentID", "AgentID", Match::kNumber},
                                  {"CatNbr", "CatalogNumber"},
                                  {"DistGID", "CustomerGID"},
                                  {"DistName", "CustomerName", Match::kContains},
                                  {"ContGID", "ContractorGID"},
                                  {"ContName", "ContractorName", Match::kContains},
                                  {"SpecGID", "SpecifierGID"},
                                  {"SpecName", "SpecifierName", Match::kContains},
                                  {"BidStart", "BidDate", Match::kFrom},
                                  {"BidEnd", "BidDate", Match::kTo},
                                  {"NationalAccount", "NationalAccount"},
                                  {"ProjCountry", "Country"},
                                  {"DodgeNumber", "DodgeNumber"}};
  return rows;
}

const NamedCriteria& project_criteria() {
  static const NamedCriteria rows{{"ProjNbr", "ProjectNumber"},
                                  {"ProjName", "Name", Match::kContains},
                                  {"ProjCity", "City", Match::kContains},
                                  {"ProjState", "State"},
                                  {"ProjCountry", "Country"},
                                  {"ProjStatus", "Status"},
                                  {"AgentID", "AgentID", Match::kNumber},
                                  {"CatNbr", "CatalogNumber"},
                                  {"CustomerGID", "CustomerGID"},
                                  {"CustomerName", "CustomerName", Match::kContains},
                                  {"BidStart", "BidDate", Match::kFrom},
                                  {"BidEnd", "BidDate", Match::kTo},
                                  {"QuoteNbr", "QuoteNumber"},
                                  {"AppNbr", "AppNumber"},
                                  {"SpecStatus", "SpecStatus"},
                                  {"SpecNbr", "SpecNumber"},
                                  {"NatlAcct", "NationalAccount"},
                                  {"DodgeNumber", "DodgeNumber"},
                                  {"nsCustomerGID", "NSCustomerGID"},
                                  {"nsCustomerName", "NSCustomerName", Match::kContains},
                                  {"SpecType", "SpecType"}};
  return rows;
}

/// The criteria by the places that the arguments have in this call.
std::vector<Criterion> placed(const SoapCall& call, const NamedCriteria& criteria) {
  std::map<std::string, std::size_t> places;
  for (const SoapNode& each : call.parameters) places.emplace(each.Name(), places.size());
  std::vector<Criterion> result;
  for (const NamedCriterion& each : criteria) {
    result.push_back({places.at(each.argument), each.field, each.match, each.value});
  }
  return result;
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
  explicit DocumentRows(SoapCall& call) : documents_(call.store.documents()) {
    for (const SoapNode& each : call.store.lists().rows("customer")) {
      customers_.emplace(child_text(each, "GID"), each);
    }
  }

  SoapNode row_of(const Document& document, const SoapNode& tree) {
    const SoapNode row = SoapNode::make(tree.Name());
    add_texts(tree, row);
    row.Nodes().Create("Revision", static_cast<std::int32_t>(document.revision));
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
  /// A quote is where its project is, and an order is one of its project; a project is found by its
  /// quotes, an order by its own.
  void add_relatives(const Document& document, const SoapNode& row) {
    if (document.kind == kProjectKind.name) {
      for (const Document& quote : documents_.children(kQuoteKind, document.gid)) {
        row.Nodes().Create("QuoteNumber", quote.number);
      }
    }
    const auto parent = documents_.find(document.parent);
    if (!parent) return;
    if (parent->kind == kQuoteKind.name) row.Nodes().Create("QuoteNumber", parent->number);
    if (document.kind == kQuoteKind.name) {
      add_from(*parent, {"City", "State", "Country", "BidDate", kDodge, kNational}, row);
    } else if (const auto project = documents_.find(parent->parent)) {
      add_from(*project, {kDodge, kNational}, row);
    }
  }
  static void add_from(const Document& project, std::initializer_list<const char*> names,
                       const SoapNode& row) {
    const SoapNode tree = project.tree();
    for (const char* name : names) {
      const std::string text = child_text(tree, name);
      if (!text.empty() && !child(row, name)) row.Nodes().Create(name, text);
    }
  }

  static constexpr const char* kDodge = "DodgeNumber";
  static constexpr const char* kNational = "NationalAccount";

  Documents documents_;
  std::map<std::string, SoapNode> customers_;
};

/// A search that the data access layer alone has, and its form that mails what it finds.
struct DocumentSearch {
  const char *object, *operation, *mailing;
  const DocumentKind& kind;
  const NamedCriteria& criteria;
};

/// Projects keep no revisions, and nobody can ask for them.
bool wants_all_revisions(const SoapCall& call) {
  for (const SoapNode& each : call.parameters) {
    if (each.Name() == "GetAllRevisions") return to_boolean(each.Value());
  }
  return false;
}

Rows rows_found(SoapCall& call, const DocumentSearch& search) {
  return matching(call, document_rows(call, search.kind, wants_all_revisions(call)),
                  placed(call, search.criteria));
}

// No mail leaves the sandbox: it says to whom how much would go.
void answer_mailing(SoapCall& call, const Rows& rows) {
  SoapNodes fields = begin_answer(call);
  fields.Create("UserName", to_text(call.parameters.ItemByName("UserName").Value()));
  fields.Create("Count", static_cast<std::int32_t>(rows.size()));
}

void add_search(Operations& operations, const DocumentSearch& search) {
  add_dal_method(operations, search.object, search.operation,
                 [search](SoapCall& call) { answer_rows(call, rows_found(call, search)); });
  add_dal_method(operations, "SearchService", search.mailing,
                 [search](SoapCall& call) { answer_mailing(call, rows_found(call, search)); });
}

void search_rma(SoapCall& call) {
  static const std::vector<Criterion> kCriteria{{0, "CustomerRefNumber"},
                                                {1, "RMANumber"},
                                                {2, "DistributorGID"},
                                                {3, "DateSubmitted", Match::kOn}};
  answer_rows(call, matching(call, document_rows(call, kRmaKind), kCriteria));
}

}  // namespace

bool is_deactivated(const SoapNode& document) {
  return child_text(document, "Active") == "False";
}

Rows document_rows(SoapCall& call, const DocumentKind& kind, bool all_revisions) {
  DocumentRows rows(call);
  const auto keys = call.store.latest(kind, std::numeric_limits<std::int64_t>::max());
  Rows found;
  for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
    Documents documents = call.store.documents();
    const auto document = documents.find(*key);
    const SoapNode tree = document->tree();
    if (is_deactivated(tree)) continue;
    if (!all_revisions) {
      found.push_back(rows.row_of(*document, tree));
      continue;
    }
    for (const Document& each : documents.revisions(*document)) {
      found.push_back(rows.row_of(each, each.tree()));
    }
  }
  return found;
}

void add_document_searches(Operations& operations) {
  add_search(operations, {"SearchService", "SearchForOrders", "OrdersSearchEmailExport", kOrderKind,
                          order_criteria()});
  add_search(operations, {"SearchService", "SearchForQuotes", "QuotesSearchEmailExport", kQuoteKind,
                          quote_criteria()});
  add_search(operations, {"ProjectService", "SearchForProjects", "ProjectsSearchEmailExport",
                          kProjectKind, project_criteria()});
  add_method(operations, "urn:RMAService", "searchRMA", search_rma);
}

}  // namespace bvconn::sandbox

#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/searches.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kSearch = "urn:SearchService";
constexpr const char* kRma = "urn:RMAService";

struct ListSearch {
  const char *method, *list;
  std::vector<Criterion> criteria{};
  const char* service = kSearch;
};

std::vector<Criterion> approval_criteria() {
  return {{0, "AgentID", Match::kNumber},
          {1, "BrandGID"},
          {2, "Kind", Match::kAny, "project"},
          {3, "Kind", Match::kAny, "quote"},
          {4, "Kind", Match::kAny, "order"},
          {5, "Account", Match::kOnly, "NA"},
          {6, "Account", Match::kNot, "NA"},
          {7, "Account", Match::kOnly, "CF"},
          {8, "Account", Match::kNot, "CF"},
          {9, "OrderKind", Match::kOnly, "PROJECT"},
          {10, "OrderKind", Match::kOnly, "STOCK"},
          {11, "Reason", Match::kAny, "Pricing"},
          {12, "Reason", Match::kAny, "Config"},
          {13, "Reason", Match::kAny, "Review"},
          {14, "Reason", Match::kAny, "ApprGranted"},
          {15, "Reason", Match::kAny, "ApprDenied"},
          {16, "Reason", Match::kAny, "Returned"},
          {17, "Reason", Match::kAny, "QSSRCatChange"},
          {18, "Reason", Match::kAny, "SpecSubmit"},
          {19, "Reason", Match::kAny, "SpecReg"},
          {20, "Reason", Match::kAny, "SpecDenied"},
          {21, "Reason", Match::kAny, "Territory"},
          {22, "Reason", Match::kAny, "ChangeReq"},
          {23, "Reason", Match::kAny, "ChangeRev"},
          {24, "InternationalShipping", Match::kOnly, "Y"},
          {25, "Reason", Match::kAny, "CompetitiveReview"},
          {26, "PromoGID"}};
}

std::vector<Criterion> queue_criteria() {
  return {{0, "AgentID", Match::kNumber},
          {1, "BrandCode", Match::kAmong},
          {2, "PromoCode", Match::kAmong},
          {3, "ManufacturerCode", Match::kAmong},
          {4, "ShippingMethod"},
          {5, "Kind", Match::kAny, "project"},
          {6, "Kind", Match::kAny, "quote"},
          {7, "Kind", Match::kAny, "order"},
          {8, "Account", Match::kOnly, "NA"},
          {9, "Account", Match::kNot, "NA"},
          {10, "Account", Match::kOnly, "CF"},
          {11, "Account", Match::kNot, "CF"},
          {12, "OrderKind", Match::kOnly, "PROJECT"},
          {13, "OrderKind", Match::kOnly, "STOCK"},
          {14, "Reason", Match::kAny, "Pricing"},
          {15, "Reason", Match::kAny, "Config"},
          {16, "Reason", Match::kAny, "Review"},
          {17, "Reason", Match::kAny, "Returned"},
          {18, "Reason", Match::kAny, "SpecSubmit"},
          {19, "Reason", Match::kAny, "SpecReg"},
          {20, "Reason", Match::kAny, "SpecDenied"},
          {21, "Reason", Match::kAny, "ChangeReq"},
          {22, "InternationalShipping", Match::kOnly, "Y"},
          {23, "HFR", Match::kOnly, "Y"},
          {24, "IndustryCode", Match::kAmong},
          {25, "QuickShip", Match::kOnly, "Y"}};
}

// ExSearch, place 10, chooses where to look.
std::vector<Criterion> customer_criteria() {
  return {{0, "Name", Match::kContains},
          {1, "Keyword", Match::kContains},
          {2, "CustomerType"},
          {3, "AccountNumber"},
          {4, "PreviousAccountNumber"},
          {5, "AgentID", Match::kNumber},
          {6, "City", Match::kContains},
          {7, "State"},
          {8, "Country"},
          {9, "ZipCode"},
          {11, "Active", Match::kOnly, "Y"},
          {12, "Brimvale", Match::kOnly, "Y"}};
}

std::vector<ListSearch> people_searches() {
  return {
      {"searchForAgents",
       "agent",
       {{0, "AgentID", Match::kNumber},
        {1, "Name", Match::kContains},
        {2, "PartnerID"},
        {3, "State"},
        {4, "Country"}}},
      {"searchForAllAgents", "agent", {{0, "AgentID", Match::kNumber}}},
      {"searchForCustomerAxillaryInfo", "customer", {{0, "GID"}, {1, "AgentID", Match::kNumber}}},
      {"searchForAllCustomersLite", "customer", {{0, "AgentID", Match::kNumber}}},
      {"searchForCustomer", "customer", {{0, "GID"}}},
      {"searchForSalesPeople", "sales person", {{0, "AgentGID"}}},
      {"searchForNatlAccts",
       "national account",
       {{0, "Name", Match::kContains},
        {1, "Code"},
        {2, "AccountType"},
        {3, "SpecType"},
        {4, "Kind", Match::kAny, "NA"},
        {5, "Kind", Match::kAny, "NS"},
        {6, "Kind", Match::kAny, "CF"}}},
      {"searchForApprovals", "approval", approval_criteria()},
      {"searchApprovalQueue", "approval", queue_criteria()},
  };
}

std::vector<ListSearch> code_searches() {
  return {
      {"searchForAuthorizations", "authorization"},
      {"getShippingMethodsToDisplayInTheApprovalQueue", "queue shipping method"},
      {"searchForBrands", "brand"},
      {"searchForManufacturers", "manufacturer"},
      {"searchForAllDistCenters", "distribution centre"},
      {"searchForSpecialCreditTerms", "credit terms"},
      {"searchForUserNamesAtSalesOrg", "user name"},
      {"searchForShippingMethods", "shipping method"},
      {"searchForHeaderCommentInfo", "header comment"},
      {"searchForAllCUDCodes", "CUD code"},
      {"searchForVendors", "vendor", {{0, "AccountGroup"}}},
      {"searchForPromotions", "promotion"},
      {"searchForEnumeration", "enumeration", {{0, "Group"}}},
      {"searchForEnumerationGroup", "enumeration", {{0, "Group"}}},
      {"searchForGLCodes",
       "GL code",
       {{0, "Code"}, {1, "Description", Match::kContains}, {2, "Misc", Match::kOnly, "Y"}}},
      {"searchForRMAStatuses", "RMA status"},
      {"searchForOrderReasons", "order reason", {{0, "DocumentTypeCode"}}},
      {"getRMAReturnCodes", "RMA code", {}, kRma},
      {"getRMAProcessingTerms", "RMA term", {}, kRma},
      {"searchForCatalogNbrs",
       "catalogue number",
       {{0, "BrandGID"},
        {1, "ProductType"},
        {2, "CatalogNumber", Match::kContains},
        {3, "MaterialID"},
        {4, "UPCNumber"},
        {5, "Description", Match::kContains},
        {6, "AgentID", Match::kOwnNumber},
        {7, "Country"},
        {8, "ManufacturerGID"},
        {9, "Classification"}}},
  };
}

// What waits for an approval goes with its document when somebody deactivates that.
Rows rows_of(SoapCall& call, std::string_view list) {
  Rows rows = call.store.lists().rows(list);
  if (list != "approval") return rows;
  std::erase_if(rows, [&](const SoapNode& row) {
    const auto document = call.store.documents().find(child_text(row, "GID"));
    return document && is_deactivated(document->tree());
  });
  return rows;
}

void add_search(Operations& operations, const ListSearch& search) {
  add_method(operations, search.service, search.method,
             [list = search.list, criteria = search.criteria](SoapCall& call) {
               answer_rows(call, matching(call, rows_of(call, list), criteria));
             });
}

/// The extended search looks among those, too, that are no customers yet.
void search_for_customers(SoapCall& call) {
  Lists lists = call.store.lists();
  Rows rows = lists.rows("customer");
  if (to_boolean(call.parameters.Item(10).Value())) {
    for (const SoapNode& each : lists.rows("prospect")) rows.push_back(each);
  }
  answer_rows(call, matching(call, rows, customer_criteria()));
}

void search_for_default_agents(SoapCall& call) {
  Rows found;
  for (const SoapNode& agent : call.store.lists().rows("agent")) {
    if (child_text(agent, "Default") == "Y") found.push_back(agent);
  }
  answer_rows(call, found);
}

}  // namespace

void add_list_searches(Operations& operations) {
  for (const ListSearch& each : people_searches()) add_search(operations, each);
  for (const ListSearch& each : code_searches()) add_search(operations, each);
  add_method(operations, kSearch, "searchForCustomers", search_for_customers);
  add_method(operations, kSearch, "searchForDefaultAgents", search_for_default_agents);
}

}  // namespace bvconn::sandbox

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/platform/error.h"
#include "sandbox/documents_fixture.h"

namespace bvconn::test {
namespace {

using Sandbox = SandboxDocuments;
using Connector = BVSearchConnector;

constexpr const char* kS = "S";
constexpr const char* kBricks = "<items><item><number>BRK-100</number></item></items>";

struct Call {
  const char* operation;
  std::function<void(Connector&, const std::string&)> make;
};

const SearchForCustomersCriteria kAllCustomers{
    .ExSearch = "False", .OnlyActive = "False", .OnlyBrimvale = "False"};

StringArray codes(std::vector<std::string> texts) {
  return StringArray(std::move(texts));
}

SearchApprovalQueueCriteria whole_queue() {
  return {.BrandCode = codes({}),
          .PromoCode = codes({}),
          .ManufacturerCode = codes({}),
          .IndustryCode = codes({})};
}

std::vector<Call> list_calls() {
  return {
      {"Agents", [](auto& c, auto& u) { c.SearchForAgents(kS, u); }},
      {"Approvals", [](auto& c, auto& u) { c.SearchForApprovals(kS, u); }},
      {"ApprovalQueue", [](auto& c, auto& u) { c.SearchApprovalQueue(kS, u, whole_queue()); }},
      {"Authorizations", [](auto& c, auto& u) { c.SearchForAuthorizations(kS, u); }},
      {"Brands", [](auto& c, auto& u) { c.SearchForBrands(kS, u); }},
      {"CatalogNbrs", [](auto& c, auto& u) { c.SearchForCatalogNbrs(kS, u); }},
      {"Customers", [](auto& c, auto& u) { c.SearchForCustomers(kS, u, kAllCustomers); }},
      {"CustomerAxillaryInfo", [](auto& c, auto& u) { c.SearchForCustomerAxillaryInfo(kS, u); }},
      {"DefaultAgents", [](auto& c, auto& u) { c.SearchForDefaultAgents(kS, u); }},
      {"AllAgents", [](auto& c, auto& u) { c.SearchForAllAgents(kS, u); }},
      {"AllCustomers", [](auto& c, auto& u) { c.SearchForAllCustomers(kS, u, "92"); }},
      {"Enumeration", [](auto& c, auto& u) { c.SearchForEnumeration(kS, u, "UNIT"); }},
      {"EnumerationGroup", [](auto& c, auto& u) { c.SearchForEnumerationGroup(kS, u, "UNIT"); }},
      {"Vendors", [](auto& c, auto& u) { c.SearchForVendors(kS, u, "GOODS"); }},
      {"Customer", [](auto& c, auto& u) { c.SearchForCustomer(kS, u, "CUS-2150"); }},
      {"AllCUDCodes", [](auto& c, auto& u) { c.SearchForAllCUDCodes(kS, u); }},
      {"GLCodes", [](auto& c, auto& u) { c.SearchForGLCodes(kS, u, "", "", "False"); }},
      {"HeaderCommentInfo", [](auto& c, auto& u) { c.SearchForHeaderCommentInfo(kS, u); }},
      {"Manufacturers", [](auto& c, auto& u) { c.SearchForManufacturers(kS, u); }},
      {"NatlAccts", [](auto& c, auto& u) { c.SearchForNatlAccts(kS, u); }},
      {"DistributionCenters", [](auto& c, auto& u) { c.SearchForDistributionCenters(kS, u); }},
      {"Promotions", [](auto& c, auto& u) { c.SearchForPromotions(kS, u); }},
      {"RMAReturnCodes", [](auto& c, auto& u) { c.SearchForRMAReturnCodes(kS, u); }},
      {"RMAStatuses", [](auto& c, auto& u) { c.SearchForRMAStatuses(kS, u); }},
      {"ReturnReasons", [](auto& c, auto& u) { c.SearchForReturnReasons(kS, u); }},
      {"RMAProcessingTerms", [](auto& c, auto& u) { c.searchForRMAProcessingTerms(kS, u); }},
      {"SalesPeople", [](auto& c, auto& u) { c.SearchForSalesPeople(kS, "AGT-2", u); }},
      {"ShippingMethods", [](auto& c, auto& u) { c.SearchForShippingMethods(kS, u); }},
      {"QueueShippingMethods",
       [](auto& c, auto& u) { c.SearchForApprovalQueueShippingMethods(kS, u); }},
      {"SpecialCreditTerms", [](auto& c, auto& u) { c.SearchForSpecialCreditTerms(kS, u); }},
      {"UserNamesAtSalesOrg", [](auto& c, auto& u) { c.SearchForUserNamesAtSalesOrg(kS, u); }},
  };
}

std::vector<Call> other_calls() {
  return {
      {"CatalogNumbersFromInvoice",
       [](auto& c, auto& u) { c.SearchForCatalogNumbersFromInvoice(kS, u, "700101"); }},
      {"SAPOrderView", [](auto& c, auto& u) { c.SearchForSAPOrderView(kS, u, "O5001", "", true); }},
      {"OrderHeaderHistory",
       [](auto& c, auto& u) { c.SearchForOrderHeaderHistory(kS, u, "O5001"); }},
      {"OrderLineHistory", [](auto& c, auto& u) { c.SearchForOrderLineHistory(kS, u, "O5001"); }},
      {"PriceHistory", [](auto& c, auto& u) { c.SearchForPriceHistory(kS, u); }},
      {"PH",
       [](auto& c, auto& u) {
         c.SearchForPH(kS, u, codes({"BRK-100", "CEM-25"}));
       }},
      {"PHAverage", [](auto& c, auto& u) { c.searchForPHAverage(kS, u, codes({"BRK-100"})); }},
      {"RMA", [](auto& c, auto& u) { c.SearchForRMA(kS, u, "", "M9001", "", ""); }},
      {"OrderTorvexView", [](auto& c, auto& u) { c.SearchForOrderTorvexView(kS, u, "ORD-5001"); }},
      {"ZeltViewUsingGID",
       [](auto& c, auto& u) { c.searchForZeltViewUsingGID(kS, u, "ORD-5001"); }},
      {"ZeltViewUsingParameters",
       [](auto& c, auto& u) { c.searchForZeltViewUsingParameters(kS, u, "", "40010"); }},
      {"TotalInventory", [](auto& c, auto& u) { c.SearchForTotalInventory(kBricks, kS, u); }},
      {"Inventory", [](auto& c, auto& u) { c.SearchForInventory(kBricks, kS, u); }},
      {"CreateProjectFromTemplate",
       [](auto& c, auto& u) { c.CreateProjectFromTemplate(kS, u, "PRJ-3001"); }},
      {"CreateOrderFromTemplate",
       [](auto& c, auto& u) {
         c.CreateOrderFromTemplate(kS, u, "PRJ-3001", "Barn", "Boise", "ID");
       }},
      {"ConvertToTemplate", [](auto& c, auto& u) { c.ConvertToTemplate(kS, u, "PRJ-3001"); }},
      {"CarrierTrackingURL",
       [](auto& c, auto& u) { c.GetCarrierTrackingURL(kS, u, "PARCEL", "T-1"); }},
      {"Deactivate", [](auto& c, auto& u) { c.Deactivate(kS, u, "PRJ-3009"); }},
  };
}

/// The data access layer is their only way.
std::vector<Call> dal_calls() {
  return {
      {"Orders", [](auto& c, auto& u) { c.SearchForOrders(kS, u); }},
      {"OrdersForEmail", [](auto& c, auto& u) { c.SearchForOrdersForEmail(kS, u); }},
      {"Quotes", [](auto& c, auto& u) { c.SearchForQuotes(kS, u); }},
      {"QuotesForEmail", [](auto& c, auto& u) { c.SearchForQuotesForEmail(kS, u); }},
      {"Projects", [](auto& c, auto& u) { c.SearchForProjects(kS, u); }},
      {"ProjectsForEmail", [](auto& c, auto& u) { c.SearchForProjectsForEmail(kS, u); }},
  };
}

void make_all(const std::vector<Call>& calls, const std::string& url) {
  Connector connector;
  for (const Call& call : calls) {
    try {
      call.make(connector, url);
    } catch (const Error& error) {
      ADD_FAILURE() << call.operation << ": " << error.description;
    }
  }
}

bool has_row(const SoapNode& rows, std::string_view name, std::string_view wanted) {
  for (const SoapNode& each : rows.Nodes()) {
    if (text(each, name) == wanted) return true;
  }
  return false;
}

TEST_F(Sandbox, EverySearchHasAnAnswerBySoap) {
  make_all(list_calls(), url_);
  make_all(other_calls(), url_);
}

TEST_F(Sandbox, EverySearchHasAnAnswerThroughTheDataAccessLayer) {
  go_by_dal();
  make_all(list_calls(), url_);
  make_all(other_calls(), url_);
  make_all(dal_calls(), url_);
  EXPECT_EQ(list_calls().size() + other_calls().size() + dal_calls().size(), 55U);
}

TEST_F(Sandbox, CriteriaNarrowAListOnBothRoutes) {
  Connector connector;
  for (const bool by_dal : {false, true}) {
    if (by_dal) go_by_dal();
    SearchForCustomersCriteria criteria = kAllCustomers;
    EXPECT_EQ(connector.SearchForCustomers(kS, url_, criteria).Nodes().Count(), 200U);
    criteria.Name = "birchFIELD";
    const SoapNode found = connector.SearchForCustomers(kS, url_, criteria);
    ASSERT_EQ(found.Nodes().Count(), 1U);
    EXPECT_EQ(text(found.Nodes().Item(0), "GID"), "CUS-2002");
    criteria.State = "WI";
    EXPECT_EQ(connector.SearchForCustomers(kS, url_, criteria).Nodes().Count(), 0U);
    EXPECT_EQ(connector.SearchForCustomer(kS, url_, "CUS-2150").Nodes().Count(), 1U);
    const SoapNode agents = connector.SearchForAllAgents(kS, url_, Variant(std::int16_t{92}));
    ASSERT_EQ(agents.Nodes().Count(), 1U);
    EXPECT_EQ(text(agents.Nodes().Item(0), "AgentID"), "092");
    EXPECT_EQ(connector.SearchForAllAgents(kS, url_).Nodes().Count(), 60U);
  }
}

TEST_F(Sandbox, ArraysAndFlagsNarrowOnBothRoutes) {
  Connector connector;
  for (const bool by_dal : {false, true}) {
    if (by_dal) go_by_dal();
    const SoapNode prices = connector.SearchForPH(kS, url_, codes({"BRK-100", "CEM-25"}));
    EXPECT_EQ(prices.Nodes().Count(), 4U);
    EXPECT_FALSE(has_row(prices, "CatalogNumber", "BRK-110"));
    auto queue = whole_queue();
    EXPECT_EQ(connector.SearchApprovalQueue(kS, url_, queue).Nodes().Count(), 60U);
    queue.Quote = true;
    const SoapNode quotes = connector.SearchApprovalQueue(kS, url_, queue);
    EXPECT_EQ(quotes.Nodes().Count(), 20U);
    EXPECT_FALSE(has_row(quotes, "Kind", "order"));
  }
}

TEST_F(Sandbox, AnInventoryRequestGetsTheRowsOfItsCatalogueNumber) {
  Connector connector;
  for (const bool by_dal : {false, true}) {
    if (by_dal) go_by_dal();
    for (const SoapNode& found : {connector.SearchForInventory(kBricks, kS, url_),
                                  connector.SearchForTotalInventory(kBricks, kS, url_)}) {
      ASSERT_EQ(found.Nodes().Count(), 2U);
      EXPECT_EQ(text(found.Nodes().Item(0), "CatalogNumber"), "BRK-100");
    }
  }
}

TEST_F(Sandbox, DocumentsAreFoundByTheirNumbersAndNames) {
  go_by_dal();
  Connector connector;
  const SoapNode orders = connector.SearchForOrders(kS, url_, {.OrderNbr = "O5003"});
  ASSERT_EQ(orders.Nodes().Count(), 1U);
  EXPECT_EQ(text(orders.Nodes().Item(0), "GID"), "ORD-5003");
  const SoapNode quotes =
      connector.SearchForQuotes(kS, url_, {.ProjName = "hilltop", .ProjCity = "boise"});
  EXPECT_EQ(quotes.Nodes().Count(), 3U);
  const SoapNode projects = connector.SearchForProjects(kS, url_, {.QuoteNbr = "Q4007"});
  ASSERT_EQ(projects.Nodes().Count(), 1U);
  EXPECT_EQ(text(projects.Nodes().Item(0), "GID"), "PRJ-3007");
}

TEST_F(Sandbox, TemplatesMakeDocumentsThatAreFound) {
  go_by_dal();
  Connector connector;
  connector.ConvertToTemplate(kS, url_, "PRJ-3002");
  const SoapNode project = connector.CreateProjectFromTemplate(kS, url_, "PRJ-3002");
  EXPECT_NE(text(project, "GID"), "PRJ-3002");
  EXPECT_TRUE(has_row(connector.SearchForProjects(kS, url_), "GID", text(project, "GID")));
  const SoapNode order =
      connector.CreateOrderFromTemplate(kS, url_, "PRJ-3002", "Red barn", "Boise", "ID");
  const SoapNode found = connector.SearchForOrders(kS, url_, {.ProjName = "red BARN"});
  ASSERT_EQ(found.Nodes().Count(), 1U);
  EXPECT_EQ(text(found.Nodes().Item(0), "GID"), text(order, "GID"));
}

TEST_F(Sandbox, WhatIsDeactivatedStaysOutOfTheSearchesAfterARestart) {
  const auto file = std::filesystem::path(::testing::TempDir()) / "bvsandbox_search_test.db";
  for (const char* end : {"", "-wal", "-shm"}) std::remove((file.string() + end).c_str());
  const std::vector<std::string> arguments{"--port", "0", "--db", file.string()};
  start(arguments);
  go_by_dal();
  Connector connector;
  EXPECT_TRUE(has_row(connector.SearchForQuotes(kS, url_), "GID", "QUO-4005"));
  connector.Deactivate(kS, url_, "QUO-4005");
  EXPECT_FALSE(has_row(connector.SearchForQuotes(kS, url_), "GID", "QUO-4005"));
  EXPECT_EQ(sandbox().end_by(SIGTERM), 0);
  start(arguments);
  go_by_dal();
  EXPECT_FALSE(has_row(connector.SearchForQuotes(kS, url_), "GID", "QUO-4005"));
  EXPECT_TRUE(has_row(connector.SearchForQuotes(kS, url_), "GID", "QUO-4006"));
}

TEST_F(Sandbox, WhatIsDeactivatedWaitsForNoApproval) {
  Connector connector;
  EXPECT_TRUE(has_row(connector.SearchForApprovals(kS, url_), "GID", "QUO-4005"));
  connector.Deactivate(kS, url_, "QUO-4005");
  const SoapNode waiting = connector.SearchForApprovals(kS, url_);
  EXPECT_FALSE(has_row(waiting, "GID", "QUO-4005"));
  EXPECT_TRUE(has_row(waiting, "GID", "QUO-4006"));
}

TEST_F(Sandbox, ATrackingAddressNamesCarrierAndNumber) {
  EXPECT_EQ(Connector().GetCarrierTrackingURL(kS, url_, "PARCEL", "T-1"),
            "http://carriers.example/PARCEL/T-1");
}

}  // namespace
}  // namespace bvconn::test

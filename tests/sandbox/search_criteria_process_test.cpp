#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bvconn/connectors/documents/bv_rma_connector.h"
#include "bvconn/connectors/search/bv_search_connector.h"
#include "sandbox/documents_fixture.h"

namespace bvconn::test {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kS = "S";

Texts texts(const SoapNode& rows, std::string_view name) {
  Texts found;
  for (const SoapNode& each : rows.Nodes()) found.push_back(text(each, name));
  return found;
}

class SandboxCriteria : public SandboxDocuments {
 protected:
  Texts orders(const SearchForOrdersCriteria& criteria) {
    return texts(connector_.SearchForOrders(kS, url_, criteria), "GID");
  }
  Texts quotes(const SearchForQuotesCriteria& criteria) {
    return texts(connector_.SearchForQuotes(kS, url_, criteria), "GID");
  }
  Texts projects(const SearchForProjectsCriteria& criteria) {
    return texts(connector_.SearchForProjects(kS, url_, criteria), "GID");
  }

  BVSearchConnector connector_;
};

TEST_F(SandboxCriteria, OrdersAreFoundByWhatTheySay) {
  go_by_dal();
  EXPECT_EQ(orders({.PONbr = "po-52003"}), Texts{"ORD-5003"});
  EXPECT_EQ(orders({.CreateDateStart = "2/12/2025", .CreateDateEnd = "2/21/2025"}),
            (Texts{"ORD-5002", "ORD-5003"}));
  EXPECT_EQ(orders({.CFAccount = "NA6"}), (Texts{"ORD-5005", "ORD-5017"}));
  EXPECT_EQ(orders({.OnlyHFR = true}), (Texts{"ORD-5001", "ORD-5006", "ORD-5011", "ORD-5016"}));
  EXPECT_EQ(orders({.OnlyHFR = true, .OrderSource = "EDI"}), Texts{"ORD-5011"});
  EXPECT_EQ(orders({.ContractorFirstPO = Variant("CPO-804")}), Texts{"ORD-5004"});
}

TEST_F(SandboxCriteria, OrdersAreFoundByWhatTheirProjectSays) {
  go_by_dal();
  EXPECT_EQ(orders({.NationalAccount = "NA1"}), (Texts{"ORD-5001", "ORD-5013"}));
  EXPECT_EQ(orders({.DodgeNumber = "D250038"}), Texts{"ORD-5002"});
}

TEST_F(SandboxCriteria, QuotesAreFoundByWhatTheyAndTheirProjectsSay) {
  go_by_dal();
  EXPECT_EQ(quotes({.QuoteNbr = "Q4005", .ContGID = "CUS-2002"}), Texts{"QUO-4005"});
  EXPECT_EQ(quotes({.ContName = "birchfield"}).size(), 8U);
  EXPECT_EQ(quotes({.SpecGID = "SPC-2", .SpecName = "BEACON"}).size(), 8U);
  EXPECT_EQ(quotes({.NationalAccount = "NA4"}), (Texts{"QUO-4010", "QUO-4022"}));
  EXPECT_EQ(quotes({.DodgeNumber = "D250038"}), Texts{"QUO-4002"});
}

TEST_F(SandboxCriteria, ProjectsAreFoundByWhatTheySay) {
  go_by_dal();
  EXPECT_EQ(projects({.AppNbr = "APP-7005"}), Texts{"PRJ-3005"});
  EXPECT_EQ(projects({.SpecNbr = "SP-410"}), Texts{"PRJ-3010"});
  EXPECT_EQ(projects({.SpecStatus = "denied"}).size(), 10U);
  EXPECT_EQ(projects({.SpecType = "S2"}).size(), 10U);
  EXPECT_EQ(projects({.NatlAcct = "NA7"}), (Texts{"PRJ-3007", "PRJ-3019"}));
  EXPECT_EQ(projects({.DodgeNumber = "D250001"}), Texts{"PRJ-3001"});
  const Texts of_fairview{"PRJ-3001", "PRJ-3013", "PRJ-3025"};
  EXPECT_EQ(projects({.nsCustomerGID = "CUS-2006"}), of_fairview);
  EXPECT_EQ(projects({.nsCustomerName = "fairview"}), of_fairview);
}

TEST_F(SandboxCriteria, ReturnsAreFoundByReferenceDistributorAndDay) {
  const auto returns = [&](const char* reference, const char* distributor, const char* day) {
    return texts(connector_.SearchForRMA(kS, url_, reference, "", distributor, day), "UID");
  };
  EXPECT_EQ(returns("REF-303", "", ""), Texts{"RMA-9003"});
  EXPECT_EQ(returns("", "CUS-2004", ""), (Texts{"RMA-9002", "RMA-9006", "RMA-9010"}));
  EXPECT_EQ(returns("", "", "3/7/2025"), Texts{"RMA-9003"});
  EXPECT_EQ(returns("", "", "3/8/2025"), Texts{});
}

TEST_F(SandboxCriteria, AViewIsFoundByThePurchaseOrder) {
  const SoapNode views = connector_.searchForZeltViewUsingParameters(kS, url_, "PO-52004");
  EXPECT_EQ(texts(views, "GID"), Texts{"ORD-5004"});
}

TEST_F(SandboxCriteria, AllRevisionsAreFoundWhereTheyAreAskedFor) {
  go_by_dal();
  const SoapNode rows =
      connector_.SearchForQuotes(kS, url_, {.QuoteNbr = "Q4015", .GetAllRevisions = true});
  EXPECT_EQ(texts(rows, "Revision"), (Texts{"2", "1"}));
  EXPECT_EQ(text(rows.Nodes().Item(1), "Name"),
            text(rows.Nodes().Item(0), "Name") + ", first draft");
  EXPECT_EQ(quotes({.QuoteNbr = "Q4015"}), Texts{"QUO-4015"});
  EXPECT_EQ(quotes({.ProjName = "first draft"}), Texts{});
  EXPECT_EQ(quotes({.ProjName = "first draft", .GetAllRevisions = true}),
            (Texts{"QUO-4015", "QUO-4025"}));
  EXPECT_EQ(orders({.ProjName = "first draft", .GetAllRevisions = true}), Texts{"ORD-5015"});
}

TEST_F(SandboxCriteria, TheHistoryOfAnOrderHasItsRevisions) {
  EXPECT_EQ(texts(connector_.SearchForOrderHeaderHistory(kS, url_, "O5015"), "Revision"),
            (Texts{"2", "1"}));
  EXPECT_EQ(texts(connector_.SearchForOrderHeaderHistory(kS, url_, "O5001"), "Revision"),
            Texts{"1"});
}

TEST_F(SandboxCriteria, TheExtendedSearchFindsThoseThatAreNoCustomersYet) {
  for (const bool by_dal : {false, true}) {
    if (by_dal) go_by_dal();
    const auto found = [&](const char* extended, const char* name) {
      return texts(
          connector_.SearchForCustomers(
              kS, url_,
              {.Name = name, .ExSearch = extended, .OnlyActive = "False", .OnlyBrimvale = "False"}),
          "GID");
    };
    EXPECT_EQ(found("True", "").size(), found("False", "").size() + 6);
    EXPECT_EQ(found("True", "millpond"), Texts{"PRO-1"});
    EXPECT_EQ(found("False", "millpond"), Texts{});
  }
}

TEST_F(SandboxCriteria, AnAgentFindsTheCatalogueNumbersOfAllAndHisOwn) {
  const auto count = [&](const char* agent) {
    return connector_.SearchForCatalogNbrs(kS, url_, {.AgentID = agent}).Nodes().Count();
  };
  // Of 150, ten are sold by one agent each.
  EXPECT_EQ(count(""), 150U);
  EXPECT_EQ(count("100"), 141U);
  EXPECT_EQ(count("90"), 140U);
}

TEST_F(SandboxCriteria, WhatIsMadeOrSubmittedTodayBearsTheDate) {
  const SoapNode order =
      connector_.CreateOrderFromTemplate(kS, url_, "PRJ-3001", "Barn", "Boise", "ID");
  EXPECT_TRUE(has(order, "CreateDate"));
  BVRMAConnector rmas;
  const SoapNode rma = rmas.GetNewRMA("MFR-1", url_, kS);
  rmas.SubmitRMA(url_, kS, rma);
  EXPECT_TRUE(has(rmas.GetExistingRMA(url_, kS, text(rma, "UID")), "DateSubmitted"));
}

}  // namespace
}  // namespace bvconn::test

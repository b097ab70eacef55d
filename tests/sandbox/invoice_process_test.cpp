#include <functional>
#include <string>
#include <vector>

#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/documents_fixture.h"
#include "support/error_of.h"

namespace bvconn::test {
namespace {

class SandboxInvoices : public SandboxDocuments {
 protected:
  std::vector<SoapNode> search(const InvoiceSearchCriteria& criteria = {}) {
    const SoapNode found = connector_.InvoiceSearch(url_, "S1", criteria);
    std::vector<SoapNode> invoices;
    for (const SoapNode& each : found.Nodes()) invoices.push_back(each);
    return invoices;
  }
  /// A reconcile of one invoice, saved by this user, who has its lock from then on.
  std::string saved_reconcile(std::string_view user, const StringArray& invoices) {
    const SoapNode made = connector_.GetNewReconicle(url_, user, "101", invoices);
    return text(connector_.SaveOrderReconcile(url_, user, made), "GID");
  }
  SoapNode reconcile(std::string_view user, std::string_view gid) {
    return connector_.GetOrderReconcile(url_, user, gid, "101");
  }

  BVInvoiceConnector connector_;
};

std::string number_of_error(const std::function<void()>& call) {
  const Error error = error_of(call);
  return hex_number(error.number) + " " + error.source;
}

/// The texts of the same child of all invoices.
std::vector<std::string> texts(const std::vector<SoapNode>& invoices, std::string_view name) {
  std::vector<std::string> found;
  for (const SoapNode& each : invoices) found.push_back(text(each, name));
  return found;
}

std::vector<std::string> invoice_keys(const SoapNode& reconcile) {
  std::vector<std::string> keys;
  for (const SoapNode& each : reconcile.Nodes().ItemByName("Lines").Nodes()) {
    keys.push_back(text(each, "GID"));
  }
  return keys;
}

using Texts = std::vector<std::string>;

TEST_F(SandboxInvoices, ASearchWithoutCriteriaGivesAllInvoices) {
  const auto found = search();
  ASSERT_EQ(found.size(), 40U);
  EXPECT_EQ(text(found.front(), "InvoiceNumber"), "700101");
  EXPECT_EQ(text(found.back(), "InvoiceNumber"), "700140");
}

/// A criterion that takes the text of one child of an invoice.
struct ChildCriterion {
  const char* child;
  std::string_view InvoiceSearchCriteria::*criterion;
};

TEST_F(SandboxInvoices, EachTextCriterionGivesJustTheInvoicesThatHaveIt) {
  const auto all = search();
  for (const ChildCriterion& each :
       {ChildCriterion{"InvoiceNumber", &InvoiceSearchCriteria::strInvoiceNumber},
        ChildCriterion{"PONumber", &InvoiceSearchCriteria::strPONumber},
        ChildCriterion{"ProjectName", &InvoiceSearchCriteria::strProjectName},
        ChildCriterion{"ManufacturerOrderNumber",
                       &InvoiceSearchCriteria::strManufacturerOrderNumber},
        ChildCriterion{"Status", &InvoiceSearchCriteria::strStatus},
        ChildCriterion{"AgentID", &InvoiceSearchCriteria::strAgent},
        ChildCriterion{"TorvexOrderNumber", &InvoiceSearchCriteria::strTorvexOrderNumber}}) {
    const std::string wanted = text(all[6], each.child);
    Texts expected;
    for (const SoapNode& invoice : all) {
      if (text(invoice, each.child) == wanted) expected.push_back(text(invoice, "InvoiceUID"));
    }
    InvoiceSearchCriteria criteria;
    criteria.*each.criterion = wanted;
    EXPECT_EQ(texts(search(criteria), "InvoiceUID"), expected) << each.child;
    EXPECT_LT(expected.size(), all.size()) << each.child;
  }
}

TEST_F(SandboxInvoices, EachCriterionOfTheCustomerNarrowsAndNilIsOpen) {
  const auto all = search();
  struct CustomerCriterion {
    const char* child;
    Variant InvoiceSearchCriteria::*criterion;
  };
  for (const CustomerCriterion& each :
       {CustomerCriterion{"GID", &InvoiceSearchCriteria::strCustomerGID},
        CustomerCriterion{"AccountNumber", &InvoiceSearchCriteria::strCustomerAccountNumber},
        CustomerCriterion{"Name", &InvoiceSearchCriteria::strCustomerSoldToName}}) {
    const std::string wanted = text(all[9].Nodes().ItemByName("Customer"), each.child);
    Texts expected;
    for (const SoapNode& invoice : all) {
      const SoapNode customer = invoice.Nodes().ItemByName("Customer");
      if (text(customer, each.child) == wanted) expected.push_back(text(invoice, "InvoiceUID"));
    }
    InvoiceSearchCriteria criteria;
    criteria.*each.criterion = Variant(wanted);
    EXPECT_EQ(texts(search(criteria), "InvoiceUID"), expected) << each.child;
    EXPECT_LT(expected.size(), all.size()) << each.child;
  }
  InvoiceSearchCriteria criteria;
  criteria.strPartnerID = Variant(text(all[9], "PartnerID"));
  const auto of_partner = search(criteria);
  EXPECT_EQ(Texts(of_partner.size(), text(all[9], "PartnerID")), texts(of_partner, "PartnerID"));
  EXPECT_LT(of_partner.size(), all.size());
}

TEST_F(SandboxInvoices, AManufacturerIsFoundInTheLines) {
  const auto found = search({.strManufacturer = "old kiln works"});
  ASSERT_FALSE(found.empty());
  EXPECT_LT(found.size(), 40U);
  for (const SoapNode& invoice : found) {
    EXPECT_NE(node_to_xml(invoice).find("Old Kiln Works"), std::string::npos);
  }
}

TEST_F(SandboxInvoices, AnAgentOfTwoDigitsIsFoundUnderThree) {
  std::string agent;
  for (const SoapNode& each : search()) {
    if (text(each, "AgentID").starts_with('0')) agent = text(each, "AgentID");
  }
  ASSERT_EQ(agent.size(), 3U);
  const auto found = search({.strAgent = std::string_view(agent).substr(1)});
  ASSERT_FALSE(found.empty());
  EXPECT_EQ(texts(found, "AgentID"), Texts(found.size(), agent));
}

TEST_F(SandboxInvoices, DatesNarrowFromBothEnds) {
  const std::size_t early = search({.strInvoiceDateTo = "6/30/2024"}).size();
  const std::size_t late = search({.strInvoiceDateFrom = "7/1/2024"}).size();
  EXPECT_GT(early, 0U);
  EXPECT_GT(late, 0U);
  EXPECT_EQ(early + late, 40U);
  // All invoices of a month are paid out at its end.
  const auto by_day = search({.strInvoiceDateFrom = "8/1/2024", .strInvoiceDateTo = "8/31/2024"});
  const auto by_period =
      search({.strPayPeriodDateFrom = "8/2/2024", .strPayPeriodDateTo = "8/31/2024"});
  EXPECT_EQ(texts(by_day, "InvoiceUID"), texts(by_period, "InvoiceUID"));
  EXPECT_TRUE(search({.strInvoiceDateFrom = "1/1/2031"}).empty());
}

TEST_F(SandboxInvoices, TheInvoiceOfSapHasItsNumberThere) {
  const SoapNode invoice = connector_.GetSAPInvoice(url_, "S1", "INV-1008");
  EXPECT_EQ(text(invoice, "InvoiceUID"), "INV-1008");
  EXPECT_EQ(text(invoice, "SAPInvoiceNumber"), "0090700108");
}

TEST_F(SandboxInvoices, FaultsHaveTheirCodes) {
  const std::string source = " BVInvoiceConnector";
  EXPECT_EQ(number_of_error([&] { connector_.GetSAPInvoice(url_, "S1", "INV-1"); }),
            "0x80042739" + source);
  EXPECT_EQ(number_of_error([&] { reconcile("S1", "REC-1"); }), "0x8004271B" + source);
  EXPECT_EQ(number_of_error([&] { connector_.SaveOrderReconcile(url_, "S1", SoapNode()); }),
            "0x80042761" + source);
  EXPECT_EQ(number_of_error([&] {
              connector_.SaveOrderReconcile(url_, "S1", SoapNode::make("BVOrderReconcileBean"));
            }),
            "0x80042761" + source);
  EXPECT_EQ(number_of_error([&] {
              connector_.AssocInvoiceAndOrderReconcile(url_, "S1", "7", "REC-10001", "101");
            }),
            "0x8004274D" + source);
  EXPECT_EQ(number_of_error([&] { connector_.AutoReconcileSingle(url_, "S1", "INV-1", "101"); }),
            "0x80042757" + source);
}

TEST_F(SandboxInvoices, ASavedReconcileComesBack) {
  const SoapNode made =
      connector_.GetNewReconicle(url_, "S1", "101", StringArray{"INV-1002", "INV-1004"});
  made.Nodes().Create("Note", "as agreed");
  const std::string gid = text(made, "GID");
  connector_.SaveOrderReconcile(url_, "S1", made);
  const SoapNode back = reconcile("S1", gid);
  EXPECT_EQ(text(back, "Note"), "as agreed");
  EXPECT_EQ(text(back, "AgentID"), "101");
  EXPECT_EQ(invoice_keys(back), (Texts{"INV-1002", "INV-1004"}));
}

TEST_F(SandboxInvoices, ANewReconcileWithoutKeysHasNoInvoices) {
  EXPECT_EQ(invoice_keys(connector_.GetNewReconicle(url_, "S1", "101")), Texts());
  EXPECT_EQ(invoice_keys(connector_.GetNewReconicle(url_, "S1", "101", StringArray{})), Texts());
}

TEST_F(SandboxInvoices, LocksOfReconcilesMove) {
  const std::string gid = saved_reconcile("S1", {"INV-1002"});
  EXPECT_EQ(number_of_error([&] { reconcile("S2", gid); }), "0x8004271B BVInvoiceConnector");
  EXPECT_EQ(connector_.PilferOrderReconcile(url_, "S2", gid), "S2");
  EXPECT_EQ(text(reconcile("S2", gid), "LockedBy"), "S2");
  EXPECT_EQ(number_of_error([&] { reconcile("S1", gid); }), "0x8004271B BVInvoiceConnector");
  EXPECT_THROW(connector_.UnlockOrderReconcile(url_, "S1", gid, false, "101"), Error);
  connector_.UnlockOrderReconcile(url_, "S2", gid, false, "101");
  const SoapNode back = reconcile("S1", gid);
  EXPECT_EQ(text(back, "LockedBy"), "S1");
  EXPECT_EQ(invoice_keys(back), Texts{"INV-1002"});
}

// To a caller of the library both are one error.
TEST_F(SandboxInvoices, AReconcileThatIsLockedHasAnotherCodeThanOneThatIsMissing) {
  const std::string gid = saved_reconcile("somebody else", {});
  const auto reply_to = [&](const std::string& key) {
    return sandbox()
        .soap("urn:InvoiceService", "getOrderReconcile",
              "<param xsi:type=\"xsd:string\">" + key +
                  "</param><param xsi:type=\"xsd:string\">101</param>")
        .body;
  };
  EXPECT_NE(reply_to("REC-1").find("<faultcode>10011</faultcode>"), std::string::npos);
  const std::string locked = reply_to(gid);
  EXPECT_NE(locked.find("<faultcode>10012</faultcode>"), std::string::npos) << locked;
  EXPECT_NE(locked.find("'" + gid + "' is locked by 'somebody else'"), std::string::npos) << locked;
}

TEST_F(SandboxInvoices, UnlockingCanLetGoOfTheInvoices) {
  const std::string gid = saved_reconcile("S1", {"INV-1002", "INV-1003"});
  connector_.UnlockOrderReconcile(url_, "S1", gid, true, "101");
  EXPECT_EQ(invoice_keys(reconcile("S1", gid)), Texts());
}

TEST_F(SandboxInvoices, AnInvoiceIsAssociatedWithOneReconcileAlone) {
  const std::string first = saved_reconcile("S1", {"INV-1002"});
  const std::string second = saved_reconcile("S1", {});
  const SoapNode answer =
      connector_.AssocInvoiceAndOrderReconcile(url_, "S1", "700105", first, "101");
  EXPECT_EQ(invoice_keys(answer), (Texts{"INV-1002", "INV-1005"}));
  EXPECT_EQ(invoice_keys(reconcile("S1", first)), (Texts{"INV-1002", "INV-1005"}));
  EXPECT_EQ(number_of_error([&] {
              connector_.AssocInvoiceAndOrderReconcile(url_, "S1", "700105", second, "101");
            }),
            "0x8004274D BVInvoiceConnector");
}

TEST_F(SandboxInvoices, AutoReconcileSingleKeepsAReconcileOfTheInvoice) {
  const SoapNode made = connector_.AutoReconcileSingle(url_, "S1", "INV-1007", "101", "3/31/2025");
  const SoapNode back = reconcile("S2", text(made, "GID"));
  EXPECT_EQ(text(back, "Status"), "RECONCILED");
  EXPECT_EQ(text(back, "PayPeriodDate"), "03/31/2025");
  EXPECT_EQ(invoice_keys(back), Texts{"INV-1007"});
}

TEST_F(SandboxInvoices, AutoReconcileMultipleTakesAllOrNone) {
  EXPECT_EQ(number_of_error([&] {
              connector_.AutoReconcileMultiple(url_, "S1", StringArray{"INV-1011", "INV-1"}, "101");
            }),
            "0x80042757 BVInvoiceConnector");
  const std::string gid = saved_reconcile("S1", {});
  // So INV-1011 belongs to none yet.
  connector_.AssocInvoiceAndOrderReconcile(url_, "S1", "700111", gid, "101");
  connector_.AutoReconcileMultiple(url_, "S1", StringArray{"INV-1011", "INV-1012"}, "101");
  EXPECT_EQ(text(reconcile("S1", gid), "Status"), "RECONCILED");
  EXPECT_EQ(number_of_error([&] {
              connector_.AssocInvoiceAndOrderReconcile(url_, "S1", "700112", gid, "101");
            }),
            "0x8004274D BVInvoiceConnector");
}

TEST_F(SandboxInvoices, ReconcilingClosesTheInvoices) {
  const std::string gid = saved_reconcile("S1", {"INV-1013"});
  connector_.AssocInvoiceAndOrderReconcile(url_, "S1", "700114", gid, "101");
  connector_.AutoReconcileSingle(url_, "S1", "INV-1013", "101");
  const auto closed = search({.strStatus = "closed"});
  // Both that stand in the reconcile, and no other.
  EXPECT_EQ(texts(closed, "InvoiceUID"), (Texts{"INV-1013", "INV-1014"}));
  EXPECT_EQ(text(connector_.GetInvoice(url_, "S1", "INV-1014"), "Status"), "CLOSED");
  EXPECT_EQ(text(connector_.GetSAPInvoice(url_, "S1", "INV-1014"), "SAPStatus"), "CLEARED");
}

TEST_F(SandboxInvoices, AnInvoiceThatIsClosedIsNotReconciledAgain) {
  connector_.AutoReconcileMultiple(url_, "S1", StringArray{"INV-1015", "INV-1016"}, "101");
  const std::string other = saved_reconcile("S1", {});
  EXPECT_EQ(number_of_error([&] { connector_.AutoReconcileSingle(url_, "S1", "INV-1015", "101"); }),
            "0x80042757 BVInvoiceConnector");
  EXPECT_EQ(number_of_error([&] {
              connector_.AssocInvoiceAndOrderReconcile(url_, "S1", "700116", other, "101");
            }),
            "0x8004274D BVInvoiceConnector");
  const Error error =
      error_of([&] { connector_.GetNewReconicle(url_, "S1", "101", StringArray{"INV-1016"}); });
  EXPECT_NE(error.description.find("'INV-1016' is closed"), std::string::npos) << error.description;
}

TEST_F(SandboxInvoices, InvoicesOfOneReconcileAreReconciledInOneCall) {
  const std::string gid = saved_reconcile("S1", {"INV-1017", "INV-1018"});
  connector_.AutoReconcileMultiple(url_, "S1", StringArray{"INV-1017", "INV-1018"}, "101");
  EXPECT_EQ(text(reconcile("S1", gid), "Status"), "RECONCILED");
  EXPECT_EQ(search({.strStatus = "CLOSED"}).size(), 2U);
}

TEST_F(SandboxInvoices, WhatIsReconciledKeepsItsInvoicesAndTakesNoOthers) {
  const std::string gid = saved_reconcile("S1", {"INV-1019"});
  connector_.AutoReconcileSingle(url_, "S1", "INV-1019", "101");
  EXPECT_EQ(number_of_error([&] {
              connector_.AssocInvoiceAndOrderReconcile(url_, "S1", "700120", gid, "101");
            }),
            "0x8004274D BVInvoiceConnector");
  EXPECT_THROW(connector_.UnlockOrderReconcile(url_, "S1", gid, true, "101"), Error);
  connector_.UnlockOrderReconcile(url_, "S1", gid, false, "101");
  EXPECT_EQ(invoice_keys(reconcile("S2", gid)), Texts{"INV-1019"});
}

TEST_F(SandboxInvoices, AReconcileThatIsSavedAsReconciledClosesItsInvoices) {
  const SoapNode made = connector_.GetNewReconicle(url_, "S1", "101", StringArray{"INV-1021"});
  made.Nodes().ItemByName("Status").Value("RECONCILED");
  connector_.SaveOrderReconcile(url_, "S1", made);
  EXPECT_EQ(texts(search({.strStatus = "CLOSED"}), "InvoiceUID"), Texts{"INV-1021"});
}

TEST_F(SandboxInvoices, ACommissionRangeLeadsToItsStatements) {
  const SoapNode range = connector_.GetCommissionRange(url_, "S1", 3);
  ASSERT_EQ(range.Nodes().Count(), 3U);
  EXPECT_EQ(connector_.GetCommissionRange(url_, "S1", -1).Nodes().Count(), 0U);
  EXPECT_GT(text(range.Nodes().Item(0), "CommKey"), text(range.Nodes().Item(1), "CommKey"));
  for (const SoapNode& period : range.Nodes()) {
    const SoapNode statement =
        connector_.GetCommissionStatement(url_, "S1", text(period, "CommKey"));
    EXPECT_EQ(text(statement, "Total"), text(period, "Commission"));
    EXPECT_EQ(std::to_string(statement.Nodes().ItemByName("Lines").Nodes().Count()),
              text(period, "InvoiceCount"));
    const SoapNode sap = connector_.GetSAPCommissionStatement(url_, "S1", text(period, "CommKey"));
    EXPECT_EQ(text(sap, "Total"), text(period, "Commission"));
    EXPECT_TRUE(has(sap, "SAPCompanyCode"));
  }
}

TEST_F(SandboxInvoices, ACommissionRangeByAgentHasThatAgentsInvoicesAlone) {
  const std::string agent = text(search().front(), "AgentID");
  const SoapNode range = connector_.GetCommissionRangeByAgent(url_, "S1", 40, agent);
  std::size_t count = 0;
  for (const SoapNode& period : range.Nodes()) {
    const SoapNode statement =
        connector_.GetCommissionStatement(url_, "S1", text(period, "CommKey"));
    for (const SoapNode& line : statement.Nodes().ItemByName("Lines").Nodes()) {
      EXPECT_EQ(text(line, "AgentID"), agent);
      ++count;
    }
  }
  EXPECT_EQ(count, search({.strAgent = agent}).size());
}

}  // namespace
}  // namespace bvconn::test

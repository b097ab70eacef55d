#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "bvconn/connectors/documents/bv_acknowledgement_connector.h"
#include "bvconn/connectors/documents/bv_order_connector.h"
#include "bvconn/connectors/documents/bv_project_connector.h"
#include "bvconn/connectors/documents/bv_quote_connector.h"
#include "bvconn/connectors/documents/bv_request_for_quote_connector.h"
#include "bvconn/connectors/documents/bv_rma_connector.h"
#include "bvconn/connectors/documents/bv_sales_instrument_connector.h"
#include "bvconn/connectors/documents/bv_submittal_connector.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/documents_calls.h"
#include "sandbox/documents_fixture.h"

namespace bvconn::test {
namespace {

TEST_F(SandboxDocuments, ASavedProjectComesBackAsTheSameTree) {
  BVProjectConnector connector;
  const SoapNode project = some_project("PRJ-77001");
  connector.SaveProject(url_, "S", project);
  const SoapNode back = connector.getExistingProject(url_, "S", "PRJ-77001");
  EXPECT_EQ(node_to_xml(back), node_to_xml(project));
}

TEST_F(SandboxDocuments, AProjectSavedByTheDataAccessLayerIsTheSameOnSoap) {
  BVProjectConnector connector;
  const SoapNode project = some_project("PRJ-77002");
  go_by_dal();
  connector.SaveProject(url_, "S", project);
  const SoapNode by_dal = connector.getExistingProject(url_, "S", "PRJ-77002");
  BVConnectorObject().UsingTorvexDAL(false);
  const SoapNode by_soap = connector.getExistingProject(url_, "S", "PRJ-77002");
  EXPECT_EQ(node_to_xml(by_dal), node_to_xml(project));
  EXPECT_EQ(node_to_xml(by_soap), node_to_xml(project));
}

TEST_F(SandboxDocuments, AProjectWithoutAKeyGetsOne) {
  BVProjectConnector connector;
  const std::string gid = text(connector.SaveProject(url_, "S", some_project("")), "GID");
  const SoapNode back = connector.getExistingProject(url_, "S", gid);
  EXPECT_EQ(text(back, "GID"), gid);
  EXPECT_EQ(text(back, "Floors"), "7");
}

TEST_F(SandboxDocuments, EachNewProjectHasAKeyOfItsOwnAndIsKeptWhenItIsSaved) {
  BVProjectConnector connector;
  const SoapNode first = connector.getNewProject(url_, "S");
  const SoapNode second = connector.getNewProject(url_, "S");
  EXPECT_EQ(text(first, "GID"), "PRJ-3031");
  EXPECT_EQ(text(second, "GID"), "PRJ-3032");
  EXPECT_THROW(connector.getExistingProject(url_, "S", "PRJ-3032"), Error);
  connector.SaveProject(url_, "S", second);
  EXPECT_EQ(node_to_xml(connector.getExistingProject(url_, "S", "PRJ-3032")), node_to_xml(second));
}

TEST_F(SandboxDocuments, ACopyHasTheNameAndTheLinesButAnotherKey) {
  BVProjectConnector connector;
  const SoapNode project = connector.getExistingProject(url_, "S", "PRJ-3005");
  const SoapNode copy = connector.CopyProject(url_, "S", "PRJ-3005");
  EXPECT_EQ(text(copy, "GID"), "PRJ-3031");
  EXPECT_EQ(text(copy, "Name"), text(project, "Name"));
  EXPECT_EQ(copy.Nodes().ItemByName("Lines").Nodes().Count(),
            project.Nodes().ItemByName("Lines").Nodes().Count());
}

TEST_F(SandboxDocuments, ARevertedProjectIsAsBeforeItsLastChange) {
  BVProjectConnector connector;
  const SoapNode before = connector.getExistingProject(url_, "S", "PRJ-3006");
  connector.SaveProject(url_, "S", some_project("PRJ-3006"));
  EXPECT_EQ(node_to_xml(connector.getRevertedProject(url_, "S", "PRJ-3006")), node_to_xml(before));
  EXPECT_EQ(node_to_xml(connector.getExistingProject(url_, "S", "PRJ-3006")), node_to_xml(before));
}

TEST_F(SandboxDocuments, AReviewChangesTheStatusThatIsKept) {
  BVProjectConnector connector;
  const SoapNode project = connector.getExistingProject(url_, "S", "PRJ-3007");
  connector.RequestReview(url_, "S", project);
  EXPECT_EQ(text(connector.getExistingProject(url_, "S", "PRJ-3007"), "Status"), "IN REVIEW");
  connector.ReturnToAgent(url_, "S", project);
  EXPECT_EQ(text(connector.getExistingProject(url_, "S", "PRJ-3007"), "Status"), "RETURNED");
}

TEST_F(SandboxDocuments, EachSaveCountsInTheSaveStatus) {
  BVProjectConnector connector;
  EXPECT_EQ(text(connector.CheckSingleSaveStatus(url_, "S", "PRJ-3008"), "Revision"), "1");
  connector.SaveProject(url_, "S", some_project("PRJ-3008"));
  const SoapNode status = connector.CheckSingleSaveStatus(url_, "S", "PRJ-3008");
  EXPECT_EQ(text(status, "Revision"), "2");
  EXPECT_EQ(text(status, "SaveStatus"), "COMPLETE");
}

TEST_F(SandboxDocuments, QuotesAreMadeForEachChildOfTheContainer) {
  const SoapNode container = node_from_xml(
      "<Container><One><CustomerGID>CUS-2001</CustomerGID></One>"
      "<Two><CustomerGID>CUS-2002</CustomerGID></Two></Container>");
  const SoapNode made = BVProjectConnector().generateQuotes(url_, "S", container, "PRJ-3009");
  ASSERT_EQ(made.Nodes().Count(), 2U);
  EXPECT_EQ(text(made.Nodes().Item(0), "GID"), "QUO-4031");
  EXPECT_EQ(text(made.Nodes().Item(1), "GID"), "QUO-4032");
  EXPECT_EQ(text(made.Nodes().Item(1), "QuoteNumber"), "Q4032");
  const SoapNode quote = BVQuoteConnector().getExistingQuote(url_, "S", "QUO-4032");
  EXPECT_EQ(text(quote, "ProjectGID"), "PRJ-3009");
  EXPECT_EQ(text(quote.Nodes().ItemByName("Customer"), "GID"), "CUS-2002");
}

TEST_F(SandboxDocuments, AnEmptyContainerMakesOneQuoteOfAWholeProject) {
  const SoapNode made = BVProjectConnector().generateQuotes(url_, "S", SoapNode::make("Container"),
                                                            "", some_project("PRJ-77003"));
  ASSERT_EQ(made.Nodes().Count(), 1U);
  const std::string gid = text(made.Nodes().Item(0), "GID");
  const SoapNode quote = BVQuoteConnector().getExistingQuote(url_, "S", gid);
  EXPECT_EQ(text(quote, "ProjectGID"), "PRJ-77003");
  EXPECT_EQ(quote.Nodes().ItemByName("Lines").Nodes().Count(), 1U);
}

TEST_F(SandboxDocuments, AQuotedQuoteKeepsItsPrices) {
  BVQuoteConnector connector;
  EXPECT_TRUE(connector.canExpirationBeOveridden(url_, "S", "QUO-4007"));
  connector.SetQuoteStatusToQuoted(url_, "S", "QUO-4007");
  EXPECT_FALSE(connector.canExpirationBeOveridden(url_, "S", "QUO-4007"));
  EXPECT_EQ(text(connector.getExistingQuote(url_, "S", "QUO-4007"), "Status"), "QUOTED");
}

TEST_F(SandboxDocuments, NewPricesHoldThirtyDaysLonger) {
  BVQuoteConnector connector;
  const SoapNode quote = connector.getExistingQuote(url_, "S", "QUO-4010");
  const Date present = quote.Nodes().ItemByName("PriceExpirationDate").Value().date();
  const Date expected{present.milliseconds + 30LL * 24 * 60 * 60 * 1000};
  EXPECT_EQ(connector.getNewPriceExpirationDate(url_, "S", "QUO-4010"),
            conversions::format_date(expected, "m/d/yyyy"));
}

TEST_F(SandboxDocuments, ColumnPricesAreThoseOfTheLines) {
  const SoapNode quote = BVQuoteConnector().getExistingQuote(url_, "S", "QUO-4010");
  const SoapNode answer = BVSalesInstrumentConnector().getPreviousSalesInstrumentColumnPrices(
      "QUO-4010", "Quote", url_, "S");
  const SoapNodes lines = quote.Nodes().ItemByName("Lines").Nodes();
  const SoapNodes columns = answer.Nodes().ItemByName("Columns").Nodes();
  ASSERT_EQ(columns.Count(), lines.Count());
  for (std::size_t i = 0; i < lines.Count(); ++i) {
    EXPECT_EQ(text(columns.Item(i), "LineItemGID"), "QUO-4010-" + std::to_string(i + 1));
    EXPECT_EQ(text(columns.Item(i), "UnitPrice"), text(lines.Item(i), "UnitPrice"));
  }
}

TEST_F(SandboxDocuments, AnInvoiceIsFoundByItsNumber) {
  const SoapNode info = BVRMAConnector().GetInvoiceInfo(url_, "S", "700103");
  EXPECT_EQ(text(info, "InvoiceUID"), "INV-1003");
}

TEST_F(SandboxDocuments, AnOrderShowsPricesOnlyWhenAsked) {
  BVOrderConnector connector;
  const SoapNode without = connector.getSAPOrderView("S", url_, "ORD-5004", false);
  const SoapNode with = connector.getSAPOrderView("S", url_, "ORD-5004", true);
  EXPECT_EQ(text(with, "SAPOrderNumber"), "005004");
  EXPECT_TRUE(has(with, "Total"));
  EXPECT_FALSE(has(without, "Total"));
  EXPECT_TRUE(has(with.Nodes().ItemByName("Lines").Nodes().Item(0), "UnitPrice"));
  EXPECT_FALSE(has(without.Nodes().ItemByName("Lines").Nodes().Item(0), "UnitPrice"));
}

TEST_F(SandboxDocuments, TheSalesPeopleOfAnOrderAreKept) {
  const SoapNode people = node_from_xml("<Any><Person>Ida</Person><Person>Olaf</Person></Any>");
  BVSalesInstrumentConnector().UpdateCommSalesPeople("S", url_, "ORD-5005", people);
  const SoapNode info = BVOrderConnector().getSAPInfo("S", url_, "ORD-5005", "102", "CUS-2003");
  EXPECT_EQ(node_to_xml(info.Nodes().ItemByName("CommissionableSalesPeople")), node_to_xml(people));
  EXPECT_EQ(text(info, "AgentGID"), "102");
  EXPECT_EQ(text(info, "CustomerName"), "Canyon Supply House");
}

TEST_F(SandboxDocuments, ANewAcknowledgementIsInTheOverviewOfItsOrder) {
  BVAcknowledgementConnector connector;
  const auto count = connector.getOverview("ORD-5006", url_, "S").Nodes().Count();
  const std::string address = connector.getNewAcknowledgment(
      "<Ack note='a &amp; b'><OrderGID>ORD-5006</OrderGID></Ack>", url_, "S");
  const SoapNode overview = connector.getOverview("ORD-5006", url_, "S");
  ASSERT_EQ(overview.Nodes().Count(), count + 1);
  const SoapNode made = overview.Nodes().Item(count);
  EXPECT_EQ(text(made, "Address"), address);
  EXPECT_EQ(connector.GetExistingAcknowledgement(text(made, "GID"), url_, "S"), address);
}

TEST_F(SandboxDocuments, TheManufacturersQuoteNumberIsKept) {
  BVRequestForQuoteConnector connector;
  const std::string rfq = text(connector.getRFQs("QUO-4008", url_, "S").Nodes().Item(0), "GID");
  connector.updateRFQ(rfq, "M-4711", url_, "S");
  const SoapNode updated = connector.getRFQs("QUO-4008", url_, "S").Nodes().Item(0);
  EXPECT_EQ(text(updated, "GID"), rfq);
  EXPECT_EQ(text(updated, "MfrQuoteNumber"), "M-4711");
}

TEST_F(SandboxDocuments, HeaderCommentsOfAllInstrumentsAreKept) {
  BVSalesInstrumentConnector connector;
  connector.UpdateProjectHeaderComments(header_comments("PRJ-3011", "T1", "one"), "S", url_);
  connector.UpdateQuoteHeaderComments(header_comments("QUO-4011", "T2", "two"), "S", url_);
  connector.UpdateOrderHeaderComments(header_comments("ORD-5011", "T3", "three"), "S", url_);
  connector.UpdateHeaderComments("S", header_comments("ORD-5012", "T4", "four"), url_);
  const auto words = [](const SoapNode& node) { return text(node, "Comment"); };
  EXPECT_EQ(words(connector.GetProjectHeaderComments("PRJ-3011", "T1", "S", url_)), "one");
  EXPECT_EQ(words(connector.GetQuoteHeaderComments("QUO-4011", "T2", "S", url_)), "two");
  EXPECT_EQ(words(connector.getHeaderCommentsForCopyToOrder("QUO-4011", "T2", "S", url_)), "two");
  EXPECT_EQ(words(connector.GetOrderHeaderComments("ORD-5011", "T3", "S", url_)), "three");
  EXPECT_EQ(words(connector.GetHeaderComments("ORD-5012", "T4", url_, "S")), "four");
  EXPECT_FALSE(has(connector.GetHeaderComments("ORD-5012", "T3", url_, "S"), "Comment"));
}

TEST_F(SandboxDocuments, LineCommentsOfAllInstrumentsAreKept) {
  BVSalesInstrumentConnector connector;
  for (const auto& [type, gid] : {std::pair{"project", "PRJ-3012"}, std::pair{"Quote", "QUO-4012"},
                                  std::pair{"ORDER", "ORD-5013"}}) {
    const std::string line = std::string(gid) + "-1";
    const std::string words = "For " + line + ", a &amp; b";
    connector.SetLineComments(type, line_comments(line, words), url_, "S");
    EXPECT_EQ(text(connector.GetLineComments(gid, line, url_, "S"), "Comment"),
              "For " + line + ", a & b");
  }
}

TEST_F(SandboxDocuments, APilferedLockMovesToTheCaller) {
  BVProjectConnector connector;
  EXPECT_EQ(text(connector.getExistingProject(url_, "S", "PRJ-3013"), "LockedBy"), "");
  XMLDocument first;
  pilfer(url_, "PRJ-3013", "ANNA", first);
  EXPECT_EQ(text(connector.getExistingProject(url_, "S", "PRJ-3013"), "LockedBy"), "ANNA");
  XMLDocument second;
  pilfer(url_, "PRJ-3013", "BERT", second);
  EXPECT_EQ(text(connector.getExistingProject(url_, "S", "PRJ-3013"), "LockedBy"), "BERT");
  EXPECT_NE(second.xml().find(">BERT</LockedBy>"), std::string::npos) << second.xml();
  EXPECT_NE(second.xml().find(">ANNA</PreviouslyLockedBy>"), std::string::npos) << second.xml();
}

TEST_F(SandboxDocuments, ProductsHaveCostsAndApprovals) {
  BVSalesInstrumentConnector connector;
  const SoapNode approvals = connector.GetProductApprovals(url_, "S", "101", line_items());
  const SoapNode costs = connector.GetProductCost("S", url_, "101", "CUS-2001", "", line_items());
  ASSERT_EQ(approvals.Nodes().Count(), 3U);
  EXPECT_EQ(text(approvals.Nodes().Item(1), "ApprovalRequired"), "False");
  EXPECT_EQ(text(approvals.Nodes().Item(2), "ApprovalRequired"), "True");
  ASSERT_EQ(costs.Nodes().Count(), 2U);
  // 60 % of 419.00.
  EXPECT_EQ(text(costs.Nodes().Item(1), "Cost"), "251.4");
}

TEST_F(SandboxDocuments, SubmittalsAreCreatedUpdatedAndRevised) {
  BVSubmittalConnector connector;
  const auto count = [&](const SoapNode& list) { return list.Nodes().Count(); };
  ASSERT_EQ(count(connector.GetAllSubmittalsForProject("S", "PRJ-3020", url_)), 0U);
  const std::string uid = connector.CreateSubmittal("S", submittal_of_project(""), url_);
  EXPECT_EQ(uid, "SUB-8021");
  SoapNode changed = connector.GetSubmittal("S", uid, url_);
  EXPECT_EQ(text(changed, "Title"), "Roof");
  changed.Nodes().ItemByName("Title").Value("Roof and walls");
  EXPECT_EQ(connector.UpdateSubmittal("S", changed, url_), uid);
  EXPECT_EQ(text(connector.GetSubmittal("S", uid, url_), "Title"), "Roof and walls");
  EXPECT_EQ(connector.ReviseSubmittal("S", changed, url_), "SUB-8022");
  EXPECT_EQ(count(connector.GetAllSubmittalsForProject("S", "PRJ-3020", url_)), 2U);
  const SoapNode open = connector.GetUpdatableSubmittalsForProject("S", "PRJ-3020", url_);
  ASSERT_EQ(count(open), 1U);
  EXPECT_EQ(text(open.Nodes().Item(0), "UID"), "SUB-8022");
}

TEST_F(SandboxDocuments, CommentsOfLineItemsComeFromSubmittalsOfTheRightKind) {
  BVSubmittalConnector connector;
  connector.CreateSubmittal(
      "S",
      node_from_xml("<Sheet><QuoteNumber>Q4025</QuoteNumber><Line><LineItemGID>QUO-4025-2"
                    "</LineItemGID><Comment>Paint it.</Comment></Line></Sheet>"),
      url_);
  const Variant lines(StringArray{"QUO-4025-1", "QUO-4025-2"});
  const SoapNode comments = connector.GetSubmittalCommentsForQuoteLineItems("S", lines, url_);
  ASSERT_EQ(comments.Nodes().Count(), 2U);
  EXPECT_FALSE(has(comments.Nodes().Item(0), "Line"));
  EXPECT_EQ(text(comments.Nodes().Item(1).Nodes().ItemByName("Line"), "Comment"), "Paint it.");
  EXPECT_THROW(connector.GetSubmittalCommentsForProjectLineItem("S", "QUO-4025-2", url_), Error);
  EXPECT_EQ(connector
                .GetSubmittalCommentsForQuoteLineItems(
                    "S", Variant(StringArray(std::vector<std::string>())), url_)
                .Nodes()
                .Count(),
            0U);
}

TEST_F(SandboxDocuments, AnRmaIsSavedSubmittedAndOpened) {
  BVRMAConnector connector;
  const SoapNode fresh = connector.GetNewRMA("MFR-2", url_, "S");
  const std::string uid = text(fresh, "UID");
  EXPECT_EQ(uid, "RMA-9011");
  EXPECT_EQ(text(fresh, "ManufacturerName"), "Evenwall");
  fresh.Nodes().Create("Reason", "Wrong colour");
  EXPECT_EQ(text(connector.SaveRMA(url_, "S", fresh), "Reason"), "Wrong colour");
  connector.SubmitRMA(url_, "S", fresh);
  EXPECT_EQ(text(connector.GetExistingRMA(url_, "S", uid), "Status"), "SUBMITTED");
  EXPECT_EQ(text(connector.openRMA(url_, "S", uid), "Status"), "OPEN");
  EXPECT_EQ(text(connector.GetExistingRMA(url_, "S", uid), "Reason"), "Wrong colour");
}

}  // namespace
}  // namespace bvconn::test

#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/automation/observe_world.h"
#include "bvconn/connectors/documents/bv_acknowledgement_connector.h"
#include "bvconn/connectors/documents/bv_order_connector.h"
#include "bvconn/connectors/documents/bv_project_connector.h"
#include "bvconn/connectors/documents/bv_quote_connector.h"
#include "bvconn/connectors/documents/bv_request_for_quote_connector.h"
#include "bvconn/connectors/documents/bv_rma_connector.h"
#include "bvconn/connectors/documents/bv_sales_instrument_connector.h"
#include "bvconn/connectors/documents/bv_submittal_connector.h"
#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/platform.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

/// The library with its real connections against the real server.
class SandboxDocuments : public ::testing::Test {
 protected:
  SandboxDocuments() : scope_(real_connections()) {
    session() = SessionState();
    start({"--port", "0", "--verbose"});
  }
  ~SandboxDocuments() override { session() = SessionState(); }

  void start(const std::vector<std::string>& arguments) {
    sandbox_ = std::make_unique<SandboxProcess>(arguments);
    url_ = base() + "/soap";
  }
  void go_by_dal() {
    BVConnectorObject object;
    object.UserName("anna");
    object.Password("secret");
    object.InitTorvexDAL(base() + "/dal");
    object.UseTorvexDAL();
  }
  /// The requests that the server saw; it ends with this.
  std::string requests_seen() {
    EXPECT_EQ(sandbox_->end_by(SIGTERM), 0);
    return sandbox_->errors();
  }

  SandboxProcess& sandbox() { return *sandbox_; }

  std::string url_;

 private:
  static platform::Platform real_connections() {
    auto world = automation::detail::World().platform();
    world.transport = make_http_transport;
    world.service_object = make_http_service_object;
    return world;
  }
  std::string base() const { return "http://127.0.0.1:" + std::to_string(sandbox_->port()); }

  std::unique_ptr<SandboxProcess> sandbox_;
  platform::ScopedPlatform scope_;
};

std::string text(const SoapNode& node, std::string_view name) {
  return to_text(node.Nodes().ItemByName(name).Value());
}

bool has(const SoapNode& node, std::string_view name) {
  for (const SoapNode& each : node.Nodes()) {
    if (each.Name() == name) return true;
  }
  return false;
}

/// A project with what a tree can hold.
SoapNode some_project(std::string_view gid) {
  SoapNode project = SoapNode::make("ProjectBean");
  if (!gid.empty()) project.Nodes().Create("GID", gid);
  project.Nodes().Create("Name", "Bridge & \"Tower\" <north>, Ærø");
  project.Nodes().Create("Floors", std::int32_t{7});
  project.Nodes().Create("Area", 1234.5);
  project.Nodes().Create("Listed", true);
  project.Nodes().Create("Nothing", Variant());
  project.Nodes().Create("Tags", Variant(StringArray{"timber", "brick"}));
  SoapNode line = SoapNode::make("Line");
  line.Nodes().Create("GID", "L-77");
  line.Nodes().Create("CatalogNumber", "BRK-100");
  SoapNode lines = SoapNode::make("Lines");
  lines.Nodes().Append(line);
  project.Nodes().Append(lines);
  return project;
}

SoapNode line_items() {
  return node_from_xml(
      "<LineItems><Item><CatalogNumber>BRK-100</CatalogNumber></Item>"
      "<Item><CatalogNumber>DOR-36L</CatalogNumber></Item></LineItems>");
}

struct Named {
  std::string name;
  std::function<void(const std::string& url)> call;
};

std::vector<Named> project_calls() {
  return {
      {"CopyProject", [](auto& url) { BVProjectConnector().CopyProject(url, "S", "PRJ-3001"); }},
      {"generateQuotes",
       [](auto& url) {
         BVProjectConnector().generateQuotes(url, "S", SoapNode::make("Container"), "PRJ-3002");
       }},
      {"getNewProject", [](auto& url) { BVProjectConnector().getNewProject(url, "S"); }},
      {"getExistingProject",
       [](auto& url) { BVProjectConnector().getExistingProject(url, "S", "PRJ-3030"); }},
      {"getRevertedProject",
       [](auto& url) { BVProjectConnector().getRevertedProject(url, "S", "PRJ-3003"); }},
      {"setStatusToNegotiating",
       [](auto& url) { BVProjectConnector().setStatusToNegotiating(url, "S", "PRJ-3001"); }},
      {"setStatusToLostOpportunity",
       [](auto& url) {
         BVProjectConnector().setStatusToLostOpportunity(url, "S", "PRJ-3001", "too dear");
       }},
      {"SaveProject",
       [](auto& url) { BVProjectConnector().SaveProject(url, "S", some_project("X-1")); }},
      {"RequestReview",
       [](auto& url) { BVProjectConnector().RequestReview(url, "S", some_project("X-2")); }},
      {"ReturnToAgent",
       [](auto& url) { BVProjectConnector().ReturnToAgent(url, "S", some_project("X-3")); }},
      {"CheckSingleSaveStatus",
       [](auto& url) { BVProjectConnector().CheckSingleSaveStatus(url, "S", "PRJ-3004"); }},
  };
}

std::vector<Named> quote_and_order_calls() {
  return {
      {"getExistingQuote",
       [](auto& url) { BVQuoteConnector().getExistingQuote(url, "S", "QUO-4001"); }},
      {"SetQuoteStatusToQuoted",
       [](auto& url) { BVQuoteConnector().SetQuoteStatusToQuoted(url, "S", "QUO-4002"); }},
      {"canExpirationBeOveridden",
       [](auto& url) { BVQuoteConnector().canExpirationBeOveridden(url, "S", "QUO-4003"); }},
      {"getNewPriceExpirationDate",
       [](auto& url) { BVQuoteConnector().getNewPriceExpirationDate(url, "S", "QUO-4004"); }},
      {"getSAPOrderView",
       [](auto& url) { BVOrderConnector().getSAPOrderView("S", url, "ORD-5001", true); }},
      {"getSAPInfo",
       [](auto& url) { BVOrderConnector().getSAPInfo("S", url, "ORD-5002", "101", "CUS-2001"); }},
      {"updateRFQ",
       [](auto& url) { BVRequestForQuoteConnector().updateRFQ("RFQ-6001", "M-1", url, "S"); }},
      {"getRFQs", [](auto& url) { BVRequestForQuoteConnector().getRFQs("QUO-4001", url, "S"); }},
      {"getOverview",
       [](auto& url) { BVAcknowledgementConnector().getOverview("ORD-5001", url, "S"); }},
      {"GetExistingAcknowledgement",
       [](auto& url) {
         BVAcknowledgementConnector().GetExistingAcknowledgement("ACK-7001", url, "S");
       }},
      {"getNewAcknowledgment",
       [](auto& url) {
         BVAcknowledgementConnector().getNewAcknowledgment("<A><OrderGID>ORD-5002</OrderGID></A>",
                                                           url, "S");
       }},
  };
}

SoapNode header_comments(std::string_view gid, std::string_view type, std::string_view words) {
  SoapNode node = SoapNode::make("Comments");
  node.Nodes().Create("GID", gid);
  node.Nodes().Create("CommentType", type);
  node.Nodes().Create("Comment", words);
  return node;
}

std::string line_comments(std::string_view line, std::string_view words) {
  return "<LineComments><LineItemGID>" + std::string(line) + "</LineItemGID><Comment>" +
         std::string(words) + "</Comment></LineComments>";
}

void pilfer(const std::string& url, std::string_view gid, std::string_view user,
            XMLDocument& answer) {
  BVSalesInstrumentConnector().pilferSalesInstrument(gid, &answer, "PROJECT", url, user);
}

std::vector<Named> comment_calls() {
  using Connector = BVSalesInstrumentConnector;
  return {
      {"GetHeaderComments",
       [](auto& url) { Connector().GetHeaderComments("QUO-4001", "GENERAL", url, "S"); }},
      {"GetLineComments",
       [](auto& url) { Connector().GetLineComments("QUO-4001", "QUO-4001-1", url, "S"); }},
      {"UpdateHeaderComments",
       [](auto& url) {
         Connector().UpdateHeaderComments("S", header_comments("ORD-5001", "T", "c"), url);
       }},
      {"SetLineComments",
       [](auto& url) {
         Connector().SetLineComments("quote", line_comments("QUO-4002-1", "c"), url, "S");
       }},
      {"GetOrderHeaderComments",
       [](auto& url) { Connector().GetOrderHeaderComments("ORD-5001", "GENERAL", "S", url); }},
      {"GetQuoteHeaderComments",
       [](auto& url) { Connector().GetQuoteHeaderComments("QUO-4001", "GENERAL", "S", url); }},
      {"getHeaderCommentsForCopyToOrder",
       [](auto& url) {
         Connector().getHeaderCommentsForCopyToOrder("QUO-4002", "GENERAL", "S", url);
       }},
      {"GetProjectHeaderComments",
       [](auto& url) { Connector().GetProjectHeaderComments("PRJ-3001", "GENERAL", "S", url); }},
      {"UpdateOrderHeaderComments",
       [](auto& url) {
         Connector().UpdateOrderHeaderComments(header_comments("ORD-5002", "T", "c"), "S", url);
       }},
      {"UpdateQuoteHeaderComments",
       [](auto& url) {
         Connector().UpdateQuoteHeaderComments(header_comments("QUO-4002", "T", "c"), "S", url);
       }},
      {"UpdateProjectHeaderComments",
       [](auto& url) {
         Connector().UpdateProjectHeaderComments(header_comments("PRJ-3002", "T", "c"), "S", url);
       }},
  };
}

std::vector<Named> instrument_calls() {
  using Connector = BVSalesInstrumentConnector;
  return {
      {"GetProductApprovals",
       [](auto& url) { Connector().GetProductApprovals(url, "S", "101", line_items()); }},
      {"getPreviousSalesInstrumentColumnPrices",
       [](auto& url) {
         Connector().getPreviousSalesInstrumentColumnPrices("QUO-4001", "quote", url, "S");
         Connector().getPreviousSalesInstrumentColumnPrices("ORD-5001", "order", url, "S");
       }},
      {"pilferSalesInstrument",
       [](auto& url) {
         XMLDocument answer;
         pilfer(url, "ORD-5003", "S", answer);
         EXPECT_EQ(answer.xml().find("Fault"), std::string::npos) << answer.xml();
       }},
      {"UpdateCommSalesPeople",
       [](auto& url) {
         Connector().UpdateCommSalesPeople("S", url, "ORD-5001", node_from_xml("<P><N>a</N></P>"));
       }},
      {"GetProductCost",
       [](auto& url) {
         Connector().GetProductCost("S", url, "101", "CUS-2001", "NA-1", line_items());
       }},
  };
}

SoapNode submittal_of_project(std::string_view uid) {
  SoapNode node = SoapNode::make("Sheet");
  if (!uid.empty()) node.Nodes().Create("UID", uid);
  node.Nodes().Create("ProjectGID", "PRJ-3020");
  node.Nodes().Create("Title", "Roof");
  return node;
}

std::vector<Named> submittal_calls() {
  using Connector = BVSubmittalConnector;
  const Variant project_lines(StringArray{"PRJ-3001-1", "PRJ-3001-2"});
  const Variant quote_lines(StringArray{"QUO-4001-1", "QUO-4001-2"});
  return {
      {"GetAllParagraphs", [](auto& url) { Connector().GetAllParagraphs("S", url); }},
      {"GetAllRemarks", [](auto& url) { Connector().GetAllRemarks("S", url); }},
      {"GetSubmittal", [](auto& url) { Connector().GetSubmittal("S", "SUB-8001", url); }},
      {"GetSubmittalCriteria",
       [](auto& url) { Connector().GetSubmittalCriteria("S", "SUB-8002", url); }},
      {"GetSubmittalCommentsForProjectLineItem",
       [](auto& url) {
         Connector().GetSubmittalCommentsForProjectLineItem("S", "PRJ-3001-1", url);
       }},
      {"GetSubmittalCommentsForProjectLineItems",
       [=](auto& url) {
         Connector().GetSubmittalCommentsForProjectLineItems("S", project_lines, url);
       }},
      {"GetSubmittalCommentsForQuoteLineItem",
       [](auto& url) { Connector().GetSubmittalCommentsForQuoteLineItem("S", "QUO-4001-1", url); }},
      {"GetSubmittalCommentsForQuoteLineItems",
       [=](auto& url) {
         Connector().GetSubmittalCommentsForQuoteLineItems("S", quote_lines, url);
       }},
      {"CreateSubmittal",
       [](auto& url) { Connector().CreateSubmittal("S", submittal_of_project(""), url); }},
      {"ReviseSubmittal",
       [](auto& url) { Connector().ReviseSubmittal("S", submittal_of_project("SUB-8003"), url); }},
      {"UpdateSubmittal",
       [](auto& url) { Connector().UpdateSubmittal("S", submittal_of_project("SUB-8004"), url); }},
      {"GetAllSubmittalsForProject",
       [](auto& url) { Connector().GetAllSubmittalsForProject("S", "PRJ-3001", url); }},
      {"GetAllSubmittalsForQuote",
       [](auto& url) { Connector().GetAllSubmittalsForQuote("S", "Q4001", url); }},
      {"GetUpdatableSubmittalsForProject",
       [](auto& url) { Connector().GetUpdatableSubmittalsForProject("S", "PRJ-3002", url); }},
      {"GetUpdatableSubmittalsForQuote",
       [](auto& url) { Connector().GetUpdatableSubmittalsForQuote("S", "Q4002", url); }},
  };
}

std::vector<Named> rma_calls() {
  const auto rma = [] {
    return node_from_xml("<Bean><UID>RMA-9001</UID><Why>broken</Why></Bean>");
  };
  return {
      {"GetNewRMA", [](auto& url) { BVRMAConnector().GetNewRMA("MFR-1", url, "S"); }},
      {"GetExistingRMA", [](auto& url) { BVRMAConnector().GetExistingRMA(url, "S", "RMA-9002"); }},
      {"SaveRMA", [=](auto& url) { BVRMAConnector().SaveRMA(url, "S", rma()); }},
      {"SubmitRMA", [=](auto& url) { BVRMAConnector().SubmitRMA(url, "S", rma()); }},
      {"openRMA", [](auto& url) { BVRMAConnector().openRMA(url, "S", "RMA-9003"); }},
      {"GetInvoiceInfo", [](auto& url) { BVRMAConnector().GetInvoiceInfo(url, "S", "700103"); }},
  };
}

std::vector<Named> all_calls() {
  std::vector<Named> calls;
  for (const auto& family : {project_calls(), quote_and_order_calls(), comment_calls(),
                             instrument_calls(), submittal_calls(), rma_calls()}) {
    calls.insert(calls.end(), family.begin(), family.end());
  }
  return calls;
}

/// Makes all calls and gives what failed.
std::string failures_of(const std::vector<Named>& calls, const std::string& url) {
  std::string failures;
  for (const Named& each : calls) {
    try {
      each.call(url);
    } catch (const Error& error) {
      failures.append(each.name).append(": ").append(error.description).append("\n");
    }
  }
  return failures;
}

TEST(SandboxDocumentCalls, AreThoseOfAllOperationsOfTheDocumentConnectors) {
  const std::set<std::string> connectors{
      "BVProjectConnector",   "BVQuoteConnector",           "BVOrderConnector",
      "BVSubmittalConnector", "BVRequestForQuoteConnector", "BVSalesInstrumentConnector",
      "BVRMAConnector",       "BVAcknowledgementConnector"};
  std::multiset<std::string> operations;
  for (const automation::ClassInfo* info : automation::classes()) {
    if (!connectors.contains(info->name)) continue;
    for (const auto& member : info->members) {
      if (member.kind == automation::MemberKind::kOperation) operations.insert(member.name);
    }
  }
  std::multiset<std::string> called;
  for (const Named& each : all_calls()) called.insert(each.name);
  EXPECT_EQ(called, operations);
  EXPECT_EQ(called.size(), 59U);
}

TEST_F(SandboxDocuments, EveryOperationIsAnsweredOnSoap) {
  EXPECT_EQ(failures_of(all_calls(), url_), "");
  const std::string seen = requests_seen();
  EXPECT_EQ(seen.find(" 500"), std::string::npos) << seen;
  EXPECT_EQ(seen.find("/dal"), std::string::npos) << seen;
}

TEST_F(SandboxDocuments, EveryOperationWithARouteIsAnsweredByTheDataAccessLayer) {
  go_by_dal();
  EXPECT_EQ(failures_of(all_calls(), url_), "");
  const std::string seen = requests_seen();
  EXPECT_EQ(seen.find(" 500"), std::string::npos) << seen;
  for (const char* operation : {"ProjectService/CopyProject",
                                "ProjectService/generateQuotes",
                                "ProjectService/getNewProject",
                                "ProjectService/getExistingProject",
                                "ProjectService/getRevertedProject",
                                "ProjectService/SaveProject",
                                "ProjectService/RequestReview",
                                "ProjectService/ReturnToAgent",
                                "ProjectService/CheckSingleSaveStatus",
                                "ProjectService/GetProjectHeaderComments",
                                "ProjectService/UpdateProjectHeaderComments",
                                "QuoteService/SetQuoteStatusToQuoted",
                                "QuoteService/updateRFQ",
                                "QuoteService/GetQuoteHeaderComments",
                                "QuoteService/UpdateQuoteHeaderComments",
                                "QuoteService/getPreviousSalesInstrumentColumnPrices",
                                "OrderService/getSAPOrderView",
                                "OrderService/getSAPInfo",
                                "OrderService/GetOrderHeaderComments",
                                "OrderService/UpdateOrderHeaderComments",
                                "OrderService/SetLineComments",
                                "OrderService/getPreviousSalesInstrumentColumnPrices",
                                "SearchService/GetProductApprovals",
                                "SalesInstrumentService/GetLineComments",
                                "SalesInstrumentService/GetProductCost",
                                "SubmittalService/GetAllSubmittalsForProject",
                                "SubmittalService/GetAllSubmittalsForQuote",
                                "SubmittalService/GetUpdatableSubmittalsForProject",
                                "SubmittalService/GetUpdatableSubmittalsForQuote",
                                "RMAService/GetNewRMA",
                                "RMAService/GetExistingRMA",
                                "RMAService/SaveRMA",
                                "RMAService/SubmitRMA",
                                "RMAService/GetInvoiceInfo"}) {
    EXPECT_NE(seen.find("POST /dal/" + std::string(operation) + " - 200\n"), std::string::npos)
        << operation;
  }
}

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

struct UnknownKey {
  const char* service;
  const char* method;
  const char* parameters;
  const char* told;
};

TEST_F(SandboxDocuments, AFaultNamesTheKeyThatIsUnknown) {
  for (const UnknownKey& each : {
           UnknownKey{"ProjectService", "getProject", "<GID>PRJ-1</GID>",
                      "There is no project with the GID 'PRJ-1'"},
           UnknownKey{"ProjectService", "copyProject", "<GID>QUO-4001</GID>",
                      "There is no project with the GID 'QUO-4001'"},
           UnknownKey{"QuoteService", "getQuote", "<GID>QUO-1</GID>",
                      "There is no quote with the GID 'QUO-1'"},
           UnknownKey{"SalesInstrumentService", "pilferSalesInstrument", "<param>Z-1</param>",
                      "There is no project, quote or order with the GID 'Z-1'"},
           UnknownKey{"OrderService", "getAcknowledgement", "<param>ACK-1</param>",
                      "There is no acknowledgement with the GID 'ACK-1'"},
           UnknownKey{"SubmittalService", "getSubmittal", "<param>SUB-1</param>",
                      "There is no submittal with the UID 'SUB-1'"},
           UnknownKey{"SubmittalService", "getAllSubmittalsForQuote", "<param>Q1</param>",
                      "There is no quote with the QuoteNumber 'Q1'"},
           UnknownKey{"RMAService", "getInvoiceInfo", "<InvoiceNumber>7</InvoiceNumber>",
                      "There is no invoice with the InvoiceNumber '7'"},
           UnknownKey{"RMAService", "newRMA", "<ManufacturerGID>MFR-0</ManufacturerGID>",
                      "There is no manufacturer with the GID 'MFR-0'"},
       }) {
    std::string typed(each.parameters);
    typed.insert(typed.find('>'), " xsi:type=\"xsd:string\"");
    const auto reply = sandbox().soap("urn:" + std::string(each.service), each.method, typed);
    EXPECT_EQ(reply.status, 500);
    EXPECT_NE(reply.body.find("<faultcode>SOAP-ENV:Client</faultcode><faultstring>" +
                              std::string(each.told) + "</faultstring>"),
              std::string::npos)
        << reply.body;
  }
}

TEST_F(SandboxDocuments, AFaultOfTheDataAccessLayerIsTheTextOfOne) {
  const auto reply = sandbox().dal("ProjectService/getExistingProject",
                                   R"({"arguments":["PRJ-1"]})", sandbox().login());
  EXPECT_EQ(reply.status, 200);
  EXPECT_NE(reply.body.find("<faultstring>There is no project with the GID 'PRJ-1'<"),
            std::string::npos)
      << reply.body;
}

TEST_F(SandboxDocuments, WhatTheDataAccessLayerCannotTakeIsRefused) {
  const std::string token = sandbox().login();
  const auto status = [&](const char* arguments) {
    return sandbox().dal("ProjectService/getExistingProject", arguments, token).status;
  };
  EXPECT_EQ(status(R"({"arguments":[]})"), 400);
  EXPECT_EQ(status(R"({"arguments":["PRJ-3001","PRJ-3002"]})"), 400);
  EXPECT_EQ(status(R"({"arguments":[3001]})"), 400);
  const auto reply =
      sandbox().dal("ProjectService/SaveProject", R"({"arguments":["no request"]})", token);
  EXPECT_EQ(reply.status, 200);
  EXPECT_NE(reply.body.find("Fault>"), std::string::npos) << reply.body;
}

TEST_F(SandboxDocuments, ASaveThatFailsKeepsNothing) {
  // The whole project is saved first; then the quote's customer turns out to be unknown.
  const SoapNode container =
      node_from_xml("<Container><One><CustomerGID>CUS-0</CustomerGID></One></Container>");
  EXPECT_THROW(
      BVProjectConnector().generateQuotes(url_, "S", container, "", some_project("PRJ-77004")),
      Error);
  EXPECT_THROW(BVProjectConnector().getExistingProject(url_, "S", "PRJ-77004"), Error);
}

TEST_F(SandboxDocuments, WhatWasSavedOutlivesTheServer) {
  const auto folder = std::filesystem::temp_directory_path() /
                      ("bvsandbox-documents-" + std::to_string(std::random_device{}()));
  std::filesystem::create_directory(folder);
  const std::vector<std::string> arguments{"--port", "0", "--db", (folder / "store.db").string()};
  start(arguments);
  const SoapNode project = some_project("PRJ-77005");
  BVProjectConnector().SaveProject(url_, "S", project);
  BVSalesInstrumentConnector().UpdateProjectHeaderComments(
      header_comments("PRJ-77005", "T", "kept"), "S", url_);
  EXPECT_EQ(text(BVProjectConnector().getNewProject(url_, "S"), "GID"), "PRJ-3031");
  EXPECT_EQ(sandbox().end_by(SIGTERM), 0);
  start(arguments);
  const SoapNode back = BVProjectConnector().getExistingProject(url_, "S", "PRJ-77005");
  EXPECT_EQ(node_to_xml(back), node_to_xml(project));
  const SoapNode comments =
      BVSalesInstrumentConnector().GetProjectHeaderComments("PRJ-77005", "T", "S", url_);
  EXPECT_EQ(text(comments, "Comment"), "kept");
  EXPECT_EQ(text(BVProjectConnector().getNewProject(url_, "S"), "GID"), "PRJ-3032");
  EXPECT_EQ(sandbox().end_by(SIGTERM), 0);
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace bvconn::test

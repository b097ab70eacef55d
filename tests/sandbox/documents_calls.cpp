#include "sandbox/documents_calls.h"

#include <gtest/gtest.h>

#include "bvconn/connectors/documents/bv_acknowledgement_connector.h"
#include "bvconn/connectors/documents/bv_order_connector.h"
#include "bvconn/connectors/documents/bv_project_connector.h"
#include "bvconn/connectors/documents/bv_quote_connector.h"
#include "bvconn/connectors/documents/bv_request_for_quote_connector.h"
#include "bvconn/connectors/documents/bv_rma_connector.h"
#include "bvconn/connectors/documents/bv_sales_instrument_connector.h"
#include "bvconn/connectors/documents/bv_submittal_connector.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn::test {
namespace {

std::vector<DocumentCall> project_calls() {
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

std::vector<DocumentCall> quote_and_order_calls() {
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

std::vector<DocumentCall> comment_calls() {
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

std::vector<DocumentCall> instrument_calls() {
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

std::vector<DocumentCall> submittal_calls() {
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

std::vector<DocumentCall> rma_calls() {
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

}  // namespace

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

SoapNode submittal_of_project(std::string_view uid) {
  SoapNode node = SoapNode::make("Sheet");
  if (!uid.empty()) node.Nodes().Create("UID", uid);
  node.Nodes().Create("ProjectGID", "PRJ-3020");
  node.Nodes().Create("Title", "Roof");
  return node;
}

void pilfer(const std::string& url, std::string_view gid, std::string_view user,
            XMLDocument& answer) {
  BVSalesInstrumentConnector().pilferSalesInstrument(gid, &answer, "PROJECT", url, user);
}

std::vector<DocumentCall> all_document_calls() {
  std::vector<DocumentCall> calls;
  for (const auto& family : {project_calls(), quote_and_order_calls(), comment_calls(),
                             instrument_calls(), submittal_calls(), rma_calls()}) {
    calls.insert(calls.end(), family.begin(), family.end());
  }
  return calls;
}

}  // namespace bvconn::test

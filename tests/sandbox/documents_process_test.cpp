#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/connectors/documents/bv_project_connector.h"
#include "bvconn/connectors/documents/bv_sales_instrument_connector.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/documents_calls.h"
#include "sandbox/documents_fixture.h"

namespace bvconn::test {
namespace {

/// Makes all calls and gives what failed.
std::string failures_of(const std::vector<DocumentCall>& calls, const std::string& url) {
  std::string failures;
  for (const DocumentCall& each : calls) {
    try {
      each.make(url);
    } catch (const Error& error) {
      failures.append(each.operation).append(": ").append(error.description).append("\n");
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
  for (const DocumentCall& each : all_document_calls()) called.insert(each.operation);
  EXPECT_EQ(called, operations);
  EXPECT_EQ(called.size(), 59U);
}

TEST_F(SandboxDocuments, EveryOperationIsAnsweredOnSoap) {
  EXPECT_EQ(failures_of(all_document_calls(), url_), "");
  const std::string seen = requests_seen();
  EXPECT_EQ(seen.find(" 500"), std::string::npos) << seen;
  EXPECT_EQ(seen.find("/dal"), std::string::npos) << seen;
}

TEST_F(SandboxDocuments, EveryOperationWithARouteIsAnsweredByTheDataAccessLayer) {
  go_by_dal();
  EXPECT_EQ(failures_of(all_document_calls(), url_), "");
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

TEST_F(SandboxDocuments, ARequestTextForAnotherOperationIsAFault) {
  const std::string request = envelope_text("urn:ProjectService", "requestReview", "<Project/>");
  const std::string body = nlohmann::json{{"arguments", {request}}}.dump();
  const auto reply = sandbox().dal("ProjectService/SaveProject", body, sandbox().login());
  EXPECT_EQ(reply.status, 200);
  EXPECT_NE(reply.body.find("<faultstring>The request is requestReview in 'urn:ProjectService', "
                            "expected save in 'urn:ProjectService'<"),
            std::string::npos)
      << reply.body;
}

TEST_F(SandboxDocuments, ARequestTextThatDoesNotFitTheContractIsAFault) {
  const std::string request = envelope_text("urn:ProjectService", "generateQuotes", "<Extra/>");
  const std::string body = nlohmann::json{{"arguments", {request}}}.dump();
  const auto reply = sandbox().dal("ProjectService/generateQuotes", body, sandbox().login());
  EXPECT_EQ(reply.status, 200);
  EXPECT_NE(reply.body.find("<faultstring>generateQuotes in urn:ProjectService: has 1 parameter"),
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

TEST_F(SandboxDocuments, WhatIsNoDocumentIsNotSaved) {
  for (const char* parameter : {"<Project>a text</Project>", "<Project xsi:nil=\"true\"/>"}) {
    const auto reply = sandbox().soap("urn:ProjectService", "save", parameter);
    EXPECT_EQ(reply.status, 500);
    EXPECT_NE(reply.body.find("<faultstring>'Project' "), std::string::npos) << reply.body;
  }
}

TEST_F(SandboxDocuments, ADocumentThatGrowsByReferencesIsRefused) {
  // Each element holds the next one twice: 40 small elements that stand for a million million.
  std::string parts = "<Project><a href=\"#n0\"/></Project>";
  std::string bodies;
  for (int i = 0; i < 40; ++i) {
    const std::string next = "<a href=\"#n" + std::to_string(i + 1) + "\"/>";
    bodies += "<r id=\"n" + std::to_string(i) + "\">" + next + next + "</r>";
  }
  bodies += "<r id=\"n40\">end</r>";
  std::string request = envelope_text("urn:ProjectService", "save", parts);
  request.insert(request.find("</SOAP-ENV:Body>"), bodies);
  const auto reply = sandbox().soap_text(request, "urn:ProjectService");
  EXPECT_EQ(reply.status, 500);
  EXPECT_NE(reply.body.find("more than 1000000 elements"), std::string::npos) << reply.body;
}

TEST_F(SandboxDocuments, TheSameSeedMakesTheSameDocuments) {
  const auto project_of_seed = [&](const char* seed) {
    start({"--port", "0", "--seed", seed});
    return node_to_xml(BVProjectConnector().getExistingProject(url_, "S", "PRJ-3014"));
  };
  const std::string first = project_of_seed("7");
  EXPECT_EQ(project_of_seed("7"), first);
  EXPECT_NE(project_of_seed("8"), first);
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

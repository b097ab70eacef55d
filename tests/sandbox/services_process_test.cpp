#include <map>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/platform/error.h"
#include "sandbox/documents_fixture.h"

namespace bvconn::test {
namespace {

using automation::Argument;
using automation::ClassInfo;
using automation::Member;
using automation::Value;
using automation::ValueType;

/// How many operations each of the connectors has that this file calls.
const std::map<std::string, std::size_t>& connectors() {
  static const std::map<std::string, std::size_t> all{
      {"BVInvoiceConnector", 15}, {"BVMaintenanceConnector", 45}, {"BVPrintConnector", 16},
      {"BVSummaryConnector", 8},  {"BVPostalConnector", 1},       {"BVExportConnector", 1},
      {"BVDocumentConnector", 1}, {"BVConfigConnector", 1}};
  return all;
}

/// Texts that a new store knows, by the argument's name, or by operation and argument.
const std::map<std::string, std::string>& known_texts() {
  static const std::map<std::string, std::string> all{{"aSessionID", "S"},
                                                      {"strInvoiceUID", "INV-1003"},
                                                      {"aInvoiceUID", "INV-1004"},
                                                      {"aInvoiceNumber", "700107"},
                                                      {"aReconcileGID", "REC-10003"},
                                                      {"aAgentID", "101"},
                                                      {"aGID", "REC-10002"},
                                                      {"GetDocuments.aGID", "PRJ-3001"},
                                                      {"aUID", "REC-10001"},
                                                      {"GetQuotePrintout.aUID", "QUO-4001"},
                                                      {"GetOrderPrintout.aUID", "ORD-5001"},
                                                      {"GetRFQPrintout.aUID", "RFQ-6001"},
                                                      {"aParagraphUID", "PAR-102"},
                                                      {"aRemarkUID", "RMK-202"},
                                                      {"aLogo", "jubilee"},
                                                      {"aPassword", "open sesame"},
                                                      {"aPrintInfoUID", "PI-102"},
                                                      {"aQuoteGID", "QUO-4003"},
                                                      {"QuoteGID", "QUO-4004"},
                                                      {"aProjectGID", "PRJ-3005"},
                                                      {"ProjectGID", "PRJ-3006"},
                                                      {"orderGID", "ORD-5007"},
                                                      {"aOrderGID", "ORD-5008"},
                                                      {"aManufacturerGID", "MFR-1"},
                                                      {"aSalesInstrumentGID", "QUO-4009"}};
  return all;
}

Variant array_for(const std::string& argument) {
  static const std::map<std::string, StringArray> all{
      {"strUIDs", {"INV-1005", "INV-1006"}}, {"aParagraphUID", {"PAR-103", "PAR-101"}},
      {"aRemarkUID", {"RMK-201"}},           {"projectGIDs", {"PRJ-3001", "PRJ-3002"}},
      {"quoteGIDs", {"nogid", "QUO-4001"}},  {"orderGIDs", {"ORD-5002"}}};
  return all.at(argument);
}

SoapNode node_for(const std::string& operation) {
  SoapNode node = SoapNode::make("Node");
  if (operation == "UpdateParagraph") node.Nodes().Create("UID", "PAR-101");
  if (operation == "UpdateRemark") node.Nodes().Create("UID", "RMK-201");
  node.Nodes().Create("AgentID", "104");
  return node;
}

Value value_for(const Member& operation, const Argument& argument, const std::string& url) {
  if (argument.optional && argument.name != "strUIDs") return {};
  const auto special = known_texts().find(operation.name + "." + argument.name);
  switch (argument.type) {
    case ValueType::kString:
      if (argument.name == "aServerURL") return Variant(url);
      if (argument.name == "aCommKey") {
        const SoapNode range = BVInvoiceConnector().GetCommissionRange(url, "S", 1);
        return Variant(text(range.Nodes().Item(0), "CommKey"));
      }
      return Variant(special != known_texts().end() ? special->second
                                                    : known_texts().at(argument.name));
    case ValueType::kBoolean:
      return Variant(true);
    case ValueType::kInt16:
      return Variant(std::int16_t{3});
    case ValueType::kVariant:
      return array_for(argument.name);
    case ValueType::kSoapNode:
      return Variant(node_for(operation.name));
    default:
      ADD_FAILURE() << operation.name << ": " << argument.name << " has a type of its own";
      return {};
  }
}

/// Calls one operation; "" or what went wrong.
std::string failure_of(const ClassInfo& info, const Member& operation, const std::string& url) {
  std::vector<Value> values;
  for (const Argument& each : operation.arguments)
    values.push_back(value_for(operation, each, url));
  try {
    const Value result = operation.invoke(info.make().get(), values);
    if (operation.result != ValueType::kSoapNode) return {};
    return std::get<Variant>(result).node() ? "" : operation.name + " gave no node\n";
  } catch (const Error& error) {
    return operation.name + ": " + error.description + "\n";
  }
}

/// Calls all operations of the connectors; what went wrong.
std::string failures_of_all(const std::string& url) {
  std::string failures;
  for (const auto& [name, count] : connectors()) {
    const ClassInfo* info = automation::find_class(name);
    std::size_t called = 0;
    for (const Member& each : info->members) {
      if (each.kind != automation::MemberKind::kOperation) continue;
      failures += failure_of(*info, each, url);
      ++called;
    }
    EXPECT_EQ(called, count) << name;
  }
  return failures;
}

class SandboxServices : public SandboxDocuments {};

TEST_F(SandboxServices, EveryOperationIsAnsweredOnSoap) {
  EXPECT_EQ(failures_of_all(url_), "");
  const std::string seen = requests_seen();
  EXPECT_EQ(seen.find(" 500"), std::string::npos) << seen;
  EXPECT_EQ(seen.find("/dal"), std::string::npos) << seen;
}

TEST_F(SandboxServices, EveryOperationWithARouteIsAnsweredByTheDataAccessLayer) {
  std::set<std::string> expected{"AuthenticationService/Login",
                                 "AuthenticationService/GetDisabledServices",
                                 "SummaryService/getProjectSummary",
                                 "SummaryService/getQuoteSummary",
                                 "SummaryService/getOrderSummary",
                                 "SummaryService/GetUserSummaryByGIDs",
                                 "SearchService/GetCountries",
                                 "SearchService/getProposalComments",
                                 "QuoteService/getRFQAuxiliaryInfo",
                                 "ProjectService/getRFQFromProjAuxInfo",
                                 "PrintingService/GetPrintInfos",
                                 "PrintingService/GetPrintTemplates",
                                 "PrintingService/GetQuotePrintout",
                                 "MaintenanceService/GetUserLogo",
                                 "MaintenanceService/GetUserLogoList",
                                 "MaintenanceService/SetUserLogo",
                                 "MaintenanceService/SetUserProfile",
                                 "MaintenanceService/SetUserOrderSubmitPrintoutDefault",
                                 "MaintenanceService/GetUserOrderSubmitPrintoutDefault"};
  for (const std::string kind : {"Quote", "Order", "Project", "RFQ", "SAP"}) {
    expected.insert("PrintingService/Get" + kind + "PrintoutDefaults");
    expected.insert("MaintenanceService/Save" + kind + "PrintoutDefault");
    expected.insert("MaintenanceService/SetUser" + kind + "PrintoutDefault");
    expected.insert("MaintenanceService/GetUser" + kind + "PrintoutDefault");
  }
  go_by_dal();
  EXPECT_EQ(failures_of_all(url_), "");
  const std::string seen = requests_seen();
  EXPECT_EQ(seen.find(" 500"), std::string::npos) << seen;
  std::set<std::string> answered;
  const std::string start = "POST /dal/";
  for (auto at = seen.find(start); at != std::string::npos; at = seen.find(start, at + 1)) {
    const auto name = at + start.size();
    const auto end = seen.find(" - 200\n", name);
    ASSERT_NE(end, std::string::npos) << seen.substr(at);
    answered.insert(seen.substr(name, end - name));
  }
  EXPECT_EQ(answered, expected);
}

struct UnknownKey {
  const char* service;
  const char* method;
  const char* parameters;
  const char* told;
};

TEST_F(SandboxServices, AFaultNamesTheKeyThatIsUnknown) {
  for (const UnknownKey& each : {
           UnknownKey{"Invoice", "pilferOrderReconcile", "<param>REC-1</param>",
                      "There is no order reconcile with the GID 'REC-1'"},
           UnknownKey{"Invoice", "getCommissionData", "<param>095/1999-01-31</param>",
                      "There is no commission statement with the CommKey '095/1999-01-31'"},
           UnknownKey{"Maintenance", "deleteParagraph", "<param>PAR-1</param>",
                      "There is no paragraph with the UID 'PAR-1'"},
           UnknownKey{"Maintenance", "setUserSAPPrintoutDefault",
                      "<printInfoUID>PI-1</printInfoUID>",
                      "There is no print info with the UID 'PI-1'"},
           UnknownKey{"Printing", "getOrderPrint", "<UID>QUO-4001</UID>",
                      "There is no printout with the UID 'QUO-4001'"},
           UnknownKey{"Summary", "getQuotesForProject", "<param>QUO-4002</param>",
                      "There is no project with the GID 'QUO-4002'"},
           UnknownKey{"Order", "exportComplete", "<param>ORD-1</param>",
                      "There is no order with the GID 'ORD-1'"},
       }) {
    std::string typed(each.parameters);
    typed.insert(typed.find('>'), " xsi:type=\"xsd:string\"");
    const std::string service = "urn:" + std::string(each.service) + "Service";
    const auto reply = sandbox().soap(service, each.method, typed);
    EXPECT_EQ(reply.status, 500);
    EXPECT_NE(reply.body.find("<faultcode>SOAP-ENV:Client</faultcode><faultstring>" +
                              std::string(each.told) + "</faultstring>"),
              std::string::npos)
        << reply.body;
  }
}

}  // namespace
}  // namespace bvconn::test

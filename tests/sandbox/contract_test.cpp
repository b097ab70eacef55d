#include "sandbox/contract/contract.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace bvconn::sandbox {
namespace {

MethodContract get_invoice() {
  return {.service = "urn:InvoiceService",
          .name = "getInvoice",
          .headers = {"userID"},
          .soap_actions = {"urn:InvoiceService"},
          .any_soap_action = false,
          .shapes = {{.parameters = {{.name = "param", .types = {"string"}}}}}};
}

RequestFacts fitting_request() {
  return {.service = "urn:InvoiceService",
          .method = "getInvoice",
          .soap_action = "urn:InvoiceService",
          .headers = {"userID"},
          .parameters = {{.name = "param", .type = "string"}}};
}

std::string complaint_of(const MethodContract& method, const RequestFacts& request) {
  return Contract({method}).judge(request).complaint().value_or("fits");
}

TEST(Contract, AFittingRequestIsNotComplainedAbout) {
  EXPECT_EQ(complaint_of(get_invoice(), fitting_request()), "fits");
}

TEST(Contract, AWrongParameterNameIsToldWithTheExpectedOne) {
  auto request = fitting_request();
  request.parameters[0].name = "UID";
  EXPECT_EQ(complaint_of(get_invoice(), request),
            "getInvoice in urn:InvoiceService: parameter 1 is named 'UID', expected 'param'");
}

TEST(Contract, AWrongTypeIsToldWithTheExpectedOne) {
  auto request = fitting_request();
  request.parameters[0].type = "int";
  EXPECT_EQ(complaint_of(get_invoice(), request),
            "getInvoice in urn:InvoiceService: parameter 1 ('param') has type 'int', expected type "
            "'string'");
}

TEST(Contract, AWrongNamespaceIsToldWithTheExpectedOne) {
  auto method = get_invoice();
  auto request = fitting_request();
  request.parameters[0].name_space = "urn:InvoiceService";
  EXPECT_EQ(complaint_of(method, request),
            "getInvoice in urn:InvoiceService: parameter 1 ('param') is in the namespace "
            "'urn:InvoiceService', expected no namespace");
  method.shapes[0].parameters[0].name_space = "urn:InvoiceService";
  EXPECT_EQ(complaint_of(method, request), "fits");
}

TEST(Contract, AMissingTypeIsNotTheExpectedOne) {
  auto request = fitting_request();
  request.parameters[0].type = "";
  EXPECT_EQ(complaint_of(get_invoice(), request),
            "getInvoice in urn:InvoiceService: parameter 1 ('param') has no type, expected type "
            "'string'");
}

TEST(Contract, TooManyParametersAreCounted) {
  auto request = fitting_request();
  request.parameters.push_back({.name = "param_bool", .type = "boolean"});
  EXPECT_EQ(complaint_of(get_invoice(), request),
            "getInvoice in urn:InvoiceService: has 2 parameters, expected 1 ('param')");
}

TEST(Contract, NoParametersAreCountedToo) {
  auto request = fitting_request();
  request.parameters.clear();
  EXPECT_EQ(complaint_of(get_invoice(), request),
            "getInvoice in urn:InvoiceService: has 0 parameters, expected 1 ('param')");
}

TEST(Contract, OrderCounts) {
  auto method = get_invoice();
  method.shapes = {
      {.parameters = {{.name = "from", .types = {"string"}}, {.name = "to", .types = {"string"}}}}};
  auto request = fitting_request();
  request.parameters = {{.name = "to", .type = "string"}, {.name = "from", .type = "string"}};
  EXPECT_EQ(complaint_of(method, request),
            "getInvoice in urn:InvoiceService: parameter 1 is named 'to', expected 'from'; 1 more "
            "difference");
}

TEST(Contract, NilIsAllowedOnlyWhereTheContractSaysSo) {
  auto method = get_invoice();
  auto request = fitting_request();
  request.parameters[0] = {.name = "param", .type = "", .nil = true};
  EXPECT_EQ(complaint_of(method, request),
            "getInvoice in urn:InvoiceService: parameter 1 ('param') is nil, expected type "
            "'string'");
  method.shapes[0].parameters[0].may_be_nil = true;
  EXPECT_EQ(complaint_of(method, request), "fits");
}

TEST(Contract, APlaceWithoutTypesTakesAnything) {
  auto method = get_invoice();
  method.shapes[0].parameters[0].types.clear();
  auto request = fitting_request();
  for (const char* type : {"", "int", "Project"}) {
    request.parameters[0].type = type;
    EXPECT_EQ(complaint_of(method, request), "fits") << type;
  }
}

TEST(Contract, AnyOfSeveralShapesWillDo) {
  auto method = get_invoice();
  method.shapes.push_back({.parameters = {{.name = "UID", .types = {"string"}},
                                          {.name = "isOrder", .types = {"boolean"}}}});
  auto request = fitting_request();
  EXPECT_EQ(complaint_of(method, request), "fits");
  request.parameters = {{.name = "UID", .type = "string"}, {.name = "isOrder", .type = "boolean"}};
  EXPECT_EQ(complaint_of(method, request), "fits");
}

TEST(Contract, OfSeveralShapesTheNearestIsTold) {
  auto method = get_invoice();
  method.shapes.push_back({.parameters = {{.name = "UID", .types = {"string"}},
                                          {.name = "isOrder", .types = {"boolean"}}}});
  auto request = fitting_request();
  request.parameters = {{.name = "UID", .type = "string"}, {.name = "isQuote", .type = "boolean"}};
  EXPECT_EQ(complaint_of(method, request),
            "getInvoice in urn:InvoiceService: parameter 2 is named 'isQuote', expected 'isOrder'");
}

TEST(Contract, AllThatDiffersIsTold) {
  auto request = fitting_request();
  request.soap_action = "urn:Other";
  request.headers.clear();
  request.parameters[0] = {.name = "UID", .name_space = "urn:x", .type = "int"};
  const Verdict verdict = Contract({get_invoice()}).judge(request);
  std::vector<std::string> texts;
  for (const Difference& each : verdict.differences) texts.push_back(each.text());
  EXPECT_EQ(texts, (std::vector<std::string>{
                       "SOAPAction is 'urn:Other', expected 'urn:InvoiceService'",
                       "the SOAP headers are none, expected 'userID'",
                       "parameter 1 is named 'UID', expected 'param'",
                       "parameter 1 ('UID') is in the namespace 'urn:x', expected no namespace",
                       "parameter 1 ('UID') has type 'int', expected type 'string'"}));
  EXPECT_EQ(verdict.complaint(),
            "getInvoice in urn:InvoiceService: SOAPAction is 'urn:Other', expected "
            "'urn:InvoiceService'; 4 more differences");
}

TEST(Contract, AWrongNumberTellsWhatIsMissingAndWhatIsTooMuch) {
  auto method = get_invoice();
  method.shapes = {{.parameters = {{.name = "from", .types = {"string"}},
                                   {.name = "to", .types = {"string"}},
                                   {.name = "max", .types = {"int"}}}}};
  auto request = fitting_request();
  request.parameters = {{.name = "to", .type = "string"},
                        {.name = "page", .type = "int"},
                        {.name = "max", .type = "string"},
                        {.name = "last", .type = "int"}};
  const Verdict verdict = Contract({method}).judge(request);
  std::vector<std::string> texts;
  for (const Difference& each : verdict.differences) texts.push_back(each.text());
  EXPECT_EQ(texts, (std::vector<std::string>{
                       "has 4 parameters, expected 3 ('from', 'to', 'max')",
                       "has no 'from', expected it as parameter 1",
                       "parameter 2 is 'page', expected nothing of this name here",
                       "parameter 3 ('max') has type 'string', expected type 'int'",
                       "parameter 4 is 'last', expected nothing of this name here"}));
  EXPECT_EQ(verdict.complaint(),
            "getInvoice in urn:InvoiceService: has 4 parameters, expected 3 ('from', 'to', "
            "'max'); 1 more difference");
}

TEST(Contract, AComplaintLeavesRoomForTheNumberOfTheOthers) {
  auto request = fitting_request();
  request.soap_action = std::string(5'000, 'x');
  request.parameters[0].type = "int";
  const std::string complaint = complaint_of(get_invoice(), request);
  EXPECT_LE(complaint.size(), 1'024U);
  EXPECT_TRUE(complaint.ends_with("…; 1 more difference")) << complaint;
}

TEST(Contract, ADocumentMayHaveAnyName) {
  auto method = get_invoice();
  method.shapes[0].parameters[0] = {.name = "", .types = {}};
  auto request = fitting_request();
  request.parameters[0] = {.name = "Project", .type = ""};
  EXPECT_EQ(complaint_of(method, request), "fits");
  request.parameters.clear();
  EXPECT_EQ(complaint_of(method, request),
            "getInvoice in urn:InvoiceService: has 0 parameters, expected 1 (a document)");
}

TEST(Contract, AnOpenEndTakesFurtherParameters) {
  auto method = get_invoice();
  method.shapes[0].open_ended = true;
  auto request = fitting_request();
  request.parameters.push_back({.name = "FirstName", .type = "string"});
  EXPECT_EQ(complaint_of(method, request), "fits");
  request.parameters.clear();
  EXPECT_EQ(complaint_of(method, request),
            "getInvoice in urn:InvoiceService: has 0 parameters, expected at least 1 ('param')");
}

TEST(Contract, AWrongSoapActionIsToldWithTheExpectedOne) {
  auto request = fitting_request();
  request.soap_action = "urn:OrderService";
  EXPECT_EQ(complaint_of(get_invoice(), request),
            "getInvoice in urn:InvoiceService: SOAPAction is 'urn:OrderService', expected "
            "'urn:InvoiceService'");
  request.soap_action.reset();
  EXPECT_EQ(complaint_of(get_invoice(), request),
            "getInvoice in urn:InvoiceService: the SOAPAction header is missing, expected "
            "'urn:InvoiceService'");
}

TEST(Contract, WhereAnySoapActionWillDoItIsNotLookedAt) {
  auto method = get_invoice();
  method.any_soap_action = true;
  auto request = fitting_request();
  request.soap_action = "urn:OrderService";
  EXPECT_EQ(complaint_of(method, request), "fits");
  request.soap_action.reset();
  EXPECT_EQ(complaint_of(method, request), "fits");
}

TEST(Contract, AnEnvelopeByItselfNeedsNoSoapAction) {
  auto request = fitting_request();
  request.soap_action.reset();
  EXPECT_EQ(Contract({get_invoice()}).judge_envelope(request).complaint(), std::nullopt);
  request.parameters[0].type = "int";
  EXPECT_EQ(Contract({get_invoice()}).judge_envelope(request).complaint(),
            "getInvoice in urn:InvoiceService: parameter 1 ('param') has type 'int', expected type "
            "'string'");
}

TEST(Contract, AMissingHeaderIsTold) {
  auto request = fitting_request();
  request.headers.clear();
  EXPECT_EQ(complaint_of(get_invoice(), request),
            "getInvoice in urn:InvoiceService: the SOAP headers are none, expected 'userID'");
}

TEST(Contract, AnUnknownMethodIsToldWithThoseOfItsService) {
  auto request = fitting_request();
  request.method = "fetchInvoice";
  EXPECT_EQ(complaint_of(get_invoice(), request),
            "urn:InvoiceService has no method 'fetchInvoice', expected one of 'getInvoice'");
}

TEST(Contract, AnUnknownServiceIsToldWithThoseThatExist) {
  auto request = fitting_request();
  request.service = "urn:Invoice";
  EXPECT_EQ(complaint_of(get_invoice(), request),
            "there is no service 'urn:Invoice' (asked for method 'getInvoice'), expected one of "
            "'urn:InvoiceService'");
}

}  // namespace
}  // namespace bvconn::sandbox

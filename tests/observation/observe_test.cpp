#include "bvconn/observation/observe.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/automation/class_builder.h"
#include "bvconn/core/envelope.h"
#include "bvconn/core/transport.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn::automation {
namespace {

using Names = std::vector<std::string>;

/// Operations that are hard to observe, each in its own way.
class Specimen {
 public:
  void TakesNumbers(std::string_view aServerURL, std::string_view aCount, std::string_view aFlag,
                    std::int16_t aSize) {
    const auto envelope = request("takesNumbers");
    envelope.Parameters().Create("count", conversions::text_to_int16(aCount));
    envelope.Parameters().Create("flag", conversions::text_to_boolean(aFlag));
    envelope.Parameters().Create("size", aSize);
    Global::sendXML(envelope, "urn:Specimen", aServerURL, 0);
  }

  void LeavesOut(std::string_view aServerURL, const Variant& aValue) {
    const auto envelope = request("leavesOut");
    if (!aValue.missing()) envelope.Parameters().Create("value", aValue);
    Global::sendXML(envelope, "urn:Specimen", aServerURL, 0);
  }

  void PassesOn(std::string_view aServerURL, const Variant& aFirst, const Variant& aSecond) {
    const auto envelope = request("passesOn");
    envelope.Parameters().Create("param", aSecond);
    envelope.Parameters().Create("param", aFirst);
    Global::sendXML(envelope, "urn:Specimen", aServerURL, 0);
  }

  void Flattens(std::string_view aServerURL, const SoapNode& aNode) {
    const auto envelope = request("flattens");
    envelope.Parameters().Create("version", "7");
    for (const SoapNode& child : aNode.Nodes()) {
      envelope.Parameters().Create(child.Name(), child.Value());
    }
    Global::sendXML(envelope, "urn:Specimen", aServerURL, 0);
  }

  void NeedsArrays(std::string_view aServerURL, const Variant& aList) {
    const auto envelope = request("needsArrays");
    envelope.Parameters().Create("param", aList.array().items().at(0));
    Global::sendXML(envelope, "urn:Specimen", aServerURL, 0);
  }

 private:
  static SoapEnvelope request(std::string_view method) {
    return Global::getEnvelope(method, "urn:Specimen", "S");
  }
};

const ClassInfo& specimen_class() {
  using C = Specimen;
  static const ClassInfo info =
      ClassBuilder<C>("Specimen")
          .operation<&C::TakesNumbers>("TakesNumbers", {"aServerURL", "aCount", "aFlag", "aSize"})
          .operation<&C::LeavesOut>("LeavesOut", {"aServerURL", "aValue?"})
          .operation<&C::PassesOn>("PassesOn", {"aServerURL", "aFirst?", "aSecond"})
          .operation<&C::Flattens>("Flattens", {"aServerURL", "aNode"})
          .operation<&C::NeedsArrays>("NeedsArrays", {"aServerURL", "aList"})
          .take();
  return info;
}

ObservedOperation observe_specimen(std::string_view operation) {
  return observe(specimen_class(), *specimen_class().find(operation));
}

ObservedOperation observed(std::string_view cls, std::string_view operation) {
  const ClassInfo& info = *find_class(cls);
  return observe(info, *info.find(operation));
}

Names names_of(const ObservedRequest& request) {
  Names names;
  for (const auto& parameter : request.parameters) names.push_back(parameter.name);
  return names;
}

TEST(Observe, APlainReadIsSeenWhole) {
  const auto operation = observed("BVInvoiceConnector", "GetInvoice");
  ASSERT_EQ(operation.requests.size(), 1U);
  const ObservedRequest& request = operation.requests[0];
  EXPECT_EQ(request.service, "urn:InvoiceService");
  EXPECT_EQ(request.method, "getInvoice");
  EXPECT_EQ(request.soap_action, "urn:InvoiceService");
  EXPECT_EQ(request.headers, Names{"userID"});
  EXPECT_EQ(request.timeout_ms, 300000);
  ASSERT_EQ(request.parameters.size(), 1U);
  EXPECT_EQ(request.parameters[0].name, "param");
  EXPECT_EQ(request.parameters[0].types, Names{"string"});
  EXPECT_EQ(request.parameters[0].origin.arguments, Names{"strInvoiceUID"});
  EXPECT_FALSE(request.parameters[0].any_content);
  EXPECT_TRUE(operation.dal_calls.empty());
}

TEST(Observe, TheHeartBeatIsSeenOnBothRoutes) {
  const auto operation = observed("BVHeartBeatConnector", "sendHeartBeat");
  ASSERT_EQ(operation.requests.size(), 1U);
  EXPECT_EQ(operation.requests[0].method, "beat");
  EXPECT_EQ(operation.requests[0].timeout_ms, 5000);
  ASSERT_EQ(operation.dal_calls.size(), 1U);
  EXPECT_EQ(operation.dal_calls[0].object, "HeartBeatService");
  EXPECT_EQ(operation.dal_calls[0].operation, "sendHeartBeat");
  EXPECT_TRUE(operation.dal_calls[0].arguments.empty());
}

TEST(Observe, AnOperationWithoutTrafficHasNone) {
  const auto operation = observed("BVProjectConnector", "setStatusToLostOpportunity");
  EXPECT_TRUE(operation.requests.empty());
  EXPECT_TRUE(operation.dal_calls.empty());
}

TEST(Observe, ABooleanIsTracedToItsArgument) {
  const auto operation = observed("BVOrderConnector", "getSAPOrderView");
  ASSERT_EQ(operation.requests.size(), 1U);
  ASSERT_EQ(names_of(operation.requests[0]), (Names{"GID", "includePrice"}));
  EXPECT_EQ(operation.requests[0].parameters[1].types, Names{"boolean"});
  EXPECT_EQ(operation.requests[0].parameters[1].origin.arguments, Names{"aIncludePrice"});
  ASSERT_EQ(operation.dal_calls.size(), 1U);
  ASSERT_EQ(operation.dal_calls[0].arguments.size(), 2U);
  EXPECT_EQ(operation.dal_calls[0].arguments[0].origin.arguments, Names{"aOrderGID"});
  EXPECT_EQ(operation.dal_calls[0].arguments[1].origin.arguments, Names{"aIncludePrice"});
}

TEST(Observe, AConstantIsToldByItsText) {
  const auto operation = observed("BVSubmittalConnector", "GetSubmittalCommentsForQuoteLineItem");
  ASSERT_EQ(operation.requests.size(), 1U);
  ASSERT_EQ(names_of(operation.requests[0]), (Names{"param", "param_bool"}));
  EXPECT_TRUE(operation.requests[0].parameters[1].origin.arguments.empty());
  EXPECT_EQ(operation.requests[0].parameters[1].origin.constant, "False");
}

TEST(Observe, ADocumentKeepsTheNameOfTheCaller) {
  const auto operation = observed("BVProjectConnector", "SaveProject");
  ASSERT_EQ(operation.requests.size(), 1U);
  ASSERT_EQ(operation.requests[0].parameters.size(), 1U);
  EXPECT_EQ(operation.requests[0].parameters[0].name, "");
  EXPECT_TRUE(operation.requests[0].parameters[0].any_content);
  EXPECT_EQ(operation.requests[0].parameters[0].origin.arguments, Names{"aProject"});
  ASSERT_EQ(operation.dal_calls.size(), 1U);
  EXPECT_TRUE(operation.dal_calls[0].arguments.at(0).request_text);
}

TEST(Observe, AParameterThatCarriesAKeyOrADocumentTakesBoth) {
  const auto operation = observed("BVProjectConnector", "generateQuotes");
  ASSERT_EQ(operation.requests.size(), 1U);
  const ObservedParameter& project = operation.requests[0].parameters.at(0);
  EXPECT_EQ(project.name, "Project");
  EXPECT_EQ(project.origin.arguments, (Names{"aProjectGID", "aProject"}));
  EXPECT_TRUE(project.any_content);
  EXPECT_TRUE(project.may_be_nil);
}

TEST(Observe, NamespaceAndSoapActionMayDiffer) {
  const auto operation = observed("BVSalesInstrumentConnector", "GetQuoteHeaderComments");
  ASSERT_EQ(operation.requests.size(), 1U);
  EXPECT_EQ(operation.requests[0].service, "urn:QuoteService");
  EXPECT_EQ(operation.requests[0].soap_action, "urn:OrderService");
}

TEST(Observe, ASoapActionThatIsLeftAloneIsNone) {
  const auto operation = observed("BVAcknowledgementConnector", "getNewAcknowledgment");
  ASSERT_EQ(operation.requests.size(), 1U);
  EXPECT_EQ(operation.requests[0].soap_action, std::nullopt);
  ASSERT_EQ(names_of(operation.requests[0]), Names{"param_encoding"});
  EXPECT_TRUE(operation.requests[0].parameters[0].any_content);
}

TEST(Observe, AServiceThatATextDecidesIsSeenForEachText) {
  const auto operation = observed("BVSalesInstrumentConnector", "SetLineComments");
  Names services;
  for (const auto& request : operation.requests) services.push_back(request.service);
  EXPECT_EQ(services, (Names{"urn:ProjectService", "urn:QuoteService", "urn:OrderService"}));
}

TEST(Observe, ADalCallGoesWithTheRequestThatTheSameArgumentsSend) {
  const auto operation =
      observed("BVSalesInstrumentConnector", "getPreviousSalesInstrumentColumnPrices");
  ASSERT_EQ(operation.dal_calls.size(), 2U);
  for (const ObservedDalCall& call : operation.dal_calls) {
    ASSERT_EQ(call.requests.size(), 1U);
    EXPECT_EQ(operation.requests.at(call.requests[0]).service, "urn:" + call.object);
  }
}

TEST(Observe, ADalCallGoesWithEveryFormOfItsRequestTheUsualOneFirst) {
  const auto operation = observed("BVSearchConnector", "SearchForAllAgents");
  ASSERT_EQ(operation.dal_calls.size(), 1U);
  ASSERT_EQ(operation.dal_calls[0].requests, (std::vector<std::size_t>{0, 1}));
  EXPECT_EQ(names_of(operation.requests[0]), Names{"agentID"});
  EXPECT_EQ(names_of(operation.requests[1]), Names{});
}

TEST(Observe, WhatTheDataAccessLayerAloneServesGoesWithNoRequest) {
  const auto operation = observed("BVSearchConnector", "SearchForQuotes");
  ASSERT_EQ(operation.dal_calls.size(), 1U);
  EXPECT_TRUE(operation.dal_calls[0].requests.empty());
}

TEST(Observe, AVariantThatIsPassedToTheDataAccessLayerKeepsAnyType) {
  const auto operation = observed("BVSearchConnector", "SearchForOrdersForEmail");
  ASSERT_EQ(operation.dal_calls.size(), 1U);
  const auto& arguments = operation.dal_calls[0].arguments;
  ASSERT_EQ(arguments.size(), 25U);
  EXPECT_TRUE(arguments.back().any_type);
  EXPECT_EQ(arguments.back().origin.arguments, Names{"ContractorFirstPO"});
  EXPECT_FALSE(arguments.front().any_type);
}

TEST(Observe, AVariantThatBecomesATextOnTheWayIsOne) {
  const auto operation = observed("BVSearchConnector", "SearchForOrders");
  ASSERT_EQ(operation.dal_calls.size(), 1U);
  const auto& last = operation.dal_calls[0].arguments.at(22);
  EXPECT_EQ(last.origin.arguments, Names{"ContractorFirstPO"});
  EXPECT_EQ(last.types, Names{"string"});
  EXPECT_FALSE(last.any_type);
}

TEST(Observe, AMethodThatTheCallerNamesHasNoName) {
  const auto operation = observed("BVGenericConnector", "Send");
  // With and without a session.
  ASSERT_EQ(operation.requests.size(), 2U);
  for (const auto& request : operation.requests) {
    EXPECT_EQ(request.service, "");
    EXPECT_EQ(request.method, "");
    EXPECT_EQ(request.timeout_ms, std::nullopt);
  }
  EXPECT_EQ(operation.requests[0].headers, Names{"userID"});
  EXPECT_EQ(operation.requests[1].headers, Names{});
}

TEST(Observe, TextsThatHaveToBeNumbersAreFound) {
  const auto operation = observe_specimen("TakesNumbers");
  ASSERT_EQ(operation.requests.size(), 1U);
  const auto& parameters = operation.requests[0].parameters;
  ASSERT_EQ(parameters.size(), 3U);
  EXPECT_EQ(parameters[0].types, Names{"short"});
  EXPECT_EQ(parameters[0].origin.arguments, Names{"aCount"});
  EXPECT_EQ(parameters[1].types, Names{"boolean"});
  EXPECT_EQ(parameters[1].origin.arguments, Names{"aFlag"});
  EXPECT_EQ(parameters[2].types, Names{"short"});
  EXPECT_EQ(parameters[2].origin.arguments, Names{"aSize"});
}

TEST(Observe, AParameterThatIsLeftOutMakesAnotherForm) {
  const auto operation = observe_specimen("LeavesOut");
  ASSERT_EQ(operation.requests.size(), 2U);
  EXPECT_EQ(names_of(operation.requests[0]), Names{"value"});
  EXPECT_EQ(names_of(operation.requests[1]), Names{});
}

TEST(Observe, AVariantThatIsPassedOnTakesAnyType) {
  const auto operation = observe_specimen("PassesOn");
  ASSERT_EQ(operation.requests.size(), 1U);
  const auto& parameters = operation.requests[0].parameters;
  ASSERT_EQ(parameters.size(), 2U);
  EXPECT_EQ(parameters[0].types, (Names{"string", "int", "Array"}));
  EXPECT_TRUE(parameters[0].any_content);
  EXPECT_FALSE(parameters[0].may_be_nil);
  EXPECT_EQ(parameters[0].origin.arguments, Names{"aSecond"});
  EXPECT_TRUE(parameters[1].may_be_nil);
  EXPECT_EQ(parameters[1].origin.arguments, Names{"aFirst"});
}

TEST(Observe, ChildrenThatBecomeParametersLeaveTheEndOpen) {
  const auto operation = observe_specimen("Flattens");
  ASSERT_EQ(operation.requests.size(), 1U);
  EXPECT_EQ(names_of(operation.requests[0]), Names{"version"});
  EXPECT_EQ(operation.requests[0].parameters[0].origin.constant, "7");
  EXPECT_TRUE(operation.requests[0].open_ended);
}

TEST(Observe, VariantsThatHaveToBeArraysAreFound) {
  const auto operation = observe_specimen("NeedsArrays");
  ASSERT_EQ(operation.requests.size(), 1U);
  EXPECT_EQ(operation.requests[0].parameters.at(0).types, Names{"string"});
  EXPECT_EQ(operation.requests[0].parameters.at(0).origin.arguments, Names{"aList"});
}

// A row of a service object that nobody calls is one that no wire file looks at.
TEST(Observe, EveryRowOfAServiceObjectIsCalledByAnOperationOrByTheLogin) {
  std::set<std::string> called{"AuthenticationService.Login", "AuthenticationService.SetServerUrl",
                               "AuthenticationService.GetDisabledServices"};
  for (const ObservedOperation& seen : observe_all()) {
    for (const ObservedDalCall& call : seen.dal_calls)
      called.insert(call.object + "." + call.operation);
  }
  std::set<std::string> rows;
  std::string object;
#define BVCONN_SERVICE_OBJECT(name, ...) object = #name ".", rows.insert({__VA_ARGS__});
#define BVCONN_SERVICE_OPERATION(name, ...) object + #name,
#define BVCONN_SERVICE_OPERATION_BY_NAME BVCONN_SERVICE_OPERATION
#include "bvconn/platform/torvexlib/service_object_rows.inc"
  EXPECT_EQ(rows, called);
  EXPECT_EQ(rows.size(), 117U);
}

TEST(Observe, EveryOperationIsObservedInOrder) {
  const auto all = observe_all();
  std::size_t operations = 0;
  for (const ClassInfo* info : classes()) {
    for (const Member& member : info->members) {
      if (member.kind != MemberKind::kOperation) continue;
      ASSERT_LT(operations, all.size());
      EXPECT_EQ(all[operations].cls + "." + all[operations].name, info->name + "." + member.name);
      ++operations;
    }
  }
  EXPECT_EQ(all.size(), operations);
}

}  // namespace
}  // namespace bvconn::automation

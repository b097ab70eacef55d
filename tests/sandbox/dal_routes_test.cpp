#include "sandbox/contract/dal_routes.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "sandbox/endpoints/dal_answer.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using automation::ObservedDalCall;
using automation::ObservedOperation;
using automation::ObservedParameter;
using sandbox::DalRoute;
using sandbox::DalRoutes;
using sandbox::JsonType;
using Names = std::vector<std::string>;
using Types = std::vector<JsonType>;

ObservedDalCall::Argument argument(const Names& origin, const Names& types = {"string"}) {
  return {.types = types, .origin = {.arguments = origin, .constant = ""}};
}

ObservedDalCall::Argument constant_argument(const std::string& text) {
  return {.types = {"string"}, .origin = {.arguments = {}, .constant = text}};
}

ObservedParameter parameter(const std::string& name, const Names& origin) {
  ObservedParameter result;
  result.name = name;
  result.origin.arguments = origin;
  return result;
}

ObservedParameter constant_parameter(const std::string& name, const std::string& text) {
  ObservedParameter result;
  result.name = name;
  result.origin.constant = text;
  return result;
}

automation::ObservedRequest request_to(const std::string& service, const std::string& method) {
  automation::ObservedRequest request;
  request.service = service;
  request.method = method;
  return request;
}

ObservedOperation operation_of(const std::vector<ObservedParameter>& parameters,
                               const std::vector<ObservedDalCall::Argument>& arguments,
                               const std::string& method = "find") {
  ObservedOperation operation;
  operation.requests.push_back(request_to("urn:Service", method));
  operation.requests[0].parameters = parameters;
  operation.dal_calls.push_back(
      {.object = "Object", .operation = "Find", .arguments = arguments, .requests = {0}});
  return operation;
}

DalRoute route_of(const std::vector<ObservedOperation>& operations) {
  const DalRoutes routes = sandbox::dal_routes_of(operations);
  EXPECT_EQ(routes.size(), 1U);
  return routes.at({"Object", "Find"});
}

/// "name=place", "name=constant 'text'" or "name=nil" of each parameter.
Names fillings(const DalRoute& route) {
  Names texts;
  for (const auto& each : route.parameters) {
    std::string text = each.name + "=";
    if (each.argument) {
      text += std::to_string(*each.argument);
    } else {
      text += each.constant.empty() ? "nil" : "constant '" + each.constant + "'";
    }
    texts.push_back(std::move(text));
  }
  return texts;
}

/// A route whose arguments have these types.
DalRoute typed(const std::vector<std::pair<std::string, Types>>& arguments) {
  DalRoute route;
  route.operation = "Find";
  for (const auto& [name, types] : arguments) {
    route.arguments.push_back({.name = name, .types = types});
  }
  return route;
}

DalRoute text_and_flag() {
  return typed({{"aGID", {JsonType::kText}}, {"aFlag", {JsonType::kBoolean}}});
}

std::string complaint_of(const DalRoute& route, const Types& found) {
  const auto all = sandbox::differences(route, found);
  return all.empty() ? "fits" : sandbox::complaint_text(route.operation, all);
}

TEST(DalArguments, FittingOnesAreNotComplainedAbout) {
  EXPECT_EQ(complaint_of(text_and_flag(), {JsonType::kText, JsonType::kBoolean}), "fits");
}

TEST(DalArguments, AWrongNumberIsToldWithTheExpectedOnes) {
  EXPECT_EQ(complaint_of(text_and_flag(), {JsonType::kText}),
            "Find: has 1 argument, expected 2 ('aGID', 'aFlag')");
  EXPECT_EQ(complaint_of(text_and_flag(), {JsonType::kText, JsonType::kBoolean, JsonType::kText}),
            "Find: has 3 arguments, expected 2 ('aGID', 'aFlag')");
  EXPECT_EQ(complaint_of(typed({}), {JsonType::kText}), "Find: has 1 argument, expected 0");
  EXPECT_EQ(complaint_of(typed({{"", {JsonType::kText}}}), {}),
            "Find: has 0 arguments, expected 1 (a text)");
}

TEST(DalArguments, AWrongTypeIsToldWithItsPlaceAndTheExpectedOne) {
  EXPECT_EQ(complaint_of(text_and_flag(), {JsonType::kText, JsonType::kInteger}),
            "Find: argument 2 ('aFlag') is a whole number of 32 bits, expected a boolean");
  EXPECT_EQ(complaint_of(text_and_flag(), {JsonType::kNull, JsonType::kBoolean}),
            "Find: argument 1 ('aGID') is null, expected a text");
}

TEST(DalArguments, ATextAndABooleanThatAreSwappedAreNoticed) {
  EXPECT_EQ(complaint_of(text_and_flag(), {JsonType::kBoolean, JsonType::kText}),
            "Find: argument 1 ('aGID') is a boolean, expected a text; 1 more difference");
}

TEST(DalArguments, AnyOfSeveralTypesWillDo) {
  const DalRoute route = typed({{"aKey", {JsonType::kText, JsonType::kNull}}});
  EXPECT_EQ(complaint_of(route, {JsonType::kText}), "fits");
  EXPECT_EQ(complaint_of(route, {JsonType::kNull}), "fits");
  EXPECT_EQ(complaint_of(route, {JsonType::kArray}),
            "Find: argument 1 ('aKey') is an array, expected a text or null");
}

TEST(DalArguments, AValueOfTheCallersTypeMayBeAllThatAVariantCan) {
  const DalRoute route = typed({{"aValue", {}}});
  for (const JsonType type : {JsonType::kNull, JsonType::kBoolean, JsonType::kLongInteger,
                              JsonType::kFloat, JsonType::kText, JsonType::kArray}) {
    EXPECT_EQ(complaint_of(route, {type}), "fits");
  }
  EXPECT_EQ(complaint_of(route, {JsonType::kOther}),
            "Find: argument 1 ('aValue') is an object or a nested array, expected a plain value "
            "or an array of them");
}

TEST(DalRoutes, ArgumentsFillTheParametersOfTheSameOriginWhateverTheirPlaces) {
  const DalRoute route =
      route_of({operation_of({parameter("to", {"aTo"}), parameter("from", {"aFrom"})},
                             {argument({"aFrom"}), argument({"aTo"})})});
  EXPECT_EQ(fillings(route), (Names{"to=1", "from=0"}));
  ASSERT_EQ(route.methods.size(), 1U);
  EXPECT_EQ(route.methods[0], std::pair(std::string("urn:Service"), std::string("find")));
}

TEST(DalRoutes, AConstantGoesWithTheSameConstant) {
  const DalRoute route =
      route_of({operation_of({parameter("key", {"aKey"}), constant_parameter("code", "ZRE")},
                             {constant_argument("ZRE"), argument({"aKey"})})});
  EXPECT_EQ(fillings(route), (Names{"key=1", "code=0"}));
}

TEST(DalRoutes, WhatTheDataAccessLayerLacksIsItsConstantOrNil) {
  const DalRoute route = route_of(
      {operation_of({parameter("lazy", {"aLazyLoad"}), constant_parameter("code", "ZRE")}, {})});
  EXPECT_EQ(fillings(route), (Names{"lazy=nil", "code=constant 'ZRE'"}));
}

TEST(DalRoutes, WithoutAMethodTheArgumentsAreTheParameters) {
  auto operation = operation_of({}, {argument({"aName"}), argument({"aCity"})});
  operation.dal_calls[0].requests.clear();
  const DalRoute route = route_of({operation});
  EXPECT_TRUE(route.methods.empty());
  EXPECT_EQ(fillings(route), (Names{"aName=0", "aCity=1"}));
}

TEST(DalRoutes, TheTextOfARequestMayBeForEveryMethodOfTheOperation) {
  auto text = argument({"aSessionID", "aNode"});
  text.request_text = true;
  auto operation = operation_of({parameter("document", {"aNode"})}, {text});
  operation.requests.push_back(request_to("urn:Other", "find"));
  operation.dal_calls[0].requests = {0, 1};
  const DalRoute route = route_of({operation});
  EXPECT_TRUE(route.takes_request_text);
  EXPECT_EQ(route.methods.size(), 2U);
  EXPECT_EQ(complaint_of(route, {}), "Find: has 0 arguments, expected 1 (the text of a request)");
}

TEST(DalRoutes, TheTypesOfAllObservationsAreTaken) {
  const DalRoute route =
      route_of({operation_of({}, {argument({"aKey"}, {"string", "missing", "empty"})}),
                operation_of({}, {argument({"aKey"}, {"int16", "int32"})})});
  EXPECT_EQ(route.arguments.at(0).types,
            (Types{JsonType::kText, JsonType::kNull, JsonType::kInteger}));
}

TEST(DalRoutes, OfSeveralOperationsTheFirstSaysWhereTheCallLeads) {
  const DalRoute route =
      route_of({operation_of({parameter("gid", {"aGID"})}, {argument({"aGID"})}, "get"),
                operation_of({parameter("key", {"aGID"})}, {argument({"aGID"})}, "getForCopy")});
  EXPECT_EQ(route.methods.at(0).second, "get");
  EXPECT_EQ(fillings(route), Names{"gid=0"});
}

const DalRoutes& routes_of_the_interface() {
  static const DalRoutes routes = sandbox::dal_routes_of(automation::observe_all());
  return routes;
}

/// The one operation that sends nothing.
bool crosses_the_wire(const DalRoute& route) {
  return route.operation != "SetServerUrl";
}

TEST(DalRoutes, EveryOperationOfTheInterfaceIsServed) {
  const sandbox::Operations operations = sandbox::all_operations();
  std::size_t count = 0;
  for (const auto& [name, route] : routes_of_the_interface()) {
    if (!crosses_the_wire(route)) continue;
    EXPECT_TRUE(sandbox::is_served(operations, route)) << name.first << "/" << name.second;
    ++count;
  }
  EXPECT_GT(count, 100U);
}

TEST(DalRoutes, WhatTheDataAccessLayerAloneServesIsNothingElse) {
  const sandbox::Operations operations = sandbox::all_operations();
  for (const auto& [name, method] : operations.dal_alone) {
    const auto route = routes_of_the_interface().find(name);
    ASSERT_NE(route, routes_of_the_interface().end()) << name.first << "/" << name.second;
    EXPECT_TRUE(route->second.methods.empty()) << name.first << "/" << name.second;
  }
}

TEST(DalRoutes, NoArgumentOfTheInterfaceIsLostOnTheWay) {
  for (const auto& [name, route] : routes_of_the_interface()) {
    if (route.takes_request_text) continue;
    std::multiset<std::size_t> filled;
    for (const auto& each : route.parameters) {
      if (each.argument) filled.insert(*each.argument);
    }
    for (std::size_t i = 0; i < route.arguments.size(); ++i) {
      EXPECT_EQ(filled.count(i), 1U) << name.first << "/" << name.second << ", argument " << i;
    }
  }
}

std::string sample(const sandbox::DalArgument& argument) {
  if (argument.types.empty()) return "null";
  switch (argument.types[0]) {
    case JsonType::kBoolean:
      return "true";
    case JsonType::kInteger:
      return "92";
    default:
      return "\"X\"";
  }
}

std::string sample_body(const DalRoute& route) {
  std::string body;
  for (const auto& each : route.arguments) body += (body.empty() ? "" : ",") + sample(each);
  return "{\"arguments\":[" + body + "]}";
}

TEST(DalRoutes, EveryOperationOfTheInterfaceAnswersOverTheWire) {
  SandboxProcess sandbox;
  const std::string token = sandbox.login();
  for (const auto& [name, route] : routes_of_the_interface()) {
    if (!crosses_the_wire(route)) continue;
    const std::string path = name.first + "/" + name.second;
    const RawReply reply = sandbox.dal(path, sample_body(route), token);
    EXPECT_EQ(reply.status, 200) << path << ": " << reply.body;
    EXPECT_EQ(reply.body.find("<faultcode>SOAP-ENV:Server"), std::string::npos)
        << path << ": " << reply.body;
  }
}

TEST(DalRoutes, NoOperationOfTheInterfaceTakesAnArgumentTooMany) {
  SandboxProcess sandbox;
  const std::string token = sandbox.login();
  for (const auto& [name, route] : routes_of_the_interface()) {
    if (!crosses_the_wire(route)) continue;
    std::string body = sample_body(route);
    body.insert(body.rfind(']'), route.arguments.empty() ? "true" : ",true");
    const std::string path = name.first + "/" + name.second;
    EXPECT_EQ(sandbox.dal(path, body, token).status, 400) << path;
  }
}

}  // namespace
}  // namespace bvconn::test

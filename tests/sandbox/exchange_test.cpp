#include "sandbox/exchange.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "bvconn/observation/observe.h"
#include "sandbox/contract/observed.h"
#include "sandbox/endpoints/asked.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using sandbox::Asked;
using sandbox::Exchange;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// All that reading needs, made once: the contract runs the whole library.
struct World {
  const std::vector<automation::ObservedOperation> observations = automation::observe_all();
  sandbox::Sandbox box{.stores = sandbox::Stores(":memory:", {}),
                       .contract = sandbox::Contract(sandbox::contract_of(observations)),
                       .dal_routes = sandbox::dal_routes_of(observations)};
  const sandbox::Operations operations = sandbox::all_operations();
  const std::string token = box.stores.hold(sandbox::Turn::kStore)->logins().open("anna");
};

World& world() {
  static const auto made = std::make_unique<World>();
  return *made;
}

Asked soap(const std::string& text, const std::string& action) {
  return read_soap(world().box, {.method = "POST",
                                 .target = "/soap",
                                 .headers = {{"Content-Type", "text/xml"}, {"SOAPAction", action}},
                                 .body = text});
}

Asked get_invoice(const std::string& parameter) {
  return soap(envelope_text("urn:InvoiceService", "getInvoice", parameter), "urn:InvoiceService");
}

Asked dal(const std::string& target, const std::string& body) {
  return read_dal(world().box, world().operations,
                  {.method = "POST",
                   .target = "/dal/" + target,
                   .headers = {{"Content-Type", "application/json"},
                               {"Authorization", "Bearer " + world().token}},
                   .body = body});
}

std::vector<std::string> names(const Exchange& exchange) {
  std::vector<std::string> all;
  for (const auto* form : exchange.forms) all.push_back(form->name);
  return all;
}

constexpr const char* kParameter = R"(<param xsi:type="xsd:string">INV-1001</param>)";

TEST(Exchange, AnEnvelopeTellsItsOperationAndTheArgumentsByTheirNames) {
  const Asked asked = get_invoice(kParameter);
  EXPECT_FALSE(asked.refusal);
  const Exchange& exchange = asked.exchange;
  EXPECT_EQ(exchange.route, sandbox::Route::kSoap);
  EXPECT_EQ(exchange.service, "urn:InvoiceService");
  EXPECT_EQ(exchange.method, "getInvoice");
  EXPECT_THAT(names(exchange), ElementsAre("BVInvoiceConnector.GetInvoice"));
  EXPECT_EQ(exchange.argument("strInvoiceUID"), "INV-1001");
  EXPECT_EQ(exchange.argument("param"), std::nullopt);
}

TEST(Exchange, AnOperationIsNamedWholeByItsClassOrByAStar) {
  const Asked asked = get_invoice(kParameter);
  for (const char* name : {"BVInvoiceConnector.GetInvoice", "BVInvoiceConnector.*", "*"}) {
    EXPECT_TRUE(asked.exchange.can_be(name)) << name;
  }
  for (const char* name : {"BVInvoiceConnector.Get*", "BVInvoice.*", "getInvoice", ""}) {
    EXPECT_FALSE(asked.exchange.can_be(name)) << name;
  }
}

TEST(Exchange, ARequestThatDoesNotFitStillTellsWhatItIsNearestTo) {
  const Asked asked = get_invoice(R"(<UID xsi:type="xsd:string">INV-1001</UID>)");
  EXPECT_TRUE(asked.refusal);
  EXPECT_THAT(names(asked.exchange), ElementsAre("BVInvoiceConnector.GetInvoice"));
  EXPECT_EQ(asked.exchange.argument("strInvoiceUID"), "INV-1001");
}

TEST(Exchange, WhatIsNoEnvelopeTellsNothing) {
  const Asked asked = soap("<cut", "urn:InvoiceService");
  EXPECT_TRUE(asked.refusal);
  EXPECT_THAT(names(asked.exchange), IsEmpty());
  EXPECT_EQ(asked.exchange.method, "");
}

TEST(Exchange, ACallOfTheDataAccessLayerTellsTheSame) {
  const Asked asked = dal("OrderService/getSAPOrderView", R"({"arguments":["ORD-5001",true]})");
  EXPECT_FALSE(asked.refusal);
  const Exchange& exchange = asked.exchange;
  EXPECT_EQ(exchange.route, sandbox::Route::kDal);
  EXPECT_EQ(exchange.service, "OrderService");
  EXPECT_EQ(exchange.method, "getSAPOrderView");
  EXPECT_EQ(exchange.session, "anna");
  EXPECT_EQ(exchange.argument("aIncludePrice"), "true");
  EXPECT_TRUE(exchange.can_be("BVOrderConnector.getSAPOrderView")) << names(exchange).front();
}

TEST(Exchange, EveryFormOfTheInterfaceBelongsToAnOperation) {
  for (const auto& [name, route] : world().box.dal_routes) {
    EXPECT_FALSE(route.forms.empty()) << name.first << "/" << name.second;
    for (const auto& form : route.forms) {
      EXPECT_EQ(form.places.size(), route.arguments.size()) << form.name;
    }
  }
}

}  // namespace
}  // namespace bvconn::test

#include "bvconn/component/outside_objects.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/component/instance_object.h"
#include "bvconn/component/memory.h"
#include "bvconn/core/session_state.h"
#include "bvconn/platform/platform.h"
#include "component/host.h"

namespace bvconn::component {
namespace {

namespace vt = variant_type;
using test::Held;
using test::HostString;
using test::Outcome;
using Lines = std::vector<std::string>;

class NotingTransport final : public HTTPTransport {
 public:
  explicit NotingTransport(Lines& lines) : lines_(lines) {}

  void Option(std::string_view key, std::string_view value) override { note("Option", key, value); }
  void setProxy(std::string_view host, std::string_view port) override {
    note("setProxy", host, port);
  }
  void NoProxy() override { note("NoProxy"); }
  void SOAPAction(std::string_view value) override { note("SOAPAction", value); }
  void Timeout(std::int32_t milliseconds) override {
    note("Timeout", std::to_string(milliseconds));
  }
  void Send(std::string_view url, std::string_view text) override { note("Send", url, text); }
  std::string Receive(std::string_view encoding) override {
    note("Receive", encoding);
    return "\xC3\xA9";
  }

 private:
  void note(std::string_view what, std::string_view first = {}, std::string_view second = {}) {
    lines_.push_back(std::string(what).append("|").append(first).append("|").append(second));
  }

  Lines& lines_;
};

TEST(TransportByName, PassesEachOperationOn) {
  Lines lines;
  Held<IDispatchAbi> object(make_transport_object(std::make_shared<NotingTransport>(lines)));
  HostString a(u"first");
  HostString b(u"second");
  const VariantRecord first = test::of_string(a);
  const VariantRecord second = test::of_string(b);
  EXPECT_EQ(test::put(*object, u"Option", second, {first}).result, kOk);
  EXPECT_EQ(test::call(*object, u"setProxy", {first, second}).result, kOk);
  EXPECT_EQ(test::call(*object, u"NoProxy").result, kOk);
  EXPECT_EQ(test::put(*object, u"SOAPAction", first).result, kOk);
  EXPECT_EQ(test::put(*object, u"Timeout", test::of_int32(-1)).result, kOk);
  EXPECT_EQ(test::call(*object, u"Send", {first, second}).result, kOk);
  EXPECT_EQ(test::call(*object, u"Receive", {first}).result, kOk);
  EXPECT_EQ(lines,
            (Lines{"Option|first|second", "setProxy|first|second", "NoProxy||", "SOAPAction|first|",
                   "Timeout|-1|", "Send|first|second", "Receive|first|"}));
}

TEST(TransportByName, WhatIsReceivedComesAsBytes) {
  Lines lines;
  Held<IDispatchAbi> object(make_transport_object(std::make_shared<NotingTransport>(lines)));
  const Outcome outcome = test::call(*object, u"Receive");
  ASSERT_EQ(outcome.value.type, vt::kArray | vt::kUint8);
  ASSERT_EQ(outcome.value.value.array->bounds[0].count, 2u);
  const auto* bytes = static_cast<const unsigned char*>(outcome.value.value.array->data);
  EXPECT_EQ(bytes[0], 0xC3);
  EXPECT_EQ(bytes[1], 0xA9);
}

class NotingService final : public ServiceObject {
 public:
  explicit NotingService(Lines& lines) : lines_(lines) {}

  std::string_view name() const override { return "SearchService"; }
  std::string invoke(std::string_view operation, std::span<const Variant> arguments,
                     bool by_name) override {
    std::string line(operation);
    for (const Variant& argument : arguments) line += "|" + to_text(argument);
    lines_.push_back(line + (by_name ? "|by name" : ""));
    return "<answer/>";
  }
  bool offers(std::string_view interface_name) const override {
    return interface_name == "HeartBeatService";
  }

 private:
  Lines& lines_;
};

TEST(ServiceObjectByName, IsAskedAndCalled) {
  Lines lines;
  Held<IDispatchAbi> object(make_service_object_object(std::make_shared<NotingService>(lines)));
  EXPECT_EQ(test::get(*object, u"name").text(), u"SearchService");
  HostString offered(u"HeartBeatService");
  HostString other(u"OrderService");
  EXPECT_EQ(test::call(*object, u"offers", {test::of_string(offered)}).value.value.boolean,
            kVariantTrue);
  EXPECT_EQ(test::call(*object, u"offers", {test::of_string(other)}).value.value.boolean,
            kVariantFalse);
  VariantRecord arguments = test::variant(vt::kArray | vt::kVariant);
  arguments.value.array = create_array(vt::kVariant, 2);
  auto* elements = static_cast<VariantRecord*>(arguments.value.array->data);
  elements[0] = test::of_int32(11);
  elements[1] = test::of_boolean(-1);
  HostString operation(u"SearchForBrands");
  EXPECT_EQ(test::call(*object, u"invoke", {test::of_string(operation), arguments}).text(),
            u"<answer/>");
  clear_variant(&arguments);
  EXPECT_EQ(test::call(*object, u"invoke", {test::of_string(operation)}).result, kOk);
  EXPECT_EQ(lines, (Lines{"SearchForBrands|11|True|by name", "SearchForBrands|by name"}));
}

TEST(ServiceObjectByName, IsWhatTheConnectorObjectGivesForAField) {
  const platform::ScopedPlatform scope(platform::current());
  Lines lines;
  session().QuoteService = std::make_shared<NotingService>(lines);
  const automation::ClassInfo* info = automation::find_class("BVConnectorObject");
  ASSERT_NE(info, nullptr);
  Held<IDispatchAbi> connector(make_instance_object(*info, kNullGuid));
  const Outcome service = test::get(*connector, u"QuoteService");
  EXPECT_EQ(test::get(service.object(), u"name").text(), u"SearchService");
  HostString operation(u"SearchForBrands");
  EXPECT_EQ(test::call(service.object(), u"invoke", {test::of_string(operation)}).result, kOk);
  EXPECT_EQ(lines, (Lines{"SearchForBrands|by name"}));
}

TEST(ServiceObjectByName, ArgumentsThatAreNoArrayAreError13) {
  Lines lines;
  Held<IDispatchAbi> object(make_service_object_object(std::make_shared<NotingService>(lines)));
  HostString operation(u"SearchForBrands");
  const Outcome outcome =
      test::call(*object, u"invoke", {test::of_string(operation), test::of_int32(5)});
  EXPECT_EQ(outcome.result, kException);
  EXPECT_EQ(outcome.exception.result, result_from_bits(0x800A000D));
  EXPECT_TRUE(lines.empty());
}

TEST(ServiceObjectByName, ItsOperationsAreCalledByTheirNames) {
  Lines lines;
  Held<IDispatchAbi> object(make_service_object_object(std::make_shared<NotingService>(lines)));
  HostString key(u"C1");
  HostString agent(u"A7");
  EXPECT_EQ(test::call(*object, u"SearchForBrands").text(), u"<answer/>");
  EXPECT_EQ(test::call(*object, u"searchforcustomer", {test::of_string(key)}).result, kOk);
  EXPECT_EQ(test::call(*object, u"SearchForCustomerAxillaryInfo",
                       {test::of_string(key), test::of_string(agent)})
                .result,
            kOk);
  EXPECT_EQ(lines, (Lines{"SearchForBrands|by name", "SearchForCustomer|C1|by name",
                          "SearchForCustomerAxillaryInfo|C1|A7|by name"}));
}

TEST(ServiceObjectByName, AnOperationsArgumentsHaveNames) {
  Lines lines;
  Held<IDispatchAbi> object(make_service_object_object(std::make_shared<NotingService>(lines)));
  char16_t operation[] = u"SearchForGLCodes";
  char16_t code[] = u"Code";
  char16_t desc[] = u"Desc";
  char16_t misc[] = u"Misc";
  char16_t* names[] = {operation, code, desc, misc};
  DispatchId ids[4] = {};
  ASSERT_EQ(object->GetIDsOfNames(&kNullGuid, names, 4, 0, ids), kOk);
  EXPECT_EQ(ids[1], 0);
  EXPECT_EQ(ids[2], 1);
  EXPECT_EQ(ids[3], 2);
  HostString text(u"text");
  const VariantRecord value = test::of_string(text);
  const test::Named all{{ids[3], ids[1], ids[2]}, {test::of_boolean(-1), value, value}};
  EXPECT_EQ(test::call_id(*object, ids[0], call_flag::kMethod, {}, all).result, kOk);
  EXPECT_EQ(lines, (Lines{"SearchForGLCodes|text|text|True|by name"}));
}

TEST(ServiceObjectByName, TheLastOfManyArgumentsHasItsNameToo) {
  Lines lines;
  Held<IDispatchAbi> object(make_service_object_object(std::make_shared<NotingService>(lines)));
  char16_t operation[] = u"OrdersSearchEmailExport";
  char16_t first[] = u"userGID";
  char16_t last[] = u"ContractorFirstPO";
  char16_t* names[] = {operation, first, last};
  DispatchId ids[3] = {};
  ASSERT_EQ(object->GetIDsOfNames(&kNullGuid, names, 3, 0, ids), kOk);
  EXPECT_EQ(ids[1], 0);
  EXPECT_EQ(ids[2], 24);
}

TEST(ServiceObjectByName, AnOperationsArgumentsTakeItsTypes) {
  Lines lines;
  Held<IDispatchAbi> object(make_service_object_object(std::make_shared<NotingService>(lines)));
  HostString number(u"0012");
  HostString word(u"twelve");
  EXPECT_EQ(test::call(*object, u"SearchForAllAgents", {test::of_string(number)}).result, kOk);
  EXPECT_EQ(test::call(*object, u"SearchForCustomer", {test::of_int32(12)}).result, kOk);
  EXPECT_EQ(lines, (Lines{"SearchForAllAgents|12|by name", "SearchForCustomer|12|by name"}));
  const Outcome outcome = test::call(*object, u"SearchForAllAgents", {test::of_string(word)});
  EXPECT_EQ(outcome.result, kTypeMismatch);
  EXPECT_EQ(outcome.argument_index, 0u);
  EXPECT_EQ(test::call(*object, u"SearchForCustomer").result, kBadParameterCount);
  EXPECT_EQ(lines.size(), 2u);
}

TEST(ServiceObjectByName, HasTheOperationsOfTheInterfacesThatItOffersAndNoOthers) {
  Lines lines;
  Held<IDispatchAbi> object(make_service_object_object(std::make_shared<NotingService>(lines)));
  EXPECT_EQ(test::call(*object, u"sendHeartBeat").result, kOk);
  EXPECT_EQ(test::call(*object, u"SaveRMA").result, kUnknownName);
  EXPECT_EQ(lines, (Lines{"sendHeartBeat|by name"}));
}

}  // namespace
}  // namespace bvconn::component
